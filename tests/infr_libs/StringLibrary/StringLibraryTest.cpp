#include "infr_libs/StringLibrary/StringLibrary.h"

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

struct Conversion {
    const char* text;
    int value;
    int base;
    const char* rest;
};

} // namespace

TEST(StringLibrary, ReadsNumbersAsTheTableSays) {
    constexpr int allBits = -1;
    constexpr Conversion conversions[] = {
        {"-0x10", -16, 16, ""},
        {"12abc", 12, 0, "abc"},
        {"010", 10, 10, ""},
        {"0x1F", 31, 16, ""},
        {"0X1f", 31, 16, ""},
        {"", 0, 10, ""},
        {"-", 0, 10, ""},
        {"abc", 0, 0, "abc"},
        {"-abc", 0, 0, "abc"},
        {" 7", 7, 10, ""},
        {"  ", 0, 0, "  "},
        {"7 ", 7, 0, " "},
        {"+7", 7, 10, ""},
        {"--5", 5, 10, ""}, // the second sign is the conversion's own
        {"- 5", -5, 10, ""},
        {"0x", 0, 0, "x"},
        {"0xg", 0, 0, "xg"},
        {"0x-1", 0, 0, "x-1"},
        {" 0x10", 0, 0, "x10"},
        {"4294967295", allBits, 10, ""},
        {"4294967296", allBits, 10, ""},
        {"99999999999999999999999", allBits, 10, ""},
        {"0x100000000", allBits, 16, ""},
        {"-4294967296", 1, 10, ""},
        {"--4294967296", 1, 10, ""},
        {"2147483648", std::numeric_limits<int>::min(), 10, ""},
    };
    const StringLibrary library(nullptr);
    for (const Conversion& conversion : conversions) {
        int value = 77;
        int base = 77;
        const char* rest = library.strToInt(conversion.text, &value, &base);
        EXPECT_EQ(value, conversion.value) << '"' << conversion.text << '"';
        EXPECT_EQ(base, conversion.base) << '"' << conversion.text << '"';
        EXPECT_STREQ(rest, conversion.rest) << '"' << conversion.text << '"';
    }
}
