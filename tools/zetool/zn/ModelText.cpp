#include "tools/zetool/zn/ModelText.h"

#include <array>
#include <cstddef>

namespace {

struct FlagRow {
    unsigned flag;
    const char* name;
};

constexpr FlagRow s_linkFlags[] = {
    {ZNLoader::Zlink::s_noInit, "noinit"},
    {ZNLoader::Zlink::s_sod, "sod"},
    {ZNLoader::Zlink::s_zssc, "zssc"},
};

constexpr FlagRow s_deviceFlags[] = {{ZNLoader::DeviceNode::s_postBoot, "postboot"}};

template<std::size_t N>
std::vector<const char*> namesOf(unsigned flags, const FlagRow (&rows)[N]) {
    std::vector<const char*> names;
    for (const FlagRow& row : rows)
        if ((flags & row.flag) != 0)
            names.push_back(row.name);
    return names;
}

// The name of a number that counts from 0; the first for one that has none.
template<std::size_t N>
const char* nameOf(int number, const std::array<const char*, N>& names) {
    const auto index = static_cast<std::size_t>(number);
    return index < N ? names[index] : names[0];
}

} // namespace

std::string_view idOf(const ZNLoader::Node* node) {
    return node ? std::string_view(node->m_id) : std::string_view();
}

const char* kindOf(ZNLoader::Node& node) {
    static constexpr std::array s_kinds = {"unknown", "proc", "device", "zssc"};
    return nameOf(node.getType(), s_kinds);
}

const char* typeKindOf(const ZNLoader& network) {
    static constexpr std::array s_kinds = {"unknown", "device", "board", "platform"};
    return nameOf(network.m_typeKind, s_kinds);
}

const char* topologyOf(const ZNLoader& network) {
    static constexpr std::array s_topologies = {"unknown", "hypercube", "pile"};
    return nameOf(network.m_topology, s_topologies);
}

const char* architectureOf(const ZNLoader& network) {
    static constexpr std::array s_architectures = {"unknown", "G4", "L1"};
    return nameOf(network.m_switchArch, s_architectures);
}

const char* classOf(const ZNLoader::ExtDevice& device) {
    return device.m_class == ZNLoader::ExtDeviceSpiFlash ? "spiflash" : "none";
}

std::vector<const char*> flagsOf(const ZNLoader::Zlink& link) {
    return namesOf(link.m_flags, s_linkFlags);
}

std::vector<const char*> flagsOf(const ZNLoader::DeviceNode& node) {
    return namesOf(node.m_flags, s_deviceFlags);
}

std::string digitsOf(const ZNLoader::Position& position) {
    std::string digits;
    for (const unsigned digit : position)
        digits += std::to_string(digit);
    return digits;
}

std::string placeOf(ZNLoader::ZlinkEnd& end) {
    const std::string node(end.m_node ? idOf(end.m_node) : s_noNode);
    if (end.isNormal())
        return node + ":" + std::to_string(static_cast<ZNLoader::ZlinkNormalEnd&>(end).m_linkNumber);
    return node + ":chanend " + std::to_string(static_cast<ZNLoader::ZlinkSodEnd&>(end).m_chanend);
}

ZNLoader::FreeCore* freeCore(ZNLoader::Core* core) {
    return core && core->getType() == ZNLoader::FreeCore::s_type ? static_cast<ZNLoader::FreeCore*>(core)
                                                                 : nullptr;
}

ZNLoader::ProcNode* procNode(ZNLoader::Node* node) {
    return node && node->getType() == ZNLoader::ProcNode::s_type ? static_cast<ZNLoader::ProcNode*>(node)
                                                                 : nullptr;
}

ZNLoader::DeviceNode* deviceNode(ZNLoader::Node* node) {
    return node && node->getType() == ZNLoader::DeviceNode::s_type ? static_cast<ZNLoader::DeviceNode*>(node)
                                                                   : nullptr;
}

ZNLoader::ZsscNode* zsscNode(ZNLoader::Node* node) {
    return node && node->getType() == ZNLoader::ZsscNode::s_type ? static_cast<ZNLoader::ZsscNode*>(node)
                                                                 : nullptr;
}
