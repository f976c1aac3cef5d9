#pragma once

#include "tools/zetool/Invocation.h"

// zetool wave list: what the header declares, with what the structure document tells of it.
int waveList(const Invocation& invocation);
