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

// What a line writes in the folder, for the test to look into. It must exit with 0, say nothing on standard
// error, and write what the schema allows.
std::string writtenJson(const std::string& folder, const std::string& line, const std::string& schema);
