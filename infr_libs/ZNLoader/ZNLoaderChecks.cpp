// The checks of a whole document: what one pass of reading can't see. They also bind the ends of links to
// their nodes and turn the texts of links into numbers.

#include "infr_libs/ZNLoader/ElementLocation.h"
#include "infr_libs/ZNLoader/NodeInstance.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <compare>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace {

constexpr unsigned s_maxDelay = 2047; // the field is eleven bits wide

// The switch architecture that a JTAG identifier stands for, taken as it is written. The clock planner looks
// at its low 28 bits alone; the two can disagree: wanted.
ZNLoader::SwitchArch switchArchOf(int jtagId) {
    switch (jtagId) {
    case 0x2731:
    case 0xFFF2731:
        return ZNLoader::SwitchArchG4;
    case 0x2633:
        return ZNLoader::SwitchArchL1;
    default:
        return ZNLoader::SwitchArchUnknown;
    }
}

// For each node the next one with the same id, or its own place.
std::vector<std::size_t> nextOfSameId(const std::vector<ZNLoader::Node*>& nodes) {
    std::vector<std::size_t> next(nodes.size());
    std::unordered_map<std::string_view, std::size_t> seen;
    for (std::size_t i = nodes.size(); i-- > 0;) {
        const auto [found, isNew] = seen.try_emplace(nodes[i]->m_id, i);
        next[i] = found->second;
        found->second = i;
    }
    return next;
}

bool isOnZssc(ZNLoader::ZlinkEnd& end) {
    return end.isNormal() && end.m_node && end.m_node->getType() == ZNLoader::ZsscNode::s_type;
}

// The number that a link identifier stands for: a number, or "ZnLc" or "ZLc" with a digit for the switch and
// a letter for the link. Bit 1 of the letter's place in the alphabet is inverted: the wiring of the switches.
std::optional<int> linkNumberOf(const std::string& text) {
    const auto isBetween = [](char c, char first, char last) { return c >= first && c <= last; };
    if (!text.empty() && isBetween(text[0], '0', '9'))
        return ZNUtils::DecimalOf(text);
    const bool hasSwitch = text.size() == 4;
    if ((!hasSwitch && text.size() != 3) || text[0] != 'Z' || text[text.size() - 2] != 'L')
        return std::nullopt;
    if (hasSwitch && !isBetween(text[1], '0', '3'))
        return std::nullopt;
    const char letter = text.back();
    const char lastLetter = hasSwitch ? 'D' : 'P';
    int place = 0;
    if (isBetween(letter, 'A', lastLetter))
        place = letter - 'A';
    else if (isBetween(letter, 'a', static_cast<char>(lastLetter - 'A' + 'a')))
        place = letter - 'a';
    else
        return std::nullopt;
    return (hasSwitch ? (text[1] - '0') * 4 : 0) + (place ^ 2);
}

ZNLoader::Node* nodeOf(ZNLoader& loader, const ZNLoader::ZlinkEnd& end, const XmlNode* element) {
    ZNLoader::Node* node = loader.findNodeForId(end.m_nodeId);
    if (!node)
        loader.m_utils.throwError(11036, ElementLocation(element), "Link node uses unknown node \"%s\".\n",
                                  end.m_nodeId.c_str());
    return node;
}

// Both bind an end to its node and settle its numbers; true for a failure that wasn't thrown.
bool associate(ZNLoader& loader, ZNLoader::ZlinkNormalEnd& end, const XmlNode* element) {
    end.m_node = nodeOf(loader, end, element);
    const std::optional<int> number = linkNumberOf(end.m_linkText);
    if (!number) {
        // It shows together with the failure of the whole pass.
        loader.m_utils.buildErrorMessage(11061, ElementLocation(element),
                                         "Link identifier (\"%s\") could not be parsed.\n",
                                         end.m_linkText.c_str());
        return true;
    }
    end.m_linkNumber = *number;
    return false;
}

bool associate(ZNLoader& loader, ZNLoader::ZlinkSodEnd& end, const XmlNode* element) {
    if (end.m_routingIdText.empty() || end.m_chanendText.empty())
        loader.m_utils.throwError(11036, ElementLocation(element),
                                  "Link node (SOD) is incompletely specified.\n");
    end.m_routingId = ZNUtils::IntOf(end.m_routingIdText);
    end.m_chanend = ZNUtils::IntOf(end.m_chanendText);
    if (!end.m_nodeId.empty())
        end.m_node = nodeOf(loader, end, element);
    return false;
}

void settleDelays(ZNLoader& loader, ZNLoader::ZlinkEnd& end, const ZNLoader::Zlink& link) {
    const std::string& text = end.m_delays.empty() ? link.m_delays : end.m_delays;
    int inter = 1;
    int intra = 1;
    if (!text.empty())
        loader.parseDelays(text, inter, intra, isOnZssc(end) ? ZNLoader::SwitchArchZssc : loader.m_switchArch,
                           link.m_element);
    // As unsigned numbers, so that a negative delay is out of range too.
    if (static_cast<unsigned>(inter) > s_maxDelay)
        loader.m_utils.throwError(11172, ElementLocation(link.m_element),
                                  "Inter-token delay is out of range.\n");
    if (static_cast<unsigned>(intra) > s_maxDelay)
        loader.m_utils.throwError(11173, ElementLocation(link.m_element),
                                  "Intra-token delay is out of range.\n");
    end.m_interTokenDelay = inter;
    end.m_intraTokenDelay = intra;
}

// An end of a link as the search for repeated ends sees it.
struct Endpoint {
    const ZNLoader::Node* node;
    int linkNumber;

    auto operator<=>(const Endpoint&) const = default;
};

Endpoint endpointOf(const ZNLoader::ZlinkEnd* end) {
    return {end->m_node, static_cast<const ZNLoader::ZlinkNormalEnd*>(end)->m_linkNumber};
}

// Throws the message for the first two ends, of two links or of one with itself, that are at one place.
// The four ends stand in the order first link, second link; of a link with itself, ends two places apart are
// one and the same end.
void compareEnds(ZNUtils& utils, const ZNLoader::Zlink& first, const ZNLoader::Zlink& second) {
    const ZNLoader::Zlink* links[] = {&first, &first, &second, &second};
    const ZNLoader::ZlinkEnd* ends[] = {first.m_end0, first.m_end1, second.m_end0, second.m_end1};
    for (unsigned u = 0; u < 4; ++u) {
        for (unsigned v = u + 1; v < 4; ++v) {
            if ((&first == &second && (u + v) % 2 == 0) || endpointOf(ends[u]) != endpointOf(ends[v]))
                continue;
            const auto name = [](const ZNLoader::ZlinkEnd* end) {
                return static_cast<const ZNLoader::ZlinkNormalEnd*>(end)->m_linkText.c_str();
            };
            utils.buildErrorMessage(11164, ElementLocation(links[v]->m_element),
                                    "LinkEndpoint \"%s\" on node \"%s\" is a duplicate.\n", name(ends[v]),
                                    ends[v]->m_nodeId.c_str());
            utils.throwError(11164, ElementLocation(links[u]->m_element),
                             "Other is LinkEndpoint \"%s\" on node \"%s\".\n", name(ends[u]),
                             ends[u]->m_nodeId.c_str());
        }
    }
}

} // namespace

bool ZNLoader::checkNodes() {
    const std::vector<std::size_t> nextSame = nextOfSameId(m_nodes);
    int architecture = 0;
    for (std::size_t i = 0; i < m_nodes.size(); ++i) {
        Node& node = *m_nodes[i];
        const auto* processor = node.getType() == ProcNode::s_type ? static_cast<ProcNode*>(&node) : nullptr;
        if (processor && processor->m_config) {
            const NodeInstance& model = *processor->m_config->m_node;
            if (architecture != 0 && architecture != model.jtagId)
                m_utils.throwError(11085, ElementLocation(node.m_element),
                                   "Switch architectures cannot be mixed.\n");
            architecture = model.jtagId;
            if (processor->m_cores.size() != model.cores->size())
                m_utils.throwError(11153, ElementLocation(node.m_element),
                                   "Number of cores in ZN (%d) does not match number (%d) in configuration "
                                   "file (%s).\n",
                                   static_cast<int>(processor->m_cores.size()),
                                   static_cast<int>(model.cores->size()),
                                   processor->m_config->m_fileName.c_str());
        }
        if (nextSame[i] != i) {
            m_utils.buildErrorMessage(11035, ElementLocation(m_nodes[nextSame[i]]->m_element),
                                      "Duplicate node name \"%s\".\n", node.m_id.c_str());
            m_utils.throwError(11035, ElementLocation(node.m_element), "  first used here\n");
        }
    }
    m_switchArch = switchArchOf(architecture);
    return false;
}

bool ZNLoader::checkCoreRefs() {
    std::unordered_map<std::string_view, const CoreDeclaration*> declarations; // the first of a name counts
    for (const CoreDeclaration* declaration : m_declarations)
        declarations.try_emplace(declaration->m_name, declaration);

    // A name has one declaration, so the index (0 for what isn't an array) tells its uses apart.
    std::map<std::pair<std::string_view, int>, const XmlNode*> usages;
    for (const Node* node : m_procNodes) {
        for (const Core* core : static_cast<const ProcNode*>(node)->m_cores) {
            const auto found = declarations.find(core->m_refBase);
            if (found == declarations.end())
                m_utils.throwError(11150, ElementLocation(core->m_element),
                                   "Reference code uses identifier which has not been declared.\n");
            const CoreDeclaration& declaration = *found->second;
            if (declaration.m_isArray != core->m_refIndexed) {
                m_utils.buildErrorMessage(11149, ElementLocation(core->m_element),
                                          "Reference code has mistmatch with declations.\n");
                m_utils.throwError(11149, ElementLocation(declaration.m_element), "Declaration here.\n");
            }
            const int index = declaration.m_isArray ? core->m_refIndex : 0;
            const auto [used, isNew] = usages.try_emplace({core->m_refBase, index}, core->m_element);
            if (!isNew) {
                m_utils.buildErrorMessage(11152, ElementLocation(core->m_element),
                                          "Duplicate reference code \"%s\".\n", core->m_reference.c_str());
                m_utils.throwError(11152, ElementLocation(used->second), "Previously used here.\n");
            }
        }
    }
    return false;
}

bool ZNLoader::checkPackages() {
    std::unordered_map<std::string_view, unsigned> numPackages; // by node id
    for (const Node* node : m_nodes)
        numPackages.try_emplace(node->m_id, 0);
    for (const Package* package : m_packages) {
        for (const auto& [inPackageId, nodeId] : package->m_nodeIds) {
            const auto found = numPackages.find(nodeId);
            if (found == numPackages.end())
                m_utils.throwError(11097, ElementLocation(package->m_element),
                                   "Node id \"%s\" in Component node does not match any node.\n",
                                   nodeId.c_str());
            ++found->second;
        }
    }

    bool isShared = false;
    for (const Node* node : m_nodes) {
        const unsigned count = numPackages[node->m_id];
        if (count == 0)
            m_utils.buildWarningMessage(
                warningTarget(), 11158, ElementLocation(node->m_element),
                "Node \"%s\" is not in a package.  Support for nodes outwith packages "
                "is deprecated.\n",
                node->m_id.c_str());
        if (count > 1) { // all such nodes are named before the text is thrown
            isShared = true;
            m_utils.buildErrorMessage(11159, ElementLocation(node->m_element),
                                      "Node \"%s\" is in more then 1 package.\n", node->m_id.c_str());
        }
    }
    if (isShared)
        m_utils.throwErrors();
    return false;
}

bool ZNLoader::checkJTAGChain() {
    if (!m_jtagChainElement)
        m_utils.throwError(11038, ZNUtils::FileNameLocation(m_fileName), "JTAG scan chain not specified.\n");

    std::unordered_map<const Node*, unsigned> inChain;
    for (const Node* node : m_jtagNodes)
        ++inChain[node];
    for (const Node* node : m_jtagNodes) {
        if (inChain[node] > 1)
            m_utils.throwError(11039, ElementLocation(m_jtagChainElement),
                               "JTAG scan chain duplicate (\"%s\").\n", node->m_id.c_str());
    }

    // A chain as long as the list of nodes isn't searched: wanted.
    if (m_jtagNodes.size() == m_nodes.size())
        return false;
    bool isIncomplete = false;
    for (Node* node : m_nodes) {
        if (node->getType() == DeviceNode::s_type || inChain.contains(node))
            continue;
        if (!isIncomplete)
            m_utils.buildErrorMessage(11040, ElementLocation(m_jtagChainElement),
                                      "JTAG scan chain is incomplete.\n");
        isIncomplete = true;
        m_utils.buildErrorMessage(11040, ElementLocation(node->m_element), "  node \"%s\" is missing.\n",
                                  node->m_id.c_str());
    }
    if (isIncomplete)
        m_utils.throwErrors();
    return false;
}

bool ZNLoader::associateNodesWithLinks() {
    for (Zlink* link : m_links) {
        for (ZlinkEnd* end : {link->m_end0, link->m_end1}) {
            const bool failed = end->isNormal()
                                    ? associate(*this, static_cast<ZlinkNormalEnd&>(*end), link->m_element)
                                    : associate(*this, static_cast<ZlinkSodEnd&>(*end), link->m_element);
            if (failed)
                return true;
        }
    }

    for (Zlink* link : m_links) {
        const bool isSod = (link->m_flags & Zlink::s_sod) != 0;
        const bool touchesZssc = isOnZssc(*link->m_end0) || isOnZssc(*link->m_end1);
        if (isSod)
            m_sodLinks.push_back(link);
        if (touchesZssc) {
            link->m_flags |= Zlink::s_zssc;
            m_zsscLinks.push_back(link);
        }
        if (!isSod && !touchesZssc)
            m_normalLinks.push_back(link);
    }
    return false;
}

bool ZNLoader::checkLinks() {
    // SOD links pass a second time in the design; the result is the same, so once is enough.
    for (Zlink* link : m_links) {
        if (ZNUtils::Stricmp(link->m_encoding.c_str(), "5wire") == 0)
            link->m_wires = 5;
        else if (ZNUtils::Stricmp(link->m_encoding.c_str(), "2wire") == 0)
            link->m_wires = 2;
        else
            m_utils.throwError(11037, ElementLocation(link->m_element),
                               "Link node uses unknown link encoding (%s).\n", link->m_encoding.c_str());
        for (ZlinkEnd* end : {link->m_end0, link->m_end1})
            settleDelays(*this, *end, *link);
    }
    return false;
}

bool ZNLoader::checkLinkDups() {
    // The message is that of comparing each link, from the first on, with every link, from the first on, and
    // with itself. A link that repeats its own end is met while the first link is compared with it; otherwise
    // the first link that shares an end with another gives the message.
    std::map<Endpoint, std::size_t> firstAt;
    const std::size_t none = m_normalLinks.size();
    std::size_t offender = none;
    for (std::size_t i = 0; i < m_normalLinks.size(); ++i) {
        const Endpoint first = endpointOf(m_normalLinks[i]->m_end0);
        const Endpoint second = endpointOf(m_normalLinks[i]->m_end1);
        if (first == second)
            offender = 0;
        for (const Endpoint& end : {first, second}) {
            const std::size_t earlier = firstAt.try_emplace(end, i).first->second;
            if (earlier != i)
                offender = std::min(offender, earlier);
        }
    }
    if (offender == none)
        return false;
    for (const Zlink* link : m_normalLinks)
        compareEnds(m_utils, *m_normalLinks[offender], *link);
    return false;
}
