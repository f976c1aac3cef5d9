#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

// The VCD identifier of one signal: tracer prefix, core tag, signal letter and resource number, one behind
// the other. It is kept with the newline that ends a value line, and with its length, so that the end of a
// line is one copy of fixed size.
class Identifier {
public:
    // Bytes that `appendTo` may write, whatever the length.
    static constexpr std::size_t s_room = 32;

    Identifier(const char* prefix, const char* tag, const char* suffix, unsigned int index);

    // Writes identifier and newline, and returns the end of the text.
    char* appendTo(char* at) const {
        std::memcpy(at, m_text, s_room);
        return at + m_length;
    }

    std::string_view name() const { return {m_text, m_length - 1U}; }

private:
    char m_text[s_room - 1] = {};
    std::uint8_t m_length = 0; // the newline included
};

static_assert(sizeof(Identifier) == Identifier::s_room, "the copy in appendTo stays inside the object");
