#include "tools/zetool/pll/PllWords.h"

#include "infr_libs/ZNLoader/ZNUtils.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr std::uint64_t s_most = std::numeric_limits<std::uint32_t>::max();

// As in network documents, where a number without a unit means MHz, though.
constexpr struct {
    const char* suffix;
    std::uint32_t factor;
} s_units[] = {{"", 1}, {"hz", 1}, {"k", 1000}, {"khz", 1000}, {"m", 1000000}, {"mhz", 1000000}};

[[noreturn]] void refuse(const std::string& option, const std::string& text, const char* wanted) {
    throw ToolFailure("pll: --" + option + ": '" + text + "' isn't " + wanted);
}

// A number in front, and what stands behind it.
struct Parts {
    std::optional<std::uint32_t> number;
    std::string rest;
};

Parts partsOf(const std::string& text) {
    const std::size_t numDigits = std::min(text.find_first_not_of("0123456789"), text.size());
    return {wholeNumber<std::uint32_t>(text.substr(0, numDigits)), text.substr(numDigits)};
}

} // namespace

std::uint32_t frequencyOf(const std::string& option, const std::string& text) {
    static constexpr const char* s_wanted = "a frequency such as 20MHz, 400kHz or 12500000, below 2^32 Hz";
    const auto [number, rest] = partsOf(text);
    if (!number)
        refuse(option, text, s_wanted);
    for (const auto& unit : s_units) {
        if (ZNUtils::Stricmp(rest.c_str(), unit.suffix) != 0)
            continue;
        const std::uint64_t hertz = std::uint64_t(*number) * unit.factor;
        if (hertz <= s_most)
            return static_cast<std::uint32_t>(hertz);
    }
    refuse(option, text, s_wanted);
}

std::uint32_t dividerOf(const std::string& option, const std::string& text) {
    const auto number = wholeNumber<std::uint32_t>(text);
    if (!number)
        refuse(option, text, "a divider");
    return *number;
}

std::uint32_t halvesOf(const std::string& option, const std::string& text) {
    static constexpr const char* s_wanted = "a divider such as 10 or 10.5";
    const auto [number, rest] = partsOf(text);
    const bool isHalf = rest == ".5";
    if (!number || *number > s_most / 2 || (!rest.empty() && !isHalf && rest != ".0"))
        refuse(option, text, s_wanted);
    return *number * 2 + (isHalf ? 1 : 0);
}
