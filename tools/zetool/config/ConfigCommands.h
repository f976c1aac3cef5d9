#pragma once

#include "tools/zetool/Command.h"

#include <span>

// zetool config: system configurations, the ZSystem documents.
std::span<const CommandRow> configCommands();
