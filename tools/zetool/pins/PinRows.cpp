#include "tools/zetool/pins/PinRows.h"

void writeConnections(OutputFile& output, const std::vector<PinConnection>& connections) {
    using enum TextTable::Align;
    TextTable table({{"pad", Right},
                     {"package"},
                     {"pin"},
                     {"node", Right},
                     {"core", Right},
                     {"port or link"},
                     {"bit", Right},
                     {"priority", Right},
                     {"direction"}});
    for (const PinConnection& connection : connections) {
        const auto when = [](bool isThere, unsigned number) { return isThere ? std::to_string(number) : ""; };
        const bool isPort = connection.port != nullptr;
        const bool isLink = connection.link != nullptr;
        table.add({std::to_string(connection.pin->getNumber()), connection.pin->getPackageName(),
                   connection.pin->getPinName(), when(isPort || isLink, connection.node),
                   when(isPort, connection.core), connection.name(), when(isPort || isLink, connection.bit),
                   when(isPort, connection.priority), isLink ? connection.isIn ? "in" : "out" : ""});
    }
    table.write(output);
}

Json connectionsJson(const std::vector<PinConnection>& connections) {
    Json list = Json::array();
    for (const PinConnection& connection : connections) {
        Json row = Json::object();
        row["pad"] = connection.pin->getNumber();
        row["package"] = jsonText(connection.pin->getPackageName());
        row["pin"] = jsonText(connection.pin->getPinName());
        row["port"] = nullptr;
        row["link"] = nullptr;
        if (connection.port) {
            Json& port = row["port"] = Json::object();
            port["node"] = connection.node;
            port["core"] = connection.core;
            port["name"] = jsonText(connection.port->getName());
            port["bit"] = connection.bit;
            port["priority"] = connection.priority;
        }
        if (connection.link) {
            Json& link = row["link"] = Json::object();
            link["node"] = connection.node;
            link["number"] = connection.link->getNumber();
            link["bit"] = connection.bit;
            link["direction"] = connection.isIn ? "in" : "out";
        }
        list.push_back(std::move(row));
    }
    return list;
}
