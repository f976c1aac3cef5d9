#pragma once

#include "tools/zetool/Invocation.h"

// zetool elf header: the file header and the program headers.
int elfHeader(const Invocation& invocation);
