#pragma once

#include "tools/zetool/Invocation.h"

// zetool image check: what opening an image would say, and what it wouldn't notice.
int imageCheck(const Invocation& invocation);
