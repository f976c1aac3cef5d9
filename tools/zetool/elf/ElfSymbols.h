#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf symbols: the tables of symbols.
int elfSymbols(const Invocation& invocation);
