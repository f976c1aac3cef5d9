#pragma once

#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <deque>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

// A loader whose model is made by hand, for the passes that come after reading: nodes and links in a few
// words, with no document and no node configuration. Each element has a line of its own, counted from 1 in
// the order in which things are added.
class HandMadeNetwork {
public:
    ZNLoader loader;

    ZNLoader::ProcNode& processor(const std::string& id);
    ZNLoader::DeviceNode& device(const std::string& id);
    ZNLoader::ZsscNode& zssc(const std::string& id);
    void processors(std::initializer_list<const char*> ids);

    // A link "5wire" between two nodes; the texts name the link on each.
    ZNLoader::Zlink& link(const std::string& node0, const std::string& link0, const std::string& node1,
                          const std::string& link1);

    // The same with numbers that nobody else uses.
    ZNLoader::Zlink& link(const std::string& node0, const std::string& node1);

    // A link with the "sod" flag, from a node to a device's own end; `sodNode` may be empty.
    ZNLoader::Zlink& sodLink(const std::string& node, const std::string& link, const std::string& sodNode);

    // Binds and sorts the links.
    void associate();

    // A place for a message: "zn:<line> ".
    XmlNode* element();

    // "a>b a>c": the pairs of a link in order, ids only.
    static std::string users(const ZNLoader::Zlink& link);
    static std::string ids(const std::vector<ZNLoader::Node*>& nodes);

private:
    ZNLoader::Zlink& add(std::unique_ptr<ZNLoader::ZlinkEnd> end0, std::unique_ptr<ZNLoader::ZlinkEnd> end1);
    void add(ZNLoader::Node* node, const std::string& id);

    std::deque<XmlNode> m_elements;
    int m_nextLinkNumber = 1000;
};
