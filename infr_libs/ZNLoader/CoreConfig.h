#pragma once

// What the configuration of a node type says of one core. `NodeConfig` fills it and owns it.
struct CoreConfig {
    int ramBase = 0;
    int ramSize = 0; // bytes; -1 where the core has no RAM
    int numTimers = 0;
    int numChanEnds = 0;
    int numThreads = 0;
    int reserved = 0;
};

static_assert(sizeof(CoreConfig) == 6 * 4);
