#pragma once

#include "infr_libs/ZelmBinaryHandler/ZBHeads.h"
#include "tools/zetool/image/SectorTypes.h"
#include "tools/zetool/InputFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// A sector of a file, as far as it has been read.
struct ImageSector {
    std::uint64_t index = 0;  // from 0
    std::uint64_t offset = 0; // in the file
    ZBSectorHead head;
    const SectorTypeRow* row = nullptr; // null for an unknown type

    // What the type says that the payload begins with, where that is there.
    bool hasRecord = false;
    std::uint16_t node = 0;
    std::uint16_t core = 0;
    std::uint64_t address = 0; // of a node's descriptor: the part number

    bool isWhole = false;  // seen to its end
    std::uint32_t crc = 0; // as stored; 0 without a payload
    std::optional<std::uint32_t> computedCrc;
    bool reservedIsUsed = false; // a reserved byte isn't 0
    bool paddingIsUsed = false;  // a byte of padding isn't 0, as far as that was read

    bool hasPayload() const { return head.size != 0; }
    bool isPlace() const { return hasRecord && row->record == SectorRecord::Place; }
    bool isNode() const { return hasRecord && row->record == SectorRecord::Node; }

    // Not by a stored 0, which waives the check.
    bool hasWrongCrc() const { return crc != 0 && computedCrc && crc != *computedCrc; }
    std::string crcFault() const;

    // How messages call it: number and offset.
    std::string place() const;

    // The bytes of the payload that are the record of an image, ahead of its data.
    std::uint64_t prefixSize() const;
};

// Goes over an image file from front to end, sector by sector, in a piece of memory that doesn't grow: what
// it passes over in a regular file isn't even read. It takes what loading takes, and stops where loading
// stops, but for a wrong CRC, behind which it goes on.
//
//     SectorWalker walker(input);
//     while (walker.next())
//         if (walker.skip())
//             show(walker.sector());
//     if (!walker.fault().empty())
//         ...
class SectorWalker {
public:
    // No image that is of use has more; a file of zeros would have one in every twelve bytes.
    static constexpr std::uint64_t s_mostSectors = 65536;

    // Reads the file's header.
    explicit SectorWalker(InputFile& input);

    // Goes on to the next sector, and reads its head and record. False at the file's end, and at a fault.
    bool next();

    // One of the two goes to the sector's end, behind each `next`. False where the file ends before it. The
    // second computes the CRC, and hands the payload out in pieces where there is a sink.
    using PayloadSink = std::function<void(std::string_view)>;
    bool skip();
    bool read(const PayloadSink& sink = {});

    const ImageSector& sector() const { return m_sector; }

    // How many sectors were begun, the one that a fault lies in included.
    std::uint64_t numBegun() const { return m_numBegun; }

    bool hasHeader() const { return m_hasHeader; }
    bool headerReservedIsUsed() const { return m_headerReservedIsUsed; }

    // Why the walk ended before the file: the library's message, the place, and what is wrong there. Empty
    // where it didn't.
    const std::string& fault() const { return m_fault; }

    // Bytes walked over so far: the file's size once `next` was false without a fault.
    std::uint64_t numBytes() const { return m_at; }

private:
    const unsigned char* window() const { return m_window.get() + m_begin; }
    std::size_t peek(std::size_t size);
    std::uint64_t pass(std::uint64_t count);
    void readRecord();
    bool readTail(std::uint64_t tailOffset);
    void explainHead(std::size_t numBytes);
    void fail(const zbinternals::Error& error, const std::string& why);

    InputFile& m_input;
    std::unique_ptr<unsigned char[]> m_window; // bytes of the file from `m_at` on
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::uint64_t m_at = 0;
    std::uint64_t m_nextAt = 0; // where the next sector starts
    std::uint64_t m_numBegun = 0;
    bool m_hasHeader = false;
    bool m_headerReservedIsUsed = false;
    ImageSector m_sector;
    std::string m_fault;
};
