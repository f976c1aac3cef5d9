#include "tests/support/ImageBuilder.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/DamagedInput.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

// A configuration with the two ports of core 0 and a number of its own, and with this pin.
std::string smallConfiguration(const std::string& pin = "PKG:X0") {
    return "<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'><Processor number='0' numTimers='1'>"
           "<Ports><Port name='ZS1_PORT_1A' id='0x10200'/><Port name='ZS1_PORT_4A' id='0x40000'/></Ports>"
           "</Processor></Node></Nodes><Pins><Pin name='" +
           pin +
           "'><Port name='ZS1_PORT_4A' node='0' core='0' priority='0' bitNum='2'/></Pin></Pins>"
           "</System></ZSystem>";
}

std::string imageOf(const std::string& configuration, const std::vector<ImageCore>& cores) {
    ImageBuilder image;
    image.config(configuration).zn(sampleNetwork(cores));
    return image.elf(0, cores.front().core, sampleProgram({"main"})).end().bytes();
}

class PlanTest : public testing::Test {
protected:
    PlanTest() {
        folder.write("app.ze", imageOf(smallConfiguration(), {{"stdcore[0]", 0, 0}, {"stdcore[1]", 0, 1}}));
    }

    ChildResult plan(const std::string& words) { return zetoolShell(folder.path(), "zetool plan " + words); }

    DeviceFolder devices;
    TemporaryFolder folder;
};

const std::string s_assumed =
    "assumed: the simulator has what the image says. Its own counts and names decide.\n\n";

} // namespace

TEST_F(PlanTest, ShowsSignalsArgumentsAndAssumptions) {
    folder.write("none.ze", "no image");
    folder.write("network.ze",
                 ImageBuilder().config("<ZSystem/>").elf(0, 0, sampleProgram({})).end().bytes());
    folder.write("program.ze", ImageBuilder().config(smallConfiguration()).zn("<Network/>").end().bytes());
    folder.write("elf.ze",
                 ImageBuilder()
                     .config(smallConfiguration())
                     .zn(sampleNetwork({{"main"}}))
                     .elf(0, 0, "no ELF file, but longer than the header of one would be............")
                     .end()
                     .bytes());
    folder.write(
        "two.ze",
        ImageBuilder().config("<ZSystem/>").config("<ZSystem/>").zn(sampleNetwork({{"main"}})).end().bytes());
    folder.write("pin.ze", imageOf(smallConfiguration("X0"), {{"main"}}));
    folder.write("bit.ze", imageOf("<ZSystem><System/></ZSystem>", {{"main"}}));
    folder.write("bad.ze", ImageBuilder()
                               .config(smallConfiguration())
                               .zn("<Network>")
                               .elf(0, 0, sampleProgram({}))
                               .end()
                               .bytes());
    folder.write("many.ze",
                 imageOf("<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'><Processor number='0' "
                         "numThreads='65537' numTimers='0xffffffff'/></Node></Nodes></System></ZSystem>",
                         {{"main"}}));
    const CommandCase cases[] = {
        {"zetool plan -t pads -t cycles -t ports app.ze", 0,
         "core        node  number  programs  ports              threads                   timers            "
         " "
         "clock blocks\n"
         "stdcore[0]  0     0       1         2 (configuration)  8 (node's configuration)  1 (configuration) "
         " 6 "
         "(default)\n" +
             s_assumed +
             "core        option   signals\n"
             "            -pads          1\n"
             "stdcore[0]  -ports        12\n"
             "stdcore[0]  -cycles        1\n"
             "\n"
             "arguments for these 14 signals:\n"
             "-ze app.ze -o app.vcd -pads -core stdcore[0] -ports -cycles\n"
             "\n"
             "-pads: 1 signal\n"
             "width  name\n"
             "    1  X0\n"
             "\n"
             "stdcore[0] -ports: 12 signals\n"
             "width  name\n"
             "    1  stdcore[0]_ZS1_PORT_1A\n"
             "    1  stdcore[0]_ZS1_PORT_1A_inuse\n"
             "    1  stdcore[0]_ZS1_PORT_1A_tWaiting\n"
             "    1  stdcore[0]_ZS1_PORT_1A_direction\n"
             "   32  stdcore[0]_ZS1_PORT_1A_outputThreadPc\n"
             "   32  stdcore[0]_ZS1_PORT_1A_portDetails\n"
             "    4  stdcore[0]_ZS1_PORT_4A\n"
             "    1  stdcore[0]_ZS1_PORT_4A_inuse\n"
             "    1  stdcore[0]_ZS1_PORT_4A_tWaiting\n"
             "    1  stdcore[0]_ZS1_PORT_4A_direction\n"
             "   32  stdcore[0]_ZS1_PORT_4A_outputThreadPc\n"
             "   32  stdcore[0]_ZS1_PORT_4A_portDetails\n"
             "\n"
             "stdcore[0] -cycles: 1 signal\n"
             "width  name\n"
             "   32  stdcore[0]_CYCLES\n"},
        {"zetool plan --summary --mapped-ports --threads 2 --timers 3 --clock-blocks 4 app.ze", 0,
         "core        node  number  programs  ports              threads     timers      clock blocks\n"
         "stdcore[0]  0     0       1         1 (configuration)  2 (option)  3 (option)  4 (option)\n" +
             s_assumed +
             "core        option           signals\n"
             "            -pads                  1\n"
             "stdcore[0]  -ports                 6\n"
             "stdcore[0]  -ports-detailed       15\n"
             "stdcore[0]  -cycles                1\n"
             "stdcore[0]  -threads               8\n"
             "stdcore[0]  -clock-blocks         20\n"
             "stdcore[0]  -timers                9\n"
             "stdcore[0]  -instructions          3\n"
             "stdcore[0]  -functions             2\n"
             "\n"
             "arguments for these 59 signals:\n"
             "-ze app.ze -o app.vcd -pads -core stdcore[0] -ports-detailed -cycles -threads -clock-blocks "
             "-timers "
             "-instructions -functions\n"},
        {"zetool plan -s -c 'stdcore[1]' -c 'stdcore[0]' -t timers -w 'my run.vcd' - <app.ze", 0,
         "core        node  number  programs  ports              threads                   timers            "
         "      "
         "   clock blocks\n"
         "stdcore[1]  0     1       0         32 (default)       8 (node's configuration)  10 (node's "
         "configuration)  6 (default)\n"
         "stdcore[0]  0     0       1         2 (configuration)  8 (node's configuration)  1 (configuration) "
         "      "
         "   6 (default)\n" +
             s_assumed +
             "core        option   signals\n"
             "stdcore[1]  -timers       30\n"
             "stdcore[0]  -timers        3\n"
             "\n"
             "arguments for these 33 signals:\n"
             "-ze IMAGE -o 'my run.vcd' -core stdcore[1] -timers -core stdcore[0] -timers\n"},
        {"zetool plan -t cycles -s app.ze -w \"it's\" | tail -n 2", 0,
         "core        option   signals\n"
         "stdcore[0]  -cycles        1\n",
         "zetool: app.ze: a name holds a quote ', so that no argument string can hold it\n"},
        {"zetool plan -c far app.ze", 1, "", "zetool: app.ze: there is no core 'far'\n"},
        {"zetool plan --threads x app.ze", 2, "", "zetool: plan: --threads: 'x' isn't a number\n"},
        {"zetool plan --threads 65537 app.ze", 1, "",
         "zetool: app.ze: core 'stdcore[0]' would have 65537 threads, more than any device\n"
         "zetool: app.ze: core 'stdcore[1]' would have 65537 threads, more than any device\n"},
        {"zetool plan many.ze", 1, "",
         "zetool: many.ze: core 'main' would have 65537 threads, more than any device\n"
         "zetool: many.ze: core 'main' would have 4294967295 timers, more than any device\n"},
        {"zetool plan nowhere.ze", 2, "", "zetool: nowhere.ze: can't be opened: No such file or directory\n"},
        {"zetool plan none.ze", 1, "", "zetool: none.ze: Header tag incorrect\n"},
        {"zetool plan network.ze", 1, "",
         "zetool: network.ze: the image has no network, without which the plugin knows no core\n"},
        {"zetool plan program.ze", 1, "",
         "zetool: program.ze: the image has no program, without which the plugin doesn't start\n"},
        {"zetool plan two.ze", 1, "", "zetool: two.ze: the image must have one configuration, and has 2\n"},
        {"zetool plan elf.ze", 1, "", "zetool: elf.ze: program of 0:0: ERROR: Header is not an ELF file\n"},
        {"zetool plan pin.ze", 1, "", "zetool: pin.ze: configuration: ERROR: Invalid pin name format: X0\n"},
        {"zetool plan bit.ze", 1, "",
         "zetool: bit.ze: configuration: ERROR: No 'Nodes' node in 'System' node\n"},
        {"zetool plan bad.ze", 1, "",
         "zetool: bad.ze: network: Error: ZN11038 JTAG scan chain not specified.\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(PlanTest, WritesOneJsonObject) {
    EXPECT_EQ(writtenJson(folder.path(), "zetool plan --json -t cycles -t pads app.ze", "plan.schema.json"),
              "{\n"
              "  \"type\": \"plan\",\n"
              "  \"version\": 1,\n"
              "  \"assumption\": \"assumed: the simulator has what the image says. Its own counts "
              "and names decide.\",\n"
              "  \"arguments\": \"-ze app.ze -o app.vcd -pads -core stdcore[0] -cycles\",\n"
              "  \"numSignals\": 2,\n"
              "  \"pads\": {\n"
              "    \"option\": \"-pads\",\n"
              "    \"count\": 1,\n"
              "    \"signals\": [\n"
              "      {\n"
              "        \"name\": \"X0\",\n"
              "        \"width\": 1,\n"
              "        \"identifier\": \"paa0\"\n"
              "      }\n"
              "    ]\n"
              "  },\n"
              "  \"cores\": [\n"
              "    {\n"
              "      \"name\": \"stdcore[0]\",\n"
              "      \"node\": 0,\n"
              "      \"number\": 0,\n"
              "      \"programs\": 1,\n"
              "      \"ports\": {\n"
              "        \"number\": 2,\n"
              "        \"source\": \"configuration\"\n"
              "      },\n"
              "      \"threads\": {\n"
              "        \"number\": 8,\n"
              "        \"source\": \"nodeConfiguration\"\n"
              "      },\n"
              "      \"timers\": {\n"
              "        \"number\": 1,\n"
              "        \"source\": \"configuration\"\n"
              "      },\n"
              "      \"clockBlocks\": {\n"
              "        \"number\": 6,\n"
              "        \"source\": \"default\"\n"
              "      },\n"
              "      \"options\": [\n"
              "        {\n"
              "          \"option\": \"-cycles\",\n"
              "          \"count\": 1,\n"
              "          \"signals\": [\n"
              "            {\n"
              "              \"name\": \"stdcore[0]_CYCLES\",\n"
              "              \"width\": 32,\n"
              "              \"identifier\": \"_00\"\n"
              "            }\n"
              "          ]\n"
              "        }\n"
              "      ]\n"
              "    }\n"
              "  ],\n"
              "  \"troubles\": []\n"
              "}\n");
    for (const char* const words : {"-t cycles app.ze", "app.ze", "-s --timers 1 app.ze"})
        EXPECT_EQ(schemaFaults("plan.schema.json", plan(std::string("--json ") + words).output), "");
}

namespace {

struct StumbleRow {
    const char* core; // as the network's document spells it
    const char* pin;
    const char* words;
    const char* key;
    const char* name;
};

} // namespace

TEST_F(PlanTest, NamesWhatViewersStumbleOver) {
    const StumbleRow rows[] = {
        {"caf\xc3\xa9", "PKG:X0", "-t cycles", "nameHasBlank", "caf\xc3\xa9_CYCLES"},
        {"a b", "PKG:X0", "-t cycles", "nameHasBlank", "a b_CYCLES"},
        {"main", "PKG:X[0]", "-t pads", "nameIsBit", "X[0]"},
        {"main", "PKG:X$end", "-t pads", nullptr, nullptr},
        {"main", "PKG:X $end", "-t pads", "nameEndsStatement", "X $end"},
        {"a\"b", "PKG:X0", "-t cycles", "documentIllFormed", "<Core name=\"a\"b\">"},
        {"a&lt;b", "PKG:X0", "-t cycles", "documentIllFormed", "<Core name=\"a<b\">"},
        {"a&amp;b", "PKG:X0", "-t cycles", "documentIllFormed", "<Core name=\"a&b\">"},
        {"a $end b", "PKG:X0", "-t cycles", "documentEndsEarly", "<Core name=\"a $end b\">"},
    };
    for (const StumbleRow& row : rows) {
        folder.write("a.ze", imageOf(smallConfiguration(row.pin), {{row.core}}));
        const ChildResult result = plan(std::string("--json ") + row.words + " a.ze");
        if (row.key)
            EXPECT_THAT(result.error, testing::StartsWith("zetool: a.ze: viewers will stumble over names: "));
        else
            EXPECT_EQ(result.error, "");
        ASSERT_FALSE(result.output.empty()) << row.core;
        EXPECT_EQ(schemaFaults("plan.schema.json", result.output), "") << row.core;
        if (row.key) {
            EXPECT_EQ(result.exitStatus, 1) << row.core;
            EXPECT_THAT(result.output, testing::HasSubstr("\"trouble\": \"" + std::string(row.key) + "\""));
            EXPECT_THAT(plan(std::string(row.words) + " a.ze").output,
                        testing::HasSubstr("    " + std::string(row.name) + "\n"));
        } else {
            EXPECT_EQ(result.exitStatus, 0) << row.core << row.pin;
            EXPECT_THAT(result.output, testing::HasSubstr("\"troubles\": []"));
        }
    }
}

TEST_F(PlanTest, NamesIdentifiersThatTwoSignalsShare) {
    devices.addNodeType("L1", 0x2633, 12);
    std::vector<ImageCore> cores;
    for (const unsigned int node : {1U, 11U})
        for (unsigned int core = 0; core < 12; ++core)
            cores.push_back({"n" + std::to_string(node) + "c" + std::to_string(core), node, core});
    folder.write("a.ze", imageOf(smallConfiguration(), cores));
    const ChildResult result = plan("-t cycles -c n1c11 -c n11c1 -c n1c1 a.ze");
    EXPECT_EQ(result.error, "zetool: a.ze: viewers will stumble over names: 1\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.output, testing::HasSubstr("\none identifier for two signals\n"
                                                  "    every reader shows the values of both in both\n"
                                                  "    _111: n1c11_CYCLES, n11c1_CYCLES\n"));
}

TEST_F(PlanTest, ShowsTenNamesOfAKindAndCountsTheOthers) {
    folder.write("a.ze", imageOf(smallConfiguration(), {{"a b"}}));
    EXPECT_THAT(plan("-s -t ports a.ze").output, testing::HasSubstr("    a b_ZS1_PORT_4A_direction\n"
                                                                    "    and 2 more\n"));
}

// A stored CRC of 0 is none, so that what is damaged reaches the readers of the parts.
TEST_F(PlanTest, EveryDamagedImageHasAMessage) {
    ImageBuilder image;
    const auto dropCrc = [&] { image.setNumber(image.size() - 4, 4, 0); };
    image.config(smallConfiguration());
    dropCrc();
    image.zn(sampleNetwork({{"stdcore[0]", 0, 0, "<Port Location='ZS1_PORT_1A' Name='LED'/>"}}));
    dropCrc();
    image.elf(0, 0, sampleProgram({"main", "mainloop"}));
    dropCrc();
    EXPECT_EQ(damageFailures(folder, "a.ze", image.end().bytes(),
                             {{"plan", "-t", "functions", "-t", "pads", "-t", "timers", "a.ze"},
                              {"plan", "--json", "-s", "--mapped-ports", "a.ze"}}),
              "");
}
