#include "tools/zetool/wave/WaveTree.h"

#include <algorithm>
#include <map>

namespace {

std::vector<std::string> placeOf(const VcdHeader& header, const WaveSignal& signal) {
    std::vector<std::string> names;
    for (std::size_t scope = signal.variable->scope; scope != 0; scope = header.scopes[scope].parent)
        names.push_back(header.scopes[scope].name);
    std::ranges::reverse(names);
    if (!names.empty())
        return names;
    for (const std::string* name : {&signal.core, &signal.category, &signal.group})
        if (!name->empty())
            names.push_back(*name);
    return names;
}

} // namespace

std::vector<WaveTreeNode> waveTree(const VcdHeader& header, const WaveSignals& signals) {
    std::vector<WaveTreeNode> nodes(1);
    std::map<std::pair<std::size_t, std::string>, std::size_t> known;
    for (const WaveSignal& signal : signals.all()) {
        std::size_t at = 0;
        ++nodes[0].numSignals;
        for (const std::string& name : placeOf(header, signal)) {
            const auto [found, isNew] = known.try_emplace({at, name}, nodes.size());
            if (isNew) {
                nodes[at].children.push_back(nodes.size());
                nodes.push_back({name, at, {}, {}, 0});
            }
            at = found->second;
            ++nodes[at].numSignals;
        }
        nodes[at].signals.push_back(&signal);
    }
    return nodes;
}
