#include "tools/zetool/OutputFile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Messages.h"

namespace {

std::size_t numFiles(const TemporaryFolder& folder) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path()))
        ++count;
    return count;
}

TEST(OutputFile, ComesIntoBeingWhole) {
    const TemporaryFolder folder;
    OutputFile output(folder.file("a"), false);
    output.write("one ");
    EXPECT_FALSE(std::filesystem::exists(folder.file("a")));
    output.write("two");
    output.close();
    EXPECT_EQ(folder.read("a"), "one two");
    EXPECT_EQ(numFiles(folder), 1u);
}

TEST(OutputFile, LeavesNothingBehindWithoutAClose) {
    const TemporaryFolder folder;
    { OutputFile(folder.file("a"), false).write("lost"); }
    EXPECT_EQ(numFiles(folder), 0u);
}

TEST(OutputFile, KeepsAFileThatExistsUnlessForced) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "old");
    try {
        OutputFile(path, false);
        FAIL() << "it was opened";
    } catch (const ToolFailure& failure) {
        EXPECT_EQ(std::string(failure.what()), path + ": exists; --force replaces it");
    }
    OutputFile forced(path, true);
    EXPECT_EQ(folder.read("a"), "old");
    forced.write("new");
    forced.close();
    EXPECT_EQ(folder.read("a"), "new");
}

TEST(OutputFile, KeepsAFileThatAppearedMeanwhile) {
    const TemporaryFolder folder;
    OutputFile output(folder.file("a"), false);
    folder.write("a", "other");
    EXPECT_THROW(output.close(), ToolFailure);
    EXPECT_EQ(folder.read("a"), "other");
}

TEST(OutputFile, WritesMoreThanItsBufferHolds) {
    const TemporaryFolder folder;
    OutputFile output(folder.file("a"), false);
    std::string expected;
    for (int part = 0; part < 100; ++part) {
        const std::string text(static_cast<std::size_t>(part) * 1000, static_cast<char>('a' + part % 26));
        output.write(text);
        expected += text;
    }
    const std::string large(1 << 20, 'z');
    output.write(large);
    output.close();
    EXPECT_TRUE(folder.read("a") == expected + large);
}

TEST(OutputFile, TellsOfADeviceThatIsFull) {
    const ChildResult result = zetool({"generate", "man", "-o", "/dev/full"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: /dev/full: can't be written: No space left on device\n");
}

TEST(OutputFile, TellsOfAFolderThatIsMissing) {
    const ChildResult result = zetool({"generate", "man", "-o", "/no/such/folder/a"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: /no/such/folder/a: can't be made: No such file or directory\n");
}

TEST(OutputFile, TakesADashForStandardOutput) {
    EXPECT_EQ(zetool({"generate", "man", "-o", "-"}).output, zetool({"generate", "man"}).output);
}

} // namespace
