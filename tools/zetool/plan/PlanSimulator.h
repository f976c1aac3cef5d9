#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"
#include "tools/zetool/plan/PlanImage.h"

// Answers the plugin's tracers as a simulator would that has just what the image tells of. All states are at
// rest. The callbacks carry no context, so there is one such simulator at a time: the one made last.
class PlanSimulator {
public:
    // The image must outlive the simulator.
    explicit PlanSimulator(const PlanImage& image);
    ~PlanSimulator();

    PlanSimulator(const PlanSimulator&) = delete;
    PlanSimulator& operator=(const PlanSimulator&) = delete;

    TracePluginCallbacks* callbacks() { return &m_callbacks; }

private:
    TracePluginCallbacks m_callbacks;
};
