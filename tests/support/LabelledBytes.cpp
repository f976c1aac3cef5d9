#include "tests/support/LabelledBytes.h"

#include "tests/support/Bytes.h"

#include <algorithm>
#include <stdexcept>

void LabelledBytes::append(std::string label, std::size_t numBytes, std::uint32_t value) {
    m_fields.push_back({std::move(label), bytes.size(), numBytes});
    bytes.resize(bytes.size() + numBytes);
    set(m_fields.back(), value);
}

void LabelledBytes::append(const LabelledBytes& other) {
    for (Field field : other.m_fields) {
        field.offset += bytes.size();
        m_fields.push_back(std::move(field));
    }
    bytes += other.bytes;
}

const LabelledBytes::Field& LabelledBytes::find(std::string_view label) const {
    const auto field =
        std::find_if(m_fields.begin(), m_fields.end(), [&](const Field& f) { return f.label == label; });
    if (field == m_fields.end())
        throw std::out_of_range("no field " + std::string(label));
    return *field;
}

std::uint32_t LabelledBytes::get(std::string_view label) const {
    const Field& field = find(label);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < field.numBytes; ++i)
        value |= std::uint32_t{static_cast<unsigned char>(bytes[field.offset + i])} << (8 * i);
    return value;
}

LabelledBytes& LabelledBytes::set(std::string_view label, std::uint32_t value) {
    set(find(label), value);
    return *this;
}

void LabelledBytes::set(const Field& field, std::uint32_t value) {
    bytes.replace(field.offset, field.numBytes, littleEndian(value, static_cast<unsigned>(field.numBytes)));
}

std::string littleEndianWords(const std::vector<std::uint32_t>& words) {
    std::string bytes;
    for (const std::uint32_t word : words)
        bytes += littleEndian(word, 4);
    return bytes;
}
