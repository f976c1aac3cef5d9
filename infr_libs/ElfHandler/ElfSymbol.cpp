#include "infr_libs/ElfHandler/ElfSymbol.h"

#include "infr_libs/ElfHandler/ElfFields.h"
#include "infr_libs/ElfHandler/ElfInput.h"

ElfSymbol::ElfSymbol(std::istream& stream) : ElfSymbol(ElfInput(stream).readBytes<ElfSymbol>().data()) {}

ElfSymbol::ElfSymbol(const unsigned char* bytes) {
    readFields(*this, bytes);
}

ElfSymbol::ElfSymbol(std::uint32_t nameOffset, std::uint32_t value, std::uint32_t sectionIndex,
                     std::uint32_t binding, std::uint32_t type, std::uint32_t size)
    : st_name(nameOffset),
      st_value(value),
      st_size(size),
      st_info(static_cast<std::uint8_t>((type & 0xF) + binding * 16)),
      st_shndx(static_cast<std::uint16_t>(sectionIndex)) {}

ElfSymbol::~ElfSymbol() = default;
