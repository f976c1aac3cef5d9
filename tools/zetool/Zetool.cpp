#include "tools/zetool/Zetool.h"

#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/CommandLine.h"
#include "tools/zetool/HelpText.h"
#include "tools/zetool/Messages.h"

#include <cstdio>
#include <new>
#include <string>
#include <unistd.h>

namespace {

int show(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
        return s_fine;
    printMessage("(standard output)", withSystemError("can't be written"));
    return s_failed;
}

int wrongUsage(const CommandLine& line) {
    const std::string words = commandWords(line.noun, line.command);
    printMessage((words.empty() ? "" : words + ": ") + line.message);
    printMessage("'zetool" + (words.empty() ? "" : " " + words) + " --help' shows what there is");
    return s_failed;
}

int run(const CommandLine& line) {
    refuseBrokenLimits();
    try {
        return line.command->operation(line.invocation);
    } catch (const std::bad_alloc&) {
        printMessage("not enough memory");
    } catch (const std::exception& failure) {
        printMessage(failure.what());
    } catch (const std::string& text) {
        // The form in which the libraries throw: the whole message, line end included.
        printMessage(text.substr(0, text.find_last_not_of('\n') + 1));
    }
    return s_failed;
}

} // namespace

int runZetool(std::span<const NounRow> nouns, std::span<const char* const> words) {
    const CommandLine line = parseCommandLine(nouns, words);
    switch (line.wanted) {
    case CommandLine::Help:
        return show(helpText(nouns, line.noun, line.command, isColourTerminal(STDOUT_FILENO)));
    case CommandLine::Version:
        return show("zetool " ZELM_VERSION "\n");
    case CommandLine::Wrong:
        return wrongUsage(line);
    case CommandLine::Run:
        break;
    }
    return run(line);
}
