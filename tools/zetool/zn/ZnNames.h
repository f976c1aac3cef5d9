#pragma once

#include "tools/zetool/Invocation.h"

// zetool zn names: cores and the names of their ports.
int znNames(const Invocation& invocation);
