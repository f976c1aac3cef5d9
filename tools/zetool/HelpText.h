#pragma once

#include "tools/zetool/Command.h"

#include <span>
#include <string>

// The words that name a command: "wave list", or "plan" where the noun is the command; empty for none.
std::string commandWords(const NounRow* noun, const CommandRow* command);

// "-o, --output FILE": how help, man page and messages spell an option.
std::string optionWords(const OptionRow& option);

// "[OPTION]... FILE": what follows a command's words.
std::string usageWords(const CommandRow& command);

// The help of a level: of one command, of a noun, or of the whole tool where both are null.
std::string helpText(std::span<const NounRow> nouns, const NounRow* noun, const CommandRow* command,
                     bool colours);
