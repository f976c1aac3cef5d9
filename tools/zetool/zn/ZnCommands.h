#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The rows of the noun `zn`.
std::span<const CommandRow> znCommands();
