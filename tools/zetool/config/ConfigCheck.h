#pragma once

#include "tools/zetool/Invocation.h"

// zetool config check: holds a configuration against the schema.
int configCheck(const Invocation& invocation);
