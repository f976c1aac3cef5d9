// The entry points: words, failures, and the life of an instance. Each test runs the plugin in a child
// process, so that its instance numbers begin at zero.

#include "Plugins/WavePlugin/WavePlugin.h"

#include "tests/support/NetworkBuilder.h"
#include "tests/support/PluginRun.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <unistd.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string s_usage =
    "Arguments have the form:\n"
    "  [global options][core option][trace options][core option][trace options]...\n"
    "\n"
    "Global options:\n"
    "  -o file                  Place the trace output into <file>\n"
    "  -pads                    Enables tracing of the pad state of the device\n"
    "\n"
    "Core option (required for multi-core):\n"
    "  -core <name>             Specify a core using its ZN core name\n"
    "\n"
    "Trace options (per core):\n"
    "  -ports                   Enable port tracing\n"
    "  -ports-detailed          Enable detailed port tracing\n"
    "  -cycles                  Enable clock cycle tracing\n"
    "  -threads                 Enable thread tracing\n"
    "  -timers                  Enable timer tracing\n"
    "  -clock-blocks            Enable clock block tracing\n"
    "  -instructions            Enable instruction tracing\n"
    "  -functions               Enable function tracing\n"
    "\n"
    "\n"
    "Extra options:\n"
    "  -ze filename           Ze file used (Enables the usage of zn specified names)\n"
    "  -help                  Prints this message\n"
    "\n"
    "\n";

class WavePluginTest : public testing::Test {
protected:
    // One call with these words alone, in a child process.
    ChildResult initialise(const std::string& arguments) {
        return runInChild([&] { PluginInitialise(simulator.callbacks(), arguments.c_str()); });
    }

    // The words -ze and an image with these cores.
    std::string image(const std::string& cores = s_oneCore) {
        return "-ze '" + folder.write("image.ze", imageOfCores(cores)) + "' ";
    }

    DeviceFolder devices;
    StubSimulator simulator;
    TemporaryFolder folder;
};

std::vector<std::string> varNames(const PluginResult& result) {
    std::vector<std::string> names;
    std::istringstream lines(result.declarations());
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        for (int i = 0; i < 5; ++i)
            words >> word;
        names.push_back(word);
    }
    return names;
}

} // namespace

// ---------------------------------------------------------------- failures of PluginInitialise

TEST_F(WavePluginTest, NoWordsFail) {
    for (const char* arguments : {"", "  ", "''"}) {
        const ChildResult result = initialise(arguments);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "Error: Incorrect arguments to trace plugin.\n" + s_usage);
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(WavePluginTest, ANullTextFailsLikeAnEmptyOne) {
    const ChildResult result = runInChild([&] { PluginInitialise(simulator.callbacks(), nullptr); });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "Error: Incorrect arguments to trace plugin.\n" + s_usage);
}

TEST_F(WavePluginTest, OptionsWithoutTheirValueFailWithTheUsageAlone) {
    for (const std::string& words : {std::string("-ze"), image() + "-o", image() + "-core"}) {
        const ChildResult result = initialise(words);
        EXPECT_EQ(result.exitStatus, 1) << words;
        EXPECT_EQ(result.error, s_usage) << words;
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(WavePluginTest, NoImageFailsWithoutTheUsage) {
    const ChildResult result = initialise("-cycles -o file");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "WavePlugin Error: No ze file specified\n");
    EXPECT_EQ(result.output, "");
}

TEST_F(WavePluginTest, HelpWithoutAnImageFailsForTheImage) {
    const ChildResult result = initialise("-help");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "WavePlugin Error: No ze file specified\n");
}

TEST_F(WavePluginTest, HelpBehindAnImagePrintsTheUsageAndExitsWithStatus1) {
    const ChildResult result = initialise(image() + "-help");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, s_usage);
    EXPECT_EQ(result.output, "");
}

TEST_F(WavePluginTest, AnImageThatCannotBeOpenedEndsTheProcessAtTheFirstQuestion) {
    const ChildResult result = initialise("-ze " + folder.file("none.ze") + " -cycles");
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, StartsWith("Error loading file " + folder.file("none.ze") +
                                         ": Could not open input file\n"
                                         "ERROR: ZE not loaded - cannot handle 'getNumActiveProcessors'\n"));
    EXPECT_THAT(result.error, HasSubstr("Assertion `checkZeLoaded(\"getNumActiveProcessors\")' failed."));
}

TEST_F(WavePluginTest, AnImageWithoutCoresFails) {
    const ChildResult result = initialise(image("") + "-cycles");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "WavePlugin Error: Unable to find default core in the zn file\n");
}

TEST_F(WavePluginTest, AnUnknownCoreFailsWithoutTheUsage) {
    const std::string name = "nowhere" + std::string(5000, 'x');
    const ChildResult result = initialise(image() + "-core " + name + " -cycles");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "Error: could not find core '" + name + "' in ZN\n");
}

TEST_F(WavePluginTest, CoreNamesAreComparedWithTheirCase) {
    EXPECT_EQ(initialise(image() + "-core STDCORE[0]").error,
              "Error: could not find core 'STDCORE[0]' in ZN\n");
}

TEST_F(WavePluginTest, ATraceOptionBeforeTheCoreFailsWithTwoProcessors) {
    const ChildResult result = initialise(image(s_twoCores) + "-cycles -core stdcore[0]");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "Error: Must specify core with multi-core binaries\n" + s_usage);
}

TEST_F(WavePluginTest, AnyOtherWordBeforeTheCoreFailsTheSameWay) {
    EXPECT_EQ(initialise(image(s_twoCores) + "-cylces").error,
              "Error: Must specify core with multi-core binaries\n" + s_usage);
}

TEST_F(WavePluginTest, AnUnknownOptionFailsWithTheUsage) {
    for (const std::string& word :
         {std::string("-cylces"), std::string("-Cycles"), std::string("cycles"), std::string(5000, '-')}) {
        const ChildResult result = initialise(image() + word);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "Error: Invalid argument to trace plugin: '" + word + "'\n" + s_usage);
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(WavePluginTest, AnOutputThatCannotBeOpenedFailsWithTheUsage) {
    const std::string name = folder.file("none/wave.vcd");
    const ChildResult result = initialise(image() + "-cycles -o " + name);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "Error opening file: " + name + "\n" + s_usage);
}

TEST_F(WavePluginTest, AnExceptionBecomesAMessage) {
    const ChildResult result = runInChild([&] {
        // The stub simulator throws for a core that lost its ports.
        simulator.core().ports.resize(1, StubSimulator::port("P", 1));
        const unsigned int id =
            PluginInitialise(simulator.callbacks(), (image() + "-ports -o /dev/null").c_str());
        simulator.core().ports.clear();
        PluginClock(id);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.error, HasSubstr("WavePlugin Error: vector::"));
}

// ---------------------------------------------------------------- words

TEST_F(WavePluginTest, WithoutTraceOptionsNothingIsOpenedAndTheInstanceStaysSilent) {
    const PluginResult result = runPlugin(simulator, "", [&](unsigned int id) {
        PluginClock(id);
        PluginNotify(id, 0);
        PluginClock(id);
        PluginTerminate(id);
        if (std::ranges::any_of(simulator.calls, [](unsigned int calls) { return calls != 0; }))
            std::abort();
    });
    EXPECT_EQ(result.process.exitStatus, 0);
    EXPECT_EQ(result.process.output, "");
    EXPECT_EQ(result.process.error, "");
    EXPECT_EQ(result.waveform, "");
}

TEST_F(WavePluginTest, WithoutTraceOptionsTheOutputIsNotCreated) {
    EXPECT_EQ(initialise(image() + "-core stdcore[0] -o " + folder.file("wave.vcd")).exitStatus, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.file("wave.vcd")));
}

TEST_F(WavePluginTest, WithOneProcessorOptionsGoToTheDefaultCore) {
    const PluginResult result = runPlugin(simulator, "-cycles", {}, "alone 5 6\n");
    EXPECT_EQ(result.declarations(), "$var wire 32 _56 alone_CYCLES $end\n");
}

TEST_F(WavePluginTest, WithTwoProcessorsOptionsGoToTheNamedCoreInOrderOfFirstMention) {
    const PluginResult result =
        runPlugin(simulator, "-core stdcore[1] -cycles -core stdcore[0] -timers -core stdcore[1] -threads",
                  {}, s_twoCores);
    EXPECT_THAT(result.waveform,
                HasSubstr("        <Core name=\"stdcore[1]\">\n"
                          "            <Category name=\"Cycles\">\n"
                          "                <Signal name=\"stdcore[1]_CYCLES\" radix=\"DECIMAL\"/>\n"
                          "            </Category>\n"
                          "            <Category name=\"Threads\">\n"
                          "            </Category>\n"
                          "        </Core>\n"
                          "        <Core name=\"stdcore[0]\">\n"
                          "            <Category name=\"Timers\">\n"));
}

TEST_F(WavePluginTest, GlobalOptionsNeedNoCoreWithTwoProcessors) {
    const PluginResult result = runPlugin(simulator, "-pads", {}, s_twoCores);
    EXPECT_EQ(result.process.exitStatus, 0);
    EXPECT_THAT(result.waveform, HasSubstr("<Category name=\"Pads\">"));
}

TEST_F(WavePluginTest, TwoMentionsOfACoreAreOneTraceSet) {
    const PluginResult result =
        runPlugin(simulator, "-core stdcore[0] -cycles -core stdcore[0] -cycles -threads");
    EXPECT_THAT(result.declarations(), testing::Eq("$var wire 32 _00 stdcore[0]_CYCLES $end\n"));
    const std::string mark = "<Core name=";
    EXPECT_EQ(result.waveform.find(mark), result.waveform.rfind(mark));
}

TEST_F(WavePluginTest, CoresWithTheSamePidAreOneTraceSetWithTheNameOfTheFirst) {
    const PluginResult result = runPlugin(simulator, "-core a -cycles -core b -timers", {}, "a 1 2\nb 1 2\n");
    EXPECT_THAT(result.waveform, HasSubstr("<Core name=\"a\">"));
    EXPECT_THAT(result.waveform, Not(HasSubstr("<Core name=\"b\">")));
    EXPECT_THAT(result.waveform, HasSubstr("<Category name=\"Timers\">"));
}

TEST_F(WavePluginTest, TheNodeIsInTheHighHalfOfThePidAndTheCoreInTheLowOne) {
    simulator.core(0x80000001).ports = {StubSimulator::port("P", 1)};
    const PluginResult result = runPlugin(simulator, "-ports", {}, "c 32768 1\n");
    EXPECT_THAT(result.declarations(), StartsWith("$var wire 1 po327681a0 c_P $end\n"));
}

TEST_F(WavePluginTest, EachMentionOfPadsDeclaresThemAgain) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads -pads");
    EXPECT_EQ(result.declarations(), "$var wire 1 paa0 Pad0 $end\n$var wire 1 paa0 Pad0 $end\n");
}

TEST_F(WavePluginTest, PadsAloneAreAHierarchyWithoutCoresAndWithoutValueAliases) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads");
    EXPECT_THAT(result.waveform, HasSubstr("    <Hierarchy>\n"
                                           "    <Category name=\"Pads\">\n"
                                           "        <Signal name=\"Pad0\" radix=\"HEX\"/>\n"
                                           "    </Category>\n"
                                           "    </Hierarchy>\n"
                                           "    <ValueAliases>\n"
                                           "    </ValueAliases>\n"));
}

TEST_F(WavePluginTest, OfTheTwoLevelsOfPortsTheLaterWins) {
    simulator.core().ports = {StubSimulator::port("P", 1)};
    EXPECT_EQ(varNames(runPlugin(simulator, "-ports -ports-detailed")).size(), 15U);
    EXPECT_EQ(varNames(runPlugin(simulator, "-ports-detailed -ports")).size(), 6U);
}

TEST_F(WavePluginTest, TheOrderOfTracersIsNotThatOfTheOptions) {
    simulator.core().ports = {StubSimulator::port("P", 1)};
    const PluginResult result = runPlugin(simulator, "-functions -instructions -cycles -ports");
    const std::vector<std::string> names = varNames(result);
    EXPECT_EQ(names.front(), "stdcore[0]_P");
    EXPECT_EQ(names[6], "stdcore[0]_CYCLES");
    EXPECT_EQ(names[7], "stdcore[0]_INSTRUCTION_PC");
}

TEST_F(WavePluginTest, EveryTraceOptionMakesTheInstanceActive) {
    for (const char* option : {"-cycles", "-ports", "-ports-detailed", "-threads", "-clock-blocks", "-timers",
                               "-instructions", "-functions"}) {
        const PluginResult result = runPlugin(simulator, option);
        EXPECT_EQ(result.process.exitStatus, 0) << option << result.process.error;
        EXPECT_THAT(result.waveform, HasSubstr("<Core name=\"stdcore[0]\">")) << option;
    }
}

TEST_F(WavePluginTest, AnEmptyPairOfQuotesMakesTheNextWordTheOutput) {
    const ChildResult result = runInChild([&] {
        if (chdir(folder.path().c_str()) != 0)
            std::abort();
        PluginInitialise(simulator.callbacks(), (image() + "-pads -o '' -cycles").c_str());
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(folder.read("-cycles"), HasSubstr("<Category name=\"Pads\">"));
}

TEST_F(WavePluginTest, AnImageOptionIsAlsoSeenWhereItIsTheValueOfAnother) {
    // The first pass opens the image behind it; the second takes -ze as the output's name, and then looks
    // at the image's name as an option.
    const std::string name = folder.write("image.ze", imageOfCores(s_oneCore));
    EXPECT_EQ(initialise("-o -ze " + name).error,
              "Error: Invalid argument to trace plugin: '" + name + "'\n" + s_usage);
}

TEST_F(WavePluginTest, SeveralImagesAllOpen) {
    const std::string first = folder.write("first.ze", imageOfCores("a 0 0\n"));
    const std::string second = folder.write("second.ze", imageOfCores("b 0 1\n"));
    const ChildResult result =
        initialise("-ze " + first + " -ze " + second + " -core b -cycles -o " + folder.file("wave.vcd"));
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_THAT(folder.read("wave.vcd"), HasSubstr("$var wire 32 _01 b_CYCLES $end\n"));
}

TEST_F(WavePluginTest, CoreNamesOfAnyLengthWork) {
    const std::string name(5000, 'n');
    const PluginResult result = runPlugin(simulator, "-cycles", {}, name + " 0 0\n");
    EXPECT_EQ(result.declarations(), "$var wire 32 _00 " + name + "_CYCLES $end\n");
}

TEST_F(WavePluginTest, HelpIsTheFirstBlockOfTheUsage) {
    const std::string help = PluginHelp();
    EXPECT_EQ(s_usage.substr(s_usage.find('\n') + 1, help.size()), help);
    EXPECT_THAT(help, EndsWith("  -functions               Enable function tracing\n\n\n"));
}

// ---------------------------------------------------------------- the head of the waveform

TEST_F(WavePluginTest, TheHeaderHoldsDateVersionAndTimescale) {
    simulator.interfaceVersion = "4.2-x";
    const PluginResult result = runPlugin(simulator, "-cycles");
    const std::regex header("\\$date\n  \\w{3} \\w{3} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d \\d{4}\n\\$end\n\n"
                            "\\$version\n"
                            "  Zcore C-Simulator \\+ WaveTrace plugin \\(interface version: 4\\.2-x\\)\n"
                            "\\$end\n\n"
                            "\\$timescale\n  2\\.500000 ns\n\\$end\n\n"
                            "\\$comment\n");
    EXPECT_TRUE(std::regex_search(result.waveform, header, std::regex_constants::match_continuous))
        << result.waveform.substr(0, 300);
}

TEST_F(WavePluginTest, TheTimescaleIsAFractionOfDoublePrecision) {
    struct Case {
        double frequency;
        const char* timescale;
    };
    for (const auto& [frequency, timescale] :
         {Case{400, "2.500000"}, Case{3, "333.333333"}, Case{0.003, "333333.333333"}, Case{1000, "1.000000"},
          Case{1e12, "0.000000"}, Case{0, "inf"}}) {
        simulator.clockFrequency = frequency;
        EXPECT_THAT(runPlugin(simulator, "-cycles").waveform,
                    HasSubstr(std::string("$timescale\n  ") + timescale + " ns\n$end\n\n"));
    }
}

TEST_F(WavePluginTest, NoScopeIsEverWritten) {
    EXPECT_THAT(runPlugin(simulator, "-cycles").waveform, Not(HasSubstr("scope")));
}

TEST_F(WavePluginTest, DeclarationsEndBetweenBlankLines) {
    EXPECT_THAT(runPlugin(simulator, "-cycles").waveform,
                HasSubstr("CYCLES $end\n\n$enddefinitions $end\n\n$dumpvars\n"));
}

TEST_F(WavePluginTest, WithoutAnOutputTheWaveformGoesToStandardOutputWhichStaysOpen) {
    const ChildResult result = runInChild([&] {
        const unsigned int id = PluginInitialise(simulator.callbacks(), (image() + "-cycles").c_str());
        PluginClock(id);
        PluginTerminate(id);
        std::puts("host");
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, StartsWith("$date\n"));
    EXPECT_THAT(result.output, EndsWith("#0\nb00000000000000000000000000000000 _00\n\n#0\nhost\n"));
}

TEST_F(WavePluginTest, WhatTheHostPrintsBetweenTheLinesKeepsItsPlace) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const ChildResult result = runInChild([&] {
        const unsigned int id = PluginInitialise(simulator.callbacks(), (image() + "-pads").c_str());
        std::printf("one\n");
        simulator.pads[0].value = 1;
        PluginClock(id);
        std::printf("two\n");
        simulator.pads[0].value = 0;
        PluginClock(id);
    });
    EXPECT_THAT(result.output, EndsWith("one\n#0\n1paa0\n\ntwo\n#0\n0paa0\n\n"));
}

// ---------------------------------------------------------------- clocks and notifications

TEST_F(WavePluginTest, AClockWithoutChangeAddsNothing) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        for (int i = 0; i < 3; ++i)
            PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "");
}

TEST_F(WavePluginTest, ATimeStepHasOneTimeLineAndEndsWithABlankLine) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    simulator.core().timers.resize(1);
    const PluginResult result = runPlugin(simulator, "-timers -pads", [&](unsigned int id) {
        simulator.cycle = 9;
        simulator.core().timers[0].inUse = 1;
        simulator.pads[0].value = 1;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#9\n1paa0\n1ti00b0\n\n");
}

TEST_F(WavePluginTest, NumbersOutOfRangeDoNothing) {
    const ChildResult result = runInChild([&] {
        for (const unsigned int instance : {0U, 63U, 64U, 0xffffffffU}) {
            PluginClock(instance);
            PluginNotify(instance, 0);
            PluginClock(instance);
            PluginTerminate(instance);
        }
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output + result.error, "");
}

TEST_F(WavePluginTest, WhileInactiveNothingIsAskedAndOnResumingEveryDifferenceIsReported) {
    simulator.pads = {StubSimulator::pad("Pad0"), StubSimulator::pad("Pad1")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        PluginNotify(id, 1);
        const auto calls = simulator.calls;
        simulator.cycle = 1;
        simulator.pads[0].value = 1;
        PluginClock(id);
        simulator.cycle = 2;
        simulator.pads[0].value = 0; // back to what the file shows
        simulator.pads[1].value = 1;
        PluginClock(id);
        if (simulator.calls != calls)
            std::abort();
        simulator.cycle = 3;
        PluginNotify(id, 0);
        PluginClock(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0);
    EXPECT_EQ(result.clocks(), "#3\n1paa1\n\n");
}

TEST_F(WavePluginTest, OtherNotificationsChangeNothing) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        PluginNotify(id, 2);
        simulator.pads[0].value = 1;
        PluginClock(id);
        PluginNotify(id, 1);
        PluginNotify(id, 2);
        PluginNotify(id, 0xffffffff);
        simulator.pads[0].value = 0;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#0\n1paa0\n\n");
}

TEST_F(WavePluginTest, TheLastTimeLineIsWrittenAlsoWhileInactiveAndHasNoBlankLine) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        PluginNotify(id, 1);
        simulator.cycle = 0xfffffffe;
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#-2\n");
}

TEST_F(WavePluginTest, AnInstanceThatEndedIgnoresEverything) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    simulator.core().ports = {StubSimulator::port("P", 1)};
    const PluginResult result = runPlugin(simulator, "-pads -ports", [&](unsigned int id) {
        PluginTerminate(id);
        simulator.pads[0].value = 1;
        PluginClock(id);
        PluginNotify(id, 0);
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0);
    EXPECT_EQ(result.clocks(), "#0\n");
}

// ---------------------------------------------------------------- several instances

TEST_F(WavePluginTest, SixtyFourInstancesRunSideBySideAndThe65thIsRefused) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const ChildResult result = runInChild([&] {
        for (unsigned int i = 0; i < 64; ++i) {
            const std::string output = folder.file("wave" + std::to_string(i));
            if (PluginInitialise(simulator.callbacks(), (image() + "-pads -o " + output).c_str()) != i)
                std::abort();
        }
        simulator.pads[0].value = 1;
        for (unsigned int i = 0; i < 64; ++i) {
            simulator.cycle = i;
            PluginClock(i);
            PluginTerminate(i);
        }
        PluginInitialise(simulator.callbacks(), nullptr); // refused before its arguments are looked at
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.error, EndsWith("Error: Exceeded the maximum number of plugins (64).\n"));
    for (unsigned int i = 0; i < 64; ++i) {
        const std::string time = "#" + std::to_string(i) + "\n";
        EXPECT_THAT(folder.read("wave" + std::to_string(i)), EndsWith(time + "1paa0\n\n" + time));
    }
}

TEST_F(WavePluginTest, AnInstanceWithNothingToTraceTakesANumberToo) {
    const ChildResult result = runInChild([&] {
        std::printf("%u", PluginInitialise(simulator.callbacks(), image().c_str()));
        std::printf("%u", PluginInitialise(simulator.callbacks(), image().c_str()));
    });
    EXPECT_EQ(result.output, "01");
}

TEST_F(WavePluginTest, TheCallbacksOfTheLastActiveInstanceServeTheEndOfAll) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    TracePluginCallbacks later = *simulator.callbacks();
    later.getCycleCount = [] { return 77U; };
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        PluginInitialise(&later, (image() + "-pads -o /dev/null").c_str());
        PluginInitialise(simulator.callbacks(), image().c_str()); // never active: leaves them
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#77\n");
}

// ---------------------------------------------------------------- outputs that fail, and other hosts

TEST_F(WavePluginTest, AFullDeviceHarmsNothing) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const ChildResult result = runInChild([&] {
        const unsigned int id =
            PluginInitialise(simulator.callbacks(), (image() + "-pads -cycles -o /dev/full").c_str());
        for (int i = 0; i < 1000; ++i) {
            simulator.pads[0].value ^= 1;
            PluginClock(id);
        }
        PluginTerminate(id);
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
}

TEST_F(WavePluginTest, AClosedStandardOutputHarmsNothing) {
    simulator.pads = {StubSimulator::pad("Pad0")};
    const auto closeDescriptor = [] { close(STDOUT_FILENO); };
    const auto closeStream = [] { std::fclose(stdout); };
    for (const std::function<void()>& closeOutput :
         {std::function<void()>(closeDescriptor), std::function<void()>(closeStream)}) {
        const ChildResult result = runInChild([&] {
            closeOutput();
            const unsigned int id =
                PluginInitialise(simulator.callbacks(), (image() + "-pads -cycles").c_str());
            for (int i = 0; i < 1000; ++i) {
                simulator.pads[0].value ^= 1;
                PluginClock(id);
            }
            PluginTerminate(id);
        });
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.error, "");
    }
}

TEST_F(WavePluginTest, ALocaleWithADecimalCommaChangesNoNumber) {
    // A locale of this test's own, so that none of the machine's is needed. The compiler's status only tells
    // of the categories that the locale lacks.
    folder.write("comma.txt", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3\n"
                              "END LC_NUMERIC\n");
    std::filesystem::create_directory(folder.file("comma"));
    runProgram({"localedef", "-c", "-i", folder.file("comma.txt"), folder.file("comma")});

    const std::string arguments = image() + "-cycles -o " + folder.file("wave.vcd");
    const ChildResult result = runInChild([&] {
        setenv("LOCPATH", folder.path().c_str(), 1);
        if (!std::setlocale(LC_ALL, "comma"))
            std::exit(77);
        std::printf("%.1f", 0.5);
        const unsigned int id = PluginInitialise(simulator.callbacks(), arguments.c_str());
        simulator.cycle = 1234567;
        PluginClock(id);
        PluginTerminate(id);
    });
    ASSERT_NE(result.exitStatus, 77) << "localedef made no locale";
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "0,5"); // the host's own numbers
    EXPECT_THAT(folder.read("wave.vcd"), HasSubstr("$timescale\n  2.500000 ns\n"));
    EXPECT_THAT(folder.read("wave.vcd"), EndsWith("#1234567\n"
                                                  "b00000000000100101101011010000111 _00\n\n#1234567\n"));
}

TEST_F(WavePluginTest, TextsMayExpireWithTheNextCallback) {
    simulator.core().ports = {StubSimulator::port("P0", 1), StubSimulator::port("P1", 1)};
    simulator.core().instruction.mnemonic = "add     ";
    simulator.pads = {StubSimulator::pad("Pad0"), StubSimulator::pad("Pad1")};
    const auto play = [&](unsigned int id) {
        simulator.core().ports[1].value = 1;
        PluginClock(id);
        PluginTerminate(id);
    };
    const PluginResult lasting = runPlugin(simulator, "-pads -ports -instructions", play);
    simulator.textsExpire = true;
    const PluginResult expiring = runPlugin(simulator, "-pads -ports -instructions", play);
    EXPECT_EQ(expiring.declarations(), lasting.declarations());
    EXPECT_EQ(expiring.values(), lasting.values());
    EXPECT_THAT(expiring.declarations(), HasSubstr("stdcore[0]_P1_inuse"));
}
