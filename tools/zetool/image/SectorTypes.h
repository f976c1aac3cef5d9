#pragma once

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include <cstdint>
#include <string>
#include <string_view>

// What a sector's payload begins with.
enum class SectorRecord {
    None,  // the payload is what it is
    Place, // node, core and address
    Node,  // node and part number
};

// What the commands know of a type of sector.
struct SectorTypeRow {
    std::int32_t type;
    const char* name;      // one word
    const char* extension; // of a file that holds the payload
    SectorRecord record;
    bool isImage; // data stands behind the record
};

// Null for a type that nobody writes.
const SectorTypeRow* findSectorType(std::int32_t type);
const SectorTypeRow* findSectorType(std::string_view name);

// The type's name, or its number as "type 7".
std::string sectorTypeText(std::int32_t type);

// A CRC, in all its digits.
std::string crcText(std::uint32_t crc);
