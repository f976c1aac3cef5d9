#include "tools/zetool/zn/NetworkJson.h"

#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/ZNLoader/NodeInstance.h"
#include "tools/zetool/Utf8.h"
#include "tools/zetool/Words.h"
#include "tools/zetool/zn/LinkUsers.h"
#include "tools/zetool/zn/ModelText.h"

#include <utility>

// Each object is a table of its keys, in the order in which they are written. Keys and their meaning are
// fixed: others compare these objects with their own.

namespace {

// A key of an object, and how its value is made of a thing of the model.
template<class Thing>
struct Member {
    const char* key;
    Json (*value)(Thing& thing);
};

template<class Thing, std::size_t N>
void addAll(Json& object, Thing& thing, const Member<Thing> (&members)[N]) {
    for (const Member<Thing>& member : members)
        object[member.key] = member.value(thing);
}

template<class Thing, std::size_t N>
Json objectOf(Thing& thing, const Member<Thing> (&members)[N]) {
    Json object = Json::object();
    addAll(object, thing, members);
    return object;
}

// A list of what a function makes of each thing.
template<class Things, class Make>
Json listOf(const Things& things, const Make& make) {
    Json list = Json::array();
    for (const auto& thing : things)
        list.push_back(make(thing));
    return list;
}

// Adds a member without the search for one of this key, which would make large objects slow.
void addUnseen(Json& object, const std::string& key, Json value) {
    object.get_ref<Json::object_t&>().emplace_back(toDistinctUtf8(key), std::move(value));
}

template<class Thing>
int lineOf(Thing& thing) {
    return thing.m_element ? static_cast<int>(thing.m_element->getLineNum()) : 0;
}

Json idJson(const ZNLoader::Node* node) {
    return node ? jsonText(node->m_id) : Json(nullptr);
}

// ---- Services ----

constexpr Member<ZNLoader::ChanendInfo> s_chanendMembers[] = {
    {"identifier", [](auto& it) { return jsonText(it.m_identifier); }},
    {"endText", [](auto& it) { return jsonText(it.m_endText); }},
    {"end", [](auto& it) { return Json(it.m_end); }},
    {"endHasNode", [](auto& it) { return Json(it.m_endHasNode); }},
    {"endHasNumber", [](auto& it) { return Json(it.m_endHasNumber); }},
    {"remoteText", [](auto& it) { return jsonText(it.m_remoteText); }},
    {"remote", [](auto& it) { return Json(it.m_remote); }},
    {"remoteHasNode", [](auto& it) { return Json(it.m_remoteHasNode); }},
    {"remoteHasNumber", [](auto& it) { return Json(it.m_remoteHasNumber); }},
};

constexpr Member<ZNLoader::DeviceServiceInfo> s_serviceMembers[] = {
    {"id", [](auto& it) { return jsonText(it.m_id); }},
    {"proto", [](auto& it) { return jsonText(it.m_proto); }},
    {"name", [](auto& it) { return jsonText(it.m_name); }},
    {"signature", [](auto& it) { return jsonText(it.m_sig); }},
    {"sod", [](auto& it) { return Json(it.m_sod); }},
    {"chanends",
     [](auto& it) {
         return listOf(it.m_chanends, [](auto* end) { return objectOf(*end, s_chanendMembers); });
     }},
};

Json servicesJson(const std::vector<ZNLoader::DeviceServiceInfo*>& services) {
    return listOf(services, [](auto* service) { return objectOf(*service, s_serviceMembers); });
}

// ---- Cores ----

constexpr Member<const ZNLoader::PortDesc> s_portMembers[] = {
    {"name", [](auto& it) { return jsonText(it.name); }},
    {"location", [](auto& it) { return jsonText(it.location); }},
    {"mods", [](auto& it) { return jsonText(it.mods); }},
};

constexpr Member<ZNLoader::Core> s_coreMembers[] = {
    {"number", [](auto& it) { return Json(it.m_number); }},
    {"reference", [](auto& it) { return jsonText(it.m_reference); }},
    {"referenceBase", [](auto& it) { return jsonText(it.m_refBase); }},
    {"referenceIndex", [](auto& it) { return it.m_refIndexed ? Json(it.m_refIndex) : Json(nullptr); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
    {"ports",
     [](auto& it) {
         const auto* core = freeCore(&it);
         return core ? listOf(core->m_ports, [](auto& port) { return objectOf(port, s_portMembers); })
                     : Json::array();
     }},
    {"services",
     [](auto& it) {
         const auto* core = freeCore(&it);
         return core ? servicesJson(core->m_services) : Json::array();
     }},
};

// ---- Processors ----

constexpr Member<const NodeConfig::CoreInstance> s_coreConfigMembers[] = {
    {"number", [](auto& it) { return Json(it.number); }},
    {"ramBase", [](auto& it) { return Json(it.config->ramBase); }},
    {"ramSize", [](auto& it) { return Json(it.config->ramSize); }},
    {"numThreads", [](auto& it) { return Json(it.config->numThreads); }},
    {"numTimers", [](auto& it) { return Json(it.config->numTimers); }},
    {"numChanEnds", [](auto& it) { return Json(it.config->numChanEnds); }},
};

constexpr Member<const NodeConfig> s_configMembers[] = {
    {"file", [](auto& it) { return jsonText(it.m_fileName); }},
    {"number", [](auto& it) { return Json(it.m_node->number); }},
    {"jtagId", [](auto& it) { return Json(it.m_node->jtagId); }},
    {"userId", [](auto& it) { return Json(it.m_node->userId); }},
    {"cores",
     [](auto& it) {
         return listOf(*it.m_node->cores,
                       [](auto& core) { return objectOf(std::as_const(*core), s_coreConfigMembers); });
     }},
};

constexpr Member<ZNLoader::ProcNode> s_pllMembers[] = {
    {"fromDividers", [](auto& it) { return Json(!it.m_systemFreqByHz); }},
    {"inputDiv", [](auto& it) { return Json(it.m_pllInputDiv); }},
    {"feedbackDivTimes2", [](auto& it) { return Json(it.m_pllFeedbackDiv); }},
    {"outputDiv", [](auto& it) { return Json(it.m_pllOutputDiv); }},
    {"refDiv", [](auto& it) { return Json(it.m_refDiv); }},
    {"feedbackDivMinTimes2", [](auto& it) { return Json(it.m_pllFeedbackDivMin); }},
};

constexpr Member<ZNLoader::NodeCoreTuple> s_booteeMembers[] = {
    {"nodeId", [](auto& it) { return jsonText(it.m_nodeId); }},
    {"coreText", [](auto& it) { return jsonText(it.m_coreText); }},
    {"node", [](auto& it) { return idJson(it.m_node); }},
    {"core", [](auto& it) { return it.m_core ? Json(it.m_core->m_number) : Json(nullptr); }},
};

constexpr Member<ZNLoader::ProcNode> s_procMembers[] = {
    {"inPackageId", [](auto& it) { return jsonText(it.m_inPackageId); }},
    {"bootees",
     [](auto& it) {
         return listOf(it.m_bootees, [](auto* bootee) { return objectOf(*bootee, s_booteeMembers); });
     }},
    {"oscillatorHz", [](auto& it) { return Json(it.m_oscillatorHz); }},
    {"oscillatorSource", [](auto& it) { return jsonText(it.m_oscillatorSrc); }},
    {"oscillatorNode", [](auto& it) { return idJson(it.m_oscillatorNode); }},
    {"systemFrequencyHz", [](auto& it) { return Json(it.m_systemFreq); }},
    {"referenceFrequencyHz", [](auto& it) { return Json(it.m_referenceFreq); }},
    {"achievedSystemHz", [](auto& it) { return Json(it.m_achievedSystemFreq); }},
    {"achievedReferenceHz", [](auto& it) { return Json(it.m_achievedReferenceFreq); }},
    {"pll", [](auto& it) { return objectOf(it, s_pllMembers); }},
    {"pllValues", [](auto& it) { return Json(it.m_pllValues); }},
    {"config",
     [](auto& it) {
         return it.m_config ? objectOf(std::as_const(*it.m_config), s_configMembers) : Json(nullptr);
     }},
    {"cores",
     [](auto& it) { return listOf(it.m_cores, [](auto* core) { return objectOf(*core, s_coreMembers); }); }},
};

// ---- Other nodes ----

constexpr Member<ZNLoader::DeviceNode> s_deviceNodeMembers[] = {
    {"flags", [](auto& it) { return Json(flagsOf(it)); }},
    {"services", [](auto& it) { return servicesJson(it.m_services); }},
};

constexpr Member<ZNLoader::ZsscNode> s_zsscMembers[] = {
    {"inPackageId", [](auto& it) { return jsonText(it.m_inPackageId); }},
    {"referenceBase", [](auto& it) { return jsonText(it.m_refBase); }},
    {"referenceIndex", [](auto& it) { return it.m_refIndexed ? Json(it.m_refIndex) : Json(nullptr); }},
    {"oscillator", [](auto& it) { return jsonText(it.m_oscillatorText); }},
    {"oscillatorMHz", [](auto& it) { return Json(it.m_oscillatorMHz); }},
    {"services", [](auto& it) { return servicesJson(it.m_services); }},
};

// ---- Nodes ----

Json bootJson(ZNLoader::BootType* boot) {
    if (!boot)
        return nullptr;
    const Json device = boot->m_device ? jsonText(boot->m_device->m_name) : Json(nullptr);
    switch (boot->getBootStyle()) {
    case ZNLoader::BootTypeSPIMaster::s_style: {
        const auto& spi = static_cast<const ZNLoader::BootTypeSPIMaster&>(*boot);
        return {{"kind", "spi"},
                {"deviceName", jsonText(spi.m_deviceName)},
                {"default", spi.m_isDefault},
                {"device", device}};
    }
    case ZNLoader::BootTypeFromLink::s_style:
        return {{"kind", "link"}, {"device", device}};
    default:
        return nullptr;
    }
}

constexpr Member<ZNLoader::Node> s_nodeMembers[] = {
    {"id", [](auto& it) { return jsonText(it.m_id); }},
    {"kind", [](auto& it) { return Json(kindOf(it)); }},
    {"type", [](auto& it) { return jsonText(it.m_type); }},
    {"shortType", [](auto& it) { return jsonText(it.m_shortType); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
    {"routingId", [](auto& it) { return Json(it.m_routingId); }},
    {"boot", [](auto& it) { return bootJson(it.m_boot); }},
};

Json nodeJson(ZNLoader::Node& node) {
    Json object = objectOf(node, s_nodeMembers);
    if (auto* proc = procNode(&node))
        addAll(object, *proc, s_procMembers);
    if (auto* device = deviceNode(&node))
        addAll(object, *device, s_deviceNodeMembers);
    if (auto* zssc = zsscNode(&node))
        addAll(object, *zssc, s_zsscMembers);
    return object;
}

// ---- Links ----

constexpr Member<ZNLoader::ZlinkEnd> s_endMembers[] = {
    {"kind", [](auto& it) { return Json(it.isNormal() ? "normal" : "sod"); }},
    {"node", [](auto& it) { return idJson(it.m_node); }},
    {"delays", [](auto& it) { return jsonText(it.m_delays); }},
};

constexpr Member<ZNLoader::ZlinkNormalEnd> s_normalEndMembers[] = {
    {"link", [](auto& it) { return jsonText(it.m_linkText); }},
    {"linkNumber", [](auto& it) { return Json(it.m_linkNumber); }},
};

constexpr Member<ZNLoader::ZlinkSodEnd> s_sodEndMembers[] = {
    {"routingId", [](auto& it) { return Json(it.m_routingId); }},
    {"chanend", [](auto& it) { return Json(it.m_chanend); }},
};

constexpr Member<ZNLoader::ZlinkEnd> s_delayMembers[] = {
    {"interTokenDelay", [](auto& it) { return Json(it.m_interTokenDelay); }},
    {"intraTokenDelay", [](auto& it) { return Json(it.m_intraTokenDelay); }},
};

Json endJson(ZNLoader::ZlinkEnd* end) {
    if (!end)
        return nullptr;
    Json object = objectOf(*end, s_endMembers);
    if (end->isNormal())
        addAll(object, static_cast<ZNLoader::ZlinkNormalEnd&>(*end), s_normalEndMembers);
    else
        addAll(object, static_cast<ZNLoader::ZlinkSodEnd&>(*end), s_sodEndMembers);
    addAll(object, *end, s_delayMembers);
    return object;
}

constexpr Member<const ZNLoader::Zlink> s_linkMembers[] = {
    {"encoding", [](auto& it) { return jsonText(it.m_encoding); }},
    {"wires", [](auto& it) { return Json(it.m_wires); }},
    {"delays", [](auto& it) { return jsonText(it.m_delays); }},
    {"flags", [](auto& it) { return Json(flagsOf(it)); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
    {"ends", [](auto& it) { return listOf(endsOf(it), endJson); }},
    {"userCount", [](auto& it) { return Json(it.m_users.size()); }},
};

void writeLink(JsonStream& json, const ZNLoader::Zlink& link, Users users) {
    json.beginObject();
    json.addMembers(objectOf(link, s_linkMembers));
    if (users == Users::Listed) {
        json.beginList("users");
        writeUsers(json, link);
        json.end();
    } else {
        json.add("userCrc32", userCrc32(link));
    }
    json.end();
}

// ---- The network ----

constexpr Member<ZNLoader::CoreDeclaration> s_declarationMembers[] = {
    {"text", [](auto& it) { return jsonText(it.m_text); }},
    {"kind", [](auto& it) { return jsonText(it.m_kind); }},
    {"name", [](auto& it) { return jsonText(it.m_name); }},
    {"array", [](auto& it) { return Json(it.m_isArray); }},
    {"size", [](auto& it) { return it.m_isArray ? Json(it.m_size) : Json(nullptr); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
};

constexpr Member<ZNLoader::Package> s_packageMembers[] = {
    {"id", [](auto& it) { return jsonText(it.m_id); }},
    {"type", [](auto& it) { return jsonText(it.m_type); }},
    {"file", [](auto& it) { return jsonText(it.m_file); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
    {"nodes",
     [](auto& it) {
         Json nodes = Json::object();
         for (const auto& [inPackageId, id] : it.m_nodeIds)
             addUnseen(nodes, inPackageId, jsonText(id));
         return nodes;
     }},
};

constexpr Member<ZNLoader::ExtDevice::DeviceAttribute> s_attributeMembers[] = {
    {"name", [](auto& it) { return jsonText(it.m_name); }},
    {"value", [](auto& it) { return jsonText(it.m_value); }},
};

constexpr Member<ZNLoader::ExtDevice> s_deviceMembers[] = {
    {"name", [](auto& it) { return jsonText(it.m_name); }},
    {"type", [](auto& it) { return jsonText(it.m_type); }},
    {"class", [](auto& it) { return Json(classOf(it)); }},
    {"node", [](auto& it) { return idJson(it.m_node); }},
    {"core", [](auto& it) { return Json(it.m_core); }},
    {"line", [](auto& it) { return Json(lineOf(it)); }},
    {"attributes",
     [](auto& it) {
         return listOf(it.m_attributes, [](auto* entry) { return objectOf(*entry, s_attributeMembers); });
     }},
};

constexpr Member<const ZNLoader> s_chainMembers[] = {
    {"maxFrequencyHz", [](auto& it) { return Json(it.m_jtagMaxFrequency); }},
    {"preDevices", [](auto& it) { return Json(it.m_jtagPreDevices); }},
    {"preBits", [](auto& it) { return Json(it.m_jtagPreBits); }},
    {"postDevices", [](auto& it) { return Json(it.m_jtagPostDevices); }},
    {"postBits", [](auto& it) { return Json(it.m_jtagPostBits); }},
    {"nodes", [](auto& it) { return listOf(it.m_jtagNodes, idJson); }},
};

// `type` stands here a second time, behind that of the object as such: a reader that keeps one of two like
// keys keeps the network's own.
constexpr Member<const ZNLoader> s_networkMembers[] = {
    {"name", [](auto& it) { return jsonText(it.m_name); }},
    {"boardId", [](auto& it) { return jsonText(it.m_boardId); }},
    {"znVersion", [](auto& it) { return jsonText(it.m_znVersion); }},
    {"type", [](auto& it) { return jsonText(it.m_typeText); }},
    {"typeKind", [](auto& it) { return Json(typeKindOf(it)); }},
    {"switchArch", [](auto& it) { return Json(static_cast<int>(it.m_switchArch)); }},
    {"topology", [](auto& it) { return Json(topologyOf(it)); }},
    {"positions",
     [](auto& it) {
         if (it.m_topology != s_hypercube)
             return Json(nullptr);
         Json positions = Json::object();
         for (const auto& [id, position] : it.m_positions)
             addUnseen(positions, id, digitsOf(position));
         return positions;
     }},
    {"declarations",
     [](auto& it) {
         return listOf(it.m_declarations, [](auto* entry) { return objectOf(*entry, s_declarationMembers); });
     }},
    {"packages",
     [](auto& it) {
         return listOf(it.m_packages, [](auto* package) { return objectOf(*package, s_packageMembers); });
     }},
};

constexpr Member<const ZNLoader> s_networkMembersBehindLinks[] = {
    {"jtagChain", [](auto& it) { return objectOf(it, s_chainMembers); }},
    {"nodeOrder", [](auto& it) { return listOf(it.m_nodeOrder, idJson); }},
    {"devices",
     [](auto& it) {
         return listOf(it.m_devices, [](auto* device) { return objectOf(*device, s_deviceMembers); });
     }},
};

} // namespace

void writeNetwork(JsonStream& json, const ZNLoader& network, const std::string& warnings, Users users) {
    for (const auto& member : s_networkMembers)
        json.add(member.key, member.value(network));
    json.beginList("nodes");
    for (ZNLoader::Node* node : network.m_nodes)
        json.add({}, nodeJson(*node));
    json.end();
    json.beginList("links");
    for (const ZNLoader::Zlink* link : network.m_links)
        writeLink(json, *link, users);
    json.end();
    for (const auto& member : s_networkMembersBehindLinks)
        json.add(member.key, member.value(network));
    json.add("warnings", linesJson(warnings));
}

Json linesJson(const std::string& text) {
    Json list = Json::array();
    for (const std::string& line : linesOf(text))
        list.push_back(jsonText(line));
    return list;
}
