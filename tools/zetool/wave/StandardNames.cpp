#include "tools/zetool/wave/StandardNames.h"

namespace {

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

} // namespace

std::string standardName(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (isLetterOrDigit(c))
            name += c;
        else if (c != ']')
            name += '_';
    }
    if (name.empty() || (name.front() >= '0' && name.front() <= '9'))
        name.insert(0, "_");
    return name;
}

StandardNames::StandardNames(const VcdHeader& header, const WaveSignals& signals,
                             const std::vector<bool>& isKept, Leaf leaf)
    : m_scopes(1),
      m_names(signals.all().size()),
      m_paths(signals.all().size()),
      m_scopeOf(signals.all().size()) {
    for (std::size_t index = 0; index < signals.all().size(); ++index) {
        if (!isKept[index])
            continue;
        const WaveSignal& signal = signals.all()[index];
        m_scopeOf[index] = scopeOf(header, signal);
        StandardScope& scope = m_scopes[m_scopeOf[index]];
        scope.signals.push_back(index);
        // In a file with scopes of its own, names are without their core already.
        const bool isWhole = leaf == Leaf::Whole || signal.variable->scope != 0;
        m_names[index] = unique(scope, isWhole ? signal.variable->name : signal.nameInCore());
        m_paths[index] = scope.path + (scope.path.empty() ? "" : ".") + m_names[index];
    }
}

std::vector<std::string> StandardNames::scopesOf(std::size_t signal) const {
    std::vector<std::string> names;
    for (std::size_t scope = m_scopeOf[signal]; scope != 0; scope = m_scopes[scope].parent)
        names.insert(names.begin(), m_scopes[scope].name);
    return names;
}

std::string StandardNames::coreName(const std::string& core) const {
    const auto found = m_children.find({0, core});
    return found == m_children.end() ? standardName(core) : m_scopes[found->second].name;
}

std::size_t StandardNames::scopeOf(const VcdHeader& header, const WaveSignal& signal) {
    std::vector<std::size_t> sourceScopes;
    for (std::size_t scope = signal.variable->scope; scope != 0; scope = header.scopes[scope].parent)
        sourceScopes.insert(sourceScopes.begin(), scope);
    std::size_t scope = 0;
    for (const std::size_t source : sourceScopes)
        scope = child(scope, header.scopes[source].name, header.scopes[source].type);
    // A file with scopes of its own has its places there already.
    if (!sourceScopes.empty())
        return scope;
    for (const std::string* name : {&signal.core, &signal.category, &signal.group})
        if (!name->empty())
            scope = child(scope, *name, "module");
    return scope == 0 ? child(0, "top", "module") : scope;
}

std::size_t StandardNames::child(std::size_t parent, const std::string& key, const std::string& type) {
    const auto [found, isNew] = m_children.try_emplace({parent, key}, m_scopes.size());
    if (!isNew)
        return found->second;
    StandardScope scope;
    scope.type = type.empty() ? "module" : type;
    scope.name = unique(m_scopes[parent], key);
    scope.parent = parent;
    scope.path = m_scopes[parent].path + (parent == 0 ? "" : ".") + scope.name;
    m_scopes[parent].scopes.push_back(m_scopes.size());
    m_scopes.push_back(std::move(scope));
    return m_scopes.size() - 1;
}

std::string StandardNames::unique(StandardScope& scope, std::string_view text) {
    const std::string name = standardName(text);
    const auto [used, isNew] = scope.usedNames.try_emplace(name, 2);
    if (isNew)
        return name;
    for (;;) {
        std::string candidate = name + "_" + std::to_string(used->second++);
        if (scope.usedNames.try_emplace(candidate, 2).second)
            return candidate;
    }
}
