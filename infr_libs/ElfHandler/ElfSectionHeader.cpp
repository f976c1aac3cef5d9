#include "infr_libs/ElfHandler/ElfSectionHeader.h"

#include "infr_libs/ElfHandler/ElfFields.h"
#include "infr_libs/ElfHandler/ElfStrings.h"

ElfSectionHeader::ElfSectionHeader(const unsigned char* bytes, unsigned int num) : m_num(num) {
    readFields(*this, bytes);
}

ElfSectionHeader::~ElfSectionHeader() = default;

std::string ElfSectionHeader::getName(const ElfStrings* strings) const {
    return strings->getString(sh_name);
}
