#pragma once

#include "infr_libs/ElfHandler/ElfBytes.h"

#include <cstdint>
#include <list>
#include <utility>

class ElfProgramHeader;
class ElfSectionHeader;

// A run of bytes of the file: the contents of a segment, or of one section that no segment covers. Section
// headers only point into a block. Owned by an `ElfHandler`, as are the headers that it names.
class ElfBlock {
public:
    // Offset in the block and header of a section. The offset lies beyond the block's size for a section
    // without file contents.
    using Section = std::pair<std::uint32_t, ElfSectionHeader*>;

    // What a request for memory may reach; more counts as failed, in every word size.
    static constexpr std::uint32_t s_maxNumBytes = 0x7FFFFFFF;

    // Takes ownership of the array, which came from `new[]`. No segment, no sections.
    ElfBlock(std::uint32_t size, unsigned char* data, std::uint32_t offset = 0);
    ElfBlock(std::uint32_t size, ElfBytes data, std::uint32_t offset);

    // Asserts that the block has an array, even one of size 0.
    virtual ~ElfBlock();

    ElfBlock(const ElfBlock&) = delete;
    ElfBlock& operator=(const ElfBlock&) = delete;

    // Null where the block is no segment.
    ElfProgramHeader* getProgramHeader() const { return m_phdr; }

    // May be called once (assertion).
    void setProgramHeader(ElfProgramHeader* header);

    // The sections inside this block, in order of adding.
    const std::list<Section>& getSectionHeaders() const { return m_sections; }

    void addSection(std::uint32_t offsetInBlock, ElfSectionHeader* header);

    std::uint32_t getSize() const { return m_size; }

    // Where the block stands in the file.
    std::uint32_t getOffset() const { return m_offset; }

    unsigned char* getData() const { return m_data.get(); }

    // Moves the block in the file, and its segment and sections with it. The bytes stay.
    void updateOffsets(std::uint32_t offset);

    // Makes the block larger by this many bytes of 0; std::bad_alloc where that can't be had. What `getData`
    // gave before is no longer valid.
    void extendData(std::uint32_t extra);

private:
    std::uint32_t m_size;
    std::uint32_t m_offset = 0;
    ElfBytes m_data;
    ElfProgramHeader* m_phdr = nullptr; // the segment that this block is, if any
    std::list<Section> m_sections;
};
