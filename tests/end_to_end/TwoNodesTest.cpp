// From sources to waveform: the network and configuration of the sample device, a program compiled by clang
// and packed by zetool, and every option of the plugin on two nodes of two cores each. The waveform is
// compared whole but for its date.

#include "tests/end_to_end/HostRun.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

namespace {

const std::string s_here = PROJECT_FOLDER "/tests/end_to_end/";
const std::string s_device = PROJECT_FOLDER "/examples/device";

void expectSuccess(const std::vector<std::string>& words) {
    const ChildResult result = runProgram(words);
    EXPECT_EQ(result.exitStatus, 0) << words.front() << ": " << result.error;
}

// A folder with "two-nodes.ze" and "two-nodes.scenario".
class TwoNodesTest : public testing::Test {
protected:
    TwoNodesTest() : devices("ZCC_DEVICE_PATH", s_device) {
        const std::string program = folder.file("program.o");
        expectSuccess({"clang", "-target", "i386", "-c", "-O1", "-ffreestanding", "-fno-addrsig", "-o",
                       program, s_here + "two-nodes.c"});
        std::vector<std::string> words{ZETOOL,
                                       "image",
                                       "build",
                                       "--network",
                                       s_device + "/sample.zn",
                                       "--config",
                                       s_device + "/system.xml"};
        for (const std::string core : {"stdcore[0]", "stdcore[1]", "1:0", "stdcore[3]"}) // one by its place
            words.insert(words.end(), {"--elf", core + "=" + program});
        words.insert(words.end(), {"--output", folder.file("two-nodes.ze")});
        expectSuccess(words);
    }

    // Plays the scenario in the folder, by way of a program that runs others where one is named.
    ChildResult play(std::vector<std::string> words = {}) {
        words.insert(words.end(), {TRACEHOST, WAVE_PLUGIN, s_here + "two-nodes.scenario"});
        std::string line = "cd " + folder.path().string() + " &&";
        for (const std::string& word : words)
            line += " '" + word + "'";
        return runProgram({"sh", "-c", line});
    }

    ScopedVariable devices;
    TemporaryFolder folder;
};

} // namespace

TEST_F(TwoNodesTest, TheWaveformIsTheExpectedOne) {
    const ChildResult result = play();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(withoutDate(folder.read("two-nodes.vcd")), readFile(s_here + "two-nodes.vcd"));
}

#ifdef VALGRIND
TEST_F(TwoNodesTest, AWholeRunReadsAndLosesNoMemoryThatItShouldnt) {
    const ChildResult result = play({VALGRIND, "--quiet", "--leak-check=full", "--show-leak-kinds=definite",
                                     "--errors-for-leak-kinds=definite", "--error-exitcode=9"});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(result.error, "");
}
#endif
