#include "tests/infr_libs/ZNLoader/PlainTopology.h"

#include <algorithm>
#include <cstdint>
#include <set>

using Node = ZNLoader::Node;
using Zlink = ZNLoader::Zlink;

// ---- Links ----

void PlainTopology::checkLinkDups() {
    struct End {
        const Zlink* link;
        ZNLoader::ZlinkNormalEnd* end;
    };
    const auto endOf = [](ZNLoader::ZlinkEnd* end) { return static_cast<ZNLoader::ZlinkNormalEnd*>(end); };
    for (const Zlink* i : m_loader.m_normalLinks) {
        for (const Zlink* j : m_loader.m_normalLinks) {
            const End ends[] = {
                {i, endOf(i->m_end0)}, {i, endOf(i->m_end1)}, {j, endOf(j->m_end0)}, {j, endOf(j->m_end1)}};
            for (int u = 0; u < 4; ++u) {
                for (int v = u + 1; v < 4; ++v) {
                    if (i == j && u % 2 == v % 2)
                        continue;
                    if (ends[u].end->m_node != ends[v].end->m_node ||
                        ends[u].end->m_linkNumber != ends[v].end->m_linkNumber)
                        continue;
                    throw "LinkEndpoint \"" + ends[v].end->m_linkText + "\" on node \"" +
                        ends[v].end->m_nodeId + "\" is a duplicate.\nOther is LinkEndpoint \"" +
                        ends[u].end->m_linkText + "\" on node \"" + ends[u].end->m_nodeId + "\".\n";
                }
            }
        }
    }
}

std::vector<std::string> PlainTopology::linkedTo(const std::string& id) const {
    std::vector<std::string> others;
    for (const Zlink* link : m_loader.m_normalLinks) {
        if (link->m_end0->m_nodeId == id)
            others.push_back(link->m_end1->m_nodeId);
        else if (link->m_end1->m_nodeId == id)
            others.push_back(link->m_end0->m_nodeId);
    }
    return others;
}

bool PlainTopology::areLinked(const std::string& a, const std::string& b) const {
    const std::vector<std::string> others = linkedTo(a);
    return std::find(others.begin(), others.end(), b) != others.end();
}

// ---- Hypercube ----

bool PlainTopology::buildPositions() {
    if (buildAsHypercube()) {
        m_loader.m_topology = 1;
        return false;
    }
    m_loader.m_topology = 1;
    if (m_loader.m_switchArch == 1)
        return true;
    const bool succeeded = buildAsPile();
    m_loader.m_topology = 2;
    return !succeeded;
}

bool PlainTopology::buildAsHypercube() {
    const std::size_t numProcessors = m_loader.m_procNodes.size();
    if (numProcessors == 0)
        return false;
    std::vector<std::size_t> degrees;
    for (Node* node : m_loader.m_procNodes) {
        const std::vector<std::string> others = linkedTo(node->m_id);
        degrees.push_back(std::set<std::string>(others.begin(), others.end()).size());
    }
    for (std::size_t degree : degrees) {
        if (degree != degrees[0])
            return false;
    }
    const auto numDimensions = static_cast<unsigned>(degrees[0]);
    if (numDimensions > 31 || (std::size_t{1} << numDimensions) != numProcessors)
        return false;

    const std::vector<std::string> order = walk();
    for (std::size_t k = 0; k < order.size(); ++k) {
        std::vector<unsigned> digits;
        for (unsigned i = 0; i < numDimensions; ++i)
            digits.push_back(k >> (numDimensions - 1 - i) & 1);
        m_loader.m_positions[order[k]] = digits;
        m_loader.m_positionNames[digits] = order[k];
    }
    for (Node* node : m_loader.m_procNodes) {
        if (std::find(order.begin(), order.end(), node->m_id) == order.end())
            throw std::string("Internal error building network.\n");
    }

    const unsigned width = m_loader.m_switchArch == 1 ? 8 : m_loader.m_sodLinks.empty() ? 16 : 15;
    if (numDimensions > width || (m_loader.m_hasZssc && numDimensions == width))
        throw "Node ID is insufficiently wide (" + std::to_string(width) + "; need " +
            std::to_string(numDimensions) + ").\n";
    for (Node* node : m_loader.m_procNodes) {
        unsigned cursor = width;
        unsigned identifier = 0;
        for (unsigned digit : m_loader.m_positions[node->m_id])
            identifier |= ((1U << digit) - 1) << --cursor;
        if (!node->m_routingIdSet)
            node->m_routingId = identifier;
        node->m_routingIdSet = true;
    }

    addRoutes(order, numDimensions);
    addDeviceRouteInfo();
    for (Zlink* link : m_loader.m_normalLinks) {
        std::vector<ZNLoader::ZlinkUserPair> kept;
        for (const auto& pair : link->m_users) {
            if (std::find(kept.begin(), kept.end(), pair) == kept.end())
                kept.push_back(pair);
        }
        link->m_users = kept;
    }

    std::vector<unsigned> position(numDimensions);
    std::set<std::vector<unsigned>> visited{position};
    const auto record = [&] {
        m_loader.m_nodeOrder.push_back(m_loader.findNodeForId(m_loader.m_positionNames[position]));
    };
    record();
    for (std::size_t numRecorded = 1; numRecorded < numProcessors; ++numRecorded) {
        bool moved = false;
        for (unsigned i = 0; i < numDimensions && !moved; ++i) {
            for (const unsigned change : {~0U, 1U}) {
                std::vector<unsigned> candidate = position;
                candidate[i] += change;
                if (candidate[i] >= 2 || visited.contains(candidate))
                    continue;
                position = candidate;
                moved = true;
                break;
            }
        }
        visited.insert(position);
        record();
    }
    return true;
}

std::vector<std::string> PlainTopology::walk() const {
    const auto isIn = [](const std::vector<std::string>& list, const std::string& id) {
        return std::find(list.begin(), list.end(), id) != list.end();
    };
    std::vector<std::string> a{m_loader.m_procNodes[0]->m_id};
    while (a.size() < m_loader.m_procNodes.size()) {
        const std::size_t n = a.size();
        const std::vector<std::string> others = linkedTo(a[0]);
        const auto start =
            std::find_if(others.begin(), others.end(), [&](const auto& id) { return !isIn(a, id); });
        if (start == others.end())
            throw std::string("Internal error building network.\n");
        std::vector<std::string> b{*start};
        std::string last = *start;
        for (std::size_t repetition = 0; repetition + 1 < n; ++repetition) {
            for (Node* node : m_loader.m_procNodes) {
                const std::string& id = node->m_id;
                if (isIn(a, id) || isIn(b, id) || !areLinked(id, last) ||
                    std::none_of(a.begin(), a.end(),
                                 [&](const auto& member) { return areLinked(id, member); }))
                    continue;
                b.push_back(id);
                last = id;
                break;
            }
        }
        if (a.size() != b.size())
            throw std::string("Internal error building network.\n");
        for (std::size_t i = 0; i < n; ++i) {
            const auto across =
                std::find_if(b.begin(), b.end(), [&](const auto& id) { return areLinked(id, a[i]); });
            if (across == b.end())
                throw std::string("Internal error location link end pair.\n");
            a.push_back(*across);
        }
    }
    return a;
}

void PlainTopology::addRoutes(const std::vector<std::string>& order, unsigned numDimensions) {
    const auto positionOf = [&](const std::string& id) { return m_loader.m_positions[id]; };
    const auto idAt = [&](const std::vector<unsigned>& digits) { return m_loader.m_positionNames[digits]; };
    (void)order;
    for (Node* source : m_loader.m_procNodes) {
        for (Node* destination : m_loader.m_procNodes) {
            if (source == destination)
                continue;
            std::vector<unsigned> position = positionOf(source->m_id);
            const std::vector<unsigned> target = positionOf(destination->m_id);
            while (position != target) {
                const std::vector<unsigned> previous = position;
                for (unsigned i = 0; i < numDimensions; ++i) {
                    if (position[i] != target[i]) {
                        position[i] = target[i];
                        break;
                    }
                }
                const std::string from = idAt(previous);
                const std::string to = idAt(position);
                for (Zlink* link : m_loader.m_normalLinks) {
                    if ((link->m_end0->m_nodeId == from && link->m_end1->m_nodeId == to) ||
                        (link->m_end1->m_nodeId == from && link->m_end0->m_nodeId == to))
                        link->m_users.push_back({source, destination});
                }
            }
        }
    }
}

void PlainTopology::addDeviceRouteInfo() {
    for (Zlink* link : m_loader.m_sodLinks) {
        Node* a = link->m_end0->isNormal() ? link->m_end0->m_node : link->m_end1->m_node;
        Node* b = link->m_end0->isNormal() ? link->m_end1->m_node : link->m_end0->m_node;
        link->m_users.push_back({b, a});
        link->m_users.push_back({a, b});
    }
    for (Node* n : m_loader.m_nodes) {
        if (n->getType() == 1)
            continue;
        for (Zlink* link : m_loader.m_normalLinks) {
            Node* g = nullptr;
            if (link->m_end0->m_node == n)
                g = link->m_end1->m_node;
            else if (link->m_end1->m_node == n)
                g = link->m_end0->m_node;
            else
                continue;
            if (!g)
                break;
            link->m_users.push_back({g, n});
            for (Node* m : m_loader.m_nodes) {
                if (m != n)
                    link->m_users.push_back({n, m});
            }
            for (Zlink* each : m_loader.m_normalLinks) {
                std::vector<ZNLoader::ZlinkUserPair> added;
                for (const auto& pair : each->m_users) {
                    if (pair.m_source == n || pair.m_destination == n)
                        continue;
                    if (pair.m_destination == g)
                        added.push_back({pair.m_source, n});
                    if (pair.m_source == g)
                        added.push_back({n, pair.m_destination});
                }
                each->m_users.insert(each->m_users.end(), added.begin(), added.end());
            }
            break;
        }
    }
}

// ---- Pile ----

std::string PlainTopology::findShortestRouteRoot(const std::string& from, const std::string& to) {
    std::vector<std::string> best(m_loader.m_nodes.size());
    std::string bestRoot;
    std::vector<std::string> path;
    search(from, to, best, bestRoot, path);
    return bestRoot;
}

void PlainTopology::search(const std::string& current, const std::string& to, std::vector<std::string>& best,
                           std::string& bestRoot, std::vector<std::string>& path) {
    if (current == to) {
        if (path.size() > best.size())
            return;
        std::vector<std::string> sorted = path;
        std::sort(sorted.begin(), sorted.end());
        if (path.size() == best.size()) {
            if (sorted < best) {
                bestRoot = path.front();
                best = sorted;
            }
            return;
        }
        bestRoot = path.front();
        best = sorted;
    }
    if (path.size() >= best.size())
        return;
    for (const std::string& next : linkedTo(current)) {
        if (!m_loader.findNodeForId(next) || std::find(path.begin(), path.end(), next) != path.end())
            continue;
        path.push_back(next);
        search(next, to, best, bestRoot, path);
        path.pop_back();
    }
}

bool PlainTopology::buildAsPile() {
    const std::vector<Node*>& processors = m_loader.m_procNodes;
    const std::size_t n = processors.size();
    std::vector<std::vector<Group>> groups(n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            if (i == j)
                continue;
            const std::string hop = findShortestRouteRoot(processors[i]->m_id, processors[j]->m_id);
            auto group = std::find_if(groups[i].begin(), groups[i].end(),
                                      [&](const Group& g) { return g.firstHop == hop; });
            if (group == groups[i].end())
                group = groups[i].insert(group, Group{hop, {}});
            group->pairs.emplace_back(processors[i]->m_id, processors[j]->m_id);
        }
    }

    const bool hasSod = !m_loader.m_sodLinks.empty();
    const unsigned mask = hasSod && m_loader.m_hasZssc   ? 0x3FFF
                          : hasSod || m_loader.m_hasZssc ? 0x7FFF
                                                         : 0xFFFF;
    const unsigned topBit = mask == 0x3FFF ? 13 : mask == 0x7FFF ? 14 : 15;
    if (n < 2)
        return false;
    Matrix candidates(n, std::vector<unsigned>(n, mask));
    for (std::size_t i = 0; i < n; ++i)
        candidates[i][i] = 0;
    Matrix bits(n, std::vector<unsigned>(n));
    if (!beBrutish(1, 0, candidates, bits, groups))
        return false;

    const std::vector<unsigned> words = identifiers(bits, mask, topBit);
    for (std::size_t i = 0; i < n; ++i) {
        if (!processors[i]->m_routingIdSet)
            processors[i]->m_routingId = words[i];
        processors[i]->m_routingIdSet = true;
    }
    if (!orderLine())
        return false;
    addDeviceRouteInfo();
    return true;
}

bool PlainTopology::beBrutish(std::size_t x, std::size_t y, Matrix& candidates, Matrix& result,
                              std::vector<std::vector<Group>>& groups) {
    const std::size_t n = candidates.size();
    const unsigned c = candidates[x][y];
    const unsigned saved = c;
    if (c == 0) {
        candidates[x][y] = saved;
        return false;
    }
    unsigned b = 1U << 31;
    while ((c & b) == 0)
        b >>= 1;
    std::vector<Change> changes{{x, y, c}, {y, x, c}};
    candidates[x][y] = candidates[y][x] = b;
    const std::string xId = m_loader.m_procNodes[x]->m_id;
    const std::string yId = m_loader.m_procNodes[y]->m_id;
    for (const std::vector<Group>& ofSource : groups) {
        for (const Group& holding : ofSource) {
            const bool holds = std::any_of(holding.pairs.begin(), holding.pairs.end(), [&](const auto& pair) {
                return (pair.first == xId && pair.second == yId) || (pair.first == yId && pair.second == xId);
            });
            if (!holds)
                continue;
            for (const Group& other : ofSource) {
                if (&other == &holding)
                    continue;
                for (const auto& [pId, qId] : other.pairs) {
                    const std::size_t p = m_loader.nodeOrdinalOfId(pId);
                    const std::size_t q = m_loader.nodeOrdinalOfId(qId);
                    changes.push_back({p, q, candidates[p][q]});
                    changes.push_back({q, p, candidates[q][p]});
                    candidates[p][q] &= ~b;
                    candidates[q][p] &= ~b;
                }
            }
        }
    }
    std::size_t nextX = x;
    std::size_t nextY = y;
    do {
        if (++nextX == n) {
            nextX = 0;
            ++nextY;
        }
    } while (nextX == nextY && nextY < n);
    if (nextY == n)
        result = candidates;
    else if (!beBrutish(nextX, nextY, candidates, result, groups))
        return false;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change)
        candidates[change->row][change->column] = change->word;
    candidates[x][y] = saved;
    return true;
}

std::vector<unsigned> PlainTopology::identifiers(const Matrix& bits, unsigned mask, unsigned topBit) const {
    const std::vector<Node*>& processors = m_loader.m_procNodes;
    const std::size_t n = processors.size();
    std::size_t root = 0;
    bool found = false;
    for (std::size_t i = 0; i < n && !found; ++i) {
        if (processors[i]->m_boot && processors[i]->m_boot->getBootStyle() == 1) {
            root = i;
            found = true;
        }
    }
    for (std::size_t i = 0; i < n && !found && !m_loader.m_jtagNodes.empty(); ++i) {
        if (processors[i] == m_loader.m_jtagNodes[0]) {
            root = i;
            found = true;
        }
    }

    std::vector<unsigned> words(n), assigned(n), done(n);
    assigned[root] = mask;
    while (true) {
        std::size_t current = 0;
        while (current < n && (assigned[current] & ~done[current]) == 0)
            ++current;
        if (current < n) {
            unsigned b = 1U << topBit;
            while ((assigned[current] & ~done[current] & b) == 0)
                b >>= 1;
            for (std::size_t j = 0; j < n; ++j) {
                if (j == current || (assigned[j] & b) != 0)
                    continue;
                if (bits[current][j] < b) {
                    words[j] |= words[current] & b;
                    assigned[j] |= b;
                } else if (bits[current][j] == b) {
                    words[j] |= ~words[current] & b;
                    assigned[j] |= b;
                }
            }
            done[current] |= b;
            continue;
        }
        std::size_t partial = 0;
        while (partial < n && assigned[partial] == mask)
            ++partial;
        if (partial == n)
            break;
        unsigned b = 1U << topBit;
        while ((assigned[partial] & b) != 0)
            b >>= 1;
        assigned[partial] |= b;
    }
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < i; ++j)
            words[i] = (words[i] & ~bits[i][j]) | (~words[j] & bits[i][j]);
    }
    return words;
}

bool PlainTopology::orderLine() {
    struct Holder {
        Node* node = nullptr;
        Node* first = nullptr;
        Node* second = nullptr;
    };
    std::vector<Holder> holders;
    int numEnds = 0;
    bool isLine = true;
    for (Node* node : m_loader.m_procNodes) {
        Holder holder{node, nullptr, nullptr};
        for (const std::string& id : linkedTo(node->m_id)) {
            Node* other = m_loader.findNodeForId(id);
            if (!other || other == holder.first || other == holder.second)
                continue;
            if (other->getType() != 1)
                isLine = false;
            if (!holder.first)
                holder.first = other;
            else if (!holder.second)
                holder.second = other;
            else
                isLine = false;
        }
        if (!holder.first)
            isLine = false;
        else if (!holder.second)
            ++numEnds;
        holders.push_back(holder);
    }
    if (numEnds != 2 || !isLine)
        return false;

    const auto holderOf = [&](Node* node) {
        return std::find_if(holders.begin(), holders.end(), [&](const Holder& h) { return h.node == node; });
    };
    auto at = std::find_if(holders.begin(), holders.end(), [](const Holder& h) { return !h.second; });
    std::vector<Node*> line;
    Node* back = nullptr;
    while (at != holders.end() && std::find(line.begin(), line.end(), at->node) == line.end()) {
        line.push_back(at->node);
        Node* onwards = at->first == back ? at->second : at->first;
        back = at->node;
        at = holderOf(onwards);
    }

    for (std::size_t h = line.size(); h-- > 0;) {
        m_loader.m_nodeOrder.insert(m_loader.m_nodeOrder.begin(), line[h]);
        for (std::size_t t = h; t-- > 0;) {
            for (std::size_t k = h; k > t; --k) {
                for (Zlink* link : m_loader.m_normalLinks) {
                    Node* a = link->m_end0->m_node;
                    Node* b = link->m_end1->m_node;
                    if ((a == line[k] && b == line[k - 1]) || (b == line[k] && a == line[k - 1])) {
                        link->m_users.push_back({line[h], line[t]});
                        link->m_users.push_back({line[t], line[h]});
                    }
                }
            }
        }
    }
    return true;
}
