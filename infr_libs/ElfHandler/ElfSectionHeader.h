#pragma once

#include <cstdint>
#include <list>
#include <string>

class ElfRelocationTable;
class ElfStrings;

// One entry of the section header table, `Elf32_Shdr`, with the standard's field names, and the relocation
// tables that apply to the section. Owned by an `ElfHandler`, as are the tables.
class ElfSectionHeader {
public:
    static constexpr std::uint32_t s_numBytes = 40;

    enum Type : std::uint32_t {
        SHT_NULL = 0,
        SHT_PROGBITS = 1,
        SHT_SYMTAB = 2,
        SHT_STRTAB = 3,
        SHT_RELA = 4,
        SHT_NOTE = 7,
        SHT_NOBITS = 8,
        SHT_REL = 9,
        SHT_GROUP = 17,
        SHT_INFO = 19, // this and the next two are the tool chain's own
        SHT_EXPR = 20,
        SHT_NETINFO = 21,
    };

    std::uint32_t sh_name = 0;
    std::uint32_t sh_type = 0;
    std::uint32_t sh_flags = 0;
    std::uint32_t sh_addr = 0;
    std::uint32_t sh_offset = 0;
    std::uint32_t sh_size = 0;
    std::uint32_t sh_link = 0;
    std::uint32_t sh_info = 0;
    std::uint32_t sh_addralign = 0;
    std::uint32_t sh_entsize = 0;

    // All fields zero but the index in the table.
    explicit ElfSectionHeader(unsigned int num) : m_num(num) {}

    // From the 40 bytes of the file.
    ElfSectionHeader(const unsigned char* bytes, unsigned int num);

    virtual ~ElfSectionHeader();

    unsigned int getNum() const { return m_num; }
    unsigned int getSectionNumber() const { return m_num; }

    // The text at `sh_name`; empty where that lies outside the strings.
    std::string getName(const ElfStrings* strings) const;

    // The tables whose entries apply to this section, in order of adding.
    const std::list<ElfRelocationTable*>& getRelocations() const { return m_relocations; }

    void addRelocations(ElfRelocationTable* table) { m_relocations.push_back(table); }

    // Calls visit(name, field) for each field, in file order.
    template<class Header, class Visit>
    static void eachField(Header& header, Visit visit) {
        visit("sh_name", header.sh_name);
        visit("sh_type", header.sh_type);
        visit("sh_flags", header.sh_flags);
        visit("sh_addr", header.sh_addr);
        visit("sh_offset", header.sh_offset);
        visit("sh_size", header.sh_size);
        visit("sh_link", header.sh_link);
        visit("sh_info", header.sh_info);
        visit("sh_addralign", header.sh_addralign);
        visit("sh_entsize", header.sh_entsize);
    }

private:
    unsigned int m_num;
    std::list<ElfRelocationTable*> m_relocations;
};
