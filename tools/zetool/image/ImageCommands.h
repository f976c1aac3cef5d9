#pragma once

#include "tools/zetool/Command.h"

#include <span>

// zetool image: what looks into image files, and builds them.
std::span<const CommandRow> imageCommands();
