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

} // namespace
