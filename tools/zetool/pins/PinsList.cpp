#include "tools/zetool/pins/PinsList.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/pins/PinRows.h"
#include "tools/zetool/Result.h"

#include <map>

namespace {

// The pads behind bits, by direction of a link; a port has no direction.
using Pads = std::map<std::pair<bool, unsigned>, unsigned>;

struct PadsByOwner {
    std::map<const IosPort*, Pads> ports;
    std::map<const IosZLink*, Pads> links;
};

PadsByOwner padsOf(const ConnectedPins& pins) {
    PadsByOwner pads;
    for (const PinConnection& connection : pins.connections()) {
        const std::pair bit(connection.isIn, connection.bit);
        if (connection.port)
            pads.ports[connection.port].emplace(bit, connection.pin->getNumber());
        else if (connection.link)
            pads.links[connection.link].emplace(bit, connection.pin->getNumber());
    }
    return pads;
}

// As "0:12 1:13": bits and their pads.
std::string padsText(const Pads& pads, bool isIn) {
    std::string text;
    for (const auto& [bit, pad] : pads)
        if (bit.first == isIn)
            text += (text.empty() ? "" : " ") + std::to_string(bit.second) + ":" + std::to_string(pad);
    return text;
}

Json padsJson(const Pads& pads, bool isIn) {
    Json list = Json::array();
    for (const auto& [bit, pad] : pads)
        if (bit.first == isIn)
            list.push_back({{"bit", bit.second}, {"pad", pad}});
    return list;
}

const Pads& padsOf(const PadsByOwner& pads, const IosPort* port) {
    static const Pads s_none;
    const auto found = pads.ports.find(port);
    return found == pads.ports.end() ? s_none : found->second;
}

// A document can claim any number of others in one word.
std::vector<PlacedLink> linksWithPins(const PinMap& map, const PadsByOwner& pads) {
    std::vector<PlacedLink> links = map.links();
    std::erase_if(links, [&](const PlacedLink& placed) { return !pads.links.contains(placed.link); });
    return links;
}

void writePorts(OutputFile& output, const ConnectedPins& pins) {
    using enum TextTable::Align;
    const PadsByOwner pads = padsOf(pins);
    TextTable table({{"node", Right}, {"core", Right}, {"port"}, {"width", Right}, {"pads by bit"}});
    for (const auto& [node, core, port] : pins.map().ports())
        table.add({std::to_string(node), std::to_string(core), port->getName(),
                   std::to_string(port->getSize()), padsText(padsOf(pads, port), false)});
    table.write(output);
}

void writeLinks(OutputFile& output, const ConnectedPins& pins) {
    using enum TextTable::Align;
    const PadsByOwner pads = padsOf(pins);
    TextTable table({{"node", Right}, {"link"}, {"pads in, by bit"}, {"pads out, by bit"}});
    for (const auto& [node, link] : linksWithPins(pins.map(), pads)) {
        const Pads& ofLink = pads.links.at(link);
        table.add({std::to_string(node), linkName(*link), padsText(ofLink, true), padsText(ofLink, false)});
    }
    table.write(output);
}

Json mapJson(const ConnectedPins& pins) {
    const PadsByOwner pads = padsOf(pins);
    Json object = jsonObject("pinsList", 1);
    object["connections"] = connectionsJson(pins.connections());
    Json& ports = object["ports"] = Json::array();
    for (const auto& [node, core, port] : pins.map().ports()) {
        Json row = Json::object();
        row["node"] = node;
        row["core"] = core;
        row["name"] = jsonText(port->getName());
        row["id"] = port->getId();
        row["width"] = port->getSize();
        row["pads"] = padsJson(padsOf(pads, port), false);
        ports.push_back(std::move(row));
    }
    Json& links = object["links"] = Json::array();
    for (const auto& [node, link] : linksWithPins(pins.map(), pads)) {
        const Pads& ofLink = pads.links.at(link);
        Json row = Json::object();
        row["node"] = node;
        row["number"] = link->getNumber();
        row["padsIn"] = padsJson(ofLink, true);
        row["padsOut"] = padsJson(ofLink, false);
        links.push_back(std::move(row));
    }
    return object;
}

} // namespace

int pinsList(const Invocation& invocation) {
    const std::unique_ptr<ConnectedPins> pins = loadConnectedPins(invocation.value("FILE"));
    if (!pins)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    const std::string& by = invocation.value("by");
    if (invocation.has("json"))
        writeJson(output, mapJson(*pins));
    else if (by == "port")
        writePorts(output, *pins);
    else if (by == "link")
        writeLinks(output, *pins);
    else
        writeConnections(output, pins->connections());
    output.close();
    return s_fine;
}
