#include "tests/support/ImageBuilder.h"

#include "tests/support/BitSerialCrc.h"
#include "tests/support/Bytes.h"

namespace {

std::string record(unsigned node, unsigned core, std::uint64_t address) {
    return littleEndian(node, 2) + littleEndian(core, 2) + littleEndian(address, 8);
}

} // namespace

ImageBuilder::ImageBuilder() : m_bytes("ZELM" + littleEndian(1, 4)) {}

ImageBuilder& ImageBuilder::sector(unsigned type, std::string_view payload) {
    const std::string header = littleEndian(type, 2) + littleEndian(0, 2);
    if (payload.empty()) {
        m_bytes += header + littleEndian(0, 8);
        return *this;
    }
    const std::size_t pad = (4 - payload.size() % 4) % 4;
    std::string covered = header + littleEndian(4 + payload.size() + pad + 4, 8) + littleEndian(pad, 4);
    covered.append(payload).append(pad, '\0');
    m_bytes += covered + littleEndian(bitSerialCrc(covered), 4);
    return *this;
}

ImageBuilder& ImageBuilder::image(unsigned type, unsigned node, unsigned core, std::uint64_t address,
                                  std::string_view data) {
    return sector(type, record(node, core, address).append(data));
}

ImageBuilder& ImageBuilder::binary(unsigned node, unsigned core, std::uint64_t address,
                                   std::string_view data) {
    return image(1, node, core, address, data);
}

ImageBuilder& ImageBuilder::elf(unsigned node, unsigned core, std::string_view file) {
    return image(2, node, core, 0, file);
}

ImageBuilder& ImageBuilder::config(std::string_view document) {
    return sector(3, document);
}

ImageBuilder& ImageBuilder::zn(std::string_view document) {
    return sector(8, document);
}

ImageBuilder& ImageBuilder::nodeDescriptor(unsigned node, std::uint64_t partNumber) {
    return sector(4, record(node, 0, partNumber));
}

ImageBuilder& ImageBuilder::jump(unsigned node, unsigned core, std::uint64_t address) {
    return sector(5, record(node, core, address));
}

ImageBuilder& ImageBuilder::call(unsigned node, unsigned core, std::uint64_t address) {
    return sector(6, record(node, core, address));
}

ImageBuilder& ImageBuilder::end() {
    return sector(0x5555, "");
}

ImageBuilder& ImageBuilder::setByte(std::size_t offset, unsigned value) {
    return setNumber(offset, 1, value);
}

ImageBuilder& ImageBuilder::setNumber(std::size_t offset, unsigned numBytes, std::uint64_t value) {
    m_bytes.replace(offset, numBytes, littleEndian(value, numBytes));
    return *this;
}

ImageBuilder& ImageBuilder::flipBit(std::size_t offset, unsigned bit) {
    m_bytes.at(offset) = static_cast<char>(static_cast<unsigned char>(m_bytes.at(offset)) ^ 1U << bit);
    return *this;
}

ImageBuilder& ImageBuilder::cutTo(std::size_t numBytes) {
    m_bytes.resize(numBytes);
    return *this;
}

ImageBuilder& ImageBuilder::append(std::string_view bytes) {
    m_bytes.append(bytes);
    return *this;
}
