#pragma once

#include "tools/zetool/Invocation.h"

// zetool zn check: what loading a network has to say.
int znCheck(const Invocation& invocation);
