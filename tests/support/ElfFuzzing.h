#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <array>
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

// A structure of the file at this place; zeros where the file has none.
template<class Structure>
std::array<unsigned char, Structure::s_numBytes> structureAt(std::string_view file, std::size_t offset) {
    std::array<unsigned char, Structure::s_numBytes> bytes{};
    if (offset < file.size())
        file.copy(reinterpret_cast<char*>(bytes.data()), bytes.size(), offset);
    return bytes;
}

// Strings without the empty one, and no symbol table, are a stated limit that ends the process. Says so of
// some other files too: of those whose strings don't begin with the empty one.
inline bool hasStatedEnd(std::string_view file) {
    const ElfHeader header(structureAt<ElfHeader>(file, 0).data());
    bool hasSymbols = false;
    bool hasBadStrings = false;
    for (unsigned i = 1; i < header.e_shnum; ++i) {
        const std::size_t place = std::size_t{header.e_shoff} + i * ElfSectionHeader::s_numBytes;
        const ElfSectionHeader section(structureAt<ElfSectionHeader>(file, place).data(), i);
        const bool beginsWell = section.sh_offset >= file.size() || file[section.sh_offset] == '\0';
        hasSymbols = hasSymbols || section.sh_type == ElfSectionHeader::SHT_SYMTAB;
        hasBadStrings = hasBadStrings || (section.sh_type == ElfSectionHeader::SHT_STRTAB &&
                                          (section.sh_size == 0 || !beginsWell));
    }
    return hasBadStrings && !hasSymbols;
}

// Thousands of headers that the file doesn't hold take long, and show nothing that a few don't.
inline bool claimsManyHeaders(std::string_view file) {
    constexpr unsigned s_many = 256;
    const ElfHeader header(structureAt<ElfHeader>(file, 0).data());
    return header.e_phnum > s_many || header.e_shnum > s_many;
}

// Reads the file with both kinds of handler, and gives what could be read to `use`.
template<class Use>
void readBothWays(const std::string& bytes, Use use) {
    if (claimsManyHeaders(bytes) || hasStatedEnd(bytes))
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
