// Finding what was read, and printing it for diagnosis.

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>

namespace {

constexpr unsigned s_noOrdinal = 99999;

} // namespace

// Ids are looked up in the map as long as it covers the list. A model built by hand, or added to by hand, is
// searched: the result is the same.

ZNLoader::Node* ZNLoader::findNodeForId(const std::string& id) const {
    if (m_nodesOffered == m_nodes.size()) {
        const auto found = m_nodeMap.find(id);
        return found == m_nodeMap.end() ? nullptr : found->second;
    }
    const auto found = std::ranges::find(m_nodes, id, &Node::m_id);
    return found == m_nodes.end() ? nullptr : *found;
}

unsigned ZNLoader::nodeOrdinalOfId(const std::string& id) const {
    if (m_procNodesOffered == m_procNodes.size()) {
        const auto found = m_procOrdinals.find(id);
        return found == m_procOrdinals.end() ? s_noOrdinal : found->second;
    }
    const auto found = std::ranges::find(m_procNodes, id, &Node::m_id);
    return found == m_procNodes.end() ? s_noOrdinal : static_cast<unsigned>(found - m_procNodes.begin());
}

void ZNLoader::offerNodes() {
    for (; m_nodesOffered < m_nodes.size(); ++m_nodesOffered)
        m_nodeMap.emplace(m_nodes[m_nodesOffered]->m_id, m_nodes[m_nodesOffered]);
    for (; m_procNodesOffered < m_procNodes.size(); ++m_procNodesOffered)
        m_procOrdinals.emplace(m_procNodes[m_procNodesOffered]->m_id,
                               static_cast<unsigned>(m_procNodesOffered));
}

ZNLoader::ExtDevice* ZNLoader::findDevice(ExtDeviceClass deviceClass, const Node* node, unsigned core) const {
    if (!node)
        return nullptr;
    const auto found = std::ranges::find_if(m_devices, [&](const ExtDevice* device) {
        return device->m_node == node && static_cast<unsigned>(device->m_core) == core &&
               device->m_class == deviceClass;
    });
    return found == m_devices.end() ? nullptr : *found;
}

std::string ZNLoader::findReferenceCode(unsigned nodeIndex, unsigned coreNumber) const {
    if (nodeIndex >= m_jtagNodes.size() || m_jtagNodes[nodeIndex]->getType() != ProcNode::s_type)
        return {};
    std::string reference;
    for (const Core* core : static_cast<const ProcNode*>(m_jtagNodes[nodeIndex])->m_cores) {
        if (static_cast<unsigned>(core->m_number) == coreNumber)
            reference = core->m_reference; // the last one counts: wanted
    }
    return reference;
}

void ZNLoader::dumpZN(ZNLoader* loader) {
    for (Node* node : loader->m_nodes)
        loader->dumpNode(node);
    loader->dumpNodeVecPtrs(loader->m_procNodes, "m_procNodes");
    loader->dumpNodeVecPtrs(loader->m_jtagNodes, "m_jtagNodes");
}

void ZNLoader::dumpNode(Node* node) {
    ErrorHandler* output = m_zelmUtils->errorHandler;
    const auto dumpCore = [&](const Core* core) {
        output->trace("Node : %s, Core (%d) : %s\n", node->m_id.c_str(), core->m_number,
                      core->m_reference.c_str());
    };
    switch (node->getType()) {
    case ProcNode::s_type:
        for (const Core* core : static_cast<ProcNode*>(node)->m_cores)
            dumpCore(core);
        break;
    case DeviceNode::s_type:
        dumpCore(static_cast<DeviceNode*>(node)->m_holdingCore);
        break;
    case ZsscNode::s_type:
        output->trace("ZSSC found (%s), of name : %s\n", node->m_id.c_str(),
                      static_cast<ZsscNode*>(node)->m_refBase.c_str());
        break;
    default:
        output->trace("dumpNode of unhandled node type!\n");
    }
}

void ZNLoader::dumpNodeVecPtrs(std::vector<Node*>& nodes, const char* name) {
    m_zelmUtils->errorHandler->trace("NodeVec (%s):\n", name);
    for (const Node* node : nodes)
        m_zelmUtils->errorHandler->trace("\t%p\n", static_cast<const void*>(node));
}
