// The plugin as a file: what it exports, what it needs, what it holds.

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

namespace {

std::set<std::string> symbols(const std::vector<std::string>& nm) {
    std::istringstream lines(runProgram(nm).output);
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);)
        names.insert(line.substr(line.rfind(' ') + 1));
    return names;
}

} // namespace

TEST(Binary, ExportsTheFiveNamesAlone) {
    EXPECT_THAT(symbols({"nm", "-D", "--defined-only", WAVE_PLUGIN}),
                testing::UnorderedElementsAre("PluginInitialise", "PluginClock", "PluginNotify",
                                              "PluginTerminate", "PluginHelp"));
}

TEST(Binary, IsOfTheWordSizeThatItIsBuiltFor) {
    EXPECT_THAT(runProgram({"file", "-b", WAVE_PLUGIN}).output,
                testing::StartsWith(sizeof(void*) == 4 ? "ELF 32-bit LSB shared object, Intel 80386"
                                                       : "ELF 64-bit LSB shared object, x86-64"));
}

TEST(Binary, NeedsTheRuntimesOfCAndCppAlone) {
    std::istringstream lines(runProgram({"readelf", "-dW", WAVE_PLUGIN}).output);
    std::set<std::string> needed;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("(NEEDED)") != std::string::npos)
            needed.insert(line.substr(line.find('[') + 1, line.find(']') - line.find('[') - 1));
    }
    EXPECT_THAT(needed,
                testing::Each(testing::AnyOf("libc.so.6", "libm.so.6", "libgcc_s.so.1", "libstdc++.so.6")));
}

TEST(Binary, HoldsNoPathOfTheMachine) {
    EXPECT_THAT(readFile(WAVE_PLUGIN), testing::Not(testing::HasSubstr(PROJECT_FOLDER "/")));
}

// Without these names on both sides the test with the clashing host would show nothing.
TEST(Binary, SharesNamesWithTheClashingHost) {
    const std::set<std::string> plugin = symbols({"nm", "--defined-only", WAVE_PLUGIN});
    const std::set<std::string> host = symbols({"nm", "-D", "--defined-only", CLASHING_HOST});
    for (const char* name :
         {"_ZN13PluginLibrary6openZeEPKc", "_ZN13PluginLibrary22getNumActiveProcessorsEv",
          "_ZN14ResourceTracer6getTagEPKcS1_j", "_ZN14ResourceTracer11printCyclesEP8_IO_FILEPb",
          "_ZN12ErrorHandler10fatalErrorEbPKcz", "_ZN19StructureFileWriter12openHierachyEv",
          "_ZTV12ErrorHandler", "PluginClock"}) {
        EXPECT_TRUE(plugin.contains(name)) << name;
        EXPECT_TRUE(host.contains(name)) << name;
    }
}
