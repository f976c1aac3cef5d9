#pragma once

#include "tools/zetool/Invocation.h"

// zetool image list: a row a sector.
int imageList(const Invocation& invocation);
