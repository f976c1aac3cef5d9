#include "infr_libs/ElfHandler/ElfTextIndex.h"

#include <bit>
#include <utility>

namespace {

constexpr std::size_t s_fewestSlots = 16;

bool isTooFull(std::size_t numEntries, std::size_t numSlots) {
    return numEntries > numSlots / 4 * 3;
}

} // namespace

void ElfTextIndex::reserve(std::size_t numEntries) {
    const std::size_t numSlots = std::bit_ceil(numEntries + numEntries / 3 + s_fewestSlots);
    if (numSlots > m_slots.size())
        resize(numSlots);
}

void ElfTextIndex::insert(std::uint32_t hash, std::uint32_t value) {
    if (isTooFull(m_numEntries + 1, m_slots.size()))
        resize(m_slots.empty() ? s_fewestSlots : m_slots.size() * 2);
    place({hash, value});
    ++m_numEntries;
}

void ElfTextIndex::place(Slot entry) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = entry.hash & mask;
    while (m_slots[i].value != s_free)
        i = (i + 1) & mask;
    m_slots[i] = entry;
}

void ElfTextIndex::resize(std::size_t numSlots) {
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(numSlots));
    for (const Slot& slot : old) {
        if (slot.value != s_free)
            place(slot);
    }
}
