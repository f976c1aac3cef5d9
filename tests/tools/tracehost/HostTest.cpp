// Whole runs of the program with a plugin that records its calls.

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// A child without the checks of leaks: a plugin that ends the process leaves things behind.
ChildResult runHost(std::vector<std::string> words) {
    words.insert(words.begin(), {"env", "ASAN_OPTIONS=detect_leaks=0", TRACEHOST});
    return runProgram(words);
}

ChildResult play(const std::string& scenario, std::vector<std::string> options = {}) {
    const TemporaryFolder folder;
    options.push_back(RECORDING_PLUGIN);
    options.push_back(folder.write("s.scenario", scenario));
    return runHost(options);
}

// The record's resources, one of each kind.
constexpr const char* s_device = R"(
node 1
core 2
port 0 ZS1_PORT_1A
    value count start 7
    inUse 1
thread 0..1
    inUse 1
    waiting toggle
    resourceType 2
    resourceNumber {n}
timer 0
    time count by 10
    inUse 1
    threadsWaiting 1
clockBlock 0..5
    inUse 1
    started 1
    threadsWaiting 3
    fallingEdge toggle
    risingEdge toggle phase 1
program 1
    run main 0x10000 ldc
pad 0..3 X0D{n}
    value {n}
)";

} // namespace

TEST(Host, EveryCallReachesThePluginInItsOrder) {
    const ChildResult result = play("clocks 2\nfrequency 2.5\nversion 7\nstart 100\ninstance \"a 'b c'\"\n");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "initialise 'a 'b c'' version 7 frequency 2.5 cycle 100\n"
                             "clock 10 cycle 101\n"
                             "clock 10 cycle 102\n"
                             "terminate 10 cycle 102\n");
}

TEST(Host, EveryRecordReachesThePlugin) {
    const ChildResult result = play(
        "clocks 1\ninstance \"pid 0x10002 counts port 0 thread 1 timer 0 clockBlock 5 instruction pad 3\"\n" +
        std::string(s_device));
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(
        result.output,
        "initialise 'pid 0x10002 counts port 0 thread 1 timer 0 clockBlock 5 instruction pad 3' version 1.0 "
        "frequency 400 cycle 0\n"
        "  counts 1 2 1 6 4\n"
        "  port ZS1_PORT_1A 1: 7 1 0 0 0 0 0 0 0 0 0 0 0 0 0, zero\n"
        "  thread 1 0 2 1, zero\n"
        "  timer 0 1 1, zero\n"
        "  clockBlock 1 1 3 0 1, zero\n"
        "  instruction 1 1 0x10000 'ldc     ' 'main', zero\n"
        "  pad X0D3 3, zero\n"
        "clock 10 cycle 1\n"
        "  port ZS1_PORT_1A 1: 8 1 0 0 0 0 0 0 0 0 0 0 0 0 0, zero\n"
        "  thread 1 1 2 1, zero\n"
        "  timer 10 1 1, zero\n"
        "  clockBlock 1 1 3 1 0, zero\n"
        "  instruction 0 1 0x10000 'ldc     ' 'main', zero\n"
        "  pad X0D3 3, zero\n"
        "terminate 10 cycle 1\n");
}

TEST(Host, GarbageChangesUnlistedWordsAlone) {
    const std::string scenario =
        "clocks 1\ninstance \"pid 0x10002 port 0 thread 1 timer 0 clockBlock 5 instruction pad 3\"\n" +
        std::string(s_device);
    const std::string clean = play(scenario).output;
    std::string spoilt = play(scenario, {"--garbage"}).output;
    EXPECT_EQ(play("garbage\n" + scenario).output, spoilt);
    EXPECT_THAT(spoilt, HasSubstr("garbage"));
    EXPECT_THAT(spoilt, Not(HasSubstr("zero")));
    for (std::size_t place; (place = spoilt.find("garbage")) != std::string::npos;)
        spoilt.replace(place, 7, "zero");
    EXPECT_EQ(spoilt, clean);
}

TEST(Host, InstancesRunSideBySideEachWithItsArguments) {
    const ChildResult result = play("clocks 1\ninstance one\ninstance two\n");
    EXPECT_EQ(result.output, "initialise 'one' version 1.0 frequency 400 cycle 0\n"
                             "initialise 'two' version 1.0 frequency 400 cycle 0\n"
                             "clock 10 cycle 1\n"
                             "clock 11 cycle 1\n"
                             "terminate 10 cycle 1\n"
                             "terminate 11 cycle 1\n");
}

TEST(Host, InstancesOfTheCommandLineReplaceThoseOfTheScenario) {
    const ChildResult result = play("clocks 0\ninstance one\n", {"-i", "x", "--instance=y z"});
    EXPECT_EQ(result.output, "initialise 'x' version 1.0 frequency 400 cycle 0\n"
                             "initialise 'y z' version 1.0 frequency 400 cycle 0\n"
                             "terminate 10 cycle 0\n"
                             "terminate 11 cycle 0\n");
}

TEST(Host, NotificationsComeBeforeTheClockTheyAreGivenFor) {
    const ChildResult result =
        play("clocks 2\nnotify 1 0 at 2\nnotify 0 1 at 2\ninstance one\ninstance two\n");
    EXPECT_THAT(result.output, HasSubstr("clock 11 cycle 1\nnotify 11 0\nnotify 10 1\nclock 10 cycle 2\n"));
}

TEST(Host, TheCommandLineCanChangeTheNumberOfClocks) {
    EXPECT_THAT(play("clocks 2\ninstance x\n", {"--clocks", "4"}).output, EndsWith("terminate 10 cycle 4\n"));
    EXPECT_THAT(play("instance x\n", {"-c", "3"}).output, EndsWith("terminate 10 cycle 3\n"));
}

TEST(Host, AScenarioFaultIsToldWithItsPlace) {
    const TemporaryFolder folder;
    const std::string file = folder.write("s.scenario", "clocks 2\nfoo\n");
    const ChildResult result = runHost({RECORDING_PLUGIN, file});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, file + ":2: unknown word 'foo'\n");
    EXPECT_EQ(result.output, "");
}

TEST(Host, FaultsOfAScenarioAsAWholeAreTold) {
    const struct {
        const char* text;
        const char* message;
    } rows[] = {
        {"instance x\n", ": the line 'clocks NUMBER' is missing\n"},
        {"clocks 1\n", ": no 'instance' line, and no option --instance\n"},
        {"clocks 1\nnotify 1 0 at 1\ninstance x\n", ":2: notify goes to instance 1, and the last one is 0\n"},
    };
    for (const auto& row : rows) {
        const TemporaryFolder folder;
        const std::string file = folder.write("s.scenario", row.text);
        const ChildResult result = runHost({RECORDING_PLUGIN, file});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, file + row.message);
    }
    EXPECT_EQ(runHost({RECORDING_PLUGIN, "/nonexistent"}).error, "/nonexistent: can't be read\n");
    EXPECT_EQ(runHost({RECORDING_PLUGIN, "/"}).error, "/: can't be read\n");
}

TEST(Host, APluginThatCannotBeLoadedIsTold) {
    const TemporaryFolder folder;
    const std::string file = folder.write("s.scenario", "clocks 1\ninstance x\n");
    const ChildResult missing = runHost({"/nonexistent.so", file});
    EXPECT_EQ(missing.exitStatus, 1);
    EXPECT_THAT(missing.error, StartsWith("tracehost: can't load the plugin: /nonexistent.so: "));
    const ChildResult incomplete = runHost({NO_PLUGIN, file});
    EXPECT_EQ(incomplete.exitStatus, 1);
    EXPECT_EQ(incomplete.error, "tracehost: not a trace plugin: " NO_PLUGIN " has no PluginHelp\n");
}

TEST(Host, APluginWithoutAFolderIsTakenFromTheCurrentOne) {
    const ChildResult result = runHost({"--plugin-help", "nonexistent.so"});
    EXPECT_THAT(result.error, StartsWith("tracehost: can't load the plugin: ./nonexistent.so: "));
}

// A plugin that ends the process: the words of the host, and status 1 whatever the plugin's was.
TEST(Host, APluginThatExitsIsToldOf) {
    const struct {
        const char* arguments;
        const char* message;
    } rows[] = {
        {"exitInitialise 0", "exit(0) in PluginInitialise of instance 1 at clock 0"},
        {"exit 3", "exit(3) in PluginClock of instance 1 at clock 1"},
        {"exit 1", "exit(1) in PluginClock of instance 1 at clock 1"},
        {"exitTerminate 1", "exit(1) in PluginTerminate of instance 1 at clock 2"},
    };
    for (const auto& row : rows) {
        const ChildResult result =
            play("clocks 2\ninstance ok\ninstance \"" + std::string(row.arguments) + "\"\n");
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error,
                  std::string("tracehost: the plugin ended the process by ") + row.message + "\n");
        EXPECT_THAT(result.output, StartsWith("initialise 'ok'")); // what it wrote before isn't lost
    }
}

TEST(Host, APluginThatAbortsIsToldOf) {
    const ChildResult result = play("clocks 2\ninstance abort\n");
    EXPECT_THAT(result.error, StartsWith("tracehost: the plugin ended the process by signal 6 (aborted) in "
                                         "PluginClock of instance 0 at clock 1\n"));
    EXPECT_NE(result.exitStatus, 0);
}

TEST(Host, APluginThatExhaustsTheStackIsToldOf) {
    const ChildResult result = play("clocks 2\ninstance overflow\n");
    EXPECT_THAT(result.error,
                StartsWith("tracehost: the plugin ended the process by signal 11 (invalid memory "
                           "access) in PluginClock of instance 0 at clock 1\n"));
    EXPECT_NE(result.exitStatus, 0);
}

TEST(Host, APluginThatBreaksTheRecordsRulesIsToldOf) {
    const struct {
        const char* arguments;
        const char* message;
    } rows[] = {
        {"reserved", "it called a slot of the callback record that is reserved"},
        {"badCore", "it asked for core 3 of node 7, which the scenario doesn't have"},
        {"badPort pid 0x10002", "it asked for port 99 of 1"},
    };
    for (const auto& row : rows) {
        const ChildResult result =
            play("clocks 2\ninstance \"" + std::string(row.arguments) + "\"\n" + std::string(s_device));
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "tracehost: fault of the plugin in PluginClock of instance 0 at clock 1: " +
                                    std::string(row.message) + "\n");
    }
}

TEST(Host, WrongUsageHasStatusTwo) {
    const struct {
        std::vector<std::string> words;
        const char* message;
    } rows[] = {
        {{}, "PLUGIN is missing"},
        {{"a.so"}, "SCENARIO is missing"},
        {{"a.so", "s", "x"}, "unexpected 'x'"},
        {{"--foo"}, "unknown option '--foo'"},
        {{"-x"}, "unknown option '-x'"},
        {{"--=x"}, "unknown option '--=x'"},
        {{"a.so", "-c"}, "option '-c' needs a value"},
        {{"--garbage=1"}, "option '--garbage' takes no value"},
        {{"-c", "x", "a.so", "/dev/null"}, "--clocks is not a number: 'x'"},
        {{"--check"}, "SCENARIO is missing"},
        {{"--plugin-help", "--", "--a", "b"}, "unexpected 'b'"},
    };
    for (const auto& row : rows) {
        const ChildResult result = runHost(row.words);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.error, std::string("tracehost: ") + row.message + "\nTry 'tracehost --help'.\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST(Host, HelpAndVersionNeedNoFiles) {
    const ChildResult help = runHost({"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.output, StartsWith("usage: tracehost [OPTION]... PLUGIN SCENARIO\n"));
    EXPECT_EQ(runHost({"-h"}).output, help.output);
    const ChildResult version = runHost({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_THAT(version.output, StartsWith("tracehost 0."));
}

TEST(Host, PluginHelpPrintsThePluginsOwnText) {
    const ChildResult result = runHost({"--plugin-help", RECORDING_PLUGIN});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "  words that the recording plugin knows\n");
}

TEST(Host, CheckReadsTheScenarioAlone) {
    const TemporaryFolder folder;
    EXPECT_EQ(runHost({"--check", folder.write("good", "clocks 1\n")}).exitStatus, 0);
    EXPECT_EQ(runHost({"--check", folder.write("bad", "clocks\n")}).exitStatus, 1);
}

TEST(Host, ARunThatIsNotOnATerminalShowsNoProgress) {
    EXPECT_EQ(play("clocks 1000\ninstance x\n").error, "");
}
