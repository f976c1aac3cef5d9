#include "infr_libs/ZNLoader/TickTock_G4.h"
#include "infr_libs/ZNLoader/TickTock_L1.h"
#include "infr_libs/ZNLoader/ZNUtils.h"
#include "tests/support/ThrownBy.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned s_any = 0xdeadbeef; // what results hold before a call

// A planner with its message builder. The internal check is reachable for tests.
template<typename Device>
class Planner : public Device {
public:
    Planner() {
        static_cast<PllLimits&>(*this) = Device::s_limits;
        this->m_znUtils = &m_messages;
    }
    using Device::checkComputedDividers;

    ZNUtils m_messages;
};

using G4 = Planner<TickTock_G4>;
using L1 = Planner<TickTock_L1>;

struct WorkedValue {
    unsigned input;
    unsigned target;
    unsigned found;
    unsigned reg;
};

template<typename Device>
void expectWorkedValues(const std::vector<WorkedValue>& rows) {
    for (const WorkedValue& row : rows) {
        Device planner;
        unsigned found = s_any;
        EXPECT_EQ(planner.calculatePllValue(row.input, row.target, 0, &found), row.reg) << row.target;
        EXPECT_EQ(found, row.found) << row.target;
    }
}

} // namespace

// --- The search, on values worked out by hand. The same numbers hold in both word sizes.

TEST(TickTock, G4FindsTheWorkedRegisterValues) {
    expectWorkedValues<G4>({
        {25000000, 400000000, 400000000, 0x1001f00},
        {20000000, 400000000, 400000000, 0x1002700},
        {16000000, 500000000, 500000000, 0x1007c01},
        {25000000, 333000000, 333333333, 0x1004f02},
    });
}

TEST(TickTock, L1FindsTheWorkedRegisterValues) {
    expectWorkedValues<L1>({
        {25000000, 400000000, 400000000, 0x1f00},
        {25000000, 333000000, 333000000, 0x29918},
    });
}

TEST(TickTock, ARegisterIsReturnedWithoutAPlaceForTheFrequency) {
    EXPECT_EQ(G4().calculatePllValue(25000000, 400000000, 0, nullptr), 0x1001f00U);
}

TEST(TickTock, AMinimumFeedbackTakesTheSmallestFeedbackThatReachesIt) {
    G4 planner;
    unsigned found = s_any;
    // 32.5 is rounded up to 33 whole steps; the next exact setting is 64 over 2.
    EXPECT_EQ(planner.calculatePllValue(25000000, 400000000, 65, &found), 0x1003f01U);
    EXPECT_EQ(found, 400000000U);
    // 16.5 is 33 half steps.
    L1 halves;
    EXPECT_EQ(halves.calculatePllValue(25000000, 400000000, 33, &found), 0x3f01U);
    EXPECT_EQ(found, 400000000U);
}

TEST(TickTock, AMinimumFeedbackLooksAtEverySettingForTheSmallestFeedback) {
    L1 planner;
    // 160 MHz of 25 MHz. The first exact setting is 128 half steps over 5 over 2 ...
    EXPECT_EQ(planner.calculatePllValue(25000000, 160000000, 0, nullptr), 0x807f04U);
    // ... and the one with the smallest feedback 64 half steps over 1 over 5.
    EXPECT_EQ(planner.calculatePllValue(25000000, 160000000, 1, nullptr), 0x2003f00U);
}

TEST(TickTock, TheInputGapOfG4IsRefusedAndItsEdgesAreNot) {
    for (unsigned input : {20000001U, 22000000U, 24999999U}) {
        G4 planner;
        EXPECT_EQ(thrownBy([&] { planner.calculatePllValue(input, 400000000, 0, nullptr); }),
                  "ZNHandler: Error: ZN11107 Input frequency (" + std::to_string(input) +
                      ") invalid.  Device cannot boot using this frequency.\n");
    }
    G4 planner;
    EXPECT_FALSE(planner.testValidFreq(20000000, 800000000));
    EXPECT_FALSE(planner.testValidFreq(25000000, 800000000));
}

TEST(TickTock, TargetsOfG4AreTestedAtTwiceTheSystemFrequency) {
    G4 planner;
    EXPECT_EQ(thrownBy([&] { planner.calculatePllValue(25000000, 499000, 0, nullptr); }),
              "ZNHandler: Error: ZN11107 Target frequency (998000) is too low. Minimum PLL frequency with "
              "maxumimum output divide exceeds this frequency.\n");
    G4 other;
    EXPECT_EQ(thrownBy([&] { other.calculatePllValue(25000000, 500000001, 0, nullptr); }),
              "ZNHandler: Error: ZN11107 Target frequency (1000000002) is too high. Maximum PLL frequency "
              "exceeded.\n");
}

TEST(TickTock, TheBoundsOfFrequenciesAreGood) {
    G4 planner;
    for (long long input : {12500000, 100000000})
        for (long long target : {1000000, 1000000000})
            EXPECT_FALSE(planner.testValidFreq(input, target));
    L1 other;
    for (long long input : {4227642, 100000000})
        for (long long target : {32500000, 1300000000})
            EXPECT_FALSE(other.testValidFreq(input, target));
}

TEST(TickTock, ASearchForNothingFindsNothing) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestPllReg(25000000, 0, 0, actual), 0U);
    EXPECT_EQ(actual, 0U);
    actual = s_any;
    EXPECT_EQ(planner.bestPllReg(0, 800000000, 0, actual), 0U);
    EXPECT_EQ(actual, 0U);
    actual = s_any;
    EXPECT_EQ(planner.bestPllReg(25000000, 1000000001, 0, actual), 0U);
    EXPECT_EQ(actual, 0U);
    actual = s_any;
    EXPECT_EQ(planner.bestPllReg(4294967295U, 4294967295U, 4294967295U, actual), 0U);
    EXPECT_EQ(actual, 0U);
    EXPECT_EQ(planner.m_messages.getErrorText(), "");
}

// --- Given dividers

TEST(TickTock, G4RefusesHalfStepsAndL1TakesThem) {
    G4 planner;
    EXPECT_FALSE(planner.pllDividerValuesOkay(1, 21, 1));
    EXPECT_EQ(planner.m_messages.getErrorText(),
              "ZNHandler: Error: ZN11127 Illegal PLL feedback divider value (10.5).\n");
    L1 other;
    EXPECT_TRUE(other.pllDividerValuesOkay(1, 21, 1));
    EXPECT_EQ(other.m_messages.getErrorText(), "");
}

TEST(TickTock, TheHighestDividersAreGood) {
    EXPECT_TRUE(G4().pllDividerValuesOkay(32, 510, 250));
    EXPECT_TRUE(L1().pllDividerValuesOkay(64, 32768, 8));
}

TEST(TickTock, GivenDividersAreEncodedAndTheirFrequencyIsGiven) {
    unsigned actual = s_any;
    EXPECT_EQ(G4().calculatePllValueFromDivs(25000000, 3, 160, 1, &actual), 0x1004f02U);
    EXPECT_EQ(actual, 333333333U);
    EXPECT_EQ(L1().calculatePllValueFromDivs(25000000, 2, 33, 4, &actual), 0x1802001U);
    EXPECT_EQ(actual, 51562500U);
    EXPECT_EQ(G4().calculatePllValueFromDivs(25000000, 3, 160, 1, nullptr), 0x1004f02U);
}

TEST(TickTock, GivenDividersHaveNoFrequencyLimits) {
    unsigned actual = s_any;
    EXPECT_EQ(G4().calculatePllValueFromDivs(22000000, 32, 2, 250, &actual), 0xf9001fU);
    EXPECT_EQ(actual, 1375U);
}

TEST(TickTock, AVcoBeyond32BitsShowsItsLowWord) {
    unsigned actual = s_any;
    // 25.5 GHz; the quotient by 2 is formed before the cut.
    EXPECT_EQ(G4().calculatePllValueFromDivs(100000000, 1, 510, 1, &actual), 0x100fe00U);
    EXPECT_EQ(actual, 4160065408U);
    // 1638.4 GHz
    EXPECT_EQ(L1().calculatePllValueFromDivs(100000000, 1, 32768, 1, &actual), 0x7fff00U);
    EXPECT_EQ(actual, 2017460224U);
}

TEST(TickTock, BadGivenDividersThrowTheirMessage) {
    EXPECT_EQ(thrownBy([] { G4().calculatePllValueFromDivs(25000000, 0, 64, 1, nullptr); }),
              "ZNHandler: Error: ZN11125 PLL input divider cannot be 0.\n");
}

// --- Encoding

TEST(TickTock, TheTopBitOfG4StandsForAVcoAbove500MHz) {
    G4 planner;
    EXPECT_EQ(planner.getPllReg(1, 20, 1, 500000000), 0x1300U);
    EXPECT_EQ(planner.getPllReg(1, 20, 1, 500000001), 0x1001300U);
}

TEST(TickTock, L1DoesntEncodeTheVco) {
    EXPECT_EQ(L1().getPllReg(64, 8192, 8, 4294967295U), 0x39fff3fU);
}

TEST(TickTock, AFieldThatOverflowsCarriesIntoTheNext) {
    EXPECT_EQ(G4().getPllReg(257, 1, 1, 0), 0x100U);
    EXPECT_EQ(G4().getPllReg(1, 257, 1, 0), 0x10000U);
    EXPECT_EQ(L1().getPllReg(1, 32769, 2, 0), 0x1000000U);
    EXPECT_EQ(L1().getPllReg(0, 1, 1, 0), 0xffffffffU);
}

TEST(TickTock, TheExternalDividerIsTwoOnG4AndOneOnL1) {
    EXPECT_EQ(G4().getExternalDiv(), 2U);
    EXPECT_EQ(L1().getExternalDiv(), 1U);
}

// --- Limits that decide between settings

TEST(TickTock, APhaseDetectorAtItsLowestFrequencyIsAllowed) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestPllReg(100000000, 101000000, 0, actual), 0x36418U); // 25 times 4 MHz
    EXPECT_EQ(actual, 101000000U);
}

TEST(TickTock, APhaseDetectorAboveItsHighestFrequencyIsNot) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestPllReg(200000000, 400000000, 0, actual), 0x301U);
}

TEST(TickTock, WhereTheHigherOscillatorFrequencyIsTooHighTheLowerOneIsTaken) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestPllReg(13000000, 999000000, 0, actual), 0x100e502U);
    EXPECT_EQ(actual, 996666666U);
}

// --- The reference clock

TEST(TickTock, AReferenceWithoutAPllIsTooLow) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_NE(thrownBy([&] { planner.calculateRefDivValue(0, 100, &actual); }).find("ZN11116"),
              std::string::npos);
    EXPECT_EQ(actual, 0U);
    L1 other;
    actual = s_any;
    EXPECT_NE(thrownBy([&] { other.calculateRefDivValue(0, 100, &actual); }).find("ZN11116"),
              std::string::npos);
    EXPECT_EQ(actual, s_any);
}

TEST(TickTock, AReferenceEqualToThePllIsRefused) {
    L1 planner;
    EXPECT_EQ(thrownBy([&] { planner.calculateRefDivValue(400000000, 400000000, nullptr); }),
              "ZNHandler: Error: ZN11108 Reference clock frequency (400000000) may not be greater than or "
              "equal to the PLL frequency (400000000).\n");
}

TEST(TickTock, AReferenceThatIsTooLowIsReportedByG4AndThenThrown) {
    const std::string text = "ZNHandler: Error: ZN11116 Reference clock frequency (1000000) may not be lower "
                             "than the PLL frequency / 256 (1562500).\n";
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestRefDivider(400000000, 1000000, actual), 0U);
    EXPECT_EQ(actual, 0U);
    EXPECT_EQ(planner.m_messages.getErrorText(), text);

    G4 other;
    actual = s_any;
    EXPECT_EQ(thrownBy([&] { other.calculateRefDivValue(400000000, 1000000, &actual); }), text);
    EXPECT_EQ(actual, 0U);
}

TEST(TickTock, TheSameReferenceIsGoodOnL1) {
    L1 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.calculateRefDivValue(400000000, 1000000, &actual), 399U);
    EXPECT_EQ(actual, 1000000U);
}

TEST(TickTock, AReferenceThatIsTooLowIsThrownByL1AtOnce) {
    L1 planner;
    unsigned actual = s_any;
    EXPECT_EQ(thrownBy([&] { planner.bestRefDivider(400000000, 6000, actual); }),
              "ZNHandler: Error: ZN11116 Reference clock frequency (6000) may not be lower than the PLL "
              "frequency / 65536 (6103).\n");
    EXPECT_EQ(actual, 0U);
}

TEST(TickTock, AReferenceIsNeverExceeded) {
    unsigned actual = s_any;
    EXPECT_EQ(G4().calculateRefDivValue(400000000, 150000000, &actual), 2U);
    EXPECT_EQ(actual, 133333333U);
}

TEST(TickTock, TheSearchKnowsOneReferenceDividerMoreThanMayBeGivenOnG4) {
    unsigned actual = s_any;
    EXPECT_EQ(G4().calculateRefDivValue(256000000, 1000000, &actual), 255U);
    EXPECT_EQ(actual, 1000000U);
    EXPECT_EQ(thrownBy([] { G4().calculateRefDivValueFromDiv(256000000, 256, nullptr); }),
              "ZNHandler: Error: ZN11116 Reference clock divide (256) may not exceed 65536.\n");
    EXPECT_EQ(G4().calculateRefDivValueFromDiv(255000000, 255, &actual), 254U);
    EXPECT_EQ(actual, 1000000U);
}

TEST(TickTock, TheHighestReferenceDividerOfL1Is65536BothWays) {
    unsigned actual = s_any;
    EXPECT_EQ(L1().calculateRefDivValue(655360000, 10000, &actual), 65535U);
    EXPECT_EQ(actual, 10000U);
    EXPECT_EQ(L1().calculateRefDivValueFromDiv(655360000, 65536, &actual), 65535U);
    EXPECT_EQ(actual, 10000U);
}

TEST(TickTock, AReferenceOrAPllWithoutFrequencyIsReported) {
    G4 planner;
    unsigned actual = s_any;
    EXPECT_EQ(planner.bestRefDivider(400000000, 0, actual), 0U);
    EXPECT_EQ(actual, 0U);
    actual = s_any;
    EXPECT_EQ(planner.bestRefDivider(0, 100000000, actual), 0U);
    EXPECT_EQ(actual, 0U);
    EXPECT_EQ(planner.m_messages.getErrorText(),
              "ZNHandler: Error: ZN11116 Reference clock frequency (0) may not be lower than the PLL "
              "frequency / 256 (1562500).\n"
              "ZNHandler: Error: ZN11116 Reference clock frequency (100000000) may not be lower than the "
              "PLL frequency / 256 (0).\n");
}

TEST(TickTock, NumbersBeyondTheSignAreShownAsNegative) {
    EXPECT_EQ(thrownBy([] { L1().calculateRefDivValueFromDiv(1, 4294967295U, nullptr); }),
              "ZNHandler: Error: ZN11116 Reference clock divide (-1) may not exceed 65536.\n");
}

// --- Every message, in the order of its code

namespace {

struct MessageRow {
    const char* text;
    std::function<void(G4&, L1&)> cause;
};

} // namespace

TEST(TickTock, ThrowsEachOfItsMessages) {
    const MessageRow rows[] = {
        {"ZNHandler: Error: ZN11107 Input frequency (12499999) invalid.  Device cannot boot using this "
         "frequency.\n",
         [](G4& g4, L1&) { g4.testValidFreq(12499999, 800000000); }},
        {"ZNHandler: Error: ZN11107 Input frequency (100000001) invalid.  Device cannot boot using this "
         "frequency.\n",
         [](G4& g4, L1&) { g4.testValidFreq(100000001, 800000000); }},
        {"ZNHandler: Error: ZN11107 Input frequency (4227641) invalid.  Device cannot boot using this "
         "frequency.\n",
         [](G4&, L1& l1) { l1.testValidFreq(4227641, 800000000); }},
        {"ZNHandler: Error: ZN11107 Target frequency (32499999) is too low. Minimum PLL frequency with "
         "maxumimum output divide exceeds this frequency.\n",
         [](G4&, L1& l1) { l1.calculatePllValue(25000000, 32499999, 0, nullptr); }},
        {"ZNHandler: Error: ZN11107 Target frequency (8589934590) is too high. Maximum PLL frequency "
         "exceeded.\n",
         [](G4& g4, L1&) { g4.calculatePllValue(25000000, 4294967295U, 0, nullptr); }},
        {"ZNHandler: Error: ZN11108 Reference clock frequency (500000001) may not be greater than or equal "
         "to the PLL frequency (500000000).\n",
         [](G4& g4, L1&) { g4.testValidRefFreq(500000000, 500000001); }},
        {"ZNHandler: Error: ZN11109 Invalid value computed for the PLL's input divider (33). Max valid is "
         "(32).\n",
         [](G4& g4, L1&) { g4.checkComputedDividers(33, 256, 251); }},
        {"ZNHandler: Error: ZN11109 Invalid value computed for the PLL's feedback divider (8193). Max valid "
         "is (8192).\n",
         [](G4&, L1& l1) { l1.checkComputedDividers(64, 8193, 9); }},
        {"ZNHandler: Error: ZN11109 Invalid value computed for the PLL's output divider (251). Max valid is "
         "(250).\n",
         [](G4& g4, L1&) { g4.checkComputedDividers(32, 255, 251); }},
        {"ZNHandler: Error: ZN11114 No valid configuration found to obtain target system frequency.  Try "
         "reducing the PLL's minimum feedback divider (200).\n",
         [](G4& g4, L1&) { g4.calculatePllValue(25000000, 400000000, 400, nullptr); }},
        // With the limits of the two devices there is always a setting.
        {"ZNHandler: Error: ZN11115 No valid configuration found to obtain target system frequency. Input "
         "frequency is 30000000, target frequency is 499000000.\n",
         [](G4& g4, L1&) {
             g4.m_minVcoFreq = 995000000;
             g4.m_maxInputDiv = 1;
             g4.calculatePllValue(30000000, 499000000, 0, nullptr);
         }},
        {"ZNHandler: Error: ZN11116 Reference clock frequency (99) may not be lower than the PLL frequency / "
         "256 (100).\n",
         [](G4& g4, L1&) { g4.calculateRefDivValue(25600, 99, nullptr); }},
        {"ZNHandler: Error: ZN11116 Reference clock frequency (99) may not be lower than the PLL frequency / "
         "65536 (100).\n",
         [](G4&, L1& l1) { l1.calculateRefDivValue(6553600, 99, nullptr); }},
        {"ZNHandler: Error: ZN11116 Reference clock divide cannot be 0.\n",
         [](G4& g4, L1&) { g4.calculateRefDivValueFromDiv(400000000, 0, nullptr); }},
        {"ZNHandler: Error: ZN11116 Reference clock divide (65537) may not exceed 65536.\n",
         [](G4&, L1& l1) { l1.calculateRefDivValueFromDiv(400000000, 65537, nullptr); }},
        {"ZNHandler: Error: ZN11125 PLL input divider cannot be 0.\n",
         [](G4&, L1& l1) { l1.calculatePllValueFromDivs(25000000, 0, 0, 0, nullptr); }},
        {"ZNHandler: Error: ZN11125 PLL input divider (65) is too high (max is 64).\n",
         [](G4&, L1& l1) { l1.calculatePllValueFromDivs(25000000, 65, 0, 0, nullptr); }},
        {"ZNHandler: Error: ZN11127 PLL feedback divider cannot be 0.\n",
         [](G4& g4, L1&) { g4.calculatePllValueFromDivs(25000000, 1, 0, 0, nullptr); }},
        // The limit is 32768 halves, the text says 8192.
        {"ZNHandler: Error: ZN11127 PLL feedback divider (16384.5) is too high (max is 8192).\n",
         [](G4&, L1& l1) { l1.calculatePllValueFromDivs(25000000, 1, 32769, 0, nullptr); }},
        {"ZNHandler: Error: ZN11127 PLL feedback divider (256) is too high (max is 255).\n",
         [](G4& g4, L1&) { g4.calculatePllValueFromDivs(25000000, 1, 512, 0, nullptr); }},
        {"ZNHandler: Error: ZN11127 Illegal PLL feedback divider value (0.5).\n",
         [](G4& g4, L1&) { g4.calculatePllValueFromDivs(25000000, 1, 1, 0, nullptr); }},
        {"ZNHandler: Error: ZN11126 PLL output divider cannot be 0.\n",
         [](G4& g4, L1&) { g4.calculatePllValueFromDivs(25000000, 1, 64, 0, nullptr); }},
        {"ZNHandler: Error: ZN11126 PLL output divider (9) is too high (max is 8).\n",
         [](G4&, L1& l1) { l1.calculatePllValueFromDivs(25000000, 1, 64, 9, nullptr); }},
    };
    for (const MessageRow& row : rows) {
        G4 g4;
        L1 l1;
        EXPECT_EQ(thrownBy([&] { row.cause(g4, l1); }), row.text);
    }
}

TEST(TickTock, WhatIsThrownIsAllThatWasBuiltSoFar) {
    G4 planner;
    EXPECT_FALSE(planner.pllDividerValuesOkay(1, 64, 0));
    EXPECT_EQ(thrownBy([&] { planner.calculateRefDivValueFromDiv(400000000, 0, nullptr); }),
              "ZNHandler: Error: ZN11126 PLL output divider cannot be 0.\n"
              "ZNHandler: Error: ZN11116 Reference clock divide cannot be 0.\n");
}

TEST(TickTock, CreateFillsInTheLimitsAndTheMessageBuilder) {
    ZNUtils messages;
    const auto g4 = TickTock_G4::create(&messages);
    EXPECT_EQ(g4->m_znUtils, &messages);
    EXPECT_EQ(g4->m_minInputFreq, 12500000);
    EXPECT_EQ(g4->m_maxInputFreq, 100000000);
    EXPECT_EQ(g4->m_minPfdFreq, 4000000);
    EXPECT_EQ(g4->m_maxPfdFreq, 100000000);
    EXPECT_EQ(g4->m_minVcoFreq, 250000000);
    EXPECT_EQ(g4->m_maxVcoFreq, 1000000000);
    EXPECT_EQ(g4->m_maxInputDiv, 32);
    EXPECT_EQ(g4->m_maxFeedbackDiv, 255);
    EXPECT_EQ(g4->m_maxOutputDiv, 250);
    EXPECT_EQ(g4->m_feedbackStepsPerUnit, 1);
    EXPECT_EQ(g4->m_inputGapLow, 20000000);
    EXPECT_EQ(g4->m_inputGapHigh, 25000000);
    const auto l1 = TickTock_L1::create(&messages);
    EXPECT_EQ(l1->m_znUtils, &messages);
    EXPECT_EQ(l1->m_minInputFreq, 4227642);
    EXPECT_EQ(l1->m_maxInputFreq, 100000000);
    EXPECT_EQ(l1->m_minPfdFreq, 159000);
    EXPECT_EQ(l1->m_maxPfdFreq, 1300000000);
    EXPECT_EQ(l1->m_minVcoFreq, 260000000);
    EXPECT_EQ(l1->m_maxVcoFreq, 1300000000);
    EXPECT_EQ(l1->m_maxInputDiv, 64);
    EXPECT_EQ(l1->m_maxFeedbackDiv, 8192);
    EXPECT_EQ(l1->m_maxOutputDiv, 8);
    EXPECT_EQ(l1->m_feedbackStepsPerUnit, 2);
    EXPECT_EQ(l1->m_inputGapLow, 0);
    EXPECT_EQ(l1->m_inputGapHigh, 0);
}
