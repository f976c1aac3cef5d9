#pragma once

#include "tools/zetool/Command.h"

#include <span>
#include <string>

// What a command line asks for. Where `wanted` is Run, `command` and `invocation` stand; where it is Help,
// `noun` and `command` say of which level (null: the level above); where it is Wrong, `message` says why.
struct CommandLine {
    enum Wanted { Run, Help, Version, Wrong };

    Wanted wanted = Wrong;
    const NounRow* noun = nullptr;
    const CommandRow* command = nullptr;
    Invocation invocation;
    std::string message;
};

// Parses the words behind the program's name by the rows of a table.
CommandLine parseCommandLine(std::span<const NounRow> nouns, std::span<const char* const> words);
