#pragma once

#include "tools/zetool/image/SectorWalker.h"

#include <cstdint>
#include <optional>
#include <string>

// The sector that a command line asks for: by its number, or by its type for the first of that type.
class SectorChoice {
public:
    // Throws a ToolFailure for a text that is neither.
    explicit SectorChoice(const std::string& text);

    bool fits(const ImageSector& sector) const;
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
    std::optional<std::uint64_t> m_index; // or by the row
    const SectorTypeRow* m_row = nullptr;
};
