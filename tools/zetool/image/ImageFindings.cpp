#include "tools/zetool/image/ImageFindings.h"

void ImageFindings::add(FindingKind kind, const std::string& text) {
    if (count(kind))
        m_all.push_back({kind, std::nullopt, text});
}

void ImageFindings::add(FindingKind kind, const ImageSector& sector, const std::string& text) {
    if (count(kind))
        m_all.push_back({kind, sector.index, sector.place() + ": " + text});
}

std::uint64_t ImageFindings::numDropped(FindingKind kind) const {
    const std::uint64_t number = m_counts[static_cast<std::size_t>(kind)];
    return number > s_mostOfAKind ? number - s_mostOfAKind : 0;
}

bool ImageFindings::count(FindingKind kind) {
    return ++m_counts[static_cast<std::size_t>(kind)] <= s_mostOfAKind;
}
