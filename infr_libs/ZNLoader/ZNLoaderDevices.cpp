// The `ExternalDevices` element.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

namespace {

using ExtDevice = ZNLoader::ExtDevice;

struct DeviceReading : AttributeReading<ExtDevice> {
    bool m_isRejected = false;
};

bool findDeviceNode(DeviceReading& reading, const std::string& value) {
    reading.m_target.m_node = reading.m_loader.findNodeForId(value);
    if (!reading.m_target.m_node)
        reading.m_loader.m_utils.throwError(11055, ElementLocation(reading.m_element),
                                            "Node \"%s\" referenced in Device not found.\n", value.c_str());
    return false;
}

bool storeCore(DeviceReading& reading, const std::string& value) {
    reading.m_target.m_core = readCoreNumber(reading.m_loader, value, reading.m_element);
    return false;
}

bool storeClass(DeviceReading& reading, const std::string& value) {
    if (isText(value, "spiflash")) {
        reading.m_target.m_class = ZNLoader::ExtDeviceSpiFlash;
    } else {
        warnOf(reading.m_loader, {11058, "Unrecognised device class \"%s\"; ignoring.\n"}, reading.m_element,
               value);
        reading.m_isRejected = true;
    }
    return false;
}

constexpr AttributeRow<DeviceReading> s_deviceAttributes[] = {
    {"nodeid", findDeviceNode},
    {"core", storeCore},
    {"class", storeClass},
    {"name", storeText<&ExtDevice::m_name>},
    {"type", storeText<&ExtDevice::m_type>},
};

constexpr AttributeRow<AttributeReading<ExtDevice::DeviceAttribute>> s_attributeAttributes[] = {
    {"name", storeText<&ExtDevice::DeviceAttribute::m_name>},
    {"value", storeText<&ExtDevice::DeviceAttribute::m_value>},
};

} // namespace

bool ZNLoader::readDevices(XmlNode* element) {
    warnOfAttributes(*this, {11144, "Unrecognised attribute \"%s\" in \"ExternalDevices\" node; ignoring.\n"},
                     element);
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "device") || isNamed(child, "externaldevice"))
            readDevice(child); // anything else is passed over without a word: wanted
    });
    checkDeviceNames();
    return false;
}

void ZNLoader::readDevice(XmlNode* element) {
    auto device = std::make_unique<ExtDevice>();
    device->m_element = element;
    DeviceReading reading{{*this, element, *device}};
    readAttributes(reading, s_deviceAttributes,
                   {11054, "Found unexpected attribute \"%s\" inside Device node; ignoring.\n"});
    if (reading.m_isRejected)
        return;
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "attribute")) {
            auto* attribute = adopt(device->m_attributes, std::make_unique<ExtDevice::DeviceAttribute>());
            attribute->m_element = child;
            readAttributes(*this, child, *attribute, s_attributeAttributes,
                           {11057, "Found unexpected attribute \"%s\" inside Attribute node; ignoring.\n"});
        } else { // with the device's name, not the child's: wanted
            warnOf(*this, {11056, "Unrecognised node \"%s\" in Device node; ignoring.\n"}, child,
                   *element->getName());
        }
    });
    adopt(m_devices, std::move(device));
}

// Names are distinct over all `ExternalDevices`, the empty name included. Of several that are not, the one
// that was there first is reported, at the next device that has it.
void ZNLoader::checkDeviceNames() {
    const ExtDevice* duplicate = nullptr;
    std::size_t firstHolder = m_devices.size();
    for (; m_devicesNamed < m_devices.size(); ++m_devicesNamed) {
        const ExtDevice* device = m_devices[m_devicesNamed];
        const auto [holder, isNew] = m_deviceOrdinals.emplace(device->m_name, m_devicesNamed);
        if (!isNew && holder->second < firstHolder) {
            firstHolder = holder->second;
            duplicate = device;
        }
    }
    if (duplicate)
        m_utils.throwError(11105, ElementLocation(duplicate->m_element), "Duplicate device name \"%s\".\n",
                           duplicate->m_name.c_str());
}
