#include "tools/zetool/image/Places.h"

std::vector<CorePlace> corePlaces(const ZNLoader& network) {
    std::vector<CorePlace> places;
    for (std::size_t position = 0; position < network.m_jtagNodes.size(); ++position) {
        ZNLoader::Node* const node = network.m_jtagNodes[position];
        if (node->getType() != ZNLoader::ProcNode::s_type)
            continue;
        for (const ZNLoader::Core* core : static_cast<ZNLoader::ProcNode*>(node)->m_cores)
            places.push_back({position, core->m_number, &core->m_reference});
    }
    return places;
}
