#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One segment of a file that `segmentFile` makes.
struct Segment {
    std::uint32_t address;
    std::string bytes;
    std::uint32_t type = 1;       // PT_LOAD
    std::uint32_t memorySize = 0; // p_memsz; 0: as many as there are bytes
};

// Where the parts of such a file stand.
inline constexpr std::uint32_t s_segmentTableOffset = 52;
inline constexpr std::uint32_t s_segmentEntrySize = 32;

// An ELF file of a header, a program header table and the segments' bytes: no sections, no symbols. What a
// loader of memory images needs, and nothing else. The bytes stand in table order behind the table.
std::string segmentFile(std::uint32_t entry, const std::vector<Segment>& segments);
