#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <algorithm>
#include <limits>
#include <map>
#include <new>

using namespace zbinternals;
using namespace zblayout;

namespace {

// The ELF structures are read in the host's byte order: only the version word tells a file of the other
// order.
struct ElfHeader {
    unsigned char e_ident[16];
    std::uint16_t e_type;
    std::uint16_t e_machine;
    std::uint32_t e_version;
    std::uint32_t e_entry;
    std::uint32_t e_phoff;
    std::uint32_t e_shoff;
    std::uint32_t e_flags;
    std::uint16_t e_ehsize;
    std::uint16_t e_phentsize;
    std::uint16_t e_phnum;
    std::uint16_t e_shentsize;
    std::uint16_t e_shnum;
    std::uint16_t e_shstrndx;
};
static_assert(sizeof(ElfHeader) == 52);

struct ProgramHeader {
    std::uint32_t p_type;
    std::uint32_t p_offset;
    std::uint32_t p_vaddr;
    std::uint32_t p_paddr;
    std::uint32_t p_filesz;
    std::uint32_t p_memsz;
    std::uint32_t p_flags;
    std::uint32_t p_align;
};
static_assert(sizeof(ProgramHeader) == 32);

constexpr std::size_t s_sectionHeaderSize = 40;
constexpr std::uint32_t s_firstWrongVersion = 0x10000; // a version of the other byte order is at least this
constexpr std::uint64_t s_addressEnd = std::uint64_t{1} << 32;

// An ELF file in memory. Everything is read through `read`, which holds offset and size against the length.
class ElfBytes {
public:
    ElfBytes(const void* bytes, std::uint64_t numBytes)
        : m_bytes(static_cast<const unsigned char*>(bytes)), m_numBytes(bytes ? numBytes : 0) {}

    bool holds(std::uint64_t offset, std::uint64_t numBytes) const {
        return offset <= m_numBytes && numBytes <= m_numBytes - offset;
    }

    // Only for what `holds` said to be there.
    const unsigned char* at(std::uint64_t offset) const { return m_bytes + offset; }

    template<typename Record>
    Record read(std::uint64_t offset) const {
        Record record;
        std::memcpy(&record, at(offset), sizeof record);
        return record;
    }

private:
    const unsigned char* m_bytes;
    std::uint64_t m_numBytes;
};

// The addresses that an ELF file's segments fill.
struct Span {
    std::uint64_t base = 0;
    std::uint64_t numBytes = 0;
};

// Calls the operation with each program header that has file bytes, whatever its type, the table's last
// first.
template<typename Operation>
void forEachSegmentBackwards(const ElfBytes& elf, const ElfHeader& header, Operation&& operation) {
    for (std::uint64_t i = header.e_phnum; i-- != 0;) {
        const auto segment = elf.read<ProgramHeader>(header.e_phoff + i * sizeof(ProgramHeader));
        if (segment.p_filesz != 0)
            operation(segment);
    }
}

// The parts of an image that are filled already.
class FilledRanges {
public:
    // Fills a range, which isn't empty, and calls the operation with begin and end of each part that was
    // free.
    template<typename Operation>
    void fill(std::uint64_t begin, std::uint64_t end, Operation&& operation) {
        auto range = m_ends.upper_bound(begin);
        if (range != m_ends.begin() && std::prev(range)->second >= begin)
            --range;
        std::uint64_t at = begin;
        while (range != m_ends.end() && range->first <= end) {
            if (range->first > at)
                operation(at, range->first);
            at = std::max(at, range->second);
            begin = std::min(begin, range->first);
            range = m_ends.erase(range);
        }
        if (at < end)
            operation(at, end);
        m_ends[begin] = std::max(at, end);
    }

private:
    std::map<std::uint64_t, std::uint64_t> m_ends; // by begin; apart from each other
};

// Checks the file and finds the span. Null, or the error; without an error the header and all that it and the
// program headers name lie in the file.
const Error* inspectElf(const ElfBytes& elf, ElfHeader* header, Span* span) {
    if (!elf.holds(0, sizeof(ElfHeader)))
        return &s_notElf;
    *header = elf.read<ElfHeader>(0);
    // The identification's first byte may be anything: wanted.
    if (std::memcmp(header->e_ident + 1, "ELF", 3) != 0 || header->e_version >= s_firstWrongVersion)
        return &s_notElf;
    const auto holdsTable = [&elf](std::uint32_t offset, std::uint64_t numEntries, std::size_t entrySize) {
        return numEntries == 0 || elf.holds(offset, numEntries * entrySize);
    };
    if (!holdsTable(header->e_phoff, header->e_phnum, sizeof(ProgramHeader)) ||
        !holdsTable(header->e_shoff, header->e_shnum, s_sectionHeaderSize))
        return &s_notElf;

    bool allInFile = true;
    std::uint64_t base = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t top = 0;
    forEachSegmentBackwards(elf, *header, [&](const ProgramHeader& segment) {
        allInFile = allInFile && elf.holds(segment.p_offset, segment.p_filesz);
        base = std::min<std::uint64_t>(base, segment.p_vaddr);
        top = std::max<std::uint64_t>(top, std::uint64_t{segment.p_vaddr} + segment.p_filesz);
    });
    if (!allInFile)
        return &s_notElf;
    if (top < base || top >= s_addressEnd) // no segment at all, or one beyond the last address
        return &s_badSegments;
    *span = {base, top - base};
    return nullptr;
}

// Copies each segment to its place behind the span's base. Where segments overlap the later one counts, so
// they are taken from the last to the first, and no byte of the image is written twice: 65,535 of them may
// each be as long as the file.
void copySegments(const ElfBytes& elf, const ElfHeader& header, const Span& span, unsigned char* image) {
    FilledRanges filled;
    forEachSegmentBackwards(elf, header, [&](const ProgramHeader& segment) {
        const std::uint64_t place = segment.p_vaddr - span.base;
        filled.fill(place, place + segment.p_filesz, [&](std::uint64_t begin, std::uint64_t end) {
            std::memcpy(image + begin, elf.at(segment.p_offset + (begin - place)), end - begin);
        });
    });
}

// The flat image, with zeros of that number in front; null with an error in the handle. May throw
// std::bad_alloc.
Bytes flatten(ZBHandler& handle, const ElfBytes& elf, std::uint64_t maxBytes, std::size_t room,
              ElfHeader* header, Span* span) {
    if (const Error* error = inspectElf(elf, header, span)) {
        fail(handle, *error);
        return nullptr;
    }
    Bytes image = span->numBytes <= maxBytes ? allocateZeroedBytes(room + span->numBytes) : nullptr;
    if (!image) {
        fail(handle, s_outOfMemoryForImage);
        return nullptr;
    }
    copySegments(elf, *header, *span, image.get() + room);
    return image;
}

// Makes a flat binary sector of an ELF sector, and gives the image's entry point. Takes the flat image's size
// off `maxBytes`.
bool banishElf(ZBHandler& handle, ZBSectorHolder_tag& sector, std::uint64_t* maxBytes, std::uint32_t* entry) {
    ElfHeader header;
    Span span;
    const ElfBytes elf(getSectorImageData(&sector), getSectorImageNumBytes(&sector));
    Bytes payload = flatten(handle, elf, *maxBytes, s_recordSize, &header, &span);
    if (!payload)
        return false;
    *maxBytes -= span.numBytes;
    writeRecord(payload.get(), getSectorNodeNum(&sector), getSectorCoreNum(&sector), span.base);
    replaceZBSectorData(&handle, &sector, s_recordSize + span.numBytes, payload.release());
    sector.type = ZBSEC_BINARY;
    // Of the payload alone, not what a file will hold: wanted.
    sector.crc = computeZBCrc(sector.data, static_cast<std::size_t>(sector.length));
    *entry = header.e_entry;
    return true;
}

// Each entry point goes to the first GOTO sector of its core behind the image. One walk over the list settles
// them all: an entry point waits under its core's number until that sector comes by.
int banishAllElves(ZBHandler& handle, std::uint64_t maxBytes) {
    std::map<std::uint32_t, std::uint32_t> waiting; // entry points, by node and core
    const auto coreOf = [](const ZBSectorHolder_tag& sector) {
        return std::uint32_t{getSectorNodeNum(&sector)} << 16 | getSectorCoreNum(&sector);
    };
    int result = 0;
    for (ZBSectorHolder_tag* sector = handle.firstSector; sector; sector = sector->next) {
        if (sector->type == ZBSEC_ELF && result == 0) {
            std::uint32_t entry = 0;
            if (banishElf(handle, *sector, &maxBytes, &entry))
                waiting[coreOf(*sector)] = entry;
            else
                result = -1; // the images before this one are still owed their GOTO sectors
        } else if (sector->type == ZBSEC_GOTO && sector->data && sector->length >= s_recordSize) {
            const auto found = waiting.find(coreOf(*sector));
            if (found == waiting.end())
                continue;
            writeLittleEndian64(sector->data + s_addressOffset, found->second);
            waiting.erase(found);
        }
    }
    return result;
}

} // namespace

int banishElves(ZBHandler* handle) {
    return banishElves(handle, std::numeric_limits<std::uint64_t>::max());
}

int banishElves(ZBHandler* handle, std::uint64_t maxBytes) {
    try {
        return banishAllElves(*handle, maxBytes);
    } catch (const std::bad_alloc&) {
        fail(*handle, s_outOfMemory);
        return -1;
    }
}

unsigned char* loadElfFromBuffer(ZBHandler* handle, const void* buffer, std::uint64_t* numBytes,
                                 std::uint32_t* base, std::uint32_t* entry) {
    constexpr std::uint64_t noLimit = std::numeric_limits<std::uint64_t>::max();
    try {
        ElfHeader header;
        Span span;
        Bytes image = flatten(*handle, ElfBytes(buffer, noLimit), noLimit, 0, &header, &span);
        if (!image)
            return nullptr;
        *numBytes = span.numBytes;
        *base = static_cast<std::uint32_t>(span.base);
        *entry = header.e_entry;
        return image.release();
    } catch (const std::bad_alloc&) {
        fail(*handle, s_outOfMemoryForImage);
        return nullptr;
    }
}
