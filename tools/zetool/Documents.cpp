#include "tools/zetool/Documents.h"

#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace {

// The parser's failures without a text of its own: that of a cut comment, which a node configuration throws
// as a text, and the one limit that a document can breach.
constexpr const char* s_parserRange = "basic_string::substr";
constexpr const char* s_parserLimit = "*s != '\\0'";
constexpr const char* s_openComment = "the document ends inside a comment";
constexpr const char* s_openBackslash = "a tag ends behind a backslash";

constexpr const char* s_inNetwork = ", here or in a file that the network names";

// Whether a text starts as the loader's warnings on elements of the file do: "FILE:LINE Warning: ZN11128 ".
bool beginsWarning(std::string_view text, std::string_view file) {
    constexpr std::string_view s_digits = "0123456789";
    const auto skip = [&](std::string_view part) {
        const bool isThere = text.starts_with(part);
        text.remove_prefix(isThere ? part.size() : 0);
        return isThere;
    };
    const auto skipDigits = [&] {
        const std::size_t count = std::min(text.find_first_not_of(s_digits), text.size());
        text.remove_prefix(count);
        return count != 0;
    };
    return skip(file) && skip(":") && skipDigits() && skip(" Warning: ZN") && skipDigits() && skip(" ");
}

} // namespace

void printLines(const std::string& text) {
    for (const std::string& line : linesOf(text))
        printMessage(line);
}

std::optional<ReadFailure> failureOf(const std::string& file, const std::function<void()>& read,
                                     const char* where) {
    const auto lineOf = [&](const std::string& text) { return shownName(file) + ": " + text + where + "\n"; };
    try {
        read();
        return std::nullopt;
    } catch (const std::string& error) {
        return ReadFailure{error, error == s_parserRange ? lineOf(s_openComment) : error};
    } catch (const std::out_of_range& error) {
        return ReadFailure{error.what(), lineOf(s_openComment)};
    } catch (const BrokenLimit& limit) {
        const std::string line = lineOf(limit.condition() == s_parserLimit ? s_openBackslash : limit.what());
        return ReadFailure{line, line};
    }
}

NetworkReading::NetworkReading(const std::string& file) : m_file(file) {
    if (file == "-")
        readStream(file, readWhole(file));
    else
        failure = failureOf(
            file, [&] { network = std::make_unique<ZNLoader>(file, &warnings); }, s_inNetwork);
}

NetworkReading::NetworkReading(const std::string& file, const std::string& document) : m_file(file) {
    readStream(file, document);
}

void NetworkReading::readStream(const std::string& file, const std::string& document) {
    std::istringstream stream(document);
    failure = failureOf(
        file, [&] { network = std::make_unique<ZNLoader>(file, &stream, &warnings); }, s_inNetwork);
}

// The loader hands out one text. A line of it begins a warning if it has the form of one on this file.
std::vector<std::string> NetworkReading::warningList() const {
    std::vector<std::string> list;
    const std::string_view text = warnings;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = text.find('\n', begin);
        while (end < text.size() && end + 1 != text.size() && !beginsWarning(text.substr(end + 1), m_file))
            end = text.find('\n', end + 1);
        end = std::min(end, text.size());
        list.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return list;
}

void NetworkReading::printWarnings() const {
    for (const std::string& warning : warningList())
        printMessage(warning);
}

std::unique_ptr<ZNLoader> loadNetwork(const std::string& file, const std::string& document) {
    NetworkReading reading(file, document);
    reading.printWarnings();
    if (reading.failure)
        printLines(reading.failure->message);
    else
        reading.network->setWarningTarget(nullptr); // this one goes
    return std::move(reading.network);
}

Document::Document(const std::string& file, Entities entities)
    : m_parser(file.c_str(), &m_utils, entities == Entities::Replaced) {}

Document::Document(const std::string& file, const std::string& text, Entities entities)
    : m_stream(text), m_parser(file.c_str(), &m_utils, &m_stream, entities == Entities::Replaced) {}

std::unique_ptr<Document> loadDocument(const std::string& file, const std::string& text, Entities entities) {
    std::unique_ptr<Document> document;
    const auto failure =
        failureOf(file, [&] { document = std::make_unique<Document>(file, text, entities); });
    if (failure)
        printLines(failure->message);
    return document;
}
