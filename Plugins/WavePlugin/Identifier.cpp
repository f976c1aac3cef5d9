#include "Plugins/WavePlugin/Identifier.h"

#include <algorithm>
#include <charconv>

Identifier::Identifier(const char* prefix, const char* tag, const char* suffix, unsigned int index) {
    // The longest has 23 characters: prefix of two, node and core of five digits each, one letter, a number
    // of ten. The bound only keeps the object whole.
    char* at = m_text;
    char* const end = m_text + sizeof m_text - 1;
    for (const std::string_view piece :
         {std::string_view(prefix), std::string_view(tag), std::string_view(suffix)})
        at = std::copy_n(piece.data(),
                         std::min<std::size_t>(piece.size(), static_cast<std::size_t>(end - at)), at);
    // Signed, as value lines and `$var` lines spell a number of 2^31 and above.
    at = std::to_chars(at, end, static_cast<int>(index)).ptr;
    *at++ = '\n';
    m_length = static_cast<std::uint8_t>(at - m_text);
}
