#pragma once

#include "tools/zetool/Invocation.h"

// zetool wave standard: the waveform as IEEE 1364 has it.
int waveStandard(const Invocation& invocation);
