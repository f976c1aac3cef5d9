#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// From identifiers to numbers, for one lookup a value line. Identifiers of up to sixteen bytes, which is all
// that anybody writes, are two words compared at once; longer ones go to an ordinary map.
class IdentifierTable {
public:
    static constexpr std::uint32_t s_none = 0xffffffff;

    IdentifierTable() : m_entries(s_firstSize) {}

    // Gives the identifier the number, unless it has one; returns the number that it has.
    std::uint32_t add(std::string_view identifier, std::uint32_t number);

    // The number of an identifier, or s_none. Sixteen bytes from the text's start must be readable.
    std::uint32_t find(std::string_view identifier) const {
        if (identifier.size() > s_shortSize || identifier.empty())
            return findLong(identifier);
        const Key key = keyOf(identifier.data(), identifier.size());
        for (std::size_t at = hash(key);; ++at) {
            const Entry& entry = m_entries[at & (m_entries.size() - 1)];
            if (entry.key == key || entry.number == s_none)
                return entry.number;
        }
    }

private:
    static constexpr std::size_t s_shortSize = 16;
    static constexpr std::size_t s_firstSize = 64; // a power of two, as all later sizes

    struct Key {
        std::uint64_t low = 0;
        std::uint64_t high = 0;
        bool operator==(const Key&) const = default;
    };
    struct Entry {
        Key key;
        std::uint32_t number = s_none;
    };

    // The bytes, zeros behind them: no identifier holds a zero byte, so length needs no place of its own.
    static Key keyOf(const char* text, std::size_t size) {
        Key key;
        std::memcpy(&key.low, text, sizeof key.low);
        if (size < sizeof key.low) {
            key.low &= ~std::uint64_t(0) >> (64 - 8 * size);
        } else if (size > sizeof key.low) {
            std::memcpy(&key.high, text + sizeof key.low, sizeof key.high);
            key.high &= ~std::uint64_t(0) >> (128 - 8 * size);
        }
        return key;
    }

    static std::size_t hash(const Key& key) {
        const std::uint64_t mixed = (key.low ^ std::rotl(key.high, 23)) * 0x9E3779B97F4A7C15u;
        return static_cast<std::size_t>(mixed >> 32);
    }

    std::uint32_t findLong(std::string_view identifier) const;
    void insert(const Key& key, std::uint32_t number);

    std::vector<Entry> m_entries;
    std::size_t m_numEntries = 0;
    std::unordered_map<std::string, std::uint32_t> m_long;
};

static_assert(std::endian::native == std::endian::little);
