#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

// In a folder with the parts of an image of two nodes: "device.zn", "system.xml", "a.o" and "b.o".
class ImageBuildTest : public testing::Test {
protected:
    ImageBuildTest() {
        folder.write("device.zn",
                     sampleNetwork({{"stdcore[0]", 0, 0}, {"stdcore[1]", 0, 1}, {"far", 0x8000, 0}}));
        folder.write("system.xml", sampleConfiguration());
        folder.write("a.o", sampleProgram({"first"}));
        folder.write("b.o", sampleProgram({"second"}));
    }

    ChildResult build(const std::string& words) {
        return zetoolShell(folder.path(), "zetool image build " + words);
    }

    // With the sound network and configuration ahead of the words.
    ChildResult buildSound(const std::string& words) {
        std::string all = "-n device.zn -c system.xml ";
        all += words;
        return build(all);
    }

    DeviceFolder devices;
    TemporaryFolder folder;
};

} // namespace

TEST_F(ImageBuildTest, PacksConfigurationNetworkAndProgramsInThisOrder) {
    const ChildResult result = buildSound("-e 'stdcore[1]=a.o' -e far=b.o -o app.ze");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(folder.read("app.ze"), ImageBuilder()
                                         .config(folder.read("system.xml"))
                                         .zn(folder.read("device.zn"))
                                         .elf(0, 1, folder.read("a.o"))
                                         .elf(1, 0, folder.read("b.o"))
                                         .end()
                                         .bytes());
}

TEST_F(ImageBuildTest, MakesWhatThePluginOpens) {
    ASSERT_EQ(buildSound("-e far=a.o -e far=b.o -o app.ze").exitStatus, 0);
    PluginLibrary library;
    ASSERT_TRUE(library.openZe(folder.file("app.ze").c_str()));
    const auto handlers = library.getElfHandlers("far");
    ASSERT_EQ(handlers.size(), 2U);
    EXPECT_STREQ(handlers[0]->getSymbolName(1), "first");
    EXPECT_STREQ(handlers[1]->getSymbolName(1), "second");
}

TEST_F(ImageBuildTest, APositionAndACoreNumberNameACoreToo) {
    ASSERT_EQ(buildSound("-e 1:0=a.o -o by-place.ze").exitStatus, 0);
    ASSERT_EQ(buildSound("-e far=a.o -o by-name.ze").exitStatus, 0);
    EXPECT_EQ(folder.read("by-place.ze"), folder.read("by-name.ze"));
}

TEST_F(ImageBuildTest, RefusesACoreThatAnImageHasNoNumberFor) {
    folder.write("large.zn", sampleNetwork({{"last", 0, 65535}, {"beyond", 1, 65536}}));
    ASSERT_EQ(build("-n large.zn -c system.xml -e last=a.o -o last.ze").exitStatus, 0);
    EXPECT_EQ(folder.read("last.ze"), ImageBuilder()
                                          .config(folder.read("system.xml"))
                                          .zn(folder.read("large.zn"))
                                          .elf(0, 65535, folder.read("a.o"))
                                          .end()
                                          .bytes());
    for (const std::string core : {"beyond", "1:65536"}) {
        const ChildResult result = build("-n large.zn -c system.xml -e " + core + "=a.o -o beyond.ze");
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "zetool: large.zn: core '" + core +
                                    "' is number 65536 at position 1 of the scan chain: an image holds 0 to "
                                    "65535\n");
        EXPECT_EQ(folder.read("beyond.ze"), "");
    }
}

TEST_F(ImageBuildTest, ReplacesAFileOnlyWithForce) {
    folder.write("app.ze", "old");
    EXPECT_EQ(buildSound("-e far=a.o -o app.ze").exitStatus, 2);
    EXPECT_EQ(folder.read("app.ze"), "old");
    EXPECT_EQ(buildSound("-e far=a.o -o app.ze --force").exitStatus, 0);
    EXPECT_NE(folder.read("app.ze"), "old");
}

namespace {

struct FailureRow {
    const char* words;
    int status;
    const char* error;
};

} // namespace

TEST_F(ImageBuildTest, FaultsAreNamedAndNothingIsWritten) {
    folder.write("cut.zn", "<Network>");
    folder.write("root.xml", "<System/>");
    folder.write("text.o", "no ELF file, but longer than the header of one would be............");
    const FailureRow rows[] = {
        {"-c system.xml -e far=a.o -o app.ze", 2, "zetool: image build: --network is missing\n"},
        {"-n device.zn -e far=a.o -o app.ze", 2, "zetool: image build: --config is missing\n"},
        {"-n device.zn -c system.xml -o app.ze", 2, "zetool: image build: --elf is missing\n"},
        {"-n device.zn -c system.xml -e far=a.o", 2, "zetool: image build: --output is missing\n"},
        {"-n device.zn -c system.xml -e far -o app.ze", 2,
         "zetool: image build: 'far' isn't of the form CORE=FILE\n"},
        {"-n none.zn -c system.xml -e far=a.o -o app.ze", 2,
         "zetool: none.zn: can't be opened: No such file or directory\n"},
        {"-n device.zn -c system.xml -e far=none.o -o app.ze", 2,
         "zetool: none.o: can't be opened: No such file or directory\n"},
        {"-n device.zn -c system.xml -e nowhere=a.o -o app.ze", 1,
         "zetool: device.zn: there is no core 'nowhere' for a.o\n"},
        {"-n device.zn -c system.xml -e 0:2=a.o -o app.ze", 1,
         "zetool: device.zn: there is no core '0:2' for a.o\n"},
        {"-n cut.zn -c system.xml -e far=a.o -o app.ze", 1,
         "zetool: cut.zn: Error: ZN11038 JTAG scan chain not specified.\n"},
        {"-n device.zn -c root.xml -e far=a.o -o app.ze", 1,
         "zetool: root.xml: the root must be 'ZSystem', not 'System'\n"},
        {"-n device.zn -c system.xml -e far=text.o -o app.ze", 1,
         "zetool: text.o: ERROR: Header is not an ELF file\n"},
    };
    for (const FailureRow& row : rows) {
        const ChildResult result = build(row.words);
        EXPECT_EQ(result.exitStatus, row.status) << row.words;
        EXPECT_EQ(result.error, row.error) << row.words;
        EXPECT_EQ(folder.read("app.ze"), "");
    }
}

TEST_F(ImageBuildTest, TakesOnePartFromStandardInput) {
    ASSERT_EQ(buildSound("-e far=a.o -o app.ze").exitStatus, 0);
    EXPECT_EQ(build("-n - -c system.xml -e far=a.o -o n.ze <device.zn").error, "");
    EXPECT_EQ(build("-n device.zn -c - -e far=a.o -o c.ze <system.xml").error, "");
    EXPECT_EQ(build("-n device.zn -c system.xml -e far=- -o e.ze <a.o").error, "");
    for (const char* file : {"n.ze", "c.ze", "e.ze"})
        EXPECT_EQ(folder.read(file), folder.read("app.ze")) << file;
    for (const char* words : {"-n - -c - -e far=a.o", "-n - -c system.xml -e far=-",
                              "-n device.zn -c - -e far=-", "-n device.zn -c system.xml -e far=- -e 0:0=-"}) {
        const ChildResult result = build(std::string(words) + " -o two.ze <device.zn");
        EXPECT_EQ(result.exitStatus, 2) << words;
        EXPECT_EQ(result.error, "zetool: image build: standard input holds one part only\n") << words;
        EXPECT_EQ(folder.read("two.ze"), "");
    }
}

TEST_F(ImageBuildTest, NamesStandardInputInItsMessages) {
    folder.write("crossed.xml", "<ZSystem></Network>");
    EXPECT_EQ(build("-n device.zn -c system.xml -e nowhere=- -o app.ze <a.o").error,
              "zetool: device.zn: there is no core 'nowhere' for (standard input)\n");
    EXPECT_EQ(build("-n device.zn -c - -e far=a.o -o app.ze <crossed.xml").error,
              "zetool: (standard input):1: error: unexpected closing tag 'Network'\n");
    EXPECT_EQ(build("-n - -c system.xml -e far=a.o -o app.ze <crossed.xml").error,
              "zetool: (standard input):1: error: unexpected closing tag 'Network'\n");
}
