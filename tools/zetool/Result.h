#pragma once

#include "tools/zetool/Invocation.h"
#include "tools/zetool/OutputFile.h"

// Where a command that shows something writes: the file of `-o`, which it replaces only with `--force`, or
// standard output.
OutputFile resultFile(const Invocation& invocation);
