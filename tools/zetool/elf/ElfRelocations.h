#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf relocations: the tables of relocations.
int elfRelocations(const Invocation& invocation);
