#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The rows of the noun `elf`.
std::span<const CommandRow> elfCommands();
