#include "tools/zetool/zn/ZnNames.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/zn/ModelText.h"

#include <functional>

namespace {

void forEachCore(const ZNLoader& network,
                 const std::function<void(ZNLoader::Node&, ZNLoader::FreeCore&)>& visit) {
    for (ZNLoader::Node* node : network.m_procNodes)
        for (ZNLoader::Core* core : procNode(node)->m_cores)
            if (ZNLoader::FreeCore* free = freeCore(core))
                visit(*node, *free);
}

// A core without ports has a row too.
void writeTable(OutputFile& output, const ZNLoader& network) {
    TextTable table({{"core"}, {"node"}, {"number", TextTable::Align::Right}, {"location"}, {"name"}});
    forEachCore(network, [&](ZNLoader::Node& node, ZNLoader::FreeCore& core) {
        const std::string number = std::to_string(core.m_number);
        for (const ZNLoader::PortDesc& port : core.m_ports)
            table.add({core.m_reference, node.m_id, number, port.location, port.name});
        if (core.m_ports.empty())
            table.add({core.m_reference, node.m_id, number});
    });
    table.write(output);
}

void writeObject(OutputFile& output, const ZNLoader& network) {
    Json object = jsonObject("znNames", 1);
    Json& cores = object["cores"] = Json::array();
    forEachCore(network, [&](ZNLoader::Node& node, ZNLoader::FreeCore& core) {
        Json ports = Json::array();
        for (const ZNLoader::PortDesc& port : core.m_ports)
            ports.push_back({{"location", jsonText(port.location)}, {"name", jsonText(port.name)}});
        cores.push_back({{"core", jsonText(core.m_reference)},
                         {"node", jsonText(node.m_id)},
                         {"number", core.m_number},
                         {"routingId", node.m_routingId},
                         {"ports", std::move(ports)}});
    });
    writeJson(output, object);
}

} // namespace

int znNames(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const std::unique_ptr<ZNLoader> network = loadNetwork(shownName(file), readWhole(file));
    if (!network)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, *network);
    else
        writeTable(output, *network);
    output.close();
    return s_fine;
}
