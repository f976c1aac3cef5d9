#pragma once

#include "tools/zetool/Command.h"

#include <span>

// zetool pins: which pins of a package lie behind ports and links.
std::span<const CommandRow> pinsCommands();
