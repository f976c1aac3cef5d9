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

// The section of this index, as the header places it.
inline ElfSectionHeader sectionAt(std::string_view file, const ElfHeader& header, unsigned index) {
    const std::size_t place = std::size_t{header.e_shoff} + index * ElfSectionHeader::s_numBytes;
    return {structureAt<ElfSectionHeader>(file, place).data(), index};
}

// Strings without the empty one, and no symbol table, are a stated limit that ends the process. Says so of
// some other files too: of those whose strings don't begin with the empty one.
inline bool hasStatedEnd(std::string_view file) {
    const ElfHeader header(structureAt<ElfHeader>(file, 0).data());
    bool hasSymbols = false;
    bool hasBadStrings = false;
    for (unsigned i = 1; i < header.e_shnum; ++i) {
        const ElfSectionHeader section = sectionAt(file, header, i);
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

// Millions of relocations and group members that the file doesn't hold take long too.
inline bool claimsLongTables(std::string_view file) {
    constexpr std::size_t s_long = 0x1000;
    const ElfHeader header(structureAt<ElfHeader>(file, 0).data());
    for (unsigned i = 1; i < header.e_shnum; ++i) {
        const ElfSectionHeader section = sectionAt(file, header, i);
        const bool isTable = section.sh_type == ElfSectionHeader::SHT_RELA ||
                             section.sh_type == ElfSectionHeader::SHT_REL ||
                             section.sh_type == ElfSectionHeader::SHT_GROUP;
        if (isTable && section.sh_size > file.size() + s_long)
            return true;
    }
    return false;
}

// Reads the file with both kinds of handler, and gives what could be read to `use`.
template<class Use>
void readBothWays(const std::string& bytes, Use use) {
    if (claimsManyHeaders(bytes) || claimsLongTables(bytes) || hasStatedEnd(bytes))
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
