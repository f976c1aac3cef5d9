// The `Service` element: a function's prototype, and the values of its channel ends.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <string_view>

namespace {

using ServiceInfo = ZNLoader::DeviceServiceInfo;
using ChanendInfo = ZNLoader::ChanendInfo;
using ServiceReading = AttributeReading<ServiceInfo>;
using Offset = std::string::size_type;

constexpr std::string_view s_chanend = "chanend";
constexpr char s_blanks[] = " \t";
constexpr char s_identifierEnds[] = " \t,)";

bool storeProto(ServiceReading& reading, const std::string& value) {
    ServiceInfo& service = reading.m_target;
    service.m_sig = reading.m_loader.ensigProto(value, service.m_name, reading.m_element);
    service.m_proto = value;
    return false;
}

bool storeFlags(ServiceReading& reading, const std::string& value) {
    forEachArgument(reading.m_loader, value, [&](const std::string& flag) {
        if (isText(flag, "sod"))
            reading.m_target.m_sod = true;
        else
            warnOf(reading.m_loader, {11157, "Unrecognised service flag \"%s\"; ignoring.\n"},
                   reading.m_element, flag);
    });
    return false;
}

constexpr AttributeRow<ServiceReading> s_serviceAttributes[] = {
    {"id", storeText<&ServiceInfo::m_id>},
    {"proto", storeProto},
    {"flags", storeFlags},
};

// The channel ends of one service that no parameter has taken yet, in document order.
class PendingChanends {
public:
    // Throws 11020 if an entry before this one has the same end.
    void checkEnd(ZNLoader& loader, const ChanendInfo& chanend) const {
        const auto earlier = m_byEnd.find(chanend.m_end);
        if (earlier != m_byEnd.end())
            loader.m_utils.throwError(11020, ElementLocation(chanend.m_element),
                                      "Duplicate channel end value (previous was \"%s\").\n",
                                      earlier->second->m_identifier.c_str());
    }

    void add(std::unique_ptr<ChanendInfo> chanend) {
        m_byEnd.emplace(chanend->m_end, chanend.get());
        m_byIdentifier.emplace(chanend->m_identifier, m_entries.size());
        m_entries.push_back(std::move(chanend));
    }

    // The first entry of this name; null if there is none.
    std::unique_ptr<ChanendInfo> take(std::string_view identifier) {
        const auto found = m_byIdentifier.lower_bound(identifier);
        if (found == m_byIdentifier.end() || found->first != identifier)
            return nullptr;
        const std::size_t index = found->second;
        m_byIdentifier.erase(found);
        return std::move(m_entries[index]);
    }

    // Null where an entry was taken.
    const std::vector<std::unique_ptr<ChanendInfo>>& entries() const { return m_entries; }

private:
    std::vector<std::unique_ptr<ChanendInfo>> m_entries;
    std::unordered_map<unsigned, const ChanendInfo*> m_byEnd;    // the first with an end stays
    std::multimap<std::string_view, std::size_t> m_byIdentifier; // those of one name in document order
};

struct ChanendReading : AttributeReading<ChanendInfo> {
    const PendingChanends& m_earlier;
};

// A value is "node:channel" or "channel"; what is missing counts as 0.
template<std::string ChanendInfo::*Text, unsigned ChanendInfo::*Value, bool ChanendInfo::*HasNode,
         bool ChanendInfo::*HasNumber>
bool storeValue(ChanendReading& reading, const std::string& value) {
    const Offset colon = value.rfind(':');
    const bool hasNode = colon != std::string::npos;
    const std::string node = hasNode ? value.substr(0, colon) : std::string();
    const std::string channel = hasNode ? value.substr(colon + 1) : value;
    ChanendInfo& chanend = reading.m_target;
    chanend.*Text = value;
    chanend.*Value =
        static_cast<unsigned>(ZNUtils::IntOf(node)) << 8 | static_cast<unsigned>(ZNUtils::IntOf(channel));
    chanend.*HasNode = hasNode;
    chanend.*HasNumber = !channel.empty();
    // Behind a `Remote` too the local ends are compared, so that two entries that give it first clash on 0:
    // wanted.
    reading.m_earlier.checkEnd(reading.m_loader, chanend);
    return false;
}

constexpr AttributeRow<ChanendReading> s_chanendAttributes[] = {
    {"identifier", storeText<&ChanendInfo::m_identifier>},
    {"end", storeValue<&ChanendInfo::m_endText, &ChanendInfo::m_end, &ChanendInfo::m_endHasNode,
                       &ChanendInfo::m_endHasNumber>},
    {"remote", storeValue<&ChanendInfo::m_remoteText, &ChanendInfo::m_remote, &ChanendInfo::m_remoteHasNode,
                          &ChanendInfo::m_remoteHasNumber>},
};

struct Parameters {
    Offset m_begin; // behind the first "("
    Offset m_end;   // the first ")", which may stand ahead of it
};

Parameters findParameters(ZNLoader& loader, const std::string& proto, const XmlNode* element) {
    const Offset opening = proto.find('(');
    if (opening == std::string::npos)
        loader.m_utils.throwError(11022, ElementLocation(element),
                                  "Unable to parse service function prototype ('(' not found).\n");
    const Offset closing = proto.find(')');
    if (closing == std::string::npos)
        loader.m_utils.throwError(11022, ElementLocation(element),
                                  "Unable to parse service function prototype (')' not found).\n");
    return {opening + 1, closing};
}

// Gives the service its channel ends in the order of the prototype's parameters.
void takeParameters(ZNLoader& loader, ServiceInfo& service, PendingChanends& pending,
                    const XmlNode* element) {
    const std::string& proto = service.m_proto;
    const Parameters parameters = findParameters(loader, proto, element);
    Offset position = parameters.m_begin;
    while (position < parameters.m_end) {
        const Offset chanend = proto.find(s_chanend, position);
        if (chanend == std::string::npos)
            break;
        // One character behind the word is passed over whatever it is. The text may end anywhere from here.
        const Offset behind = std::min(chanend + s_chanend.size() + 1, proto.size());
        const Offset begin = std::min(proto.find_first_not_of(s_blanks, behind), proto.size());
        const Offset end = std::min(proto.find_first_of(s_identifierEnds, begin), proto.size());
        const std::string identifier = proto.substr(begin, end - begin);
        // Where the text ends ahead of a name there is no parameter, and an entry without a name isn't its
        // own.
        std::unique_ptr<ChanendInfo> taken = begin < proto.size() ? pending.take(identifier) : nullptr;
        if (!taken)
            loader.m_utils.throwError(11023, ElementLocation(element),
                                      "Value of chanend \"%s\" not specified.\n", identifier.c_str());
        adopt(service.m_chanends, std::move(taken));
        position = end;
    }
}

} // namespace

std::string ZNLoader::ensigProto(const std::string& proto, std::string& name, XmlNode* element) {
    const Parameters parameters = findParameters(*this, proto, element);
    // The count runs to the end of the text, not only to the ")": wanted.
    std::string list;
    for (Offset chanend = parameters.m_begin; (chanend = proto.find(s_chanend, chanend)) != std::string::npos;
         chanend += s_chanend.size())
        list += list.empty() ? "chd" : ",chd";
    name = proto.substr(0, parameters.m_begin - 1);
    return "fS{0}(" + list + ")";
}

ZNLoader::DeviceServiceInfo* ZNLoader::handleServiceNode(XmlNode* element, bool onCore) {
    auto service = std::make_unique<ServiceInfo>();
    readAttributes(*this, element, *service, s_serviceAttributes,
                   {11018, "Unrecognised attribute \"%s\" in Service node; ignoring\n"}); // no stop: wanted

    PendingChanends pending;
    forEachSubNode(element, [&](XmlNode* child) {
        if (!isNamed(child, "chanend")) {
            warnOf(*this, {11019, "Unrecognised node \"%s\" in Service node; ignoring.\n"}, child,
                   *child->getName());
            return;
        }
        auto chanend = std::make_unique<ChanendInfo>();
        chanend->m_element = child;
        ChanendReading reading{{*this, child, *chanend}, pending};
        readAttributes(reading, s_chanendAttributes,
                       {11021, "Unrecognised attribute \"%s\" in Chanend node; ignoring.\n"});
        pending.add(std::move(chanend));
    });
    if (onCore && service->m_sod) {
        for (const std::unique_ptr<ChanendInfo>& chanend : pending.entries()) {
            if (!chanend->m_endHasNode)
                continue;
            chanend->m_remote = chanend->m_end;
            chanend->m_remoteHasNode = chanend->m_endHasNode;
            chanend->m_remoteHasNumber = chanend->m_endHasNumber;
        }
    }
    takeParameters(*this, *service, pending, element);

    bool anyLeft = false;
    for (const std::unique_ptr<ChanendInfo>& chanend : pending.entries()) {
        if (!chanend)
            continue;
        m_utils.buildErrorMessage(11024, ElementLocation(chanend->m_element),
                                  "Channel end does not match any formal parameter.\n");
        anyLeft = true;
    }
    if (anyLeft)
        m_utils.throwErrors();
    return service.release();
}
