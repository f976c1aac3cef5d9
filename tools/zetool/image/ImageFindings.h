#pragma once

#include "tools/zetool/image/SectorWalker.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What can be found in an image. The order is that of the rows below.
enum class FindingKind {
    Opening,
    Fault,
    WrongCrc,
    WaivedCrc,
    Reserved,
    Padding,
    Type,
    Payload,
    Configuration,
    Network,
    NetworkWarning,
    Core,
    Program,
    End,
};

struct FindingRow {
    FindingKind kind;
    const char* key; // a word that stays, for JSON
};

inline constexpr FindingRow s_findingRows[] = {
    {FindingKind::Opening, "opening"},
    {FindingKind::Fault, "fault"},
    {FindingKind::WrongCrc, "wrongCrc"},
    {FindingKind::WaivedCrc, "waivedCrc"},
    {FindingKind::Reserved, "reserved"},
    {FindingKind::Padding, "padding"},
    {FindingKind::Type, "type"},
    {FindingKind::Payload, "payload"},
    {FindingKind::Configuration, "configuration"},
    {FindingKind::Network, "network"},
    {FindingKind::NetworkWarning, "networkWarning"},
    {FindingKind::Core, "core"},
    {FindingKind::Program, "program"},
    {FindingKind::End, "end"},
};

// Something that was found, in a sector or in the file as a whole.
struct Finding {
    FindingKind kind;
    std::optional<std::uint64_t> sector;
    std::string text; // the sector's place included
};

// What was found, in order. Of one kind so many are kept that a user may read them: a damaged file can have
// as many findings as sectors.
class ImageFindings {
public:
    static constexpr std::uint64_t s_mostOfAKind = 100;

    void add(FindingKind kind, const std::string& text);
    void add(FindingKind kind, const ImageSector& sector, const std::string& text);

    const std::vector<Finding>& all() const { return m_all; }

    // How many of that kind aren't among them.
    std::uint64_t numDropped(FindingKind kind) const;

private:
    bool count(FindingKind kind);

    std::vector<Finding> m_all;
    std::array<std::uint64_t, std::size(s_findingRows)> m_counts = {};
};
