#pragma once

#include "tools/zetool/wave/WaveSignals.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

// A text as a simple identifier of IEEE 1364: letters, digits and underscores, no digit first. A bracketed
// number becomes a number behind an underscore: "stdcore[0]" is "stdcore_0".
std::string standardName(std::string_view text);

// A scope of the standard file, with what it holds in order.
struct StandardScope {
    std::string type = "module";
    std::string name;
    std::size_t parent = 0;
    std::string path;                // names of the scopes before it and its own, points between; top: empty
    std::vector<std::size_t> scopes; // indexes into all scopes
    std::vector<std::size_t> signals;
    std::map<std::string, unsigned int> usedNames; // and the number to try next for each
};

// The names and scopes that signals get in a standard file: core, category and group become scopes, names
// become identifiers, unique in their scope. Other tools' scopes stay, their names made legal. What stands in
// none gets the scope "top".
class StandardNames {
public:
    // `Leaf::Whole` keeps the core in each name, for readers that show no scopes.
    enum class Leaf { InScope, Whole };

    StandardNames(const VcdHeader& header, const WaveSignals& signals, const std::vector<bool>& isKept,
                  Leaf leaf = Leaf::InScope);

    // Scope 0 is the top.
    const std::vector<StandardScope>& scopes() const { return m_scopes; }

    // Name of a signal in its scope, and with its scopes before it.
    const std::string& name(std::size_t signal) const { return m_names[signal]; }
    const std::string& path(std::size_t signal) const { return m_paths[signal]; }

    // Names of the scopes that a signal stands in, from the top.
    std::vector<std::string> scopesOf(std::size_t signal) const;

    // The scope's name that a core of the source got.
    std::string coreName(const std::string& core) const;

private:
    std::size_t scopeOf(const VcdHeader& header, const WaveSignal& signal);
    std::size_t child(std::size_t parent, const std::string& key, const std::string& type);
    static std::string unique(StandardScope& scope, std::string_view text);

    std::vector<StandardScope> m_scopes;
    std::map<std::pair<std::size_t, std::string>, std::size_t> m_children; // by the source's names
    std::vector<std::string> m_names;
    std::vector<std::string> m_paths;
    std::vector<std::size_t> m_scopeOf; // by signal
};
