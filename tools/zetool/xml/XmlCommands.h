#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The rows of the noun `xml`.
std::span<const CommandRow> xmlCommands();
