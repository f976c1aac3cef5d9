#include "tools/zetool/image/SectorChoice.h"

#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

SectorChoice::SectorChoice(const std::string& text) : m_text(text), m_row(findSectorType(text)) {
    if (m_row)
        return;
    m_index = wholeNumber<std::uint64_t>(text);
    if (!m_index)
        throw ToolFailure("'" + text + "' is neither the number of a sector nor a type such as network");
}

bool SectorChoice::fits(const ImageSector& sector) const {
    return m_row ? sector.row == m_row : sector.index == *m_index;
}
