#include "tests/support/NetworkBuilder.h"

namespace {

constexpr struct {
    const char* name;
    unsigned jtagId;
    unsigned numCores;
} s_nodeTypes[] = {
    {"L1", 0x2633, 1}, {"L1x2", 0x2633, 2}, {"G4", 0x2731, 1}, {"G4x2", 0x2731, 2}, {"Any", 0x1, 1},
};

std::string attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string section(const char* name, const std::string& content) {
    if (content.empty())
        return {};
    return std::string("  <") + name + ">\n" + content + "  </" + name + ">\n";
}

} // namespace

DeviceFolder::DeviceFolder() : m_path("ZCC_DEVICE_PATH", m_folder.path().string()) {
    for (const auto& type : s_nodeTypes)
        addNodeType(type.name, type.jtagId, type.numCores);
    m_folder.write("Package.pkg", "<Package/>\n");
}

void DeviceFolder::addNodeType(const std::string& type, unsigned jtagId, unsigned numCores) {
    std::string text = "<ZSystem>\n<System>\n<Nodes>\n<Node" + attribute("number", "0") +
                       attribute("jtagId", std::to_string(jtagId)) + ">\n";
    for (unsigned core = 0; core < numCores; ++core)
        text += "<Processor" + attribute("number", std::to_string(core)) +
                " numThreads=\"8\" numTimers=\"10\" numChanEnds=\"32\">"
                "<MemoryController><Ram base=\"0x10000\" size=\"0x10000\"/></MemoryController>"
                "</Processor>\n";
    text += "</Node>\n</Nodes>\n<Connections/>\n</System>\n</ZSystem>\n";
    m_folder.write("config_" + type + ".xml", text);
}

NetworkBuilder& NetworkBuilder::processor(const std::string& id, const std::string& type, unsigned numCores,
                                          const std::string& attributes, const std::string& children) {
    m_declarations += "    <Declaration>core " + id + "[" + std::to_string(numCores) + "]</Declaration>\n";
    m_processors += "        <Node" + attribute("Id", id) + attribute("InPackageId", id) +
                    attribute("Type", type) + " " + attributes + ">\n";
    for (unsigned core = 0; core < numCores; ++core) {
        const std::string number = std::to_string(core);
        m_processors += "          <Core" + attribute("Number", number) +
                        attribute("Reference", id + "[" + number + "]") + ">" + m_coreChildren + "</Core>\n";
    }
    m_processors += children + "        </Node>\n";
    m_chain += "    <JTAGDevice" + attribute("NodeId", id) + "/>\n";
    return *this;
}

NetworkBuilder& NetworkBuilder::coreChildren(const std::string& children) {
    m_coreChildren = children;
    return *this;
}

NetworkBuilder& NetworkBuilder::device(const std::string& id, const std::string& attributes,
                                       const std::string& children) {
    m_devices += "    <Node" + attribute("Id", id) + attribute("Type", "device:" + id) + " " + attributes +
                 ">" + children + "</Node>\n";
    return *this;
}

NetworkBuilder& NetworkBuilder::link(const std::string& node0, const std::string& link0,
                                     const std::string& node1, const std::string& link1,
                                     const std::string& attributes) {
    m_links += "    <Link" + attribute("Encoding", "5wire") + " " + attributes + "><LinkEndpoint" +
               attribute("NodeId", node0) + attribute("Link", link0) + "/><LinkEndpoint" +
               attribute("NodeId", node1) + attribute("Link", link1) + "/></Link>\n";
    return *this;
}

NetworkBuilder& NetworkBuilder::add(const std::string& element) {
    m_more += "  " + element + "\n";
    return *this;
}

std::string NetworkBuilder::text() const {
    std::string text = "<Network>\n";
    text += section("Declarations", m_declarations);
    if (!m_processors.empty())
        text += "  <Packages>\n    <Package Id=\"package\" Type=\"Package\">\n      <Nodes>\n" +
                m_processors + "      </Nodes>\n    </Package>\n  </Packages>\n";
    text += section("Nodes", m_devices);
    text += section("Links", m_links);
    text += section("JTAGChain", m_chain);
    return text + m_more + "</Network>\n";
}

NetworkBuilder NetworkBuilder::hypercube(unsigned numDimensions, const std::string& type, unsigned numCores) {
    NetworkBuilder network;
    const unsigned numNodes = 1u << numDimensions;
    const auto name = [](unsigned node) { return "n" + std::to_string(node); };
    for (unsigned node = 0; node < numNodes; ++node)
        network.processor(name(node), type, numCores);
    for (unsigned dimension = 0; dimension < numDimensions; ++dimension) {
        const std::string link = std::to_string(dimension);
        for (unsigned node = 0; node < numNodes; ++node) {
            const unsigned other = node ^ (1u << dimension);
            if (node < other)
                network.link(name(node), link, name(other), link);
        }
    }
    return network;
}
