#include "infr_libs/ElfHandler/ElfGroup.h"

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfInput.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"

#include <algorithm>
#include <utility>

ElfGroup::ElfGroup(ErrorHandler* errorHandler, std::istream& stream, const ElfSectionHeader* header)
    : m_signatureIndex(header->sh_info) {
    ElfInput input(stream);
    std::uint32_t numWords = header->sh_size / s_wordSize;
    if (!input.mayClaim(header->sh_size)) {
        reportNoMemoryForSection(errorHandler);
        numWords = 0;
    }
    m_data = std::make_unique<std::uint32_t[]>(std::max(numWords, std::uint32_t{1}));
    input.readWhatIsThere(m_data.get(), std::size_t{numWords} * s_wordSize);
    if (numWords != 0)
        m_numSections = numWords - 1;
}

ElfGroup::~ElfGroup() = default;

void ElfGroup::postProcess(const ElfHandler* handler) {
    m_comdat = (m_data[0] & GRP_COMDAT) != 0;
    m_signature = std::as_const(*handler->getSymbolTable()).getSymbol(m_signatureIndex);
    for (std::uint32_t i = 1; i <= m_numSections; ++i) {
        if (ElfSectionHeader* member = handler->getSectionHeader(m_data[i]))
            m_sections.push_back(member);
    }
}
