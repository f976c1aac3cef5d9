#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A text of the string table and its place there, which never changes. Made and owned by an `ElfStrings`,
// one object a text.
class ElfString {
public:
    ElfString(std::string_view name, std::uint32_t offset) : m_name(name), m_offset(offset) {}
    virtual ~ElfString();

    ElfString(const ElfString&) = delete;
    ElfString& operator=(const ElfString&) = delete;

    // Valid as long as the object.
    const char* getName() const { return m_name.c_str(); }

    std::uint32_t getOffset() const { return m_offset; }

private:
    std::string m_name;
    std::uint32_t m_offset;
};
