// Ownership in the model: what each of its objects frees.

#include "infr_libs/ZNLoader/ZNLoaderModel.h"

namespace {

template<class Object>
void deleteAll(const std::vector<Object*>& objects) {
    for (Object* object : objects)
        delete object;
}

} // namespace

ZNLoader::DeviceServiceInfo::~DeviceServiceInfo() {
    deleteAll(m_chanends);
}

ZNLoader::Core::~Core() = default;

ZNLoader::FreeCore::~FreeCore() {
    deleteAll(m_services);
}

ZNLoader::BootType::~BootType() = default;

ZNLoader::Node::~Node() {
    delete m_boot;
    deleteAll(m_bootees);
}

ZNLoader::DeviceNode::DeviceNode() : m_holdingCore(new HoldingCore) {}

ZNLoader::DeviceNode::~DeviceNode() {
    delete m_holdingCore;
    deleteAll(m_services);
}

ZNLoader::ZsscNode::~ZsscNode() {
    deleteAll(m_services);
}

ZNLoader::ZlinkEnd::~ZlinkEnd() = default;

ZNLoader::Zlink::~Zlink() {
    delete m_end0;
    delete m_end1;
}

ZNLoader::ExtDevice::~ExtDevice() {
    deleteAll(m_attributes);
}
