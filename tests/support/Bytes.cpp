#include "tests/support/Bytes.h"

#include <cctype>
#include <stdexcept>

std::string littleEndian(std::uint64_t value, unsigned numBytes) {
    std::string bytes;
    for (unsigned i = 0; i < numBytes; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xff);
    return bytes;
}

std::string fromHex(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c)))
            digits += c;
        else if (!std::isspace(static_cast<unsigned char>(c)))
            throw std::invalid_argument("not a hexadecimal digit: " + std::string(1, c));
    }
    if (digits.size() % 2 != 0)
        throw std::invalid_argument("an odd number of hexadecimal digits");
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}
