#include "tools/zetool/Json.h"

namespace {

TEST(Json, WritesAValueOnOneLine) {
    Json value = jsonObject("sample", 1);
    value["list"] = {1, "two"};
    EXPECT_EQ(jsonLine(value), R"({"type":"sample","version":1,"list":[1,"two"]})");
}

TEST(Json, WritesALineInAscii) {
    EXPECT_EQ(jsonLine(jsonText("\xc3\xa9\n")), R"("\u00e9\n")");
}

TEST(Json, TellsBytesThatAreNoUtf8ByCharactersOfTheirOwn) {
    EXPECT_EQ(jsonLine(jsonText("a\xe9")), R"("a\uf7e9")");
    EXPECT_EQ(jsonLine(jsonText("\x80\xff")), R"("\uf780\uf7ff")");
    EXPECT_EQ(jsonLine(jsonText("\xc3\xa9\xe9\xc3")), R"("\u00e9\uf7e9\uf7c3")"); // next to UTF-8
    EXPECT_EQ(jsonLine(jsonText("\xed\xb3\xa9")), R"("\uf7ed\uf7b3\uf7a9")");     // half of a pair
    EXPECT_EQ(jsonLine(jsonText("\xc1\xa9")), R"("\uf7c1\uf7a9")");               // one byte too long
}

TEST(Json, TellsTheCharactersThatStandForBytesByTheirOwnBytes) {
    EXPECT_EQ(jsonLine(jsonText("\xef\x9f\xa9")), R"("\uf7ef\uf79f\uf7a9")");       // U+F7E9
    EXPECT_EQ(jsonLine(jsonText("\xef\x9e\x80")), R"("\uf7ef\uf79e\uf780")");       // U+F780
    EXPECT_EQ(jsonLine(jsonText("\xef\x9f\xbf")), R"("\uf7ef\uf79f\uf7bf")");       // U+F7FF
    EXPECT_EQ(jsonLine(jsonText("\xef\x9d\xbf\xef\xa0\x80")), R"("\uf77f\uf800")"); // beside them
}

} // namespace
