#pragma once

#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfSymbol.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The words in which ELF files are shown: those of readelf, which readers of such lists know, and the tool
// chain's own where readelf has none.

// Names are shown up to these lengths: a file may let each symbol have the whole of its strings as name.
inline constexpr std::size_t s_longestName = 4096;
inline constexpr std::size_t s_longestNameInMessage = 200;

// A name on a terminal: control characters as ^A; "<corrupt>" for one that isn't there.
std::string shownText(std::string_view text);
std::string nameText(const std::optional<std::string_view>& name);

// "1 entry", "2 entries".
std::string entriesText(std::size_t count);

std::string fileClassText(unsigned fileClass);
std::string encodingText(unsigned encoding);
std::string osAbiText(unsigned osAbi);
std::string fileTypeText(unsigned type);
std::string machineText(unsigned machine);
std::string segmentTypeText(std::uint32_t type);
std::string segmentFlagsText(std::uint32_t flags); // "R E"
std::string sectionTypeText(std::uint32_t type);
std::string sectionFlagsText(std::uint32_t flags); // a letter a flag: "WAX"
std::string relocationTypeText(unsigned machine, unsigned type);

// A symbol's size: decimal, and in hexadecimal from 100,000 on.
std::string symbolSizeText(std::uint32_t size);
std::string symbolTypeText(const ElfHeader& header, const ElfSymbol& symbol);
std::string bindingText(const ElfHeader& header, const ElfSymbol& symbol);
std::string visibilityText(const ElfSymbol& symbol);
// Where it is defined: "UND", "ABS", "COM" or a section's number.
std::string placeText(const ElfHeader& header, const ElfSymbol& symbol);
