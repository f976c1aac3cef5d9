#include "infr_libs/PluginLibrary/PluginLibrary.h"

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/PluginLibrary/MemoryInput.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <optional>
#include <string_view>

namespace {

// The payload of a document's sector, which has no terminator.
std::string_view payloadOf(const ZBSectorHolder_tag* sector) {
    if (!sector->data)
        return {};
    return {reinterpret_cast<const char*>(sector->data), static_cast<std::size_t>(sector->length)};
}

// The ELF file in an image's sector.
std::string_view imageOf(const ZBSectorHolder_tag* sector) {
    const unsigned char* data = getSectorImageData(sector);
    if (!data)
        return {};
    return {reinterpret_cast<const char*>(data), static_cast<std::size_t>(getSectorImageNumBytes(sector))};
}

// The number that a text spells, its base detected, as a 32-bit strtoul gives it in every word size.
unsigned int numberOf(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    const bool isNegative = start != std::string::npos && text[start] == '-';
    errno = 0;
    const unsigned long long number = std::strtoull(text.c_str(), nullptr, 0);
    const unsigned long long magnitude = isNegative && errno == 0 ? 0 - number : number;
    if (errno != 0 || magnitude > UINT32_MAX)
        return UINT32_MAX;
    return static_cast<std::uint32_t>(number);
}

// A core that programs run on, with its node.
struct ProgramCore {
    ZNLoader::Node* node;
    ZNLoader::FreeCore* core;
};

// The first core, by node and then by core, for which the condition holds.
template<typename Condition>
std::optional<ProgramCore> findCore(const ZNLoader* network, const Condition& condition) {
    if (!network)
        return std::nullopt;
    for (ZNLoader::Node* node : network->m_nodes) {
        if (node->getType() != ZNLoader::ProcNode::s_type)
            continue;
        for (ZNLoader::Core* core : static_cast<ZNLoader::ProcNode*>(node)->m_cores) {
            if (core->getType() != ZNLoader::FreeCore::s_type)
                continue;
            auto* freeCore = static_cast<ZNLoader::FreeCore*>(core);
            if (condition(*freeCore))
                return ProgramCore{node, freeCore};
        }
    }
    return std::nullopt;
}

} // namespace

void PluginLibrary::DeleteContainer::operator()(ZBHandler* container) const {
    deleteZBHandler(container);
}

PluginLibrary::PluginLibrary()
    : m_errorHandler(std::make_unique<ErrorHandler>()),
      m_stringLibrary(std::make_unique<StringLibrary>(m_errorHandler.get())),
      m_utils{m_errorHandler.get(), m_stringLibrary.get(), nullptr} {}

PluginLibrary::~PluginLibrary() = default;

// ---- Opening ----

bool PluginLibrary::openZe(const char* fileName) {
    m_zeHandler.reset(loadZBFromFile(fileName));
    if (!m_zeHandler) {
        m_errorHandler->fatalError(false, "Error loading file: %s\n", fileName);
        return false;
    }
    if (m_zeHandler->errorCode != 0) {
        m_errorHandler->fatalError(false, "Error loading file %s: %s\n", fileName, m_zeHandler->errorMessage);
        return false;
    }
    createZNLoader();
    createElfHandlers(); // by the core names of the network
    return createIosHandler(fileName);
}

void PluginLibrary::createZNLoader() {
    const std::vector<ZBSectorHolder_tag*> sectors = getSectors(m_zeHandler.get(), ZBSEC_ZN);
    if (sectors.empty())
        return;
    // The message has no line end of its own: that of the loader's text ends it.
    const auto warn = [this](const char* text) {
        m_errorHandler->fatalError(false, "Warning: Unable to load ZN file: %s", text);
    };
    try {
        MemoryInput stream(payloadOf(sectors.front()));
        m_znLoader = std::make_unique<ZNLoader>("zn", &stream, nullptr);
    } catch (const std::string& text) {
        warn(text.c_str());
    } catch (const std::exception& error) { // a document that ends inside a comment
        warn(error.what());
    }
}

void PluginLibrary::createElfHandlers() {
    for (const ZBSectorHolder_tag* sector : getSectors(m_zeHandler.get(), ZBSEC_ELF)) {
        MemoryInput stream(imageOf(sector));
        auto handler = std::make_unique<ElfHandler>(m_errorHandler.get(), stream);
        std::string name;
        // An image of a core that nobody knows is read, so that its faults show, and ignored: wanted.
        if (!getCoreName(name, getSectorNodeNum(sector), getSectorCoreNum(sector)))
            continue;
        m_elfHandlers[name].push_back(std::move(handler));
        m_activeCores.insert(std::move(name));
    }
}

bool PluginLibrary::createIosHandler(const char* fileName) {
    const std::vector<ZBSectorHolder_tag*> images = getSectors(m_zeHandler.get(), ZBSEC_ELF);
    const std::vector<ZBSectorHolder_tag*> configs = getSectors(m_zeHandler.get(), ZBSEC_SYSCONFIG);

    if (configs.empty()) {
        m_errorHandler->fatalError(
            false, "Error: No ZBSEC_SYSCONFIG/ZBSEC_NODEDESC sector found in file: %s\n", fileName);
        return false;
    }
    // An image without a program ends the process here, with a condition that speaks of something else, and
    // ahead of the count of configurations: wanted.
    {
        const void* xmlParser = images.empty() ? nullptr : images.front();
        ZELM_ASSERT(xmlParser != 0);
    }
    if (configs.size() > 1) {
        m_errorHandler->fatalError(
            false, "Error: Zero or more than one ZBSEC_SYSCONFIG sectors found in file: %s\n", fileName);
        return false;
    }

    MemoryInput stream(payloadOf(configs.front()));
    const XmlParser parser("ZEconfiguration", &m_utils, &stream);
    XmlNode* root = parser.getRoot();
    if (*root->getName() != "ZSystem") {
        m_errorHandler->fatalError(false, "ERROR: Root of XML config file must be 'ZSystem', not %s\n",
                                   root->getName()->c_str());
        return false;
    }
    std::unique_ptr<AutoDefines> autoDefines(AutoDefines::createAutoDefines(root, m_errorHandler.get()));
    XmlNode* system = root->findNode("System");
    if (!system) {
        m_errorHandler->fatalError(false, "ERROR: No 'System' node defined in XML file\n");
        return false;
    }
    m_autoDefines = std::move(autoDefines);
    m_utils.autoDefines = m_autoDefines.get();
    m_iosHandler = std::make_unique<IosHandler>(system, &m_utils); // keeps nothing of the document
    return true;
}

std::vector<ZBSectorHolder_tag*> PluginLibrary::getSectors(const ZBHandler* container, int type) {
    std::vector<ZBSectorHolder_tag*> sectors;
    for (ZBSectorHolder_tag* sector = getFirstSector(container); sector;
         sector = getNextSector(container, sector)) {
        if (sector->type == type)
            sectors.push_back(sector);
    }
    return sectors;
}

bool PluginLibrary::checkZeLoaded(const char* what) {
    if (m_iosHandler)
        return true;
    m_errorHandler->fatalError(false, "ERROR: ZE not loaded - cannot handle '%s'\n", what);
    return false;
}

// ---- What was opened ----

ZNLoader* PluginLibrary::getZNLoader() const {
    return m_znLoader.get();
}

AutoDefines* PluginLibrary::getAutoDefines() const {
    return m_autoDefines.get();
}

std::vector<ElfHandler*> PluginLibrary::getElfHandlers(std::string coreName) const {
    std::vector<ElfHandler*> handlers;
    const auto found = m_elfHandlers.find(coreName);
    if (found != m_elfHandlers.end())
        std::ranges::transform(found->second, std::back_inserter(handlers),
                               &std::unique_ptr<ElfHandler>::get);
    return handlers;
}

unsigned int PluginLibrary::getNumActiveProcessors() {
    ZELM_ASSERT(checkZeLoaded("getNumActiveProcessors"));
    return static_cast<unsigned int>(m_activeCores.size());
}

unsigned int PluginLibrary::getNumProcessors(unsigned int node) {
    ZELM_ASSERT(checkZeLoaded("getNumProcessors"));
    return m_iosHandler->getNumCores(node);
}

bool PluginLibrary::isPackageValid(const std::string& package) const {
    return m_iosHandler && m_iosHandler->isPackageValid(package);
}

// ---- Cores and ports by name ----

bool PluginLibrary::getCoreName(std::string& name, unsigned int position, unsigned int core) const {
    if (!m_znLoader || position >= m_znLoader->m_jtagNodes.size())
        return false;
    ZNLoader::Node* node = m_znLoader->m_jtagNodes[position];
    if (node->getType() != ZNLoader::ProcNode::s_type)
        return false;
    const auto& cores = static_cast<ZNLoader::ProcNode*>(node)->m_cores; // of any kind
    const auto found = std::ranges::find(cores, static_cast<int>(core), &ZNLoader::Core::m_number);
    if (found == cores.end())
        return false;
    name = (*found)->m_reference;
    return true;
}

bool PluginLibrary::findDefaultZNCore(std::string& name, unsigned int& node, unsigned int& core) {
    const auto found = findCore(m_znLoader.get(), [](const ZNLoader::FreeCore&) { return true; });
    if (!found)
        return false;
    name = found->core->m_reference;
    node = found->node->m_routingId;
    core = static_cast<unsigned int>(found->core->m_number);
    return true;
}

bool PluginLibrary::findZNCore(const std::string& name, unsigned int& node, unsigned int& core) {
    const auto found = findCore(
        m_znLoader.get(), [&](const ZNLoader::FreeCore& candidate) { return candidate.m_reference == name; });
    if (!found)
        return false;
    node = found->node->m_routingId;
    core = static_cast<unsigned int>(found->core->m_number);
    return true;
}

bool PluginLibrary::findZNPort(const std::string& name, std::string& location, unsigned int& node,
                               unsigned int& core) {
    const ZNLoader::PortDesc* port = nullptr;
    const auto found = findCore(m_znLoader.get(), [&](const ZNLoader::FreeCore& candidate) {
        const auto named = std::ranges::find(candidate.m_ports, name, &ZNLoader::PortDesc::name);
        port = named == candidate.m_ports.end() ? nullptr : &*named;
        return port != nullptr;
    });
    if (!found)
        return false;
    location = port->location;
    node = numberOf(found->node->m_id);
    core = static_cast<unsigned int>(found->core->m_number);
    return true;
}

// ---- Pads ----

bool PluginLibrary::getPinPad(const std::string& package, const std::string& pin, unsigned int& pad) {
    if (!checkZeLoaded(pin.c_str()))
        return false;
    const IosPin* found = m_iosHandler->findPin(package, pin);
    if (!found)
        return false;
    pad = found->getNumber();
    return true;
}

bool PluginLibrary::getPortPads(unsigned int node, unsigned int core, const std::string& port,
                                unsigned int count, unsigned int first, std::vector<unsigned int>& pads) {
    if (!checkZeLoaded(port.c_str()))
        return false;
    const IosPort* found = m_iosHandler->findPort(node, core, port);
    if (!found)
        return false;

    const unsigned int width = found->getSize();
    if (count == 0)
        count = width; // not what is left of it behind `first`: wanted
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int bit = first + i;
        if (bit >= width) {
            m_errorHandler->fatalError(false, "ERROR: Port '%s' does not have bit %d\n", port.c_str(),
                                       static_cast<int>(bit));
            return false;
        }
        const IosPin* pin = found->getPin(bit);
        if (!pin) {
            m_errorHandler->fatalError(false, "ERROR: Port '%s' bit %d not available in target package\n",
                                       port.c_str(), static_cast<int>(bit));
            return false;
        }
        pads.push_back(pin->getNumber());
    }
    return true;
}
