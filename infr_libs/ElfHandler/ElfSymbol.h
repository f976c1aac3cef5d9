#pragma once

#include <cstdint>
#include <iosfwd>

// One entry of the symbol table, `Elf32_Sym`, with the standard's field names. Owned by an
// `ElfSymbolTable`, where it stays in one place.
class ElfSymbol {
public:
    static constexpr std::uint32_t s_numBytes = 16;

    enum Binding : std::uint32_t { STB_LOCAL = 0, STB_GLOBAL = 1, STB_WEAK = 2 };
    enum Type : std::uint32_t { STT_NOTYPE = 0, STT_OBJECT = 1, STT_FUNC = 2 };
    enum SectionIndex : std::uint16_t {
        SHN_UNDEF = 0,
        SHN_LORESERVE = 0xFF00, // from here on no section is meant
        SHN_ABS = 0xFFF1,
        SHN_COMMON = 0xFFF2,
    };

    std::uint32_t st_name = 0;
    std::uint32_t st_value = 0;
    std::uint32_t st_size = 0;
    std::uint8_t st_info = 0;
    std::uint8_t st_other = 0;
    std::uint16_t st_shndx = 0;

    // From the stream's position; what the stream lacks is 0.
    explicit ElfSymbol(std::istream& stream);

    // From the 16 bytes of the file.
    explicit ElfSymbol(const unsigned char* bytes);

    ElfSymbol(std::uint32_t nameOffset, std::uint32_t value, std::uint32_t sectionIndex,
              std::uint32_t binding, std::uint32_t type, std::uint32_t size);

    virtual ~ElfSymbol();

    unsigned int getBinding() const { return st_info >> 4; }
    unsigned int getType() const { return st_info & 0xF; }

    // Calls visit(name, field) for each field, in file order.
    template<class Symbol, class Visit>
    static void eachField(Symbol& symbol, Visit visit) {
        visit("st_name", symbol.st_name);
        visit("st_value", symbol.st_value);
        visit("st_size", symbol.st_size);
        visit("st_info", symbol.st_info);
        visit("st_other", symbol.st_other);
        visit("st_shndx", symbol.st_shndx);
    }
};
