// Planning the clocks of a network's processors.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"

class ZNLoaderClocks : public ReadingTest {
protected:
    // Nodes, read and planned. Processors without a package and a chain: none of the checks run.
    void plan(const std::string& nodes) {
        read("<Network><Nodes>" + nodes + "</Nodes></Network>");
        loader.propagateZssc();
        loader.planClocks();
    }

    void planProcessor(const std::string& attributes) { plan("<Node Id='a' " + attributes + "/>"); }
};

using Registers = std::vector<unsigned>;

TEST_F(ZNLoaderClocks, ArePlannedForTheSystemAndTheReference) {
    planProcessor("Type='L1' Oscillator='25MHz' SystemFrequency='400MHz' ReferenceFrequency='100MHz'");
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x1f00, 3}));
    EXPECT_EQ(node(0).m_achievedSystemFreq, 400000000u);
    EXPECT_EQ(node(0).m_achievedReferenceFreq, 100000000u);
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderClocks, AreThoseOfTheDevice) {
    planProcessor("Type='G4' Oscillator='25MHz' SystemFrequency='400MHz' ReferenceFrequency='100MHz'");
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x1001f00, 3}));
}

TEST_F(ZNLoaderClocks, AreChosenByTheLow28BitsOfTheJtagId) {
    devices.addNodeType("New", 0x10002633, 1);
    planProcessor("Type='New' Oscillator='25MHz' SystemFrequency='400MHz'");
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x1f00, 3}));
}

TEST_F(ZNLoaderClocks, AreNotPlannedForAnotherDevice) {
    planProcessor("Type='Any' Oscillator='25MHz' SystemFrequency='400MHz'");
    EXPECT_TRUE(node(0).m_pllValues.empty());
}

TEST_F(ZNLoaderClocks, AreNotPlannedWithoutAnOscillator) {
    planProcessor("Type='L1'");
    EXPECT_TRUE(node(0).m_pllValues.empty());
}

TEST_F(ZNLoaderClocks, MayBeGivenAsDividers) {
    planProcessor(
        "Type='L1' Oscillator='20MHz' PllInputDiv='1' PllFeedbackDiv='20' PllOutputDiv='1' RefDiv='4'");
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x2700, 3}));
    EXPECT_EQ(node(0).m_achievedSystemFreq, 400000000u);
    EXPECT_EQ(node(0).m_achievedReferenceFreq, 100000000u);
}

TEST_F(ZNLoaderClocks, StayAsTheyAreWithoutASystemFrequency) {
    planProcessor("Type='L1' Oscillator='20MHz'");
    EXPECT_EQ(node(0).m_pllValues, (Registers{0, 0}));
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11140 System frequency is unspecified. No PLL configuration will be "
                        "performed.\n");
}

TEST_F(ZNLoaderClocks, ShowWhatTheyReallyMakeOfARequest) {
    planProcessor("Type='G4' Oscillator='25MHz' SystemFrequency='333MHz' ReferenceFrequency='90MHz'");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11137 333000000Hz system frequency for node \"a\" could not be "
                        "achived. Using 333333333Hz.\n"
                        "zn:1 Warning: ZN11137 90000000Hz reference frequency for node \"a\" could not be "
                        "achived. Using 83333333Hz.\n");
}

TEST_F(ZNLoaderClocks, ShowWhatTheyReallyMakeOfTheDefaultReference) {
    planProcessor("Type='L1' Oscillator='25MHz' SystemFrequency='333MHz'");
    EXPECT_EQ(warnings,
              "zn:1 Warning: ZN11136 Default 100Mhz reference frequency for node \"a\" could not be "
              "achived. Using 83250000Hz.\n");
}

TEST_F(ZNLoaderClocks, KeepToTheMinimumOfTheFeedbackDivider) {
    planProcessor("Type='L1' Oscillator='25MHz' SystemFrequency='400MHz' PllFeedbackDivMin='20'");
    EXPECT_EQ(node(0).m_achievedSystemFreq, 400000000u);
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x3f01, 3})); // by 64 half steps, not 32
}

TEST_F(ZNLoaderClocks, ShowTheDifferenceForEachNodeOfTheSameRequest) {
    plan("<Node Id='a' Type='G4' Oscillator='25' SystemFrequency='333' ReferenceFrequency='50'/>"
         "<Node Id='b' Type='G4' Oscillator='25' SystemFrequency='333' ReferenceFrequency='60'/>");
    EXPECT_EQ(node(0).m_pllValues.at(0), node(1).m_pllValues.at(0));
    EXPECT_NE(warnings.find("node \"a\""), std::string::npos);
    EXPECT_NE(warnings.find("node \"b\""), std::string::npos);
}

TEST_F(ZNLoaderClocks, ThatCannotBeMadeAreTheNetworksError) {
    EXPECT_EQ(thrownBy([&] { planProcessor("Type='L1' Oscillator='1MHz' SystemFrequency='400MHz'"); }),
              "ZNHandler: Error: ZN11107 Input frequency (1000000) invalid.  Device cannot boot using this "
              "frequency.\n");
}

TEST_F(ZNLoaderClocks, MayComeFromTheOscillatorOfAZsscNode) {
    plan("<Node Id='a' Type='L1' OscillatorSrc='z' SystemFrequency='400MHz'/>"
         "<Node Id='z' Type='periph:ZS1-SU' Oscillator='25MHz'/>");
    EXPECT_EQ(node(0).m_oscillatorNode, loader.m_nodes[1]);
    EXPECT_EQ(node(0).m_oscillatorHz, 25000000u);
    EXPECT_EQ(node(0).m_pllValues, (Registers{0x1f00, 3}));
}

TEST_F(ZNLoaderClocks, KeepTheirOwnOscillatorIfTheZsscNodeHasNone) {
    plan("<Node Id='a' Type='L1' OscillatorSrc='z' Oscillator='25MHz' SystemFrequency='400MHz'/>"
         "<Node Id='z' Type='periph:ZS1-SU'/>");
    EXPECT_EQ(node(0).m_oscillatorHz, 25000000u);
}

TEST_F(ZNLoaderClocks, HaveNoSourceInANodeOfAnotherKind) {
    plan("<Node Id='a' Type='L1' OscillatorSrc='d'/><Node Id='d' Type='device:x'/>");
    EXPECT_EQ(node(0).m_oscillatorNode, nullptr);
}
