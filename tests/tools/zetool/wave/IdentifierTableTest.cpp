#include "tools/zetool/wave/IdentifierTable.h"

namespace {

// Identifiers as a window of bytes has them: with something behind.
std::uint32_t find(const IdentifierTable& table, const std::string& identifier) {
    const std::string padded = identifier + " 0123456789abcdef";
    return table.find(std::string_view(padded).substr(0, identifier.size()));
}

TEST(IdentifierTable, FindsWhatWasAddedAndNothingElse) {
    IdentifierTable table;
    std::vector<std::string> identifiers = {"!",
                                            "po00a0",
                                            "12345678",
                                            "123456789",
                                            "1234567890123456",
                                            "12345678901234567",
                                            std::string(1000, 'x')};
    for (int index = 0; index < 5000; ++index)
        identifiers.push_back("po" + std::to_string(index) + "a" + std::to_string(index * 7));
    for (std::size_t index = 0; index < identifiers.size(); ++index)
        EXPECT_EQ(table.add(identifiers[index], static_cast<std::uint32_t>(index)), index);
    for (std::size_t index = 0; index < identifiers.size(); ++index) {
        EXPECT_EQ(find(table, identifiers[index]), index);
        EXPECT_EQ(find(table, identifiers[index] + "~"), IdentifierTable::s_none);
    }
    EXPECT_EQ(find(table, ""), IdentifierTable::s_none);
    EXPECT_EQ(find(table, "1234567"), IdentifierTable::s_none);
}

TEST(IdentifierTable, KeepsTheFirstNumberOfAnIdentifier) {
    IdentifierTable table;
    EXPECT_EQ(table.add("a", 1), 1u);
    EXPECT_EQ(table.add("a", 2), 1u);
    EXPECT_EQ(find(table, "a"), 1u);
}

} // namespace
