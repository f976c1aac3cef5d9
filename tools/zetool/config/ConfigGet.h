#pragma once

#include "tools/zetool/Invocation.h"

// zetool config get: elements and values by their paths.
int configGet(const Invocation& invocation);
