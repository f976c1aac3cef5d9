#include "infr_libs/ZCC/TargetAliases.h"

#include <gtest/gtest.h>

TEST(TargetAliases, KnowEveryOldName) {
    const std::pair<const char*, const char*> rows[] = {
        {"ZS1-G4A-FB144", "ZS1-G04B-FB144-C4"}, {"ZS1-G4A-FB512", "ZS1-G04B-FB512-C4"},
        {"ZS1-G4B-FB144", "ZS1-G04B-FB144-C4"}, {"ZS1-G4B-FB512", "ZS1-G04B-FB512-C4"},
        {"ZS1-L1A-LQ64", "ZS1-L01A-LQ64-C4"},   {"ZS1-L1A-TQ128", "ZS1-L01A-TQ128-C4"},
        {"ZS1-L2A-QF124", "ZS1-L02A-QF124-C4"},
    };
    for (const auto& [oldName, name] : rows)
        EXPECT_STREQ(targetAliases.lookup(oldName), name);
}

TEST(TargetAliases, TellUpperFromLowerCase) {
    EXPECT_EQ(targetAliases.lookup("zs1-l1a-lq64"), nullptr);
    EXPECT_EQ(targetAliases.lookup("ZS1-L1A-Lq64"), nullptr);
}

TEST(TargetAliases, MatchWholeNamesOnly) {
    for (const char* name : {"", "ZS1", "ZS1-L1A-LQ6", "ZS1-L1A-LQ64 ", " ZS1-L1A-LQ64", "ZS1-L01A-LQ64-C4"})
        EXPECT_EQ(targetAliases.lookup(name), nullptr) << name;
}
