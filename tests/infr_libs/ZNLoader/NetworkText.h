#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <string>

// What a loader has made of a document, as text for comparison: one line for each node, core, port, service,
// link, device and so on, with the fields that say something about it.
std::string networkText(const ZNLoader& loader);
