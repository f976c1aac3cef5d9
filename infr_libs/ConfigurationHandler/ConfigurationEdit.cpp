// Searching and editing documents, and converting their texts. A document may be of any depth, so nothing
// here recurses over it.

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/ConfigurationHandler/ConfigurationSchema.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/StringLibrary/CLocale.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

constexpr char s_augmentedFileName[] = "<Augmented config>";

// The first node of a tree that matches, in document order, or null.
template<typename Matches>
XmlNode* findInTree(XmlNode* start, const Matches& matches) {
    std::vector<XmlNode*> pending{start};
    while (!pending.empty()) {
        XmlNode* const node = pending.back();
        pending.pop_back();
        if (matches(node))
            return node;
        for (unsigned i = node->numNodes(); i-- > 0;)
            pending.push_back(node->getNode(i));
    }
    return nullptr;
}

// Applies all modes but CONFIG_MODE_NEW_NODE to one element.
void setAttributeOf(XmlNode* node, const char* attributeName, const char* value, configMode_e mode) {
    bool found = false;
    for (unsigned i = 0; i < node->numAttributes(); ++i) {
        XmlAttribute* const attribute = node->getAttribute(i);
        if (*attribute->getName() != attributeName)
            continue;
        found = true;
        if (mode == CONFIG_MODE_REPLACE || mode == CONFIG_MODE_SET)
            attribute->setValue(value);
    }
    if (!found && (mode == CONFIG_MODE_SET || mode == CONFIG_MODE_ADD))
        node->addAttribute(new XmlAttribute(attributeName, value));
}

const char* skipBlanks(const char* text) {
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    return text;
}

// Reads a sign, and returns whether it is a minus.
bool takeSign(const char*& text) {
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+')
        ++text;
    return negative;
}

// These two read what scanf's %x and %d read into a 32-bit word on a target whose longs have 32 bits: blanks,
// a sign and digits, saturated. False where there is no number.

bool readHexadecimal(const char* text, unsigned& result) {
    text = skipBlanks(text);
    const bool negative = takeSign(text);
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
        std::isxdigit(static_cast<unsigned char>(text[2])))
        text += 2;
    std::uint32_t value = 0;
    const auto [end, failure] = std::from_chars(text, text + std::strlen(text), value, 16);
    if (failure == std::errc::invalid_argument)
        return false;
    if (failure == std::errc::result_out_of_range)
        result = std::numeric_limits<std::uint32_t>::max();
    else
        result = negative ? 0 - value : value;
    return true;
}

bool readDecimal(const char* text, unsigned& result) {
    text = skipBlanks(text);
    const bool negative = takeSign(text);
    std::uint32_t value = 0;
    const auto [end, failure] = std::from_chars(text, text + std::strlen(text), value, 10);
    if (failure == std::errc::invalid_argument)
        return false;
    const std::uint32_t most = negative ? 0x80000000U : 0x7fffffffU;
    if (failure == std::errc::result_out_of_range || value > most)
        value = most;
    result = negative ? 0 - value : value;
    return true;
}

} // namespace

void Configuration::setAttributeValue(XmlNode* node, const char* nodeName, const char* attributeName,
                                      const char* value, configMode_e mode) {
    ZELM_ASSERT(node != 0);
    setAttribute(node, nodeName, attributeName, value, mode);
}

void Configuration::setAttributeValue(const char* nodeName, const char* attributeName, const char* value,
                                      configMode_e mode) {
    ZELM_ASSERT(m_root != 0);
    setAttribute(m_root, nodeName, attributeName, value, mode);
}

void Configuration::setAttributeValue(const char* nodeName, const char* attributeName, unsigned value,
                                      configMode_e mode) {
    ZELM_ASSERT(m_root != 0);
    // With a sign, so that large numbers are written as negative ones: wanted.
    setAttribute(m_root, nodeName, attributeName, std::to_string(static_cast<std::int32_t>(value)).c_str(),
                 mode);
}

void Configuration::setAttribute(XmlNode* node, const char* nodeName, const char* attributeName,
                                 const char* value, configMode_e mode) {
    ZELM_ASSERT(node != 0);
    if (mode == CONFIG_MODE_NEW_NODE) {
        auto* const added = new XmlNode(nodeName, s_augmentedFileName, ++m_lineNum, m_utils);
        if (attributeName && value)
            added->addAttribute(new XmlAttribute(attributeName, value));
        node->addNode(added);
        return;
    }
    findInTree(node, [&](XmlNode* candidate) {
        if (*candidate->getName() == nodeName)
            setAttributeOf(candidate, attributeName, value, mode);
        return false; // an element inside one of the same name is set too
    });
}

XmlNode* Configuration::findNode(XmlNode* node, const char* nodeName) {
    ZELM_ASSERT(node != 0);
    ZELM_ASSERT(nodeName != 0);
    return findInTree(node, [&](XmlNode* candidate) { return *candidate->getName() == nodeName; });
}

XmlNode* Configuration::findNodeWithAttributeValue(XmlNode* node, const char* nodeName,
                                                   const char* attributeName, const char* attributeValue) {
    ZELM_ASSERT(node != 0);
    ZELM_ASSERT(nodeName != 0);
    ZELM_ASSERT(attributeName != 0);
    ZELM_ASSERT(attributeValue != 0);
    return findInTree(node, [&](XmlNode* candidate) {
        if (*candidate->getName() != nodeName)
            return false;
        for (unsigned i = 0; i < candidate->numAttributes(); ++i) {
            const XmlAttribute* const attribute = candidate->getAttribute(i);
            if (*attribute->getName() == attributeName && *attribute->getValue() == attributeValue)
                return true;
        }
        return false;
    });
}

XmlNode* Configuration::findNodeWithAttributeValue(XmlNode* node, const char* nodeName,
                                                   const char* attributeName, unsigned attributeValue) {
    ZELM_ASSERT(node != 0);
    ZELM_ASSERT(nodeName != 0);
    ZELM_ASSERT(attributeName != 0);
    return findInTree(node, [&](XmlNode* candidate) {
        if (*candidate->getName() != nodeName)
            return false;
        unsigned numOfName = 0;
        for (unsigned i = 0; i < candidate->numAttributes(); ++i)
            numOfName += *candidate->getAttribute(i)->getName() == attributeName;
        // Asked once for each attribute, whichever it is, so that a second attribute of the name is reported
        // as often. Where there is none to report, once says as much.
        const unsigned numTimes = numOfName > 1 ? candidate->numAttributes() : numOfName;
        for (unsigned i = 0; i < numTimes; ++i) {
            unsigned number = 0;
            if (candidate->getUIntAttribute(attributeName, number, false) && number == attributeValue)
                return true;
        }
        return false;
    });
}

XmlNode* Configuration::findProcessorNode(XmlNode* node, const std::string& nodeNumber,
                                          const std::string& processorNumber) {
    // A `Node` of the scan chain has no number, and isn't found.
    XmlNode* const found = findNodeWithAttributeValue(node, "Node", "number", nodeNumber.c_str());
    return found ? findNodeWithAttributeValue(found, "Processor", "number", processorNumber.c_str())
                 : nullptr;
}

unsigned Configuration::getUInt(const char* stringValue) {
    ZELM_ASSERT(stringValue != 0);
    unsigned value = 0;
    // Only a small x makes a hexadecimal number: "0X10" is read as decimal, and is 0.
    if (stringValue[0] == '0' && stringValue[1] == 'x' && readHexadecimal(stringValue + 2, value))
        return value;
    if (readDecimal(stringValue, value))
        return value;
    ZELM_ASSERT(0);
    return 0;
}

bool Configuration::getBool(const char* stringValue) {
    ZELM_ASSERT(stringValue != 0);
    if (std::strcmp(stringValue, "true") == 0)
        return true;
    if (std::strcmp(stringValue, "false") == 0)
        return false;
    ZELM_ASSERT(0);
    return false;
}

double Configuration::getDouble(const char* stringValue) {
    ZELM_ASSERT(stringValue != 0);
    const CLocale pointIsAPoint;
    double value = 0;
    if (std::sscanf(stringValue, "%lf", &value) != 1)
        ZELM_ASSERT(0);
    return value;
}

void Configuration::enableTraceNode(XmlNode* traceConfig, const char* name, const attribute_t* attributes) {
    for (unsigned i = 0; i < traceConfig->numNodes(); ++i) {
        const XmlAttribute* const nameAtt = traceConfig->getNode(i)->findAttribute("name");
        ZELM_ASSERT(nameAtt != __null);
        if (*nameAtt->getValue() == name)
            return;
    }
    buildNode(traceConfig, "Trace", attributes, s_traceSubNodes, true);
}

void Configuration::enableSwitchTracing(XmlNode* root) {
    setAttributeValue("Switch", "tracingOn", "true", CONFIG_MODE_SET);
    XmlNode* traceConfig = findNode(root, "TraceConfig");
    // Under the root itself, not under `System`: wanted.
    if (!traceConfig)
        traceConfig = buildNode(root, "TraceConfig", s_traceConfigAttributes, s_traceConfigSubNodes, true);
    enableTraceNode(traceConfig, "TRACE_SWITCH_DATA", s_trace0Attributes);
    enableTraceNode(traceConfig, "TRACE_SWITCH_CTRL", s_trace1Attributes);
    // Every trace of the document goes on, not these two alone: wanted.
    setAttributeValue("Trace", "value", "true", CONFIG_MODE_SET);
}
