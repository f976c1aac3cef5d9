#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// The short names under which the functions of a core stand in a waveform, whose values have room for eight
// characters. Names are settled while the waveform's head is written, in the order of the symbols, and only
// looked up afterwards.
//
// A short name is the function's first four bytes, a point, and the lowest number below 1,000 that is free
// behind those bytes: `main.0`, `main.1`. A function that finds none goes by its own first eight bytes, as
// does one that was never settled. Bytes behind the end of a name count as zeros, and a short name ends at
// the first: a function of fewer than four characters goes by its own name.
class ShortFunctionNames {
public:
    static constexpr std::size_t s_numBytes = 8; // of the longest short name

    // Settles a function's short name, and returns it; the same one each time. Takes near-constant time, also
    // when all numbers are taken: then nothing is kept.
    std::string create(std::string_view name);

    // A function's short name. Allocates nothing.
    std::string get(std::string_view name) const;

private:
    using Number = std::uint16_t;
    static constexpr Number s_numNumbers = 1000; // three digits: four bytes and a point in front make eight

    // A place in the table of settled names. Programs have hundreds of thousands of functions: a slot and the
    // bytes of the name are all that one takes, with no allocation of its own.
    struct Slot {
        std::size_t start;    // in m_names
        std::uint32_t length; // 0: a free slot; settled names have four bytes at least
        std::uint32_t hash;
        Number number;
    };

    // The number of the slot that holds the name, or of the free one where it belongs. There must be a free
    // one.
    std::size_t find(std::string_view name, std::uint32_t hash) const;
    void makeRoom();

    std::string m_names;       // the settled names, one behind the other
    std::vector<Slot> m_slots; // their number is a power of two, and at least a third of them free
    std::size_t m_numUsed = 0;

    // The lowest free number behind four first bytes. Short names with different first bytes never meet, and
    // none is ever given back, so what is below is taken and what is above is free.
    std::unordered_map<std::uint32_t, Number> m_nextNumbers;
};
