#include "tools/zetool/CommandLine.h"

#include "tools/zetool/Words.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <deque>
#include <vector>

namespace {

// What the parser fills for one row: the values, or how often a switch was given.
struct Slot {
    const OptionRow* option = nullptr; // one of the two is null
    const ArgumentRow* argument = nullptr;
    std::vector<std::string> values;
    int count = 0;
};

struct Level {
    CLI::App* app;
    const NounRow* noun;
    const CommandRow* command;
    std::deque<Slot> slots; // the parser holds references to its members
};

void addFlags(CLI::App& app) {
    app.set_help_flag("-h,--help");
    app.set_version_flag("--version", std::string());
}

void addRows(Level& level) {
    for (const OptionRow& row : level.command->options) {
        Slot& slot = level.slots.emplace_back(Slot{&row, nullptr, {}, 0});
        const std::string names =
            (row.letter ? std::string{'-', row.letter, ','} : "") + "--" + std::string(row.name);
        if (row.value)
            level.app->add_option(names, slot.values)->allow_extra_args(false);
        else
            level.app->add_flag(names, slot.count);
    }
    for (const ArgumentRow& row : level.command->arguments) {
        Slot& slot = level.slots.emplace_back(Slot{nullptr, &row, {}, 0});
        CLI::Option* option = level.app->add_option(row.name, slot.values);
        // An argument that takes more than one value would take those of the arguments behind it.
        option->expected(1, row.count == Count::Many ? -1 : 1)->allow_extra_args(row.count == Count::Many);
    }
}

// Why the values of a row can't stand, or an empty text.
std::string faultOf(const Slot& slot) {
    const std::string name =
        slot.option ? "--" + std::string(slot.option->name) : std::string(slot.argument->name);
    const auto choices = slot.option ? slot.option->choices : slot.argument->choices;
    if (slot.option && !slot.option->many && slot.values.size() > 1)
        return name + " is given twice";
    if (slot.argument && slot.argument->count != Count::Optional && slot.values.empty())
        return name + " is missing";
    for (const std::string& value : slot.values)
        if (!choices.empty() && std::ranges::find(choices, value) == choices.end())
            return name + " can be " + joined(choices, " or ") + ", not '" + value + "'";
    return "";
}

void take(const Slot& slot, Invocation& invocation) {
    const std::string_view name = slot.option ? slot.option->name : slot.argument->name;
    for (const std::string& value : slot.values)
        invocation.add(name, value);
    if (slot.count > 0)
        invocation.add(name, "");
}

// The parser's message, where ours says it better.
std::string messageOf(const CLI::Error& error) {
    const std::string text = error.what();
    if (error.get_name() != "ArgumentMismatch")
        return text;
    return text.substr(0, text.find(':')) + " needs a value";
}

// The deepest level that the words reached.
const Level* reachedLevel(const std::deque<Level>& levels) {
    const Level* reached = &levels.front();
    for (const Level& level : levels)
        if (level.app->parsed() || level.app->count_all() > 0)
            reached = &level;
    return reached;
}

} // namespace

CommandLine parseCommandLine(std::span<const NounRow> nouns, std::span<const char* const> words) {
    CLI::App root;
    addFlags(root);
    root.require_subcommand(0, 1); // else a file that is called as a noun would be taken for one
    std::deque<Level> levels;
    levels.push_back({&root, nullptr, nullptr, {}});
    for (const NounRow& noun : nouns) {
        CLI::App* app = root.add_subcommand(noun.name);
        addFlags(*app);
        app->require_subcommand(0, 1);
        levels.push_back({app, &noun, nullptr, {}});
        for (const CommandRow& command : noun.commands) {
            if (*command.name == '\0') {
                levels.back().command = &command;
                addRows(levels.back());
                continue;
            }
            CLI::App* verb = app->add_subcommand(command.name);
            addFlags(*verb);
            levels.push_back({verb, &noun, &command, {}});
            addRows(levels.back());
        }
    }

    CommandLine line;
    // The parser wants its words in reverse.
    std::vector<std::string> reversed(words.begin(), words.end());
    std::ranges::reverse(reversed);
    try {
        root.parse(reversed);
        line.wanted = CommandLine::Run;
    } catch (const CLI::CallForHelp&) {
        line.wanted = CommandLine::Help;
    } catch (const CLI::CallForVersion&) {
        line.wanted = CommandLine::Version;
    } catch (const CLI::Error& error) {
        line.message = messageOf(error);
    }

    const Level* level = reachedLevel(levels);
    line.noun = level->noun;
    line.command = level->command;
    if (line.wanted != CommandLine::Run)
        return line;
    if (!line.command) {
        line.wanted = CommandLine::Wrong;
        line.message = line.noun ? "which command?" : "no command given";
        return line;
    }
    for (const Slot& slot : level->slots) {
        line.message = faultOf(slot);
        if (!line.message.empty()) {
            line.wanted = CommandLine::Wrong;
            return line;
        }
        take(slot, line.invocation);
    }
    return line;
}
