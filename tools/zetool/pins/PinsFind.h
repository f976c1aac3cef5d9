#pragma once

#include "tools/zetool/Invocation.h"

// zetool pins find: what is connected to pins, ports and links.
int pinsFind(const Invocation& invocation);
