#pragma once

#include "tools/zetool/elf/ElfFault.h"
#include "tools/zetool/elf/ElfReading.h"
#include "tools/zetool/elf/ElfView.h"

#include <vector>

// What the entries of a sound file's tables hold to. A table has one fault for all its entries of a kind.

// With `sectionsToo`, also symbols of sections that aren't there, of which the library tells where it reads
// the file.
void addSymbolFaults(const ElfView& view, bool sectionsToo, std::vector<ElfFault>& faults);
void addRelocationFaults(const ElfView& view, std::vector<ElfFault>& faults);

// Symbols and sections whose names the plugin's reader takes for others than the file has: of strings that
// hold a text twice, it moves what stands behind.
void addNameFaults(const ElfView& view, const ElfHandler& elf, std::vector<ElfFault>& faults);
