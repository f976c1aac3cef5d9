#include "infr_libs/ZNLoader/ShortestWays.h"

#include <algorithm>
#include <numeric>

ShortestWays::ShortestWays(const NetworkGraph& graph)
    : m_graph(graph),
      m_idRank(graph.numNodes()),
      m_distance(graph.numNodes()),
      m_predecessor(graph.numNodes()),
      m_firstHop(graph.numNodes()) {
    std::vector<unsigned> byId(graph.numNodes());
    std::iota(byId.begin(), byId.end(), 0U);
    std::sort(byId.begin(), byId.end(),
              [&](unsigned a, unsigned b) { return graph.node(a)->m_id < graph.node(b)->m_id; });
    for (unsigned rank = 0; rank < byId.size(); ++rank)
        m_idRank[byId[rank]] = rank;
}

void ShortestWays::start(unsigned source) {
    constexpr unsigned none = NetworkGraph::s_none;
    std::ranges::fill(m_distance, none);
    std::ranges::fill(m_predecessor, none);
    std::ranges::fill(m_firstHop, none);
    m_reached.assign(1, source);
    m_distance[source] = 0;

    // When a node's turn comes, all nodes nearer to the source have their best predecessor.
    for (std::size_t i = 0; i < m_reached.size(); ++i) {
        const unsigned node = m_reached[i];
        if (node != source)
            m_firstHop[node] = m_predecessor[node] == source ? node : m_firstHop[m_predecessor[node]];
        for (const NetworkGraph::Edge& edge : m_graph.edges(node)) {
            const unsigned next = edge.node;
            if (m_distance[next] == none) {
                m_distance[next] = m_distance[node] + 1;
                m_predecessor[next] = node;
                m_reached.push_back(next);
            } else if (m_distance[next] == m_distance[node] + 1 && comesFirst(node, m_predecessor[next])) {
                m_predecessor[next] = node;
            }
        }
    }
}

// Whether the best way to one node comes before the best way to another at the same distance. Followed back,
// the two have no node in common until they meet, and from there on they are one: the way with the smallest
// id before that point has the smaller sorted list.
bool ShortestWays::comesFirst(unsigned node, unsigned otherNode) const {
    unsigned smallest = NetworkGraph::s_none;
    unsigned otherSmallest = NetworkGraph::s_none;
    while (node != otherNode) {
        smallest = std::min(smallest, m_idRank[node]);
        otherSmallest = std::min(otherSmallest, m_idRank[otherNode]);
        node = m_predecessor[node];
        otherNode = m_predecessor[otherNode];
    }
    return smallest < otherSmallest;
}
