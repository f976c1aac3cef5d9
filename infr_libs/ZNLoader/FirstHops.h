#pragma once

#include "infr_libs/ZNLoader/NetworkGraph.h"

#include <vector>

// The first node on the chosen way from one node to each other. Of several shortest ways the one counts
// whose nodes, without the start, sorted by id, come first in the order of texts.
//
// On shortest ways from one start each node has one distance, so a sorted list of nodes fixes the way, and
// the best list to a node is the best list to one of its predecessors with the node's own id put in: putting
// the same id into two sorted lists of one length keeps their order. So one walk by distance settles all
// targets; nothing is enumerated.
class FirstHops {
public:
    explicit FirstHops(const NetworkGraph& graph);

    // The first hop from `source` to each node; `NetworkGraph::s_none` for `source` itself and for a node
    // that can't be reached. Valid until the next call.
    const std::vector<unsigned>& from(unsigned source);

private:
    bool comesFirst(unsigned way, unsigned otherWay) const;

    const NetworkGraph& m_graph;
    std::vector<unsigned> m_idRank;      // place of each node's id in the order of texts
    std::vector<unsigned> m_distance;    // from the source; s_none while not reached
    std::vector<unsigned> m_predecessor; // on the best way from the source
    std::vector<unsigned> m_firstHop;
    std::vector<unsigned> m_reached; // nodes in order of distance
};
