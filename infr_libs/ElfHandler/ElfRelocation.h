#pragma once

#include <cstdint>

// One relocation: a place in a section, how to patch it, and the symbol that it refers to. Kept by value in
// an `ElfRelocationTable`.
class ElfRelocation {
public:
    // Bytes of an entry in the file, without and with the addend (`Elf32_Rel`, `Elf32_Rela`).
    static constexpr std::uint32_t s_numBytes = 8;
    static constexpr std::uint32_t s_numBytesWithAddend = 12;

    static constexpr std::uint32_t entrySize(bool withAddend) {
        return withAddend ? s_numBytesWithAddend : s_numBytes;
    }

    std::uint32_t r_offset = 0;
    std::uint32_t r_info = 0; // symbol index above bit 8, type in the low 8 bits
    std::int32_t r_addend = 0;

    ElfRelocation(std::uint32_t offset, std::uint32_t type, std::uint32_t symbol, std::int32_t addend);

    // From the `entrySize` bytes of the file.
    ElfRelocation(bool withAddend, const unsigned char* bytes);

    virtual ~ElfRelocation();

    std::uint32_t getOffset() const { return r_offset; }
    void setOffset(std::uint32_t offset) { r_offset = offset; }

    std::int32_t getAddend() const { return r_addend; }

    std::uint32_t getType() const { return r_info & s_typeMask; }

    std::uint32_t getSymbol() const { return r_info >> s_symbolShift; }

    // Keeps the type.
    void setSymbol(std::uint32_t symbol) { r_info = (symbol << s_symbolShift) + getType(); }

    // Did the bytes that it applies to go away? Only a record: the entry stays in its table.
    bool getRemoved() const { return m_removed; }
    void setRemoved(bool removed) { m_removed = removed; }

    // Writes `entrySize` bytes.
    void encode(bool withAddend, unsigned char* bytes) const;

    // Prints four lines to standard output.
    void display() const;

private:
    static constexpr std::uint32_t s_symbolShift = 8;
    static constexpr std::uint32_t s_typeMask = 0xFF;

    // Calls visit(name, field) for each field that is in the file, in file order.
    template<class Relocation, class Visit>
    static void eachField(Relocation& relocation, bool withAddend, Visit visit) {
        visit("r_offset", relocation.r_offset);
        visit("r_info", relocation.r_info);
        if (withAddend)
            visit("r_addend", relocation.r_addend);
    }

    bool m_removed = false;
};
