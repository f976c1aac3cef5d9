#pragma once

#include "tools/zetool/plan/PlanSignals.h"
#include "tools/zetool/wave/WaveTroubles.h"

#include <string>
#include <vector>

// A name that viewers will stumble over.
struct PlanStumble {
    const TroubleRow* row; // what it is, and whom it hits
    std::string text;      // the name, or the line of the structure document that it stands in
};

// By kind, and within a kind in the order of the declarations; each kind and text once. Troubles that every
// waveform of the plugin has, whatever its names, aren't among them.
std::vector<PlanStumble> stumblesOf(const PlanHead& head);
