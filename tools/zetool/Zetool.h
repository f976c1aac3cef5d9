#pragma once

#include "tools/zetool/Command.h"

#include <span>

// Carries out the words behind the program's name and gives the exit status. No exception leaves it.
int runZetool(std::span<const NounRow> nouns, std::span<const char* const> words);
