#include "infr_libs/ElfHandler/ElfTextIndex.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t s_fewestSlots = 16;

bool isTooFull(std::size_t numTaken, std::size_t numSlots) {
    return numTaken > numSlots / 4 * 3;
}

} // namespace

ElfTextIndex::ElfTextIndex(TextOf textOf) : m_textOf(std::move(textOf)) {}

void ElfTextIndex::reserve(std::size_t numEntries) {
    const std::size_t numSlots = std::bit_ceil(numEntries + numEntries / 3 + s_fewestSlots);
    if (numSlots > m_slots.size())
        resize(numSlots);
}

const std::uint32_t* ElfTextIndex::find(const Key& key) const {
    const std::size_t mask = m_slots.size() - 1;
    const std::size_t numSteps = std::min(m_slots.size(), s_maxSteps);
    std::size_t numAlike = 0;
    for (std::size_t step = 0; step < numSteps && numAlike < s_maxAlike; ++step) {
        const Slot& slot = m_slots[(key.hash + step) & mask];
        if (slot.value == s_free)
            break;
        if (slot.hash != key.hash)
            continue;
        if (hasText(slot.value, key.text))
            return &slot.value;
        ++numAlike;
    }
    if (m_others.empty())
        return nullptr;
    // Also behind a free slot: there were fewer slots when the text was added.
    const auto other = m_others.find(key.text);
    return other != m_others.end() ? &other->second : nullptr;
}

bool ElfTextIndex::hasText(std::uint32_t value, std::string_view text) const {
    // No further than to the first difference: the other text may be long.
    const char* candidate = m_textOf(value);
    return std::strncmp(candidate, text.data(), text.size()) == 0 && candidate[text.size()] == '\0';
}

void ElfTextIndex::insert(const Key& key, std::uint32_t value) {
    if (isTooFull(m_numTaken + 1, m_slots.size()))
        resize(m_slots.empty() ? s_fewestSlots : m_slots.size() * 2);
    if (!place({key.hash, value}))
        m_others.emplace(key.text, value);
}

// False where no slot is free within the reach of a search.
bool ElfTextIndex::place(Slot entry) {
    const std::size_t mask = m_slots.size() - 1;
    const std::size_t numSteps = std::min(m_slots.size(), s_maxSteps);
    std::size_t numAlike = 0;
    for (std::size_t step = 0; step < numSteps && numAlike < s_maxAlike; ++step) {
        Slot& slot = m_slots[(entry.hash + step) & mask];
        if (slot.value == s_free) {
            slot = entry;
            ++m_numTaken;
            return true;
        }
        if (slot.hash == entry.hash)
            ++numAlike;
    }
    return false;
}

void ElfTextIndex::resize(std::size_t numSlots) {
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(numSlots));
    m_numTaken = 0;
    for (const Slot& slot : old) {
        if (slot.value != s_free && !place(slot))
            m_others.emplace(m_textOf(slot.value), slot.value);
    }
}
