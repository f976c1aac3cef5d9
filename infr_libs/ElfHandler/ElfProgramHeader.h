#pragma once

#include <cstdint>

// One entry of the program header table, `Elf32_Phdr`, with the standard's field names. Owned by an
// `ElfHandler`.
class ElfProgramHeader {
public:
    static constexpr std::uint32_t s_numBytes = 32;

    enum Type : std::uint32_t { PT_LOAD = 1 };

    std::uint32_t p_type = 0;
    std::uint32_t p_offset = 0;
    std::uint32_t p_vaddr = 0;
    std::uint32_t p_paddr = 0;
    std::uint32_t p_filesz = 0;
    std::uint32_t p_memsz = 0;
    std::uint32_t p_flags = 0;
    std::uint32_t p_align = 0;

    // All fields zero but the index in the table.
    explicit ElfProgramHeader(unsigned int num) : m_num(num) {}

    // From the 32 bytes of the file.
    ElfProgramHeader(const unsigned char* bytes, unsigned int num);

    virtual ~ElfProgramHeader();

    unsigned int getNum() const { return m_num; }

    // Calls visit(name, field) for each field, in file order.
    template<class Header, class Visit>
    static void eachField(Header& header, Visit visit) {
        visit("p_type", header.p_type);
        visit("p_offset", header.p_offset);
        visit("p_vaddr", header.p_vaddr);
        visit("p_paddr", header.p_paddr);
        visit("p_filesz", header.p_filesz);
        visit("p_memsz", header.p_memsz);
        visit("p_flags", header.p_flags);
        visit("p_align", header.p_align);
    }

private:
    unsigned int m_num;
};
