#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/wave/WaveTroubles.h"

namespace {

ChildResult check(const std::string& text, const std::string& options = "") {
    const TemporaryFolder folder;
    folder.write("a.vcd", text);
    return zetoolShell(folder.path(), "zetool wave check a.vcd " + options);
}

// The keys of the troubles that a file has, with line and count.
std::vector<std::string> troubles(const std::string& text) {
    std::istringstream lines(check(text, "--json").output);
    std::vector<std::string> found;
    std::string key;
    std::string at;
    for (std::string line; std::getline(lines, line);) {
        const auto value = [&](const char* name) {
            const std::string start = std::string("\"") + name + "\": ";
            const auto place = line.find(start);
            return place == std::string::npos ? "" : line.substr(place + start.size());
        };
        if (!value("trouble").empty())
            key = value("trouble").substr(1, value("trouble").size() - 3);
        else if (!key.empty() && !value("line").empty())
            at = value("line").substr(0, value("line").size() - 1);
        else if (!key.empty() && !value("count").empty())
            found.push_back(key + " " + at + " " + value("count").substr(0, value("count").size() - 1));
    }
    return found;
}

std::string other(const std::string& variables, const std::string& rest) {
    return "$timescale 1 ns $end\n$scope module m $end\n" + variables +
           "$upscope $end\n$enddefinitions $end\n" + rest;
}

TEST(WaveCheck, NamesTheTroublesOfThePluginsFile) {
    const ChildResult result = check(timerSample().start() + "#1\n1ti00b0\n\n#2\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output,
              "a.vcd:9: the timescale isn't 1, 10 or 100 of a unit: 2.500000 ns\n"
              "    Surfer, VaporView, PulseView, sigrok-cli and parsers in Rust and Python refuse the file; "
              "GTKWave "
              "and vcd2fst take the whole number alone\n"
              "a.vcd:39: signals stand outside all scopes: stdcore[0]_Timer0_time (the first of 3)\n"
              "    GTKWave's tree is empty\n"
              "a.vcd:46: values stand before the first time line: "
              "b00000000000000000000000000000000000000000000000000000000000 (the first of 3)\n"
              "    vcd-stream gives them the time 2^63, vcd2fst none\n"
              "a.vcd: the last step, at time 2 in line 54, is whole\n");
}

TEST(WaveCheck, FindsNoneInAStandardFile) {
    const TemporaryFolder folder;
    folder.write("a.vcd", fullSample().start() + "#1\n2po00b0\nb1010 po00a1\n\n#-5\n0po00b0\n\n#-5\n");
    const ChildResult result = zetoolShell(folder.path(), "zetool wave standard a.vcd | zetool wave check -");
    EXPECT_EQ(result.output, "(standard input): the last step, at time 107374182275 in line 342, is whole\n");
    EXPECT_EQ(result.exitStatus, 0);
}

TEST(WaveCheck, FindsEachTroubleOfABody) {
    const std::string variables = "$var wire 1 ! a $end\n$var wire 4 \" b [3:0] $end\n";
    const struct {
        const char* body;
        const char* trouble;
    } rows[] = {
        {"#0\n2!\n", "numberForBit 8 1"},
        {"#0\n-1!\n0!\n10!\n", "numberForBit 8 2"},
        {"#0\n1?\n", "unknownIdentifier 8 1"},
        {"#0\nb1 ?\n", "unknownIdentifier 8 1"},
        {"#0\nu!\n", "unknownDigit 8 1"},
        {"#0\nb10u0 \"\n", "unknownDigit 8 1"},
        {"#0\nb10101 \"\n", "tooManyDigits 8 1"},
        {"#0\n1\"\n", "scalarForVector 8 1"},
        {"0!\n#0\n", "valuesBeforeTime 7 1"},
        {"#5\n#-3\n#-2\n", "negativeTime 8 2"},
        {"#5\n1!\n#3\n0!\n", "fallingTime 9 1"},
        {"#5\n#1x\n", "badTime 8 1"},
        {"#0\n$foo\n", "unknownWord 8 1"},
        {"#0\n1!\n#5", "cut 9 1"},
        {"#0\n1!\nb10", "cut 9 1"},
        {"#0\n$comment\nabc", "cut 9 1"},
    };
    EXPECT_TRUE(troubles(other(variables, "#0\n1!\nb10 \"\n#5\n")).empty());
    for (const auto& row : rows)
        EXPECT_EQ(troubles(other(variables, row.body)), std::vector<std::string>{row.trouble}) << row.body;
}

TEST(WaveCheck, KnowsThatThePluginsClockIsPast2To31AfterAPause) {
    const std::vector<std::string> found = troubles(timerSample().start() + "#1000\n1ti00b0\n\n#500\n");
    EXPECT_THAT(found, testing::Contains("negativeTime 54 1"));
    EXPECT_THAT(found, testing::Not(testing::Contains(testing::StartsWith("fallingTime"))));
}

TEST(WaveCheck, FindsEachTroubleOfDeclarations) {
    const struct {
        const char* variables;
        const char* trouble;
    } rows[] = {
        {"$var wire 1 ! a b $end\n", "nameHasBlank 3 1"},
        {"$var wire 1 ! a::b $end\n", "nameHasBlank 3 1"},
        {"$var wire 1 ! a\xe9 $end\n", "nameHasBlank 3 1"},
        {"$var wire 1 ! a $end b $end\n", "nameEndsStatement 3 1"},
        {"$var wire 1 ! a $end\n$var wire 1 % a $end\n", "nameIsDouble 4 1"},
        {"$var wire 1 ! a $end\n$var wire 2 ! b $end\n", "widthsDiffer 4 1"},
        {"$var wire 0 ! a $end\n", "widthIsZero 3 1"},
        {"$var string 1 ! a $end\n", "textSignal 3 1"},
        {"$var wire one ! a $end\n", "header 3 1"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(troubles(other(row.variables, "#0\n")), std::vector<std::string>{row.trouble})
            << row.variables;
}

TEST(WaveCheck, FindsTheTroublesOfNamesInThePluginsFile) {
    const struct {
        const char* pad;
        std::vector<std::string> troubles;
    } rows[] = {
        {"X[3]", {"nameIsBit 35 1"}},
        {"a b", {"nameHasBlank 35 1"}},
        {"a&b", {"documentIllFormed 19 1"}},
        {"a\"b", {"documentIllFormed 19 1"}},
        {"a<b", {"documentIllFormed 19 1"}},
        {"a\xe9", {"nameHasBlank 35 1", "documentIllFormed 19 1"}},
        {"a $end b", {"nameEndsStatement 35 1", "documentEndsEarly 19 1"}},
    };
    for (const auto& row : rows) {
        SampleWave wave;
        wave.timescale = "1 ns";
        wave.pads = {row.pad};
        std::vector<std::string> found = troubles(wave.start());
        std::erase_if(found, [](const std::string& text) {
            return text.starts_with("noScopes") || text.starts_with("valuesBeforeTime");
        });
        EXPECT_EQ(found, row.troubles) << row.pad;
    }
}

TEST(WaveCheck, NamesTheIdentifiersOfTwoCoresThatCollide) {
    SampleWave wave = timerSample();
    wave.timescale = "1 ns";
    wave.cores.push_back(wave.cores[0]);
    wave.cores[1].name = "stdcore[1]";
    EXPECT_THAT(troubles(wave.start()), testing::Contains("identifierIsDouble 53 3"));
}

TEST(WaveCheck, SaysWhetherTheLastStepIsWhole) {
    const std::string start = timerSample().start();
    const struct {
        const char* steps;
        const char* end;
    } rows[] = {
        {"", "a.vcd: there are no steps\n"},
        {"#1\n1ti00b0\n\n", "a.vcd: the last step, at time 1 in line 51, is whole\n"},
        {"#1\n1ti00b0\n\n#2\n", "a.vcd: the last step, at time 2 in line 54, is whole\n"},
        {"#1\n1ti00b0\n", "a.vcd: the last step, at time 1 in line 51, isn't whole\n"},
        {"#1\n1ti00b0\n\n#", "a.vcd: the last step, at time 1 in line 51, isn't whole\n"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(check(start + row.steps).output, testing::EndsWith(row.end));
}

TEST(WaveCheck, WritesOneJsonObject) {
    const ChildResult result = check(other("$var wire 1 ! a $end\n", "#0\n2!\n#7\n"), "--json");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(
        result.output,
        "{\n"
        "  \"type\": \"waveCheck\",\n"
        "  \"version\": 1,\n"
        "  \"troubles\": [\n"
        "    {\n"
        "      \"trouble\": \"numberForBit\",\n"
        "      \"line\": 7,\n"
        "      \"count\": 1,\n"
        "      \"text\": \"a one-bit signal has a value that is no bit\",\n"
        "      \"first\": \"2!\",\n"
        "      \"readers\": \"vcd-parser and vcd-stream end there, GTKWave and vcd2fst drop the value\"\n"
        "    }\n"
        "  ],\n"
        "  \"declarationsAreWhole\": true,\n"
        "  \"lastStep\": {\n"
        "    \"time\": 7,\n"
        "    \"line\": 8,\n"
        "    \"isWhole\": true\n"
        "  }\n"
        "}\n");
}

TEST(WaveCheck, HasItsRowsInOrder) {
    for (std::size_t index = 0; index < s_troubleRows.size(); ++index)
        EXPECT_EQ(static_cast<std::size_t>(s_troubleRows[index].trouble), index);
}

TEST(WaveCheck, ItsJsonHoldsToItsSchema) {
    EXPECT_EQ(schemaFaults("wave-check.schema.json",
                           check(fullSample().start() + "#1\n1po00b0\n", "--json").output),
              "");
    EXPECT_THAT(schemaFaults("wave-check.schema.json", "{}"), testing::HasSubstr("required"));
}

} // namespace
