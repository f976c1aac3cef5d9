#pragma once

#include "tools/zetool/Invocation.h"

// zetool wave check: what readers will stumble over, and whether the last step is whole.
int waveCheck(const Invocation& invocation);
