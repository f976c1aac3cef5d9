#include "infr_libs/ZNLoader/NetworkGraph.h"

#include <algorithm>

NetworkGraph::NetworkGraph(const ZNLoader& loader)
    : m_numProcessors(static_cast<unsigned>(loader.m_procNodes.size())), m_nodes(loader.m_procNodes) {
    for (ZNLoader::Node* node : loader.m_nodes) {
        if (node->getType() != ZNLoader::ProcNode::s_type)
            m_nodes.push_back(node);
    }
    m_numbers.reserve(m_nodes.size());
    for (unsigned number = 0; number < m_nodes.size(); ++number)
        m_numbers.emplace(m_nodes[number], number);

    // Two passes over the links: count the edges of each node, then put each into its place.
    struct Ends {
        unsigned first, second;
    };
    std::vector<Ends> ends;
    ends.reserve(loader.m_normalLinks.size());
    m_firstEdge.assign(m_nodes.size() + 1, 0);
    for (const ZNLoader::Zlink* link : loader.m_normalLinks) {
        const Ends both{numberOf(link->m_end0->m_node), numberOf(link->m_end1->m_node)};
        ends.push_back(both);
        if (both.first == s_none || both.second == s_none)
            continue;
        ++m_firstEdge[both.first + 1];
        if (both.first != both.second)
            ++m_firstEdge[both.second + 1];
    }
    for (std::size_t i = 1; i < m_firstEdge.size(); ++i)
        m_firstEdge[i] += m_firstEdge[i - 1];

    m_edges.resize(m_firstEdge.back());
    std::vector<unsigned> next(m_firstEdge.begin(), m_firstEdge.end() - 1);
    for (unsigned link = 0; link < ends.size(); ++link) {
        const auto [first, second] = ends[link];
        if (first == s_none || second == s_none)
            continue;
        m_edges[next[first]++] = {second, link};
        if (first != second)
            m_edges[next[second]++] = {first, link};
    }
}

unsigned NetworkGraph::numberOf(const ZNLoader::Node* node) const {
    const auto found = m_numbers.find(node);
    return found == m_numbers.end() ? s_none : found->second;
}

unsigned NetworkGraph::degree(unsigned node) const {
    std::vector<unsigned> others;
    for (const Edge& edge : edges(node))
        others.push_back(edge.node);
    std::sort(others.begin(), others.end());
    return static_cast<unsigned>(std::unique(others.begin(), others.end()) - others.begin());
}
