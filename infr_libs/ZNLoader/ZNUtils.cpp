#include "infr_libs/ZNLoader/ZNUtils.h"

#include "infr_libs/ErrorHandler/FormattedText.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <locale>
#include <sstream>

namespace {

constexpr ZNUtils::ErrorCode s_plainCode = 11000; // a line that goes with another message
constexpr char s_appLocation[] = "ZNHandler: ";
constexpr std::size_t s_longestLine = 12; // ":" and " " around the digits of an int, its sign included

void appendLocation(std::string& text, const ZNUtils::Location& where) {
    const std::size_t start = text.size();
    text.resize(start + where.bound());
    text.resize(start + static_cast<std::size_t>(where.print(text.data() + start)));
}

__attribute__((format(printf, 5, 0))) void appendMessage(std::string& text, const char* kind,
                                                         ZNUtils::ErrorCode code,
                                                         const ZNUtils::Location& where, const char* format,
                                                         va_list arguments) {
    appendLocation(text, where);
    if (code != s_plainCode) {
        char prefix[32];
        std::snprintf(prefix, sizeof prefix, "%s: ZN%05d ", kind, code);
        text += prefix;
    }
    text += formattedText(format, arguments);
}

// The number at the start of a text; without a base it is detected. The process's locale may group digits:
// it's left out.
int numberOf(const std::string& text, std::ios_base::fmtflags base) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream.setf(base, std::ios_base::basefield);
    int value = 0;
    stream >> value;
    return value;
}

int upper(char c) {
    return std::toupper(static_cast<unsigned char>(c));
}

} // namespace

ZNUtils::Location::~Location() = default;

ZNUtils::NoLocation::NoLocation() : Location(0) {}

int ZNUtils::NoLocation::print(char*) const {
    return 0;
}

ZNUtils::FileNameLocation::FileNameLocation(const std::string& fileName)
    : Location(fileName.size() + sizeof ": "), m_fileName(fileName) {}

int ZNUtils::FileNameLocation::print(char* buffer) const {
    return std::sprintf(buffer, "%s: ", m_fileName.c_str());
}

ZNUtils::FileLineLocation::FileLineLocation(const std::string& fileName, unsigned lineNum)
    : Location(fileName.size() + s_longestLine + sizeof ": "), m_fileName(fileName), m_lineNum(lineNum) {}

int ZNUtils::FileLineLocation::print(char* buffer) const {
    return std::sprintf(buffer, "%s:%d ", m_fileName.c_str(), static_cast<int>(m_lineNum));
}

ZNUtils::AppLocation::AppLocation() : Location(sizeof s_appLocation) {}

int ZNUtils::AppLocation::print(char* buffer) const {
    std::memcpy(buffer, s_appLocation, sizeof s_appLocation);
    return sizeof s_appLocation - 1;
}

void ZNUtils::buildErrorMessage(ErrorCode code, const Location& where, const char* format, ...) {
    if (m_ignored.contains(code))
        return;
    va_list arguments;
    va_start(arguments, format);
    appendMessage(m_errorText, "Error", code, where, format, arguments);
    va_end(arguments);
}

void ZNUtils::buildWarningMessage(std::string* target, ErrorCode code, const Location& where,
                                  const char* format, ...) {
    if (!target || m_ignored.contains(code))
        return;
    va_list arguments;
    va_start(arguments, format);
    appendMessage(*target, "Warning", code, where, format, arguments);
    va_end(arguments);
}

void ZNUtils::throwError(ErrorCode code, const Location& where, const char* format, ...) {
    if (!m_ignored.contains(code)) {
        va_list arguments;
        va_start(arguments, format);
        appendMessage(m_errorText, "Error", code, where, format, arguments);
        va_end(arguments);
    }
    throwErrors();
}

void ZNUtils::throwErrors() const {
    throw std::string(m_errorText);
}

int ZNUtils::Stricmp(const char* first, const char* second) {
    // Equal characters need no look at their case: most of a name's are.
    while (*first && (*first == *second || upper(*first) == upper(*second))) {
        ++first;
        ++second;
    }
    const int difference = upper(*first) - upper(*second);
    return difference == 0 ? 0 : difference < 0 ? -1 : 1;
}

int ZNUtils::IntOf(const std::string& text) {
    // Plain decimal numbers, which nearly all are, without the cost of a stream.
    constexpr std::size_t maxDigits = 9; // these always fit
    const bool isPlain = !text.empty() && text.size() <= maxDigits && (text[0] != '0' || text.size() == 1) &&
                         text.find_first_not_of("0123456789") == std::string::npos;
    if (isPlain) {
        int value = 0;
        for (const char digit : text)
            value = value * 10 + (digit - '0');
        return value;
    }
    return numberOf(text, {});
}

int ZNUtils::DecimalOf(const std::string& text) {
    return numberOf(text, std::ios_base::dec);
}
