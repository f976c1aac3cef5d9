#pragma once

#include <clocale>

// While it lives, this thread formats and reads numbers as the "C" locale does, whatever locale the host
// has chosen: a decimal point stays a point.
class CLocale {
public:
    CLocale();
    ~CLocale();

    CLocale(const CLocale&) = delete;
    CLocale& operator=(const CLocale&) = delete;

private:
    locale_t m_previous;
};
