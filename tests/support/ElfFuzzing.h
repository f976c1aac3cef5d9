#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

// What the fuzz targets of the ELF family share.

// Thrown by a `FuzzErrorHandler`.
struct Reported {};

// Throws at messages that may end the process, or only at those behind which it would end in any case.
class FuzzErrorHandler : public ErrorHandler {
public:
    explicit FuzzErrorHandler(bool throwsAlways) : m_throwsAlways(throwsAlways) {}

    void fatalError(bool exit, const char* format, ...) override {
        // A second table, strings without memory.
        constexpr std::array<std::string_view, 3> s_last = {"ERROR: Only one ",
                                                            "ERROR: Failed to allocate memory%s",
                                                            "ERROR: Failed to allocate memory for string"};
        const std::string_view message = format;
        const auto isLast = [&](std::string_view last) { return message.starts_with(last); };
        if (exit && (m_throwsAlways || std::any_of(s_last.begin(), s_last.end(), isLast)))
            throw Reported();
    }

private:
    bool m_throwsAlways;
};

// Strings without the empty one, and no symbol table, are a stated limit that ends the process. Says so of
// some other files too: of those whose strings don't begin with the empty one.
inline bool hasStatedEnd(std::string_view bytes) {
    const auto copyAt = [&](std::size_t offset, unsigned char* structure, std::size_t numBytes) {
        std::memset(structure, 0, numBytes);
        if (offset < bytes.size())
            bytes.copy(reinterpret_cast<char*>(structure), numBytes, offset);
    };
    std::array<unsigned char, ElfHeader::s_numBytes> headerBytes;
    copyAt(0, headerBytes.data(), headerBytes.size());
    const ElfHeader header(headerBytes.data());
    bool hasSymbols = false;
    bool hasBadStrings = false;
    for (unsigned i = 1; i < header.e_shnum; ++i) {
        std::array<unsigned char, ElfSectionHeader::s_numBytes> sectionBytes;
        copyAt(std::size_t{header.e_shoff} + i * sectionBytes.size(), sectionBytes.data(),
               sectionBytes.size());
        const ElfSectionHeader section(sectionBytes.data(), i);
        unsigned char first = 0;
        copyAt(section.sh_offset, &first, 1);
        hasSymbols = hasSymbols || section.sh_type == ElfSectionHeader::SHT_SYMTAB;
        hasBadStrings = hasBadStrings || (section.sh_type == ElfSectionHeader::SHT_STRTAB &&
                                          (section.sh_size == 0 || first != 0));
    }
    return hasBadStrings && !hasSymbols;
}

// Reads the file with both kinds of handler, and gives what could be read to `use`.
template<class Use>
void readBothWays(const std::string& bytes, Use use) {
    if (hasStatedEnd(bytes))
        return;
    for (const bool throwsAlways : {true, false}) {
        FuzzErrorHandler errorHandler(throwsAlways);
        std::istringstream stream(bytes);
        try {
            ElfHandler elf(&errorHandler, stream);
            use(elf);
        } catch (const Reported&) {
            // a fault in the file
        }
    }
}
