#include "tools/zetool/image/SectorWalker.h"

#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <algorithm>
#include <cstring>
#include <limits>

using namespace zblayout;

namespace {

constexpr std::size_t s_windowSize = std::size_t{1} << 16;
constexpr std::uint64_t s_unknown = std::numeric_limits<std::uint64_t>::max();

bool anyOf(const unsigned char* bytes, std::size_t from, std::size_t to) {
    return std::any_of(bytes + from, bytes + to, [](unsigned char byte) { return byte != 0; });
}

} // namespace

std::uint64_t ImageSector::prefixSize() const {
    return hasRecord && row->isImage ? s_recordSize : 0;
}

std::string ImageSector::place() const {
    return "sector " + std::to_string(index) + " at offset " + std::to_string(offset);
}

std::string ImageSector::crcFault() const {
    return place() + ": " + zbinternals::s_badCrc.text + ": " + crcText(crc) + " is stored, " +
           crcText(computedCrc.value_or(0)) + " computed";
}

SectorWalker::SectorWalker(InputFile& input)
    : m_input(input), m_window(std::make_unique_for_overwrite<unsigned char[]>(s_windowSize)) {
    const std::size_t size = peek(s_fileHeaderSize);
    if (const zbinternals::Error* error = findZBHeaderError(window(), size)) {
        m_fault = error->text;
        return;
    }
    m_hasHeader = true;
    m_headerReservedIsUsed = anyOf(window(), s_versionEnd, size);
    m_nextAt = s_fileHeaderSize;
}

bool SectorWalker::next() {
    if (!m_fault.empty())
        return false;
    pass(m_nextAt - m_at); // by its rounding the last sector may end behind the file
    const std::size_t size = peek(s_payloadOffset);
    if (size == 0)
        return false;
    m_sector = {};
    m_sector.index = m_numBegun;
    m_sector.offset = m_at;
    if (m_numBegun == s_mostSectors) {
        m_fault = "there are more than " + std::to_string(s_mostSectors) +
                  " sectors; the rest, from offset " + std::to_string(m_at) + " on, isn't looked at";
        return false;
    }
    ++m_numBegun;
    // How much is left is seen at the sector's end: a pipe doesn't tell.
    const bool isWholeHead = size == s_payloadOffset;
    if (!readZBSectorHead(window(), isWholeHead ? s_unknown : size, &m_sector.head)) {
        explainHead(size);
        return false;
    }
    m_sector.row = findSectorType(m_sector.head.type);
    m_sector.reservedIsUsed = anyOf(window(), s_typeOffset + 2, s_sizeOffset) ||
                              (m_sector.hasPayload() && anyOf(window(), s_padOffset + 1, s_payloadOffset));
    m_sector.isWhole = !m_sector.hasPayload();
    m_nextAt = m_sector.offset + s_sectorHeaderSize;
    if (m_sector.hasPayload())
        readRecord();
    return true;
}

bool SectorWalker::skip() {
    if (!m_sector.hasPayload())
        return true;
    const std::uint64_t tailOffset = s_payloadOffset + m_sector.head.length;
    pass(tailOffset);
    return readTail(tailOffset);
}

bool SectorWalker::read(const PayloadSink& sink) {
    if (!m_sector.hasPayload())
        return true;
    ZBCrc crc;
    crc.add(window(), s_payloadOffset); // all there: the head was read from it
    pass(s_payloadOffset);
    for (std::uint64_t left = m_sector.head.length; left > 0;) {
        const std::size_t size = peek(static_cast<std::size_t>(std::min<std::uint64_t>(left, s_windowSize)));
        if (size == 0)
            break;
        crc.add(window(), size);
        if (sink)
            sink({reinterpret_cast<const char*>(window()), size});
        pass(size);
        left -= size;
    }
    const std::size_t pad = m_sector.head.pad;
    if (peek(pad) >= pad) {
        crc.add(window(), pad);
        m_sector.paddingIsUsed = anyOf(window(), 0, pad);
    }
    if (!readTail(s_payloadOffset + m_sector.head.length))
        return false;
    m_sector.computedCrc = crc.value();
    return true;
}

// The end of a sector from its padding on.
bool SectorWalker::readTail(std::uint64_t tailOffset) {
    const ZBSectorHead& head = m_sector.head;
    const std::uint64_t before = m_at - m_sector.offset;
    const auto wanted = static_cast<std::size_t>(head.numBytes - tailOffset);
    const std::size_t size = before == tailOffset ? peek(wanted) : 0;
    if (before != tailOffset || size < wanted) {
        fail(zbinternals::s_cutOff, "it claims " + std::to_string(head.numBytes) +
                                        " bytes, but the file has " + std::to_string(before + size) +
                                        " of them");
        return false;
    }
    m_sector.crc = readLittleEndian32(window() + (head.crcOffset - tailOffset));
    m_sector.isWhole = true;
    m_nextAt = roundUp(m_sector.offset + head.crcOffset + s_crcSize);
    return true;
}

void SectorWalker::readRecord() {
    if (!m_sector.row || m_sector.row->record == SectorRecord::None || m_sector.head.length < s_recordSize)
        return;
    if (peek(s_payloadOffset + s_recordSize) < s_payloadOffset + s_recordSize)
        return; // cut: seen at the end
    const unsigned char* const record = window() + s_payloadOffset;
    m_sector.hasRecord = true;
    m_sector.node = readLittleEndian16(record + s_nodeOffset);
    if (m_sector.row->record == SectorRecord::Place)
        m_sector.core = readLittleEndian16(record + s_coreOffset);
    m_sector.address = readLittleEndian64(
        record + (m_sector.row->record == SectorRecord::Place ? s_addressOffset : s_partNumberOffset));
}

// Why a head isn't one.
void SectorWalker::explainHead(std::size_t numBytes) {
    const auto numberOf = [](auto number) { return std::to_string(number); };
    if (numBytes < s_sectorHeaderSize) {
        fail(zbinternals::s_cutOff,
             "the file ends behind " + numberOf(numBytes) + " bytes of its " + numberOf(s_sectorHeaderSize));
        return;
    }
    const std::uint64_t size = readLittleEndian64(window() + s_sizeOffset);
    const unsigned pad = numBytes > s_padOffset ? window()[s_padOffset] : 0;
    m_sector.head.size = size;
    if (size < s_padWordSize + s_crcSize)
        fail(zbinternals::s_cutOff, "its size of " + numberOf(size) + " is too small for pad word and CRC");
    else if (numBytes == s_payloadOffset && pad > s_maxPad)
        fail(zbinternals::s_cutOff,
             "its padding of " + numberOf(pad) + " bytes is more than " + numberOf(s_maxPad));
    else if (numBytes == s_payloadOffset && size < s_padWordSize + pad + s_crcSize)
        fail(zbinternals::s_cutOff, "its size of " + numberOf(size) + " is too small for its padding of " +
                                        numberOf(pad) + " bytes");
    else if (numBytes == s_payloadOffset)
        fail(zbinternals::s_cutOff, "its size of " + numberOf(size) + " is more than any file's");
    else
        fail(zbinternals::s_cutOff, "its size is " + numberOf(size) + ", but the file has " +
                                        numberOf(numBytes - s_sectorHeaderSize) + " bytes behind that");
}

void SectorWalker::fail(const zbinternals::Error& error, const std::string& why) {
    m_fault = m_sector.place() + ": " + error.text + ": " + why;
}

// Makes the window hold that many bytes, as far as the file has them; gives how many of them it holds.
std::size_t SectorWalker::peek(std::size_t size) {
    if (m_end - m_begin < size && m_begin > 0) {
        std::memmove(m_window.get(), window(), m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    // Small reads for heads: what lies behind one is mostly passed over.
    constexpr std::size_t s_smallRead = 64;
    while (m_end - m_begin < size) {
        const std::size_t room = s_windowSize - m_end;
        const std::size_t wanted = std::min(room, std::max(size - (m_end - m_begin), s_smallRead));
        const std::size_t count = m_input.read(reinterpret_cast<char*>(m_window.get()) + m_end, wanted);
        if (count == 0)
            break;
        m_end += count;
    }
    return std::min(size, m_end - m_begin);
}

// Passes over bytes; gives how many there were.
std::uint64_t SectorWalker::pass(std::uint64_t count) {
    const auto held = static_cast<std::size_t>(std::min<std::uint64_t>(count, m_end - m_begin));
    m_begin += held;
    if (m_begin == m_end)
        m_begin = m_end = 0;
    const std::uint64_t passed = held + (count > held ? m_input.skip(count - held) : 0);
    m_at += passed;
    return passed;
}
