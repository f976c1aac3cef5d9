#include "Plugins/WavePlugin/ShortFunctionNames.h"

#include <cstring>
#include <functional>

namespace {

constexpr std::size_t s_startSize = 4;
constexpr std::size_t s_firstSlots = 64;

std::uint32_t hashOf(std::string_view name) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
}

// The first four bytes, as a number that tells them from others.
std::uint32_t startOf(std::string_view name) {
    std::uint32_t start = 0;
    std::memcpy(&start, name.data(), s_startSize);
    return start;
}

std::string shortName(std::string_view name, unsigned int number) {
    std::string text(name.substr(0, s_startSize));
    return text.append(".").append(std::to_string(number));
}

std::string firstBytes(std::string_view name) {
    return std::string(name.substr(0, ShortFunctionNames::s_numBytes));
}

} // namespace

std::size_t ShortFunctionNames::find(std::string_view name, std::uint32_t hash) const {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (slot.length == 0 || (slot.hash == hash && slot.length == name.size() &&
                                 std::memcmp(&m_names[slot.start], name.data(), name.size()) == 0))
            return i;
    }
}

void ShortFunctionNames::makeRoom() {
    if (m_numUsed + 1 <= m_slots.size() / 3 * 2)
        return;
    std::vector<Slot> slots(m_slots.empty() ? s_firstSlots : 2 * m_slots.size());
    const std::size_t mask = slots.size() - 1;
    for (const Slot& slot : m_slots) {
        if (slot.length == 0)
            continue;
        std::size_t i = slot.hash & mask;
        while (slots[i].length != 0)
            i = (i + 1) & mask;
        slots[i] = slot;
    }
    m_slots = std::move(slots);
}

std::string ShortFunctionNames::create(std::string_view name) {
    // A shorter name brings its terminator into the short name, whose text ends there: wanted, though the
    // number behind it is then never seen. No other function has such a name, so there is nothing to settle.
    if (name.size() < s_startSize)
        return std::string(name);

    makeRoom();
    const std::uint32_t hash = hashOf(name);
    Slot& slot = m_slots[find(name, hash)];
    if (slot.length != 0)
        return shortName(name, slot.number);
    Number& next = m_nextNumbers[startOf(name)];
    if (next == s_numNumbers)
        return firstBytes(name);
    slot = {m_names.size(), static_cast<std::uint32_t>(name.size()), hash, next++};
    m_names.append(name);
    ++m_numUsed;
    return shortName(name, slot.number);
}

std::string ShortFunctionNames::get(std::string_view name) const {
    if (name.size() < s_startSize || m_slots.empty())
        return firstBytes(name);
    const Slot& slot = m_slots[find(name, hashOf(name))];
    return slot.length == 0 ? firstBytes(name) : shortName(name, slot.number);
}
