#pragma once

#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "tools/zetool/elf/ElfFault.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// An ELF file as its bytes say it, for looking into files of any kind and state. Unlike the reader that the
// plugin has (`ElfReading`), it takes files with several tables of symbols and strings and section types that
// the reader refuses, changes no name, and lists of a cut file what is left. Records are the library's.
//
// Headers, symbols and relocations that don't lie in the file as a whole are left out.
class ElfView {
public:
    // Bytes of any kind; where `refusal` says so, there is nothing to see.
    explicit ElfView(std::string bytes);

    // Why the file can't be looked into: no ELF file, or none of 32 bits in little-endian order; else empty.
    const std::string& refusal() const { return m_refusal; }

    // What the file lacks: tables and contents that reach past its end.
    const std::vector<ElfFault>& faults() const { return m_faults; }

    const std::string& bytes() const { return m_bytes; }
    const ElfHeader& header() const { return m_header; }
    const std::vector<ElfProgramHeader>& segments() const { return m_segments; }
    const std::vector<ElfSectionHeader>& sections() const { return m_sections; }

    // The section's bytes that are in the file; none of a section without contents.
    std::string_view contents(const ElfSectionHeader& section) const;

    // The text at this offset of a section of strings; nothing where the section is none of strings, or the
    // offset lies outside, or the text has no end.
    std::optional<std::string_view> text(std::uint32_t section, std::uint32_t offset) const;

    std::optional<std::string_view> sectionName(const ElfSectionHeader& section) const;

    // "section 3 '.text'", as messages say it.
    std::string sectionPlace(const ElfSectionHeader& section) const;

    // Symbols of a table of symbols.
    std::size_t numSymbols(const ElfSectionHeader& table) const;
    ElfSymbol symbol(const ElfSectionHeader& table, std::size_t index) const;

    // A symbol's own name, or that of its section, for a section's symbol without one.
    std::optional<std::string_view> symbolName(const ElfSectionHeader& table, const ElfSymbol& symbol) const;

private:
    void readHeaders();
    void findMissing();

    std::string m_bytes;
    std::string m_refusal;
    std::vector<ElfFault> m_faults;
    ElfHeader m_header;
    std::vector<ElfProgramHeader> m_segments;
    std::vector<ElfSectionHeader> m_sections;
};

// What tables may take in sum, as many bytes as the file has: tables that all claim the same bytes would else
// multiply it.
class ElfAllowance {
public:
    explicit ElfAllowance(const ElfView& view) : m_numBytes(view.bytes().size()) {}

    // May this section be listed too? If not, adds a fault.
    bool take(const ElfView& view, const ElfSectionHeader& section, std::vector<ElfFault>& faults);

private:
    std::uint64_t m_numBytes;
};

// Is this a table of symbols, of the linker's or of the loader's?
bool hasSymbols(const ElfSectionHeader& section);

// What is wrong with a table whose entries haven't the size that the standard gives them.
std::string wrongEntrySize(const ElfSectionHeader& section, std::uint32_t entrySize);
