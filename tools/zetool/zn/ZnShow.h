#pragma once

#include "tools/zetool/Invocation.h"

// zetool zn show: the network as the loader holds it, as tables or as the whole model in JSON.
int znShow(const Invocation& invocation);
