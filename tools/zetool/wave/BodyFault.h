#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Something found in a body, perhaps a million times: the first place and the count are kept.
struct BodyFault {
    std::uint64_t count = 0;
    std::uint64_t firstLine = 0;
    std::string firstText;

    void note(std::string_view text, std::uint64_t line) {
        if (count++ > 0)
            return;
        firstLine = line;
        firstText = text.substr(0, s_shownLength);
    }

    static constexpr std::size_t s_shownLength = 60;
};
