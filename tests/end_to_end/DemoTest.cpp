// The sample device of the demo.

#include "tests/end_to_end/HostRun.h"

#include "tests/support/ScopedVariable.h"

#include <bitset>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>

namespace {

// What a serial line with this identifier carries: 8 bits a byte, a bit every so many clocks.
std::string receive(const std::string& waveform, const std::string& identifier, long clocksPerBit) {
    std::istringstream lines(valuesOf(waveform));
    std::string text;
    long clock = 0;
    bool level = true;
    long start = -1; // of the byte's start bit; negative between bytes
    unsigned int bits = 0;
    int numBits = 0;
    const auto sampleUntil = [&](long now) {
        while (start >= 0 && start + (2 * numBits + 1) * clocksPerBit / 2 < now) {
            bits |= static_cast<unsigned int>(level) << numBits;
            if (++numBits < 10)
                continue;
            text += (bits & 0x201U) == 0x200U ? static_cast<char>(bits >> 1) : '?';
            start = -1;
        }
    };
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#')) {
            clock = std::stol(line.substr(1));
            sampleUntil(clock);
        } else if (line == "0" + identifier || line == "1" + identifier) {
            level = line.front() == '1';
            if (!level && start < 0) {
                start = clock;
                bits = 0;
                numBits = 0;
            }
        }
    }
    return text;
}

// A run on the sample device itself.
class Demo : public testing::Test {
protected:
    Demo() : m_devicePath("ZCC_DEVICE_PATH", PROJECT_FOLDER "/examples/device") {}

    void SetUp() override {
        const ChildResult made =
            runProgram({PROJECT_FOLDER "/examples/make-image", ZETOOL, m_run.folder().file("app.ze")});
        ASSERT_EQ(made.exitStatus, 0) << made.error;
    }

    // The waveform of the demo's scenario with these options.
    std::string play(const std::string& words) {
        const ChildResult result =
            m_run.play(readFile(PROJECT_FOLDER "/examples/demo.scenario"), {m_run.arguments("a.vcd", words)});
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        return m_run.waveform("a.vcd");
    }

    HostRun m_run;
    ScopedVariable m_devicePath;
};

} // namespace

TEST_F(Demo, SendsItsTextOnTheSerialLineOfBothCoresAndThePad) {
    const std::string waveform = play("-pads -core stdcore[0] -ports -core stdcore[1] -ports");
    EXPECT_EQ(receive(waveform, "po00a0", 40), "Hello, world!\n");
    EXPECT_EQ(receive(waveform, "po01a0", 40), "Hello, world!\n");
    EXPECT_EQ(receive(waveform, "paa0", 40), "Hello, world!\n");
}

// Every function of the scenario is one of the program, so each has its short name; and each is seen to run,
// under that name as eight characters.
TEST_F(Demo, ItsThreadsRunFunctionsOfItsPrograms) {
    const std::string waveform = play("-core stdcore[0] -functions -core stdcore[1] -functions");
    for (const auto& [name, shortName] : std::map<std::string, std::string>{{"_start", "_sta.0"},
                                                                            {"main", "main.0"},
                                                                            {"sendByte", "send.0"},
                                                                            {"sendText", "send.1"},
                                                                            {"blink", "blin.0"},
                                                                            {"receiveByte", "rece.0"},
                                                                            {"append", "appe.0"}}) {
        EXPECT_NE(waveform.find("<Entry name=\"" + name + "\" alias=\"" + shortName + "\""),
                  std::string::npos)
            << name;
        std::string line = "\nb";
        for (std::size_t i = 0; i < 8; ++i)
            line += std::bitset<8>(i < shortName.size() ? static_cast<unsigned char>(shortName[i]) : 0U)
                        .to_string();
        EXPECT_NE(waveform.find(line + " fu0"), std::string::npos) << name;
    }
}

TEST_F(Demo, ItsWaveformOpensInAReader) {
    play("-pads -core stdcore[0] -cycles -ports-detailed -threads -clock-blocks -timers -instructions "
         "-functions "
         "-core stdcore[1] -ports -threads -instructions -functions");
    const ChildResult converted =
        runProgram({"vcd2fst", m_run.folder().file("a.vcd"), m_run.folder().file("a.fst")});
    EXPECT_EQ(converted.exitStatus, 0) << converted.error;
    EXPECT_GT(m_run.folder().read("a.fst").size(), 1000U);
}

// The saved view names signals: each must be one that the demo's scenario traces.
TEST_F(Demo, ItsSavedViewNamesDeclaredSignals) {
    const std::string waveform =
        play("-core stdcore[0] -ports-detailed -threads -clock-blocks -instructions -functions "
             "-core stdcore[1] -ports-detailed -threads -functions");
    std::istringstream lines(readFile(PROJECT_FOLDER "/examples/demo.gtkw"));
    unsigned int numNames = 0;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with('+'))
            continue;
        std::string name = line.substr(line.find("} ") + 2);
        if (name.ends_with(":0]"))
            name.resize(name.rfind('['));
        EXPECT_NE(waveform.find(" " + name + " $end\n"), std::string::npos) << name;
        ++numNames;
    }
    EXPECT_GT(numNames, 10U);
}
