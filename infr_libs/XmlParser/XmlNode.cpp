#include "infr_libs/XmlParser/XmlNode.h"

#include "infr_libs/ErrorHandler/Assertion.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

XmlNode::XmlNode(const std::string* name, const char* fileName, unsigned lineNum, ZelmUtils* utils)
    : m_name(*name) {
    initialise(fileName, lineNum, utils);
}

XmlNode::XmlNode(const char* name, const char* fileName, unsigned lineNum, ZelmUtils* utils) : m_name(name) {
    initialise(fileName, lineNum, utils);
}

XmlNode::XmlNode(std::string_view name, FileName fileName, unsigned lineNum, ZelmUtils* utils)
    : m_utils(utils), m_name(name), m_lineNum(lineNum), m_fileName(std::move(fileName)) {}

void XmlNode::initialise(const char* fileName, unsigned lineNum, ZelmUtils* utils) {
    m_fileName = std::make_shared<const std::string>(fileName);
    m_lineNum = lineNum;
    m_utils = utils;
}

XmlNode::XmlNode(const XmlNode& other)
    : m_utils(other.m_utils),
      m_name(other.m_name),
      m_value(other.m_value),
      m_lineNum(other.m_lineNum),
      m_fileName(other.m_fileName) {
    copyAttributes(other);

    struct Unfinished {
        const XmlNode* from;
        XmlNode* to; // a copy without its sub-nodes
    };
    std::vector<Unfinished> unfinished{{&other, this}};
    while (!unfinished.empty()) {
        const auto [from, to] = unfinished.back();
        unfinished.pop_back();
        to->m_nodes.reserve(from->m_nodes.size());
        for (const auto& subNode : from->m_nodes) {
            auto copy = std::unique_ptr<XmlNode>(
                new XmlNode(subNode->m_name, subNode->m_fileName, subNode->m_lineNum, subNode->m_utils));
            copy->m_value = subNode->m_value;
            copy->copyAttributes(*subNode);
            if (!subNode->m_nodes.empty())
                unfinished.push_back({subNode.get(), copy.get()});
            to->m_nodes.push_back(std::move(copy));
        }
    }
}

XmlNode::~XmlNode() {
    try {
        // Each node that is deleted here has lost its sub-nodes to the list, so that none goes down into
        // another's destructor.
        Nodes unfinished = std::move(m_nodes);
        while (!unfinished.empty()) {
            const std::unique_ptr<XmlNode> node = std::move(unfinished.back());
            unfinished.pop_back();
            // As one range: where there is no room, none has moved and the node is still whole.
            unfinished.insert(unfinished.end(), std::move_iterator(node->m_nodes.begin()),
                              std::move_iterator(node->m_nodes.end()));
            node->m_nodes.clear();
        }
    } catch (...) {
        std::fputs("INTERNAL ERROR.\n", stderr);
        std::exit(1);
    }
}

void XmlNode::copyAttributes(const XmlNode& other) {
    m_attributes.reserve(other.m_attributes.size());
    for (const auto& attribute : other.m_attributes)
        m_attributes.push_back(std::make_unique<XmlAttribute>(*attribute));
}

XmlAttribute* XmlNode::getAttribute(unsigned attributeNum) const {
    ZELM_ASSERT(attributeNum < m_attributes.size());
    return m_attributes[attributeNum].get();
}

XmlNode* XmlNode::getNode(unsigned nodeNum) const {
    ZELM_ASSERT(nodeNum < m_nodes.size());
    return m_nodes[nodeNum].get();
}

XmlAttribute* XmlNode::findAttribute(const char* name) const {
    for (const auto& attribute : m_attributes)
        if (std::strcmp(attribute->getName()->c_str(), name) == 0)
            return attribute.get();
    return nullptr;
}

XmlNode* XmlNode::findNode(const char* name) const {
    for (const auto& node : m_nodes)
        if (std::strcmp(node->m_name.c_str(), name) == 0)
            return node.get();
    return nullptr;
}

void XmlNode::addAttribute(XmlAttribute* attribute) {
    m_attributes.emplace_back(attribute);
}

void XmlNode::addNode(XmlNode* node) {
    m_nodes.emplace_back(node);
}

void XmlNode::createOrReplaceAttribute(const char* name, const char* value) {
    if (XmlAttribute* old = findAttribute(name))
        replaceAttribute(old, new XmlAttribute(name, value));
    else
        m_attributes.push_back(std::make_unique<XmlAttribute>(name, value));
}

void XmlNode::replaceAttribute(XmlAttribute* old, XmlAttribute* replacement) {
    const auto position = std::ranges::find(m_attributes, old, &std::unique_ptr<XmlAttribute>::get);
    if (position == m_attributes.end())
        internalError("trying to replace an attribute that doesn't belong to the node");
    else if (replacement != old)
        position->reset(replacement);
}

XmlNode::Nodes::iterator XmlNode::findPosition(const XmlNode* node) {
    return std::ranges::find(m_nodes, node, &std::unique_ptr<XmlNode>::get);
}

void XmlNode::deleteNode(XmlNode* node) {
    const auto position = findPosition(node);
    if (position == m_nodes.end()) {
        internalError("trying to delete a node which doesn't exist");
        return;
    }
    static_cast<void>(position->release()); // left to the caller: wanted
    m_nodes.erase(position);
}

void XmlNode::replaceNode(XmlNode* old, XmlNode* replacement) {
    const auto position = findPosition(old);
    if (position == m_nodes.end()) {
        internalError("trying to replace a subnode that doesn't belong to the node");
        return;
    }
    auto copy = std::make_unique<XmlNode>(*replacement);
    static_cast<void>(position->release()); // left to the caller: wanted
    *position = std::move(copy);
}

void XmlNode::replaceNodeWithMany(XmlNode* old, XmlNode* holder) {
    const auto position = findPosition(old);
    if (position == m_nodes.end()) {
        internalError("trying to replace a subnode that doesn't belong to the node");
        return;
    }
    Nodes nodes;
    nodes.reserve(m_nodes.size() - 1 + holder->m_nodes.size());
    for (const auto& node : holder->m_nodes)
        nodes.push_back(std::make_unique<XmlNode>(*node));

    static_cast<void>(position->release()); // left to the caller: wanted
    nodes.insert(nodes.begin(), std::move_iterator(m_nodes.begin()), std::move_iterator(position));
    nodes.insert(nodes.end(), std::move_iterator(position + 1), std::move_iterator(m_nodes.end()));
    m_nodes = std::move(nodes);
}

namespace {

void printTabs(FILE* file, int depth) {
    for (int i = 0; i < depth; ++i)
        std::fputs("  ", file);
}

} // namespace

void XmlNode::print(FILE* file, int depth, bool indent) const {
    struct Open {
        const XmlNode* node;
        std::size_t next; // the sub-node to be printed next
    };
    std::vector<Open> open;

    const auto begin = [&](const XmlNode& node) {
        const int level = depth + static_cast<int>(open.size());
        if (indent)
            printTabs(file, level);
        std::fprintf(file, "<%s", node.m_name.c_str());
        for (const auto& attribute : node.m_attributes)
            std::fprintf(file, " %s=\"%s\"", attribute->getName()->c_str(), attribute->getValueSz());
        if (node.m_value.empty() && node.m_nodes.empty()) {
            std::fputs("/>\n", file);
            return;
        }
        std::fputc('>', file);
        std::fwrite(node.m_value.data(), 1, node.m_value.size(), file);
        if (!node.m_nodes.empty())
            std::fputc('\n', file);
        open.push_back({&node, 0});
    };

    begin(*this);
    while (!open.empty()) {
        auto& [node, next] = open.back();
        if (next < node->m_nodes.size()) {
            begin(*node->m_nodes[next++]);
            continue;
        }
        const XmlNode* finished = node;
        open.pop_back();
        if (indent && !finished->m_nodes.empty())
            printTabs(file, depth + static_cast<int>(open.size()));
        std::fprintf(file, "</%s>\n", finished->m_name.c_str());
    }
}
