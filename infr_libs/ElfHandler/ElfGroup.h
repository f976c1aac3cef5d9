#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

class ElfHandler;
class ElfSectionHeader;
class ElfSymbol;
class ErrorHandler;

// One group section: sections that a linker keeps or drops together. Its first word holds flags, the others
// the indexes of its members. Owned by an `ElfGroupList`.
class ElfGroup {
public:
    static constexpr std::uint32_t s_wordSize = 4;
    static constexpr std::uint32_t GRP_COMDAT = 1;

    // Reads `sh_size` bytes from the stream's position. Words past the stream's end are zeros, and so the
    // null section. A size far beyond the stream is reported as memory that can't be had; the group then has
    // no members.
    ElfGroup(ErrorHandler* errorHandler, std::istream& stream, const ElfSectionHeader* header);

    virtual ~ElfGroup();

    ElfGroup(const ElfGroup&) = delete;
    ElfGroup& operator=(const ElfGroup&) = delete;

    // Finds the signature and the members, once all symbols and sections are known. An index that names no
    // section is left out.
    void postProcess(const ElfHandler* handler);

    // The number of members that the section lists.
    std::uint32_t getNumSections() const { return m_numSections; }

    // The index of the symbol whose name tells groups apart.
    std::uint32_t getSignatureIndex() const { return m_signatureIndex; }

    // What follows is known after `postProcess`.

    // Null for an index out of range. Owned by the symbol table.
    const ElfSymbol* getSignature() const { return m_signature; }

    const std::vector<ElfSectionHeader*>& getSections() const { return m_sections; }

    // Is one group of several with the same signature to be kept?
    bool isComdat() const { return m_comdat; }

private:
    std::unique_ptr<std::uint32_t[]> m_data; // the raw section, one word at least
    std::uint32_t m_numSections = 0;
    std::uint32_t m_signatureIndex;
    const ElfSymbol* m_signature = nullptr;
    std::vector<ElfSectionHeader*> m_sections;
    bool m_comdat = false;
};
