#include "tests/tools/zetool/wave/VcdText.h"

#include <sstream>

VcdText::VcdText(std::string_view text) {
    std::istringstream stream{std::string(text)};
    std::vector<std::string> scopes;
    std::string time = "none";
    for (std::string word; stream >> word;) {
        const auto next = [&] {
            std::string result;
            stream >> result;
            return result;
        };
        const auto skip = [&] {
            std::string all;
            for (std::string part = next(); stream && part != "$end"; part = next())
                all += part;
            return all;
        };
        if (word == "$timescale") {
            timescale = skip();
        } else if (word == "$scope") {
            next();
            scopes.push_back(next());
            skip();
        } else if (word == "$upscope") {
            scopes.pop_back();
            skip();
        } else if (word == "$var") {
            next();
            const auto width = static_cast<unsigned int>(std::stoul(next()));
            const std::string identifier = next();
            std::string path;
            for (const std::string& scope : scopes)
                path += scope + ".";
            path += next();
            path = path.substr(0, path.find('['));
            skip();
            widths[path] = width;
            identifiers[identifier].push_back(path);
        } else if (word == "$date" || word == "$version" || word == "$comment" || word == "$enddefinitions") {
            skip();
        } else if (word.front() == '#') {
            time = word.substr(1);
        } else if (word.front() == 'b') {
            for (const std::string& path : identifiers[next()])
                add(path, time, word.substr(1));
        } else if (word.front() != '$') {
            for (const std::string& path : identifiers[word.substr(1)])
                add(path, time, word.substr(0, 1));
        }
    }
}

void VcdText::add(const std::string& path, const std::string& time, std::string value) {
    const std::size_t width = widths[path];
    if (value.size() < width)
        value.insert(0, width - value.size(), value.front() == 'x' ? 'x' : '0');
    std::vector<std::string>& list = changes[path];
    if (list.empty() || list.back().substr(list.back().find(' ') + 1) != value)
        list.push_back(time + " " + value);
}
