#include "tools/zetool/image/SectorChoice.h"

#include "tools/zetool/Messages.h"

#include <charconv>

SectorChoice::SectorChoice(const std::string& text) : m_text(text), m_row(findSectorType(text)) {
    if (m_row)
        return;
    std::uint64_t index = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, index);
    if (error != std::errc() || end != last)
        throw ToolFailure("'" + text + "' is neither the number of a sector nor a type such as network");
    m_index = index;
}

bool SectorChoice::fits(const ImageSector& sector) const {
    return m_row ? sector.row == m_row : sector.index == *m_index;
}
