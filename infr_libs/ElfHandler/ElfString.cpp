#include "infr_libs/ElfHandler/ElfString.h"

ElfString::~ElfString() = default;
