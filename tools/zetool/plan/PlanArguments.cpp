#include "tools/zetool/plan/PlanArguments.h"

#include "Plugins/WavePlugin/PluginArguments.h"

#include <list>

std::optional<std::string> planArguments(const std::string& image, const std::string& waveform, bool pads,
                                         const std::vector<PlanTrace>& traces) {
    std::list<std::string> words = {"-ze", image, "-o", waveform};
    if (pads)
        words.emplace_back("-pads");
    for (const PlanTrace& trace : traces) {
        words.insert(words.end(), {"-core", trace.core->name});
        for (const PlanWord* const word : trace.words)
            words.push_back(std::string("-") + word->word);
    }
    std::string text;
    for (const std::string& word : words) {
        const bool isPlain = word.find_first_of(" \t\n\v\f\r") == std::string::npos;
        text += (text.empty() ? "" : " ") + (isPlain ? word : "'" + word + "'");
    }
    std::list<std::string> read;
    strToStrList(text.c_str(), &read); // as the plugin does
    return read == words ? std::optional(text) : std::nullopt;
}
