#include "tests/support/ScopedVariable.h"

#include <cstdlib>

ScopedVariable::ScopedVariable(std::string name) : m_name(std::move(name)) {
    const char* earlier = std::getenv(m_name.c_str());
    m_wasSet = earlier != nullptr;
    if (earlier)
        m_earlier = earlier;
    unsetenv(m_name.c_str());
}

ScopedVariable::ScopedVariable(std::string name, const std::string& value) : ScopedVariable(std::move(name)) {
    setenv(m_name.c_str(), value.c_str(), 1);
}

ScopedVariable::~ScopedVariable() {
    if (m_wasSet)
        setenv(m_name.c_str(), m_earlier.c_str(), 1);
    else
        unsetenv(m_name.c_str());
}
