#include "infr_libs/ElfHandler/ElfHeader.h"

#include "infr_libs/ElfHandler/ElfFields.h"

ElfHeader::ElfHeader(const unsigned char* bytes) {
    readFields(*this, bytes);
}

ElfHeader::~ElfHeader() = default;

bool ElfHeader::hasMagic() const {
    std::uint32_t word = 0;
    std::memcpy(&word, e_ident.data(), sizeof word);
    return word == s_magic;
}
