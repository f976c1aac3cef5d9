#include "tools/zetool/elf/RelocationView.h"

namespace {

const ElfSectionHeader* symbolTableOf(const ElfView& view, const ElfSectionHeader& section) {
    if (section.sh_link >= view.sections().size() || !hasSymbols(view.sections()[section.sh_link]))
        return nullptr;
    return &view.sections()[section.sh_link];
}

} // namespace

bool RelocationView::isOne(const ElfSectionHeader& section) {
    return section.sh_type == ElfSectionHeader::SHT_RELA || section.sh_type == ElfSectionHeader::SHT_REL;
}

RelocationView::RelocationView(const ElfView& view, const ElfSectionHeader& section)
    : m_view(view),
      m_section(section),
      m_symbols(symbolTableOf(view, section)),
      m_entrySize(ElfRelocation::entrySize(hasAddends())) {}

std::size_t RelocationView::size() const {
    return hasEntries() ? m_view.contents(m_section).size() / m_entrySize : 0;
}

ElfRelocation RelocationView::operator[](std::size_t index) const {
    const std::string_view bytes = m_view.contents(m_section).substr(index * m_entrySize);
    return {hasAddends(), reinterpret_cast<const unsigned char*>(bytes.data())};
}

std::optional<ElfSymbol> RelocationView::symbolOf(const ElfRelocation& relocation) const {
    const std::uint32_t index = relocation.getSymbol();
    if (index == 0 || !m_symbols || index >= m_view.numSymbols(*m_symbols))
        return std::nullopt;
    return m_view.symbol(*m_symbols, index);
}
