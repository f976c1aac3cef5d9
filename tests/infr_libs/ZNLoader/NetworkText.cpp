#include "tests/infr_libs/ZNLoader/NetworkText.h"

#include <iomanip>
#include <sstream>

namespace {

std::string idOf(const ZNLoader::Node* node) {
    return node ? node->m_id : "none";
}

std::string nameOf(const ZNLoader::ExtDevice* device) {
    return device ? device->m_name : "none";
}

class Writer {
public:
    std::string text() const { return m_text.str(); }

    void write(const ZNLoader& loader) {
        m_text << "type " << loader.m_typeText << " kind " << loader.m_typeKind << '\n';
        for (const auto& [title, value] : {std::pair{"name ", &loader.m_name},
                                           {"version ", &loader.m_znVersion},
                                           {"board ", &loader.m_boardId}}) {
            if (!value->empty())
                m_text << title << *value << '\n';
        }
        m_text << "architecture " << loader.m_switchArch << " topology " << loader.m_topology << '\n';
        for (const auto* declaration : loader.m_declarations)
            m_text << declaration->m_kind << ' ' << declaration->m_name
                   << (declaration->m_isArray ? '[' + std::to_string(declaration->m_size) + ']' : "") << '\n';
        for (const auto* package : loader.m_packages)
            write(*package);
        for (ZNLoader::Node* node : loader.m_nodes)
            write(*node);
        for (const auto* link : loader.m_links)
            write(*link);
        m_text << "chain " << loader.m_jtagMaxFrequency << " Hz:";
        for (const auto* node : loader.m_jtagNodes)
            m_text << ' ' << node->m_id;
        m_text << "; space " << loader.m_jtagPreDevices << '/' << loader.m_jtagPreBits << " ahead, "
               << loader.m_jtagPostDevices << '/' << loader.m_jtagPostBits << " behind\n";
        for (const auto* device : loader.m_devices)
            write(*device);
        m_text << "order:";
        for (const auto* node : loader.m_nodeOrder)
            m_text << ' ' << node->m_id;
        m_text << '\n';
    }

private:
    void write(const ZNLoader::Package& package) {
        m_text << "package " << package.m_id << " of " << package.m_type << ':';
        for (const auto& [inPackageId, nodeId] : package.m_nodeIds)
            m_text << ' ' << inPackageId << " is " << nodeId;
        m_text << '\n';
    }

    void write(ZNLoader::Node& node) {
        m_text << "node " << node.m_id << " of " << node.m_type << " routing 0x" << std::hex
               << node.m_routingId << std::dec << '\n';
        writeBoot(node);
        if (auto* processor = dynamic_cast<ZNLoader::ProcNode*>(&node)) {
            writeClocks(node);
            for (ZNLoader::Core* core : processor->m_cores)
                write(dynamic_cast<ZNLoader::FreeCore&>(*core));
        }
        if (auto* device = dynamic_cast<ZNLoader::DeviceNode*>(&node)) {
            m_text << "  device flags " << device->m_flags << '\n';
            writeServices(device->m_services);
        }
        if (auto* zssc = dynamic_cast<ZNLoader::ZsscNode*>(&node)) {
            m_text << "  zssc " << zssc->m_refBase << ' ' << zssc->m_refIndex << " at "
                   << zssc->m_oscillatorMHz << " MHz\n";
            writeServices(zssc->m_services);
        }
    }

    void writeBoot(ZNLoader::Node& node) {
        if (!node.m_boot)
            return;
        m_text << "  boot style " << node.m_boot->getBootStyle() << " device "
               << nameOf(node.m_boot->m_device) << '\n';
        for (const auto* bootee : node.m_bootees)
            m_text << "  boots " << idOf(bootee->m_node) << " core "
                   << (bootee->m_core ? std::to_string(bootee->m_core->m_number) : "none") << '\n';
    }

    void writeClocks(const ZNLoader::Node& node) {
        m_text << "  oscillator " << node.m_oscillatorHz << " system " << node.m_achievedSystemFreq
               << " reference " << node.m_achievedReferenceFreq << " registers" << std::hex;
        for (const unsigned value : node.m_pllValues)
            m_text << " 0x" << value;
        m_text << std::dec << '\n';
    }

    void write(const ZNLoader::FreeCore& core) {
        m_text << "  core " << core.m_number << ' ' << core.m_reference << '\n';
        for (const ZNLoader::PortDesc& port : core.m_ports)
            m_text << "    port " << port.location << ' ' << port.name
                   << (port.mods.empty() ? "" : " mods " + port.mods) << '\n';
        writeServices(core.m_services);
    }

    void writeServices(const std::vector<ZNLoader::DeviceServiceInfo*>& services) {
        for (const auto* service : services) {
            m_text << "    service " << service->m_id << ' ' << service->m_name << ' ' << service->m_sig
                   << (service->m_sod ? " sod" : "") << '\n';
            for (const auto* chanend : service->m_chanends)
                m_text << "      chanend " << chanend->m_identifier << " end " << chanend->m_end << " remote "
                       << chanend->m_remote << '\n';
        }
    }

    void write(const ZNLoader::Zlink& link) {
        m_text << "link of " << link.m_wires << " wires, flags " << link.m_flags << '\n';
        for (ZNLoader::ZlinkEnd* end : {link.m_end0, link.m_end1}) {
            m_text << "  end on " << idOf(end->m_node);
            if (const auto* normal = dynamic_cast<const ZNLoader::ZlinkNormalEnd*>(end))
                m_text << " link " << normal->m_linkNumber;
            if (const auto* sod = dynamic_cast<const ZNLoader::ZlinkSodEnd*>(end))
                m_text << " routing " << sod->m_routingId << " chanend " << sod->m_chanend;
            m_text << " delays " << end->m_interTokenDelay << ',' << end->m_intraTokenDelay << '\n';
        }
        m_text << "  users";
        for (const auto& [source, destination] : link.m_users)
            m_text << ' ' << idOf(source) << '>' << idOf(destination);
        m_text << '\n';
    }

    void write(const ZNLoader::ExtDevice& device) {
        m_text << "external device " << device.m_name << " of " << device.m_type << " class "
               << device.m_class << " on " << idOf(device.m_node) << " core " << device.m_core << ':';
        for (const auto* attribute : device.m_attributes)
            m_text << ' ' << attribute->m_name << '=' << attribute->m_value;
        m_text << '\n';
    }

    std::ostringstream m_text;
};

} // namespace

std::string networkText(const ZNLoader& loader) {
    Writer writer;
    writer.write(loader);
    return writer.text();
}
