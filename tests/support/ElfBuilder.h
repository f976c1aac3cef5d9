#pragma once

#include "tests/support/LabelledBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Makes a 32-bit little-endian ELF file in a few lines:
//
//     ElfBuilder elf;
//     elf.addSegment({.vaddr = 0x10000, .bytes = code});
//     elf.addFunction("main", 0x10000);
//     const std::string file = elf.build().bytes;
//
// The file has the null section, the sections in order of adding, and then `.symtab` and `.strtab`, which
// are made from the symbols. Header, program headers and section headers come first, then the bytes of
// segments and sections. It is written without help of what it tests.
//
// Fields are labelled with the standard's names; those of tables have the index behind them in brackets, as
// in `p_filesz[0]`, `sh_size[2]` and `st_value[1]`.
class ElfBuilder {
public:
    static constexpr std::uint32_t s_function = 2;  // STT_FUNC
    static constexpr std::uint32_t s_global = 0x10; // STB_GLOBAL, in the place that it has in st_info

    struct Segment {
        std::uint32_t type = 1; // PT_LOAD
        std::uint32_t vaddr = 0;
        std::optional<std::uint32_t> paddr = {}; // else as vaddr
        std::string bytes = {};
        std::optional<std::uint32_t> memsz = {}; // else the number of bytes
        std::uint32_t flags = 5;
        std::uint32_t align = 1;
    };

    struct Section {
        std::string name = {};
        std::uint32_t type = 1; // SHT_PROGBITS
        std::string bytes = {};
        std::optional<std::uint32_t> size = {}; // else the number of bytes
        std::optional<std::uint32_t> segment =
            {}; // inside this segment, at `offset`, and with no bytes of its own
        std::uint32_t offset = 0;
        std::uint32_t flags = 0;
        std::uint32_t addr = 0;
        std::optional<std::uint32_t> link = {}; // else the symbol table, for relocations and groups
        std::uint32_t info = 0;
        std::uint32_t align = 1;
        std::uint32_t entsize = 0;
    };

    struct Symbol {
        std::string name = {};
        std::uint32_t value = 0;
        std::uint32_t size = 0;
        std::uint32_t info = 0; // binding * 16 + type
        std::uint32_t other = 0;
        std::uint32_t section = 0;
        std::optional<std::uint32_t> nameOffset = {}; // instead of the offset of the name
    };

    std::uint32_t m_type = 2;         // ET_EXEC
    std::uint32_t m_machine = 0xB49E; // the tool chain's
    std::uint32_t m_entry = 0;
    bool m_hasSymbols = true;                  // is there a symbol table?
    bool m_hasStrings = true;                  // is there a string table?
    std::optional<std::string> m_strings = {}; // the bytes of the string table, instead of the names in use

    // Each returns the index in its table.
    unsigned addSegment(Segment segment);
    unsigned addSection(Section section);
    unsigned addSymbol(Symbol symbol);
    unsigned addFunction(std::string name, std::uint32_t value, std::uint32_t size = 4);

    LabelledBytes build() const;

private:
    std::vector<Segment> m_segments;
    std::vector<Section> m_sections = {{.name = "", .type = 0, .align = 0}};
    std::vector<Symbol> m_symbols = {{}};
};
