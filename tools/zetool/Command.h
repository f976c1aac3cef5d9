#pragma once

#include "tools/zetool/Invocation.h"

#include <span>

// The rows that the whole command line is made of. A command is a row of its noun's table; parsing, help,
// the man page and the completions all walk the same rows, so what one of them knows, all of them know.
// Tables are constants of static storage: nothing here owns what it points to.

// An option of a command. `-h`, `--help` and `--version` are everywhere and have no rows.
struct OptionRow {
    const char* name;                          // long name, without its dashes
    char letter = 0;                           // short form, or 0 for none
    const char* value = nullptr;               // what help calls its value; null for a switch
    const char* help = "";                     // lower case, without a full stop
    std::span<const char* const> choices = {}; // the values that it takes; empty: any
    bool many = false;                         // may be given more than once
};

enum class Count { One, Optional, Many };

// An argument of a command, found by place.
struct ArgumentRow {
    const char* name; // in capitals, as help and messages spell it
    const char* help;
    Count count = Count::One; // Many: one or more
    std::span<const char* const> choices = {};
};

// A command line that works as it stands, for the man page. The tests run each of them.
struct ExampleRow {
    const char* line;
    const char* help;
};

struct CommandRow {
    const char* name; // the verb; "" where the noun alone is the command
    const char* help; // one line, lower case, without a full stop
    const char* text; // what help and the man page say of it, in whole sentences
    std::span<const ArgumentRow> arguments;
    std::span<const OptionRow> options;
    const char* foundWrong;              // when the exit status is 1; null: never
    int (*operation)(const Invocation&); // gives the exit status, or throws a ToolFailure
    std::span<const ExampleRow> examples = {};
};

struct NounRow {
    const char* name;
    const char* help;
    std::span<const CommandRow> commands;
    bool hidden = false; // works, but neither help nor man page shows it
};

// Options that several commands have, so that they read the same everywhere.
inline constexpr OptionRow s_outputOption = {"output", 'o', "FILE", "write to FILE; - is standard output"};
inline constexpr OptionRow s_forceOption = {"force", 0, nullptr, "replace files that exist"};
inline constexpr OptionRow s_jsonOption = {"json", 0, nullptr, "write one JSON object"};

// The options of a command that shows something.
inline constexpr OptionRow s_showOptions[] = {s_jsonOption, s_outputOption, s_forceOption};

// Exit statuses. As with grep and diff, something found is no failure of the program.
inline constexpr int s_fine = 0;
inline constexpr int s_foundWrong = 1;
inline constexpr int s_failed = 2;
