#pragma once

class ZNUtils;

// What a device's PLL can do: frequencies in Hz, dividers as plain divisors. The table of a device is the
// `s_limits` of its planner.
struct PllLimits {
    long long m_minInputFreq = 0; // oscillator
    long long m_maxInputFreq = 0;
    long long m_minPfdFreq = 0; // oscillator after the input divider
    long long m_maxPfdFreq = 0;
    long long m_minVcoFreq = 0;
    long long m_maxVcoFreq = 0;
    long long m_maxInputDiv = 0;
    long long m_maxFeedbackDiv = 0; // in feedback steps
    long long m_maxOutputDiv = 0;
    long long m_feedbackStepsPerUnit = 0; // 2 where the feedback ratio has half steps
    long long m_inputGapLow = 0;          // oscillator frequencies strictly between these two can't boot
    long long m_inputGapHigh = 0;
};

// Plans the clocks of one node: finds, checks and encodes the dividers of its PLL and of its reference
// clock. The PLL multiplies the oscillator by feedback over input divider, which gives the VCO's frequency;
// the output divider and, on some devices, a fixed external divider make the system frequency of it.
//
// Whoever makes a planner fills in its limits (`TickTock_G4::create` and `TickTock_L1::create` do) and the
// address of the `ZNUtils` that builds its messages. Every failure is a message with a code, at the location
// "ZNHandler: "; where an operation throws, it throws a copy of all that the `ZNUtils` has accumulated, as a
// `std::string`. Frequencies are in Hz; all arithmetic is in 64-bit integers that truncate.
class TickTock : public PllLimits {
public:
    ZNUtils* m_znUtils = nullptr; // not owned

    virtual ~TickTock();

    // The reference divider's register for a given divider; throws 11116 for a divider that is 0 or too
    // high. `refFreq`, where not null, gets the frequency that it makes of `pllFreq`.
    virtual unsigned calculateRefDivValueFromDiv(unsigned pllFreq, unsigned refDiv, unsigned* refFreq) = 0;

    // The fixed divider between PLL and system clock.
    virtual unsigned getExternalDiv() = 0;

    // The PLL register. Dividers are encoded less one and added, not masked: one that is too wide for its
    // field carries into the next.
    virtual unsigned getPllReg(unsigned inputDiv, unsigned feedbackDiv, unsigned outputDiv,
                               unsigned vcoFreq) = 0;

    // The reference divider's register for the lowest divider that doesn't exceed `refFreq`. Without one
    // `actualRefFreq` is 0 and 11116 is reported: built only on one device, thrown on the other.
    virtual unsigned bestRefDivider(unsigned pllFreq, unsigned refFreq, unsigned& actualRefFreq) = 0;

    // The PLL register whose system frequency is closest to `targetFreq`, which `actualFreq`, where not
    // null, gets. `minFeedbackDiv` is in halves of the feedback ratio; 0 stands for no minimum. Throws 11107
    // for frequencies that the device can't have, 11114 and 11115 where no setting was found.
    unsigned calculatePllValue(unsigned inputFreq, unsigned targetFreq, unsigned minFeedbackDiv,
                               unsigned* actualFreq);

    // The PLL register for given dividers; `feedbackDiv2` is in halves of the feedback ratio. The dividers
    // are checked (throws 11125 to 11127), frequencies are not: they are the user's responsibility.
    unsigned calculatePllValueFromDivs(unsigned inputFreq, unsigned inputDiv, unsigned feedbackDiv2,
                                       unsigned outputDiv, unsigned* actualFreq);

    // The reference divider's register for a wanted frequency; `actualRefFreq`, where not null, gets the
    // frequency that it really makes. Throws 11108 and 11116.
    unsigned calculateRefDivValue(unsigned pllFreq, unsigned refFreq, unsigned* actualRefFreq);

    // Builds the message for the first bad divider and returns false; doesn't throw.
    bool pllDividerValuesOkay(unsigned inputDiv, unsigned feedbackDiv2, unsigned outputDiv);

    // Throw 11107 and 11108 for frequencies that can't be; false when all is well. `targetFreq` is the
    // frequency of the PLL's output.
    bool testValidFreq(long long inputFreq, long long targetFreq);
    bool testValidRefFreq(long long pllFreq, long long refFreq);

    // The search: the register for the PLL output closest to `targetFreq`, with a feedback of at least
    // `minFeedback` steps. `actualFreq` is 0 where there is none.
    unsigned bestPllReg(unsigned inputFreq, unsigned targetFreq, unsigned minFeedback, unsigned& actualFreq);

protected:
    // What `bestRefDivider` does up to the throw: `bound` is the number of dividers that exist.
    unsigned findRefDivider(unsigned pllFreq, unsigned refFreq, unsigned bound, unsigned& actualRefFreq);

    // What `calculateRefDivValueFromDiv` does on a device whose highest divider is `bound`.
    unsigned encodeRefDivider(unsigned pllFreq, unsigned refDiv, unsigned bound, unsigned* refFreq);

    // Throws 11109 for a computed divider that is too high. An internal check: the search's bounds keep
    // every divider below.
    void checkComputedDividers(long long inputDiv, long long feedbackDiv, long long outputDiv);
};
