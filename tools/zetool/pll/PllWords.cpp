#include "tools/zetool/pll/PllWords.h"

#include "infr_libs/ZNLoader/ZNUtils.h"
#include "tools/zetool/Messages.h"

#include <charconv>
#include <limits>

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

} // namespace

std::uint32_t frequencyOf(const std::string& option, const std::string& text) {
    static constexpr const char* s_wanted = "a frequency such as 20MHz, 400kHz or 12500000, below 2^32 Hz";
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc())
        refuse(option, text, s_wanted);
    for (const auto& unit : s_units) {
        if (ZNUtils::Stricmp(end, unit.suffix) != 0)
            continue;
        const std::uint64_t hertz = std::uint64_t(number) * unit.factor;
        if (hertz <= s_most)
            return static_cast<std::uint32_t>(hertz);
    }
    refuse(option, text, s_wanted);
}

std::uint32_t dividerOf(const std::string& option, const std::string& text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        refuse(option, text, "a divider");
    return number;
}

std::uint32_t halvesOf(const std::string& option, const std::string& text) {
    static constexpr const char* s_wanted = "a divider such as 10 or 10.5";
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::string rest = end;
    const bool isHalf = rest == ".5";
    if (error != std::errc() || number > s_most / 2 || (!rest.empty() && !isHalf && rest != ".0"))
        refuse(option, text, s_wanted);
    return number * 2 + (isHalf ? 1 : 0);
}
