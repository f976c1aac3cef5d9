#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// A hash index from texts to 32-bit values. The texts stay with the owner of the index, who says which text a
// value belongs to: eight bytes an entry stand against a node and a copy of the text in a map, which for a
// table of a million names is what counts.
//
// A file may be made so that its names share hashes. What would be searched for too long goes to an ordered
// map, with a copy of its text: whatever the names, a look-up compares a few texts and then logarithmically
// many. What is found doesn't depend on the hash.
class ElfTextIndex {
public:
    // A text without zeros and its hash, which serves for looking it up and then adding it.
    struct Key {
        std::string_view text;
        std::uint32_t hash;
    };

    static Key keyOf(std::string_view text) {
        return {text, static_cast<std::uint32_t>(std::hash<std::string_view>()(text))};
    }

    // The text that belongs to a value in the index, with a zero behind it.
    using TextOf = std::function<const char*(std::uint32_t value)>;

    // Entries of one hash that are compared, and slots that are looked at, before the map is asked. Chance
    // alone hardly ever reaches either.
    static constexpr std::size_t s_maxAlike = 8;
    static constexpr std::size_t s_maxSteps = 512;

    explicit ElfTextIndex(TextOf textOf);

    // Makes room for this many entries at once.
    void reserve(std::size_t numEntries);

    // The value of this text, or null.
    const std::uint32_t* find(const Key& key) const;

    // Adds a value, below 0xFFFFFFFF, for a text that isn't in the index.
    void insert(const Key& key, std::uint32_t value);

private:
    static constexpr std::uint32_t s_free = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t value = s_free;
    };

    bool hasText(std::uint32_t value, std::string_view text) const;
    bool place(Slot entry);
    void resize(std::size_t numSlots);

    TextOf m_textOf;
    std::vector<Slot> m_slots; // a power of two of them, at most three quarters taken; searched upwards
    std::size_t m_numTaken = 0;
    std::map<std::string, std::uint32_t, std::less<>> m_others; // those without a slot within reach
};
