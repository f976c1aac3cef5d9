#pragma once

#include "tools/zetool/Command.h"

#include <span>
#include <string>

// Completion scripts of the three shells, of all nouns that aren't hidden. File names complete where a
// command takes arguments or an option's value has no choices.
std::string bashCompletion(std::span<const NounRow> nouns);
std::string zshCompletion(std::span<const NounRow> nouns);
std::string fishCompletion(std::span<const NounRow> nouns);
