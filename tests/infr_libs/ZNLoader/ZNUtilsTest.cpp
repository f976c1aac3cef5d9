#include "infr_libs/ZNLoader/ZNUtils.h"

#include "tests/support/GroupingLocale.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

namespace {

std::string printed(const ZNUtils::Location& where) {
    std::string buffer(where.bound() + 1, '#');
    const int length = where.print(buffer.data());
    buffer.resize(static_cast<std::size_t>(length));
    return buffer;
}

std::string thrownWith(ZNUtils& utils, ZNUtils::ErrorCode code, const char* text) {
    try {
        utils.throwError(code, ZNUtils::NoLocation(), "%s", text);
    } catch (const std::string& thrown) {
        return thrown;
    }
}

// As a client of the library would write one, with no word about its room.
class PlaceInATool : public ZNUtils::Location {
public:
    int print(char* buffer) const override { return std::sprintf(buffer, "here> "); }
};

} // namespace

TEST(ZNUtilsLocation, NoLocationPrintsNothing) {
    EXPECT_EQ(printed(ZNUtils::NoLocation()), "");
}

TEST(ZNUtilsLocation, FileNamePrintsAColonAndABlank) {
    EXPECT_EQ(printed(ZNUtils::FileNameLocation("a.zn")), "a.zn: ");
}

TEST(ZNUtilsLocation, FileLineHasNoColonBehindTheLine) {
    EXPECT_EQ(printed(ZNUtils::FileLineLocation("a.zn", 12)), "a.zn:12 ");
}

TEST(ZNUtilsLocation, FileLinePrintsTheLineAsASignedNumber) {
    EXPECT_EQ(printed(ZNUtils::FileLineLocation("a.zn", 0x80000000u)), "a.zn:-2147483648 ");
}

TEST(ZNUtilsLocation, AppLocationIsAFixedTextOfElevenCharacters) {
    char buffer[16];
    EXPECT_EQ(ZNUtils::AppLocation().print(buffer), 11);
    EXPECT_STREQ(buffer, "ZNHandler: ");
}

TEST(ZNUtilsErrors, HaveLocationKindCodeAndText) {
    ZNUtils utils;
    utils.buildErrorMessage(11032, ZNUtils::FileLineLocation("a.zn", 3), "Node \"%s\" is %d.\n", "n", 7);
    EXPECT_EQ(utils.getErrorText(), "a.zn:3 Error: ZN11032 Node \"n\" is 7.\n");
}

TEST(ZNUtilsErrors, CodesHaveFiveDigits) {
    ZNUtils utils;
    utils.buildErrorMessage(12, ZNUtils::NoLocation(), "x\n");
    EXPECT_EQ(utils.getErrorText(), "Error: ZN00012 x\n");
}

TEST(ZNUtilsErrors, Code11000HasNeitherKindNorNumber) {
    ZNUtils utils;
    utils.buildErrorMessage(11000, ZNUtils::FileNameLocation("a.zn"), "x\n");
    EXPECT_EQ(utils.getErrorText(), "a.zn: x\n");
}

TEST(ZNUtilsErrors, Accumulate) {
    ZNUtils utils;
    utils.buildErrorMessage(11001, ZNUtils::NoLocation(), "a\n");
    EXPECT_EQ(thrownWith(utils, 11002, "b\n"), "Error: ZN11001 a\nError: ZN11002 b\n");
}

TEST(ZNUtilsErrors, AnIgnoredCodeLeavesTheTextAndThrowsWhatWasThereBefore) {
    ZNUtils utils;
    utils.buildErrorMessage(11001, ZNUtils::NoLocation(), "a\n");
    utils.ignore(11002);
    utils.buildErrorMessage(11002, ZNUtils::NoLocation(), "b\n");
    EXPECT_EQ(utils.getErrorText(), "Error: ZN11001 a\n");
    EXPECT_EQ(thrownWith(utils, 11002, "c\n"), "Error: ZN11001 a\n");
}

TEST(ZNUtilsErrors, OfAnyLengthComeOutWhole) {
    ZNUtils utils;
    const std::string text(100'000, 'x');
    const std::string name(70'000, 'f');
    utils.buildErrorMessage(11000, ZNUtils::FileLineLocation(name, 1), "%s", text.c_str());
    EXPECT_EQ(utils.getErrorText(), name + ":1 " + text);
}

TEST(ZNUtilsErrors, TakeALocationOfTheCallersOwnClass) {
    ZNUtils utils;
    utils.buildErrorMessage(11001, PlaceInATool(), "x\n");
    EXPECT_EQ(utils.getErrorText(), "here> Error: ZN11001 x\n");
}

TEST(ZNUtilsWarnings, AreAppendedToTheTargetAlone) {
    ZNUtils utils;
    std::string target = "before\n";
    utils.buildWarningMessage(&target, 11002, ZNUtils::FileLineLocation("a.zn", 3), "%s; ignoring.\n", "x");
    EXPECT_EQ(target, "before\na.zn:3 Warning: ZN11002 x; ignoring.\n");
    EXPECT_EQ(utils.getErrorText(), "");
}

TEST(ZNUtilsWarnings, Code11000HasNeitherKindNorNumber) {
    ZNUtils utils;
    std::string target;
    utils.buildWarningMessage(&target, 11000, ZNUtils::NoLocation(), "x\n");
    EXPECT_EQ(target, "x\n");
}

TEST(ZNUtilsWarnings, AnIgnoredCodeLeavesTheTarget) {
    ZNUtils utils;
    std::string target = "before\n";
    utils.ignore(11135);
    utils.buildWarningMessage(&target, 11135, ZNUtils::NoLocation(), "x\n");
    EXPECT_EQ(target, "before\n");
}

TEST(ZNUtilsWarnings, ANullTargetIsNoFault) {
    ZNUtils().buildWarningMessage(nullptr, 11002, ZNUtils::NoLocation(), "x\n");
}

TEST(ZNUtilsStricmp, ComparesWithoutRegardToCase) {
    EXPECT_EQ(ZNUtils::Stricmp("ab", "AB"), 0);
    EXPECT_EQ(ZNUtils::Stricmp("", ""), 0);
}

TEST(ZNUtilsStricmp, AShorterTextIsSmaller) {
    EXPECT_EQ(ZNUtils::Stricmp("a", "ab"), -1);
    EXPECT_EQ(ZNUtils::Stricmp("ab", "a"), 1);
}

TEST(ZNUtilsStricmp, TheFirstDifferenceDecides) {
    EXPECT_EQ(ZNUtils::Stricmp("aBz", "AcA"), -1);
    EXPECT_EQ(ZNUtils::Stricmp("b", "A"), 1);
    // Letters count as capitals: '_' lies between the two alphabets.
    EXPECT_EQ(ZNUtils::Stricmp("a", "_"), -1);
}

TEST(ZNUtilsStricmp, BytesAbove127AreTheLargest) {
    EXPECT_EQ(ZNUtils::Stricmp("\xe9", "z"), 1);
}

TEST(ZNUtilsIntOf, DetectsTheBase) {
    EXPECT_EQ(ZNUtils::IntOf("16"), 16);
    EXPECT_EQ(ZNUtils::IntOf("0x10"), 16);
    EXPECT_EQ(ZNUtils::IntOf("0X10"), 16);
    EXPECT_EQ(ZNUtils::IntOf("010"), 8);
    EXPECT_EQ(ZNUtils::IntOf("-7"), -7);
}

TEST(ZNUtilsIntOf, StopsAtTheFirstCharacterThatDoesNotFit) {
    EXPECT_EQ(ZNUtils::IntOf("12abc"), 12);
    EXPECT_EQ(ZNUtils::IntOf("08"), 0);
}

TEST(ZNUtilsIntOf, IsZeroWhereNothingCanBeRead) {
    EXPECT_EQ(ZNUtils::IntOf(""), 0);
    EXPECT_EQ(ZNUtils::IntOf("x"), 0);
    EXPECT_EQ(ZNUtils::IntOf("0x"), 0);
}

TEST(ZNUtilsIntOf, SaturatesAtTheEndsOfAnInt) {
    EXPECT_EQ(ZNUtils::IntOf("2147483648"), INT_MAX);
    EXPECT_EQ(ZNUtils::IntOf("0x4000000000"), INT_MAX);
    EXPECT_EQ(ZNUtils::IntOf("-2147483649"), INT_MIN);
}

TEST(ZNUtilsIntOf, KnowsNoGroupsOfDigits) {
    const GroupingLocale locale;
    EXPECT_EQ(ZNUtils::IntOf("1,234"), 1);
    EXPECT_EQ(ZNUtils::IntOf("0x1,234"), 1);
    EXPECT_EQ(ZNUtils::IntOf("-1234567"), -1234567);
}

TEST(ZNUtilsDecimalOf, IsDecimalWhateverTheDigitsStartWith) {
    EXPECT_EQ(ZNUtils::DecimalOf("16"), 16);
    EXPECT_EQ(ZNUtils::DecimalOf("010"), 10);
    EXPECT_EQ(ZNUtils::DecimalOf("0x10"), 0);
    EXPECT_EQ(ZNUtils::DecimalOf("-7x"), -7);
    EXPECT_EQ(ZNUtils::DecimalOf(""), 0);
    EXPECT_EQ(ZNUtils::DecimalOf("2147483648"), INT_MAX);
}

TEST(ZNUtilsDecimalOf, KnowsNoGroupsOfDigits) {
    const GroupingLocale locale;
    EXPECT_EQ(ZNUtils::DecimalOf("1,234"), 1);
}
