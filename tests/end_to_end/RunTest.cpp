// Whole runs: several instances, notifications, ends before the end.

#include "tests/end_to_end/HostRun.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr const char* s_device = R"(
node 0
core 0
    port 0 ZS1_PORT_1A
        value toggle
    thread 0
        waiting toggle every 2
core 1
    timer 0
        inUse toggle every 2
)";

} // namespace

TEST(Run, InstancesWriteEachTheirOwnFile) {
    const HostRun run;
    const ChildResult result = run.play("clocks 2\n" + std::string(s_device),
                                        {run.arguments("ports.vcd", "-core stdcore[0] -ports"),
                                         run.arguments("timers.vcd", "-core stdcore[1] -timers")});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_THAT(run.waveform("ports.vcd"), EndsWith("$end\n\n#1\n1po00a0\n\n#2\n0po00a0\n\n#2\n"));
    EXPECT_THAT(run.waveform("timers.vcd"), EndsWith("$end\n\n#2\n1ti01b0\n\n#2\n"));
}

TEST(Run, AnInstanceWithoutATraceOptionCreatesNoFile) {
    const HostRun run;
    const ChildResult result = run.play("clocks 2\n" + std::string(s_device), {run.arguments("a.vcd", "")});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(result.output, "");
    EXPECT_NE(access(run.folder().file("a.vcd").c_str(), F_OK), 0);
}

TEST(Run, NotificationOneSilencesAnInstanceAndZeroBringsItBack) {
    const HostRun run;
    const ChildResult result =
        run.play("clocks 9\nnotify 0 1 at 3\nnotify 0 2 at 5\nnotify 0 0 at 8\n" + std::string(s_device),
                 {run.arguments("a.vcd", "-core stdcore[0] -ports -threads"),
                  run.arguments("b.vcd", "-core stdcore[0] -threads")});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_THAT(run.waveform("a.vcd"), EndsWith("#1\n1po00a0\n\n#2\n0po00a0\n1t00b0\n\n"
                                                "#8\n0t00b0\n\n#9\n1po00a0\n\n#9\n"));
    EXPECT_THAT(run.waveform("b.vcd"),
                EndsWith("#2\n1t00b0\n\n#4\n0t00b0\n\n#6\n1t00b0\n\n#8\n0t00b0\n\n#9\n"));
}

TEST(Run, SixtyFourInstancesRunAndTheNextIsRefused) {
    const HostRun run;
    std::vector<std::string> instances;
    for (int i = 0; i < 64; ++i)
        instances.push_back(run.arguments(std::to_string(i) + ".vcd", "-core stdcore[0] -ports"));
    const std::string scenario = "clocks 3\n" + std::string(s_device);
    EXPECT_EQ(run.play(scenario, instances).exitStatus, 0);
    for (int i = 0; i < 64; ++i)
        EXPECT_THAT(run.waveform(std::to_string(i) + ".vcd"), EndsWith("#3\n1po00a0\n\n#3\n"));

    instances.push_back("");
    const ChildResult refused = run.play(scenario, instances);
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_THAT(
        refused.error,
        EndsWith("Error: Exceeded the maximum number of plugins (64).\n"
                 "tracehost: the plugin ended the process by exit(1) in PluginInitialise of instance 64 at "
                 "clock 0\n"));
}

TEST(Run, AnErrorOfThePluginReachesTheHostsUser) {
    const HostRun run;
    const ChildResult result = run.play("clocks 2\n", {run.arguments("a.vcd", "-core nobody")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error,
              "Error: could not find core 'nobody' in ZN\n"
              "tracehost: the plugin ended the process by exit(1) in PluginInitialise of instance 0 at "
              "clock 0\n");
}

TEST(Run, CyclesBeyondTwoToThePowerOf31AreNegative) {
    const HostRun run;
    run.play("clocks 2\nstart 0x7fffffff\n" + std::string(s_device),
             {run.arguments("a.vcd", "-core stdcore[0] -ports")});
    EXPECT_THAT(run.waveform("a.vcd"),
                EndsWith("#-2147483648\n1po00a0\n\n#-2147483647\n0po00a0\n\n#-2147483647\n"));
}

// A limit that breaks in clock 3 ends the process at once: nothing is flushed behind it.
TEST(Run, ARunThatIsCutOffLeavesEveryLineUpToTheLastNumericChange) {
    const HostRun run;
    const ChildResult result =
        run.play("clocks 9\n" + std::string(s_device) + "core 0\nthread 0\nresourceType changes 0:0 3:12\n",
                 {run.arguments("a.vcd", "-core stdcore[0] -ports -cycles -threads")});
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_THAT(result.error, HasSubstr("Assertion `0' failed."));
    EXPECT_THAT(result.error, HasSubstr("signal 6 (aborted) in PluginClock of instance 0 at clock 3\n"));
    EXPECT_THAT(run.waveform("a.vcd"),
                EndsWith("#1\n1po00a0\nb00000000000000000000000000000001 _00\n\n"
                         "#2\n0po00a0\nb00000000000000000000000000000010 _00\n1t00b0\n\n"
                         "#3\n1po00a0\n"));
}

// The waveform goes through a pipe, whose reader kills the host in the midst of the run.
TEST(Run, AKilledRunLeavesWholeLinesOfTheRunThatItWouldHaveBeen) {
    const HostRun run;
    const std::string scenario = "clocks 1000000\n" + std::string(s_device);
    const std::string file = run.folder().write("killed.scenario", scenario);
    const std::string words = "-core stdcore[0] -ports -threads";
    const std::string arguments = run.arguments("", words);

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t host = fork();
    ASSERT_GE(host, 0);
    if (host == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(TRACEHOST, TRACEHOST, "-i", arguments.c_str(), WAVE_PLUGIN, file.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    std::string left;
    char bytes[4096];
    bool isKilled = false;
    for (ssize_t numBytes; (numBytes = read(ends[0], bytes, sizeof bytes)) > 0;) {
        left.append(bytes, static_cast<std::size_t>(numBytes));
        if (!isKilled && left.find("\n#1000\n") != std::string::npos)
            isKilled = kill(host, SIGKILL) == 0;
    }
    close(ends[0]);
    int status = 0;
    waitpid(host, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));

    ASSERT_EQ(run.play(scenario, {run.arguments("a.vcd", words)}, {"--clocks", "300000"}).exitStatus, 0);
    const std::string whole = run.waveform("a.vcd");
    left = withoutDate(left);
    ASSERT_LE(left.size(), whole.size());
    EXPECT_TRUE(whole.starts_with(left));
    EXPECT_EQ(left.back(), '\n');
}
