// The pile: identifiers for processors joined in a line, and the pairs that cross each link.

#include "infr_libs/ZNLoader/NetworkGraph.h"
#include "infr_libs/ZNLoader/ShortestWays.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <utility>

namespace {

constexpr unsigned s_none = NetworkGraph::s_none;

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
          m_sources(m_numProcessors, Source{allBits, {}}),
          m_bits(m_numProcessors),
          m_isComplete(beBrutish(graph)) {}

    bool isComplete() const { return m_isComplete; }

    // The bit's number, for two different processors.
    unsigned bit(unsigned a, unsigned b) const {
        const auto [low, high] = std::minmax(a, b);
        return m_bits[low][high - low - 1];
    }

private:
    struct Group {
        unsigned firstHop;
        std::uint16_t own;
    };

    // A processor with the groups that have got a bit: at most as many as there are bits.
    struct Source {
        std::uint16_t free; // bits that no group has
        std::vector<Group> groups;

        Group& group(unsigned firstHop) {
            const auto found = std::ranges::find(groups, firstHop, &Group::firstHop);
            return found != groups.end() ? *found : groups.emplace_back(Group{firstHop, 0});
        }
    };

    // Fills m_bits row by row; true for success.
    bool beBrutish(const NetworkGraph& graph) {
        ShortestWays ways(graph);
        // Groups go by the name of the first hop, and what can't be reached has the empty name.
        const auto groupOf = [&](unsigned hop) {
            return hop == s_none || graph.node(hop)->m_id.empty() ? s_none : hop;
        };
        for (unsigned a = 0; a < m_numProcessors; ++a) {
            ways.start(a);
            for (unsigned b = a + 1; b < m_numProcessors; ++b) {
                Group& atA = m_sources[a].group(groupOf(ways.firstHop(b)));
                Group& atB = m_sources[b].group(groupOf(ways.firstHopBack(b)));
                const unsigned open = (m_sources[a].free | atA.own) & (m_sources[b].free | atB.own);
                if (open == 0)
                    return false;
                const auto highest = static_cast<std::uint16_t>(std::bit_floor(open));
                for (Group* group : {&atA, &atB})
                    group->own |= highest;
                for (const unsigned source : {a, b})
                    m_sources[source].free &= static_cast<std::uint16_t>(~highest);
                m_bits[a].push_back(static_cast<std::uint8_t>(std::countr_zero(highest)));
            }
        }
        return true;
    }

    unsigned m_numProcessors;
    std::vector<Source> m_sources;                 // by processor
    std::vector<std::vector<std::uint8_t>> m_bits; // by processor, for those behind it
    bool m_isComplete;
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

// The up to two processors that a processor's links lead to, in the order of the links; `s_none` for none.
struct LineNeighbours {
    unsigned first = s_none;
    unsigned second = s_none;
};

// Nothing if the network isn't a line: a processor with no neighbour or with more than two, or linked to a
// device, or a number of ends other than two. Rings beside the line pass: wanted.
std::optional<std::vector<LineNeighbours>> lineNeighbours(const NetworkGraph& graph) {
    std::vector<LineNeighbours> neighbours(graph.numProcessors());
    unsigned numEnds = 0;
    for (unsigned node = 0; node < graph.numProcessors(); ++node) {
        auto& [first, second] = neighbours[node];
        for (const NetworkGraph::Edge& edge : graph.edges(node)) {
            if (edge.node == first || edge.node == second)
                continue;
            if (second != s_none || !graph.isProcessor(edge.node))
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

// The processors of the line from its first end to the other.
std::vector<unsigned> lineOrder(const std::vector<LineNeighbours>& neighbours) {
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
    const std::vector<unsigned> order = lineOrder(*neighbours);
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
    ShortestWays ways(graph);
    ways.start(source);
    const unsigned hop = ways.firstHop(target);
    return hop == s_none ? std::string() : graph.node(hop)->m_id;
}
