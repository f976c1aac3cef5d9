#pragma once

#include "infr_libs/ZNLoader/NetworkGraph.h"

#include <vector>

// The chosen ways from one node to each other, over any links. Of several shortest ways the one counts whose
// nodes, without the start, sorted by id, come first in the order of texts.
//
// On shortest ways from one start each node has one distance, so a sorted list of nodes fixes the way, and
// the best list to a node is the best list to one of its predecessors with the node's own id put in: putting
// the same id into two sorted lists of one length keeps their order. So one walk by distance settles all
// targets; nothing is enumerated. For the same reason the way back is the same way.
class ShortestWays {
public:
    explicit ShortestWays(const NetworkGraph& graph);

    // Settles the ways from this node; those from an earlier one are gone.
    void start(unsigned source);

    // The first node on the way to a target: the target itself where they are neighbours. `s_none` for the
    // source, and for what can't be reached.
    unsigned firstHop(unsigned target) const { return m_firstHop[target]; }

    // The first node on the way back from a target.
    unsigned firstHopBack(unsigned target) const { return m_predecessor[target]; }

private:
    bool comesFirst(unsigned node, unsigned otherNode) const;

    const NetworkGraph& m_graph;
    std::vector<unsigned> m_idRank;      // place of each node's id in the order of texts
    std::vector<unsigned> m_distance;    // from the source; s_none while not reached
    std::vector<unsigned> m_predecessor; // on the best way from the source
    std::vector<unsigned> m_firstHop;
    std::vector<unsigned> m_reached; // nodes in order of distance
};
