#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(WaveGtkw, WritesGroupsRadixUserNamesAndTexts) {
    SampleWave wave;
    wave.pads = {"Pad0"};
    wave.cores.emplace_back();
    TracedCore& core = wave.cores[0];
    core.ports = {{"ZS1_PORT_4A", 4, "leds"}};
    core.hasCycles = true;
    core.numThreads = 1;
    core.hasInstructions = true;
    core.functions = {{"main", "main.0"}, {"a_function_of_some_length", "a_fu.0"}, {"ab", "ab"}};
    core.numFunctionThreads = 1;
    const TemporaryFolder folder;
    folder.write("a.vcd", wave.start());
    const ChildResult result = zetoolShell(folder.path(), "zetool wave gtkw a.vcd");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(folder.read("a.gtkw"),
              "[*]\n"
              "[*] Written by zetool wave gtkw\n"
              "[*]\n"
              "[dumpfile] \"a.vcd\"\n"
              "[savefile] \"a.gtkw\"\n"
              "[timestart] 0\n"
              "[size] 1400 900\n"
              "[pos] -1 -1\n"
              "[sst_expanded] 1\n"
              "@800200\n"
              "-Pads\n"
              "@28\n"
              "Pad0\n"
              "@1000200\n"
              "-Pads\n"
              "@800200\n"
              "-stdcore[0]\n"
              "-Ports\n"
              "-ZS1_PORT_4A\n"
              "@22\n"
              "+{leds (ZS1_PORT_4A)} stdcore[0]_ZS1_PORT_4A[3:0]\n"
              "@2022\n"
              "^1 a.filters/values-0.txt\n"
              "#{leds_inuse (ZS1_PORT_4A_inuse)} stdcore[0]_ZS1_PORT_4A_inuse\n"
              "^2 a.filters/values-1.txt\n"
              "#{leds_tWaiting (ZS1_PORT_4A_tWaiting)} stdcore[0]_ZS1_PORT_4A_tWaiting\n"
              "^3 a.filters/values-2.txt\n"
              "#{leds_direction (ZS1_PORT_4A_direction)} stdcore[0]_ZS1_PORT_4A_direction\n"
              "@22\n"
              "+{leds_outputThreadPc (ZS1_PORT_4A_outputThreadPc)} "
              "stdcore[0]_ZS1_PORT_4A_outputThreadPc[31:0]\n"
              "+{leds_portDetails (ZS1_PORT_4A_portDetails)} "
              "stdcore[0]_ZS1_PORT_4A_portDetails[31:0]\n"
              "@1000200\n"
              "-ZS1_PORT_4A\n"
              "-Ports\n"
              "@800200\n"
              "-Cycles\n"
              "@24\n"
              "stdcore[0]_CYCLES[31:0]\n"
              "@1000200\n"
              "-Cycles\n"
              "@800200\n"
              "-Threads\n"
              "-Thread0\n"
              "@2022\n"
              "^4 a.filters/values-3.txt\n"
              "#{stdcore[0]_Thread0_inuse} stdcore[0]_Thread0_inuse\n"
              "^5 a.filters/values-4.txt\n"
              "#{stdcore[0]_Thread0_waiting} stdcore[0]_Thread0_waiting\n"
              "^6 a.filters/resources-5.txt\n"
              "stdcore[0]_Thread0_waitingResourceType[63:0]\n"
              "@22\n"
              "stdcore[0]_Thread0_waitingResourceNumber[7:0]\n"
              "@1000200\n"
              "-Thread0\n"
              "-Threads\n"
              "@800200\n"
              "-Instructions\n"
              "@22\n"
              "stdcore[0]_INSTRUCTION_PC[31:0]\n"
              "stdcore[0]_INSTRUCTION_THREAD_ID[7:0]\n"
              "@820\n"
              "stdcore[0]_INSTRUCTION_MNEMONIC[63:0]\n"
              "@1000200\n"
              "-Instructions\n"
              "@800200\n"
              "-Functions\n"
              "@2022\n"
              "^7 a.filters/functions-6.txt\n"
              "stdcore[0]_Functions_Thread0[63:0]\n"
              "@1000200\n"
              "-Functions\n"
              "-stdcore[0]\n");
    EXPECT_EQ(folder.read("a.filters/values-2.txt"),
              "0 The port is in input mode\n1 The port is in output mode\n");
    EXPECT_EQ(folder.read("a.filters/functions-6.txt"), "6d61696e2e300000 main\n"
                                                        "615f66752e300000 a_function_of_some_length\n"
                                                        "6162000000000000 ab\n");
    EXPECT_EQ(folder.read("a.filters/resources-5.txt"), "4e2f412020202020 N/A\n"
                                                        "504f525420202020 PORT\n"
                                                        "54494d4552202020 TIMER\n"
                                                        "4348414e454e4420 CHANEND\n"
                                                        "53594e4320202020 SYNC\n"
                                                        "5448524541442020 THREAD\n"
                                                        "4c4f434b20202020 LOCK\n"
                                                        "434c4b424c4b2020 CLKBLK\n"
                                                        "434f50524f432020 COPROC\n"
                                                        "5053202020202020 PS\n"
                                                        "434f4e4649472020 CONFIG\n"
                                                        "494e535452202020 INSTR\n");
}

TEST(WaveGtkw, ClosesLongGroups) {
    SampleWave wave;
    for (int pad = 0; pad < 25; ++pad)
        wave.pads.push_back("Pad" + std::to_string(pad));
    const TemporaryFolder folder;
    folder.write("a.vcd", wave.start());
    EXPECT_EQ(zetoolShell(folder.path(), "zetool wave gtkw a.vcd").exitStatus, 0);
    EXPECT_THAT(folder.read("a.gtkw"), testing::HasSubstr("@c00200\n-Pads\n"));
    EXPECT_THAT(folder.read("a.gtkw"), testing::EndsWith("@1400200\n-Pads\n"));
}

TEST(WaveGtkw, SharesEqualTables) {
    SampleWave wave;
    wave.cores.resize(2);
    for (TracedCore& core : wave.cores) {
        core.functions = {{"main", "main.0"}};
        core.numFunctionThreads = 8;
    }
    wave.cores[1].name = "stdcore[1]";
    wave.cores[1].tag = "01";
    const TemporaryFolder folder;
    folder.write("a.vcd", wave.start());
    EXPECT_EQ(zetoolShell(folder.path(), "zetool wave gtkw a.vcd; ls a.filters").output, "functions-0.txt\n");
}

TEST(WaveGtkw, KeepsToTheMostFiltersOfASession) {
    SampleWave wave;
    for (int number = 0; number < 130; ++number) {
        TracedCore core;
        core.name = "stdcore[" + std::to_string(number) + "]";
        core.tag = "0" + std::to_string(number);
        core.functions = {{"main" + std::to_string(number), "main.0"}};
        core.numFunctionThreads = 1;
        wave.cores.push_back(core);
    }
    const TemporaryFolder folder;
    folder.write("a.vcd", wave.start());
    const ChildResult result = zetoolShell(folder.path(), "zetool wave gtkw a.vcd; ls a.filters | wc -l");
    EXPECT_EQ(result.output, "128\n");
    EXPECT_THAT(result.error,
                testing::EndsWith(": 2 signals show numbers in place of texts: a session has at most "
                                  "128 filters\n"));
}

TEST(WaveGtkw, KeepsASessionThatExists) {
    const TemporaryFolder folder;
    folder.write("a.vcd", fullSample().start());
    folder.write("a.gtkw", "mine");
    const ChildResult result = zetoolShell(folder.path(), "zetool wave gtkw a.vcd");
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: a.gtkw: exists; --force replaces it\n");
    EXPECT_EQ(folder.read("a.gtkw"), "mine");
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.filters")));
    EXPECT_EQ(zetoolShell(folder.path(), "zetool wave gtkw --force a.vcd").exitStatus, 0);
    EXPECT_NE(folder.read("a.gtkw"), "mine");
}

TEST(WaveGtkw, NeverReplacesItsWaveform) {
    const TemporaryFolder folder;
    const std::string text = fullSample().start();
    folder.write("a.gtkw", text);
    folder.write("a.vcd", text);
    std::filesystem::create_directory(folder.file("b.filters"));
    folder.write("b.filters/values-0.txt", text);
    const struct {
        const char* words;
        const char* saved;
    } rows[] = {
        {"a.gtkw", "a.gtkw"},
        {"--force a.gtkw", "a.gtkw"},
        {"--force a.vcd -o ./a.vcd", "./a.vcd"},
        {"--force b.filters/values-0.txt -o b.gtkw", "b.filters/values-0.txt"},
    };
    for (const auto& row : rows) {
        const ChildResult result = zetoolShell(folder.path(), std::string("zetool wave gtkw ") + row.words);
        EXPECT_EQ(result.exitStatus, 2) << row.words;
        EXPECT_EQ(result.error, std::string("zetool: ") + row.saved +
                                    ": is the waveform itself; --output names another file\n");
    }
    for (const char* file : {"a.gtkw", "a.vcd", "b.filters/values-0.txt"})
        EXPECT_EQ(folder.read(file), text);
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.filters")));
    EXPECT_FALSE(std::filesystem::exists(folder.file("b.gtkw")));
}

TEST(WaveGtkw, SaysThatGtkwaveRefusesAName) {
    SampleWave wave;
    wave.cores.emplace_back();
    wave.cores[0].ports = {{"a:b", 1, ""}};
    const TemporaryFolder folder;
    folder.write("a.vcd", wave.start());
    const ChildResult result = zetoolShell(folder.path(), "zetool wave gtkw a.vcd");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error,
              "zetool: a.vcd:80: GTKWave refuses a file with such a name: stdcore[0]_a:b; 'zetool wave "
              "standard' makes one that it opens\n");
}

TEST(WaveGtkw, WantsAFile) {
    const ChildResult result = zetool({"wave", "gtkw", "-"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: (standard input): a session names its waveform: give a file\n");
}

} // namespace
