#include "tools/tracehost/Simulation.h"

#include "tools/tracehost/ScenarioReader.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace {

Scenario scenarioOf(const std::string& text) {
    std::istringstream stream(text);
    return ScenarioReader("s").read(stream);
}

unsigned int portValue(Simulation& simulation, unsigned int port) {
    TracePortState state;
    simulation.callbacks()->getPortState(0, port, &state);
    return state.value;
}

// What port 0 shows at each clock from 0 on.
std::string shown(const std::string& fields, Clock clocks) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nport 0 P\n" + fields);
    Simulation simulation(scenario);
    std::string text = std::to_string(portValue(simulation, 0));
    while (simulation.clock() < clocks) {
        simulation.advance();
        text += " " + std::to_string(portValue(simulation, 0));
    }
    return text;
}

} // namespace

TEST(Simulation, AFieldFollowsItsPattern) {
    EXPECT_EQ(shown("value toggle every 2", 6), "0 0 1 1 0 0 1");
}

TEST(Simulation, AFieldRestsAtZeroUntilItsFirstSegment) {
    EXPECT_EQ(shown("value from 3 7", 5), "0 0 0 7 7 7");
}

TEST(Simulation, ASegmentEndsTheOneBefore) {
    EXPECT_EQ(shown("value count\nvalue from 3 9\nvalue from 5 count start 1", 7), "0 1 2 9 9 1 2 3");
}

TEST(Simulation, PhaseShiftsAPatternAgainstItsSegment) {
    EXPECT_EQ(shown("value from 2 count every 3 phase 2", 7), "0 0 0 1 1 1 2 2");
}

TEST(Simulation, ChangesFarAheadComeInTheirClock) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nport 0..4 P{n}\n"
                                         "value changes 0:0 1024:1 1025:2 2048:3 5000:4 phase {n}\n");
    Simulation simulation(scenario);
    const auto expected = [](Clock time) {
        return time < 1024 ? 0U : time < 1025 ? 1U : time < 2048 ? 2U : time < 5000 ? 3U : 4U;
    };
    while (simulation.clock() < 6000) {
        simulation.advance();
        for (unsigned int port = 0; port < 5; ++port)
            ASSERT_EQ(portValue(simulation, port), expected(simulation.clock() + port));
    }
}

TEST(Simulation, TheCycleCountBeginsWhereTheScenarioSaysAndWrapsAround) {
    const Scenario scenario = scenarioOf("start 4294967295\n");
    Simulation simulation(scenario);
    EXPECT_EQ(simulation.callbacks()->getCycleCount(), 4294967295U);
    simulation.advance();
    EXPECT_EQ(simulation.callbacks()->getCycleCount(), 0U);
}

TEST(Simulation, ThreadsWithProgramsTakeTurns) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\n"
                                         "program 3 repeat\nrun main 0x100 ldc add\n"
                                         "program 5\nrun job 0x200 out\n");
    Simulation simulation(scenario);
    std::string text;
    for (int clock = 0; clock < 6; ++clock) {
        TraceInstructionState state;
        simulation.callbacks()->getInstructionState(0, 0, &state);
        text += state.valid ? std::to_string(state.thread) + " " + std::to_string(state.pc) + " " +
                                  state.mnemonic + state.functionName + "; "
                            : "-; ";
        simulation.advance();
    }
    EXPECT_EQ(text, "3 256 ldc     main; 5 512 out     job; 3 258 add     main; -; 3 256 ldc     main; -; ");
}

TEST(Simulation, AnIdleCoreShowsABlankMnemonicAndNoFunction) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\n");
    Simulation simulation(scenario);
    TraceInstructionState state;
    simulation.callbacks()->getInstructionState(0, 0, &state);
    EXPECT_EQ(state.valid, 0U);
    EXPECT_STREQ(state.mnemonic, "        ");
    EXPECT_STREQ(state.functionName, "");
}

TEST(Simulation, EveryPortFieldReachesItsOwnMember) {
    std::string fields;
    unsigned int number = 100;
    for (const Field& field : resourceKind(ResourceKind::Port).fields)
        fields += std::string(field.name) + " " + std::to_string(number++) + "\n";
    const Scenario scenario = scenarioOf("node 0\ncore 0\nport 0 P\n" + fields);
    Simulation simulation(scenario);
    TracePortState s;
    simulation.callbacks()->getPortState(0, 0, &s);
    EXPECT_STREQ(s.name, "P");
    EXPECT_EQ((std::vector<unsigned int>{
                  s.width, s.value, s.inUse, s.direction, s.threadsWaiting, s.transferRegister,
                  s.shiftRegister, s.outputThreadPc, s.details, s.counter, s.timeStamp, s.shiftRegisterCount,
                  s.shiftRegisterValid, s.shiftRegisterSize, s.transferRegisterFull, s.transferRegisterSize}),
              (std::vector<unsigned int>{100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113,
                                         114, 115}));
}
