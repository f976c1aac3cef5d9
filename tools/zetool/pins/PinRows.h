#pragma once

#include "tools/zetool/Json.h"
#include "tools/zetool/pins/ConnectedPins.h"
#include "tools/zetool/TextTable.h"

#include <vector>

// How pins and what is connected to them are shown: a row a connection.

void writeConnections(OutputFile& output, const std::vector<PinConnection>& connections);
Json connectionsJson(const std::vector<PinConnection>& connections);
