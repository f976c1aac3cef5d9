#pragma once

#include "tools/zetool/Command.h"

#include <span>

// The table of all commands: each noun's rows stand in a file of its own folder.
std::span<const NounRow> allNouns();
