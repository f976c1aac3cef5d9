#pragma once

#include "tools/zetool/Invocation.h"

// zetool image flatten: ELF sectors to flat binary ones.
int imageFlatten(const Invocation& invocation);
