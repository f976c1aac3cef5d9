#pragma once

#include "tools/zetool/wave/StandardNames.h"
#include "tools/zetool/wave/StandardSignals.h"
#include "tools/zetool/wave/TimeScale.h"

#include <string>

// What stands before the values of a standard file: date, version, timescale, the structure document with
// its names adapted (where it is wanted and the source has one), scopes and variables.
std::string standardDeclarations(const VcdHeader& header, const WaveSignals& signals,
                                 const StandardSignals& chosen, const StandardNames& names,
                                 const TimeScale& scale, bool withStructure);
