#include "infr_libs/ZNLoader/TickTock_L1.h"

#include "infr_libs/ZNLoader/ZNUtils.h"

namespace {

constexpr unsigned s_maxRefDiv = 65536;

constexpr unsigned s_feedbackShift = 8;
constexpr unsigned s_outputShift = 23;

} // namespace

constexpr PllLimits TickTock_L1::s_limits = {
    .m_minInputFreq = 4227642,
    .m_maxInputFreq = 100000000,
    .m_minPfdFreq = 159000,
    .m_maxPfdFreq = 1300000000,
    .m_minVcoFreq = 260000000,
    .m_maxVcoFreq = 1300000000,
    .m_maxInputDiv = 64,
    .m_maxFeedbackDiv = 8192,
    .m_maxOutputDiv = 8,
    .m_feedbackStepsPerUnit = 2,
    .m_inputGapLow = 0,
    .m_inputGapHigh = 0,
};

std::unique_ptr<TickTock_L1> TickTock_L1::create(ZNUtils* znUtils) {
    auto planner = std::make_unique<TickTock_L1>();
    static_cast<PllLimits&>(*planner) = s_limits;
    planner->m_znUtils = znUtils;
    return planner;
}

unsigned TickTock_L1::getExternalDiv() {
    return 1;
}

unsigned TickTock_L1::getPllReg(unsigned inputDiv, unsigned feedbackDiv, unsigned outputDiv, unsigned) {
    return (inputDiv - 1) + ((feedbackDiv - 1) << s_feedbackShift) + ((outputDiv - 1) << s_outputShift);
}

unsigned TickTock_L1::calculateRefDivValueFromDiv(unsigned pllFreq, unsigned refDiv, unsigned* refFreq) {
    return encodeRefDivider(pllFreq, refDiv, s_maxRefDiv, refFreq);
}

unsigned TickTock_L1::bestRefDivider(unsigned pllFreq, unsigned refFreq, unsigned& actualRefFreq) {
    const unsigned reg = findRefDivider(pllFreq, refFreq, s_maxRefDiv, actualRefFreq);
    if (actualRefFreq == 0)
        m_znUtils->throwErrors();
    return reg;
}
