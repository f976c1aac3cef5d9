#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The man page and the completions: hidden commands, for the build and for packages.
std::span<const CommandRow> generateCommands();
