#pragma once

#include <string>
#include <vector>

// Small good files of all kinds, for fuzz targets to begin with.
std::vector<std::string> elfSeeds();

// A file with something of everything: segments, sections of all types, relocations, a group.
class ElfBuilder;
ElfBuilder richElf();
