#pragma once

#include "tools/zetool/Invocation.h"

// zetool pll: dividers, frequencies and registers.
int pllShow(const Invocation& invocation);
