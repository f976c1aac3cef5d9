#pragma once

#include "tools/zetool/image/ImageFindings.h"
#include "tools/zetool/image/SeekableFile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Looks an image over: what opening it says, and what opening doesn't notice.
class ImageChecker {
public:
    explicit ImageChecker(const SeekableFile& file) : m_file(file) {}

    void check();

    const ImageFindings& findings() const { return m_findings; }
    std::uint64_t numSectors() const { return m_numSectors; }

private:
    void open();
    void walk();
    void checkSector(const ImageSector& sector);
    void checkOrder(const ImageSector& sector);
    void checkProgram(const ImageSector& sector, std::string payload);
    void checkNetwork();
    void checkPlaces();

    const SeekableFile& m_file;
    ImageFindings m_findings;
    std::uint64_t m_numSectors = 0;
    std::vector<std::string> m_openingLines;
    std::map<std::int32_t, std::uint64_t> m_numOfType;
    bool m_isBehindEnd = false;
    std::optional<std::string> m_network; // the first one's document
    bool m_isWhole = false;               // the file was walked to its end
    std::vector<ImageSector> m_placed;    // sectors that are for a core
};
