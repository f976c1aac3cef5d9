#pragma once

#include "infr_libs/IosHandler/IosPin.h"
#include "infr_libs/IosHandler/IosPort.h"
#include "infr_libs/IosHandler/IosZLink.h"

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class XmlNode;
struct ZelmUtils;

// The map between a device's package pins and its ports and links, as the `System` element of its ZSystem
// document tells them. It is built once, keeps nothing of the document, and owns all that it hands out.
//
// A pad number is nothing that the document says: it is the running number of the `Pin` element, from 0,
// across all packages. Nodes and cores go by the `number` that the document gives them.
//
// Faults of the document are fatal reports; where a report returns, building goes on behind it. Look-ups
// report nothing. Names are compared exactly.
class IosHandler {
public:
    using Ports = std::vector<std::unique_ptr<IosPort>>;
    using ZLinks = std::vector<std::unique_ptr<IosZLink>>;

    // `config` must be a `System` element. The architecture's definitions should be in the record: without
    // them a switch that doesn't say how many links it has has none.
    IosHandler(XmlNode* config, ZelmUtils* utils);
    virtual ~IosHandler();

    IosHandler(const IosHandler&) = delete;
    IosHandler& operator=(const IosHandler&) = delete;

    // The first of that name or number, or null.
    IosPort* findPort(unsigned node, unsigned core, std::string_view name) const;
    IosPin* findPin(std::string_view package, std::string_view pin) const;
    IosZLink* findZLink(unsigned node, unsigned number) const;

    // Whether any pin belongs to this package.
    bool isPackageValid(std::string_view package) const;

    // How many cores of the node have ports; 0 for a node that isn't there.
    unsigned getNumCores(unsigned node) const;

    // A core's ports in the order of their making, or null for one that has none.
    const Ports* getCorePorts(unsigned node, unsigned core) const;

    // The nodes that have ports or links, and the cores of a node that have ports; in the order of numbers.
    std::vector<unsigned> getNodes() const;
    std::vector<unsigned> getCores(unsigned node) const;

    // By index; null beyond the last.
    unsigned getNumPorts(unsigned node, unsigned core) const;
    IosPort* getPort(unsigned node, unsigned core, unsigned index) const;
    unsigned getNumZLinks(unsigned node) const;
    IosZLink* getZLink(unsigned node, unsigned index) const;

    // The pins in document order; an index beyond the last fails an assertion.
    unsigned getNumPins() const { return static_cast<unsigned>(m_pins.size()); }
    IosPin* getPin(unsigned index) const;

    // Write the ports, the links and the pins, each with what is connected to it; `dump` writes all three.
    void dump(FILE* file) const;
    void dumpPorts(FILE* file) const;
    void dumpZLinks(FILE* file) const;
    void dumpPins(FILE* file) const;

private:
    void buildNodes(const XmlNode& nodes);
    void buildSwitch(unsigned node, const XmlNode& element);
    void buildProcessor(unsigned node, const XmlNode& element);
    void createDefaultPorts(unsigned node, unsigned core);
    void addPort(unsigned node, unsigned core, std::unique_ptr<IosPort> port);
    void addZLink(unsigned node, std::unique_ptr<IosZLink> link);
    void buildPins(const XmlNode& pins);
    void buildPin(const XmlNode& element);
    void connectPort(IosPin& pin, const XmlNode& element);
    void connectZLink(IosPin& pin, const XmlNode& element);

    ZelmUtils* m_utils; // not owned
    std::vector<std::unique_ptr<IosPin>> m_pins;
    std::map<unsigned, std::map<unsigned, Ports>> m_ports; // by node and core
    std::map<unsigned, ZLinks> m_zLinks;                   // by node
    unsigned m_nextPinNumber = 0;

    unsigned m_numZLinks = 0; // of all nodes

    // What the look-ups go by; the first of a name stays. The texts are those of the objects.
    std::map<std::pair<unsigned, unsigned>, std::unordered_map<std::string_view, IosPort*>> m_portsByName;
    std::map<std::pair<unsigned, unsigned>, IosZLink*> m_zLinksByNumber; // by node and number
    std::unordered_map<std::string_view, std::unordered_map<std::string_view, IosPin*>> m_pinsByName;
};
