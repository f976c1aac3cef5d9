// The hypercube: recognising it, positions, routing identifiers, and the pairs that cross each link.

#include "infr_libs/ZNLoader/NetworkGraph.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <unordered_set>

namespace {

constexpr unsigned s_none = NetworkGraph::s_none;

// The number of different neighbours that all processors share; nothing if they differ.
std::optional<unsigned> commonDegree(const NetworkGraph& graph) {
    if (graph.numProcessors() == 0)
        return std::nullopt;
    const unsigned degree = graph.degree(0);
    for (unsigned node = 1; node < graph.numProcessors(); ++node) {
        if (graph.degree(node) != degree)
            return std::nullopt;
    }
    return degree;
}

// Walks a network as if it were a hypercube: from the first processor on, each round finds the nodes that
// stand opposite to the ones found so far, and so doubles their number. The place of a node in the result is
// its position. The walk takes the first node that qualifies and never goes back, so that it refuses some
// sound hypercubes and takes some graphs that are none: wanted.
class HypercubeWalk {
public:
    explicit HypercubeWalk(const NetworkGraph& graph)
        : m_graph(graph), m_isFound(graph.numNodes()), m_placeOpposite(graph.numNodes(), s_none) {}

    enum class Result { Complete, NoWayOn, NoLinkAcross };

    Result run() {
        append(0);
        while (m_found.size() < m_graph.numProcessors()) {
            if (!findOpposites())
                return Result::NoWayOn;
            if (!appendOpposites())
                return Result::NoLinkAcross;
        }
        return Result::Complete;
    }

    const std::vector<unsigned>& found() const { return m_found; }

private:
    void append(unsigned node) {
        m_found.push_back(node);
        m_isFound[node] = true;
    }

    bool touchesFound(unsigned node) const {
        return std::ranges::any_of(m_graph.edges(node),
                                   [&](const auto& edge) { return m_isFound[edge.node]; });
    }

    // The first node, by number, that a link joins to the last opposite node and another to a found one.
    unsigned nextOpposite() const {
        unsigned next = s_none;
        for (const NetworkGraph::Edge& edge : m_graph.edges(m_opposites.back())) {
            if (edge.node < next && m_graph.isProcessor(edge.node) && !m_isFound[edge.node] &&
                m_placeOpposite[edge.node] == s_none && touchesFound(edge.node))
                next = edge.node;
        }
        return next;
    }

    bool findOpposites() {
        for (const unsigned node : m_opposites)
            m_placeOpposite[node] = s_none;
        m_opposites.clear();

        const auto start = m_graph.edges(m_found.front());
        const auto first =
            std::ranges::find_if(start, [&](const auto& edge) { return !m_isFound[edge.node]; });
        unsigned node = first == start.end() ? s_none : first->node;
        while (node != s_none) {
            m_placeOpposite[node] = static_cast<unsigned>(m_opposites.size());
            m_opposites.push_back(node);
            node = m_opposites.size() < m_found.size() ? nextOpposite() : s_none;
        }
        return m_opposites.size() == m_found.size();
    }

    // Appends to the found nodes, for each of them in order, the first opposite node that a link joins to it.
    // One opposite node can be taken twice; the caller sees that another has no place.
    bool appendOpposites() {
        const std::size_t numFound = m_found.size();
        for (std::size_t i = 0; i < numFound; ++i) {
            unsigned place = s_none;
            for (const NetworkGraph::Edge& edge : m_graph.edges(m_found[i]))
                place = std::min(place, m_placeOpposite[edge.node]);
            if (place == s_none)
                return false;
            append(m_opposites[place]);
        }
        return true;
    }

    const NetworkGraph& m_graph;
    std::vector<unsigned> m_found;
    std::vector<bool> m_isFound;
    std::vector<unsigned> m_opposites;     // of this round
    std::vector<unsigned> m_placeOpposite; // of a node in m_opposites, or s_none
};

// The digits of a position, one a dimension, the most significant first.
std::vector<unsigned> digitsOf(unsigned position, unsigned numDimensions) {
    std::vector<unsigned> digits(numDimensions);
    for (unsigned i = 0; i < numDimensions; ++i)
        digits[i] = position >> (numDimensions - 1 - i) & 1;
    return digits;
}

// Adds to each link the pairs whose route crosses it. A route changes the highest bit first in which it
// differs from its destination. So the link from p to p with bit k flipped is crossed, away from p, by the
// routes whose sources share p's bits up to k, and whose destinations share p's bits above k and have bit k
// flipped; all others are free. Sources and destinations by their low and high bits, each in processor order,
// thus give the pairs in the order of a loop over all sources and all destinations.
class HypercubeUsers {
public:
    HypercubeUsers(const NetworkGraph& graph, const std::vector<unsigned>& positions)
        : m_graph(graph), m_positions(positions) {}

    void addTo(const std::vector<ZNLoader::Zlink*>& links, unsigned numDimensions) {
        for (unsigned bit = 0; bit < numDimensions; ++bit) {
            sortByBit(bit, numDimensions);
            for (ZNLoader::Zlink* link : links) {
                const unsigned first = positionOf(link->m_end0);
                const unsigned second = positionOf(link->m_end1);
                if (first != s_none && second != s_none && (first ^ second) == 1U << bit)
                    addTo(*link, first, second, bit);
            }
        }
    }

private:
    unsigned positionOf(const ZNLoader::ZlinkEnd* end) const {
        const unsigned node = m_graph.numberOf(end->m_node);
        return node < m_positions.size() ? m_positions[node] : s_none;
    }

    void sortByBit(unsigned bit, unsigned numDimensions) {
        m_byLowBits.assign(std::size_t{2} << bit, {});
        m_byHighBits.assign(std::size_t{1} << (numDimensions - bit), {});
        for (unsigned node = 0; node < m_positions.size(); ++node) {
            m_byLowBits[m_positions[node] & (m_byLowBits.size() - 1)].push_back(node);
            m_byHighBits[m_positions[node] >> bit].push_back(node);
        }
    }

    void addTo(ZNLoader::Zlink& link, unsigned first, unsigned second, unsigned bit) const {
        const auto& sources = m_byLowBits[first & (m_byLowBits.size() - 1)];
        const auto& otherSources = m_byLowBits[second & (m_byLowBits.size() - 1)];
        const auto& destinations = m_byHighBits[second >> bit];
        const auto& otherDestinations = m_byHighBits[first >> bit];

        link.m_users.reserve(link.m_users.size() + 2 * sources.size() * destinations.size());
        const auto add = [&](unsigned source, const std::vector<unsigned>& ends) {
            ZNLoader::Node* node = m_graph.node(source);
            for (const unsigned destination : ends)
                link.m_users.push_back({node, m_graph.node(destination)});
        };
        auto other = otherSources.begin();
        for (const unsigned source : sources) {
            for (; other != otherSources.end() && *other < source; ++other)
                add(*other, otherDestinations);
            add(source, destinations);
        }
        for (; other != otherSources.end(); ++other)
            add(*other, otherDestinations);
    }

    const NetworkGraph& m_graph;
    const std::vector<unsigned>& m_positions;        // by processor
    std::vector<std::vector<unsigned>> m_byLowBits;  // processors whose positions share the bits up to `bit`
    std::vector<std::vector<unsigned>> m_byHighBits; // and those that share the bits from it upwards
};

// Removes the later of two equal pairs; the first keeps its place.
void removeRepeated(std::vector<ZNLoader::ZlinkUserPair>& users) {
    struct Hash {
        std::size_t operator()(const ZNLoader::ZlinkUserPair& pair) const {
            const std::hash<const void*> hash;
            return hash(pair.m_source) * 31 + hash(pair.m_destination);
        }
    };
    struct Equal {
        bool operator()(const ZNLoader::ZlinkUserPair& a, const ZNLoader::ZlinkUserPair& b) const {
            return a.m_source == b.m_source && a.m_destination == b.m_destination;
        }
    };
    std::unordered_set<ZNLoader::ZlinkUserPair, Hash, Equal> seen;
    std::erase_if(users, [&](const ZNLoader::ZlinkUserPair& pair) { return !seen.insert(pair).second; });
}

// The nodes of a walk over all positions, from position 0: each step flips the most significant bit whose
// flipping leads to a position not yet visited.
std::vector<ZNLoader::Node*> walkOver(const std::vector<ZNLoader::Node*>& nodeAt, unsigned numDimensions) {
    std::vector<ZNLoader::Node*> order;
    std::vector<bool> visited(nodeAt.size());
    unsigned position = 0;
    while (true) {
        visited[position] = true;
        order.push_back(nodeAt[position]);
        if (order.size() == nodeAt.size())
            return order;
        for (unsigned bit = numDimensions; bit-- > 0;) {
            if (!visited[position ^ 1U << bit]) {
                position ^= 1U << bit;
                break;
            }
        }
    }
}

} // namespace

bool ZNLoader::buildAsHypercube(const char* fileName) {
    const NetworkGraph graph(*this);
    const unsigned numProcessors = graph.numProcessors();
    const std::optional<unsigned> degree = commonDegree(graph);
    if (!degree || !std::has_single_bit(numProcessors) ||
        *degree != static_cast<unsigned>(std::countr_zero(numProcessors)))
        return false;
    const unsigned numDimensions = *degree;

    HypercubeWalk walk(graph);
    const HypercubeWalk::Result result = walk.run();
    if (result == HypercubeWalk::Result::NoWayOn)
        m_utils.throwError(11050, ZNUtils::FileNameLocation(fileName), "Internal error building network.\n");
    if (result == HypercubeWalk::Result::NoLinkAcross)
        m_utils.throwError(11050, ZNUtils::FileNameLocation(fileName),
                           "Internal error location link end pair.\n");

    std::vector<unsigned> positions(numProcessors, s_none);
    std::vector<Node*> nodeAt;
    for (unsigned position = 0; position < numProcessors; ++position) {
        const unsigned node = walk.found()[position];
        nodeAt.push_back(graph.node(node));
        if (graph.isProcessor(node))
            positions[node] = position;
        std::vector<unsigned> digits = digitsOf(position, numDimensions);
        m_positions[graph.node(node)->m_id] = digits;
        m_positionNames[std::move(digits)] = graph.node(node)->m_id;
    }
    // A node found twice, or a device found, has taken the place of a processor.
    if (std::ranges::count(positions, s_none) != 0)
        m_utils.throwError(11050, ZNUtils::FileNameLocation(fileName), "Internal error building network.\n");

    const bool isNarrow = m_switchArch == SwitchArchG4;
    const unsigned width = isNarrow ? 8 : m_sodLinks.empty() ? 16 : 15;
    if (numDimensions > width || (m_hasZssc && numDimensions == width))
        m_utils.throwError(11063, ZNUtils::NoLocation(), "Node ID is insufficiently wide (%d; need %d).\n",
                           static_cast<int>(width), static_cast<int>(numDimensions));
    for (unsigned node = 0; node < numProcessors; ++node) {
        Node& processor = *m_procNodes[node];
        if (!processor.m_routingIdSet)
            processor.m_routingId = positions[node] << (width - numDimensions);
        processor.m_routingIdSet = true;
    }

    HypercubeUsers(graph, positions).addTo(m_normalLinks, numDimensions);
    addDeviceRouteInfo();
    if (graph.numNodes() > numProcessors) { // routes between processors alone have no repetitions
        for (Zlink* link : m_normalLinks)
            removeRepeated(link->m_users);
    }

    const std::vector<Node*> order = walkOver(nodeAt, numDimensions);
    m_nodeOrder.insert(m_nodeOrder.end(), order.begin(), order.end());
    return true;
}
