#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <string>
#include <string_view>
#include <vector>

// Words for what the loader's model holds as numbers, flags and pointers; every form of a network shares
// them.

// Stands for a node in texts where the model has none.
inline constexpr std::string_view s_noNode = "-";

std::string_view idOf(const ZNLoader::Node* node); // empty for null

const char* kindOf(ZNLoader::Node& node);               // "proc", "device", "zssc"
const char* typeKindOf(const ZNLoader& network);        // "unknown", "device", "board", "platform"
inline constexpr int s_hypercube = 1;                   // a value of `ZNLoader::m_topology`
const char* topologyOf(const ZNLoader& network);        // "hypercube", "pile"
const char* architectureOf(const ZNLoader& network);    // of the switches
const char* classOf(const ZNLoader::ExtDevice& device); // "spiflash", "none"
std::vector<const char*> flagsOf(const ZNLoader::Zlink& link);
std::vector<const char*> flagsOf(const ZNLoader::DeviceNode& node);

// The digits of a node's place in a hypercube.
std::string digitsOf(const ZNLoader::Position& position);

// A core as one that runs programs; null for any other.
ZNLoader::FreeCore* freeCore(ZNLoader::Core* core);

// A node as one of its kind; null for any other.
ZNLoader::ProcNode* procNode(ZNLoader::Node* node);
ZNLoader::DeviceNode* deviceNode(ZNLoader::Node* node);
ZNLoader::ZsscNode* zsscNode(ZNLoader::Node* node);

// "node:link" or, for the end of a device's own, "node:chanend N".
std::string placeOf(ZNLoader::ZlinkEnd& end);

// Both ends of a link.
inline std::vector<ZNLoader::ZlinkEnd*> endsOf(const ZNLoader::Zlink& link) {
    return {link.m_end0, link.m_end1};
}
