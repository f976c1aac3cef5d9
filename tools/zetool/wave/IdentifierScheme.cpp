#include "tools/zetool/wave/IdentifierScheme.h"

#include <algorithm>
#include <span>

namespace {

struct SuffixRow {
    char letter;
    const char* suffix;
};

constexpr SuffixRow s_portSuffixes[] = {
    {'a', ""},
    {'b', "_inuse"},
    {'c', "_tWaiting"},
    {'d', "_direction"},
    {'l', "_outputThreadPc"},
    {'m', "_portDetails"},
    {'e', "_shiftReg"},
    {'f', "_shiftRegValid"},
    {'g', "_shiftRegSize"},
    {'h', "_shiftRegCount"},
    {'i', "_transferReg"},
    {'j', "_transferRegFull"},
    {'k', "_transferRegSize"},
    {'n', "_portTime"},
    {'o', "_timeReg"},
};
constexpr SuffixRow s_threadSuffixes[] = {
    {'a', "_inuse"},
    {'b', "_waiting"},
    {'c', "_waitingResourceType"},
    {'d', "_waitingResourceNumber"},
};
constexpr SuffixRow s_clockBlockSuffixes[] = {
    {'a', "_inuse"}, {'b', "_started"}, {'c', "_tWaiting"}, {'e', "_riseEdge"}, {'f', "_fallEdge"},
};
constexpr SuffixRow s_timerSuffixes[] = {{'a', "_time"}, {'b', "_inuse"}, {'c', "_tWaiting"}};
constexpr SuffixRow s_instructionSuffixes[] = {{'a', "_PC"}, {'b', "_THREAD_ID"}, {'c', "_MNEMONIC"}};
constexpr SuffixRow s_functionSuffixes[] = {{'a', ""}};

struct KindRow {
    const char* prefix;
    const char* category;
    const char* resource; // name of a resource without its index; null where the simulator names it
    bool isGrouped;
    std::span<const SuffixRow> suffixes;
};

constexpr KindRow s_kinds[] = {
    {"po", "Ports", nullptr, true, s_portSuffixes},
    {"t", "Threads", "Thread", true, s_threadSuffixes},
    {"c", "ClockBlocks", "ClkBlk", true, s_clockBlockSuffixes},
    {"ti", "Timers", "Timer", true, s_timerSuffixes},
    {"in", "Instructions", "INSTRUCTION", false, s_instructionSuffixes},
    {"fu", "Functions", "Functions_Thread", false, s_functionSuffixes},
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isDigit);
}

} // namespace

IdentifierMeaning identifierMeaning(std::string_view identifier) {
    IdentifierMeaning meaning;
    // Two forms stand outside the scheme of prefix, tag, letter and index: a pad has no tag, and the cycle
    // count has an underscore alone.
    if (identifier.starts_with("paa") && isNumber(identifier.substr(3))) {
        meaning.category = "Pads";
        meaning.index = identifier.substr(3);
        return meaning;
    }
    if (identifier.starts_with('_') && isNumber(identifier.substr(1))) {
        meaning.category = "Cycles";
        meaning.tag = identifier.substr(1);
        meaning.resource = "CYCLES";
        meaning.radix = "DECIMAL";
        return meaning;
    }
    const auto tagAt =
        static_cast<std::size_t>(std::ranges::find_if(identifier, isDigit) - identifier.begin());
    const auto letterAt = identifier.find_first_not_of("0123456789", tagAt);
    if (letterAt == std::string_view::npos || !isNumber(identifier.substr(letterAt + 1)))
        return meaning;
    for (const KindRow& kind : s_kinds) {
        if (identifier.substr(0, tagAt) != kind.prefix)
            continue;
        for (const SuffixRow& row : kind.suffixes) {
            if (row.letter != identifier[letterAt])
                continue;
            meaning.category = kind.category;
            meaning.tag = identifier.substr(tagAt, letterAt - tagAt);
            meaning.index = identifier.substr(letterAt + 1);
            meaning.suffix = row.suffix;
            meaning.isGrouped = kind.isGrouped;
            const bool isText = meaning.category == std::string_view("Functions") ||
                                row.suffix == std::string_view("_MNEMONIC");
            meaning.radix = isText ? "ASCII" : "HEX";
            if (kind.resource)
                meaning.resource = kind.resource;
            // The core has one set of instruction signals, which bear no number.
            if (kind.resource && meaning.category != std::string_view("Instructions"))
                meaning.resource += meaning.index;
        }
    }
    return meaning;
}
