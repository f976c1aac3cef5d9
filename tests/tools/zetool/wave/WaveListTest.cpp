#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

ChildResult list(const std::string& text, const std::string& options = "") {
    const TemporaryFolder folder;
    folder.write("a.vcd", text);
    return zetoolShell(folder.path(), "zetool wave list a.vcd " + options);
}

TEST(WaveList, ShowsWidthNameGroupUserNameAndDescription) {
    SampleWave wave;
    wave.pads = {"Pad0"};
    wave.cores.emplace_back();
    wave.cores[0].ports = {{"ZS1_PORT_8A", 8, "leds"}};
    const ChildResult result = list(wave.start());
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(
        result.output,
        "width  name                                   group                         user name  description\n"
        "1      Pad0                                   Pads                                     The value on "
        "the pad\n"
        "8      stdcore[0]_ZS1_PORT_8A                 stdcore[0]/Ports/ZS1_PORT_8A  leds       Provides a "
        "view of "
        "the retimed pads for the port\n"
        "1      stdcore[0]_ZS1_PORT_8A_inuse           stdcore[0]/Ports/ZS1_PORT_8A  leds       High if the "
        "port is "
        "in use\n"
        "1      stdcore[0]_ZS1_PORT_8A_tWaiting        stdcore[0]/Ports/ZS1_PORT_8A  leds       High if any "
        "threads "
        "are waiting on the port\n"
        "1      stdcore[0]_ZS1_PORT_8A_direction       stdcore[0]/Ports/ZS1_PORT_8A  leds       High if the "
        "port is "
        "in output mode, low if in input mode\n"
        "32     stdcore[0]_ZS1_PORT_8A_outputThreadPc  stdcore[0]/Ports/ZS1_PORT_8A  leds\n"
        "32     stdcore[0]_ZS1_PORT_8A_portDetails     stdcore[0]/Ports/ZS1_PORT_8A  leds\n");
}

TEST(WaveList, WritesOneJsonObject) {
    SampleWave wave;
    wave.pads = {"Pad0", "\xe9"};
    const ChildResult result = list(wave.start(), "--json");
    EXPECT_EQ(result.exitStatus, 1); // the byte above 127 is no UTF-8
    EXPECT_EQ(result.output, "{\n"
                             "  \"type\": \"wave\",\n"
                             "  \"version\": 1,\n"
                             "  \"timescale\": \"2.500000 ns\",\n"
                             "  \"isOfPlugin\": true,\n"
                             "  \"signals\": [\n"
                             "    {\n"
                             "      \"name\": \"Pad0\",\n"
                             "      \"range\": \"\",\n"
                             "      \"kind\": \"wire\",\n"
                             "      \"width\": 1,\n"
                             "      \"identifier\": \"paa0\",\n"
                             "      \"line\": 36,\n"
                             "      \"scopes\": [],\n"
                             "      \"core\": \"\",\n"
                             "      \"category\": \"Pads\",\n"
                             "      \"group\": \"\",\n"
                             "      \"radix\": \"HEX\",\n"
                             "      \"userName\": \"\",\n"
                             "      \"description\": \"The value on the pad\",\n"
                             "      \"values\": []\n"
                             "    },\n"
                             "    {\n"
                             "      \"name\": \"\\uf7e9\",\n"
                             "      \"range\": \"\",\n"
                             "      \"kind\": \"wire\",\n"
                             "      \"width\": 1,\n"
                             "      \"identifier\": \"paa1\",\n"
                             "      \"line\": 37,\n"
                             "      \"scopes\": [],\n"
                             "      \"core\": \"\",\n"
                             "      \"category\": \"Pads\",\n"
                             "      \"group\": \"\",\n"
                             "      \"radix\": \"HEX\",\n"
                             "      \"userName\": \"\",\n"
                             "      \"description\": \"\",\n"
                             "      \"values\": []\n"
                             "    }\n"
                             "  ]\n"
                             "}\n");
}

TEST(WaveList, FindsPlacesWithoutAStructureDocument) {
    std::string text = fullSample().start();
    const std::string with = list(text).output;
    const auto from = text.find("$comment");
    text.erase(from, text.find("$end\n\n", from) + 6 - from);
    const ChildResult result = list(text);
    EXPECT_EQ(result.exitStatus, 0);
    // The same names in the same groups; what the document alone knows is gone.
    const auto places = [](const std::string& table) {
        std::multiset<std::string> rows;
        std::istringstream lines(table);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line);
            std::string width, name, group;
            words >> width >> name >> group;
            rows.insert(width + " " + name + " " + group);
        }
        return rows;
    };
    EXPECT_EQ(places(result.output), places(with));
}

TEST(WaveList, ListsOtherToolsFilesByScopes) {
    const ChildResult result = list("$timescale 1 ns $end $scope module top $end\n$scope module sub $end\n"
                                    "$var reg 8 ! a [7:0] $end $upscope $end $var real 64 % r $end\n"
                                    "$upscope $end $enddefinitions $end\n");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "width  name     group    user name  description\n"
                             "8      a [7:0]  top/sub\n"
                             "64     r        top\n");
}

TEST(WaveList, SaysWhatIsWrongWithDeclarations) {
    const ChildResult result = list("$upscope $end\nstray\n$var wire x ! a $end\n$var wire 1\n! b\n$end\n"
                                    "$foo bar $end\n$var wire 1 ! c");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "zetool: a.vcd:1: $upscope without a scope\n"
                            "zetool: a.vcd:2: 'stray' stands between declarations\n"
                            "zetool: a.vcd:3: a $var without a width\n"
                            "zetool: a.vcd:7: unknown declaration $foo\n"
                            "zetool: a.vcd:8: the file ends within $var\n");
    EXPECT_EQ(result.output, "width  name  group  user name  description\n"
                             "1      b\n");
}

TEST(WaveList, TakesScopesOnlyAsDeepAsDesignsAre) {
    std::string text = "$timescale 1 ns $end\n";
    for (int depth = 0; depth < 1002; ++depth)
        text += "$scope module m $end\n";
    text += "$var wire 1 ! a $end\n";
    for (int depth = 0; depth < 1002; ++depth)
        text += "$upscope $end\n";
    const ChildResult result = list(text + "$var wire 1 % b $end\n$enddefinitions $end\n", "--json");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "zetool: a.vcd:1002: scopes nest deeper than 1000; inner ones are left out\n");
    EXPECT_THAT(result.output, testing::HasSubstr("\"scopes\": [],\n"));
}

TEST(WaveList, ItsJsonHoldsToItsSchema) {
    EXPECT_EQ(
        schemaFaults("wave-list.schema.json", list(fullSample().start() + "#1\n1po00b0\n", "--json").output),
        "");
    EXPECT_THAT(schemaFaults("wave-list.schema.json", "{}"), testing::HasSubstr("required"));
}

} // namespace
