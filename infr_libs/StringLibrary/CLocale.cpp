#include "infr_libs/StringLibrary/CLocale.h"

namespace {

// Made once and kept: the C library allocates nothing for "C", and it can't fail.
locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

CLocale::CLocale() : m_previous(uselocale(cLocale())) {}

CLocale::~CLocale() {
    uselocale(m_previous);
}
