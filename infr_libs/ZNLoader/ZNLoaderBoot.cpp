// The `Boot` element of a processor, and the pass that binds boot references once all nodes are known.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

namespace {

using Node = ZNLoader::Node;
using ProcNode = ZNLoader::ProcNode;
using NodeCoreTuple = ZNLoader::NodeCoreTuple;
using BootTypeSPIMaster = ZNLoader::BootTypeSPIMaster;
using BootTypeFromLink = ZNLoader::BootTypeFromLink;
using SourceReading = AttributeReading<ProcNode>;

// A boot type takes the place of an earlier one.
template<class Boot>
Boot& setBoot(Node& node) {
    auto boot = std::make_unique<Boot>();
    delete node.m_boot;
    node.m_boot = boot.get();
    return *boot.release();
}

bool storeLocation(SourceReading& reading, const std::string& value) {
    const std::string::size_type colon = value.find(':');
    const std::string kind = value.substr(0, colon);
    if (isText(kind, "spi")) {
        // Without a colon the device's name is the whole text, "spi": wanted.
        setBoot<BootTypeSPIMaster>(reading.m_target).m_deviceName = value.substr(colon + 1);
    } else if (isText(value, "zelmlink")) {
        setBoot<BootTypeFromLink>(reading.m_target);
    } else {
        reading.m_loader.m_utils.throwError(11089, ElementLocation(reading.m_element),
                                            "Boot location specifier \"%s\" is not recognised.\n",
                                            kind.c_str());
    }
    return false;
}

constexpr AttributeRow<SourceReading> s_sourceAttributes[] = {{"location", storeLocation}};

constexpr AttributeRow<AttributeReading<NodeCoreTuple>> s_booteeAttributes[] = {
    {"nodeid", storeText<&NodeCoreTuple::m_nodeId>},
    {"core", storeText<&NodeCoreTuple::m_coreText>},
};

template<class Boot>
bool boots(const Node& node) {
    return node.m_boot && node.m_boot->getBootStyle() == Boot::s_style;
}

// The cores of processors by number; the last core of a number counts. A processor is entered when it is
// first asked for.
class CoresByNumber {
public:
    ZNLoader::Core* find(ProcNode& node, int number) {
        const auto [cores, isNew] = m_cores.try_emplace(&node);
        if (isNew) {
            for (ZNLoader::Core* core : node.m_cores)
                cores->second.insert_or_assign(core->m_number, core);
        }
        const auto found = cores->second.find(number);
        return found == cores->second.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<const ProcNode*, std::unordered_map<int, ZNLoader::Core*>> m_cores;
};

} // namespace

bool ZNLoader::readBoot(XmlNode* element, ProcNode* node) {
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "source"))
            readAttributes(*this, child, *node, s_sourceAttributes,
                           {11086, "Attribute \"%s\" in Source node not recognised; ignoring.\n"});
        else if (isNamed(child, "bootee"))
            readAttributes(*this, child, *adopt(node->m_bootees, std::make_unique<NodeCoreTuple>()),
                           s_booteeAttributes,
                           {11087, "Attribute \"%s\" in Bootee node not recognised; ignoring.\n"});
        else
            warnOf(*this, {11088, "Node \"%s\" in Boot node not recognised; ignoring.\n"}, child,
                   *child->getName());
    });
    return false;
}

bool ZNLoader::resolveBootReferences() {
    bindBootDevices();
    bindBootees();
    bootBootees();
    bootTheRest();
    return false;
}

// The devices that nodes boot from by their own account.
void ZNLoader::bindBootDevices() {
    const std::unordered_map<std::string, ExtDevice*> devices = devicesByName();
    for (Node* node : m_nodes) {
        if (!boots<BootTypeSPIMaster>(*node))
            continue;
        const std::string& name = static_cast<BootTypeSPIMaster*>(node->m_boot)->m_deviceName;
        const auto device = devices.find(name);
        if (device != devices.end()) {
            node->m_boot->m_device = device->second;
            continue;
        }
        const ElementLocation where(node->m_element);
        if (name.empty())
            m_utils.throwError(11130, where,
                               "Node \"%s\" boot information does not specify an extant external device.\n",
                               node->m_id.c_str());
        m_utils.throwError(
            11130, where,
            "Node \"%s\" boot information does not specify an extant external device (\"%s\").\n",
            node->m_id.c_str(), name.c_str());
    }
}

// Nodes and cores that bootees name. An id that no node has is no fault: the bootee stays unbound.
void ZNLoader::bindBootees() {
    std::unordered_map<std::string, Node*> nodes; // the last of an id counts
    for (Node* node : m_nodes)
        nodes.insert_or_assign(node->m_id, node);
    CoresByNumber cores;
    for (const Node* node : m_nodes) {
        for (NodeCoreTuple* bootee : node->m_bootees) {
            const auto found = nodes.find(bootee->m_nodeId);
            if (found == nodes.end())
                continue;
            bootee->m_node = found->second;
            if (bootee->m_node->getType() != ProcNode::s_type)
                continue;
            // Decimal, unlike the number of a `Core`: wanted.
            const int number = ZNUtils::DecimalOf(bootee->m_coreText);
            bootee->m_core = cores.find(static_cast<ProcNode&>(*bootee->m_node), number);
        }
    }
}

// A bootee boots over a link, from its booter's device.
void ZNLoader::bootBootees() {
    for (const Node* node : m_nodes) {
        for (const NodeCoreTuple* bootee : node->m_bootees) {
            Node* booted = bootee->m_node;
            if (!booted)
                continue;
            if (!booted->m_boot)
                setBoot<BootTypeFromLink>(*booted);
            else if (!boots<BootTypeFromLink>(*booted))
                m_utils.throwError(11091, ElementLocation(booted->m_element),
                                   "Node \"%s\" has contradictory boot information.\n", booted->m_id.c_str());
            if (!boots<BootTypeSPIMaster>(*node))
                m_utils.throwError(11091, ElementLocation(node->m_element),
                                   "Node \"%s\" cannot support bootees.\n", node->m_id.c_str());
            booted->m_boot->m_device = node->m_boot->m_device;
        }
    }
}

// A node without a word about its boot takes the flash device at its core 0, if there is one.
void ZNLoader::bootTheRest() {
    const std::unordered_map<std::string, ExtDevice*> devices = devicesByName();
    std::unordered_map<const Node*, const ExtDevice*> flashDevices; // the first of a node counts
    for (const ExtDevice* device : m_devices) {
        if (device->m_class == ExtDeviceSpiFlash && device->m_core == 0)
            flashDevices.emplace(device->m_node, device);
    }
    for (Node* node : m_nodes) {
        if (node->m_boot)
            continue;
        BootTypeSPIMaster& boot = setBoot<BootTypeSPIMaster>(*node);
        boot.m_isDefault = true;
        const auto flash = flashDevices.find(node);
        if (flash == flashDevices.end())
            continue;
        boot.m_deviceName = flash->second->m_name;
        boot.m_device = devices.at(boot.m_deviceName);
    }
}

std::unordered_map<std::string, ZNLoader::ExtDevice*> ZNLoader::devicesByName() const {
    std::unordered_map<std::string, ExtDevice*> devices;
    for (ExtDevice* device : m_devices)
        devices.emplace(device->m_name, device);
    return devices;
}
