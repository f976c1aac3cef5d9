#include "tools/zetool/Invocation.h"

const std::string& Invocation::value(std::string_view name) const {
    static const std::string s_none;
    const std::vector<std::string>& all = values(name);
    return all.empty() ? s_none : all.front();
}

const std::vector<std::string>& Invocation::values(std::string_view name) const {
    static const std::vector<std::string> s_none;
    const auto found = m_values.find(name);
    return found == m_values.end() ? s_none : found->second;
}

void Invocation::add(std::string_view name, std::string value) {
    m_values[std::string(name)].push_back(std::move(value));
}
