#include "tools/zetool/wave/IdentifierTable.h"

std::uint32_t IdentifierTable::add(std::string_view identifier, std::uint32_t number) {
    if (identifier.size() > s_shortSize || identifier.empty())
        return m_long.try_emplace(std::string(identifier), number).first->second;
    char padded[s_shortSize] = {};
    std::memcpy(padded, identifier.data(), identifier.size());
    const std::uint32_t known = find({padded, identifier.size()});
    if (known != s_none)
        return known;
    if (2 * (m_numEntries + 1) > m_entries.size()) {
        std::vector<Entry> old(2 * m_entries.size());
        old.swap(m_entries);
        m_numEntries = 0;
        for (const Entry& entry : old)
            if (entry.number != s_none)
                insert(entry.key, entry.number);
    }
    insert(keyOf(padded, identifier.size()), number);
    return number;
}

std::uint32_t IdentifierTable::findLong(std::string_view identifier) const {
    const auto found = m_long.find(std::string(identifier));
    return found == m_long.end() ? s_none : found->second;
}

void IdentifierTable::insert(const Key& key, std::uint32_t number) {
    std::size_t at = hash(key) & (m_entries.size() - 1);
    while (m_entries[at].number != s_none)
        at = (at + 1) & (m_entries.size() - 1);
    m_entries[at] = {key, number};
    ++m_numEntries;
}
