#include "tools/zetool/generate/GenerateCommands.h"

#include "tools/zetool/Commands.h"
#include "tools/zetool/Completions.h"
#include "tools/zetool/ManPage.h"
#include "tools/zetool/Result.h"

namespace {

template<std::string (*text)(std::span<const NounRow>)>
int generate(const Invocation& invocation) {
    OutputFile output = resultFile(invocation);
    output.write(text(allNouns()));
    output.close();
    return s_fine;
}

constexpr OptionRow s_options[] = {s_outputOption, s_forceOption};

constexpr CommandRow s_commands[] = {
    {"man", "the man page", "Writes the man page zetool(1).", {}, s_options, nullptr, generate<manPage>},
    {"bash",
     "completion for bash",
     "Writes the completion script for bash.",
     {},
     s_options,
     nullptr,
     generate<bashCompletion>},
    {"zsh",
     "completion for zsh",
     "Writes the completion script for zsh.",
     {},
     s_options,
     nullptr,
     generate<zshCompletion>},
    {"fish",
     "completion for fish",
     "Writes the completion script for fish.",
     {},
     s_options,
     nullptr,
     generate<fishCompletion>},
};

} // namespace

std::span<const CommandRow> generateCommands() {
    return s_commands;
}
