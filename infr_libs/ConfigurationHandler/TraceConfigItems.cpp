// The part of `ErrorHandler` that reads a document.

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace {

// By trace type number. Their order isn't that of the schema's rows.
constexpr std::array<std::string_view, ErrorHandler::s_numTraceTypes> s_traceTypeNames = {
    "TRACE_SWITCH_DATA", "TRACE_SWITCH_CTRL", "TRACE_ISTREAM", "TRACE_ASYNC",
    "TRACE_MEM",         "TRACE_CHECKER",     "TRACE_PRDTG",
};

} // namespace

void ErrorHandler::handleTraceConfigItems(XmlNode* node) {
    bool enabled = false;
    node->getBoolAttribute("value", enabled, true);

    for (unsigned i = 0; i < node->numNodes(); ++i) {
        XmlNode* const item = node->getNode(i);
        if (*item->getName() != "Trace") {
            node->unrecognisedSubNodeError(item);
            continue;
        }
        const RequiredText text(*item, "name");
        const std::string* const name = text.get();
        if (!name)
            continue; // reported, to a handler that returned

        // While the parent is off, an item's own value isn't looked at, and may be missing.
        bool on = false;
        if (enabled)
            item->getBoolAttribute("value", on, true);

        const auto found = std::find(s_traceTypeNames.begin(), s_traceTypeNames.end(), *name);
        if (found == s_traceTypeNames.end())
            fatalError(true, "Unrecognised trace config: %s\n", name->c_str());
        // An unknown name goes on as the first type, where the report returns: wanted.
        TraceType& type = found == s_traceTypeNames.end()
                              ? m_traceTypes[0]
                              : m_traceTypes[static_cast<std::size_t>(found - s_traceTypeNames.begin())];
        // A configuration can only add: false turns nothing off.
        if (on)
            type.turnOn();
        type.setTraceString(name->c_str());
    }
}
