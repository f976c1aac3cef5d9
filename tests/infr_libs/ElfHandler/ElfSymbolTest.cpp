#include "infr_libs/ElfHandler/ElfSymbol.h"

#include <gtest/gtest.h>
#include <sstream>

TEST(ElfSymbol, ReadsItsFieldsInTheStandardsOrder) {
    std::istringstream stream(std::string("\1\0\0\0\2\0\0\0\3\0\0\0\x25\6\7\x88", 16));
    const ElfSymbol symbol(stream);
    EXPECT_EQ(symbol.st_name, 1U);
    EXPECT_EQ(symbol.st_value, 2U);
    EXPECT_EQ(symbol.st_size, 3U);
    EXPECT_EQ(symbol.st_info, 0x25U);
    EXPECT_EQ(symbol.st_other, 6U);
    EXPECT_EQ(symbol.st_shndx, 0x8807U);
    EXPECT_EQ(symbol.getBinding(), 2U);
    EXPECT_EQ(symbol.getType(), 5U);
}

TEST(ElfSymbol, WhatTheStreamLacksIsZero) {
    std::istringstream stream("\1");
    const ElfSymbol symbol(stream);
    EXPECT_EQ(symbol.st_name, 1U);
    EXPECT_EQ(symbol.st_shndx, 0U);
}

TEST(ElfSymbol, ComposesBindingAndType) {
    const ElfSymbol symbol(1, 2, 3, 1, 0x12, 4);
    EXPECT_EQ(symbol.st_info, 0x12U); // the type's low four bits
    EXPECT_EQ(symbol.st_other, 0U);
    EXPECT_EQ(symbol.st_shndx, 3U);
    EXPECT_EQ(symbol.st_size, 4U);
    EXPECT_EQ(symbol.getBinding(), 1U);
    EXPECT_EQ(symbol.getType(), 2U);
}
