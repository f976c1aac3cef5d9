#pragma once

#include "tools/zetool/plan/PlanSignals.h"

#include <optional>
#include <string>
#include <vector>

// The argument string that makes an instance of the plugin trace just this. Nothing where a name can't stand
// in one: quotes ' have no other form there.
std::optional<std::string> planArguments(const std::string& image, const std::string& waveform, bool pads,
                                         const std::vector<PlanTrace>& traces);
