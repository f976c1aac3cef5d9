#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tools/zetool/OutputFile.h"

// A network for people to read: tables of what the loader's model holds, those left out that are empty.
// `withUsers`: also the routes that cross each link.
void writeNetworkText(OutputFile& output, const ZNLoader& network, bool withUsers);
