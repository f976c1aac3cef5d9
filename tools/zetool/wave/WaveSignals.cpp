#include "tools/zetool/wave/WaveSignals.h"

#include "tools/zetool/wave/IdentifierScheme.h"
#include "tools/zetool/wave/SignalPattern.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace {

// Place of a signal in the hierarchy.
struct Place {
    std::string core;
    std::string category;
    std::string group;

    bool operator==(const Place&) const = default;
    auto operator<=>(const Place&) const = default;
};

Place placeOf(const WaveSignal& signal) {
    return {signal.core, signal.category, signal.group};
}

std::string resourceKey(const IdentifierMeaning& meaning) {
    return std::string(meaning.category) + ' ' + meaning.tag + ' ' + (meaning.isGrouped ? meaning.index : "");
}

// The name without a suffix of the identifier's scheme; the whole name where it doesn't end so.
std::string_view withoutSuffix(std::string_view name, std::string_view suffix) {
    return name.ends_with(suffix) ? name.substr(0, name.size() - suffix.size()) : name;
}

// Cores' names by their tags, from names such as "stdcore[0]_Thread3_inuse" whose resource is known.
class CoreNames {
public:
    explicit CoreNames(const std::vector<VcdVariable>& variables) {
        for (const VcdVariable& variable : variables) {
            const IdentifierMeaning meaning = identifierMeaning(variable.identifier);
            if (meaning.resource.empty())
                continue;
            const std::string_view base = withoutSuffix(variable.name, meaning.suffix);
            const std::string end = "_" + meaning.resource;
            if (base.size() > end.size() && base.ends_with(end))
                m_names.try_emplace(meaning.tag, base.substr(0, base.size() - end.size()));
        }
    }

    // With ports alone, the name up to a bracket, or else up to the first underscore.
    std::string nameOf(const IdentifierMeaning& meaning, std::string_view signalName) const {
        if (meaning.tag.empty())
            return "";
        const auto found = m_names.find(meaning.tag);
        if (found != m_names.end())
            return found->second;
        const auto bracket = signalName.find("]_");
        if (bracket != std::string_view::npos)
            return std::string(signalName.substr(0, bracket + 1));
        return std::string(signalName.substr(0, signalName.find('_')));
    }

private:
    std::map<std::string, std::string> m_names;
};

} // namespace

std::string_view WaveSignal::nameInCore() const {
    std::string_view name = variable->name;
    if (!core.empty() && name.size() > core.size() + 1 && name.starts_with(core) && name[core.size()] == '_')
        name.remove_prefix(core.size() + 1);
    return name;
}

WaveSignals::WaveSignals(const VcdHeader& header) {
    std::vector<bool> taken(header.variables.size());
    takeListed(header, taken);
    placeOthers(header, taken);
    addDocs(header);
    addUserNames(header);
}

void WaveSignals::takeListed(const VcdHeader& header, std::vector<bool>& taken) {
    // Names that are declared twice are listed twice: the first list entry takes the first declaration.
    std::unordered_map<std::string, std::vector<std::size_t>> byName;
    for (std::size_t index = header.variables.size(); index-- > 0;)
        byName[header.path(header.variables[index])].push_back(index);
    for (const StructureSignal& listed : header.structure.signals) {
        const auto found = byName.find(listed.name);
        if (found == byName.end() || found->second.empty()) {
            m_undeclared.push_back(&listed);
            continue;
        }
        const std::size_t index = found->second.back();
        found->second.pop_back();
        taken[index] = true;
        m_all.push_back({&header.variables[index], listed.core, listed.category, listed.group, listed.radix,
                         nullptr, "", true});
    }
}

void WaveSignals::placeOthers(const VcdHeader& header, const std::vector<bool>& taken) {
    if (!header.isOfPlugin()) {
        for (const VcdVariable& variable : header.variables)
            if (!taken[static_cast<std::size_t>(&variable - header.variables.data())])
                m_all.push_back({&variable, "", "", "", "", nullptr, "", false});
        return;
    }
    const CoreNames coreNames(header.variables);
    std::map<std::string, Place> placeByResource;
    for (const WaveSignal& signal : m_all) {
        const IdentifierMeaning meaning = identifierMeaning(signal.variable->identifier);
        if (*meaning.category)
            placeByResource.try_emplace(resourceKey(meaning), placeOf(signal));
    }
    std::map<Place, std::vector<WaveSignal>> others;
    std::vector<Place> newPlaces;
    for (std::size_t index = 0; index < taken.size(); ++index) {
        if (taken[index])
            continue;
        const VcdVariable& variable = header.variables[index];
        const IdentifierMeaning meaning = identifierMeaning(variable.identifier);
        Place place;
        const auto known = placeByResource.find(resourceKey(meaning));
        if (known != placeByResource.end()) {
            place = known->second;
        } else if (*meaning.category) {
            const std::string core = coreNames.nameOf(meaning, variable.name);
            place = {core, meaning.category, meaning.isGrouped ? meaning.resource : ""};
            if (meaning.isGrouped && meaning.resource.empty()) {
                std::string_view base = withoutSuffix(variable.name, meaning.suffix);
                if (base.size() > core.size())
                    base.remove_prefix(core.size() + 1);
                place.group = base;
            }
            placeByResource[resourceKey(meaning)] = place;
        }
        auto& there = others[place];
        if (there.empty())
            newPlaces.push_back(place);
        there.push_back(
            {&variable, place.core, place.category, place.group, meaning.radix, nullptr, "", false});
    }

    // Behind the last signal of their place, where the document has it; else behind all others.
    std::vector<WaveSignal> ordered;
    ordered.reserve(header.variables.size());
    const auto addOthersOf = [&](const Place& place) {
        const auto found = others.find(place);
        if (found == others.end())
            return;
        std::ranges::move(found->second, std::back_inserter(ordered));
        others.erase(found);
    };
    for (std::size_t index = 0; index < m_all.size(); ++index) {
        const Place place = placeOf(m_all[index]);
        const bool isLast = index + 1 == m_all.size() || placeOf(m_all[index + 1]) != place;
        ordered.push_back(std::move(m_all[index]));
        if (isLast)
            addOthersOf(place);
    }
    for (const Place& place : newPlaces)
        addOthersOf(place);
    m_all = std::move(ordered);
}

void WaveSignals::addDocs(const VcdHeader& header) {
    std::vector<SignalPattern> patterns;
    for (const StructureDoc& doc : header.structure.docs)
        patterns.emplace_back(doc.pattern);
    for (WaveSignal& signal : m_all) {
        const std::string path = header.path(*signal.variable);
        for (std::size_t index = 0; index < patterns.size() && !signal.doc; ++index)
            if (patterns[index].matches(path))
                signal.doc = &header.structure.docs[index];
    }
}

void WaveSignals::addUserNames(const VcdHeader& header) {
    std::unordered_map<std::string, std::string> names;
    for (const StructureAliasMap& map : header.structure.portAliases)
        for (const StructureAlias& entry : map.entries)
            names.try_emplace(map.core + '\n' + entry.name, entry.alias);
    for (WaveSignal& signal : m_all) {
        if (signal.group.empty())
            continue;
        const auto found = names.find(signal.core + '\n' + signal.group);
        if (found != names.end())
            signal.userName = found->second;
    }
}
