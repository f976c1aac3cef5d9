#include "infr_libs/ElfHandler/ElfRelocation.h"

#include "infr_libs/ElfHandler/ElfFields.h"

#include <cstdio>

ElfRelocation::ElfRelocation(std::uint32_t offset, std::uint32_t type, std::uint32_t symbol,
                             std::int32_t addend)
    : r_offset(offset), r_info((symbol << s_symbolShift) + (type & s_typeMask)), r_addend(addend) {}

ElfRelocation::ElfRelocation(bool withAddend, const unsigned char* bytes) {
    eachField(*this, withAddend, ElfFieldReader(bytes));
}

ElfRelocation::~ElfRelocation() = default;

void ElfRelocation::encode(bool withAddend, unsigned char* bytes) const {
    eachField(*this, withAddend, ElfFieldWriter(bytes));
}

void ElfRelocation::display() const {
    std::printf("Offset: %08x\n", r_offset);
    std::printf("Type: %08x\n", getType());
    std::printf("Symbol: %08x\n", getSymbol());
    std::printf("Addend: %08x\n", static_cast<unsigned int>(r_addend));
}
