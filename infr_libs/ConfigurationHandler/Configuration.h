#pragma once

#include <cstdio>
#include <string>
#include <vector>

class XmlNode;
struct attribute_t;
struct node_t;
struct ZelmUtils;

// What `Configuration::setAttributeValue` does at each element of the name it is given.
enum configMode_e {
    CONFIG_MODE_REPLACE = 0,  // every attribute of the name gets the value; none is made
    CONFIG_MODE_SET = 1,      // the same, and where there is none it is appended
    CONFIG_MODE_ADD = 2,      // appended where there is none; an existing one is left alone
    CONFIG_MODE_NEW_NODE = 3, // a new sub-node of the start node, whatever that one's name
};

// Builds, checks, edits and explains ZSystem documents: the description of a simulated system, which comes
// in an image or as a file. What the document may hold stands in the tables of `ConfigurationSchema.h`;
// docs/formats/configuration.md tells it in words.
//
// An object works on one document at a time, which it never owns: whoever gets a tree from a build operation
// or a parser deletes it. Faults of a document are reported by its nodes, at their place, through the
// handler of their `ZelmUtils`. Misuse, and text that doesn't convert, fail an assertion.
class Configuration {
public:
    explicit Configuration(ZelmUtils* utils) : m_utils(utils) {}
    ~Configuration();

    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    void setRoot(XmlNode* root) { m_root = root; }

    // A new document, which becomes the root; no other may be set. The default document is the smallest
    // valid system, the complete one holds every row of the schema. Line numbers count the nodes made.
    XmlNode* buildDefaultConfig();
    XmlNode* buildCompleteConfig();

    // Reports each element and each attribute that the schema doesn't have. Names are all that is checked:
    // no values, counts, order or presence.
    void checkConfig(XmlNode* root);

    // Writes the complete document as a template, with the help texts as comments.
    void displayDefaultConfig(FILE* file);

    // The schema's default of an attribute, or null; a constant.
    const char* getAttributeValue(const char* nodeName, const char* attributeName);

    // Sets an attribute of every element called `nodeName` below `node` and at it. Without a start node they
    // work on the root, which must be set. Numbers are written in decimal with a sign. With
    // CONFIG_MODE_NEW_NODE, null for the name or the value of the attribute makes an element without one.
    void setAttributeValue(XmlNode* node, const char* nodeName, const char* attributeName, const char* value,
                           configMode_e mode);
    void setAttributeValue(const char* nodeName, const char* attributeName, const char* value,
                           configMode_e mode);
    void setAttributeValue(const char* nodeName, const char* attributeName, unsigned value,
                           configMode_e mode);

    // The first element of that name in document order, the start node included, or null.
    XmlNode* findNode(XmlNode* node, const char* nodeName);

    // The same among elements that have an attribute of this name and value. A number matches whichever way
    // the document writes it.
    XmlNode* findNodeWithAttributeValue(XmlNode* node, const char* nodeName, const char* attributeName,
                                        const char* attributeValue);
    XmlNode* findNodeWithAttributeValue(XmlNode* node, const char* nodeName, const char* attributeName,
                                        unsigned attributeValue);

    // The `Processor` with this `number` in the `Node` with this `number`, or null. The texts must be equal.
    XmlNode* findProcessorNode(XmlNode* node, const std::string& nodeNumber,
                               const std::string& processorNumber);

    // Conversions of texts that the schema's defaults vouch for; others fail an assertion. `getUInt` reads
    // hexadecimal behind "0x" and otherwise a signed decimal number, and saturates at 32 bits.
    unsigned getUInt(const char* stringValue);
    bool getBool(const char* stringValue);
    double getDouble(const char* stringValue);

    // Appends a `Trace` with these attributes unless there is one of this name.
    void enableTraceNode(XmlNode* traceConfig, const char* name, const attribute_t* attributes);

    // Turns tracing on in every `Switch` of the root, and every `Trace` that the document then has: all of
    // them where it had no `TraceConfig`, which is made under `root`.
    void enableSwitchTracing(XmlNode* root);

private:
    // Names of a table's rows, with the null pointer that ends a list.
    using KnownNames = std::vector<const char*>;

    static unsigned getNumAttributes(const attribute_t* attributes);
    static unsigned getNumSubNodes(const node_t* subNodes);
    static KnownNames createKnownAttributesArray(const attribute_t* attributes);
    static KnownNames createKnownSubNodesArray(const node_t* subNodes);

    XmlNode* buildNode(XmlNode* parent, const char* name, const attribute_t* attributes,
                       const node_t* subNodes, bool complete);
    void checkNode(XmlNode* node, const attribute_t* attributes, const node_t* subNodes);
    const char* getAttribute(const char* currentName, const attribute_t* attributes, const node_t* subNodes,
                             const char* nodeName, const char* attributeName);
    void setAttribute(XmlNode* node, const char* nodeName, const char* attributeName, const char* value,
                      configMode_e mode);

    static void indent(FILE* file, unsigned indentation);
    void displayNode(FILE* file, const char* name, const attribute_t* attributes, const node_t* subNodes,
                     unsigned indentation);

    ZelmUtils* m_utils;        // not owned
    unsigned m_lineNum = 0;    // the last line number given to a node made here
    XmlNode* m_root = nullptr; // not owned
};
