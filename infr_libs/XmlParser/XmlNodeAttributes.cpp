// The validated side of `XmlNode`: typed attributes, lists of known names, and the reports of both.

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/CLocale.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <cstring>

template<typename Take>
bool XmlNode::takeAttribute(const char* name, bool required, const Take& take) const {
    bool found = false;
    for (const auto& attribute : m_attributes) {
        if (std::strcmp(attribute->getName()->c_str(), name) != 0)
            continue;
        // A report may throw: the result is stored before the second attribute is looked at.
        if (found)
            duplicateAttributeError(attribute.get());
        else
            take(*attribute);
        found = true;
    }
    if (!found && required)
        missingAttributeError(name);
    return found;
}

bool XmlNode::getIntAttribute(const char* name, int& result, bool required) const {
    return takeAttribute(name, required, [&](const XmlAttribute& attribute) {
        int base = 0; // not looked at: what follows the number is accepted, as wanted
        m_utils->stringLibrary->strToInt(attribute.getValueSz(), &result, &base);
    });
}

bool XmlNode::getUIntAttribute(const char* name, unsigned& result, bool required) const {
    int value = 0;
    const bool found = getIntAttribute(name, value, required);
    if (found)
        result = static_cast<unsigned>(value);
    return found;
}

bool XmlNode::getUInt64Attribute(const char* name, unsigned long long& result, bool required) const {
    unsigned value = 0;
    const bool found = getUIntAttribute(name, value, required);
    if (found)
        result = value; // the upper half is always zero: wanted
    return found;
}

bool XmlNode::getStringAttribute(const char* name, std::string** result, bool required) const {
    return takeAttribute(name, required, [&](const XmlAttribute& attribute) {
        auto value = std::make_unique<std::string>(*attribute.getValue());
        delete *result;
        *result = value.release();
    });
}

bool XmlNode::getBoolAttribute(const char* name, bool& result, bool required) const {
    return takeAttribute(name, required, [&](const XmlAttribute& attribute) {
        const std::string& value = *attribute.getValue();
        if (value == "true" || value == "TRUE")
            result = true;
        else if (value == "false" || value == "FALSE")
            result = false;
        else
            invalidBoolAttributeError(&attribute);
    });
}

bool XmlNode::getDoubleAttribute(const char* name, double& result, bool required) const {
    static_cast<void>(required); // without effect: wanted
    const XmlAttribute* attribute = findAttribute(name);
    const CLocale pointIsAPoint;
    // NOLINTNEXTLINE(cert-err34-c): what sscanf takes for a number is a number
    return attribute && std::sscanf(attribute->getValueSz(), "%lf", &result) == 1;
}

bool XmlNode::isInList(const char* const* list, const std::string* name) {
    for (; *list; ++list)
        if (std::strcmp(*list, name->c_str()) == 0)
            return true;
    return false;
}

void XmlNode::checkSubNodes(const char* const* list) const {
    for (const auto& node : m_nodes)
        if (!isInList(list, node->getName()))
            unrecognisedSubNodeError(node.get());
}

void XmlNode::checkAttributes(const char* const* list) const {
    for (const auto& attribute : m_attributes)
        if (!isInList(list, attribute->getName()))
            unrecognisedAttributeError(attribute.get(), list);
}

void XmlNode::unrecognisedSubNodeError(const XmlNode* subNode) const {
    const std::string text = "unrecognised subnode '" + subNode->m_name + "' in node '" + m_name + "'";
    error(*subNode->m_fileName, subNode->m_lineNum, text.c_str());
}

void XmlNode::missingSubNodeError(const char* name) const {
    error(std::string("missing required subnode '") + name + "' in node '" + m_name + "'");
}

void XmlNode::duplicateSubNodeError(const XmlNode* subNode) const {
    error("duplicate subnode '" + subNode->m_name + "' in node '" + m_name + "'");
}

void XmlNode::duplicateAttributeError(const XmlAttribute* attribute) const {
    error("duplicate attribute '" + *attribute->getName() + "' in node '" + m_name + "'");
}

void XmlNode::unrecognisedAttributeError(const XmlAttribute* attribute, const char* const* list) const {
    static_cast<void>(list); // what would have been recognised isn't shown
    error("unrecognised attribute '" + *attribute->getName() + "' in node '" + m_name + "'");
}

void XmlNode::missingDbEntryError(const char* kind, const std::string* entry) const {
    error("'" + *entry + "' is not a valid '" + kind + "'");
}

void XmlNode::invalidIntAttributeError(const char* name, int value) const {
    static_cast<void>(value); // the number isn't shown
    error(std::string("invalid value for attribute '") + name + "' in node '" + m_name + "'");
}

void XmlNode::missingAttributeError(const char* name) const {
    error(std::string("missing required attribute '") + name + "' in node '" + m_name + "'");
}

void XmlNode::invalidBoolAttributeError(const XmlAttribute* attribute) const {
    // Both places show the address of the name, where a reader expects the value and the name: wanted.
    char address[sizeof "0xffffffffffffffff"];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(attribute->getName()));
    error(std::string("non-boolean value '") + address + "' for attribute '" + address + "' in node '" +
          m_name + "'");
}

void XmlNode::error(const std::string& text) const {
    error(*m_fileName, m_lineNum, text.c_str());
}

void XmlNode::error(const char* text) const {
    error(*m_fileName, m_lineNum, text);
}

void XmlNode::error(const std::string& file, unsigned line, const char* text) const {
    m_utils->errorHandler->fatalError(true, "%s:%d: error: %s\n", file.c_str(), static_cast<int>(line), text);
}

void XmlNode::internalError(const char* text) const {
    m_utils->errorHandler->fatalError(true, "%s\n", text);
}
