// Building, checking and printing documents by the schema's tables.

#include "infr_libs/ConfigurationHandler/Configuration.h"

#include "infr_libs/ConfigurationHandler/ConfigurationSchema.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <cstring>

namespace {

constexpr char s_builtFileName[] = "DefaultConfig.xml";

bool isEqual(const char* first, const char* second) {
    return std::strcmp(first, second) == 0;
}

} // namespace

// Trees belong to those who built or parsed them.
Configuration::~Configuration() {
    m_utils = nullptr;
    m_root = nullptr;
}

unsigned Configuration::getNumAttributes(const attribute_t* attributes) {
    unsigned count = 0;
    while (attributes[count].name)
        ++count;
    return count;
}

unsigned Configuration::getNumSubNodes(const node_t* subNodes) {
    unsigned count = 0;
    while (subNodes[count].name)
        ++count;
    return count;
}

Configuration::KnownNames Configuration::createKnownAttributesArray(const attribute_t* attributes) {
    KnownNames names;
    names.reserve(getNumAttributes(attributes) + 1);
    for (const attribute_t* row = attributes; row->name; ++row)
        names.push_back(row->name);
    names.push_back(nullptr);
    return names;
}

Configuration::KnownNames Configuration::createKnownSubNodesArray(const node_t* subNodes) {
    KnownNames names;
    names.reserve(getNumSubNodes(subNodes) + 1);
    for (const node_t* row = subNodes; row->name; ++row)
        names.push_back(row->name);
    names.push_back(nullptr);
    return names;
}

XmlNode* Configuration::buildDefaultConfig() {
    ZELM_ASSERT(m_root == 0);
    return buildNode(nullptr, "ZSystem", s_zSystemAttributes, s_zSystemSubNodes, false);
}

XmlNode* Configuration::buildCompleteConfig() {
    ZELM_ASSERT(m_root == __null);
    return buildNode(nullptr, "ZSystem", s_zSystemAttributes, s_zSystemSubNodes, true);
}

XmlNode* Configuration::buildNode(XmlNode* parent, const char* name, const attribute_t* attributes,
                                  const node_t* subNodes, bool complete) {
    auto* const node = new XmlNode(name, s_builtFileName, ++m_lineNum, m_utils);
    if (parent)
        parent->addNode(node);
    else
        m_root = node;
    for (const attribute_t* row = attributes; row->name; ++row)
        if (complete || row->inDefault)
            node->addAttribute(new XmlAttribute(row->name, row->value));
    for (const node_t* row = subNodes; row->name; ++row)
        if (complete || row->inDefault)
            buildNode(node, row->name, row->attributes, row->subNodes, complete);
    return node;
}

void Configuration::checkConfig(XmlNode* root) {
    checkNode(root, s_zSystemAttributes, s_zSystemSubNodes);
}

// Goes no deeper than the schema: an element without a row isn't entered.
void Configuration::checkNode(XmlNode* node, const attribute_t* attributes, const node_t* subNodes) {
    node->checkAttributes(createKnownAttributesArray(attributes).data());
    node->checkSubNodes(createKnownSubNodesArray(subNodes).data());

    const unsigned numSubNdes = getNumSubNodes(subNodes);
    for (unsigned i = 0; i < node->numNodes(); ++i) {
        XmlNode* const subNode = node->getNode(i);
        unsigned defaultIndex = 0;
        while (defaultIndex < numSubNdes && *subNode->getName() != subNodes[defaultIndex].name)
            ++defaultIndex;
        // Fails for an element that was reported above to a handler that returns.
        ZELM_ASSERT(defaultIndex < numSubNdes);
        checkNode(subNode, subNodes[defaultIndex].attributes, subNodes[defaultIndex].subNodes);
    }
}

const char* Configuration::getAttributeValue(const char* nodeName, const char* attributeName) {
    return getAttribute("ZSystem", s_zSystemAttributes, s_zSystemSubNodes, nodeName, attributeName);
}

const char* Configuration::getAttribute(const char* currentName, const attribute_t* attributes,
                                        const node_t* subNodes, const char* nodeName,
                                        const char* attributeName) {
    if (isEqual(currentName, nodeName))
        for (const attribute_t* row = attributes; row->name; ++row)
            if (isEqual(row->name, attributeName))
                return row->value;
    // An element name can stand at several places; a miss at the first goes on to the next.
    for (const node_t* row = subNodes; row->name; ++row)
        if (const char* value =
                getAttribute(row->name, row->attributes, row->subNodes, nodeName, attributeName))
            return value;
    return nullptr;
}

void Configuration::displayDefaultConfig(FILE* file) {
    displayNode(file, "ZSystem", s_zSystemAttributes, s_zSystemSubNodes, 0);
}

void Configuration::indent(FILE* file, unsigned indentation) {
    std::fprintf(file, "%*s", static_cast<int>(indentation), "");
}

void Configuration::displayNode(FILE* file, const char* name, const attribute_t* attributes,
                                const node_t* subNodes, unsigned indentation) {
    for (const attribute_t* row = attributes; row->name; ++row) {
        if (*row->help == '\0')
            continue;
        indent(file, indentation);
        std::fprintf(file, "<!-- %s: %s -->\n", row->name, row->help);
    }

    indent(file, indentation);
    std::fprintf(file, "<%s", name);
    for (const attribute_t* row = attributes; row->name; ++row)
        std::fprintf(file, " %s=\"%s\"", row->name, row->value);

    if (getNumSubNodes(subNodes) == 0) {
        if (getNumAttributes(attributes) != 0)
            std::fprintf(file, "/>\n");
        else
            std::fprintf(file, "></%s>\n", name);
        return;
    }
    std::fprintf(file, ">\n");
    for (const node_t* row = subNodes; row->name; ++row)
        displayNode(file, row->name, row->attributes, row->subNodes, indentation + 2);
    indent(file, indentation);
    std::fprintf(file, "</%s>\n", name);
}
