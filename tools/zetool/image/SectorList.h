#pragma once

#include "tools/zetool/image/SectorWalker.h"
#include "tools/zetool/Json.h"

#include <vector>

// What `image list` and `image show` have in common.

// The sectors of a file, and why there are no more of them: empty at the file's end.
struct SectorList {
    std::vector<ImageSector> sectors;
    std::string fault;
    bool hasHeader = false;
    bool headerReservedIsUsed = false;
};

// Reads heads, or with `check` the payloads too.
SectorList readSectors(InputFile& input, bool check);

// Messages on the fault, and on each wrong CRC. True if there was one.
bool printFaults(const std::string& file, const SectorList& list);

// A sector as JSON shows it.
Json sectorJson(const ImageSector& sector);
