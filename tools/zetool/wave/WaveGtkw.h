#pragma once

#include "tools/zetool/Invocation.h"

// zetool wave gtkw: a session of GTKWave beside the waveform.
int waveGtkw(const Invocation& invocation);
