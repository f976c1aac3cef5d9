#include "infr_libs/XmlParser/XmlAttribute.h"

#include <cstdio>

XmlAttribute::XmlAttribute(const char* name, const char* value) : m_name(name), m_value(value) {}

XmlAttribute::XmlAttribute(std::string_view name, std::string_view value) : m_name(name), m_value(value) {}

XmlAttribute::XmlAttribute(const char* name, unsigned value) : m_name(name) {
    char text[sizeof "0xffffffff"];
    std::snprintf(text, sizeof text, "0x%x", value);
    m_value = text;
}
