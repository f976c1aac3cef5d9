#include "tools/zetool/elf/ElfView.h"

#include "infr_libs/ElfHandler/ElfFields.h"
#include "tools/zetool/elf/ElfWords.h"

#include <algorithm>

namespace {

constexpr unsigned s_classAt = 4; // in e_ident
constexpr unsigned s_encodingAt = 5;
constexpr unsigned s_class32 = 1;
constexpr unsigned s_littleEndian = 1;

constexpr const char* s_notElf = "ERROR: Header is not an ELF file";

const unsigned char* bytesAt(const std::string& file, std::uint64_t offset) {
    return reinterpret_cast<const unsigned char*>(file.data()) + offset;
}

// How many entries of a table lie in the file as a whole.
std::uint64_t numWhole(const std::string& file, std::uint64_t offset, std::uint64_t count,
                       std::uint64_t entrySize) {
    return offset > file.size() ? 0 : std::min<std::uint64_t>(count, (file.size() - offset) / entrySize);
}

ElfFault missingHeaders(const char* kind, std::size_t numThere, std::size_t numClaimed) {
    return {"headersPastEnd", std::string("the ") + kind +
                                  " headers reach past the end of the file: " + std::to_string(numThere) +
                                  " of " + std::to_string(numClaimed) + " are there"};
}

} // namespace

std::string ElfFault::line() const {
    return shownText(text) + (count > 1 ? " (the first of " + std::to_string(count) + ")" : "");
}

ElfView::ElfView(std::string bytes) : m_bytes(std::move(bytes)) {
    // What a cut header lacks counts as zeros, as it does to the reader.
    std::string head = m_bytes.substr(0, ElfHeader::s_numBytes);
    head.resize(ElfHeader::s_numBytes, '\0');
    m_header = ElfHeader(bytesAt(head, 0));
    if (!m_header.hasMagic()) {
        m_refusal = s_notElf;
        return;
    }
    if (m_bytes.size() < ElfHeader::s_numBytes)
        m_faults.push_back({"headerPastEnd", "the file ends within its header"});
    const unsigned fileClass = m_header.e_ident[s_classAt];
    const unsigned encoding = m_header.e_ident[s_encodingAt];
    if (fileClass != s_class32 || encoding != s_littleEndian) {
        m_refusal = "no ELF file of 32 bits in little-endian order (class " + std::to_string(fileClass) +
                    ", data encoding " + std::to_string(encoding) + ")";
        return;
    }
    readHeaders();
    findMissing();
}

void ElfView::readHeaders() {
    const std::uint64_t numSegments =
        numWhole(m_bytes, m_header.e_phoff, m_header.e_phnum, ElfProgramHeader::s_numBytes);
    for (std::uint64_t i = 0; i < numSegments; ++i)
        m_segments.emplace_back(bytesAt(m_bytes, m_header.e_phoff + i * ElfProgramHeader::s_numBytes),
                                static_cast<unsigned>(i));
    const std::uint64_t numSections =
        numWhole(m_bytes, m_header.e_shoff, m_header.e_shnum, ElfSectionHeader::s_numBytes);
    for (std::uint64_t i = 0; i < numSections; ++i)
        m_sections.emplace_back(bytesAt(m_bytes, m_header.e_shoff + i * ElfSectionHeader::s_numBytes),
                                static_cast<unsigned>(i));
}

void ElfView::findMissing() {
    if (m_segments.size() < m_header.e_phnum)
        m_faults.push_back(missingHeaders("program", m_segments.size(), m_header.e_phnum));
    if (m_sections.size() < m_header.e_shnum)
        m_faults.push_back(missingHeaders("section", m_sections.size(), m_header.e_shnum));
    for (const ElfProgramHeader& segment : m_segments) {
        if (segment.p_filesz != 0 && std::uint64_t{segment.p_offset} + segment.p_filesz > m_bytes.size())
            m_faults.push_back({"segmentPastEnd", "segment " + std::to_string(segment.getNum()) +
                                                      ": reaches past the end of the file"});
    }
    for (const ElfSectionHeader& section : m_sections) {
        if (contents(section).size() < section.sh_size && section.sh_type != ElfSectionHeader::SHT_NULL &&
            section.sh_type != ElfSectionHeader::SHT_NOBITS)
            m_faults.push_back(
                {"sectionPastEnd", sectionPlace(section) + ": reaches past the end of the file"});
    }
}

std::string_view ElfView::contents(const ElfSectionHeader& section) const {
    if (section.sh_type == ElfSectionHeader::SHT_NULL || section.sh_type == ElfSectionHeader::SHT_NOBITS ||
        section.sh_offset > m_bytes.size())
        return {};
    return std::string_view(m_bytes).substr(section.sh_offset, section.sh_size);
}

std::optional<std::string_view> ElfView::text(std::uint32_t section, std::uint32_t offset) const {
    if (section >= m_sections.size() || m_sections[section].sh_type != ElfSectionHeader::SHT_STRTAB)
        return std::nullopt;
    const std::string_view strings = contents(m_sections[section]);
    if (offset >= strings.size())
        return std::nullopt;
    const std::size_t end = strings.find('\0', offset);
    if (end == std::string_view::npos)
        return std::nullopt;
    return strings.substr(offset, end - offset);
}

std::optional<std::string_view> ElfView::sectionName(const ElfSectionHeader& section) const {
    // A file without names is none with bad ones.
    if (section.sh_name == 0)
        return "";
    return text(m_header.e_shstrndx, section.sh_name);
}

std::string ElfView::sectionPlace(const ElfSectionHeader& section) const {
    std::string place = "section " + std::to_string(section.getNum());
    const std::optional<std::string_view> name = sectionName(section);
    return name && !name->empty() ? place + " '" + std::string(name->substr(0, s_longestNameInMessage)) + "'"
                                  : place;
}

std::size_t ElfView::numSymbols(const ElfSectionHeader& table) const {
    return contents(table).size() / ElfSymbol::s_numBytes;
}

ElfSymbol ElfView::symbol(const ElfSectionHeader& table, std::size_t index) const {
    const std::string_view bytes = contents(table).substr(index * ElfSymbol::s_numBytes);
    return ElfSymbol(reinterpret_cast<const unsigned char*>(bytes.data()));
}

std::optional<std::string_view> ElfView::symbolName(const ElfSectionHeader& table,
                                                    const ElfSymbol& symbol) const {
    constexpr unsigned s_section = 3; // STT_SECTION
    if (symbol.st_name == 0 && symbol.getType() == s_section && symbol.st_shndx < m_sections.size())
        return sectionName(m_sections[symbol.st_shndx]);
    if (symbol.st_name == 0)
        return "";
    return text(table.sh_link, symbol.st_name);
}

bool ElfAllowance::take(const ElfView& view, const ElfSectionHeader& section, std::vector<ElfFault>& faults) {
    const std::size_t size = view.contents(section).size();
    if (size > m_numBytes) {
        faults.push_back(
            {"tablesOverlap",
             view.sectionPlace(section) + ": is left out, since tables take more bytes than the file has"});
        return false;
    }
    m_numBytes -= size;
    return true;
}

bool hasSymbols(const ElfSectionHeader& section) {
    constexpr std::uint32_t s_dynamicSymbols = 11; // SHT_DYNSYM
    return section.sh_type == ElfSectionHeader::SHT_SYMTAB || section.sh_type == s_dynamicSymbols;
}

std::string wrongEntrySize(const ElfSectionHeader& section, std::uint32_t entrySize) {
    return "its entries have " + std::to_string(section.sh_entsize) + " bytes, not " +
           std::to_string(entrySize);
}
