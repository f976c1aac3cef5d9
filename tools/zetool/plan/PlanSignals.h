#pragma once

#include "tools/zetool/plan/PlanImage.h"
#include "tools/zetool/plan/PlanWords.h"
#include "tools/zetool/wave/VcdHeader.h"

#include <string>
#include <vector>

// What is traced on one core.
struct PlanTrace {
    const PlanCore* core;
    std::vector<const PlanWord*> words; // in order; of two that set the same the later counts
};

// The head of a waveform, from the structure document to the end of the declarations, as the plugin's own
// tracers write it for the image, and as the tool's own reader of waveforms reads it.
struct PlanHead {
    std::string text;
    VcdHeader header;

    // Aliases are the names that the structure document gives to ports and functions of all cores.
    enum class Aliases { Without, With };

    // `pads`: with the pads of the device.
    PlanHead(const PlanImage& image, bool pads, const std::vector<PlanTrace>& traces, Aliases aliases);
};
