#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <span>
#include <unordered_map>
#include <vector>

// What the normal links of a loaded network join, as numbers: routing asks it instead of searching all links
// by name. Made after the ends are bound to their nodes; it holds pointers into the loader and is stale as
// soon as nodes or links change.
//
// Nodes are numbered from 0: the processors in the order of `m_procNodes`, then the others in the order of
// `m_nodes`. Links have their place in `m_normalLinks`.
class NetworkGraph {
public:
    // One end of a link, seen from the other.
    struct Edge {
        unsigned node; // at the far end
        unsigned link;
    };

    static constexpr unsigned s_none = ~0U;

    explicit NetworkGraph(const ZNLoader& loader);

    unsigned numProcessors() const { return m_numProcessors; }
    unsigned numNodes() const { return static_cast<unsigned>(m_nodes.size()); }
    bool isProcessor(unsigned node) const { return node < m_numProcessors; }

    ZNLoader::Node* node(unsigned number) const { return m_nodes[number]; }

    // The number of a node; `s_none` for null and for a node of another network.
    unsigned numberOf(const ZNLoader::Node* node) const;

    // The links at a node, in list order. A link from a node to itself stands once.
    std::span<const Edge> edges(unsigned node) const {
        return {m_edges.data() + m_firstEdge[node], m_edges.data() + m_firstEdge[node + 1]};
    }

    // How many different nodes the links at a node lead to.
    unsigned degree(unsigned node) const;

private:
    unsigned m_numProcessors;
    std::vector<ZNLoader::Node*> m_nodes; // by number; not owned
    std::unordered_map<const ZNLoader::Node*, unsigned> m_numbers;
    std::vector<unsigned> m_firstEdge; // a node's first place in m_edges, and one entry behind the last node
    std::vector<Edge> m_edges;
};
