#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

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

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };

    std::unordered_map<std::string, Number, Hash, std::equal_to<>> m_numbers; // of the settled names

    // The lowest free number behind four first bytes. Short names with different first bytes never meet, and
    // none is ever given back, so what is below is taken and what is above is free.
    std::unordered_map<std::string, Number, Hash, std::equal_to<>> m_nextNumbers;
};
