// What follows the choice of a topology: the order of the attempts, routes to devices, and the identifiers of
// ZSSC nodes.

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <unordered_map>

namespace {

using Users = std::vector<ZNLoader::ZlinkUserPair>;

// Routes to a device are the routes to its gate, the node at the other end of its link, and one link more.
void extendUsers(Users& users, ZNLoader::Node* gate, ZNLoader::Node* device) {
    Users added;
    for (const auto& [source, destination] : users) {
        if (source == device || destination == device)
            continue;
        if (destination == gate)
            added.push_back({source, device});
        if (source == gate)
            added.push_back({device, destination});
    }
    users.insert(users.end(), added.begin(), added.end());
}

} // namespace

bool ZNLoader::buildPositions(const char* fileName) {
    const bool isHypercube = buildAsHypercube(fileName);
    m_topology = 1;
    if (isHypercube)
        return false;
    if (m_switchArch == SwitchArchG4) // which has no other topology
        return true;
    const bool isPile = buildAsPile(fileName);
    m_topology = 2;
    return !isPile;
}

void ZNLoader::addDeviceRouteInfo() {
    for (Zlink* link : m_sodLinks) {
        const bool isFirstNormal = link->m_end0->isNormal();
        Node* normal = (isFirstNormal ? link->m_end0 : link->m_end1)->m_node;
        Node* sod = (isFirstNormal ? link->m_end1 : link->m_end0)->m_node; // null without a NodeId
        link->m_users.push_back({sod, normal});
        link->m_users.push_back({normal, sod});
    }

    // The first normal link at each node, and the node behind it.
    struct Gate {
        Zlink* link;
        Node* node;
    };
    std::unordered_map<const Node*, Gate> gates;
    for (Zlink* link : m_normalLinks) {
        gates.try_emplace(link->m_end0->m_node, Gate{link, link->m_end1->m_node});
        gates.try_emplace(link->m_end1->m_node, Gate{link, link->m_end0->m_node});
    }
    for (Node* node : m_nodes) {
        if (node->getType() == ProcNode::s_type)
            continue;
        const auto found = gates.find(node);
        if (found == gates.end() || !found->second.node)
            continue;
        const auto [link, gate] = found->second;
        link->m_users.push_back({gate, node});
        for (Node* other : m_nodes) {
            if (other != node)
                link->m_users.push_back({node, other});
        }
        for (Zlink* each : m_normalLinks)
            extendUsers(each->m_users, gate, node);
    }
}

void ZNLoader::assignRoutingIdsForZssc(const char* fileName) {
    if (!m_hasZssc)
        return;

    // For each node at the end of a link to a ZSSC node, the places of the first two such links.
    struct Touching {
        std::size_t first;
        Node* other; // at the far end of the first
        bool isAlone = true;
    };
    std::unordered_map<const Node*, Touching> touching;
    const auto touch = [&](std::size_t place, const ZlinkEnd& end, const ZlinkEnd& farEnd) {
        const auto [found, isNew] = touching.try_emplace(end.m_node, Touching{place, farEnd.m_node});
        if (!isNew && found->second.first != place)
            found->second.isAlone = false;
    };
    for (std::size_t place = 0; place < m_zsscLinks.size(); ++place) {
        const Zlink& link = *m_zsscLinks[place];
        if (!link.m_end0->isNormal() || !link.m_end1->isNormal())
            continue;
        touch(place, *link.m_end0, *link.m_end1);
        touch(place, *link.m_end1, *link.m_end0);
    }

    for (Node* node : m_nodes) {
        if (node->getType() != ZsscNode::s_type)
            continue;
        const auto found = touching.find(node);
        if (found == touching.end())
            m_utils.throwError(11168, ZNUtils::FileNameLocation(fileName),
                               "ZSSC node \"%s\" is not connected to any zcore.\n", node->m_id.c_str());
        // The place in the list is asked for, not an earlier match: only a node on the first link of all
        // passes.
        if (found->second.first != 0 || !found->second.isAlone)
            m_utils.throwError(11167, ZNUtils::FileNameLocation(fileName),
                               "ZSSC node \"%s\" is connected to more than one zcore.\n", node->m_id.c_str());
        node->m_routingId = found->second.other->m_routingId | 1;
    }
}
