#pragma once

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// A document that `Configuration` builds, with all that it needs to live.
class SchemaDocument {
public:
    Configuration& configuration() { return m_configuration; }

    // Once for an object.
    XmlNode* buildDefault();
    XmlNode* buildComplete();

private:
    CatchableErrorHandler m_handler;
    StringLibrary m_strings{&m_handler};
    ZelmUtils m_utils{&m_handler, &m_strings, nullptr};
    Configuration m_configuration{&m_utils};
    std::unique_ptr<XmlNode> m_root;
};

// What a document has and its place in the schema doesn't.
struct SchemaFault {
    unsigned line = 0;   // 0: none
    std::string message; // the library's own, its place included
    std::string text;    // the message without its place
};

// Of a message of the libraries, which has the form "file:line: error: text" where it knows the line.
SchemaFault faultOf(const std::string& file, const std::string& message);

// Goes through a configuration beside the complete document, in which every element has the attributes and
// sub-elements that it can have. Where the schema has an element several times, the first one counts, as it
// does for `Configuration::checkConfig`.
class SchemaWalk {
public:
    SchemaWalk();

    // Calls with each element that the schema knows, in document order, and its like in the complete
    // document.
    using Visit = std::function<void(XmlNode* node, const XmlNode* model)>;
    void visit(XmlNode* root, const Visit& visit) const;

    // All that the document has and can't have, in the order in which `checkConfig` finds the first of them.
    // A root with another name is the only fault.
    std::vector<SchemaFault> faults(const std::string& file, XmlNode* root) const;

private:
    SchemaDocument m_document;
    XmlNode* m_complete;
};

// What a body prints to a stream.
std::string textOf(const std::function<void(FILE*)>& body);

// The tree as a document that reads back as the same tree. Changes the tree's values into their escaped form.
// Double quotes can't be escaped: the caller sees to it that there are none.
std::string documentText(XmlNode& root);

// The same without the XML declaration.
std::string elementText(XmlNode& root);
