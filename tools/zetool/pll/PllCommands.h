#pragma once

#include "tools/zetool/Command.h"

#include <span>

// zetool pll: the clocks of a device.
std::span<const CommandRow> pllCommands();
