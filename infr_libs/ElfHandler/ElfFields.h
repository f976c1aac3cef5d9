#pragma once

#include <array>
#include <cstdint>
#include <cstring>

// The structures of an ELF file name their fields once, in file order, in an operation `eachField`; these
// visitors carry the fields between the structure and the bytes of the file. Fields are in host byte
// order: the format is little-endian, and so are the hosts.

// Takes field after field from bytes that must hold the whole structure.
class ElfFieldReader {
public:
    explicit ElfFieldReader(const unsigned char* bytes) : m_next(bytes) {}

    template<class Field>
    void operator()(const char*, Field& field) {
        std::memcpy(&field, m_next, sizeof field);
        m_next += sizeof field;
    }

private:
    const unsigned char* m_next;
};

// Puts field after field into bytes that must have room for the whole structure.
class ElfFieldWriter {
public:
    explicit ElfFieldWriter(unsigned char* bytes) : m_next(bytes) {}

    template<class Field>
    void operator()(const char*, const Field& field) {
        std::memcpy(m_next, &field, sizeof field);
        m_next += sizeof field;
    }

private:
    unsigned char* m_next;
};

// Reads a whole structure from its bytes.
template<class Structure>
void readFields(Structure& structure, const unsigned char* bytes) {
    Structure::eachField(structure, ElfFieldReader(bytes));
}

// The bytes of a whole structure as the file has them.
template<class Structure>
std::array<unsigned char, Structure::s_numBytes> fileForm(const Structure& structure) {
    std::array<unsigned char, Structure::s_numBytes> bytes;
    Structure::eachField(structure, ElfFieldWriter(bytes.data()));
    return bytes;
}
