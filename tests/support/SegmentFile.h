#pragma once

#include "tests/support/ElfBuilder.h"

// An ELF file of segments and nothing else: no sections but the null section, no symbols. What a loader of
// memory images needs.
LabelledBytes segmentFile(std::uint32_t entry, const std::vector<ElfBuilder::Segment>& segments);

// A loadable segment of these bytes.
ElfBuilder::Segment bytesAt(std::uint32_t address, std::string bytes);
