#pragma once

#include "infr_libs/XmlParser/XmlParser.h"
#include "tests/support/OwnedUtils.h"
#include "tests/support/ThrownBy.h"

#include <sstream>
#include <string>

// A document given as a text, parsed under the name "doc.xml" with a handler that throws, and held with all
// that it needs.
class ParsedText {
public:
    explicit ParsedText(const std::string& text)
        : m_stream(text), m_parser("doc.xml", m_utils.get(), &m_stream) {}

    const XmlParser& parser() const { return m_parser; }
    XmlNode* operator->() const { return m_parser.getRoot(); }
    XmlNode& operator*() const { return *m_parser.getRoot(); }

private:
    OwnedUtils<> m_utils;
    std::istringstream m_stream;
    XmlParser m_parser;
};

// What a node prints.
std::string printed(const XmlNode& node, int depth = 0, bool indent = false);

// What a body writes to the stream that it is given.
template<typename Body>
std::string written(const Body& body) {
    char* text = nullptr;
    std::size_t size = 0;
    FILE* file = open_memstream(&text, &size);
    body(file);
    std::fclose(file);
    const std::string result(text, size);
    std::free(text);
    return result;
}

inline std::string printed(const XmlNode& node, int depth, bool indent) {
    return written([&](FILE* file) { node.print(file, depth, indent); });
}
