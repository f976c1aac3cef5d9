#include "infr_libs/StringLibrary/CLocale.h"

#include <clocale>
#include <gtest/gtest.h>

TEST(CLocale, IsInUseWhileItLivesAndGivesThePreviousLocaleBack) {
    const locale_t mine = newlocale(LC_ALL_MASK, "POSIX", nullptr);
    const locale_t before = uselocale(mine);
    {
        const CLocale scope;
        EXPECT_STREQ(localeconv()->decimal_point, ".");
    }
    EXPECT_EQ(uselocale(before), mine);
    freelocale(mine);
}
