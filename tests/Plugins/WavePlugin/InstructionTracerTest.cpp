#include "Plugins/WavePlugin/InstructionTracer.h"

#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* s_zeros = "\0\0\0\0\0\0\0"; // eight bytes, with the terminator
// The bits of "add     ", eight digits a character.
const std::string s_add = "0110000101100100011001000010000000100000001000000010000000100000";

class InstructionTracerTest : public testing::Test {
protected:
    InstructionTracerTest() { instruction.mnemonic = s_zeros; }

    StubSimulator simulator;
    TraceInstructionState& instruction = simulator.core().instruction;
};

} // namespace

TEST_F(InstructionTracerTest, DeclaresThreeSignalsThatBeginUnknown) {
    const PluginResult result = runPlugin(simulator, "-instructions");
    EXPECT_EQ(result.declarations(), "$var wire 32 in00a0 stdcore[0]_INSTRUCTION_PC $end\n"
                                     "$var wire 8 in00b0 stdcore[0]_INSTRUCTION_THREAD_ID $end\n"
                                     "$var wire 64 in00c0 stdcore[0]_INSTRUCTION_MNEMONIC $end\n");
    EXPECT_EQ(result.values(), "$dumpvars\n"
                               "bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00a0\n"
                               "bxxxxxxxx in00b0\n"
                               "bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00c0\n"
                               "$end\n\n");
}

TEST_F(InstructionTracerTest, ListsItsSignalsOutsideAnyGroupAndDescribesThem) {
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    InstructionTracer tracer(simulator.callbacks(), 0, "c");
    tracer.dumpSignalHierarchy(&writer);
    tracer.dumpSignalDocs(&writer);
    EXPECT_EQ(stream.text(),
              R"xml(            <Category name="Instructions">
                <Signal name="c_INSTRUCTION_PC" radix="HEX"/>
                <Signal name="c_INSTRUCTION_THREAD_ID" radix="HEX"/>
                <Signal name="c_INSTRUCTION_MNEMONIC" radix="ASCII"/>
            </Category>
        <SignalDoc name=".*INSTRUCTION_PC" description="The PC value of the instruction">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*INSTRUCTION_THREAD_ID" description="The thread number of the instruction">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*INSTRUCTION_MNEMONIC" description="The mnemonic of the instruction (ASCII format)">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
)xml");
}

TEST_F(InstructionTracerTest, AFirstValueOfZeroWritesNothing) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        PluginClock(id); // all three zero
        simulator.cycle = 1;
        instruction.pc = 4;
        PluginClock(id);
        simulator.cycle = 2;
        instruction.pc = 6;
        PluginClock(id);
        PluginTerminate(id);
    });
    // The thread stays unknown for the whole trace.
    EXPECT_EQ(result.clocks(), "#1\nb00000000000000000000000000000100 in00a0\n\n"
                               "#2\nb00000000000000000000000000000110 in00a0\n\n"
                               "#2\n");
}

TEST_F(InstructionTracerTest, LikeInstructionsAtTwoPlacesChangeThePcAlone) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        instruction.pc = 4;
        instruction.thread = 3;
        instruction.mnemonic = "add     ";
        PluginClock(id);
        simulator.cycle = 1;
        instruction.pc = 6;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb00000000000000000000000000000100 in00a0\n"
                               "b00000011 in00b0\n"
                               "b" +
                                   s_add +
                                   " in00c0\n\n"
                                   "#1\nb00000000000000000000000000000110 in00a0\n\n"
                                   "#1\n");
}

TEST_F(InstructionTracerTest, AJumpToItselfWritesNothingAfterTheFirstTime) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        instruction.pc = 4;
        for (simulator.cycle = 0; simulator.cycle < 3; ++simulator.cycle)
            PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb00000000000000000000000000000100 in00a0\n\n#3\n");
}

TEST_F(InstructionTracerTest, AnInvalidInstructionIsWrittenLikeAnyOther) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        instruction.valid = 0;
        instruction.pc = 4;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb00000000000000000000000000000100 in00a0\n\n");
}

TEST_F(InstructionTracerTest, EightCharactersAreTakenWithNoStopAtATerminator) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        instruction.mnemonic = "\0\0\0\0\0\0\0\xff";
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb" + std::string(56, '0') + "11111111 in00c0\n\n");
}

TEST_F(InstructionTracerTest, NoMnemonicIsZero) {
    const PluginResult result = runPlugin(simulator, "-instructions", [&](unsigned int id) {
        instruction.mnemonic = nullptr;
        PluginClock(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0);
    EXPECT_EQ(result.clocks(), "");
}
