#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <cstddef>
#include <string>
#include <vector>

// A core as images are labelled: by the position of its node in the scan chain, and its number there.
struct CorePlace {
    std::size_t position;
    int core;
    const std::string* name; // of the network
};

// In the order of the scan chain.
std::vector<CorePlace> corePlaces(const ZNLoader& network);
