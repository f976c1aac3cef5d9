#include "Plugins/WavePlugin/Identifier.h"

#include <gtest/gtest.h>
#include <string>

TEST(Identifier, JoinsPrefixTagLetterAndNumber) {
    EXPECT_EQ(Identifier("po", "01", "a", 2).name(), "po01a2");
}

TEST(Identifier, OfNoCoreHasNoTag) {
    EXPECT_EQ(Identifier("pa", "", "a", 5).name(), "paa5");
}

TEST(Identifier, HoldsTheLongestOne) {
    EXPECT_EQ(Identifier("ti", "6553565535", "c", 2147483648U).name(), "ti6553565535c-2147483648");
}

TEST(Identifier, EndsAValueLine) {
    char line[Identifier::s_room];
    EXPECT_EQ(std::string(line, Identifier("t", "00", "d", 12).appendTo(line)), "t00d12\n");
}

TEST(Identifier, StaysWholeWhenItsPiecesAreTooLong) {
    const std::string longText(100, 'x');
    EXPECT_LE(Identifier(longText.c_str(), longText.c_str(), "a", 1).name().size(), Identifier::s_room);
}
