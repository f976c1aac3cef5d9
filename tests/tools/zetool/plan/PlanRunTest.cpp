#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Json.h"

// The plan against real runs: the plugin as it is built, in the host.
namespace {

// The ports that every core of the family has.
constexpr struct {
    const char* name;
    unsigned int width;
} s_ports[] = {
    {"ZS1_PORT_32A", 32}, {"ZS1_PORT_16A", 16}, {"ZS1_PORT_16B", 16}, {"ZS1_PORT_8A", 8},
    {"ZS1_PORT_8B", 8},   {"ZS1_PORT_8C", 8},   {"ZS1_PORT_8D", 8},   {"ZS1_PORT_4A", 4},
    {"ZS1_PORT_4B", 4},   {"ZS1_PORT_4C", 4},   {"ZS1_PORT_4D", 4},   {"ZS1_PORT_4E", 4},
    {"ZS1_PORT_4F", 4},   {"ZS1_PORT_1A", 1},   {"ZS1_PORT_1B", 1},   {"ZS1_PORT_1C", 1},
    {"ZS1_PORT_1D", 1},   {"ZS1_PORT_1E", 1},   {"ZS1_PORT_1F", 1},   {"ZS1_PORT_1G", 1},
    {"ZS1_PORT_1H", 1},   {"ZS1_PORT_1I", 1},   {"ZS1_PORT_1J", 1},   {"ZS1_PORT_1K", 1},
    {"ZS1_PORT_1L", 1},   {"ZS1_PORT_1M", 1},   {"ZS1_PORT_1N", 1},   {"ZS1_PORT_1O", 1},
    {"ZS1_PORT_1P", 1},   {"ZS1_PORT_32B", 32}, {"ZS1_PORT_16C", 16}, {"ZS1_PORT_16D", 16},
};

// A simulator that has just what the documents of an image say: for each pair of node and core all ports, 8
// threads, 10 timers and 6 clock blocks, and these pads.
std::string scenario(const std::vector<std::pair<unsigned int, unsigned int>>& cores,
                     const std::vector<std::string>& pads) {
    std::string text = "clocks 1\n";
    for (std::size_t pad = 0; pad < pads.size(); ++pad)
        text += "pad " + std::to_string(pad) + " " + pads[pad] + "\n";
    for (const auto& [node, core] : cores) {
        text += "node " + std::to_string(node) + "\ncore " + std::to_string(core) + "\n";
        std::size_t number = 0;
        for (const auto& port : s_ports)
            text += "port " + std::to_string(number++) + " " + port.name + "\nwidth " +
                    std::to_string(port.width) + "\n";
        text += "thread 0..7\ntimer 0..9\nclockBlock 0..5\n";
    }
    return text;
}

std::vector<std::string> declarations(const std::string& waveform) {
    std::vector<std::string> lines;
    std::istringstream stream(waveform);
    for (std::string line; std::getline(stream, line);)
        if (line.starts_with("$var "))
            lines.push_back(line);
    return lines;
}

void addDeclarations(const Json& option, std::vector<std::string>& lines) {
    EXPECT_EQ(option["count"].get<std::size_t>(), option["signals"].size());
    for (const Json& signal : option["signals"])
        lines.push_back("$var wire " + std::to_string(signal["width"].get<unsigned int>()) + " " +
                        signal["identifier"].get<std::string>() + " " + signal["name"].get<std::string>() +
                        " $end");
}

// What the plan says of all options but one: of the two for ports a run has the one or the other.
std::vector<std::string> planned(const Json& plan, const std::string& without) {
    std::vector<std::string> lines;
    if (!plan["pads"].is_null())
        addDeclarations(plan["pads"], lines);
    for (const Json& core : plan["cores"])
        for (const Json& option : core["options"])
            if (option["option"] != without)
                addDeclarations(option, lines);
    return lines;
}

class PlanRun : public testing::Test {
protected:
    Json plan(const std::string& words) {
        const ChildResult result = zetoolShell(folder.path(), "zetool plan --json " + words);
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        return Json::parse(result.output);
    }

    // The declarations of a run with these arguments.
    std::vector<std::string> run(const std::string& scenario, const std::string& arguments,
                                 const std::string& waveform) {
        folder.write("a.scenario", scenario);
        const ChildResult result = zetoolShell(folder.path(), TRACEHOST_PROGRAM " -i \"" + arguments +
                                                                  "\" " WAVE_PLUGIN " a.scenario");
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        return declarations(folder.read(waveform));
    }

    void makeDemoImage() {
        const ChildResult image =
            zetoolShell(folder.path(), ZETOOL_EXAMPLES "/make-image " ZETOOL_PROGRAM " demo.ze");
        ASSERT_EQ(image.exitStatus, 0) << image.error;
    }

    const TemporaryFolder folder;
};

TEST_F(PlanRun, AgreesWithARunOnTheSampleDevice) {
    const ScopedVariable devices("ZCC_DEVICE_PATH", ZETOOL_EXAMPLES "/device");
    makeDemoImage();
    const std::string simulator =
        scenario({{0, 0}, {0, 1}}, {"X0D00", "X0D14", "X0D15", "X0D20", "X0D21", "X1D01"});

    const Json all = plan("demo.ze");
    const std::vector<std::string> detailed = run(simulator, all["arguments"], "demo.vcd");
    EXPECT_EQ(planned(all, "-ports"), detailed);
    EXPECT_EQ(all["numSignals"].get<std::size_t>(), detailed.size());
    EXPECT_EQ(detailed.size(), 6U + 2 * (32 * 15 + 1 + 8 * 4 + 6 * 5 + 10 * 3 + 3 + 8));

    const Json some = plan("-w some.vcd -c 'stdcore[1]' -t ports -t functions -t threads demo.ze");
    EXPECT_EQ(planned(some, ""), run(simulator, some["arguments"], "some.vcd"));
}

TEST_F(PlanRun, AgreesWithEachOptionByItself) {
    const ScopedVariable devices("ZCC_DEVICE_PATH", ZETOOL_EXAMPLES "/device");
    makeDemoImage();
    const std::string simulator =
        scenario({{0, 0}, {0, 1}, {0x8000, 1}}, {"X0D00", "X0D14", "X0D15", "X0D20", "X0D21", "X1D01"});
    for (const std::string word : {"pads", "ports", "ports-detailed", "cycles", "threads", "clock-blocks",
                                   "timers", "instructions", "functions"}) {
        const Json one = plan("-t " + word + " -c 'stdcore[3]' -w " + word + ".vcd demo.ze");
        const std::vector<std::string> lines = run(simulator, one["arguments"], word + ".vcd");
        EXPECT_FALSE(lines.empty()) << word;
        EXPECT_EQ(planned(one, ""), lines) << word;
    }
}

TEST_F(PlanRun, AgreesWithARunOnASampleImageOfTwoCores) {
    const DeviceFolder devices;
    folder.write("app.ze", sampleImage({{"stdcore[0]",
                                         0,
                                         0,
                                         "<Port Location='ZS1_PORT_1A' Name='LED'/>",
                                         {sampleProgram({"main", "mainloop"})}},
                                        {"stdcore[1]", 0, 1}}));
    const Json all = plan("app.ze");
    const std::vector<std::string> lines =
        run(scenario({{0, 0}, {0, 1}}, {"X0", "X1", "X2", "X3"}), all["arguments"], "app.vcd");
    EXPECT_EQ(planned(all, "-ports"), lines);
    EXPECT_EQ(lines.size(), 4U + 2 * (32 * 15 + 1 + 8 * 4 + 6 * 5 + 10 * 3 + 3 + 8));
}

// The scenario of the demo has less than the sample device's documents say: one pad and six timers a core
// less, the ports that it uses, and no clock blocks on core 1.
TEST_F(PlanRun, AgreesWithTheDemoWhereItsSimulatorDoes) {
    const ScopedVariable devices("ZCC_DEVICE_PATH", ZETOOL_EXAMPLES "/device");
    makeDemoImage();
    const ChildResult result =
        zetoolShell(folder.path(), TRACEHOST_PROGRAM " " WAVE_PLUGIN " " ZETOOL_EXAMPLES "/demo.scenario");
    ASSERT_EQ(result.exitStatus, 0) << result.error;
    const auto names = [](const std::vector<std::string>& lines) {
        std::multiset<std::string> all;
        for (const std::string& line : lines) {
            std::istringstream words(line);
            std::string var, wire, width, identifier, name;
            words >> var >> wire >> width >> identifier >> name;
            all.insert(width + " " + name);
        }
        return all;
    };
    std::multiset<std::string> expected = names(planned(plan("--mapped-ports --timers 4 demo.ze"), "-ports"));
    EXPECT_EQ(expected.erase("1 X1D01"), 1U);
    EXPECT_EQ(expected.erase("32 stdcore[1]_CYCLES"), 1U); // not asked for
    EXPECT_EQ(std::erase_if(expected,
                            [](const std::string& name) {
                                return name.find("stdcore[1]_ClkBlk") != std::string::npos;
                            }),
              30U);
    EXPECT_EQ(expected, names(declarations(folder.read("demo.vcd"))));
}

} // namespace
