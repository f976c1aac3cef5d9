#pragma once

#include "tools/zetool/Command.h"

#include <span>

// zetool plan: what a run of the plugin would show.
std::span<const CommandRow> planCommands();
