// The `Core` element of a processor, and its ports.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

namespace {

using CoreReading = AttributeReading<ZNLoader::FreeCore>;

bool storeNumber(CoreReading& reading, const std::string& value) {
    reading.m_target.m_number = readCoreNumber(reading.m_loader, value, reading.m_element);
    return false;
}

constexpr AttributeRow<CoreReading> s_coreAttributes[] = {
    {"number", storeNumber},
    {"reference", storeText<&ZNLoader::Core::m_reference>},
};

constexpr AttributeRow<AttributeReading<ZNLoader::PortDesc>> s_portAttributes[] = {
    {"location", storeText<&ZNLoader::PortDesc::location>},
    {"mods", storeText<&ZNLoader::PortDesc::mods>},
    {"name", storeText<&ZNLoader::PortDesc::name>},
};

} // namespace

bool ZNLoader::readCore(XmlNode* element, ProcNode* node) {
    auto newCore = std::make_unique<FreeCore>();
    newCore->m_element = element;
    readAttributes(*this, element, *newCore, s_coreAttributes,
                   {11006, "Core node contains unknown attribute \"%s\"; ignoring.\n"});
    FreeCore* core = adopt(node->m_cores, std::move(newCore));
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "port"))
            readAttributes(*this, child, core->m_ports.emplace_back(), s_portAttributes,
                           {11007, "Unrecognised attribute \"%s\" inside Port node; ignoring.\n"});
        else if (isNamed(child, "service"))
            adopt(core->m_services, std::unique_ptr<DeviceServiceInfo>(handleServiceNode(child, true)));
        else
            warnOf(*this, {11008, "Unrecognised node \"%s\" inside Core node; ignoring.\n"}, child,
                   *child->getName());
    });
    splitReference(core->m_reference, *core);
    return false;
}
