#include "tools/zetool/CommandLine.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Zetool.h"

namespace {

int failsWithText(const Invocation&) {
    throw std::string("zn:12 Error: ZN11001 Root\n");
}

int breaksALimit(const Invocation& invocation) {
    ZELM_ASSERT(invocation.has("FILE"));
    return s_fine;
}

int succeeds(const Invocation&) {
    return s_fine;
}

constexpr const char* s_devices[] = {"g4", "l1"};
constexpr OptionRow s_options[] = {
    s_outputOption,
    s_forceOption,
    {"device", 'd', "NAME", "which device", s_devices},
    {"elf", 0, "FILE", "an image", {}, true},
};
constexpr ArgumentRow s_one[] = {{"IMAGE", "an image"}};
constexpr ArgumentRow s_many[] = {{"FIRST", "the first"}, {"REST", "the others", Count::Many}};
constexpr ArgumentRow s_optional[] = {{"FILE", "a file", Count::Optional}};
constexpr CommandRow s_imageCommands[] = {
    {"list", "lists", "Lists.", s_one, s_options, nullptr, succeeds},
    {"build", "builds", "Builds.", s_many, s_options, nullptr, succeeds},
    {"throw", "throws", "Throws.", s_optional, {}, nullptr, failsWithText},
    {"limit", "breaks", "Breaks.", s_optional, {}, nullptr, breaksALimit},
};
constexpr CommandRow s_planCommands[] = {{"", "plans", "Plans.", s_one, s_options, nullptr, succeeds}};
const NounRow s_nouns[] = {{"image", "Images.", s_imageCommands}, {"plan", "Plans.", s_planCommands}};

CommandLine parsed(std::vector<const char*> words) {
    return parseCommandLine(s_nouns, words);
}

TEST(CommandLine, GivesOptionsAndArgumentsByTheirRowsNames) {
    const CommandLine line =
        parsed({"image", "list", "-o", "out", "--force", "--device=l1", "--elf", "a", "--elf", "b", "in"});
    ASSERT_EQ(line.wanted, CommandLine::Run) << line.message;
    EXPECT_EQ(line.command, &s_imageCommands[0]);
    EXPECT_EQ(line.invocation.value("output"), "out");
    EXPECT_TRUE(line.invocation.has("force"));
    EXPECT_EQ(line.invocation.value("device"), "l1");
    EXPECT_EQ(line.invocation.values("elf"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(line.invocation.value("IMAGE"), "in");
}

TEST(CommandLine, TakesANounThatIsItselfTheCommand) {
    const CommandLine line = parsed({"plan", "a.ze"});
    ASSERT_EQ(line.wanted, CommandLine::Run) << line.message;
    EXPECT_EQ(line.command, &s_planCommands[0]);
    EXPECT_EQ(line.invocation.value("IMAGE"), "a.ze");
}

TEST(CommandLine, TakesADashForAFileName) {
    const CommandLine line = parsed({"image", "list", "-o", "-", "-"});
    ASSERT_EQ(line.wanted, CommandLine::Run) << line.message;
    EXPECT_EQ(line.invocation.value("output"), "-");
    EXPECT_EQ(line.invocation.value("IMAGE"), "-");
}

TEST(CommandLine, EndsOptionsAtTwoDashes) {
    const CommandLine line = parsed({"image", "build", "--force", "--", "--force", "-o", "x"});
    ASSERT_EQ(line.wanted, CommandLine::Run) << line.message;
    EXPECT_EQ(line.invocation.value("FIRST"), "--force");
    EXPECT_EQ(line.invocation.values("REST"), (std::vector<std::string>{"-o", "x"}));
}

TEST(CommandLine, LeavesAnOptionalArgumentOut) {
    EXPECT_EQ(parsed({"image", "throw"}).wanted, CommandLine::Run);
    EXPECT_EQ(parsed({"image", "throw", "x"}).invocation.value("FILE"), "x");
}

TEST(CommandLine, ShowsHelpAndVersionAtEveryLevel) {
    for (const std::vector<const char*>& level :
         {std::vector<const char*>{}, {"image"}, {"image", "list"}, {"plan"}}) {
        for (const char* word : {"-h", "--help", "--version"}) {
            std::vector<const char*> words = level;
            words.push_back(word);
            const CommandLine line = parsed(words);
            EXPECT_EQ(line.wanted,
                      word == std::string("--version") ? CommandLine::Version : CommandLine::Help)
                << line.message;
            EXPECT_EQ(line.noun != nullptr, !level.empty());
        }
    }
}

TEST(CommandLine, SaysWhatIsWrong) {
    const struct {
        std::vector<const char*> words;
        const char* message;
    } rows[] = {
        {{}, "no command given"},
        {{"image"}, "which command?"},
        {{"image", "lst"}, "The following argument was not expected: lst"},
        {{"image", "list"}, "IMAGE is missing"},
        {{"image", "list", "a", "b"}, "The following argument was not expected: b"},
        {{"image", "list", "a", "--bogus"}, "The following argument was not expected: --bogus"},
        {{"image", "list", "a", "-o"}, "--output needs a value"},
        {{"image", "list", "a", "-o", "x", "-o", "y"}, "--output is given twice"},
        {{"image", "list", "a", "-d", "g5"}, "--device can be g4 or l1, not 'g5'"},
        {{"image", "build", "a"}, "REST is missing"},
    };
    for (const auto& row : rows) {
        const CommandLine line = parsed(row.words);
        EXPECT_EQ(line.wanted, CommandLine::Wrong);
        EXPECT_EQ(line.message, row.message);
    }
}

TEST(Zetool, TurnsWhatALibraryThrowsIntoAMessageAndStatus2) {
    const ChildResult result = runInChild([] {
        const char* words[] = {"image", "throw"};
        std::exit(runZetool(s_nouns, words));
    });
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: zn:12 Error: ZN11001 Root\n");
    EXPECT_EQ(result.output, "");
}

TEST(Zetool, TurnsAFailedAssertionOfALibraryIntoAMessageAndStatus2) {
    const ChildResult result = runInChild([] {
        const char* words[] = {"image", "limit"};
        std::exit(runZetool(s_nouns, words));
    });
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: the input breaks a limit of the reader: invocation.has(\"FILE\")\n");
    EXPECT_EQ(result.output, "");
}

TEST(Zetool, EndsWrongUsageWithStatus2AndAHint) {
    const ChildResult result = zetool({"wave", "list"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "zetool: wave list: FILE is missing\n"
                            "zetool: 'zetool wave list --help' shows what there is\n");
}

TEST(Zetool, NamesAFileThatCannotBeOpened) {
    const ChildResult result = zetool({"wave", "list", "/no such file"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: /no such file: can't be opened: No such file or directory\n");
}

TEST(Zetool, NamesAFolderThatIsGivenForAFile) {
    const TemporaryFolder folder;
    const ChildResult result = zetool({"wave", "list", folder.path()});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "zetool: " + folder.path().string() + ": can't be read: Is a directory\n");
}

TEST(Zetool, TakesFilesThatAreCalledAsCommandsAre) {
    for (const char* name : {"wave", "list", "pins"}) {
        const ChildResult result = zetool({"wave", "list", name});
        EXPECT_EQ(result.error,
                  "zetool: " + std::string(name) + ": can't be opened: No such file or directory\n");
    }
}

TEST(Zetool, TellsThatHelpCannotBeWritten) {
    for (const char* words : {"--help", "--version", "wave list --help"}) {
        const ChildResult result = zetoolShell("/", std::string("zetool ") + words + " >/dev/full");
        EXPECT_EQ(result.exitStatus, 2) << words;
        EXPECT_EQ(result.error, "zetool: (standard output): can't be written: No space left on device\n");
    }
}

TEST(Zetool, ShowsItsVersion) {
    const ChildResult result = zetool({"--version"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "zetool " ZELM_VERSION "\n");
}

} // namespace
