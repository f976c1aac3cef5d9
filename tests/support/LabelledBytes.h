#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The bytes of a file whose fields have names, so that a test can spoil one field of a good file.
// Fields are little-endian.
class LabelledBytes {
public:
    struct Field {
        std::string label;
        std::size_t offset;
        std::size_t numBytes;

        // The highest value that the field can hold.
        std::uint32_t maximum() const { return numBytes >= 4 ? 0xFFFFFFFF : (1U << (8 * numBytes)) - 1; }
    };

    // All of the file; bytes may be appended and changed directly.
    std::string bytes;

    // Appends a field of 1, 2 or 4 bytes.
    void append(std::string label, std::size_t numBytes, std::uint32_t value);

    // Appends all bytes and fields of another.
    void append(const LabelledBytes& other);

    const std::vector<Field>& fields() const { return m_fields; }

    // A label that doesn't exist is a fault of the test: std::out_of_range.
    std::uint32_t get(std::string_view label) const;
    LabelledBytes& set(std::string_view label, std::uint32_t value);
    void set(const Field& field, std::uint32_t value);

private:
    const Field& find(std::string_view label) const;

    std::vector<Field> m_fields;
};

// The bytes of these numbers as 32-bit words.
std::string littleEndianWords(const std::vector<std::uint32_t>& words);
