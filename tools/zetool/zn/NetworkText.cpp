#include "tools/zetool/zn/NetworkText.h"

#include "infr_libs/ZNLoader/NodeInstance.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"
#include "tools/zetool/zn/LinkUsers.h"
#include "tools/zetool/zn/ModelText.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using Align = TextTable::Align;

// A table that is written where it has rows, behind a blank line.
class Section {
public:
    explicit Section(std::vector<TextTable::Column> columns) : m_table(std::move(columns)) {}

    void add(std::vector<std::string> cells) {
        m_table.add(std::move(cells));
        m_isEmpty = false;
    }

    void write(OutputFile& output) const {
        if (m_isEmpty)
            return;
        output.write("\n");
        m_table.write(output);
    }

private:
    TextTable m_table;
    bool m_isEmpty = true;
};

// Of a number that stands for "not given" where it is 0.
std::string unlessZero(unsigned number) {
    return number == 0 ? "" : std::to_string(number);
}

void addWord(std::string& text, std::string_view word) {
    text += text.empty() ? "" : " ";
    text += word;
}

std::string idsOf(const std::vector<ZNLoader::Node*>& nodes) {
    std::string text;
    for (const ZNLoader::Node* node : nodes)
        addWord(text, node ? idOf(node) : s_noNode);
    return text;
}

// ---- The network as a whole ----

std::string chainSpace(int devices, int bits) {
    if (devices == 0 && bits == 0)
        return "";
    return "devices: " + std::to_string(devices) + ", bits: " + std::to_string(bits);
}

void writeWhole(OutputFile& output, const ZNLoader& network) {
    const std::pair<const char*, std::string> lines[] = {
        {"name", network.m_name},
        {"board id", network.m_boardId},
        {"version", network.m_znVersion},
        {"type", network.m_typeText},
        {"architecture", architectureOf(network)},
        {"topology", topologyOf(network)},
        {"order of nodes", idsOf(network.m_nodeOrder)},
        {"scan chain", idsOf(network.m_jtagNodes)},
        {"ahead of the chain", chainSpace(network.m_jtagPreDevices, network.m_jtagPreBits)},
        {"behind the chain", chainSpace(network.m_jtagPostDevices, network.m_jtagPostBits)},
        {"chain's highest Hz", unlessZero(static_cast<unsigned>(network.m_jtagMaxFrequency))},
    };
    for (const auto& [name, value] : lines) {
        if (value.empty())
            continue;
        std::string line = name;
        line.resize(20, ' ');
        output.write(line + value + "\n");
    }
}

void writePackages(OutputFile& output, const ZNLoader& network) {
    Section section({{"package"}, {"type"}, {"file"}, {"nodes"}});
    for (const ZNLoader::Package* package : network.m_packages) {
        std::string nodes;
        for (const auto& [inPackageId, id] : package->m_nodeIds)
            addWord(nodes, inPackageId + "=" + id);
        section.add({package->m_id, package->m_type, package->m_file, nodes});
    }
    section.write(output);
}

// ---- Nodes ----

std::string bootText(ZNLoader::BootType* boot) {
    if (!boot)
        return "";
    const std::string device = boot->m_device ? boot->m_device->m_name : "";
    if (boot->getBootStyle() == ZNLoader::BootTypeFromLink::s_style)
        return "link" + (device.empty() ? "" : ", from " + device);
    return device;
}

std::string booteesText(const ZNLoader::Node& node) {
    std::string text;
    for (const ZNLoader::NodeCoreTuple* bootee : node.m_bootees) {
        addWord(text, bootee->m_nodeId);
        if (bootee->m_core)
            text += ":" + std::to_string(bootee->m_core->m_number);
    }
    return text;
}

void writeNodes(OutputFile& output, const ZNLoader& network) {
    Section section(
        {{"node"}, {"kind"}, {"type"}, {"routing id"}, {"position"}, {"boots from"}, {"boots"}, {"flags"}});
    for (ZNLoader::Node* node : network.m_nodes) {
        const auto position = network.m_positions.find(node->m_id);
        const bool hasPosition = network.m_topology == s_hypercube && position != network.m_positions.end();
        const auto* device = deviceNode(node);
        section.add({node->m_id, kindOf(*node), node->m_type, hexText(node->m_routingId),
                     hasPosition ? digitsOf(position->second) : "", bootText(node->m_boot),
                     booteesText(*node), device ? joined(flagsOf(*device), " ") : ""});
    }
    section.write(output);
}

std::string registerText(const ZNLoader::Node& node, std::size_t index) {
    return index < node.m_pllValues.size() ? hexText(node.m_pllValues[index]) : "";
}

void writeClocks(OutputFile& output, const ZNLoader& network) {
    Section section({{"clocks of"},
                     {"oscillator", Align::Right},
                     {"driven by"},
                     {"system Hz", Align::Right},
                     {"made", Align::Right},
                     {"reference Hz", Align::Right},
                     {"made", Align::Right},
                     {"PLL register", Align::Right},
                     {"divider register", Align::Right}});
    for (ZNLoader::Node* node : network.m_nodes) {
        if (const auto* zssc = zsscNode(node))
            section.add({node->m_id, zssc->m_oscillatorText});
        else if (procNode(node))
            section.add({node->m_id, unlessZero(node->m_oscillatorHz), node->m_oscillatorSrc,
                         unlessZero(node->m_systemFreq), unlessZero(node->m_achievedSystemFreq),
                         unlessZero(node->m_referenceFreq), unlessZero(node->m_achievedReferenceFreq),
                         registerText(*node, 0), registerText(*node, 1)});
    }
    section.write(output);
}

// ---- Cores ----

using CoreConfigs = std::unordered_map<int, const CoreConfig*>; // by number

CoreConfigs configsOf(const ZNLoader::ProcNode& node) {
    CoreConfigs configs;
    if (node.m_config)
        for (const auto& instance : *node.m_config->m_node->cores)
            configs.emplace(instance->number, instance->config.get());
    return configs;
}

void writeCores(OutputFile& output, const ZNLoader& network) {
    Section section({{"core"},
                     {"node"},
                     {"number", Align::Right},
                     {"RAM at", Align::Right},
                     {"bytes", Align::Right},
                     {"threads", Align::Right},
                     {"timers", Align::Right},
                     {"channel ends", Align::Right}});
    for (ZNLoader::Node* node : network.m_procNodes) {
        const CoreConfigs configs = configsOf(*procNode(node));
        for (const ZNLoader::Core* core : procNode(node)->m_cores) {
            std::vector<std::string> cells = {core->m_reference, node->m_id, std::to_string(core->m_number)};
            const auto found = configs.find(core->m_number);
            if (found != configs.end()) {
                const CoreConfig& config = *found->second;
                cells.push_back(hexText(static_cast<unsigned>(config.ramBase)));
                for (const int number :
                     {config.ramSize, config.numThreads, config.numTimers, config.numChanEnds})
                    cells.push_back(std::to_string(number));
            }
            section.add(std::move(cells));
        }
    }
    section.write(output);
}

void writePorts(OutputFile& output, const ZNLoader& network) {
    Section section({{"port"}, {"core"}, {"name"}, {"mods"}});
    for (ZNLoader::Node* node : network.m_procNodes)
        for (ZNLoader::Core* core : procNode(node)->m_cores)
            if (const auto* free = freeCore(core))
                for (const ZNLoader::PortDesc& port : free->m_ports)
                    section.add({port.location, core->m_reference, port.name, port.mods});
    section.write(output);
}

// ---- Services ----

std::string endsText(const ZNLoader::DeviceServiceInfo& service) {
    std::string text;
    for (const ZNLoader::ChanendInfo* end : service.m_chanends) {
        addWord(text, end->m_identifier + "=" + std::to_string(end->m_end));
        if (!end->m_remoteText.empty())
            text += ">" + std::to_string(end->m_remote);
    }
    return text;
}

void writeServices(OutputFile& output, const ZNLoader& network) {
    Section section({{"service"}, {"at"}, {"prototype"}, {"channel ends"}, {"flags"}});
    const auto addAll = [&](std::string_view place, const auto& services) {
        for (const ZNLoader::DeviceServiceInfo* service : services)
            section.add({service->m_id, std::string(place), service->m_proto, endsText(*service),
                         service->m_sod ? "sod" : ""});
    };
    for (ZNLoader::Node* node : network.m_nodes) {
        if (const auto* proc = procNode(node))
            for (ZNLoader::Core* core : proc->m_cores)
                if (const auto* free = freeCore(core))
                    addAll(core->m_reference, free->m_services);
        if (const auto* device = deviceNode(node))
            addAll(node->m_id, device->m_services);
        if (const auto* zssc = zsscNode(node))
            addAll(node->m_id, zssc->m_services);
    }
    section.write(output);
}

// ---- Links ----

std::string delayText(const ZNLoader::ZlinkEnd& end) {
    return std::to_string(end.m_interTokenDelay) + "," + std::to_string(end.m_intraTokenDelay);
}

void writeLinks(OutputFile& output, const ZNLoader& network) {
    Section section({{"link", Align::Right},
                     {"from"},
                     {"to"},
                     {"wires", Align::Right},
                     {"delays"},
                     {"flags"},
                     {"users", Align::Right}});
    std::size_t number = 0;
    for (const ZNLoader::Zlink* link : network.m_links)
        section.add({std::to_string(number++), placeOf(*link->m_end0), placeOf(*link->m_end1),
                     std::to_string(link->m_wires), delayText(*link->m_end0) + " " + delayText(*link->m_end1),
                     joined(flagsOf(*link), " "), std::to_string(link->m_users.size())});
    section.write(output);
}

void writeAllUsers(OutputFile& output, const ZNLoader& network) {
    std::size_t number = 0;
    for (const ZNLoader::Zlink* link : network.m_links) {
        output.write("\nusers of link " + std::to_string(number++) + "\n");
        writeUsers(output, *link);
    }
}

// ---- External devices ----

void writeDevices(OutputFile& output, const ZNLoader& network) {
    Section section({{"device"}, {"type"}, {"class"}, {"node"}, {"core", Align::Right}, {"attributes"}});
    for (const ZNLoader::ExtDevice* device : network.m_devices) {
        std::string attributes;
        for (const auto* attribute : device->m_attributes)
            addWord(attributes, attribute->m_name + "=" + attribute->m_value);
        section.add({device->m_name, device->m_type, classOf(*device),
                     std::string(device->m_node ? idOf(device->m_node) : s_noNode),
                     std::to_string(device->m_core), attributes});
    }
    section.write(output);
}

} // namespace

void writeNetworkText(OutputFile& output, const ZNLoader& network, bool withUsers) {
    writeWhole(output, network);
    writePackages(output, network);
    writeNodes(output, network);
    writeClocks(output, network);
    writeCores(output, network);
    writePorts(output, network);
    writeServices(output, network);
    writeDevices(output, network);
    writeLinks(output, network);
    if (withUsers)
        writeAllUsers(output, network);
}
