#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The rows of the noun `target`.
std::span<const CommandRow> targetCommands();
