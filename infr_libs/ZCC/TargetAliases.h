#pragma once

#include <map>
#include <string>

// Old names of target devices and the names that they go by now. There is one instance, `targetAliases`.
class TargetAliases {
public:
    TargetAliases();

    // The present name of a target that is asked for by an old one, or null. Names are compared exactly.
    const char* lookup(const std::string& name) const;

private:
    std::map<std::string, const char*> m_aliases;
};

// Made when the program is loaded, and never changed.
extern const TargetAliases targetAliases;
