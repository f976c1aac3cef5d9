#include "tools/zetool/plan/PlanStumbles.h"

#include "tools/zetool/wave/WaveChecker.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string_view>

namespace {

// Texts by kind of trouble, each once.
class Stumbles {
public:
    void add(Trouble trouble, std::string_view text) {
        Kind& kind = m_kinds[static_cast<std::size_t>(trouble)];
        if (kind.seen.emplace(text).second)
            kind.texts.emplace_back(text);
    }

    std::vector<PlanStumble> all() const {
        std::vector<PlanStumble> all;
        for (const TroubleRow& row : s_troubleRows)
            for (const std::string& text : m_kinds[static_cast<std::size_t>(row.trouble)].texts)
                all.push_back({&row, text});
        return all;
    }

private:
    struct Kind {
        std::set<std::string, std::less<>> seen;
        std::vector<std::string> texts;
    };
    std::array<Kind, s_numTroubles> m_kinds;
};

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

void addNames(Stumbles& stumbles, const VcdHeader& header) {
    const bool isOfPlugin = header.isOfPlugin();
    std::set<std::string_view> names;
    std::map<std::string_view, const VcdVariable*> firstOf; // by identifier
    for (const VcdVariable& variable : header.variables) {
        for (const Trouble trouble : nameTroubles(variable, isOfPlugin))
            stumbles.add(trouble, variable.name);
        if (!names.insert(variable.name).second)
            stumbles.add(Trouble::NameIsDouble, variable.name);
        const auto [first, isNew] = firstOf.emplace(variable.identifier, &variable);
        if (isNew || first->second->name == variable.name)
            continue;
        const bool isSameWidth = first->second->width == variable.width;
        stumbles.add(isSameWidth ? Trouble::IdentifierIsDouble : Trouble::WidthsDiffer,
                     variable.identifier + ": " + first->second->name + ", " + variable.name);
    }
    for (const VcdHeaderFault& fault : header.faults)
        stumbles.add(Trouble::Header, fault.text);
}

void addDocument(Stumbles& stumbles, const PlanHead& head) {
    const StructureDocument& document = head.header.structure;
    const std::array<std::pair<Trouble, const std::vector<std::uint64_t>*>, 3> s_kinds = {{
        {Trouble::DocumentIllFormed, &document.illFormedLines},
        {Trouble::DocumentEndsEarly, &document.endLines},
        {Trouble::DocumentUnreadable, &document.unreadableLines},
    }};
    std::vector<std::string_view> lines;
    const std::string_view text = head.text;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    for (const auto& [trouble, numbers] : s_kinds)
        for (const std::uint64_t number : *numbers)
            if (number >= 1 && number <= lines.size())
                stumbles.add(trouble, withoutBlanks(lines[static_cast<std::size_t>(number - 1)]));
}

} // namespace

std::vector<PlanStumble> stumblesOf(const PlanHead& head) {
    Stumbles stumbles;
    addNames(stumbles, head.header);
    addDocument(stumbles, head);
    return stumbles.all();
}
