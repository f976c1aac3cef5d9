#pragma once

#include "tools/zetool/Invocation.h"

// zetool target find: the files that a name leads to.
int targetFind(const Invocation& invocation);
