#include "tools/zetool/wave/StandardDeclarations.h"

#include <algorithm>
#include <array>

namespace {

// The types of IEEE 1364; every other is a wire to its readers.
constexpr std::array<std::string_view, 18> s_types = {
    "event", "integer", "parameter", "real",   "realtime", "reg",  "supply0", "supply1", "time",
    "tri",   "triand",  "trior",     "trireg", "tri0",     "tri1", "wand",    "wire",    "wor",
};
constexpr std::array<std::string_view, 5> s_scopeTypes = {"begin", "fork", "function", "module", "task"};

template<std::size_t size>
std::string oneOf(const std::array<std::string_view, size>& known, const std::string& type,
                  const char* otherwise) {
    return std::ranges::find(known, type) == known.end() ? otherwise : type;
}

// Free text of the source in a declaration of ours: no word of it can end the declaration.
std::string harmless(std::string text) {
    std::erase(text, '$');
    return text;
}

// A pattern of the source for the paths of the standard file: a core's bracketed number is now behind an
// underscore, and between core and name stand category and group. Patterns that begin with `.*` match paths
// as they stand.
std::string adaptedPattern(std::string pattern) {
    static constexpr std::string_view s_before = "\\[\\d+\\]_";
    static constexpr std::string_view s_after = "_\\d+\\..*\\.";
    for (auto at = pattern.find(s_before); at != std::string::npos; at = pattern.find(s_before, at)) {
        pattern.replace(at, s_before.size(), s_after);
        at += s_after.size();
    }
    return pattern;
}

class StructureText {
public:
    StructureText(const VcdHeader& header, const WaveSignals& signals, const StandardSignals& chosen,
                  const StandardNames& names)
        : m_header(header), m_signals(signals), m_chosen(chosen), m_names(names) {}

    std::string make() {
        m_text = "$comment\n<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Structure escaped=\"yes\">\n";
        add("    <Date value=\"", m_header.structure.date, "\"/>\n");
        addHierarchy();
        addFunctionAliases();
        addDocs();
        addPortAliases();
        m_text += "</Structure>\n$end\n\n";
        return std::move(m_text);
    }

private:
    void add(std::string_view before, std::string_view value, std::string_view behind) {
        m_text += before;
        m_text += escapedStructureText(value);
        m_text += behind;
    }

    // Opens and closes elements so that each signal stands in its own place; the order is that of the
    // source's document, so each place comes once as a rule.
    void addHierarchy() {
        m_text += "    <Hierarchy>\n";
        for (std::size_t index = 0; index < m_signals.all().size(); ++index) {
            const WaveSignal& signal = m_signals.all()[index];
            if (!m_chosen.isKept()[index])
                continue;
            moveTo(placeOf(index));
            indent();
            add("<Signal name=\"", m_names.path(index), "\"");
            add(" radix=\"", signal.radix.empty() ? "HEX" : signal.radix, "\"/>\n");
        }
        moveTo(Place());
        m_text += "    </Hierarchy>\n";
    }

    struct Place {
        std::string core;
        std::string category;
        std::string group;
    };

    // The signal's place by the names of its scopes; where the source has scopes of its own, those names
    // stand in its document already.
    Place placeOf(std::size_t index) const {
        const WaveSignal& signal = m_signals.all()[index];
        Place place = {signal.core, signal.category, signal.group};
        const std::vector<std::string> scopes = m_names.scopesOf(index);
        std::size_t next = 0;
        for (std::string* name : {&place.core, &place.category, &place.group})
            if (!name->empty())
                *name = signal.variable->scope == 0 && next < scopes.size() ? scopes[next++]
                                                                            : standardName(*name);
        return place;
    }

    void moveTo(const Place& place) {
        const bool sameCore = place.core == m_core;
        const bool sameCategory = sameCore && place.category == m_category;
        close(m_group, sameCategory && place.group == m_group, "</Group>\n");
        close(m_category, sameCategory, "</Category>\n");
        close(m_core, sameCore, "</Core>\n");
        open(m_core, place.core, "<Core name=\"");
        open(m_category, place.category, "<Category name=\"");
        open(m_group, place.group, "<Group name=\"");
    }

    void close(std::string& element, bool stays, std::string_view end) {
        if (element.empty() || stays)
            return;
        element.clear();
        indent();
        m_text += end;
    }

    void open(std::string& element, const std::string& wanted, std::string_view start) {
        if (wanted.empty() || element == wanted)
            return;
        indent();
        add(start, wanted, "\">\n");
        element = wanted;
    }

    void indent() {
        const std::size_t depth = std::size_t(2) + !m_core.empty() + !m_category.empty() + !m_group.empty();
        m_text.append(4 * depth, ' ');
    }

    void addFunctionAliases() {
        m_text += "    <ValueAliases>\n";
        for (const StructureAliasMap& map : m_header.structure.functionAliases) {
            add("        <ValueAliasMap coreName=\"", m_names.coreName(map.core), "\"");
            add(" category=\"", map.category, "\">\n");
            addEntries(map, false);
            m_text += "        </ValueAliasMap>\n";
        }
        m_text += "    </ValueAliases>\n";
    }

    void addPortAliases() {
        m_text += "    <SignalAliases>\n";
        for (const StructureAliasMap& map : m_header.structure.portAliases) {
            add("        <SignalAliasMap coreName=\"", m_names.coreName(map.core), "\">\n");
            addEntries(map, true);
            m_text += "        </SignalAliasMap>\n";
        }
        m_text += "    </SignalAliases>\n";
    }

    void addEntries(const StructureAliasMap& map, bool isOfPorts) {
        for (const StructureAlias& entry : map.entries) {
            add("            <Entry name=\"", isOfPorts ? standardName(entry.name) : entry.name, "\"");
            add(" alias=\"", entry.alias, "\"/>\n");
        }
    }

    void addDocs() {
        m_text += "    <SignalDocs>\n";
        for (const StructureDoc& doc : m_header.structure.docs) {
            // The patterns of a document that was carried along once are adapted already.
            const bool isAdapted = m_header.scopes.size() > 1;
            add("        <SignalDoc name=\"", isAdapted ? doc.pattern : adaptedPattern(doc.pattern), "\"");
            add(" description=\"", doc.description, "\">\n");
            m_text += "            <ValueDocs>\n";
            for (const auto& [value, text] : doc.values) {
                add("                <ValueDoc value=\"", value, "\"");
                add(" text=\"", text, "\"/>\n");
            }
            m_text += "            </ValueDocs>\n        </SignalDoc>\n";
        }
        m_text += "    </SignalDocs>\n";
    }

    const VcdHeader& m_header;
    const WaveSignals& m_signals;
    const StandardSignals& m_chosen;
    const StandardNames& m_names;
    std::string m_text;
    std::string m_core; // the open elements
    std::string m_category;
    std::string m_group;
};

class ScopeText {
public:
    ScopeText(const WaveSignals& signals, const StandardSignals& chosen, const StandardNames& names)
        : m_signals(signals), m_chosen(chosen), m_names(names) {}

    // Scopes nest as deep as a file says: a list of what is still open stands for recursion.
    std::string make() {
        std::vector<std::pair<std::size_t, std::size_t>> open = {{0, 0}}; // scope and its next child
        addSignals(0);
        while (!open.empty()) {
            auto& [scope, next] = open.back();
            const StandardScope& here = m_names.scopes()[scope];
            if (next == here.scopes.size()) {
                open.pop_back();
                if (!open.empty())
                    m_text += "$upscope $end\n";
                continue;
            }
            const std::size_t child = here.scopes[next++];
            const StandardScope& inner = m_names.scopes()[child];
            m_text += "$scope " + oneOf(s_scopeTypes, inner.type, "module") + " " + inner.name + " $end\n";
            addSignals(child);
            open.emplace_back(child, 0);
        }
        return std::move(m_text);
    }

private:
    void addSignals(std::size_t scope) {
        for (const std::size_t index : m_names.scopes()[scope].signals) {
            const VcdVariable& variable = *m_signals.all()[index].variable;
            const unsigned int width = std::max(variable.width, 1u);
            m_text += "$var " + oneOf(s_types, variable.type, "wire") + " " + std::to_string(width) + " " +
                      m_chosen.identifier(index) + " " + m_names.name(index);
            if (!variable.range.empty())
                m_text += " " + variable.range;
            else if (width > 1 && valueKind(variable) == ValueKind::Bits)
                m_text += " [" + std::to_string(width - 1) + ":0]";
            m_text += " $end\n";
        }
    }

    const WaveSignals& m_signals;
    const StandardSignals& m_chosen;
    const StandardNames& m_names;
    std::string m_text;
};

} // namespace

std::string standardDeclarations(const VcdHeader& header, const WaveSignals& signals,
                                 const StandardSignals& chosen, const StandardNames& names,
                                 const TimeScale& scale, bool withStructure) {
    std::string text;
    if (!header.date.empty())
        text += "$date\n  " + harmless(header.date) + "\n$end\n\n";
    if (!header.version.empty())
        text += "$version\n  " + harmless(header.version) + "\n$end\n\n";
    text += "$timescale " + scale.unit() + " $end\n\n";
    if (withStructure && header.structure.isThere)
        text += StructureText(header, signals, chosen, names).make();
    text += ScopeText(signals, chosen, names).make();
    return text + "\n$enddefinitions $end\n\n";
}
