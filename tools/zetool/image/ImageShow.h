#pragma once

#include "tools/zetool/Invocation.h"

// zetool image show: the file's header, and every field of a sector or of all.
int imageShow(const Invocation& invocation);
