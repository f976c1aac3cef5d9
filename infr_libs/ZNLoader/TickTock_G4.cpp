#include "infr_libs/ZNLoader/TickTock_G4.h"

namespace {

// The highest reference divider that may be given, and how many the search knows: the two differ by one,
// as wanted.
constexpr unsigned s_maxGivenRefDiv = 255;
constexpr unsigned s_numSearchedRefDivs = 256;

constexpr unsigned s_feedbackShift = 8;
constexpr unsigned s_outputShift = 16;
// Selects the VCO's upper range.
constexpr unsigned s_highVcoShift = 24;
constexpr unsigned s_highVcoFreq = 500000000;

} // namespace

constexpr PllLimits TickTock_G4::s_limits = {
    .m_minInputFreq = 12500000,
    .m_maxInputFreq = 100000000,
    .m_minPfdFreq = 4000000,
    .m_maxPfdFreq = 100000000,
    .m_minVcoFreq = 250000000,
    .m_maxVcoFreq = 1000000000,
    .m_maxInputDiv = 32,
    .m_maxFeedbackDiv = 255,
    .m_maxOutputDiv = 250,
    .m_feedbackStepsPerUnit = 1,
    .m_inputGapLow = 20000000,
    .m_inputGapHigh = 25000000,
};

std::unique_ptr<TickTock_G4> TickTock_G4::create(ZNUtils* znUtils) {
    auto planner = std::make_unique<TickTock_G4>();
    static_cast<PllLimits&>(*planner) = s_limits;
    planner->m_znUtils = znUtils;
    return planner;
}

unsigned TickTock_G4::getExternalDiv() {
    return 2;
}

unsigned TickTock_G4::getPllReg(unsigned inputDiv, unsigned feedbackDiv, unsigned outputDiv,
                                unsigned vcoFreq) {
    const unsigned highVco = vcoFreq > s_highVcoFreq ? 1 : 0;
    return (inputDiv - 1) + ((feedbackDiv - 1) << s_feedbackShift) + ((outputDiv - 1) << s_outputShift) +
           (highVco << s_highVcoShift);
}

unsigned TickTock_G4::calculateRefDivValueFromDiv(unsigned pllFreq, unsigned refDiv, unsigned* refFreq) {
    return encodeRefDivider(pllFreq, refDiv, s_maxGivenRefDiv, refFreq);
}

// Reports without a throw, unlike the other device: wanted. Callers see it by the frequency of 0.
unsigned TickTock_G4::bestRefDivider(unsigned pllFreq, unsigned refFreq, unsigned& actualRefFreq) {
    return findRefDivider(pllFreq, refFreq, s_numSearchedRefDivs, actualRefFreq);
}
