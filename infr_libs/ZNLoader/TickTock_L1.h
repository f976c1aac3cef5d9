#pragma once

#include "infr_libs/ZNLoader/TickTock.h"

#include <memory>

// The planner of devices whose PLL makes the system frequency itself, with half feedback steps.
class TickTock_L1 : public TickTock {
public:
    static const PllLimits s_limits;

    // A planner with the device's limits. `znUtils` must outlive it.
    static std::unique_ptr<TickTock_L1> create(ZNUtils* znUtils);

    unsigned calculateRefDivValueFromDiv(unsigned pllFreq, unsigned refDiv, unsigned* refFreq) override;
    unsigned getExternalDiv() override;
    unsigned getPllReg(unsigned inputDiv, unsigned feedbackDiv, unsigned outputDiv,
                       unsigned vcoFreq) override;
    unsigned bestRefDivider(unsigned pllFreq, unsigned refFreq, unsigned& actualRefFreq) override;
};
