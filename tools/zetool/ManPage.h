#pragma once

#include "tools/zetool/Command.h"

#include <span>
#include <string>

// The man page zetool(1), in the man macros, of all nouns that aren't hidden.
std::string manPage(std::span<const NounRow> nouns);
