#include "tools/tracehost/ScenarioReader.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

Scenario scenarioOf(const std::string& text) {
    std::istringstream stream(text);
    return ScenarioReader("s").read(stream);
}

// The message that a text is refused with; empty when it is accepted.
std::string refusal(const std::string& text) {
    try {
        scenarioOf(text);
        return "";
    } catch (const ScenarioError& error) {
        return error.what();
    }
}

// The pattern of the only port's value, played for some clocks.
std::string values(const std::string& pattern, Clock clocks) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nport 0 P\nvalue " + pattern + "\n");
    const Segment& segment = scenario.cores[0].of(ResourceKind::Port)[0].waves[0].segments[0];
    std::string text;
    for (Clock time = 0; time < clocks; ++time)
        text += (time == 0 ? "" : " ") + std::to_string(stepAt(*segment.pattern, time + segment.phase).value);
    return text;
}

} // namespace

TEST(ScenarioReader, AnEmptyFileHasTheDefaults) {
    const Scenario scenario = scenarioOf("");
    EXPECT_FALSE(scenario.hasClocks);
    EXPECT_EQ(scenario.frequency, 400);
    EXPECT_EQ(scenario.version, "1.0");
    EXPECT_EQ(scenario.firstCycle, 0U);
    EXPECT_FALSE(scenario.garbage);
}

TEST(ScenarioReader, LinesMayEndWithACarriageReturn) {
    const Scenario scenario = scenarioOf("clocks 5\r\n"
                                         "node 0\r\n"
                                         "core 0\r\n"
                                         "port 0 \\\r\n"
                                         "  P\r\n"
                                         "  value count by -0x10 \\\r\n"
                                         "    below 0b100\r\n");
    ASSERT_EQ(scenario.cores.size(), 1U);
    ASSERT_EQ(scenario.cores[0].of(ResourceKind::Port).size(), 1U);
    EXPECT_EQ(scenario.cores[0].of(ResourceKind::Port)[0].name, "P");
}

TEST(ScenarioReader, SettingsAreRead) {
    const Scenario scenario = scenarioOf("clocks 0x10 # of these\n"
                                         "  frequency 2.5\n"
                                         "version \"2 # \\\"x\\\"\\x41\"\n"
                                         "start 4294967295\r\n"
                                         "garbage\n"
                                         "instance \"-o 'a b.vcd'\"\n"
                                         "instance x\n");
    EXPECT_EQ(scenario.clocks, 16U);
    EXPECT_EQ(scenario.frequency, 2.5);
    EXPECT_EQ(scenario.version, "2 # \"x\"A");
    EXPECT_EQ(scenario.firstCycle, 4294967295U);
    EXPECT_TRUE(scenario.garbage);
    EXPECT_EQ(scenario.instances, (std::vector<std::string>{"-o 'a b.vcd'", "x"}));
}

TEST(ScenarioReader, ABackslashAtTheEndJoinsLines) {
    EXPECT_EQ(scenarioOf("instance \"a \\\n  b\"\n").instances.at(0), "a   b");
    EXPECT_EQ(refusal("clocks \\\n\\\n 5\nfoo"), "s:4: unknown word 'foo'");
    EXPECT_EQ(refusal("\nclocks \\\n foo"), "s:2: the number of clocks is not a number: 'foo'");
    EXPECT_EQ(refusal("clocks 5 \\"), "s:1: unexpected '\\'");
}

TEST(ScenarioReader, NotificationsStandInTheOrderOfTheirClocks) {
    const Scenario scenario = scenarioOf("notify 1 0 at 20\nnotify 0 1 at 10\nnotify 0 5 at 20\n");
    std::string text;
    for (const Notification& each : scenario.notifications)
        text += std::to_string(each.clock) + ":" + std::to_string(each.instance) + ":" +
                std::to_string(each.number) + " ";
    EXPECT_EQ(text, "10:0:1 20:1:0 20:0:5 ");
}

TEST(ScenarioReader, CoresAndResourcesAreCountedAsTheyCome) {
    const Scenario scenario = scenarioOf("node 2\ncore 1\nthread 0..7\nport 0..2 P{n}\ncore 3\ntimer 0\n"
                                         "clockBlock 0..1\nnode 2\ncore 1\nthread 8\npad 0..1 X{n}D\n");
    ASSERT_EQ(scenario.cores.size(), 2U);
    EXPECT_EQ(scenario.cores[0].pid(), 0x00020001U);
    EXPECT_EQ(scenario.cores[0].of(ResourceKind::Thread).size(), 9U);
    ASSERT_EQ(scenario.cores[0].of(ResourceKind::Port).size(), 3U);
    EXPECT_EQ(scenario.cores[0].of(ResourceKind::Port)[2].name, "P2");
    EXPECT_EQ(scenario.cores[1].of(ResourceKind::Timer).size(), 1U);
    EXPECT_EQ(scenario.cores[1].of(ResourceKind::ClockBlock).size(), 2U);
    ASSERT_EQ(scenario.pads.size(), 2U);
    EXPECT_EQ(scenario.pads[1].name, "X1D");
}

TEST(ScenarioReader, ARangeThatExistsIsOpenedAgain) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nthread 0..3\ninUse 1\nthread 1..2\nwaiting {n}\n");
    const auto& threads = scenario.cores[0].of(ResourceKind::Thread);
    EXPECT_EQ(threads[0].waves.size(), 1U);
    ASSERT_EQ(threads[2].waves.size(), 2U);
    EXPECT_EQ(stepAt(*threads[2].waves[1].segments[0].pattern, 0).value, 2U);
}

TEST(ScenarioReader, ARangeSharesOnePattern) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nthread 0..3\ninUse count\n");
    const auto& threads = scenario.cores[0].of(ResourceKind::Thread);
    EXPECT_EQ(threads[0].waves[0].segments[0].pattern, threads[3].waves[0].segments[0].pattern);
}

TEST(ScenarioReader, PatternsReadAsTheyAreMeant) {
    const struct {
        const char* pattern;
        const char* values;
    } rows[] = {
        {"5", "5 5 5 5 5 5 5 5 5 5"},
        {"0b101", "5 5 5 5 5 5 5 5 5 5"},
        {"values 1 0*3 2", "1 0 0 0 2 2 2 2 2 2"},
        {"values 1 0*2 every 2", "1 1 0 0 0 0 0 0 0 0"},
        {"values 1 0*2 repeat", "1 0 0 1 0 0 1 0 0 1"},
        {"changes 0:4 3:5 4:6", "4 4 4 5 6 6 6 6 6 6"},
        {"changes 0:4 3:5 period 5", "4 4 4 5 5 4 4 4 5 5"},
        {"toggle", "0 1 0 1 0 1 0 1 0 1"},
        {"toggle every 3 phase 1", "0 0 1 1 1 0 0 0 1 1"},
        {"count", "0 1 2 3 4 5 6 7 8 9"},
        {"count start 5 by -2 below 7 every 2", "5 5 3 3 1 1 6 6 4 4"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(values(row.pattern, 10), row.values) << row.pattern;
}

TEST(ScenarioReader, ASerialLineSendsTheLowestBitFirstBetweenStartAndStop) {
    EXPECT_EQ(values("serial \"A\"", 12), "0 1 0 0 0 0 0 1 0 1 1 1");
    EXPECT_EQ(values("serial \"\\x0f\" every 2", 22), "0 0 1 1 1 1 1 1 1 1 0 0 0 0 0 0 0 0 1 1 1 1");
    EXPECT_EQ(values("serial A gap 2 repeat", 13), "0 1 0 0 0 0 0 1 0 1 1 1 0");
}

TEST(ScenarioReader, SegmentsFollowEachOther) {
    const Scenario scenario = scenarioOf("node 0\ncore 0\nport 0 P\nvalue 1\nvalue from 10 toggle\n");
    const auto& segments = scenario.cores[0].of(ResourceKind::Port)[0].waves[0].segments;
    ASSERT_EQ(segments.size(), 2U);
    EXPECT_EQ(segments[0].from, 0U);
    EXPECT_EQ(segments[1].from, 10U);
}

TEST(ScenarioReader, AMnemonicIsFilledUpToEightBytes) {
    const Scenario scenario =
        scenarioOf("node 0\ncore 0\ninstruction\nmnemonic values add*2 \"too long for it\"\n"
                   "functionName main\n");
    EXPECT_EQ(std::vector<std::string>(scenario.texts.begin(), scenario.texts.end()),
              (std::vector<std::string>{"        ", "", "add     ", "too long for it", "main"}));
}

// Each row: a text, and the whole message that it is refused with.
TEST(ScenarioReader, ErrorsTellFileLineAndReason) {
    const std::string port = "node 0\ncore 0\nport 0 P\n";
    const std::string core = "node 0\ncore 0\n";
    const struct {
        std::string text;
        const char* message;
    } rows[] = {
        {"\n\nfoo 1\n", "s:3: unknown word 'foo'"},
        {"clocks\n", "s:1: the number of clocks is missing"},
        {"clocks x\n", "s:1: the number of clocks is not a number: 'x'"},
        {"clocks 1x\n", "s:1: the number of clocks is not a number: '1x'"},
        {"clocks 0x\n", "s:1: the number of clocks is not a number: '0x'"},
        {"clocks -1\n", "s:1: the number of clocks is not a number: '-1'"},
        {"clocks 2147483648\n", "s:1: the number of clocks must be from 0 to 2147483647, not 2147483648"},
        {"clocks 99999999999\n", "s:1: the number of clocks must be from 0 to 2147483647, not 99999999999"},
        {"clocks 1 2\n", "s:1: unexpected '2'"},
        {"frequency\n", "s:1: the frequency is missing"},
        {"frequency 0\n", "s:1: the frequency must be a number of MHz above 0, not 0"},
        {"frequency inf\n", "s:1: the frequency must be a number of MHz above 0, not inf"},
        {"frequency 4 MHz\n", "s:1: unexpected 'MHz'"},
        {"version\n", "s:1: the version is missing"},
        {"version \"a\n", "s:1: a quote is not closed"},
        {"version \"a\\\n", "s:1: a quote is not closed"},
        {"version \"\\q\"\n", "s:1: unknown escape '\\q'"},
        {"version \"\\x4\"\n", "s:1: \\x needs two hexadecimal digits"},
        {"version \"\\x\n", "s:1: \\x needs two hexadecimal digits"},
        {"start -1\n", "s:1: the first cycle is not a number: '-1'"},
        {"garbage 1\n", "s:1: unexpected '1'"},
        {"instance\n", "s:1: instance needs its arguments, in one pair of quotes"},
        {"instance -o a.vcd\n", "s:1: unexpected 'a.vcd'"},
        {"notify 0 1\n", "s:1: notify needs a clock: notify INSTANCE NOTIFICATION at CLOCK"},
        {"notify 0 1 at 0\n", "s:1: the clock must be from 1 to 2147483647, not 0"},
        {"notify 0\n", "s:1: the notification is missing"},
        {"node 65536\n", "s:1: the node number must be from 0 to 65535, not 65536"},
        {"core 0\n", "s:1: a core needs a 'node' line before it"},
        {"node 0\ncore\n", "s:2: the core number is missing"},
        {"port 0 P\n", "s:1: 'port' needs a 'core' line before it"},
        {"node 0\ncore 0\nnode 1\nthread 0\n", "s:4: 'thread' needs a 'core' line before it"},
        {core + "port\n", "s:3: port needs a number or a range, such as 0..7"},
        {core + "port 0\n", "s:3: a new port needs a name"},
        {core + "port 1 P\n", "s:3: the next new port is number 0"},
        {port + "port 0..1 Q\n", "s:4: the next new port is number 1"},
        {port + "port 0 Q\n", "s:4: port 0 has its name already"},
        {core + "port 3..1 P\n", "s:3: resource number must be from 3 to 999999, not 1"},
        {core + "port 0..1000000 P\n", "s:3: resource number must be from 0 to 999999, not 1000000"},
        {core + "port 0-7 P\n", "s:3: resource number is not a number: '0-7'"},
        {core + "thread 0 T\n", "s:3: unexpected 'T'"},
        {core + "value 1\n", "s:3: unknown word 'value'"},
        {port + "core 0\nvalue 1\n", "s:5: unknown word 'value'"},
        {port + "speed 1\n", "s:4: port has no field 'speed'"},
        {port + "value\n", "s:4: value needs a value"},
        {port + "value from\n", "s:4: from is missing"},
        {port + "value from 3\n", "s:4: value needs a value"},
        {port + "value 1 2\n", "s:4: value takes one value"},
        {port + "value every 2\n", "s:4: value takes one value"},
        {port + "value 4294967296\n", "s:4: value must be from 0 to 4294967295, not 4294967296"},
        {port + "value 1 every 2\n", "s:4: 'every' doesn't go with a value"},
        {port + "value toggle repeat\n", "s:4: 'repeat' doesn't go with 'toggle'"},
        {port + "value toggle 3\n", "s:4: 'toggle' takes no value"},
        {port + "value toggle every 0\n", "s:4: every must be from 1 to 2147483647, not 0"},
        {port + "value toggle every\n", "s:4: every is missing"},
        {port + "value toggle every 2 3\n", "s:4: '3' doesn't go with 'toggle'"},
        {port + "value values 1 2 every 3 \"every repeat\" 7\n",
         "s:4: 'every repeat' doesn't go with 'values'"},
        {port + "value count by 3 \"below every\" 7\n", "s:4: 'below every' doesn't go with 'count'"},
        {port + "value count by 1 \"below\" 7\n", "s:4: 'below' doesn't go with 'count'"},
        {port + "value count by x\n", "s:4: by must be a number from -2147483647 to 2147483647, not x"},
        {port + "value count by -2147483648\n",
         "s:4: by must be a number from -2147483647 to 2147483647, not -2147483648"},
        {port + "value count by\n", "s:4: by is missing"},
        {port + "value count below 0\n", "s:4: below must be from 1 to 4294967295, not 0"},
        {port + "value values\n", "s:4: 'values' takes values"},
        {port + "value values 1*0\n", "s:4: count must be from 1 to 2147483647, not 0"},
        {port + "value values 1*\n", "s:4: count is not a number: ''"},
        {port + "value values 1*2147483647 2\n", "s:4: the pattern is longer than 2147483647 clocks"},
        {port + "value values 1*4294967 every 1000\n", "s:4: the pattern is longer than 2147483647 clocks"},
        {port + "value changes\n", "s:4: 'changes' takes changes"},
        {port + "value changes 5\n", "s:4: a change is CLOCK:VALUE, not '5'"},
        {port + "value changes 5:1\n", "s:4: the clocks of changes begin with 0 and ascend"},
        {port + "value changes 0:1 0:2\n", "s:4: the clocks of changes begin with 0 and ascend"},
        {port + "value changes 0:1 9:2 period 9\n", "s:4: a period of 9 ends before the last change"},
        {port + "value serial\n", "s:4: 'serial' takes one text"},
        {port + "value serial a b\n", "s:4: 'serial' takes one text"},
        {port + "value random seed x\n", "s:4: seed is not a number: 'x'"},
        {port + "value 1\nvalue 2\n", "s:5: value from 0 must come later than its line before, from 0"},
        {port + "value from 9 1\nvalue from 8 2\n",
         "s:5: value from 8 must come later than its line before, from 9"},
        {core + "instruction\nmnemonic count\n", "s:4: 'count' makes numbers, and mnemonic is a text"},
        {core + "instruction 0\n", "s:3: unexpected '0'"},
        {core + "run main 0 add\n", "s:3: 'run' needs a 'program' line before it"},
        {core + "idle 1\n", "s:3: 'idle' needs a 'program' line before it"},
        {"program 0\n", "s:1: 'program' needs a 'core' line before it"},
        {core + "program\n", "s:3: the thread of the program is missing"},
        {core + "program 0 again\n", "s:3: unexpected 'again'"},
        {core + "program 1\nprogram 1\n", "s:4: thread 1 has its program already"},
        {core + "program 0\nrun\n", "s:4: run needs the name of a function"},
        {core + "program 0\nrun main\n", "s:4: the program counter is missing"},
        {core + "program 0\nrun main x add\n", "s:4: the program counter is not a number: 'x'"},
        {core + "program 0\nrun main 0\n", "s:4: run needs mnemonics behind the program counter"},
        {core + "program 0\nrun main 0 add times 0\n", "s:4: times must be from 1 to 2147483647, not 0"},
        {core + "program 0\nrun main 0 add times 2 sub\n", "s:4: unexpected 'sub'"},
        {core + "program 0\nrun main 0 add sub times 2147483647\n",
         "s:4: the program is longer than 2147483647 turns, or has more than a million runs"},
        {core + "program 0\nidle 0\n", "s:4: the number of turns must be from 1 to 2147483647, not 0"},
        {core + "program 0\nidle 2147483647\nidle 1\n",
         "s:5: the program is longer than 2147483647 turns, or has more than a million runs"},
        {core + "program 0\nend\n", "s:4: 'end' needs a 'loop' line before it"},
        {core + "program 0\nloop\n", "s:4: the number of passes is missing"},
        {core + "loop 2\n", "s:3: 'loop' needs a 'program' line before it"},
        {core + "program 0\nloop 2\nidle 1\n", "s:5: the program's 'loop' has no 'end'"},
        {core + "program 0\nloop 2\nthread 0\n", "s:5: the program's 'loop' has no 'end'"},
        {core + "program 0\nloop 2\nidle 2147483647\nend\n",
         "s:6: the program is longer than 2147483647 turns, or has more than a million runs"},
        {core + "program 0\nloop 1000001\nidle 1\nend\n",
         "s:6: the program is longer than 2147483647 turns, or has more than a million runs"},
        {core + "program 0\nthread 0\nrun main 0 add\n", "s:5: 'run' needs a 'program' line before it"},
        {core + "program 0\ninstruction\n", "s:4: the core has programs; it can't have 'instruction' too"},
        {core + "instruction\nprogram 0\n", "s:4: the core has 'instruction'; it can't have programs too"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(refusal(row.text), row.message) << row.text;
}
