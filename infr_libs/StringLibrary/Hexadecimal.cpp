#include "infr_libs/StringLibrary/Hexadecimal.h"

#include "infr_libs/ErrorHandler/Assertion.h"

static unsigned charToHex(char digit) {
    if (digit >= '0' && digit <= '9')
        return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f')
        return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F')
        return static_cast<unsigned>(digit - 'A' + 10);
    ZELM_ASSERT(0);
    return 0;
}

void asciiToHex(const char* from, char* to, unsigned length) {
    constexpr char digits[] = "0123456789abcdef";
    for (unsigned i = 0; i < length; ++i) {
        const unsigned byte = static_cast<unsigned char>(from[i]);
        *to++ = digits[byte >> 4];
        *to++ = digits[byte & 0xf];
    }
    *to = '\0';
}

void hexToAscii(const char* from, char* to, unsigned length) {
    for (unsigned done = 0; done < length; done += 2, from += 2)
        *to++ = static_cast<char>(charToHex(from[0]) << 4 | charToHex(from[1]));
    *to = '\0';
}
