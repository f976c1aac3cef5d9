#pragma once

#include <span>
#include <string>

// A command line, and the whole of what it must give. `line` is for the shell: `zetool` runs the tool.
struct CommandCase {
    const char* line;
    int status;
    std::string output;
    std::string error = "";
};

// Runs each line in the folder and holds what came against what must come, to the letter.
void expectCommands(const std::string& folder, std::span<const CommandCase> cases);

// What a JSON Schema validator has against a text, or nothing. `schema` is a file's name in docs/schemas.
std::string schemaFaults(const std::string& schema, const std::string& json);
