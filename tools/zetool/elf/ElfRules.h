#pragma once

#include "tools/zetool/elf/ElfFault.h"
#include "tools/zetool/elf/ElfView.h"

#include <vector>

// What a sound ELF file holds to, and reading wouldn't notice. Each operation adds the faults of one subject.

void addHeaderFaults(const ElfView& view, std::vector<ElfFault>& faults);
void addSegmentFaults(const ElfView& view, std::vector<ElfFault>& faults);
void addSectionFaults(const ElfView& view, std::vector<ElfFault>& faults);

// Headers and contents of sections that share bytes of the file, and segments that share memory.
void addOverlaps(const ElfView& view, std::vector<ElfFault>& faults);
