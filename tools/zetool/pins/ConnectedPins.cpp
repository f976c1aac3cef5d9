#include "tools/zetool/pins/ConnectedPins.h"

#include "tools/zetool/Documents.h"
#include "tools/zetool/image/SectorWalker.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <optional>
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

// The root of the document, which must be a configuration; throws the plugin's message for any other.
XmlNode* rootOf(const Document& document) {
    XmlNode* const root = document.root();
    if (*root->getName() != "ZSystem")
        root->getZelmUtils()->errorHandler->fatalError(
            true, "ERROR: Root of XML config file must be 'ZSystem', not %s\n", root->getName()->c_str());
    return root;
}

} // namespace

std::string linkName(const IosZLink& link) {
    return "link" + std::to_string(link.getNumber());
}

std::string PinConnection::name() const {
    return port ? port->getName() : link ? linkName(*link) : "";
}

ConnectedPins::ConnectedPins(XmlNode* root) : m_map(root) {
    std::unordered_map<const IosPort*, PlacedPort> ports;
    for (const PlacedPort& placed : m_map.ports())
        ports[placed.port] = placed;
    std::unordered_map<const IosZLink*, unsigned> nodes;
    for (const PlacedLink& placed : m_map.links())
        nodes[placed.link] = placed.node;
    const IosHandler& handler = m_map.handler();
    for (unsigned index = 0; index < handler.getNumPins(); ++index) {
        const IosPin* const pin = handler.getPin(index);
        for (unsigned i = 0; i < pin->getNumPorts(); ++i) {
            const IosPort* const port = pin->getPort(i);
            const PlacedPort& placed = ports.at(port);
            m_connections.push_back({.pin = pin,
                                     .port = port,
                                     .node = placed.node,
                                     .core = placed.core,
                                     .bit = pin->getPortBit(i),
                                     .priority = pin->getPortPriority(i)});
        }
        if (const IosZLink* const link = pin->getZLink())
            m_connections.push_back({.pin = pin,
                                     .link = link,
                                     .node = nodes.at(link),
                                     .bit = pin->getZLinkBit(),
                                     .isIn = pin->isZLinkIn()});
        else if (pin->getNumPorts() == 0)
            m_connections.push_back({.pin = pin});
    }
}

std::unique_ptr<ConnectedPins> loadConnectedPins(const std::string& file) {
    const std::optional<std::string> text = configurationOf(file);
    if (!text)
        return nullptr;
    std::unique_ptr<ConnectedPins> pins;
    const auto failure = failureOf(s_document, [&] {
        const Document document(s_document, *text);
        pins = std::make_unique<ConnectedPins>(rootOf(document));
    });
    if (failure)
        for (const std::string& line : linesOf(failure->message))
            printMessage(file, line);
    return pins;
}
