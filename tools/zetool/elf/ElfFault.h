#pragma once

#include <cstdint>
#include <string>

// Something that is wrong with an ELF file, found by the tool or told by the reader.
struct ElfFault {
    const char* fault;       // the kind, a word that stays
    std::string text;        // what is wrong and where
    std::uint64_t count = 1; // places of this kind; the text tells of the first

    // One line, safe for a terminal.
    std::string line() const;
};
