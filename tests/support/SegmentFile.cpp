#include "tests/support/SegmentFile.h"

#include "tests/support/Bytes.h"

std::string segmentFile(std::uint32_t entry, const std::vector<Segment>& segments) {
    std::string header("\x7f"
                       "ELF\x01\x01\x01"); // 32 bits, little-endian, version 1
    header.resize(16);
    header += littleEndian(2, 2) + littleEndian(0xCB, 2) + littleEndian(1, 4); // executable, machine, version
    header += littleEndian(entry, 4) + littleEndian(segments.empty() ? 0 : s_segmentTableOffset, 4);
    header += littleEndian(0, 4) + littleEndian(0, 4); // no section table, no flags
    header += littleEndian(s_segmentTableOffset, 2) + littleEndian(s_segmentEntrySize, 2) +
              littleEndian(segments.size(), 2);
    header += littleEndian(40, 2) + littleEndian(0, 2) + littleEndian(0, 2); // no sections

    std::string table;
    std::string contents;
    const std::size_t contentsOffset = s_segmentTableOffset + s_segmentEntrySize * segments.size();
    for (const Segment& segment : segments) {
        const std::size_t size = segment.bytes.size();
        table += littleEndian(segment.type, 4) + littleEndian(contentsOffset + contents.size(), 4);
        table += littleEndian(segment.address, 4) + littleEndian(segment.address, 4);
        table += littleEndian(size, 4) + littleEndian(segment.memorySize != 0 ? segment.memorySize : size, 4);
        table += littleEndian(5, 4) + littleEndian(4, 4); // readable and executable, aligned to words
        contents += segment.bytes;
    }
    return header + table + contents;
}
