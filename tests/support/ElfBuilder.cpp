#include "tests/support/ElfBuilder.h"

#include <map>

namespace {

constexpr std::uint32_t s_headerSize = 52;
constexpr std::uint32_t s_programHeaderSize = 32;
constexpr std::uint32_t s_sectionHeaderSize = 40;
constexpr std::uint32_t s_symbolSize = 16;

enum SectionType : std::uint32_t { Symtab = 2, Strtab = 3, Rela = 4, Nobits = 8, Rel = 9, Group = 17 };

std::string indexed(const char* field, std::size_t index) {
    return std::string(field) + "[" + std::to_string(index) + "]";
}

std::uint32_t size(const std::string& bytes) {
    return static_cast<std::uint32_t>(bytes.size());
}

// The names in use, each once.
class Names {
public:
    std::uint32_t offsetOf(const std::string& name) {
        const auto [entry, isNew] = m_offsets.try_emplace(name, size(m_bytes));
        if (isNew)
            m_bytes += name + '\0';
        return entry->second;
    }

    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes = std::string(1, '\0');
    std::map<std::string, std::uint32_t> m_offsets = {{"", 0}};
};

LabelledBytes symbolTable(const std::vector<ElfBuilder::Symbol>& symbols, Names& names) {
    LabelledBytes table;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const ElfBuilder::Symbol& symbol = symbols[i];
        table.append(indexed("st_name", i), 4,
                     symbol.nameOffset ? *symbol.nameOffset : names.offsetOf(symbol.name));
        table.append(indexed("st_value", i), 4, symbol.value);
        table.append(indexed("st_size", i), 4, symbol.size);
        table.append(indexed("st_info", i), 1, symbol.info);
        table.append(indexed("st_other", i), 1, symbol.other);
        table.append(indexed("st_shndx", i), 2, symbol.section);
    }
    return table;
}

} // namespace

unsigned ElfBuilder::addSegment(Segment segment) {
    m_segments.push_back(std::move(segment));
    return static_cast<unsigned>(m_segments.size() - 1);
}

unsigned ElfBuilder::addSection(Section section) {
    m_sections.push_back(std::move(section));
    return static_cast<unsigned>(m_sections.size() - 1);
}

unsigned ElfBuilder::addSymbol(Symbol symbol) {
    m_symbols.push_back(std::move(symbol));
    return static_cast<unsigned>(m_symbols.size() - 1);
}

unsigned ElfBuilder::addFunction(std::string name, std::uint32_t value, std::uint32_t size) {
    return addSymbol(
        {.name = std::move(name), .value = value, .size = size, .info = s_global + s_function, .section = 1});
}

LabelledBytes ElfBuilder::build() const {
    // The sections, with the tables of symbols and strings behind those that were given.
    std::vector<Section> sections = m_sections;
    const auto numGiven = static_cast<std::uint32_t>(sections.size());
    Names names;
    const LabelledBytes symbols = symbolTable(m_symbols, names);
    if (m_hasSymbols) {
        const std::uint32_t strings = m_hasStrings ? numGiven + 1 : 0;
        sections.push_back({.name = ".symtab",
                            .type = Symtab,
                            .size = size(symbols.bytes),
                            .link = strings,
                            .info = 1,
                            .entsize = s_symbolSize});
    }
    const auto stringSection = static_cast<std::uint32_t>(sections.size());
    if (m_hasStrings) {
        sections.push_back({.name = ".strtab", .type = Strtab});
        for (const Section& section : sections)
            names.offsetOf(section.name);
        sections.back().bytes = m_strings.value_or(names.bytes());
    }

    const auto numSegments = static_cast<std::uint32_t>(m_segments.size());
    const auto numSections = static_cast<std::uint32_t>(sections.size());
    const std::uint32_t sectionHeadersAt = s_headerSize + numSegments * s_programHeaderSize;
    std::uint32_t offset = sectionHeadersAt + numSections * s_sectionHeaderSize;

    LabelledBytes file;
    for (std::size_t i = 0; i < 16; ++i) {
        const std::string ident("\177ELF\1\1\1", 7); // magic, 32 bits, little-endian, version
        file.append(indexed("e_ident", i), 1, i < ident.size() ? static_cast<unsigned char>(ident[i]) : 0);
    }
    file.append("e_type", 2, m_type);
    file.append("e_machine", 2, m_machine);
    file.append("e_version", 4, 1);
    file.append("e_entry", 4, m_entry);
    file.append("e_phoff", 4, numSegments == 0 ? 0 : s_headerSize);
    file.append("e_shoff", 4, sectionHeadersAt);
    file.append("e_flags", 4, 0);
    file.append("e_ehsize", 2, s_headerSize);
    file.append("e_phentsize", 2, s_programHeaderSize);
    file.append("e_phnum", 2, numSegments);
    file.append("e_shentsize", 2, s_sectionHeaderSize);
    file.append("e_shnum", 2, numSections);
    file.append("e_shstrndx", 2, m_hasStrings ? stringSection : 0);

    std::vector<std::uint32_t> segmentOffsets;
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        const Segment& segment = m_segments[i];
        segmentOffsets.push_back(offset);
        file.append(indexed("p_type", i), 4, segment.type);
        file.append(indexed("p_offset", i), 4, offset);
        file.append(indexed("p_vaddr", i), 4, segment.vaddr);
        file.append(indexed("p_paddr", i), 4, segment.paddr.value_or(segment.vaddr));
        file.append(indexed("p_filesz", i), 4, size(segment.bytes));
        file.append(indexed("p_memsz", i), 4, segment.memsz.value_or(size(segment.bytes)));
        file.append(indexed("p_flags", i), 4, segment.flags);
        file.append(indexed("p_align", i), 4, segment.align);
        offset += size(segment.bytes);
    }

    for (std::size_t i = 0; i < sections.size(); ++i) {
        const Section& section = sections[i];
        const bool isSymtab = section.type == Symtab && i >= numGiven;
        const bool namesSymtab = section.type == Rel || section.type == Rela || section.type == Group;
        std::uint32_t place = 0; // of the null section
        if (section.segment)
            place = segmentOffsets[*section.segment] + section.offset;
        else if (i != 0)
            place = offset;
        file.append(indexed("sh_name", i), 4, m_hasStrings && i != 0 ? names.offsetOf(section.name) : 0);
        file.append(indexed("sh_type", i), 4, section.type);
        file.append(indexed("sh_flags", i), 4, section.flags);
        file.append(indexed("sh_addr", i), 4, section.addr);
        file.append(indexed("sh_offset", i), 4, place);
        file.append(indexed("sh_size", i), 4, section.size.value_or(size(section.bytes)));
        file.append(indexed("sh_link", i), 4, section.link.value_or(namesSymtab ? numGiven : 0));
        file.append(indexed("sh_info", i), 4, section.info);
        file.append(indexed("sh_addralign", i), 4, section.align);
        file.append(indexed("sh_entsize", i), 4, section.entsize);
        offset += isSymtab ? size(symbols.bytes) : size(section.bytes);
    }

    for (const Segment& segment : m_segments)
        file.bytes += segment.bytes;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (sections[i].type == Symtab && i >= numGiven)
            file.append(symbols);
        else
            file.bytes += sections[i].bytes;
    }
    return file;
}
