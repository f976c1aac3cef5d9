#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf functions: the functions of a core's programs, with the short names of the waveform.
int elfFunctions(const Invocation& invocation);
