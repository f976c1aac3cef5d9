#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf sections: the section headers.
int elfSections(const Invocation& invocation);
