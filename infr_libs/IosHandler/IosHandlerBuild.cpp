// Reading the document: ports and links of the nodes first, then the pins, which refer to them.

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/XmlParser/XmlNode.h"

namespace {

// What one switch may have, and what all switches of a document may have in sum: an object stands for each,
// and a document could claim any number.
constexpr unsigned s_maxSwitchLinks = 65536;
constexpr unsigned s_maxLinks = 16 * s_maxSwitchLinks;

struct DefaultPort {
    const char* name;
    unsigned id;
};

// What a core has that doesn't list its ports. The letters of one-bit ports don't follow their numbers: that
// is how the hardware is wired.
constexpr DefaultPort s_defaultPorts[] = {
    {"ZS1_PORT_32A", 0x200000}, {"ZS1_PORT_16A", 0x100000}, {"ZS1_PORT_16B", 0x100100},
    {"ZS1_PORT_8A", 0x80000},   {"ZS1_PORT_8B", 0x80100},   {"ZS1_PORT_8C", 0x80200},
    {"ZS1_PORT_8D", 0x80300},   {"ZS1_PORT_4A", 0x40000},   {"ZS1_PORT_4B", 0x40100},
    {"ZS1_PORT_4C", 0x40200},   {"ZS1_PORT_4D", 0x40300},   {"ZS1_PORT_4E", 0x40400},
    {"ZS1_PORT_4F", 0x40500},   {"ZS1_PORT_1A", 0x10200},   {"ZS1_PORT_1B", 0x10000},
    {"ZS1_PORT_1C", 0x10100},   {"ZS1_PORT_1D", 0x10300},   {"ZS1_PORT_1E", 0x10600},
    {"ZS1_PORT_1F", 0x10400},   {"ZS1_PORT_1G", 0x10500},   {"ZS1_PORT_1H", 0x10700},
    {"ZS1_PORT_1I", 0x10a00},   {"ZS1_PORT_1J", 0x10800},   {"ZS1_PORT_1K", 0x10900},
    {"ZS1_PORT_1L", 0x10b00},   {"ZS1_PORT_1M", 0x10c00},   {"ZS1_PORT_1N", 0x10d00},
    {"ZS1_PORT_1O", 0x10e00},   {"ZS1_PORT_1P", 0x10f00},   {"ZS1_PORT_32B", 0x200100},
    {"ZS1_PORT_16C", 0x100200}, {"ZS1_PORT_16D", 0x100300},
};

// Required attributes. Where the report of a missing one returns, it counts as 0 or as empty.
unsigned getNumber(const XmlNode& element, const char* name) {
    unsigned number = 0;
    element.getUIntAttribute(name, number, true);
    return number;
}

std::string getText(const XmlNode& element, const char* name) {
    const RequiredText text(element, name);
    return text.get() ? *text.get() : std::string();
}

bool isCalled(const XmlNode& element, const char* name) {
    return *element.getName() == name;
}

} // namespace

IosHandler::IosHandler(XmlNode* config, ZelmUtils* utils) : m_utils(utils) {
    ZELM_ASSERT(config && *config->getName() == "System");
    if (const XmlNode* const nodes = config->findNode("Nodes"))
        buildNodes(*nodes);
    if (const XmlNode* const pins = config->findNode("Pins"))
        buildPins(*pins);
}

IosHandler::~IosHandler() = default;

// Other elements below `Nodes` and `Node` are passed over silently.
void IosHandler::buildNodes(const XmlNode& nodes) {
    for (unsigned i = 0; i < nodes.numNodes(); ++i) {
        const XmlNode& element = *nodes.getNode(i);
        if (!isCalled(element, "Node"))
            continue;
        const unsigned node = getNumber(element, "number");
        for (unsigned j = 0; j < element.numNodes(); ++j) {
            const XmlNode& child = *element.getNode(j);
            if (isCalled(child, "Processor"))
                buildProcessor(node, child);
            else if (isCalled(child, "Switch"))
                buildSwitch(node, child);
        }
    }
}

void IosHandler::buildSwitch(unsigned node, const XmlNode& element) {
    unsigned count = m_utils->autoDefines ? m_utils->autoDefines->m_defaultSwitchLinks : 0;
    element.getUIntAttribute("sLinks", count, false);
    if (count > s_maxSwitchLinks || count > s_maxLinks - m_numZLinks) {
        m_utils->errorHandler->fatalError(true, "ERROR: Too many ZLinks (%u) for switch on node %d\n", count,
                                          static_cast<int>(node));
        return;
    }
    m_numZLinks += count;
    for (unsigned number = 0; number < count; ++number)
        addZLink(node, std::make_unique<IosZLink>(m_utils, number));
}

void IosHandler::buildProcessor(unsigned node, const XmlNode& element) {
    const unsigned core = getNumber(element, "number");
    const XmlNode* const ports = element.findNode("Ports");
    if (!ports) {
        createDefaultPorts(node, core);
        return;
    }
    for (unsigned i = 0; i < ports->numNodes(); ++i) {
        XmlNode* const child = ports->getNode(i);
        if (!isCalled(*child, "Port")) {
            ports->unrecognisedSubNodeError(child);
            continue;
        }
        const std::string name = getText(*child, "name");
        addPort(node, core, std::make_unique<IosPort>(m_utils, name, getNumber(*child, "id")));
    }
}

void IosHandler::createDefaultPorts(unsigned node, unsigned core) {
    for (const DefaultPort& port : s_defaultPorts)
        addPort(node, core, std::make_unique<IosPort>(m_utils, port.name, port.id));
}

void IosHandler::addPort(unsigned node, unsigned core, std::unique_ptr<IosPort> port) {
    m_portsByName[{node, core}].emplace(port->getName(), port.get());
    m_ports[node][core].push_back(std::move(port));
}

void IosHandler::addZLink(unsigned node, std::unique_ptr<IosZLink> link) {
    m_zLinksByNumber.emplace(std::pair(node, link->getNumber()), link.get());
    m_zLinks[node].push_back(std::move(link));
}

void IosHandler::buildPins(const XmlNode& pins) {
    for (unsigned i = 0; i < pins.numNodes(); ++i) {
        XmlNode* const child = pins.getNode(i);
        if (isCalled(*child, "Pin"))
            buildPin(*child);
        else
            pins.unrecognisedSubNodeError(child);
    }
}

void IosHandler::buildPin(const XmlNode& element) {
    auto pin = std::make_unique<IosPin>(m_utils, getText(element, "name"), m_nextPinNumber);
    ++m_nextPinNumber;
    for (unsigned i = 0; i < element.numNodes(); ++i) {
        XmlNode* const child = element.getNode(i);
        if (isCalled(*child, "Port"))
            connectPort(*pin, *child);
        else if (isCalled(*child, "ZLink"))
            connectZLink(*pin, *child);
        else
            element.unrecognisedSubNodeError(child);
    }
    m_pinsByName[pin->getPackageName()].emplace(pin->getPinName(), pin.get());
    m_pins.push_back(std::move(pin));
}

void IosHandler::connectPort(IosPin& pin, const XmlNode& element) {
    const std::string name = getText(element, "name");
    const unsigned node = getNumber(element, "node");
    const unsigned core = getNumber(element, "core");
    const unsigned priority = getNumber(element, "priority");
    const unsigned bit = getNumber(element, "bitNum");
    pin.addPort(*this, node, core, name, bit, priority, false);
}

void IosHandler::connectZLink(IosPin& pin, const XmlNode& element) {
    const unsigned node = getNumber(element, "node");
    const unsigned number = getNumber(element, "number");
    const unsigned bit = getNumber(element, "bitNum");
    const std::string dir = getText(element, "dir");
    if (dir != "in" && dir != "out")
        m_utils->errorHandler->fatalError(
            true, "ERROR: ZLink %d bit %d has unknown direction '%s' - should be 'in' or 'out' (line %d)\n",
            static_cast<int>(number), static_cast<int>(bit), dir.c_str(),
            static_cast<int>(element.getLineNum()));
    pin.addZLink(*this, node, number, bit, dir == "in", false);
}
