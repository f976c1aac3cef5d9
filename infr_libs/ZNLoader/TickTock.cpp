#include "infr_libs/ZNLoader/TickTock.h"

#include "infr_libs/ZNLoader/ZNUtils.h"

namespace {

constexpr int s_badFrequency = 11107;
constexpr int s_badReferenceFrequency = 11108;
constexpr int s_badComputedDivider = 11109;
constexpr int s_noSettingWithMinimum = 11114;
constexpr int s_noSetting = 11115;
constexpr int s_badReferenceDivider = 11116;
constexpr int s_badInputDivider = 11125;
constexpr int s_badOutputDivider = 11126;
constexpr int s_badFeedbackDivider = 11127;

// The messages print by %d whatever the width and the sign of the number.
int shown(long long value) {
    return static_cast<int>(value);
}

// Of two positive numbers.
long long divideUp(long long dividend, long long divisor) {
    return (dividend + divisor - 1) / divisor;
}

// One way of setting the PLL, its feedback divider being the one of two neighbours that was chosen.
struct Candidate {
    long long feedbackDiv;
    long long freq;  // of the PLL's output
    long long vco;   // frequency
    long long error; // distance from the wanted frequency
};

} // namespace

TickTock::~TickTock() = default;

bool TickTock::testValidFreq(long long inputFreq, long long targetFreq) {
    const bool inGap = inputFreq > m_inputGapLow && inputFreq < m_inputGapHigh;
    if (inputFreq < m_minInputFreq || inputFreq > m_maxInputFreq || inGap)
        m_znUtils->throwError(s_badFrequency, ZNUtils::AppLocation(),
                              "Input frequency (%lld) invalid.  Device cannot boot using this frequency.\n",
                              inputFreq);
    if (targetFreq < m_minVcoFreq / m_maxOutputDiv)
        m_znUtils->throwError(s_badFrequency, ZNUtils::AppLocation(),
                              "Target frequency (%lld) is too low. Minimum PLL frequency with "
                              "maxumimum output divide exceeds this frequency.\n",
                              targetFreq);
    if (targetFreq > m_maxVcoFreq)
        m_znUtils->throwError(s_badFrequency, ZNUtils::AppLocation(),
                              "Target frequency (%lld) is too high. Maximum PLL frequency exceeded.\n",
                              targetFreq);
    return false;
}

bool TickTock::testValidRefFreq(long long pllFreq, long long refFreq) {
    // Equal frequencies are refused too, though a divider of 1 would do: wanted.
    if (refFreq >= pllFreq)
        m_znUtils->throwError(s_badReferenceFrequency, ZNUtils::AppLocation(),
                              "Reference clock frequency (%lld) may not be greater than or equal to "
                              "the PLL frequency (%lld).\n",
                              refFreq, pllFreq);
    return false;
}

unsigned TickTock::calculatePllValue(unsigned inputFreq, unsigned targetFreq, unsigned minFeedbackDiv,
                                     unsigned* actualFreq) {
    const long long pllTarget = static_cast<long long>(getExternalDiv()) * targetFreq;
    testValidFreq(inputFreq, pllTarget);

    // From halves of the ratio to feedback steps, rounded up.
    const auto minFeedback = static_cast<unsigned>((minFeedbackDiv * m_feedbackStepsPerUnit + 1) / 2);
    unsigned found = 0;
    const unsigned reg = bestPllReg(inputFreq, static_cast<unsigned>(pllTarget), minFeedback, found);
    if (found == 0) {
        if (minFeedback != 0)
            m_znUtils->throwError(s_noSettingWithMinimum, ZNUtils::AppLocation(),
                                  "No valid configuration found to obtain target system frequency.  Try "
                                  "reducing the PLL's minimum feedback divider (%d).\n",
                                  shown(minFeedback));
        else
            m_znUtils->throwError(s_noSetting, ZNUtils::AppLocation(),
                                  "No valid configuration found to obtain target system frequency. Input "
                                  "frequency is %d, target frequency is %d.\n",
                                  shown(inputFreq), shown(targetFreq));
    }
    if (actualFreq)
        *actualFreq = found / getExternalDiv();
    return reg;
}

unsigned TickTock::bestPllReg(unsigned inputFreq, unsigned targetFreq, unsigned minFeedback,
                              unsigned& actualFreq) {
    actualFreq = 0;
    // A minimum that the feedback divider can't reach rules out every setting.
    if (inputFreq == 0 || targetFreq == 0 || minFeedback >= m_maxFeedbackDiv)
        return 0;

    const long long input = inputFreq;
    const long long target = targetFreq;
    const long long outMin = m_minVcoFreq <= target ? 1 : divideUp(m_minVcoFreq, target);
    long long bestError = m_maxVcoFreq;
    long long bestFeedback = m_maxFeedbackDiv;
    unsigned bestReg = 0;

    for (long long out = outMin; out * target <= m_maxVcoFreq && out <= m_maxOutputDiv; ++out) {
        const long long stepsOfVco = out * target * m_feedbackStepsPerUnit;
        long long in = minFeedback == 0 ? 1 : divideUp(minFeedback * input, stepsOfVco);
        for (; in <= m_maxInputDiv && input / in >= m_minPfdFreq; ++in) {
            // The feedback steps on both sides of the exact ratio.
            const long long feedbackLow = in * stepsOfVco / input;
            if (feedbackLow >= m_maxFeedbackDiv)
                break;
            const auto candidate = [&](long long feedback) {
                const long long freq = feedback * input / (in * m_feedbackStepsPerUnit * out);
                const long long vco = feedback * input / (in * m_feedbackStepsPerUnit);
                return Candidate{feedback, freq, vco, freq < target ? target - freq : freq - target};
            };
            const Candidate low = candidate(feedbackLow);
            const Candidate high = candidate(feedbackLow + 1);
            // Below the target the VCO must lie above its lowest frequency, not on it: wanted. An equal
            // error goes to the lower frequency.
            const bool takeLow =
                (low.error <= high.error || high.vco > m_maxVcoFreq) && low.vco > m_minVcoFreq;
            const Candidate& chosen = takeLow ? low : high;
            checkComputedDividers(in, chosen.feedbackDiv, out);

            if (input / in > m_maxPfdFreq || chosen.vco < m_minVcoFreq || chosen.vco > m_maxVcoFreq)
                continue;
            const bool better = chosen.error < bestError;
            if (!better && !(chosen.error == bestError && chosen.feedbackDiv < bestFeedback))
                continue;
            bestError = chosen.error;
            bestFeedback = chosen.feedbackDiv;
            actualFreq = static_cast<unsigned>(chosen.freq);
            bestReg = getPllReg(static_cast<unsigned>(in), static_cast<unsigned>(chosen.feedbackDiv),
                                static_cast<unsigned>(out), static_cast<unsigned>(chosen.vco));
            // The first exact hit has the lowest dividers. With a minimum feedback the lowest feedback
            // counts instead, so that every setting must be looked at.
            if (bestError == 0 && minFeedback == 0)
                return bestReg;
        }
    }
    return bestReg;
}

void TickTock::checkComputedDividers(long long inputDiv, long long feedbackDiv, long long outputDiv) {
    if (inputDiv > m_maxInputDiv)
        m_znUtils->throwError(s_badComputedDivider, ZNUtils::AppLocation(),
                              "Invalid value computed for the PLL's input divider (%d). Max valid is (%d).\n",
                              shown(inputDiv), shown(m_maxInputDiv));
    if (feedbackDiv > m_maxFeedbackDiv)
        m_znUtils->throwError(
            s_badComputedDivider, ZNUtils::AppLocation(),
            "Invalid value computed for the PLL's feedback divider (%d). Max valid is (%d).\n",
            shown(feedbackDiv), shown(m_maxFeedbackDiv));
    if (outputDiv > m_maxOutputDiv)
        m_znUtils->throwError(
            s_badComputedDivider, ZNUtils::AppLocation(),
            "Invalid value computed for the PLL's output divider (%d). Max valid is (%d).\n",
            shown(outputDiv), shown(m_maxOutputDiv));
}

bool TickTock::pllDividerValuesOkay(unsigned inputDiv, unsigned feedbackDiv2, unsigned outputDiv) {
    const int wholeFeedback = shown(feedbackDiv2 / 2);
    const char* const halfFeedback = feedbackDiv2 % 2 != 0 ? ".5" : "";

    if (inputDiv == 0)
        m_znUtils->buildErrorMessage(s_badInputDivider, ZNUtils::AppLocation(),
                                     "PLL input divider cannot be 0.\n");
    else if (inputDiv > m_maxInputDiv)
        m_znUtils->buildErrorMessage(s_badInputDivider, ZNUtils::AppLocation(),
                                     "PLL input divider (%d) is too high (max is %d).\n", shown(inputDiv),
                                     shown(m_maxInputDiv));
    else if (feedbackDiv2 == 0)
        m_znUtils->buildErrorMessage(s_badFeedbackDivider, ZNUtils::AppLocation(),
                                     "PLL feedback divider cannot be 0.\n");
    // The text names the limit without the two factors that the test has: wanted.
    else if (feedbackDiv2 > 2 * m_feedbackStepsPerUnit * m_maxFeedbackDiv)
        m_znUtils->buildErrorMessage(s_badFeedbackDivider, ZNUtils::AppLocation(),
                                     "PLL feedback divider (%d%s) is too high (max is %d).\n", wholeFeedback,
                                     halfFeedback, shown(m_maxFeedbackDiv));
    else if (feedbackDiv2 * m_feedbackStepsPerUnit % 2 != 0)
        m_znUtils->buildErrorMessage(s_badFeedbackDivider, ZNUtils::AppLocation(),
                                     "Illegal PLL feedback divider value (%d%s).\n", wholeFeedback,
                                     halfFeedback);
    else if (outputDiv == 0)
        m_znUtils->buildErrorMessage(s_badOutputDivider, ZNUtils::AppLocation(),
                                     "PLL output divider cannot be 0.\n");
    else if (outputDiv > m_maxOutputDiv)
        m_znUtils->buildErrorMessage(s_badOutputDivider, ZNUtils::AppLocation(),
                                     "PLL output divider (%d) is too high (max is %d).\n", shown(outputDiv),
                                     shown(m_maxOutputDiv));
    else
        return true;
    return false;
}

unsigned TickTock::calculatePllValueFromDivs(unsigned inputFreq, unsigned inputDiv, unsigned feedbackDiv2,
                                             unsigned outputDiv, unsigned* actualFreq) {
    if (!pllDividerValuesOkay(inputDiv, feedbackDiv2, outputDiv))
        m_znUtils->throwErrors();

    // A VCO beyond 32 bits is divided whole; its low 32 bits are what the result and the register see.
    const long long vco = static_cast<long long>(feedbackDiv2) * inputFreq / (2LL * inputDiv);
    if (actualFreq)
        *actualFreq = static_cast<unsigned>(vco / (static_cast<long long>(getExternalDiv()) * outputDiv));
    const auto feedbackSteps = static_cast<unsigned>(feedbackDiv2 * m_feedbackStepsPerUnit / 2);
    return getPllReg(inputDiv, feedbackSteps, outputDiv, static_cast<unsigned>(vco));
}

unsigned TickTock::calculateRefDivValue(unsigned pllFreq, unsigned refFreq, unsigned* actualRefFreq) {
    if (pllFreq != 0)
        testValidRefFreq(pllFreq, refFreq);
    unsigned actual = 0;
    const unsigned reg = bestRefDivider(pllFreq, refFreq, actual);
    if (actualRefFreq)
        *actualRefFreq = actual;
    if (actual == 0)
        m_znUtils->throwErrors();
    return reg;
}

unsigned TickTock::findRefDivider(unsigned pllFreq, unsigned refFreq, unsigned bound,
                                  unsigned& actualRefFreq) {
    if (pllFreq != 0 && refFreq != 0) {
        const long long div = divideUp(pllFreq, refFreq);
        if (div - 1 < bound) {
            actualRefFreq = static_cast<unsigned>(pllFreq / div);
            return static_cast<unsigned>(div - 1);
        }
    }
    actualRefFreq = 0;
    m_znUtils->buildErrorMessage(
        s_badReferenceDivider, ZNUtils::AppLocation(),
        "Reference clock frequency (%d) may not be lower than the PLL frequency / %d (%d).\n", shown(refFreq),
        shown(bound), shown(pllFreq / bound));
    return 0;
}

unsigned TickTock::encodeRefDivider(unsigned pllFreq, unsigned refDiv, unsigned bound, unsigned* refFreq) {
    if (refDiv == 0)
        m_znUtils->throwError(s_badReferenceDivider, ZNUtils::AppLocation(),
                              "Reference clock divide cannot be 0.\n");
    if (refDiv > bound)
        // 65536 on every device, whatever its bound: wanted.
        m_znUtils->throwError(s_badReferenceDivider, ZNUtils::AppLocation(),
                              "Reference clock divide (%d) may not exceed 65536.\n", shown(refDiv));
    if (refFreq)
        *refFreq = pllFreq / refDiv;
    return refDiv - 1;
}
