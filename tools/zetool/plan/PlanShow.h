#pragma once

#include "tools/zetool/Invocation.h"

// zetool plan: the signals, the arguments and the troubles of a run that hasn't begun.
int planShow(const Invocation& invocation);
