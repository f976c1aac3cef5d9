#include "infr_libs/ElfHandler/ElfProgramHeader.h"

#include "infr_libs/ElfHandler/ElfFields.h"

ElfProgramHeader::ElfProgramHeader(const unsigned char* bytes, unsigned int num) : m_num(num) {
    readFields(*this, bytes);
}

ElfProgramHeader::~ElfProgramHeader() = default;
