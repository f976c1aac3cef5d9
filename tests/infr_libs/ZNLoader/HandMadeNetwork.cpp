#include "tests/infr_libs/ZNLoader/HandMadeNetwork.h"

namespace {

std::unique_ptr<ZNLoader::ZlinkEnd> normalEnd(const std::string& node, const std::string& link) {
    auto end = std::make_unique<ZNLoader::ZlinkNormalEnd>();
    end->m_nodeId = node;
    end->m_linkText = link;
    return end;
}

} // namespace

XmlNode* HandMadeNetwork::element() {
    return &m_elements.emplace_back("Element", "zn", static_cast<unsigned>(m_elements.size() + 1),
                                    loader.m_zelmUtils);
}

void HandMadeNetwork::add(ZNLoader::Node* node, const std::string& id) {
    node->m_id = id;
    node->m_element = element();
    loader.m_nodes.push_back(node);
    loader.m_nodeMap.emplace(id, node);
}

ZNLoader::ProcNode& HandMadeNetwork::processor(const std::string& id) {
    auto* node = new ZNLoader::ProcNode;
    add(node, id);
    loader.m_procNodes.push_back(node);
    return *node;
}

void HandMadeNetwork::processors(std::initializer_list<const char*> ids) {
    for (const char* id : ids)
        processor(id);
}

ZNLoader::DeviceNode& HandMadeNetwork::device(const std::string& id) {
    auto* node = new ZNLoader::DeviceNode;
    add(node, id);
    return *node;
}

ZNLoader::ZsscNode& HandMadeNetwork::zssc(const std::string& id) {
    auto* node = new ZNLoader::ZsscNode;
    add(node, id);
    loader.m_hasZssc = true;
    return *node;
}

ZNLoader::Zlink& HandMadeNetwork::add(std::unique_ptr<ZNLoader::ZlinkEnd> end0,
                                      std::unique_ptr<ZNLoader::ZlinkEnd> end1) {
    auto* link = new ZNLoader::Zlink;
    link->m_element = element();
    link->m_encoding = "5wire";
    link->m_end0 = end0.release();
    link->m_end1 = end1.release();
    loader.m_links.push_back(link);
    return *link;
}

ZNLoader::Zlink& HandMadeNetwork::link(const std::string& node0, const std::string& link0,
                                       const std::string& node1, const std::string& link1) {
    return add(normalEnd(node0, link0), normalEnd(node1, link1));
}

ZNLoader::Zlink& HandMadeNetwork::link(const std::string& node0, const std::string& node1) {
    const std::string link0 = std::to_string(m_nextLinkNumber++);
    const std::string link1 = std::to_string(m_nextLinkNumber++);
    return link(node0, link0, node1, link1);
}

ZNLoader::Zlink& HandMadeNetwork::sodLink(const std::string& node, const std::string& link,
                                          const std::string& sodNode) {
    auto end = std::make_unique<ZNLoader::ZlinkSodEnd>();
    end->m_nodeId = sodNode;
    end->m_routingIdText = "0x100";
    end->m_chanendText = "2";
    ZNLoader::Zlink& made = add(normalEnd(node, link), std::move(end));
    made.m_flags |= ZNLoader::Zlink::s_sod;
    return made;
}

void HandMadeNetwork::associate() {
    loader.associateNodesWithLinks();
}

std::string HandMadeNetwork::users(const ZNLoader::Zlink& link) {
    std::string text;
    const auto idOf = [](ZNLoader::Node* node) { return node ? node->m_id : "null"; };
    for (const auto& [source, destination] : link.m_users)
        text += (text.empty() ? "" : " ") + idOf(source) + ">" + idOf(destination);
    return text;
}

std::string HandMadeNetwork::ids(const std::vector<ZNLoader::Node*>& nodes) {
    std::string text;
    for (const ZNLoader::Node* node : nodes)
        text += (text.empty() ? "" : " ") + node->m_id;
    return text;
}
