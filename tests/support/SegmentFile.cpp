#include "tests/support/SegmentFile.h"

LabelledBytes segmentFile(std::uint32_t entry, const std::vector<ElfBuilder::Segment>& segments) {
    ElfBuilder elf;
    elf.m_entry = entry;
    elf.m_hasSymbols = false;
    elf.m_hasStrings = false;
    for (const ElfBuilder::Segment& segment : segments)
        elf.addSegment(segment);
    return elf.build();
}

ElfBuilder::Segment bytesAt(std::uint32_t address, std::string bytes) {
    return {.vaddr = address, .bytes = std::move(bytes)};
}
