#include "tests/support/ChildProcess.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/HelpText.h"

// What the table of commands holds, and what help, man page and completions make of it.
namespace {

struct NamedCommand {
    const NounRow* noun;
    const CommandRow* command;

    std::string words() const { return commandWords(noun, command); }
};

std::vector<NamedCommand> shownCommands() {
    std::vector<NamedCommand> all;
    for (const NounRow& noun : allNouns())
        if (!noun.hidden)
            for (const CommandRow& command : noun.commands)
                all.push_back({&noun, &command});
    return all;
}

std::string share(const std::string& file) {
    return readFile(ZETOOL_SHARE "/" + file);
}

std::string manText() {
    std::string text;
    for (const char c : share("man/man1/zetool.1"))
        if (c != '\\')
            text += c;
    return text;
}

// The words that bash offers at the end of a line.
std::set<std::string> bashOffers(const std::string& line) {
    const std::string script = "source " ZETOOL_SHARE "/bash-completion/completions/zetool\n"
                               "COMP_WORDS=(" +
                               line +
                               ")\n"
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                               "_zetool\n"
                               "printf '%s\\n' \"${COMPREPLY[@]}\"\n";
    std::istringstream output(runProgram({"bash", "-c", script}).output);
    std::set<std::string> words;
    for (std::string word; std::getline(output, word);)
        words.insert(word);
    return words;
}

TEST(CommandWords, EveryHelpNamesWhatTheTableHolds) {
    const ChildResult whole = zetool({"--help"});
    EXPECT_EQ(whole.exitStatus, 0);
    EXPECT_EQ(whole.error, "");
    for (const NamedCommand& named : shownCommands()) {
        EXPECT_THAT(whole.output, testing::HasSubstr("  " + named.words() + " "));
        std::vector<std::string> words = {named.noun->name};
        if (*named.command->name)
            words.push_back(named.command->name);
        words.push_back("-h");
        const ChildResult result = zetool(words);
        EXPECT_EQ(result.exitStatus, 0);
        for (const OptionRow& option : named.command->options)
            EXPECT_THAT(result.output, testing::HasSubstr(optionWords(option))) << named.words();
        for (const ArgumentRow& argument : named.command->arguments)
            EXPECT_THAT(result.output, testing::HasSubstr(argument.name)) << named.words();
    }
}

TEST(CommandWords, HelpIsAtMost79CharactersWide) {
    for (const NamedCommand& named : shownCommands()) {
        std::istringstream help(helpText(allNouns(), named.noun, named.command, false));
        for (std::string line; std::getline(help, line);)
            EXPECT_LE(line.size(), 79u) << line;
    }
}

TEST(CommandWords, TheManPageNamesWhatTheTableHolds) {
    const std::string page = manText();
    for (const NamedCommand& named : shownCommands()) {
        EXPECT_THAT(page, testing::HasSubstr(".SS \"zetool " + named.words() + " "));
        for (const OptionRow& option : named.command->options)
            EXPECT_THAT(page, testing::HasSubstr(".B " + optionWords(option))) << named.words();
    }
    EXPECT_THAT(page, testing::Not(testing::HasSubstr("generate")));
}

TEST(CommandWords, TheManPageIsCleanToMandoc) {
    const ChildResult result = runProgram({"mandoc", "-T", "lint", ZETOOL_SHARE "/man/man1/zetool.1"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
}

TEST(CommandWords, BashOffersWhatTheTableHolds) {
    std::set<std::string> nouns;
    for (const NamedCommand& named : shownCommands())
        nouns.insert(named.noun->name);
    EXPECT_EQ(bashOffers("zetool ''"), nouns);
    for (const NamedCommand& named : shownCommands()) {
        if (*named.command->name) {
            const std::string line = "zetool " + std::string(named.noun->name) + " ''";
            EXPECT_TRUE(bashOffers(line).contains(named.command->name)) << named.words();
        }
        std::set<std::string> expected = {"--help", "--version"};
        for (const OptionRow& option : named.command->options)
            expected.insert(std::string("--") + option.name);
        EXPECT_EQ(bashOffers("zetool " + named.words() + " --"), expected) << named.words();
        for (const OptionRow& option : named.command->options) {
            if (option.choices.empty())
                continue;
            const std::set<std::string> choices(option.choices.begin(), option.choices.end());
            EXPECT_EQ(bashOffers("zetool " + named.words() + " --" + option.name + " ''"), choices);
        }
    }
}

TEST(CommandWords, ZshAndFishNameWhatTheTableHolds) {
    const std::string zsh = share("zsh/site-functions/_zetool");
    const std::string fish = share("fish/vendor_completions.d/zetool.fish");
    for (const NamedCommand& named : shownCommands()) {
        const std::string word = *named.command->name ? named.command->name : named.noun->name;
        EXPECT_THAT(zsh, testing::HasSubstr("'" + word + "':"));
        EXPECT_THAT(fish, testing::HasSubstr("-a " + word + " -d"));
        for (const OptionRow& option : named.command->options) {
            EXPECT_THAT(zsh, testing::HasSubstr(std::string("--") + option.name)) << named.words();
            EXPECT_THAT(fish, testing::HasSubstr(std::string("-l ") + option.name)) << named.words();
        }
    }
}

TEST(CommandWords, TheShellsAcceptTheirScripts) {
    for (const auto& words :
         {std::vector<std::string>{"bash", "-n", ZETOOL_SHARE "/bash-completion/completions/zetool"},
          {"zsh", "-n", ZETOOL_SHARE "/zsh/site-functions/_zetool"},
          {"fish", "-n", ZETOOL_SHARE "/fish/vendor_completions.d/zetool.fish"}}) {
        const ChildResult result = runProgram(words);
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(result.exitStatus, 0) << words[0];
    }
}

// In a folder with a file of each kind that examples name.
TEST(CommandWords, EveryExampleOfTheManPageRuns) {
    const std::string page = manText();
    for (const NamedCommand& named : shownCommands()) {
        EXPECT_FALSE(named.command->examples.empty()) << named.words();
        for (const ExampleRow& example : named.command->examples) {
            EXPECT_THAT(page, testing::HasSubstr(std::string(".B ") + example.line + "\n"));
            const DeviceFolder devices;
            const TemporaryFolder folder;
            folder.write("device.zn", sampleNetwork({{"stdcore[0]"}}));
            folder.write("system.xml", sampleConfiguration());
            if (std::string(example.line).find("-o app.ze") == std::string::npos)
                folder.write("app.ze", sampleImage({{"stdcore[0]"}}));
            folder.write("main.o", sampleProgram({"main"}));
            folder.write("a.vcd", fullSample().start() + "#1\n1po00b0\n\n#2\n");
            const ChildResult result = zetoolShell(folder.path(), example.line);
            EXPECT_GE(result.exitStatus, 0) << example.line;
            EXPECT_LE(result.exitStatus, 1) << example.line << "\n" << result.error;
        }
    }
}

} // namespace
