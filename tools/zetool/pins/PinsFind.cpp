#include "tools/zetool/pins/PinsFind.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/pins/PinRows.h"
#include "tools/zetool/Result.h"

#include <algorithm>

namespace {

// The node, or node and core, in front of a name.
std::string placed(unsigned node, const std::string& name) {
    return std::to_string(node) + ":" + name;
}
std::string placed(unsigned node, unsigned core, const std::string& name) {
    return std::to_string(node) + ":" + std::to_string(core) + ":" + name;
}

bool fits(const PinConnection& connection, const std::string& name) {
    const IosPin& pin = *connection.pin;
    if (name == pin.getPinName() || name == pin.getPackageName() + ":" + pin.getPinName())
        return true;
    if (connection.port)
        return name == connection.port->getName() ||
               name == placed(connection.node, connection.core, connection.port->getName());
    if (connection.link)
        return name == linkName(*connection.link) ||
               name == placed(connection.node, linkName(*connection.link));
    return false;
}

// Whether the name is that of a port or link, if without pins.
bool isResource(const IosHandler& handler, const std::string& name) {
    for (const unsigned node : handler.getNodes()) {
        for (const unsigned core : handler.getCores(node))
            for (const auto& port : *handler.getCorePorts(node, core))
                if (name == port->getName() || name == placed(node, core, port->getName()))
                    return true;
        for (unsigned index = 0; index < handler.getNumZLinks(node); ++index) {
            const std::string link = linkName(*handler.getZLink(node, index));
            if (name == link || name == placed(node, link))
                return true;
        }
    }
    return false;
}

} // namespace

int pinsFind(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const std::unique_ptr<PinMap> map = loadPinMap(file);
    if (!map)
        return s_foundWrong;
    bool isAllFound = true;
    Json results = Json::array();
    std::vector<PinConnection> rows;
    for (const std::string& name : invocation.values("NAME")) {
        std::vector<PinConnection> found;
        std::ranges::copy_if(map->connections(), std::back_inserter(found),
                             [&](const PinConnection& connection) { return fits(connection, name); });
        results.push_back({{"name", jsonText(name)}, {"connections", connectionsJson(found)}});
        rows.insert(rows.end(), found.begin(), found.end());
        if (!found.empty())
            continue;
        isAllFound = false;
        printMessage(file, isResource(map->handler(), name) ? "'" + name + "' has no pin"
                                                            : "there is no pin, port or link '" + name + "'");
    }
    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("pinsFind", 1);
        object["results"] = std::move(results);
        writeJson(output, object);
    } else {
        writeConnections(output, rows);
    }
    output.close();
    return isAllFound ? s_fine : s_foundWrong;
}
