#include "tools/zetool/plan/PlanImage.h"

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/PluginLibrary/MemoryInput.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZNLoader/NodeConfig.h"
#include "infr_libs/ZNLoader/NodeInstance.h"
#include "infr_libs/ZNLoader/ZNLoaderModel.h"
#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/image/Container.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/pins/PinMap.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

// More than any device has; a document could claim any number.
constexpr unsigned int s_mostResources = 65536;

constexpr const char* s_defaultCore = "<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'>"
                                      "<Processor number='0'/></Node></Nodes></System></ZSystem>";

constexpr struct {
    const char* text;
    const char* key;
} s_sources[] = {
    {"configuration", "configuration"},
    {"node's configuration", "nodeConfiguration"},
    {"default", "default"},
    {"option", "option"},
};

std::string payloadOf(const ZBSectorHolder_tag* sector) {
    if (!sector->data)
        return {};
    return {reinterpret_cast<const char*>(sector->data), static_cast<std::size_t>(sector->length)};
}

std::string_view imageOf(const ZBSectorHolder_tag* sector) {
    const unsigned char* const data = getSectorImageData(sector);
    if (!data)
        return {};
    return {reinterpret_cast<const char*>(data), static_cast<std::size_t>(getSectorImageNumBytes(sector))};
}

// The number that the id of a node spells: the configuration's number of the node.
unsigned int configurationNumber(const std::string& id) {
    unsigned int number = 0;
    std::istringstream stream(id);
    stream.unsetf(std::ios_base::basefield);
    stream >> number;
    return number;
}

std::vector<PlanPort> portsOf(const IosHandler& ios, unsigned int node, unsigned int core) {
    std::vector<PlanPort> ports;
    for (unsigned int i = 0; i < ios.getNumPorts(node, core); ++i) {
        const IosPort* const port = ios.getPort(node, core, i);
        ports.push_back({port->getName(), port->getSize()});
    }
    return ports;
}

bool isMapped(const IosHandler& ios, unsigned int node, unsigned int core, const PlanPort& port) {
    const IosPort* const found = ios.findPort(node, core, port.name);
    for (unsigned int bit = 0; found && bit < port.width; ++bit)
        if (found->getPin(bit))
            return true;
    return false;
}

// A number of the configuration's own `Processor`, or the node configuration's, or the schema's.
class Counts {
public:
    Counts(Configuration& configuration, XmlNode* processor, const XmlNode* nodeProcessor)
        : m_configuration(configuration), m_processor(processor), m_nodeProcessor(nodeProcessor) {}

    PlanCount of(const char* attribute, std::optional<unsigned int> given,
                 std::optional<int> ofNode = std::nullopt) const {
        unsigned int number = 0;
        if (given)
            return {*given, PlanSource::Option};
        if (m_processor && m_processor->getUIntAttribute(attribute, number, false))
            return {number, PlanSource::Configuration};
        if (ofNode)
            return {static_cast<unsigned int>(*ofNode), PlanSource::NodeConfiguration};
        if (const XmlAttribute* const own =
                m_nodeProcessor ? m_nodeProcessor->findAttribute(attribute) : nullptr)
            return {static_cast<unsigned int>(ZNUtils::IntOf(*own->getValue())),
                    PlanSource::NodeConfiguration};
        return {m_configuration.getUInt(m_configuration.getAttributeValue("Processor", attribute)),
                PlanSource::Default};
    }

private:
    Configuration& m_configuration;
    XmlNode* m_processor;           // null: the configuration doesn't have it
    const XmlNode* m_nodeProcessor; // null: the node has no configuration, or this doesn't have it
};

// The configuration's `Processor` of a core, or null.
XmlNode* processorOf(Configuration& configuration, XmlNode* root, unsigned int node, unsigned int core) {
    XmlNode* const found = configuration.findNodeWithAttributeValue(root, "Node", "number", node);
    return found ? configuration.findNodeWithAttributeValue(found, "Processor", "number", core) : nullptr;
}

const NodeConfig::CoreInstance* instanceOf(const NodeConfig* config, int core) {
    if (!config || !config->m_node || !config->m_node->cores)
        return nullptr;
    for (const auto& instance : *config->m_node->cores)
        if (instance->number == core)
            return instance.get();
    return nullptr;
}

} // namespace

const char* sourceText(PlanSource source) {
    return s_sources[static_cast<std::size_t>(source)].text;
}

const char* sourceKey(PlanSource source) {
    return s_sources[static_cast<std::size_t>(source)].key;
}

PlanImage::PlanImage(const std::string& file, std::string bytes, const PlanChoices& choices) : m_file(file) {
    m_isFine = read(std::move(bytes), choices);
}

bool PlanImage::refuse(const std::string& text) const {
    printMessage(m_file, text);
    return false;
}

bool PlanImage::read(std::string bytes, const PlanChoices& choices) {
    const Container container(loadZBFromMemory(bytes.data(), bytes.size()));
    if (!container)
        throw ToolFailure("not enough memory");
    bytes = std::string(); // the container has copies
    if (container->errorCode != 0)
        return refuse(container->errorMessage);

    std::vector<const ZBSectorHolder_tag*> networks, programs, configurations;
    for (ZBSectorHolder_tag* sector = getFirstSector(container.get()); sector;
         sector = getNextSector(container.get(), sector)) {
        if (sector->type == ZBSEC_ZN)
            networks.push_back(sector);
        else if (sector->type == ZBSEC_ELF)
            programs.push_back(sector);
        else if (sector->type == ZBSEC_SYSCONFIG)
            configurations.push_back(sector);
    }
    if (networks.empty())
        return refuse("the image has no network, without which the plugin knows no core");
    if (configurations.size() != 1)
        return refuse("the image must have one configuration, and has " +
                      std::to_string(configurations.size()));
    if (programs.empty())
        return refuse("the image has no program, without which the plugin doesn't start");

    m_network = loadNetwork(m_file + ": network", payloadOf(networks.front()));
    if (!m_network)
        return false;
    if (!readConfiguration(payloadOf(configurations.front()), choices))
        return false;
    bool areFine = true;
    for (const ZBSectorHolder_tag* const program : programs)
        areFine =
            readProgram(getSectorNodeNum(program), getSectorCoreNum(program), imageOf(program)) && areFine;
    return areFine;
}

bool PlanImage::readConfiguration(const std::string& text, const PlanChoices& choices) {
    const std::string name = m_file + ": configuration";
    const std::unique_ptr<Document> document = loadDocument(name, text);
    if (!document)
        return false;
    XmlNode* const root = document->root();
    if (*root->getName() != "ZSystem" || !root->findNode("System")) {
        printMessage(name, "the root must be 'ZSystem', with a 'System' in it");
        return false;
    }
    bool areFine = false;
    const auto failure = failureOf(name, [&] {
        const PinMap map(root);
        for (unsigned int pad = 0; pad < map.handler().getNumPins(); ++pad)
            m_pads.push_back(map.handler().getPin(pad)->getPinName());
        areFine = addCores(root, map.handler(), choices);
    });
    if (failure)
        for (const std::string& line : linesOf(failure->message))
            printMessage(line.starts_with(name) ? line : name + ": " + line);
    return areFine && !failure;
}

bool PlanImage::addCores(XmlNode* root, const IosHandler& ios, const PlanChoices& choices) {
    Configuration configuration(root->getZelmUtils());
    const Document defaultDocument("default", s_defaultCore);
    const PinMap defaultMap(defaultDocument.root());
    const std::vector<PlanPort> defaultPorts = portsOf(defaultMap.handler(), 0, 0);

    bool areSound = true;
    for (ZNLoader::Node* const node : m_network->m_nodes) {
        if (node->getType() != ZNLoader::ProcNode::s_type)
            continue;
        auto* const processors = static_cast<ZNLoader::ProcNode*>(node);
        const unsigned int nodeNumber = configurationNumber(node->m_id);
        for (ZNLoader::Core* const core : processors->m_cores) {
            if (core->getType() != ZNLoader::FreeCore::s_type)
                continue;
            if (core->m_reference.empty() || findCore(core->m_reference))
                continue; // no option could name it
            PlanCore& made = m_cores.emplace_back();
            made.name = core->m_reference;
            made.node = node->m_routingId;
            made.number = static_cast<unsigned int>(core->m_number);
            const NodeConfig::CoreInstance* const instance = instanceOf(processors->m_config, core->m_number);
            const CoreConfig* const config = instance ? instance->config.get() : nullptr;
            const Counts counts(configuration, processorOf(configuration, root, nodeNumber, made.number),
                                instance ? instance->xmlNode : nullptr);
            const auto ofNode = [&](int CoreConfig::*field) {
                return config ? std::optional<int>(config->*field) : std::nullopt;
            };
            made.threads = counts.of("numThreads", choices.threads, ofNode(&CoreConfig::numThreads));
            made.timers = counts.of("numTimers", choices.timers, ofNode(&CoreConfig::numTimers));
            made.clockBlocks = counts.of("numClkBlks", choices.clockBlocks);

            made.ports = portsOf(ios, nodeNumber, made.number);
            if (made.ports.empty())
                made.ports = defaultPorts;
            made.portSource = made.ports == defaultPorts ? PlanSource::Default : PlanSource::Configuration;
            if (choices.mappedPortsOnly)
                std::erase_if(made.ports, [&](const PlanPort& port) {
                    return !isMapped(ios, nodeNumber, made.number, port);
                });
            areSound = isSound(made) && areSound;
        }
    }
    if (m_cores.empty())
        return refuse("the network has no core that programs run on");
    return areSound;
}

bool PlanImage::isSound(const PlanCore& core) const {
    const struct {
        const char* what;
        std::size_t number;
    } rows[] = {{"threads", core.threads.number},
                {"timers", core.timers.number},
                {"clock blocks", core.clockBlocks.number},
                {"ports", core.ports.size()}};
    bool isSound = true;
    for (const auto& row : rows)
        if (row.number > s_mostResources)
            isSound = refuse("core '" + core.name + "' would have " + std::to_string(row.number) + " " +
                             row.what + ", more than any device");
    return isSound;
}

PlanCore* PlanImage::findCore(const std::string& name) {
    const auto found = std::ranges::find(m_cores, name, &PlanCore::name);
    return found == m_cores.end() ? nullptr : &*found;
}

// A program of a core that nobody knows is read, so that its faults show, and ignored, as by the plugin.
bool PlanImage::readProgram(std::uint16_t position, std::uint16_t core, std::string_view bytes) {
    MemoryInput stream(bytes);
    std::unique_ptr<ElfHandler> program;
    std::string fault;
    try {
        program = std::make_unique<ElfHandler>(&m_handler, stream);
    } catch (const std::string& error) {
        fault = error.substr(0, error.find_last_not_of('\n') + 1);
    } catch (const BrokenLimit& limit) {
        fault = limit.what();
    }
    if (!program)
        return refuse("program of " + std::to_string(position) + ":" + std::to_string(core) + ": " + fault);
    if (position >= m_network->m_jtagNodes.size() ||
        m_network->m_jtagNodes[position]->getType() != ZNLoader::ProcNode::s_type)
        return true;
    const auto& cores = static_cast<ZNLoader::ProcNode*>(m_network->m_jtagNodes[position])->m_cores;
    const auto found = std::ranges::find(cores, static_cast<int>(core), &ZNLoader::Core::m_number);
    PlanCore* const known = found == cores.end() ? nullptr : findCore((*found)->m_reference);
    if (known)
        known->programs.push_back(std::move(program));
    return true;
}
