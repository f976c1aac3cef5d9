#pragma once

#include <string>

// Sets or unsets an environment variable, and puts the earlier state back when the object goes.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string& value);
    explicit ScopedVariable(std::string name); // unsets it
    ~ScopedVariable();

    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    std::string m_name;
    bool m_wasSet;
    std::string m_earlier;
};
