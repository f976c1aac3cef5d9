#pragma once

#include "tests/support/ScopedVariable.h"

#include <list>
#include <string>

// None of the variables that name the tools' files is set while this lives, but those that the test sets.
class ZccVariables {
public:
    ZccVariables() {
        for (const char* name : {"ZCC_TARGET_PATH", "ZCC_DEVICE_PATH", "ZCC_LIBRARY_PATH", "ZCC_INCLUDE_PATH",
                                 "ZCC_ZC_INCLUDE_PATH", "ZCC_C_INCLUDE_PATH", "ZCC_CPLUS_INCLUDE_PATH",
                                 "ZCC_ASSEMBLER_INCLUDE_PATH", "ZCC_DEFAULT_TARGET", "ZCC_EXEC_PREFIX"})
            m_variables.emplace_back(name);
    }
    ~ZccVariables() {
        while (!m_variables.empty())
            m_variables.pop_back(); // the first state comes back last
    }

    void set(const std::string& name, const std::string& value) { m_variables.emplace_back(name, value); }

private:
    std::list<ScopedVariable> m_variables;
};
