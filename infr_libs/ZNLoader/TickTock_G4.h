#pragma once

#include "infr_libs/ZNLoader/TickTock.h"

#include <memory>

// The planner of devices whose PLL runs at twice the system frequency, with whole feedback steps.
class TickTock_G4 : public TickTock {
public:
    static const PllLimits s_limits;

    // A planner with the device's limits. `znUtils` must outlive it.
    static std::unique_ptr<TickTock_G4> create(ZNUtils* znUtils);

    unsigned calculateRefDivValueFromDiv(unsigned pllFreq, unsigned refDiv, unsigned* refFreq) override;
    unsigned getExternalDiv() override;
    unsigned getPllReg(unsigned inputDiv, unsigned feedbackDiv, unsigned outputDiv,
                       unsigned vcoFreq) override;
    unsigned bestRefDivider(unsigned pllFreq, unsigned refFreq, unsigned& actualRefFreq) override;
};
