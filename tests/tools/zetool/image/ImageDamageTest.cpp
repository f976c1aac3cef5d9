// Every command that reads an image, on images that are cut, flipped, or lack or repeat a part: each ends
// with a message and status 1 or 2, or does its work.

#include "tests/support/ElfBuilder.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/DamagedInput.h"
#include "tests/tools/zetool/image/LargeImage.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::vector<std::vector<const char*>> s_commands = {
    {"image", "list", "--check", "a.ze"},
    {"image", "show", "--json", "a.ze"},
    {"image", "check", "a.ze"},
    {"image", "extract", "a.ze", "1", "-o", "part", "--force"},
    {"image", "extract", "a.ze", "--all", "-o", "parts", "--force"},
    {"image", "flatten", "a.ze", "-o", "flat.ze", "--force"},
    {"pins", "list", "--json", "a.ze"},
    {"pins", "find", "a.ze", "X0"},
};

std::string lineOf(const std::vector<const char*>& words) {
    std::string line = "zetool";
    for (const char* word : words)
        line += std::string(" ") + word;
    return line;
}

std::string whole() {
    return sampleImage({{"stdcore[0]",
                         0,
                         0,
                         "<Port Location='ZS1_PORT_1A' Name='uart'/>",
                         {sampleProgram({"main", "work", "wait"})}},
                        {"stdcore[1]", 0, 1, "", {sampleProgram({"main"})}}});
}

// Where sectors start, and the file's end.
std::vector<std::size_t> sectorsOf(const std::string& image) {
    std::vector<std::size_t> starts;
    std::size_t at = 8;
    while (at < image.size()) {
        starts.push_back(at);
        at +=
            12 + (static_cast<unsigned char>(image[at + 4]) | static_cast<unsigned char>(image[at + 5]) << 8);
    }
    starts.push_back(image.size());
    return starts;
}

// The same image with the CRC of each sector waived, so that damage reaches what reads the payloads.
std::string withoutChecksums(std::string image) {
    const std::vector<std::size_t> starts = sectorsOf(image);
    for (std::size_t i = 0; i + 1 < starts.size(); ++i)
        if (starts[i + 1] - starts[i] > 12)
            image.replace(starts[i + 1] - 4, 4, 4, '\0');
    return image;
}

TEST(ImageDamage, CutAndFlippedAnywhere) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    EXPECT_EQ(damageFailures(folder, "a.ze", whole(), s_commands, 31), "");
}

TEST(ImageDamage, CutAndFlippedAnywhereUnderWaivedChecksums) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    EXPECT_EQ(damageFailures(folder, "a.ze", withoutChecksums(whole()), s_commands, 17), "");
}

// The places that decide on sizes: every byte of the sectors' heads.
TEST(ImageDamage, HeadsFlippedAnywhere) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string small =
        ImageBuilder().config("<ZSystem/>").zn("A").elf(0, 0, "x").jump(0, 0).end().bytes();
    EXPECT_EQ(damageFailures(folder, "a.ze", small, s_commands), "");
}

TEST(ImageDamage, SectorsMissingOrDoubled) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string image = whole();
    const std::vector<std::size_t> starts = sectorsOf(image);
    const auto expectAnAnswer = [&](const std::string& damaged, const std::string& damage) {
        folder.write("a.ze", damaged);
        for (const std::vector<const char*>& words : s_commands) {
            const std::string line = lineOf(words);
            const ChildResult result = zetoolShell(folder.path(), line);
            EXPECT_GE(result.exitStatus, 0) << damage << ": " << line;
            EXPECT_LE(result.exitStatus, 2) << damage << ": " << line;
            EXPECT_TRUE(result.exitStatus == 0 || !result.error.empty()) << damage << ": " << line;
        }
    };
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const std::string sector = image.substr(starts[i], starts[i + 1] - starts[i]);
        std::string missing = image;
        expectAnAnswer(missing.erase(starts[i], sector.size()), "without sector " + std::to_string(i));
        std::string doubled = image;
        expectAnAnswer(doubled.insert(starts[i], sector), "with sector " + std::to_string(i) + " twice");
    }
}

// A size, a length or an address that a few bytes claim is no reason to ask for as much memory.
TEST(ImageDamage, ClaimsCostNoMemory) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    ElfBuilder elf;
    elf.addSegment({.vaddr = 0, .bytes = "code"});
    elf.addSegment({.vaddr = 0x7fff0000, .bytes = "data"});
    ImageBuilder image;
    image.config(sampleConfiguration()).zn(sampleNetwork({{"stdcore[0]"}})).elf(0, 0, elf.build().bytes);
    const std::size_t end = image.end().size();
    const std::string images[] = {
        image.bytes(),
        ImageBuilder(image).setNumber(end - 8, 8, 0x7ffffff0).append("payload").bytes(),
        ImageBuilder(image).setNumber(end - 8, 8, 0x7ffffffffffffff0).append("payload").bytes(),
        ImageBuilder(image).setNumber(end - 8, 8, 0xfffffffffffffff0).append("payload").bytes(),
    };
    for (const std::string& bytes : images) {
        folder.write("a.ze", bytes);
        for (const std::vector<const char*>& words : s_commands) {
            const std::string line = s_littleMemory + lineOf(words);
            const ChildResult result = zetoolShell(folder.path(), line);
            EXPECT_GE(result.exitStatus, 0) << line;
            EXPECT_LE(result.exitStatus, 2) << line;
            EXPECT_THAT(result.error, testing::Not(testing::HasSubstr("not enough memory"))) << line;
        }
    }
}

} // namespace
