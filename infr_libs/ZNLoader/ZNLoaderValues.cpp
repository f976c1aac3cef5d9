// The small grammars of attribute values: frequencies, dividers, lists.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <climits>
#include <cstdlib>

namespace {

constexpr char s_digits[] = "0123456789";

// Without a suffix a number means MHz: wanted.
constexpr struct {
    const char* suffix;
    unsigned factor;
} s_frequencyUnits[] = {{"", 1000000}, {"m", 1000000}, {"mhz", 1000000},
                        {"k", 1000},   {"khz", 1000},  {"hz", 1}};

// As `strtol` where a long has 32 bits.
long numberOf(const char* text, char** end, int base) {
    const long number = std::strtol(text, end, base);
    return number > INT_MAX ? INT_MAX : number;
}

} // namespace

int ZNLoader::freqInHertz(const std::string& text, XmlNode* element) {
    const std::string::size_type suffixStart = std::min(text.find_first_not_of(s_digits), text.size());
    if (text.find_first_of(s_digits, suffixStart) != std::string::npos)
        m_utils.throwError(11060, ElementLocation(element), "Frequency (\"%s\") cannot be parsed.\n",
                           text.c_str());
    // The base is detected, as in every `IntOf`: wanted, "010" is 8 MHz.
    const auto number = static_cast<unsigned>(ZNUtils::IntOf(text.substr(0, suffixStart)));
    for (const auto& unit : s_frequencyUnits) {
        if (ZNUtils::Stricmp(text.c_str() + suffixStart, unit.suffix) == 0)
            return static_cast<int>(number * unit.factor);
    }
    m_utils.throwError(11060, ElementLocation(element), "Frequency (\"%s\") had unrecognised suffix.\n",
                       text.c_str());
}

bool ZNLoader::parseFeedbackDivMul2(const std::string& text, unsigned& out) {
    const bool isHexadecimal = text.starts_with("0x");
    char* end = nullptr;
    const long number =
        isHexadecimal ? numberOf(text.c_str() + 2, &end, 16) : numberOf(text.c_str(), &end, 10);
    if (number < 0)
        return false;
    const std::string rest = end;
    const bool isHalf = !isHexadecimal && rest == ".5";
    if (!isHexadecimal && !isHalf && !rest.empty()) // what follows a hexadecimal number isn't looked at
        return false;
    out = static_cast<unsigned>(number) * 2 + (isHalf ? 1 : 0);
    return true;
}

std::vector<std::string>* ZNLoader::getCommaSeparatedArgs(const std::string& text) {
    auto pieces = std::make_unique<std::vector<std::string>>();
    if (!text.empty()) {
        std::string::size_type start = 0;
        for (std::string::size_type comma; (comma = text.find(',', start)) != std::string::npos;
             start = comma + 1)
            pieces->push_back(text.substr(start, comma - start));
        pieces->push_back(text.substr(start));
    }
    return pieces.release();
}
