#include "tools/zetool/pins/PinsFind.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/pins/PinRows.h"
#include "tools/zetool/Result.h"

#include <algorithm>

namespace {

// Whether the name is the port's or link's own, alone or behind its place.
bool isNameOf(const PlacedPort& placed, const std::string& name) {
    const std::string& own = placed.port->getName();
    return name == own || name == std::to_string(placed.node) + ":" + std::to_string(placed.core) + ":" + own;
}
bool isNameOf(const PlacedLink& placed, const std::string& name) {
    const std::string own = linkName(*placed.link);
    return name == own || name == std::to_string(placed.node) + ":" + own;
}

bool fits(const PinConnection& connection, const std::string& name) {
    const IosPin& pin = *connection.pin;
    if (name == pin.getPinName() || name == pin.getPackageName() + ":" + pin.getPinName())
        return true;
    if (connection.port)
        return isNameOf(PlacedPort{connection.node, connection.core, connection.port}, name);
    return connection.link && isNameOf(PlacedLink{connection.node, connection.link}, name);
}

// Whether the name is that of a port or link, if without pins.
bool isResource(const PinMap& map, const std::string& name) {
    const auto isItsName = [&](const auto& placed) { return isNameOf(placed, name); };
    return std::ranges::any_of(map.ports(), isItsName) || std::ranges::any_of(map.links(), isItsName);
}

} // namespace

int pinsFind(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const std::unique_ptr<ConnectedPins> pins = loadConnectedPins(file);
    if (!pins)
        return s_foundWrong;
    bool isAllFound = true;
    Json results = Json::array();
    std::vector<PinConnection> rows;
    for (const std::string& name : invocation.values("NAME")) {
        std::vector<PinConnection> found;
        std::ranges::copy_if(pins->connections(), std::back_inserter(found),
                             [&](const PinConnection& connection) { return fits(connection, name); });
        results.push_back({{"name", jsonText(name)}, {"connections", connectionsJson(found)}});
        rows.insert(rows.end(), found.begin(), found.end());
        if (!found.empty())
            continue;
        isAllFound = false;
        printMessage(file, isResource(pins->map(), name) ? "'" + name + "' has no pin"
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
