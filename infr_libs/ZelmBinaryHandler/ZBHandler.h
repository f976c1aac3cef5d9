#pragma once

// The sector container of image files: an 8-byte header and a flat run of typed sectors, each with a payload
// of its own (docs/formats/container.md shows the bytes). This module of plain functions reads and writes it,
// builds sectors of every type and looks into them. A handle belongs to one thread at a time.
//
// A failure leaves `errorCode` and `errorMessage` in the handle, and what was read or added before it stays;
// a later failure overwrites an earlier one. Nothing is thrown, and nothing is printed but by the checked
// accessors. Payloads of more than 2^31 - 1 bytes count as out of memory.

#include <cstddef>
#include <cstdint>
#include <cstdio>

// What a sector carries. The numbers are those of the file and must never change; a reader takes any other
// 16-bit number too, and keeps it.
enum ZBSectorType : std::int32_t {
    ZBSEC_BINARY = 1,        // image prefix with the load address, then a flat memory image
    ZBSEC_ELF = 2,           // image prefix, then a whole ELF file
    ZBSEC_SYSCONFIG = 3,     // the system configuration document, XML without a terminator
    ZBSEC_NODEDESC = 4,      // node descriptor: node number and part number
    ZBSEC_GOTO = 5,          // control record: jump for one core
    ZBSEC_CALL = 6,          // control record: call for one core
    ZBSEC_ZN = 8,            // the network description, XML without a terminator
    ZBSEC_OTP = 10,          // image prefix, then a one-time-programmable memory image
    ZBSEC_OTP_EXTENDED = 11, // as ZBSEC_OTP
    ZBSEC_END = 0x5555,      // no payload; a reader goes on behind it
};

// One sector of a handle's list, owned by the handle.
struct ZBSectorHolder_tag {
    std::int32_t type = 0;              // a ZBSectorType, or any number that a file gave
    unsigned char* data = nullptr;      // the payload, its prefix included, made by malloc; null without one
    std::uint64_t length = 0;           // of the payload, in bytes
    std::uint32_t crc = 0;              // as last read from a file or written to one
    ZBSectorHolder_tag* next = nullptr; // in file order
};

struct ZBRetired_tag;

// A container in memory. Callers read the first four fields; this module alone changes them.
struct ZBHandler {
    char* filename = nullptr;                  // of the file last read or written, or null
    ZBSectorHolder_tag* firstSector = nullptr; // null in an empty container
    std::int32_t errorCode = 0;                // 0: no error
    const char* errorMessage = nullptr;        // a static text; null until a loader or a failure sets it

    ZBSectorHolder_tag* lastSector = nullptr; // where the next sector goes; null in an empty container
    ZBRetired_tag* retired = nullptr;         // what left the handle while a caller may still point to it
};

// --- Handles ---

// A new, empty handle, to be given to `deleteZBHandler`; null when out of memory.
ZBHandler* createZBHandler();

// Frees the handle with all its sectors. Null is ignored.
void deleteZBHandler(ZBHandler* handle);

// Keeps a copy of the text as the handle's file name. The earlier copy stays valid as long as the handle.
void setZBHandlerFilename(ZBHandler* handle, const char* filename);

// --- Reading ---

// Each gives a new handle whose `errorCode` tells whether it is good. Sectors before a fault are kept, and a
// sector whose CRC is wrong too (as the last one); a stored CRC of 0 matches everything.

// Null only if no handle could be made.
ZBHandler* loadZBFromMemory(const void* buffer, std::size_t numBytes);

// Reads the whole stream, whatever its position. Null if its size can't be told or is more than 2^31 - 1, if
// fewer bytes come than the size promises, or when out of memory. The stream stays the caller's.
ZBHandler* loadZBFromHandle(std::FILE* stream);

// A file that can't be opened, or opens but can't be read (a folder), gives a handle with error 9. Null only
// if no handle could be made.
ZBHandler* loadZBFromFile(const char* path);

// --- Writing ---

// Size of the file that the handle would make, in bytes.
std::uint64_t getZBFileSize(const ZBHandler* handle);

// The number of bytes written, or -1 with error 7 when they don't fit; what fitted is then in the buffer.
// Stores the CRC of each sector in its `crc`.
std::int32_t writeZBToMemory(ZBHandler* handle, void* buffer, std::int32_t bufferSize);

// Writes at the stream's position, and flushes. 0, or -1.
int writeZBToHandle(ZBHandler* handle, std::FILE* stream);

// Replaces the file. 0, or -1. The path becomes the handle's file name, also when writing fails.
int writeZBToFile(ZBHandler* handle, const char* path);

// --- Building ---

// Each appends a sector with a copy of the data (zeros for null), and returns it; or null with error 3 when
// out of memory (a sector whose payload couldn't be made stays in the list, with null `data` and its
// `length`).

ZBSectorHolder_tag* addZBSector(ZBHandler* handle, std::int32_t type, std::uint64_t numBytes,
                                const void* data);
ZBSectorHolder_tag* addBinaryZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                      std::uint64_t address, const void* data, std::uint64_t numBytes);
ZBSectorHolder_tag* addElfZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                   const void* data, std::uint64_t numBytes);
ZBSectorHolder_tag* addOtpZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                   const void* data, std::uint64_t numBytes);
ZBSectorHolder_tag* addOtpExtendedZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                           const void* data, std::uint64_t numBytes);
ZBSectorHolder_tag* addGotoZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core);
ZBSectorHolder_tag* addCallZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core);
ZBSectorHolder_tag* addZnZBSector(ZBHandler* handle, std::uint64_t numBytes, const void* data);
ZBSectorHolder_tag* addEndZBSector(ZBHandler* handle);

// The low 16 bits of the node number are stored.
ZBSectorHolder_tag* addNodeDescZBSector(ZBHandler* handle, std::uint32_t node, std::uint64_t partNumber);

// Overwrites the first descriptor of the node (by the low 16 bits of its number) and returns it; adds one
// where there is none.
ZBSectorHolder_tag* addOrSetNodeDescZBSector(ZBHandler* handle, std::uint32_t node, std::uint64_t partNumber);

// Does nothing and returns null, by design: configuration sectors are added with `addZBSector`.
template<typename... Arguments>
ZBSectorHolder_tag* addConfigZBSector(const Arguments&...) {
    return nullptr;
}

// --- Looking into sectors ---

ZBSectorHolder_tag* getFirstSector(const ZBHandler* handle);

// The handle isn't used. Null behind the last sector, and for null.
ZBSectorHolder_tag* getNextSector(const ZBHandler* handle, const ZBSectorHolder_tag* sector);

// The fields of an image prefix or control record, whatever the sector's type; 0 where the payload is too
// short for one.
std::uint16_t getSectorNodeNum(const ZBSectorHolder_tag* sector);
std::uint16_t getSectorCoreNum(const ZBSectorHolder_tag* sector);
std::uint64_t getSectorAddress(const ZBSectorHolder_tag* sector);

// Whether the type is one whose payload is an image prefix and an image.
bool sectorIsImage(const ZBSectorHolder_tag* sector);

// The next four are checked: a sector of another type is a programming fault, which prints a line to standard
// output and ends the process with status 0.

// The image behind the prefix; owned by the sector. No bytes (0 and null) where the payload is shorter than
// the prefix.
std::uint64_t getSectorImageNumBytes(const ZBSectorHolder_tag* sector);
unsigned char* getSectorImageData(const ZBSectorHolder_tag* sector);

std::uint16_t getSectorNodeDescriptorNodeNum(const ZBSectorHolder_tag* sector);
std::uint64_t getSectorNodeDescriptorPartNumber(const ZBSectorHolder_tag* sector);

// --- Editing ---

// Both take every sector of their type out of the list, and return 0. A removed sector is freed with its
// payload; one without a payload stays readable as long as the handle.
int removeLongZBConfigs(ZBHandler* handle);
int removeEndZBSector(ZBHandler* handle);

// Puts other data in the place of a sector's payload, and frees the old. The handle isn't used. The sector
// takes ownership of the data, which must come from malloc. `crc` stays as it was.
void replaceZBSectorData(ZBHandler* handle, ZBSectorHolder_tag* sector, std::uint64_t numBytes, void* data);

// Turns every ELF sector into a flat binary sector, and gives each image's entry point to the next GOTO
// sector of its core. 0, or -1 at the first image that can't be flattened; those before it stay flat.
int banishElves(ZBHandler* handle);

// The same for files that nobody vouches for: as soon as the flat images together have more than that many
// bytes, it counts as out of memory. A gap between two segments is as long as their addresses claim.
int banishElves(ZBHandler* handle, std::uint64_t maxBytes);

// The flat memory image of a 32-bit ELF file in the host's byte order: the file bytes of its segments, with
// zeros between. The caller frees it. Null with an error in the handle when there is none. The buffer must
// hold all that the headers name: its size isn't known here. Callers who have the size use `banishElves`.
unsigned char* loadElfFromBuffer(ZBHandler* handle, const void* buffer, std::uint64_t* numBytes,
                                 std::uint32_t* base, std::uint32_t* entry);
