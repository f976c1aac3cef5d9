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

PadsByOwner padsOf(const PinMap& map) {
    PadsByOwner pads;
    for (const PinConnection& connection : map.connections()) {
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

template<typename Map, typename Key>
const Pads& padsOf(const Map& map, const Key& key) {
    static const Pads s_none;
    const auto found = map.find(key);
    return found == map.end() ? s_none : found->second;
}

// Calls the operation with each port: node, core, port.
template<typename Operation>
void forEachPort(const IosHandler& handler, const Operation& operation) {
    for (const unsigned node : handler.getNodes())
        for (const unsigned core : handler.getCores(node))
            for (const auto& port : *handler.getCorePorts(node, core))
                operation(node, core, *port);
}

// Calls the operation with each link that has pins: node, link, pads. A document can claim any number of
// others in one word.
template<typename Operation>
void forEachLink(const IosHandler& handler, const PadsByOwner& pads, const Operation& operation) {
    for (const unsigned node : handler.getNodes())
        for (unsigned index = 0; index < handler.getNumZLinks(node); ++index) {
            const IosZLink* const link = handler.getZLink(node, index);
            const auto found = pads.links.find(link);
            if (found != pads.links.end())
                operation(node, *link, found->second);
        }
}

void writePorts(OutputFile& output, const PinMap& map) {
    using enum TextTable::Align;
    const PadsByOwner pads = padsOf(map);
    TextTable table({{"node", Right}, {"core", Right}, {"port"}, {"width", Right}, {"pads by bit"}});
    forEachPort(map.handler(), [&](unsigned node, unsigned core, const IosPort& port) {
        table.add({std::to_string(node), std::to_string(core), port.getName(), std::to_string(port.getSize()),
                   padsText(padsOf(pads.ports, &port), false)});
    });
    table.write(output);
}

void writeLinks(OutputFile& output, const PinMap& map) {
    using enum TextTable::Align;
    const PadsByOwner pads = padsOf(map);
    TextTable table({{"node", Right}, {"link"}, {"pads in, by bit"}, {"pads out, by bit"}});
    forEachLink(map.handler(), pads, [&](unsigned node, const IosZLink& link, const Pads& ofLink) {
        table.add({std::to_string(node), linkName(link), padsText(ofLink, true), padsText(ofLink, false)});
    });
    table.write(output);
}

Json mapJson(const PinMap& map) {
    const IosHandler& handler = map.handler();
    const PadsByOwner pads = padsOf(map);
    Json object = jsonObject("pinsList", 1);
    object["connections"] = connectionsJson(map.connections());
    Json& ports = object["ports"] = Json::array();
    forEachPort(handler, [&](unsigned node, unsigned core, const IosPort& port) {
        Json row = Json::object();
        row["node"] = node;
        row["core"] = core;
        row["name"] = jsonText(port.getName());
        row["id"] = port.getId();
        row["width"] = port.getSize();
        row["pads"] = padsJson(padsOf(pads.ports, &port), false);
        ports.push_back(std::move(row));
    });
    Json& links = object["links"] = Json::array();
    forEachLink(handler, pads, [&](unsigned node, const IosZLink& link, const Pads& ofLink) {
        Json row = Json::object();
        row["node"] = node;
        row["number"] = link.getNumber();
        row["padsIn"] = padsJson(ofLink, true);
        row["padsOut"] = padsJson(ofLink, false);
        links.push_back(std::move(row));
    });
    return object;
}

} // namespace

int pinsList(const Invocation& invocation) {
    const std::unique_ptr<PinMap> map = loadPinMap(invocation.value("FILE"));
    if (!map)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    const std::string& by = invocation.value("by");
    if (invocation.has("json"))
        writeJson(output, mapJson(*map));
    else if (by == "port")
        writePorts(output, *map);
    else if (by == "link")
        writeLinks(output, *map);
    else
        writeConnections(output, map->connections());
    output.close();
    return s_fine;
}
