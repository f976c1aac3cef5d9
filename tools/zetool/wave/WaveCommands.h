#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The rows of the noun `wave`.
std::span<const CommandRow> waveCommands();
