// Ownership in the model: what each of its objects frees.

#include "infr_libs/ZNLoader/ZNLoaderModel.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/NodeConfig.h"

namespace {

template<class Object>
void deleteAll(const std::vector<Object*>& objects) {
    for (Object* object : objects)
        delete object;
}

// For what its holder owns alone when it was put there by hand, and with others otherwise.
template<class Object>
void deleteUnlessShared(Object* object, const std::shared_ptr<Object>& shared) {
    if (object != shared.get())
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

ZNLoader::ProcNode::~ProcNode() {
    deleteAll(m_cores);
    deleteUnlessShared(m_config, m_sharedConfig);
}

void ZNLoader::ProcNode::setConfig(const std::shared_ptr<NodeConfig>& config) {
    deleteUnlessShared(m_config, m_sharedConfig);
    m_sharedConfig = config;
    m_config = config.get();
}

ZNLoader::DeviceNode::DeviceNode() : m_holdingCore(new HoldingCore) {}

ZNLoader::DeviceNode::~DeviceNode() {
    delete m_holdingCore;
    deleteAll(m_services);
}

ZNLoader::ZsscNode::~ZsscNode() {
    deleteAll(m_services);
}

ZNLoader::Package::~Package() {
    deleteUnlessShared(m_parser, m_sharedParser);
}

void ZNLoader::Package::setParser(const std::shared_ptr<XmlParser>& parser) {
    deleteUnlessShared(m_parser, m_sharedParser);
    m_sharedParser = parser;
    m_parser = parser.get();
}

bool ZNLoader::Package::holdsNode(const std::string& nodeId) {
    if (m_heldNodes.size() != m_nodeIds.size()) { // filled by hand
        for (const auto& [inPackageId, id] : m_nodeIds)
            m_heldNodes.insert(id);
    }
    return m_heldNodes.contains(nodeId);
}

void ZNLoader::Package::addNode(const std::string& inPackageId, const std::string& nodeId) {
    m_nodeIds.emplace(inPackageId, nodeId);
    m_heldNodes.insert(nodeId);
}

ZNLoader::ZlinkEnd::~ZlinkEnd() = default;

ZNLoader::Zlink::~Zlink() {
    delete m_end0;
    delete m_end1;
}

ZNLoader::ExtDevice::~ExtDevice() {
    deleteAll(m_attributes);
}
