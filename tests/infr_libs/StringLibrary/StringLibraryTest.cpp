#include "infr_libs/StringLibrary/StringLibrary.h"

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/support/ChildProcess.h"

#include <csignal>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace {

const StringLibrary s_library(nullptr); // for what reports nothing

struct Conversion {
    const char* text;
    int value;
    int base;
    const char* rest;
};

void expectConversions(const std::vector<Conversion>& conversions) {
    for (const Conversion& conversion : conversions) {
        int value = 77;
        int base = 77;
        const char* rest = s_library.strToInt(conversion.text, &value, &base);
        EXPECT_EQ(value, conversion.value) << '"' << conversion.text << '"';
        EXPECT_EQ(base, conversion.base) << '"' << conversion.text << '"';
        EXPECT_STREQ(rest, conversion.rest) << '"' << conversion.text << '"';
    }
}

// The text of a string that the caller owns.
std::string taken(const std::string* text) {
    return *std::unique_ptr<const std::string>(text);
}

std::string withoutComments(const std::string& line, bool inBlockComment = false) {
    return taken(s_library.removeComments(&line, inBlockComment));
}

std::string replaced(const std::string& text, const std::string& pattern) {
    const std::string replacement = "never used";
    return taken(s_library.replace(&text, &pattern, &replacement));
}

std::vector<std::string> texts(const StringVector& strings) {
    std::vector<std::string> result;
    for (const std::string* text : strings)
        result.push_back(*text);
    return result;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(StrToInt, ReadsANegativeHexadecimalNumber) {
    expectConversions({{"-0x10", -16, 16, ""}});
}

TEST(StrToInt, StopsBehindTheNumberWithBaseZeroWhereTextIsLeftOver) {
    expectConversions({{"12abc", 12, 0, "abc"}, {"7 ", 7, 0, " "}, {"0x1g", 1, 0, "g"}, {"1-2", 1, 0, "-2"}});
}

TEST(StrToInt, KnowsNoOctal) {
    expectConversions({{"010", 10, 10, ""}, {"-010", -10, 10, ""}, {"08", 8, 10, ""}});
}

TEST(StrToInt, ReadsDigitsOfEitherCase) {
    expectConversions({{"0x1F", 31, 16, ""}, {"0X1f", 31, 16, ""}, {"0xABCdef", 0xabcdef, 16, ""}});
}

TEST(StrToInt, GivesZeroWithoutDigits) {
    expectConversions({{"", 0, 10, ""},
                       {"-", 0, 10, ""},
                       {"abc", 0, 0, "abc"},
                       {"-abc", 0, 0, "abc"},
                       {"  ", 0, 0, "  "},
                       {"0x", 0, 0, "x"},
                       {"0xg", 0, 0, "xg"},
                       {"0x-1", 0, 0, "x-1"}});
}

TEST(StrToInt, PassesWhiteSpaceAndASecondSignAsTheStandardConversionDoes) {
    expectConversions({{" 7", 7, 10, ""},
                       {"\t\n7", 7, 10, ""},
                       {"+7", 7, 10, ""},
                       {"--5", 5, 10, ""},
                       {"-+5", -5, 10, ""},
                       {"- 5", -5, 10, ""},
                       {" -5", -5, 10, ""},
                       {" 0x10", 0, 0, "x10"},
                       {"---5", 0, 0, "--5"}});
}

TEST(StrToInt, SaturatesAt32Bits) {
    constexpr int allBits = -1;
    expectConversions({{"4294967295", allBits, 10, ""},
                       {"4294967296", allBits, 10, ""},
                       {"99999999999999999999999", allBits, 10, ""},
                       {"0xffffffff", allBits, 16, ""},
                       {"0x100000000", allBits, 16, ""},
                       {"0xffffffffffffffff0", allBits, 16, ""},
                       {"99999999999x", allBits, 0, "x"}});
}

TEST(StrToInt, NegatesWhatSaturated) {
    expectConversions({{"-4294967295", 1, 10, ""}, {"-4294967296", 1, 10, ""}, {"--4294967296", 1, 10, ""}});
}

TEST(StrToInt, Keeps32BitsOfANumberBeyondTheSignedRange) {
    expectConversions({{"2147483648", std::numeric_limits<int>::min(), 10, ""},
                       {"-2147483649", std::numeric_limits<int>::max(), 10, ""},
                       {"0x90002731", static_cast<int>(0x90002731U), 16, ""}});
}

TEST(StrToBytes, StoresOneWordInTheHostsOrder) {
    const std::pair<std::string, std::uint32_t> rows[] = {{"258", 258},       {"0x80000001", 0x80000001},
                                                          {"12abc", 12},      {"99999999999", 0xffffffff},
                                                          {"-5", 0xfffffffb}, {"", 0}};
    for (const auto& [text, expected] : rows) {
        std::uint32_t word = 0;
        s_library.strToBytes(&text, 4, reinterpret_cast<unsigned char*>(&word));
        EXPECT_EQ(word, expected) << text;
    }
}

TEST(StrToBytes, ReportsEveryOtherNumberOfBytes) {
    CatchableErrorHandler handler;
    const StringLibrary library(&handler);
    const std::string text = "1";
    unsigned char bytes[2] = {7, 7};
    try {
        library.strToBytes(&text, 2, bytes);
        FAIL();
    } catch (const std::string& message) {
        EXPECT_EQ(message, "ERROR: StrToBytes for 2 bytes unimplemented\n");
    }
    EXPECT_EQ(bytes[0], 7);
}

TEST(StrToBytes, StoresNothingWhereTheReportReturns) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setExitOnError(false);
        const std::string text = "1";
        StringLibrary(&handler).strToBytes(&text, 8, nullptr);
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "ERROR: StrToBytes for 8 bytes unimplemented\n");
}

TEST(StringLibrary, FindsATextInAListByItsExactSpelling) {
    StringVector list;
    list.push_back(new std::string("one"));
    list.push_back(new std::string("two"));
    for (const auto& [text, found] :
         {std::pair("two", true), std::pair("Two", false), std::pair("", false)}) {
        const std::string wanted = text;
        EXPECT_EQ(s_library.isInList(list, &wanted), found) << text;
    }
}

TEST(StringLibrary, RemovesTrailingWhiteSpaceOfABlankText) {
    const std::string text = " \t\r\n ";
    EXPECT_EQ(taken(s_library.removeTrailingWhiteSpace(&text)), "");
}

TEST(StringLibrary, RemovesTrailingWhiteSpaceAndKeepsWhatStandsBetweenWords) {
    for (const std::string text : {"a b  ", "a b\n", "a b"})
        EXPECT_EQ(taken(s_library.removeTrailingWhiteSpace(&text)), "a b");
    const std::string leading = "  a";
    EXPECT_EQ(taken(s_library.removeTrailingWhiteSpace(&leading)), "  a");
    const std::string empty;
    EXPECT_EQ(taken(s_library.removeTrailingWhiteSpace(&empty)), "");
}

TEST(StringLibrary, RemovesLeadingWhiteSpace) {
    const std::string text = " \t\r\n a b ";
    EXPECT_EQ(taken(s_library.removeLeadingWhiteSpace(&text)), "a b ");
    const std::string blank = "  ";
    EXPECT_EQ(taken(s_library.removeLeadingWhiteSpace(&blank)), "");
}

TEST(StringLibrary, AFormFeedIsNoWhiteSpace) {
    const std::string text = "\fa\f";
    EXPECT_EQ(taken(s_library.removeLeadingWhiteSpace(&text)), "\fa\f");
    EXPECT_EQ(taken(s_library.removeTrailingWhiteSpace(&text)), "\fa\f");
}

TEST(StringLibrary, RemoveNewLineCharsDropsAllBehindTheFirstLineEnd) {
    for (const std::string text : {"ab\ncd", "ab\r\ncd", "ab"})
        EXPECT_EQ(taken(s_library.removeNewLineChars(&text)), "ab");
    const std::string empty = "\nab";
    EXPECT_EQ(taken(s_library.removeNewLineChars(&empty)), "");
}

TEST(StringLibrary, FindsWhereCommentsBeginAndEnd) {
    const std::string text = "a*/b/*c//d";
    const auto begin = text.begin();
    const auto end = text.end();
    EXPECT_EQ(s_library.findBlockCommentEnd(begin, end) - begin, 1);
    EXPECT_EQ(s_library.findBlockCommentBegin(begin, end) - begin, 4);
    EXPECT_EQ(s_library.findLineComment(begin, end) - begin, 7);
    EXPECT_EQ(s_library.findLineComment(begin, begin + 8), begin + 8);
}

TEST(RemoveComments, TakesNoEndOutOfTheBeginOfABlockComment) {
    bool inBlockComment = false;
    const std::string line = "a/*/b";
    EXPECT_EQ(taken(s_library.removeComments(&line, inBlockComment)), "a");
    EXPECT_TRUE(inBlockComment);
}

TEST(RemoveComments, CarriesABlockCommentOverToTheNextLine) {
    bool inBlockComment = false;
    const std::string first = "x /* y";
    EXPECT_EQ(taken(s_library.removeComments(&first, inBlockComment)), "x ");
    EXPECT_TRUE(inBlockComment);
    const std::string second = "*/ x";
    EXPECT_EQ(taken(s_library.removeComments(&second, inBlockComment)), " x");
    EXPECT_FALSE(inBlockComment);
}

TEST(RemoveComments, ABlockCommentCanBeginAtTheLinesEnd) {
    bool inBlockComment = false;
    const std::string line = "x/*";
    EXPECT_EQ(taken(s_library.removeComments(&line, inBlockComment)), "x");
    EXPECT_TRUE(inBlockComment);
}

TEST(RemoveComments, ALineInsideABlockCommentIsEmpty) {
    bool inBlockComment = true;
    const std::string line = "x // y";
    EXPECT_EQ(taken(s_library.removeComments(&line, inBlockComment)), "");
    EXPECT_TRUE(inBlockComment);
}

TEST(RemoveComments, PutsNothingInACommentsPlace) {
    EXPECT_EQ(withoutComments("a/* x */b"), "ab");
    EXPECT_EQ(withoutComments("a/* x */b/* y */c// z"), "abc");
}

TEST(RemoveComments, ALineCommentHidesABlockComment) {
    EXPECT_EQ(withoutComments("a//b/*c*/d"), "a");
    EXPECT_EQ(withoutComments("a//*b"), "a");
}

TEST(RemoveComments, ABlockCommentHidesALineComment) {
    EXPECT_EQ(withoutComments("a/*//*/b"), "ab");
    EXPECT_EQ(withoutComments("a/*//*/b//c"), "ab");
}

TEST(RemoveComments, QuotesHaveNoMeaning) {
    EXPECT_EQ(withoutComments("\"http://x\""), "\"http:");
}

TEST(RemoveComments, LeavesALineWithoutComments) {
    EXPECT_EQ(withoutComments(""), "");
    EXPECT_EQ(withoutComments("a / b * c"), "a / b * c");
}

TEST(Replace, KeepsAPatternAtTheVeryStart) {
    EXPECT_EQ(replaced("aabaa", "aa"), "aab");
}

TEST(Replace, DeletesWhatADeletionHasMade) {
    EXPECT_EQ(replaced("--aabbc", "ab"), "--c");
}

TEST(Replace, LooksFromTheOffsetOfThePatternsLength) {
    EXPECT_EQ(replaced("xaab", "aa"), "xaab"); // at offset 1
    EXPECT_EQ(replaced("xyaab", "aa"), "xyb"); // at offset 2
    EXPECT_EQ(replaced("aaaaa", "aa"), "aaa");
    EXPECT_EQ(replaced("a", "aa"), "a");
}

TEST(Replace, AnEmptyPatternChangesNothing) {
    EXPECT_EQ(replaced("abc", ""), "abc");
}

TEST(StrTok, SplitsAtRunsOfSeparators) {
    const std::string text = "  one two\t\tthree ";
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " \t", "", nullptr));
    EXPECT_EQ(texts(*tokens), Texts({"one", "two", "three"}));
}

TEST(StrTok, MakesATokenOfEachSingle) {
    const std::string text = "a=(b ==c)";
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " ", "=()", nullptr));
    EXPECT_EQ(texts(*tokens), Texts({"a", "=", "(", "b", "=", "=", "c", ")"}));
}

TEST(StrTok, GivesTheGapAheadOfEachTokenAlsoAnEmptyOne) {
    StringVector gaps;
    const std::string text = "a= \tb";
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " \t", "=", &gaps));
    EXPECT_EQ(texts(*tokens), Texts({"a", "=", "b"}));
    EXPECT_EQ(texts(gaps), Texts({"", "", " \t"}));
}

TEST(StrTok, GivesTheGapThatEndsTheText) {
    StringVector gaps;
    const std::string text = "a ";
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " ", "", &gaps));
    EXPECT_EQ(texts(*tokens), Texts({"a"}));
    EXPECT_EQ(texts(gaps), Texts({"", " "}));
}

TEST(StrTok, AnEmptyTextHasNoTokensAndNoGaps) {
    StringVector gaps;
    const std::string text;
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " ", "=", &gaps));
    EXPECT_TRUE(tokens->empty());
    EXPECT_TRUE(gaps.empty());
}

TEST(ReplaceToken, GivesAVectorWithTheTextInPlaceOfTheToken) {
    const std::string text = "a b c";
    StringVector* tokens = s_library.strTok(&text, " ", "", nullptr);
    const std::unique_ptr<StringVector> result(s_library.replaceToken(tokens, 1, "new"));
    EXPECT_EQ(texts(*result), Texts({"a", "new", "c"}));
}

TEST(ReplaceToken, AnIndexBeyondTheEndGivesTheOldVector) {
    const std::string text = "a b";
    const std::unique_ptr<StringVector> tokens(s_library.strTok(&text, " ", "", nullptr));
    EXPECT_EQ(s_library.replaceToken(tokens.get(), 2, "new"), tokens.get());
    EXPECT_EQ(texts(*tokens), Texts({"a", "b"}));
}

TEST(StringLibrary, DeletesWhatItHasMade) {
    const std::string text = "a b";
    s_library.deleteStr(s_library.strTok(&text, " ", "", nullptr));
    s_library.deleteStr(s_library.removeLeadingWhiteSpace(&text));
}

TEST(Tokeniser, ThePredicatesFollowTheSetInUse) {
    EXPECT_STREQ(g_whiteSpace, " \r\t\n");
    EXPECT_STREQ(g_newLines, "\r\n");
    g_tokeniser = g_newLines;
    EXPECT_TRUE(IsTokeniser('\n'));
    EXPECT_FALSE(IsTokeniser(' '));
    EXPECT_TRUE(NotIsTokeniser(' '));
    EXPECT_FALSE(NotIsTokeniser('\r'));
    EXPECT_FALSE(IsTokeniser('\0'));
}

TEST(Bytes, AreLittleEndian) {
    unsigned char bytes[4];
    intToBytes(0x89abcdef, bytes);
    EXPECT_EQ(std::memcmp(bytes, "\xef\xcd\xab\x89", 4), 0);
    EXPECT_EQ(bytesToInt(bytes), 0x89abcdefU);
    shortToBytes(0x89ab, bytes);
    EXPECT_EQ(std::memcmp(bytes, "\xab\x89", 2), 0);
    EXPECT_EQ(bytesToShort(bytes), 0x89ab);
}

TEST(Hexadecimal, WritesTwoLowerCaseDigitsAByte) {
    char digits[5];
    asciiToHex("\xff\x00", digits, 2);
    EXPECT_STREQ(digits, "ff00");
    asciiToHex("", digits, 0);
    EXPECT_STREQ(digits, "");
}

TEST(Hexadecimal, ReadsDigitsOfEitherCase) {
    char bytes[3] = {'x', 'x', 'x'};
    hexToAscii("FF00", bytes, 4);
    EXPECT_EQ(std::memcmp(bytes, "\xff\x00\x00", 3), 0);
    hexToAscii("aBfE", bytes, 4);
    EXPECT_EQ(std::memcmp(bytes, "\xab\xfe\x00", 3), 0);
}

TEST(Hexadecimal, AnOddLengthTakesTheCharacterBehindTheLastDigit) {
    char bytes[3];
    hexToAscii("1234", bytes, 3);
    EXPECT_EQ(std::memcmp(bytes, "\x12\x34\x00", 3), 0);
}

TEST(Hexadecimal, AnyOtherCharacterFailsAnAssertion) {
    for (const char* digits : {"0g", "/0", ":0", "@0", "G0", "`0", "1"}) {
        const ChildResult result = runInChild([&] {
            char bytes[2];
            hexToAscii(digits, bytes, 1);
        });
        EXPECT_EQ(result.signal, SIGABRT) << digits;
        EXPECT_NE(result.error.find("Assertion `0' failed."), std::string::npos) << result.error;
        EXPECT_NE(result.error.find("charToHex"), std::string::npos) << result.error;
    }
}
