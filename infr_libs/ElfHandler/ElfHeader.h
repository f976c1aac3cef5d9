#pragma once

#include <array>
#include <cstdint>

// The file header, `Elf32_Ehdr`, with the standard's field names. Made and owned by an `ElfHandler`.
class ElfHeader {
public:
    static constexpr std::uint32_t s_numBytes = 52;
    static constexpr std::uint32_t s_magic = 0x464C457F; // the first four bytes, read as one word

    std::array<std::uint8_t, 16> e_ident{};
    std::uint16_t e_type = 0;
    std::uint16_t e_machine = 0;
    std::uint32_t e_version = 0;
    std::uint32_t e_entry = 0;
    std::uint32_t e_phoff = 0;
    std::uint32_t e_shoff = 0;
    std::uint32_t e_flags = 0;
    std::uint16_t e_ehsize = 0;
    std::uint16_t e_phentsize = 0;
    std::uint16_t e_phnum = 0;
    std::uint16_t e_shentsize = 0;
    std::uint16_t e_shnum = 0;
    std::uint16_t e_shstrndx = 0;

    ElfHeader() = default;

    // From the 52 bytes of the file.
    explicit ElfHeader(const unsigned char* bytes);

    virtual ~ElfHeader();

    unsigned int getType() const { return e_type; }

    // Do the first four bytes say that this is an ELF file? Nothing else of the header is ever checked.
    bool hasMagic() const;

    // Calls visit(name, field) for each field, in file order.
    template<class Header, class Visit>
    static void eachField(Header& header, Visit visit) {
        visit("e_ident", header.e_ident);
        visit("e_type", header.e_type);
        visit("e_machine", header.e_machine);
        visit("e_version", header.e_version);
        visit("e_entry", header.e_entry);
        visit("e_phoff", header.e_phoff);
        visit("e_shoff", header.e_shoff);
        visit("e_flags", header.e_flags);
        visit("e_ehsize", header.e_ehsize);
        visit("e_phentsize", header.e_phentsize);
        visit("e_phnum", header.e_phnum);
        visit("e_shentsize", header.e_shentsize);
        visit("e_shnum", header.e_shnum);
        visit("e_shstrndx", header.e_shstrndx);
    }
};
