#pragma once

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

// A folder that ZCC_DEVICE_PATH names while it lives, with the files that a network document needs of it:
// node configurations and packages. A new one holds the package type "Package", and the node types
//   "L1"  and "L1x2"  a device of JTAG id 0x2633, with one core and with two,
//   "G4"  and "G4x2"  one of 0x2731,
//   "Any"             one of 0x1, whose clocks nobody plans, with one core.
class DeviceFolder {
public:
    DeviceFolder();

    // Makes config_<type>.xml. Cores are numbered from 0.
    void addNodeType(const std::string& type, unsigned jtagId, unsigned numCores);

    // The folder, for files by hand.
    const TemporaryFolder& folder() const { return m_folder; }

private:
    TemporaryFolder m_folder;
    ScopedVariable m_path;
};

// A network document in a few lines. What nobody asks for is added so that the document is sound: a
// declaration for each core, one package around the processors, and a scan chain in order of creation.
//
// Each node, core, link and further element has a line of its own; the names of attributes and elements are
// those of docs/formats/network.md.
class NetworkBuilder {
public:
    // A processor of a `DeviceFolder`'s type. Its cores are <id>[0], <id>[1] and so on. `attributes` such as
    // "Oscillator='20MHz'" and `children` such as "<Boot/>" are added as they stand.
    NetworkBuilder& processor(const std::string& id, const std::string& type = "L1", unsigned numCores = 1,
                              const std::string& attributes = "", const std::string& children = "");

    // Ports and services for the cores of processors added from now on.
    NetworkBuilder& coreChildren(const std::string& children);

    // A device node, outside the package and outside the scan chain.
    NetworkBuilder& device(const std::string& id, const std::string& attributes = "",
                           const std::string& children = "");

    // A five-wire link between two nodes, with the identifier that it has on each.
    NetworkBuilder& link(const std::string& node0, const std::string& link0, const std::string& node1,
                         const std::string& link1, const std::string& attributes = "");

    // Any further element, behind all others.
    NetworkBuilder& add(const std::string& element);

    std::string text() const;

    // 2 to that power of processors, joined as a hypercube. The first is "n0".
    static NetworkBuilder hypercube(unsigned numDimensions, const std::string& type = "L1",
                                    unsigned numCores = 1);

private:
    std::string m_declarations;
    std::string m_coreChildren;
    std::string m_processors;
    std::string m_devices;
    std::string m_chain;
    std::string m_links;
    std::string m_more;
};
