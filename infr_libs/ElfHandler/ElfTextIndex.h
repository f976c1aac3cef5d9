#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

// A hash index from texts to 32-bit values. The texts stay with the owner of the index, who says whether a
// value belongs to a text: eight bytes an entry stand against a node and a copy of the text in a map, which
// for a table of a million names is what counts.
class ElfTextIndex {
public:
    static std::uint32_t hashOf(std::string_view text) {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
    }

    // Makes room for this many entries at once.
    void reserve(std::size_t numEntries);

    // The value whose hash is this and for which isText(value) holds, or null.
    template<class IsText>
    const std::uint32_t* find(std::uint32_t hash, IsText isText) const {
        if (m_slots.empty())
            return nullptr;
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = m_slots[i];
            if (slot.value == s_free)
                return nullptr;
            if (slot.hash == hash && isText(slot.value))
                return &slot.value;
        }
    }

    // Adds a value, below 0xFFFFFFFF, for a text that isn't in the index.
    void insert(std::uint32_t hash, std::uint32_t value);

private:
    static constexpr std::uint32_t s_free = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t value = s_free;
    };

    void place(Slot entry);
    void resize(std::size_t numSlots);

    std::vector<Slot> m_slots; // a power of two of them, at most three quarters taken; searched upwards
    std::size_t m_numEntries = 0;
};
