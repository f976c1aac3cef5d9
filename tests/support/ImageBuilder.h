#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The bytes of an image file (a sector container), a call a sector, and faults in them:
//
//     ImageBuilder().config(xml).zn(network).elf(0, 1, program).bytes()
//     ImageBuilder().zn("A").flipBit(24, 0).bytes()
//
// It works from the layout alone, without the library that reads and writes it, and so can judge it.
class ImageBuilder {
public:
    ImageBuilder(); // the file header

    // Appends a sector as a writer makes it: padded, with its CRC; 12 bytes for an empty payload.
    ImageBuilder& sector(unsigned type, std::string_view payload);

    // The same with a payload of node, core, address, and then the data.
    ImageBuilder& image(unsigned type, unsigned node, unsigned core, std::uint64_t address,
                        std::string_view data);

    ImageBuilder& binary(unsigned node, unsigned core, std::uint64_t address, std::string_view data);
    ImageBuilder& elf(unsigned node, unsigned core, std::string_view file);
    ImageBuilder& config(std::string_view document);
    ImageBuilder& zn(std::string_view document);
    ImageBuilder& nodeDescriptor(unsigned node, std::uint64_t partNumber);
    ImageBuilder& jump(unsigned node, unsigned core, std::uint64_t address = 0); // GOTO
    ImageBuilder& call(unsigned node, unsigned core, std::uint64_t address = 0);
    ImageBuilder& end();

    // Faults, at offsets from the file's start.
    ImageBuilder& setByte(std::size_t offset, unsigned value);
    ImageBuilder& setNumber(std::size_t offset, unsigned numBytes, std::uint64_t value);
    ImageBuilder& flipBit(std::size_t offset, unsigned bit);
    ImageBuilder& cutTo(std::size_t numBytes);
    ImageBuilder& append(std::string_view bytes);

    // Where the next sector goes.
    std::size_t size() const { return m_bytes.size(); }

    std::string bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};
