// The plugin on images that are cut, flipped, or lack or repeat a part: each ends with a message and status
// 1, in one of the assertions that are meant to end the process, or does its work. Nothing else happens.

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr const char* s_options =
    " -pads -core stdcore[0] -cycles -ports-detailed -threads -clock-blocks -timers -instructions -functions";

const char* const s_assertions[] = {
    "xmlParser != 0",                            // no program in the image
    "checkZeLoaded(\"getNumActiveProcessors\")", // the image wasn't opened
    "nullString != __null",                      // an ELF file without symbol table and empty name
    "*s != '\\0'",                               // a backslash at the end of an attribute
};

// What an image that can't be used may do to the process; an empty text if it is one of these.
std::string objectionTo(const ChildResult& result) {
    if (result.exitStatus == 0)
        return "";
    if (result.exitStatus == 1)
        return result.error.empty() ? "status 1 without a message" : "";
    if (result.signal == SIGABRT) {
        for (const std::string assertion : s_assertions) {
            if (result.error.find("Assertion `" + assertion + "' failed.") != std::string::npos)
                return "";
        }
    }
    return "status " + std::to_string(result.exitStatus) + ", signal " + std::to_string(result.signal) +
           "\n" + result.error;
}

// Where sectors start: tag and version come first, then each sector with its header, payload and CRC.
std::vector<std::size_t> sectorsOf(const std::string& image) {
    const auto number = [&](std::size_t at, unsigned numBytes) {
        std::uint64_t value = 0;
        for (unsigned i = numBytes; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(image[at + i]);
        return value;
    };
    std::vector<std::size_t> starts;
    std::size_t at = 8;
    while (at < image.size()) {
        starts.push_back(at);
        at += 12 + static_cast<std::size_t>(number(at + 4, 8));
    }
    return starts;
}

// The same image with the CRC of each sector waived, so that damage reaches what reads the payloads.
std::string withoutChecksums(std::string image) {
    const std::vector<std::size_t> starts = sectorsOf(image);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : image.size();
        if (end - starts[i] > 12)
            image.replace(end - 4, 4, 4, '\0');
    }
    return image;
}

class DamagedImageTest : public testing::Test {
protected:
    DamagedImageTest() {
        simulator.core().ports = {StubSimulator::port("ZS1_PORT_1A", 1)};
        simulator.pads = {StubSimulator::pad("Pad0")};
    }

    ChildResult run(const std::string& image) {
        const std::string arguments =
            "-ze " + folder.write("image.ze", image) + " -o " + folder.file("wave.vcd") + s_options;
        return runInChild([&] {
            const unsigned int instance = PluginInitialise(simulator.callbacks(), arguments.c_str());
            PluginClock(instance);
            PluginTerminate(instance);
        });
    }

    void expectAnAnswer(const std::string& image, const std::string& damage) {
        EXPECT_EQ(objectionTo(run(image)), "") << damage;
    }

    const std::string whole() {
        return sampleImage({{"stdcore[0]",
                             0,
                             0,
                             "<Port Location='ZS1_PORT_1A' Name='uart'/>",
                             {sampleProgram({"main", "work", "wait"})}},
                            {"stdcore[1]", 0, 1, "", {sampleProgram({"main"})}}});
    }

    DeviceFolder devices;
    StubSimulator simulator;
    TemporaryFolder folder;
};

} // namespace

TEST_F(DamagedImageTest, TheWholeImageWorks) {
    const ChildResult result = run(whole());
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(run(withoutChecksums(whole())).exitStatus, 0);
}

TEST_F(DamagedImageTest, CutAnywhere) {
    const std::string image = whole();
    for (std::size_t size = 0; size < image.size(); size += 9)
        expectAnAnswer(image.substr(0, size), "cut to " + std::to_string(size));
}

TEST_F(DamagedImageTest, FlippedAnywhere) {
    const std::string image = whole();
    for (std::size_t at = 0; at < image.size(); at += 11) {
        std::string flipped = image;
        flipped[at] = static_cast<char>(flipped[at] ^ (1 << at % 8));
        expectAnAnswer(flipped, "flipped at " + std::to_string(at));
    }
}

TEST_F(DamagedImageTest, FlippedUnderWaivedChecksums) {
    const std::string image = withoutChecksums(whole());
    for (std::size_t at = 8; at < image.size(); at += 5) {
        std::string flipped = image;
        flipped[at] = static_cast<char>(flipped[at] ^ (1 << at % 7));
        expectAnAnswer(flipped, "flipped at " + std::to_string(at));
    }
}

TEST_F(DamagedImageTest, OverwrittenUnderWaivedChecksums) {
    const std::string image = withoutChecksums(whole());
    std::mt19937 random(9);
    for (unsigned i = 0; i < 500; ++i) {
        std::string overwritten = image;
        const std::size_t at = 8 + random() % (image.size() - 12);
        const std::uint32_t value = i % 3 == 0   ? 0xFFFFFFFF
                                    : i % 3 == 1 ? 0
                                                 : static_cast<std::uint32_t>(random());
        for (unsigned byte = 0; byte < 4; ++byte)
            overwritten[at + byte] = static_cast<char>(value >> 8 * byte);
        expectAnAnswer(overwritten, std::to_string(value) + " at " + std::to_string(at));
    }
}

TEST_F(DamagedImageTest, SectorsMissingOrDoubled) {
    const std::string image = whole();
    std::vector<std::size_t> starts = sectorsOf(image);
    starts.push_back(image.size());
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const std::string sector = image.substr(starts[i], starts[i + 1] - starts[i]);
        std::string missing = image;
        missing.erase(starts[i], sector.size());
        expectAnAnswer(missing, "without sector " + std::to_string(i));
        std::string doubled = image;
        doubled.insert(starts[i], sector);
        expectAnAnswer(doubled, "with sector " + std::to_string(i) + " twice");
    }
}
