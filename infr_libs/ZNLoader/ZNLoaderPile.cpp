// The pile: identifiers for processors joined in a line, and the pairs that cross each link.

#include "infr_libs/ZNLoader/FirstHops.h"
#include "infr_libs/ZNLoader/NetworkGraph.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <optional>

namespace {

constexpr unsigned s_none = NetworkGraph::s_none;
constexpr unsigned s_maxBits = 16; // of a routing identifier

// For each pair of processors the highest bit in which their identifiers are to differ. Seen from any
// processor, the destinations behind one first hop, a group, share bits that no other group has.
//
// The bits are given out greedily: pair by pair in the order of the processors, each gets the highest bit
// still open to it, and when a pair finds none the whole attempt fails; there is no second try with a lower
// bit: wanted. What is open to a pair at one end is what no group has there, and what its own group has.
class BitAssignment {
public:
    BitAssignment(const NetworkGraph& graph, std::uint16_t allBits)
        : m_numProcessors(graph.numProcessors()),
          m_numBits(static_cast<unsigned>(std::popcount(allBits))),
          m_free(m_numProcessors, allBits),
          m_own(m_numProcessors),
          m_groups(m_numProcessors),
          m_bits(m_numProcessors) {
        FirstHops firstHops(graph);
        m_isComplete = beBrutish(graph, firstHops);
    }

    bool isComplete() const { return m_isComplete; }

    // The bit's number, for two different processors.
    unsigned bit(unsigned a, unsigned b) const { return a < b ? m_bits[a][b] : m_bits[b][a]; }

private:
    bool beBrutish(const NetworkGraph& graph, FirstHops& firstHops) {
        for (unsigned a = 0; a < m_numProcessors; ++a) {
            if (m_groups[a].empty() && !findGroups(a, graph, firstHops))
                return false;
            m_bits[a].resize(m_numProcessors);
            for (unsigned b = a + 1; b < m_numProcessors; ++b) {
                if (m_groups[b].empty() && !findGroups(b, graph, firstHops))
                    return false;
                if (!assign(a, b))
                    return false;
            }
        }
        return true;
    }

    // Numbers the groups of a source. More groups than bits can't end well: each needs one of its own.
    bool findGroups(unsigned source, const NetworkGraph& graph, FirstHops& firstHops) {
        const std::vector<unsigned>& hops = firstHops.from(source);
        std::map<std::string_view, std::uint8_t> numbers; // what can't be reached has the empty name
        m_groups[source].resize(m_numProcessors);
        for (unsigned target = 0; target < m_numProcessors; ++target) {
            if (target == source)
                continue;
            const unsigned hop = hops[target];
            const std::string_view name = hop == s_none ? std::string_view() : graph.node(hop)->m_id;
            const auto number = static_cast<std::uint8_t>(numbers.size());
            m_groups[source][target] = numbers.emplace(name, number).first->second;
            if (numbers.size() > m_numBits)
                return false;
        }
        return true;
    }

    bool assign(unsigned a, unsigned b) {
        std::uint16_t& ownA = m_own[a][m_groups[a][b]];
        std::uint16_t& ownB = m_own[b][m_groups[b][a]];
        const auto open = static_cast<std::uint16_t>((m_free[a] | ownA) & (m_free[b] | ownB));
        if (open == 0)
            return false;
        const std::uint16_t highest = std::bit_floor(open);
        for (std::uint16_t* own : {&ownA, &ownB})
            *own |= highest;
        for (const unsigned source : {a, b})
            m_free[source] &= static_cast<std::uint16_t>(~highest);
        m_bits[a][b] = static_cast<std::uint8_t>(std::countr_zero(highest));
        return true;
    }

    unsigned m_numProcessors;
    unsigned m_numBits;
    bool m_isComplete;
    std::vector<std::uint16_t> m_free;                       // by source: bits that no group has
    std::vector<std::array<std::uint16_t, s_maxBits>> m_own; // by source and group: bits of the group
    std::vector<std::vector<std::uint8_t>> m_groups;         // by source and target; empty until needed
    std::vector<std::vector<std::uint8_t>> m_bits;           // by lower and higher processor
};

// The identifiers that differ as assigned. One after another the processors hand their settled bits, from the
// highest down, to those that don't have them yet; a processor that nobody hands a bit gets it as 0.
std::vector<std::uint16_t> identifiersFor(const BitAssignment& bits, unsigned numProcessors,
                                          std::uint16_t allBits, unsigned root) {
    std::vector<std::uint16_t> identifiers(numProcessors);
    std::vector<std::uint16_t> assigned(numProcessors);
    std::vector<std::uint16_t> done(numProcessors);
    assigned[root] = allBits;

    const auto handOn = [&](unsigned from, unsigned bit) {
        const auto mask = static_cast<std::uint16_t>(1U << bit);
        for (unsigned to = 0; to < numProcessors; ++to) {
            if (to == from || (assigned[to] & mask) != 0)
                continue;
            const unsigned differing = bits.bit(from, to);
            if (differing > bit)
                continue;
            const bool inverted = differing == bit;
            if (((identifiers[from] & mask) != 0) != inverted)
                identifiers[to] |= mask;
            assigned[to] |= mask;
        }
        done[from] |= mask;
    };

    for (unsigned first = 0;;) {
        // Handing on can open bits of earlier processors, so the search starts from the front again.
        for (first = 0; first < numProcessors && assigned[first] == done[first];)
            ++first;
        if (first < numProcessors) {
            const auto open = static_cast<unsigned>(assigned[first] & ~done[first]);
            handOn(first, static_cast<unsigned>(std::bit_width(open)) - 1);
            continue;
        }
        const auto unfinished = std::ranges::find_if(assigned, [&](auto mask) { return mask != allBits; });
        if (unfinished == assigned.end())
            break;
        const auto missing = static_cast<unsigned>(allBits & ~*unfinished);
        *unfinished |= static_cast<std::uint16_t>(std::bit_floor(missing));
    }

    for (unsigned i = 0; i < numProcessors; ++i) {
        for (unsigned j = 0; j < i; ++j) {
            const auto mask = static_cast<std::uint16_t>(1U << bits.bit(i, j));
            identifiers[i] = static_cast<std::uint16_t>((identifiers[i] & ~mask) | (~identifiers[j] & mask));
        }
    }
    return identifiers;
}

// The up to two nodes that a processor's links lead to, in the order of the links; `s_none` for none.
struct LineNeighbours {
    unsigned first = s_none;
    unsigned second = s_none;
};

// Nothing if the network isn't a line: a processor with no neighbour or with more than two, or a number of
// ends other than two. Rings beside the line pass: wanted.
std::optional<std::vector<LineNeighbours>> lineNeighbours(const NetworkGraph& graph) {
    std::vector<LineNeighbours> neighbours(graph.numProcessors());
    unsigned numEnds = 0;
    for (unsigned node = 0; node < graph.numProcessors(); ++node) {
        auto& [first, second] = neighbours[node];
        for (const NetworkGraph::Edge& edge : graph.edges(node)) {
            if (edge.node == first || edge.node == second)
                continue;
            if (second != s_none)
                return std::nullopt;
            (first == s_none ? first : second) = edge.node;
        }
        if (first == s_none)
            return std::nullopt;
        if (second == s_none)
            ++numEnds;
    }
    if (numEnds != 2)
        return std::nullopt;
    return neighbours;
}

// The processors of the line from its first end to the other. Only processors belong to it: the line ends
// before a device.
std::vector<unsigned> lineOrder(const NetworkGraph& graph, std::vector<LineNeighbours> neighbours) {
    for (auto& [first, second] : neighbours) {
        if (!graph.isProcessor(second))
            second = s_none;
        if (!graph.isProcessor(first))
            first = std::exchange(second, s_none);
    }
    const auto end = std::ranges::find(neighbours, s_none, &LineNeighbours::second);

    std::vector<unsigned> order;
    std::vector<bool> visited(neighbours.size());
    auto node = static_cast<unsigned>(end - neighbours.begin());
    for (unsigned previous = s_none; node < neighbours.size() && !visited[node];) {
        visited[node] = true;
        order.push_back(node);
        const auto [first, second] = neighbours[node];
        const unsigned next = first == previous ? second : first;
        previous = std::exchange(node, next);
    }
    return order;
}

// Adds to each link of the line the pairs of processors that it stands between, from the far end on.
void addUsers(const NetworkGraph& graph, const std::vector<unsigned>& order,
              const std::vector<ZNLoader::Zlink*>& links) {
    for (std::size_t near = 1; near < order.size(); ++near) {
        // The links between order[near - 1] and order[near], a run of neighbours in the line.
        for (const NetworkGraph::Edge& edge : graph.edges(order[near])) {
            if (edge.node != order[near - 1])
                continue;
            auto& users = links[edge.link]->m_users;
            users.reserve(users.size() + 2 * near * (order.size() - near));
            for (std::size_t source = order.size(); source-- > near;) {
                for (std::size_t target = near; target-- > 0;) {
                    ZNLoader::Node* a = graph.node(order[source]);
                    ZNLoader::Node* b = graph.node(order[target]);
                    users.push_back({a, b});
                    users.push_back({b, a});
                }
            }
        }
    }
}

// The processor whose identifier the others start from: the first that boots from its own flash, else the
// first of the scan chain, else the first.
unsigned rootOf(const ZNLoader& loader, const NetworkGraph& graph) {
    const auto boots = [](const ZNLoader::Node* node) {
        return node->m_boot && node->m_boot->getBootStyle() == ZNLoader::BootTypeSPIMaster::s_style;
    };
    const auto first = std::ranges::find_if(loader.m_procNodes, boots);
    if (first != loader.m_procNodes.end())
        return graph.numberOf(*first);
    const unsigned inChain = loader.m_jtagNodes.empty() ? s_none : graph.numberOf(loader.m_jtagNodes.front());
    return inChain < graph.numProcessors() ? inChain : 0;
}

} // namespace

bool ZNLoader::buildAsPile(const char*) {
    const NetworkGraph graph(*this);
    const unsigned numProcessors = graph.numProcessors();
    if (numProcessors < 2)
        return false;

    // Bits of an identifier that are taken: one by SOD links, one by ZSSC nodes.
    const int numTaken = (m_sodLinks.empty() ? 0 : 1) + (m_hasZssc ? 1 : 0);
    const auto allBits = static_cast<std::uint16_t>(0xFFFF >> numTaken);
    const BitAssignment bits(graph, allBits);
    if (!bits.isComplete())
        return false;

    const std::vector<std::uint16_t> identifiers =
        identifiersFor(bits, numProcessors, allBits, rootOf(*this, graph));
    for (unsigned node = 0; node < numProcessors; ++node) {
        Node& processor = *m_procNodes[node];
        if (!processor.m_routingIdSet)
            processor.m_routingId = identifiers[node];
        processor.m_routingIdSet = true;
    }

    // Only now, with the identifiers written, is the network held to be a line or not: wanted.
    const auto neighbours = lineNeighbours(graph);
    if (!neighbours)
        return false;
    const std::vector<unsigned> order = lineOrder(graph, *neighbours);
    std::vector<Node*> nodes;
    for (const unsigned node : order)
        nodes.push_back(graph.node(node));
    m_nodeOrder.insert(m_nodeOrder.begin(), nodes.begin(), nodes.end());
    addUsers(graph, order, m_normalLinks);
    addDeviceRouteInfo();
    return true;
}

std::string ZNLoader::findShortestRouteRoot(const std::string& from, const std::string& to) const {
    const NetworkGraph graph(*this);
    const unsigned source = graph.numberOf(findNodeForId(from));
    const unsigned target = graph.numberOf(findNodeForId(to));
    if (source == s_none || target == s_none)
        return {};
    const unsigned hop = FirstHops(graph).from(source)[target];
    return hop == s_none ? std::string() : graph.node(hop)->m_id;
}
