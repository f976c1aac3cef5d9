#include "tools/zetool/pins/PinMap.h"

#include "infr_libs/XmlParser/XmlParser.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/image/SectorWalker.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <optional>
#include <sstream>
#include <unordered_map>
#include <utility>

namespace {

// How messages call the document, as those of the plugin do.
constexpr const char* s_document = "ZEconfiguration";

// The configuration document of an image, or nothing after the message.
std::optional<std::string> configurationOf(const std::string& file) {
    InputFile input(file);
    SectorWalker walker(input);
    std::optional<std::string> document;
    while (walker.next()) {
        if (walker.sector().head.type != ZBSEC_SYSCONFIG) {
            walker.skip();
            continue;
        }
        if (document) {
            printMessage(file, walker.sector().place() + ": another configuration; there can be only one");
            return std::nullopt;
        }
        document.emplace();
        if (!walker.read([&](std::string_view piece) { *document += piece; }))
            break;
        if (walker.sector().hasWrongCrc()) {
            printMessage(file, walker.sector().crcFault());
            return std::nullopt;
        }
    }
    if (!walker.fault().empty()) {
        printMessage(file, walker.fault());
        return std::nullopt;
    }
    if (!document)
        printMessage(file, "there is no configuration");
    return document;
}

} // namespace

std::string linkName(const IosZLink& link) {
    return "link" + std::to_string(link.getNumber());
}

std::string PinConnection::name() const {
    return port ? port->getName() : link ? linkName(*link) : "";
}

PinMap::PinMap(const std::string& document) {
    std::istringstream stream(document);
    const XmlParser parser(s_document, &m_utils, &stream);
    XmlNode* const root = parser.getRoot();
    if (*root->getName() != "ZSystem")
        m_errorHandler.fatalError(true, "ERROR: Root of XML config file must be 'ZSystem', not %s\n",
                                  root->getName()->c_str());
    m_autoDefines.reset(AutoDefines::createAutoDefines(root, &m_errorHandler));
    m_utils.autoDefines = m_autoDefines.get();
    m_handler = std::make_unique<IosHandler>(root->findNode("System"), &m_utils);
    connect();
}

void PinMap::connect() {
    struct Place {
        unsigned node;
        unsigned core;
    };
    std::unordered_map<const IosPort*, Place> ports;
    std::unordered_map<const IosZLink*, unsigned> links;
    for (const unsigned node : m_handler->getNodes()) {
        for (const unsigned core : m_handler->getCores(node))
            for (const auto& port : *m_handler->getCorePorts(node, core))
                ports[port.get()] = {node, core};
        for (unsigned index = 0; index < m_handler->getNumZLinks(node); ++index)
            links[m_handler->getZLink(node, index)] = node;
    }
    for (unsigned index = 0; index < m_handler->getNumPins(); ++index) {
        const IosPin* const pin = m_handler->getPin(index);
        for (unsigned i = 0; i < pin->getNumPorts(); ++i) {
            const IosPort* const port = pin->getPort(i);
            const Place& place = ports.at(port);
            m_connections.push_back({.pin = pin,
                                     .port = port,
                                     .node = place.node,
                                     .core = place.core,
                                     .bit = pin->getPortBit(i),
                                     .priority = pin->getPortPriority(i)});
        }
        if (const IosZLink* const link = pin->getZLink())
            m_connections.push_back({.pin = pin,
                                     .link = link,
                                     .node = links.at(link),
                                     .bit = pin->getZLinkBit(),
                                     .isIn = pin->isZLinkIn()});
        else if (pin->getNumPorts() == 0)
            m_connections.push_back({.pin = pin});
    }
}

std::unique_ptr<PinMap> loadPinMap(const std::string& file) {
    const std::optional<std::string> document = configurationOf(file);
    if (!document)
        return nullptr;
    std::unique_ptr<PinMap> map;
    const auto failure = failureOf(s_document, [&] { map = std::make_unique<PinMap>(*document); });
    if (failure)
        for (const std::string& line : linesOf(failure->message))
            printMessage(file, line);
    return map;
}
