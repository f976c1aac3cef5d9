#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/Zetool.h"

namespace {

ChildResult standard(const std::string& text, const std::vector<std::string>& options = {}) {
    const TemporaryFolder folder;
    std::vector<std::string> words = {"wave", "standard", folder.write("a.vcd", text)};
    words.insert(words.end(), options.begin(), options.end());
    ChildResult result = zetool(words);
    // Messages name the file: show it without the folder of this run.
    const std::string path = folder.file("");
    for (auto at = result.error.find(path); at != std::string::npos; at = result.error.find(path))
        result.error.erase(at, path.size());
    return result;
}

std::string body(const std::string& text) {
    const std::string end = "$enddefinitions $end\n\n";
    const auto at = text.find(end);
    return at == std::string::npos ? "no body" : text.substr(at + end.size());
}

// A file of another tool with these declarations and this body.
std::string other(const std::string& variables, const std::string& rest) {
    return "$timescale 1 ns $end\n$scope module m $end\n" + variables +
           "$upscope $end\n$enddefinitions $end\n" + rest;
}

const std::string s_timerStart = "#0\n"
                                 "$dumpvars\n"
                                 "b0000000000000000000000000000000000000000000000000000000000000000 ti00a0\n"
                                 "0ti00b0\n"
                                 "0ti00c0\n"
                                 "$end\n";

TEST(WaveStandard, WritesTheWholeFileOfOneTimer) {
    const ChildResult result =
        standard(timerSample().start() + "#1\n1ti00b0\n\n#4\n0ti00b0\n1ti00c0\n\n#4\n");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output,
              "$date\n"
              "  Sat Nov 21 12:00:00 2026\n"
              "$end\n"
              "\n"
              "$version\n"
              "  Zcore C-Simulator + WaveTrace plugin (interface version: 1.0)\n"
              "$end\n"
              "\n"
              "$timescale 100 ps $end\n"
              "\n"
              "$comment\n"
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<Structure escaped=\"yes\">\n"
              "    <Date value=\"Sat Nov 21 12:00:00 2026\"/>\n"
              "    <Hierarchy>\n"
              "        <Core name=\"stdcore_0\">\n"
              "            <Category name=\"Timers\">\n"
              "                <Group name=\"Timer0\">\n"
              "                    <Signal name=\"stdcore_0.Timers.Timer0.Timer0_time\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore_0.Timers.Timer0.Timer0_inuse\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore_0.Timers.Timer0.Timer0_tWaiting\" radix=\"HEX\"/>\n"
              "                </Group>\n"
              "            </Category>\n"
              "        </Core>\n"
              "    </Hierarchy>\n"
              "    <ValueAliases>\n"
              "    </ValueAliases>\n"
              "    <SignalDocs>\n"
              "    </SignalDocs>\n"
              "    <SignalAliases>\n"
              "        <SignalAliasMap coreName=\"stdcore_0\">\n"
              "        </SignalAliasMap>\n"
              "    </SignalAliases>\n"
              "</Structure>\n"
              "$end\n"
              "\n"
              "$scope module stdcore_0 $end\n"
              "$scope module Timers $end\n"
              "$scope module Timer0 $end\n"
              "$var wire 64 ti00a0 Timer0_time [63:0] $end\n"
              "$var wire 1 ti00b0 Timer0_inuse $end\n"
              "$var wire 1 ti00c0 Timer0_tWaiting $end\n"
              "$upscope $end\n"
              "$upscope $end\n"
              "$upscope $end\n"
              "\n"
              "$enddefinitions $end\n"
              "\n" +
                  s_timerStart +
                  "#25\n"
                  "1ti00b0\n"
                  "#100\n"
                  "0ti00b0\n"
                  "1ti00c0\n");
}

TEST(WaveStandard, GoesOnWhereTimeTurnsNegative) {
    EXPECT_EQ(
        body(standard(timerSample().start() +
                      "#2147483647\n1ti00b0\n\n#-2147483648\n0ti00b0\n\n#-1\n1ti00b0\n\n#2\n0ti00b0\n\n#2\n")
                 .output),
        s_timerStart + "#53687091175\n1ti00b0\n#53687091200\n0ti00b0\n#107374182375\n1ti00b0\n"
                       "#107374182450\n0ti00b0\n");
}

TEST(WaveStandard, CutsOneBitValuesToOneBit) {
    EXPECT_EQ(body(standard(timerSample().start() +
                            "#1\n2ti00b0\n-1ti00c0\n\n#2\n10ti00b0\n4294967295ti00c0\n\n#3\n3ti00b0\n\n#3\n")
                       .output),
              s_timerStart + "#25\n0ti00b0\n1ti00c0\n#50\n0ti00b0\n1ti00c0\n#75\n1ti00b0\n");
}

TEST(WaveStandard, FollowsAPortWhoseWidthChanges) {
    SampleWave wave;
    wave.cores.emplace_back();
    wave.cores[0].ports = {{"ZS1_PORT_4A", 4, ""}};
    const ChildResult result =
        standard(wave.start() + "#1\nb10101 po00a0\n\n#2\n1po00a0\n\n#3\nb11 po00a0\n\n#3\n");
    EXPECT_EQ(result.exitStatus, 0);
    const std::string text = body(result.output);
    EXPECT_EQ(text.substr(text.find("#25")), "#25\nb0101 po00a0\n#50\nb1 po00a0\n#75\nb11 po00a0\n");
}

TEST(WaveStandard, MakesNamesLegalAndUniqueInTheirScope) {
    SampleWave wave;
    wave.pads = {"X0::D1", "X0[D1", "7 up", "\xe9t\xe9", "a $end b"};
    const ChildResult result = standard(wave.start() + "#1\n1paa4\n\n#1\n");
    EXPECT_EQ(result.exitStatus, 1);
    const auto at = result.output.find("$scope");
    EXPECT_EQ(result.output.substr(at, result.output.find("$upscope") - at),
              "$scope module Pads $end\n"
              "$var wire 1 paa0 X0__D1 $end\n"
              "$var wire 1 paa1 X0_D1 $end\n"
              "$var wire 1 paa2 _7_up $end\n"
              "$var wire 1 paa3 _t_ $end\n"
              "$var wire 1 paa4 a__end_b $end\n");
}

TEST(WaveStandard, RecoversNamesThatMakeTheDocumentIllFormed) {
    SampleWave wave = timerSample();
    wave.pads = {"a\"<&b"};
    const ChildResult result = standard(wave.start() + "#1\n1paa0\n\n#1\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error,
              "zetool: a.vcd:19: the structure document is ill-formed XML here; names are taken from "
              "the $var lines\n");
    EXPECT_THAT(result.output, testing::HasSubstr("<Signal name=\"Pads.a___b\" radix=\"HEX\"/>\n"));
}

TEST(WaveStandard, DeclaresPadsThatAreTracedTwice) {
    SampleWave wave;
    wave.pads = {"Pad0", "Pad0"};
    std::string text = wave.start();
    text.replace(text.find("paa1 Pad0"), 4, "paa0");
    text.replace(text.find("0paa1"), 5, "0paa0");
    const ChildResult result = standard(text + "#1\n1paa0\n\n#1\n");
    EXPECT_THAT(result.output,
                testing::HasSubstr("$var wire 1 paa0 Pad0 $end\n$var wire 1 paa0 Pad0_2 $end\n"));
    EXPECT_EQ(body(result.output), "#0\n$dumpvars\n0paa0\n0paa0\n$end\n#25\n1paa0\n");
}

// Cores 11 of node 1 and 1 of node 11 have one tag, and their identifiers are the same.
TEST(WaveStandard, GivesTwoWidthsOfOneIdentifierTwoIdentifiers) {
    SampleWave wave;
    wave.cores.resize(2);
    wave.cores[0].tag = wave.cores[1].tag = "111";
    wave.cores[1].name = "stdcore[1]";
    wave.cores[0].ports = {{"ZS1_PORT_1A", 1, ""}};
    wave.cores[1].ports = {{"ZS1_PORT_4A", 4, ""}};
    const ChildResult result = standard(wave.start() + "#1\nb1011 po111a0\n\n#1\n");
    EXPECT_THAT(result.output, testing::HasSubstr("$var wire 4 po111a0~ ZS1_PORT_4A [3:0] $end\n"));
    const std::string text = body(result.output);
    EXPECT_EQ(text.substr(text.find("#25")), "#25\n1po111a0\nb1011 po111a0~\n");
}

TEST(WaveStandard, ConvertsAFileThatWasCutAnywhereUpToItsLastWholeStep) {
    const std::string start = timerSample().start();
    const std::string steps = "#1\n1ti00b0\n1ti00c0\n\n#12\n0ti00b0\n\n#13\n";
    const std::string first = s_timerStart + "#25\n1ti00b0\n1ti00c0\n";
    const std::string second = first + "#300\n0ti00b0\n";
    for (std::size_t length = 0; length < steps.size(); ++length) {
        const ChildResult result = standard(start + steps.substr(0, length));
        const std::string text = body(result.output);
        const auto wholeFirst = steps.find("\n\n") + 2;
        const auto wholeSecond = steps.rfind("\n\n") + 2;
        if (length < wholeFirst) // a time alone is whole, with nothing behind it
            EXPECT_EQ(text, length == 3 ? s_timerStart + "#25\n" : s_timerStart) << length;
        else if (length < wholeSecond)
            EXPECT_EQ(text, length == wholeFirst + 4 ? first + "#300\n" : first) << length;
        else
            EXPECT_EQ(text, second) << length;
        EXPECT_EQ(result.exitStatus, result.error.empty() ? 0 : 1) << length;
    }
}

TEST(WaveStandard, SurvivesACutAtEveryByte) {
    const TemporaryFolder folder;
    const std::string whole = timerSample().start() + "#1\n1ti00b0\n\n#2\n";
    const ChildResult result = runInChild([&] {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::string path = folder.write("a.vcd", std::string_view(whole).substr(0, length));
            for (const char* verb : {"standard", "check", "list"}) {
                const char* words[] = {"wave", verb, path.c_str(), "--force", "-o", "/dev/null"};
                if (runZetool(allNouns(), words) > s_foundWrong)
                    std::exit(9);
            }
        }
    });
    EXPECT_EQ(result.exitStatus, 0) << result.error;
}

TEST(WaveStandard, SaysWhereAFileWasCut) {
    const ChildResult result = standard(timerSample().start() + "#1\n1ti00b0\n\n#2\n0ti");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error,
              "zetool: a.vcd:54: the file ends within the step that begins here; it is left out\n");
}

TEST(WaveStandard, LeavesItsOwnOutputAsItIs) {
    const std::string once = standard(fullSample().start() + "#1\n1po00b0\nb1010 po00a1\n\n#2\n").output;
    const ChildResult twice = standard(once);
    EXPECT_EQ(twice.error, "");
    EXPECT_EQ(twice.exitStatus, 0);
    EXPECT_EQ(twice.output, once);
}

TEST(WaveStandard, TakesACoresNameOffAnotherNameOnce) {
    SampleWave wave;
    wave.cores.emplace_back();
    wave.cores[0].ports = {{"stdcore[0]_P", 1, ""}};
    const std::string once = standard(wave.start() + "#1\n").output;
    EXPECT_THAT(once, testing::HasSubstr(" stdcore_0_P_inuse $end\n"));
    EXPECT_EQ(standard(once).output, once);
}

TEST(WaveStandard, TakesFilesOfOtherTools) {
    const ChildResult result =
        standard(other("$var wire 1 ! a $end\n"
                       "$var reg 8 # b [7:0] $end\n"
                       "$var logic 4 % c[3:0] $end\n"
                       "$var real 64 & r $end\n"
                       "$var event 1 ' e $end\n",
                       "#0 $dumpvars 0! b1 # bzx01 % r1.5 & $end\n#5 1! bUW10 % 1' #7 u!\n"));
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "$timescale 1 ns $end\n"
                             "\n"
                             "$scope module m $end\n"
                             "$var wire 1 ! a $end\n"
                             "$var reg 8 # b [7:0] $end\n"
                             "$var wire 4 % c_3_0 [3:0] $end\n"
                             "$var real 64 & r $end\n"
                             "$var event 1 ' e $end\n"
                             "$upscope $end\n"
                             "\n"
                             "$enddefinitions $end\n"
                             "\n"
                             "#0\n$dumpvars\n0!\nb1 #\nbzx01 %\nr1.5 &\n$end\n#5\n1!\nbxx10 %\n1'\n#7\nx!\n");
}

TEST(WaveStandard, GivesSignalsOutsideAllScopesOne) {
    const ChildResult result =
        standard("$version a $$end b $end\n$timescale 1 ns $end\n$var wire 1 ! a $end\n"
                 "$enddefinitions $end\n#0\n0!\n");
    EXPECT_EQ(result.output, "$version\n  a end b\n$end\n\n$timescale 1 ns $end\n\n$scope module top $end\n"
                             "$var wire 1 ! a $end\n$upscope $end\n\n$enddefinitions $end\n\n#0\n0!\n");
}

TEST(WaveStandard, SaysWhatAStandardFileCannotHold) {
    const ChildResult result = standard(other("$var wire 1 ! a $end\n$var string 1 $ s $end\n",
                                              "#0\n1!\nsabc $\n#5\n1?\n#x\n#3\n0!\n$foo\nb1q1 !\n#9\n"));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "zetool: a.vcd:6: 1 signals of type string are left out: IEEE 1364 has no texts\n"
                            "zetool: a.vcd:11: a value of a signal that isn't declared is left out: 1?\n"
                            "zetool: a.vcd:12: a time that is no number is passed over: x\n"
                            "zetool: a.vcd:13: time falls; its values join the step before: 3\n"
                            "zetool: a.vcd:16: a value that isn't one of 0, 1, x and z: 1q1\n"
                            "zetool: a.vcd:15: an unknown keyword is passed over: $foo\n");
    EXPECT_EQ(body(result.output), "#0\n1!\n#5\n0!\n1!\n#9\n");
}

TEST(WaveStandard, TakesAtMost64OneBitSignalsForPulseview) {
    SampleWave wave = fullSample();
    for (int pad = 2; pad < 63; ++pad)
        wave.pads.push_back("Pad" + std::to_string(pad));
    const ChildResult result =
        standard(wave.start() + "#1\n1paa62\n1po00a0\n1t00a0\nb1111 po00a1\n\n#1\n", {"--for", "pulseview"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(
        result.error,
        "zetool: a.vcd: 51 of 115 signals are left out: such viewers take one-bit signals, at most 64\n");
    const std::string text = body(result.output);
    EXPECT_EQ(text.substr(text.find("#25")), "#25\n1paa62\n1po00a0\n");
    // PulseView shows no scopes: the core is in the name.
    EXPECT_THAT(result.output, testing::HasSubstr("$var wire 1 po00a0 stdcore_0_ZS1_PORT_1A $end\n"));
    EXPECT_THAT(result.output, testing::Not(testing::HasSubstr("$comment")));
}

TEST(WaveStandard, ReadsStandardInputAndKeepsFilesThatExist) {
    const TemporaryFolder folder;
    folder.write("a.vcd", timerSample().start());
    folder.write("b.vcd", "kept");
    const ChildResult piped = zetoolShell(folder.path(), "zetool wave standard - < a.vcd > c.vcd");
    EXPECT_EQ(piped.exitStatus, 0);
    EXPECT_EQ(body(folder.read("c.vcd")), s_timerStart);
    const ChildResult kept = zetoolShell(folder.path(), "zetool wave standard a.vcd -o b.vcd");
    EXPECT_EQ(kept.exitStatus, 2);
    EXPECT_EQ(kept.error, "zetool: b.vcd: exists; --force replaces it\n");
    EXPECT_EQ(folder.read("b.vcd"), "kept");
    EXPECT_EQ(zetoolShell(folder.path(), "zetool wave standard a.vcd -o a.vcd --force").exitStatus, 0);
    EXPECT_EQ(folder.read("a.vcd"), folder.read("c.vcd"));
}

// A window of the reader is 256 KiB: lines and words lie across its ends at every offset.
TEST(WaveStandard, ReadsWordsAcrossTheEndsOfItsWindow) {
    for (int shift = 0; shift < 12; ++shift) {
        std::string steps =
            std::string("#1\n1ti00b0\n") + std::string(static_cast<std::size_t>(shift), ' ') + "\n";
        std::string expected = s_timerStart + "#25\n1ti00b0\n";
        for (int clock = 2; clock < 40'000; ++clock) {
            const std::string value = clock % 2 ? "1ti00b0\n" : "0ti00b0\n";
            steps += "#" + std::to_string(clock) + "\n" + value + "\n";
            expected += "#" + std::to_string(25 * clock) + "\n" + value;
        }
        EXPECT_TRUE(body(standard(timerSample().start() + steps + "#40000\n").output) ==
                    expected + "#1000000\n")
            << shift;
    }
}

} // namespace
