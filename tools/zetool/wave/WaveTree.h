#pragma once

#include "tools/zetool/wave/WaveSignals.h"

#include <string>
#include <vector>

// The signals of a waveform by cores, categories and groups, or by the scopes of another tool's file. Order
// is that of first occurrence.
struct WaveTreeNode {
    std::string name;
    std::size_t parent = 0;
    std::vector<std::size_t> children;      // indexes into all nodes
    std::vector<const WaveSignal*> signals; // in the node itself
    std::size_t numSignals = 0;             // below it, in all depths
};

// Node 0 is the top.
std::vector<WaveTreeNode> waveTree(const VcdHeader& header, const WaveSignals& signals);
