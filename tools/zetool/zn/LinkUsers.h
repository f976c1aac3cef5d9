#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tools/zetool/OutputFile.h"

#include <cstdint>

class JsonStream;

// The routes that cross a link. A network of N nodes has some N * N * log2(N) / 2 of them, so that none of
// these forms is ever held whole.

// Elements [source, destination] of the list that is open.
void writeUsers(JsonStream& json, const ZNLoader::Zlink& link);

// The CRC-32 of a line "source TAB destination" for each pair.
std::uint32_t userCrc32(const ZNLoader::Zlink& link);

// Lines "  source > destination destination", one for pairs of one source that stand together.
void writeUsers(OutputFile& output, const ZNLoader::Zlink& link);
