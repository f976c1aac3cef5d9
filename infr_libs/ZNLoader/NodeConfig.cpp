#include "infr_libs/ZNLoader/NodeConfig.h"

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/NodeInstance.h"

#include <algorithm>
#include <stdexcept>

namespace {

// The size of a RAM that hasn't been seen.
constexpr int s_noRam = -1;

// The counts that a processor must have, in the order in which they are missed.
struct CountRow {
    const char* attribute;
    int CoreConfig::*count;
    ZNUtils::ErrorCode code;
    const char* word;
};
constexpr CountRow s_counts[] = {
    {"numThreads", &CoreConfig::numThreads, 11074, "threads"},
    {"numTimers", &CoreConfig::numTimers, 11075, "timers"},
    {"numChanEnds", &CoreConfig::numChanEnds, 11076, "chanends"},
};

// What a RAM must have.
struct RamRow {
    const char* attribute;
    int CoreConfig::*number;
    ZNUtils::ErrorCode code;
};
constexpr RamRow s_ramNumbers[] = {
    {"base", &CoreConfig::ramBase, 11078},
    {"size", &CoreConfig::ramSize, 11079},
};

// Base-detecting, saturating at the bounds of an int; 0 for a text that isn't a number.
int intOf(const XmlAttribute* attribute) {
    return ZNUtils::IntOf(*attribute->getValue());
}

int intOrZero(const XmlAttribute* attribute) {
    return attribute ? intOf(attribute) : 0;
}

} // namespace

NodeConfig::NodeConfig(const char* fileName) : m_fileName(fileName) {
    m_configuration = std::make_unique<Configuration>(&m_zelmUtils);
    try {
        m_parser = std::make_unique<XmlParser>(fileName, &m_zelmUtils, true);
    } catch (const std::out_of_range& failure) {
        throw std::string(failure.what());
    }
    m_root = m_parser->getRoot();
    if (*m_root->getName() != "ZSystem")
        m_znUtils.throwError(11066, at(m_root), "Root of XML config file must be 'ZSystem', not %s\n",
                             m_root->getName()->c_str());
    m_system = m_root->findNode("System");
    if (!m_system)
        m_znUtils.throwError(11065, inFile(), "No 'System' node defined in XML file\n");
    m_configuration->checkConfig(m_root);

    // The check changes nothing, so the first of these can't be seen: it is kept for its code.
    if (!m_system)
        m_znUtils.throwError(11067, inFile(), "No 'System' node defined in XML file\n");
    m_nodes = m_system->findNode("Nodes");
    if (!m_nodes)
        m_znUtils.throwError(11068, inFile(), "No 'Nodes' node defined in XML file\n");
    // Nothing reads the connections, but the element must be there.
    m_connections = m_system->findNode("Connections");
    if (!m_connections)
        m_znUtils.throwError(11069, inFile(), "No 'Connections' node defined in XML file\n");

    for (unsigned i = 0; i < m_nodes->numNodes(); ++i)
        if (XmlNode* const element = m_nodes->getNode(i); *element->getName() == "Node")
            readNode(element);
    if (!m_node)
        m_znUtils.throwError(11080, inFile(), "Config files must specify at least one node.\n");
}

NodeConfig::~NodeConfig() = default;

ZNUtils::FileNameLocation NodeConfig::inFile() const {
    return ZNUtils::FileNameLocation(m_fileName);
}

ZNUtils::FileLineLocation NodeConfig::at(const XmlNode* element) const {
    return ZNUtils::FileLineLocation(m_fileName, element->getLineNum());
}

void NodeConfig::readNode(XmlNode* element) {
    if (m_node)
        m_znUtils.throwError(11084, at(element), "Model node config has more than on node.\n");
    const XmlAttribute* const number = element->findAttribute("number");
    if (!number)
        m_znUtils.throwError(11070, at(element), "Node has no number.\n");

    m_node = std::make_unique<NodeInstance>();
    m_node->number = intOf(number);
    m_node->jtagId = intOrZero(element->findAttribute("jtagId"));
    m_node->userId = intOrZero(element->findAttribute("userId"));
    m_node->xmlNode = element;
    std::set<int> numbers;
    for (unsigned i = 0; i < element->numNodes(); ++i)
        if (XmlNode* const child = element->getNode(i); *child->getName() == "Processor")
            readProcessor(child, numbers);
}

void NodeConfig::readProcessor(XmlNode* element, std::set<int>& numbers) {
    const XmlAttribute* const numberText = element->findAttribute("number");
    if (!numberText)
        m_znUtils.throwError(11071, at(element), "Processor has no number.\n");
    const int number = intOf(numberText);
    if (number < 0)
        m_znUtils.throwError(11072, at(element), "Illegal core number.\n");
    if (!numbers.insert(number).second)
        m_znUtils.throwError(11073, at(element), "Duplicate core number %d in node %d.\n", number,
                             m_node->number);

    m_node->cores->push_back(std::make_unique<CoreInstance>());
    CoreInstance& core = *m_node->cores->back();
    core.number = number;
    core.config = std::make_unique<CoreConfig>();
    core.xmlNode = element;

    for (const CountRow& row : s_counts) {
        const XmlAttribute* const count = element->findAttribute(row.attribute);
        if (!count)
            m_znUtils.throwError(row.code, at(element),
                                 "Number of %s not specified for core %d in node %d.\n", row.word, number,
                                 m_node->number);
        (*core.config).*row.count = intOf(count);
    }

    core.config->ramSize = s_noRam;
    for (unsigned i = 0; i < element->numNodes(); ++i) {
        const XmlNode* const controller = element->getNode(i);
        if (*controller->getName() != "MemoryController")
            continue;
        for (unsigned j = 0; j < controller->numNodes(); ++j)
            if (const XmlNode* const memory = controller->getNode(j); *memory->getName() == "Ram")
                readRam(memory, core);
    }
}

void NodeConfig::readRam(const XmlNode* element, const CoreInstance& core) {
    // The text speaks of going on, but this is an error like the others: wanted.
    if (core.config->ramSize != s_noRam)
        m_znUtils.throwError(11077, at(element),
                             "Multiple RAM blocks for core %d in node %d, using largest only.\n", core.number,
                             m_node->number);
    for (const RamRow& row : s_ramNumbers) {
        const XmlAttribute* const number = element->findAttribute(row.attribute);
        // Split inside a word, for the sake of searches for that word in its other meaning.
        if (!number)
            m_znUtils.throwError(row.code, at(element),
                                 "Memory controller sp"
                                 "ec for core %d in node %d has no %s for RAM.\n",
                                 core.number, m_node->number, row.attribute);
        (*core.config).*row.number = intOf(number);
    }
}

int NodeConfig::getNumCores() {
    return static_cast<int>(m_node->cores->size());
}

CoreConfig* NodeConfig::getCoreConfig(int core, bool mustExist) {
    const auto found = std::find_if(m_node->cores->begin(), m_node->cores->end(),
                                    [&](const auto& candidate) { return candidate->number == core; });
    if (found != m_node->cores->end())
        return (*found)->config.get();
    if (mustExist) {
        m_znUtils = ZNUtils(); // the message of an earlier call doesn't belong to this one
        m_znUtils.throwError(11083, inFile(), "Core %d not found in model node config.\n", core);
    }
    return nullptr;
}
