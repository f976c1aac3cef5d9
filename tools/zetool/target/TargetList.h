#pragma once

#include "tools/zetool/Invocation.h"

// zetool target list: the paths of the environment, and what they hold.
int targetList(const Invocation& invocation);
