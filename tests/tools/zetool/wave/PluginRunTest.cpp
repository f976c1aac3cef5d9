#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/VcdText.h"
#include "tests/tools/zetool/ZetoolProgram.h"

// The waveform of a real run: the plugin as it is built, in the host, on the sample device's image.
namespace {

class PluginRun : public testing::Test {
protected:
    void SetUp() override {
        const ChildResult image = shell(ZETOOL_EXAMPLES "/make-image " ZETOOL_PROGRAM " demo.ze");
        ASSERT_EQ(image.exitStatus, 0) << image.error;
        const ChildResult run = shell(TRACEHOST_PROGRAM " " WAVE_PLUGIN " " ZETOOL_EXAMPLES "/demo.scenario");
        ASSERT_EQ(run.exitStatus, 0) << run.error;
        ASSERT_FALSE(m_folder.read("demo.vcd").empty());
    }

    ChildResult shell(const std::string& line) {
        return zetoolShell(m_folder.path(), "export ZCC_DEVICE_PATH=" ZETOOL_EXAMPLES "/device; " + line);
    }

    const TemporaryFolder m_folder;
};

// Names and widths of the $var lines, as they stand.
std::multiset<std::string> declared(const std::string& text) {
    std::multiset<std::string> all;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword, type, width, identifier, name;
        words >> keyword >> type >> width >> identifier >> name;
        if (keyword == "$var")
            all.insert(width + " " + name);
    }
    return all;
}

TEST_F(PluginRun, ListsEverySignalOfTheRun) {
    const ChildResult result = shell("zetool wave list demo.vcd");
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    std::multiset<std::string> listed;
    std::istringstream lines(result.output);
    std::string line;
    std::getline(lines, line); // the heading
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string width, name;
        words >> width >> name;
        listed.insert(width + " " + name);
    }
    EXPECT_EQ(listed, declared(m_folder.read("demo.vcd")));
    EXPECT_THAT(result.output,
                testing::ContainsRegex("stdcore\\[0\\]_ZS1_PORT_1A +stdcore\\[0\\]/Ports/ZS1_PORT_1A "
                                       "+PORT_UART_TX "));
}

TEST_F(PluginRun, HasNoTroubleOnceItIsStandard) {
    const ChildResult result =
        shell("zetool wave standard -o standard.vcd demo.vcd && zetool wave check standard.vcd");
    EXPECT_EQ(result.exitStatus, 0) << result.output << result.error;
    EXPECT_THAT(result.output,
                testing::MatchesRegex("standard.vcd: the last step, at time 12000 in line [0-9]+, is "
                                      "whole\n"));
    const VcdText standard(m_folder.read("standard.vcd"));
    EXPECT_EQ(standard.timescale, "1ns");
    EXPECT_EQ(standard.widths.size(), declared(m_folder.read("demo.vcd")).size());
    ASSERT_EQ(shell("vcd2fst standard.vcd a.fst && fst2vcd a.fst -o back.vcd").exitStatus, 0);
    EXPECT_EQ(VcdText(m_folder.read("back.vcd")).changes, standard.changes);
}

TEST_F(PluginRun, GivesGtkwaveWholeFunctionNames) {
    ASSERT_EQ(shell("zetool wave gtkw demo.vcd").exitStatus, 0);
    EXPECT_THAT(shell("cat demo.filters/functions-*").output, testing::HasSubstr(" sendByte\n"));
    const std::string written = m_folder.read("demo.gtkw");
    for (const std::string& signal : declared(m_folder.read("demo.vcd")))
        EXPECT_THAT(written, testing::HasSubstr(signal.substr(signal.find(' ') + 1)));
}

TEST_F(PluginRun, LetsSigrokReadWhatTheProgramSends) {
    const ChildResult result = shell(
        "zetool wave standard --for pulseview -o pads.vcd demo.vcd 2>/dev/null && sigrok-cli -i pads.vcd -P "
        "uart:rx=stdcore_0_ZS1_PORT_1A:baudrate=12500000:format=ascii -A uart=rx-data");
    std::string text;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);)
        text += line.substr(line.find(' ') + 1);
    EXPECT_EQ(text, "Hello, world![0A]") << result.error;
}

} // namespace
