#pragma once

#include "tools/zetool/Invocation.h"

// zetool image extract: what sectors hold, as files.
int imageExtract(const Invocation& invocation);
