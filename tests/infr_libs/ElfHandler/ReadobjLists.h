#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"

#include <string>
#include <vector>

// Lists of what is in an ELF file, a line each, made by llvm-readobj and by this library in one form, so that
// a test can hold them against each other.
struct ElfLists {
    std::vector<std::string> sections;    // index, name and the fields of the header
    std::vector<std::string> symbols;     // name and the fields of the symbol
    std::vector<std::string> relocations; // section of the table, offset, type, symbol, addend
    std::vector<std::string> groups;      // section, COMDAT or not, signature, members
    std::string complaints;               // what llvm-readobj minded
};

ElfLists readobjLists(const std::string& file);
ElfLists ourLists(const ElfHandler& elf);
