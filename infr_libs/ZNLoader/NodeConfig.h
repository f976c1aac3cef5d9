#pragma once

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/ZNLoader/CoreConfig.h"
#include "infr_libs/ZNLoader/ZNUtils.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

class Configuration;
class XmlNode;
class XmlParser;
struct NodeInstance;

// The configuration of a node type: a ZSystem document that describes exactly one node
// (docs/formats/node-configuration.md). The network reader makes one for each type that a network names, and
// keeps it as long as its nodes.
//
// Every fault is thrown as a `std::string`: faults of the document's form in the words of the parser and of
// the schema, all others as a numbered message. A thrown message stands alone. Of a comment within a text
// that the file's end cuts off the message is the bare text of the parser's `std::out_of_range`.
class NodeConfig {
    // What the parser's tree reports through; it outlives the tree.
    CatchableErrorHandler m_errorHandler;
    StringLibrary m_stringLibrary{&m_errorHandler};
    ZelmUtils m_zelmUtils{&m_errorHandler, &m_stringLibrary, nullptr};

public:
    struct CoreInstance {
        int number = 0;
        std::unique_ptr<CoreConfig> config;
        XmlNode* xmlNode = nullptr; // the `Processor`, owned by the parser
    };

    std::string m_fileName; // as given; messages show it
    ZNUtils m_znUtils;      // holds the last message
    std::unique_ptr<NodeInstance> m_node;

    // Elements of the document, owned by the parser.
    XmlNode* m_root = nullptr;
    XmlNode* m_system = nullptr;
    XmlNode* m_nodes = nullptr;
    XmlNode* m_connections = nullptr;

    std::unique_ptr<XmlParser> m_parser;            // keeps the tree
    std::unique_ptr<Configuration> m_configuration; // serves the check of the document alone

    // Reads the file, and throws where it can't be read or isn't valid.
    explicit NodeConfig(const char* fileName);
    ~NodeConfig();

    NodeConfig(const NodeConfig&) = delete;
    NodeConfig& operator=(const NodeConfig&) = delete;

    int getNumCores();

    // The configuration of the core with this number, owned here. Without one it is null, or 11083 is thrown
    // where the core must exist.
    CoreConfig* getCoreConfig(int core, bool mustExist);

private:
    // Where a message belongs: the document as a whole, or an element.
    ZNUtils::FileNameLocation inFile() const;
    ZNUtils::FileLineLocation at(const XmlNode* element) const;

    void readNode(XmlNode* element);
    // `numbers` are those of the node's cores so far.
    void readProcessor(XmlNode* element, std::set<int>& numbers);
    void readRam(const XmlNode* element, const CoreInstance& core);
};
