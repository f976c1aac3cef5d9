#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf check: what is wrong with a file.
int elfCheck(const Invocation& invocation);
