#include "tools/tracehost/Program.h"

#include <gtest/gtest.h>
#include <string>

namespace {

// "function:pc:mnemonic" of each turn, "-" for a turn without an instruction.
std::string executed(const Program& program, Clock turns) {
    std::string text;
    for (Clock turn = 0; turn < turns; ++turn) {
        const Program::Instruction i = program.at(turn);
        text += turn == 0 ? "" : " ";
        text += i.valid ? std::to_string(i.functionName) + ":" + std::to_string(i.pc) + ":" +
                              std::to_string(i.mnemonic)
                        : "-";
    }
    return text;
}

} // namespace

TEST(Program, ARunMovesThePcOnByTwoBytesAnInstruction) {
    Program program(0, false);
    ASSERT_TRUE(program.run(5, 100, {7, 8, 9}, 1));
    EXPECT_EQ(executed(program, 5), "5:100:7 5:102:8 5:104:9 - -");
}

TEST(Program, ARunIsPassedThroughSeveralTimes) {
    Program program(0, false);
    ASSERT_TRUE(program.run(5, 100, {7, 8}, 2));
    ASSERT_TRUE(program.run(6, 200, {9}, 1));
    EXPECT_EQ(executed(program, 6), "5:100:7 5:102:8 5:100:7 5:102:8 6:200:9 -");
}

TEST(Program, IdleTurnsHaveNoInstruction) {
    Program program(0, true);
    ASSERT_TRUE(program.run(5, 100, {7}, 1));
    ASSERT_TRUE(program.idle(2));
    EXPECT_EQ(executed(program, 7), "5:100:7 - - 5:100:7 - - 5:100:7");
}

TEST(Program, LoopsMayStandInLoops) {
    Program program(0, true);
    ASSERT_TRUE(program.idle(1));
    program.openLoop();
    ASSERT_TRUE(program.run(5, 100, {7}, 1));
    program.openLoop();
    ASSERT_TRUE(program.run(6, 200, {8}, 1));
    ASSERT_TRUE(program.closeLoop(2));
    ASSERT_TRUE(program.closeLoop(2));
    EXPECT_EQ(executed(program, 9), "- 5:100:7 6:200:8 6:200:8 5:100:7 6:200:8 6:200:8 - 5:100:7");
}

TEST(Program, AnEmptyProgramIsIdle) {
    EXPECT_EQ(executed(Program(0, true), 2), "- -");
}

TEST(Program, AProgramEndsAtTheLongestRun) {
    Program program(0, false);
    ASSERT_TRUE(program.idle(s_maxClock));
    EXPECT_FALSE(program.idle(1));
    EXPECT_FALSE(program.run(5, 100, {7, 8}, s_maxClock));
}
