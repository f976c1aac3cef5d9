#include "Plugins/WavePlugin/PluginArguments.h"

#include <string_view>

namespace {

// White space of the "C" locale, whatever locale the host has set.
bool isSpace(char c) {
    return std::string_view(" \t\n\v\f\r").find(c) != std::string_view::npos;
}

} // namespace

void strToStrList(const char* text, std::list<std::string>* list) {
    std::string word;
    bool inQuotes = false;
    const auto endWord = [&] {
        if (!word.empty())
            list->push_back(word);
        word.clear();
    };
    for (const char c : std::string_view(text ? text : "")) {
        if (c == '\'') {
            if (inQuotes)
                endWord();
            inQuotes = !inQuotes;
        } else if (!inQuotes && isSpace(c)) {
            endWord();
        } else {
            word += c;
        }
    }
    endWord();
}
