#pragma once

#include <string>
#include <string_view>

// A name and a value of an `XmlNode`, which owns it. Nothing is checked, escaped or replaced here.
class XmlAttribute {
public:
    XmlAttribute(const char* name, const char* value);

    // The value's text is hexadecimal, such as 0x1f.
    XmlAttribute(const char* name, unsigned value);

    XmlAttribute(std::string_view name, std::string_view value);
    XmlAttribute(const XmlAttribute&) = default;
    virtual ~XmlAttribute() = default;

    // Valid as long as the attribute; the value's text until it is set anew.
    const std::string* getName() const { return &m_name; }
    const std::string* getValue() const { return &m_value; }
    const char* getValueSz() const { return m_value.c_str(); }

    void setValue(const char* value) { m_value = value; }

private:
    std::string m_name;
    std::string m_value;
};
