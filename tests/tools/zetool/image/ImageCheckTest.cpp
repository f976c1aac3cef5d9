#include "tests/support/ElfBuilder.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

#include <regex>

namespace {

// A network of two cores on the first node of the chain and one on the second.
std::string network() {
    return sampleNetwork({{"stdcore[0]", 0, 0}, {"stdcore[1]", 0, 1}, {"far", 0x8000, 0}});
}

ImageBuilder sound() {
    return ImageBuilder().config(sampleConfiguration()).zn(network()).elf(0, 1, sampleProgram({"main"}));
}

class ImageCheckTest : public testing::Test {
protected:
    // A row of a table: what check finds in an image.
    void expectFindings(const ImageBuilder& image, std::initializer_list<std::string> findings,
                        const std::string& summary) {
        folder.write("a.ze", image.bytes());
        const ChildResult result = zetoolShell(folder.path(), "zetool image check a.ze");
        std::string error;
        for (const std::string& finding : findings)
            error += "zetool: a.ze: " + finding + "\n";
        // Offsets are those of `image list`; they would change with the samples.
        EXPECT_EQ(std::regex_replace(result.error, std::regex(" at offset [0-9]+"), ""), error);
        EXPECT_EQ(result.output, "a.ze: " + summary + "\n");
        EXPECT_EQ(result.exitStatus, findings.size() == 0 ? 0 : 1);
    }

    DeviceFolder devices;
    TemporaryFolder folder;
};

} // namespace

TEST_F(ImageCheckTest, FindsNothingInASoundImage) {
    expectFindings(sound().elf(1, 0, sampleProgram({})).end(), {}, "5 sectors, nothing found");
    const CommandCase cases[] = {
        {"zetool image check - <a.ze", 0, "(standard input): 5 sectors, nothing found\n"},
        {"cat a.ze | zetool image check -", 0, "(standard input): 5 sectors, nothing found\n"},
        {"zetool image check absent.ze", 2, "",
         "zetool: absent.ze: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(ImageCheckTest, SaysWhatOpeningSays) {
    const std::string program = sampleProgram({"main"});
    const std::string configuration = sampleConfiguration();
    expectFindings(ImageBuilder().zn(network()).elf(0, 0, program).end(),
                   {"opening: Error: No ZBSEC_SYSCONFIG/ZBSEC_NODEDESC sector found in file: a.ze"},
                   "3 sectors, 1 finding");
    expectFindings(ImageBuilder().config(configuration).zn(network()).end(),
                   {"opening: the process aborts: 'xmlParser != 0' doesn't hold"}, "3 sectors, 1 finding");
    expectFindings(ImageBuilder().config("<System/>").zn(network()).elf(0, 0, program).end(),
                   {"opening: ERROR: Root of XML config file must be 'ZSystem', not System"},
                   "4 sectors, 1 finding");
    expectFindings(ImageBuilder()
                       .config("<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'/></Nodes><Pins>"
                               "<Pin name='X0'/></Pins></System></ZSystem>")
                       .zn(network())
                       .elf(0, 0, program)
                       .end(),
                   {"opening: ERROR: Invalid pin name format: X0"}, "4 sectors, 1 finding");
    expectFindings(
        ImageBuilder().config(configuration).zn("<Network>").elf(0, 0, program).end(),
        {"opening: Warning: Unable to load ZN file: zn: Error: ZN11038 JTAG scan chain not specified."},
        "4 sectors, 1 finding");
    expectFindings(ImageBuilder().config("<ZSystem a='\\").zn(network()).elf(0, 0, program).end(),
                   {"opening: the process aborts: '*s != '\\0'' doesn't hold"}, "4 sectors, 1 finding");
}

TEST_F(ImageCheckTest, NamesTheSectorOfEachBadProgram) {
    ElfBuilder tables;
    tables.m_hasSymbols = false;
    tables.m_strings = std::string("name\0", 5);
    expectFindings(
        sound().elf(1, 0, "text").elf(1, 0, tables.build().bytes).end(),
        {"opening: ERROR: Header is not an ELF file", "sector 3: ERROR: Header is not an ELF file",
         "sector 4: without a symbol table, strings must hold the empty text; the reader stops at these"},
        "6 sectors, 3 findings");
}

TEST_F(ImageCheckTest, FindsSymbolsOfSectionsThatAreNotThere) {
    ElfBuilder elf;
    elf.addSymbol({.name = "lost", .section = 77});
    expectFindings(sound().elf(1, 0, elf.build().bytes).end(),
                   {"sector 3: Invalid section table index for symbol 'lost'"}, "5 sectors, 1 finding");
}

TEST_F(ImageCheckTest, FindsCoresThatTheNetworkDoesNotHave) {
    expectFindings(
        sound().elf(0, 2, sampleProgram({})).binary(1, 1, 0x10000, "code").jump(2, 0).call(1, 0).end(),
        {"sector 3: the network has no core 2 on node 0 of the scan chain: the program "
         "is ignored",
         "sector 4: the network has no core 1 on node 1 of the scan chain",
         "sector 5: the network has no core 0 on node 2 of the scan chain"},
        "8 sectors, 3 findings");
    expectFindings(ImageBuilder().config(sampleConfiguration()).elf(0, 0, sampleProgram({})).end(),
                   {"there is no network: programs have no cores"}, "3 sectors, 1 finding");
}

TEST_F(ImageCheckTest, FindsWhatIsThereTwice) {
    expectFindings(sound().zn("").zn("not read").end(),
                   {"sector 3: another network, which nobody reads: the first counts",
                    "sector 4: another network, which nobody reads: the first counts"},
                   "6 sectors, 2 findings");
    expectFindings(sound().config(sampleConfiguration()).end(),
                   {"opening: Error: Zero or more than one ZBSEC_SYSCONFIG sectors found in file: a.ze",
                    "sector 3: another configuration; there can be only one"},
                   "5 sectors, 2 findings");
}

TEST_F(ImageCheckTest, FindsAMissingEndAndWhatIsBehindIt) {
    expectFindings(sound(), {"there is no end sector"}, "3 sectors, 1 finding");
    expectFindings(sound().end().nodeDescriptor(1, 2).end(),
                   {"sector 4: it stands behind the end sector, and is read all the same",
                    "sector 5: it stands behind the end sector, and is read all the same"},
                   "6 sectors, 2 findings");
}

TEST_F(ImageCheckTest, FindsWhatAWriterWouldNotMake) {
    const std::size_t at = sound().size();
    expectFindings(sound().nodeDescriptor(1, 2).setNumber(at + 28, 4, 0).end(),
                   {"sector 3: its CRC is 0, so that nothing checks it; 0x68a96c32 is computed"},
                   "5 sectors, 1 finding");
    expectFindings(sound().sector(0x5555, "x").setByte(6, 1).setByte(at + 2, 1).setNumber(at + 20, 4, 0),
                   {"reserved bytes of the header aren't 0",
                    "sector 3: its CRC is 0, so that nothing checks it; 0x51f36816 is computed",
                    "sector 3: reserved bytes aren't 0", "sector 3: an end sector has no payload"},
                   "4 sectors, 4 findings");
    expectFindings(sound().sector(9, "x").sector(4, "short").sector(5, "longer than it is").end(),
                   {"sector 3: the type 9 isn't known, and passed over",
                    "sector 4: a payload of 5 bytes is too short for type node",
                    "sector 5: a payload of type goto has 12 bytes, not 17",
                    "sector 5: the network has no core 26478 on node 28524 of the scan chain"},
                   "7 sectors, 4 findings");
}

TEST_F(ImageCheckTest, FindsOddPadding) {
    const std::size_t at = sound().size();
    expectFindings(sound().sector(9, "x").setByte(at + 17, 1).setNumber(at + 20, 4, 0).end(),
                   {"sector 3: its CRC is 0, so that nothing checks it; 0x97763ee4 is computed",
                    "sector 3: padding isn't 0", "sector 3: the type 9 isn't known, and passed over"},
                   "5 sectors, 3 findings");
    // A size that is no whole number of words: five bytes, and the CRC right behind them.
    expectFindings(sound().sector(9, "12345678").setByte(at + 4, 13).setNumber(at + 21, 4, 0).end(),
                   {"sector 3: its CRC is 0, so that nothing checks it; 0xd5eb0e42 is computed",
                    "sector 3: a payload of 5 bytes has 0 bytes of padding, not 3",
                    "sector 3: the type 9 isn't known, and passed over"},
                   "5 sectors, 3 findings");
}

TEST_F(ImageCheckTest, FindsDamage) {
    const std::string cut = "Not enough space in the buffer to hold the data";
    const std::size_t at = sound().size();
    expectFindings(sound().nodeDescriptor(1, 2).cutTo(at + 20),
                   {"opening: Error loading file a.ze: " + cut,
                    "sector 3: " + cut + ": it claims 32 bytes, but the file has 20 of them"},
                   "4 sectors, 2 findings");
    expectFindings(sound().zn("A").flipBit(at + 16, 0).end(),
                   {"opening: Error loading file a.ze: Detected crc error",
                    "sector 3: Detected crc error: 0x86be3526 is stored, 0x06be3526 computed",
                    "sector 3: another network, which nobody reads: the first counts"},
                   "5 sectors, 3 findings");
    expectFindings(sound().setByte(0, 'z'),
                   {"opening: Error loading file a.ze: Header tag incorrect", "Header tag incorrect"},
                   "0 sectors, 2 findings");
}

TEST_F(ImageCheckTest, TellsWarningsOfTheNetwork) {
    expectFindings(
        ImageBuilder()
            .config(sampleConfiguration())
            .zn(NetworkBuilder()
                    .processor("0", "L1", 1, "Oscillator='20MHz' SystemFrequency='333MHz'")
                    .text())
            .elf(0, 0, sampleProgram({}))
            .end(),
        {"network: zn:8 Warning: ZN11136 Default 100Mhz reference frequency for node \"0\" could not be "
         "achived. Using 83250000Hz."},
        "4 sectors, 1 finding");
}

TEST_F(ImageCheckTest, TakesAWarningOfTwoLinesAsOneFinding) {
    expectFindings(ImageBuilder()
                       .config(sampleConfiguration())
                       .zn(NetworkBuilder()
                               .processor("0")
                               .add("<ExternalDevices><Device Class='x\ny'/></ExternalDevices>")
                               .text())
                       .elf(0, 0, sampleProgram({}))
                       .end(),
                   {"network: zn:18 Warning: ZN11058 Unrecognised device class \"x\ny\"; ignoring."},
                   "4 sectors, 1 finding");
}

TEST_F(ImageCheckTest, KeepsSoManyOfAKindAsCanBeRead) {
    ImageBuilder image = sound().end();
    for (unsigned i = 0; i < 150; ++i)
        image.end();
    folder.write("a.ze", image.bytes());
    const ChildResult result = zetoolShell(folder.path(), "zetool image check a.ze");
    EXPECT_EQ(std::ranges::count(result.error, '\n'), 101);
    EXPECT_THAT(result.error, testing::EndsWith("zetool: a.ze: 50 more of the kind end\n"));
    EXPECT_EQ(result.output, "a.ze: 154 sectors, 150 findings\n");
    const std::string json = zetoolShell(folder.path(), "zetool image check --json a.ze").output;
    EXPECT_EQ(schemaFaults("image-check.schema.json", json), "");
    EXPECT_THAT(json, testing::HasSubstr("\"count\": 50\n"));
}

TEST_F(ImageCheckTest, WritesOneJsonObject) {
    folder.write("a.ze", sound().sector(9, "x").bytes());
    const ChildResult result = zetoolShell(folder.path(), "zetool image check --json a.ze");
    EXPECT_EQ(result.error, "zetool: a.ze: sector 3 at offset 1560: the type 9 isn't known, and passed over\n"
                            "zetool: a.ze: there is no end sector\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output,
              "{\n"
              "  \"type\": \"imageCheck\",\n"
              "  \"version\": 1,\n"
              "  \"numSectors\": 4,\n"
              "  \"findings\": [\n"
              "    {\n"
              "      \"kind\": \"type\",\n"
              "      \"sector\": 3,\n"
              "      \"text\": \"sector 3 at offset 1560: the type 9 isn't known, and passed over\"\n"
              "    },\n"
              "    {\n"
              "      \"kind\": \"end\",\n"
              "      \"sector\": null,\n"
              "      \"text\": \"there is no end sector\"\n"
              "    }\n"
              "  ],\n"
              "  \"dropped\": []\n"
              "}\n");
    EXPECT_EQ(schemaFaults("image-check.schema.json", result.output), "");
}
