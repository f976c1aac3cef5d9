#include "infr_libs/ElfHandler/ElfStrings.h"

#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/RecordingErrorHandler.h"
#include "tests/support/ScarceMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

std::unique_ptr<ElfStrings> read(ErrorHandler& errorHandler, const std::string& bytes) {
    std::istringstream stream(bytes);
    ElfSectionHeader header(1);
    header.sh_size = static_cast<std::uint32_t>(bytes.size());
    return std::make_unique<ElfStrings>(&errorHandler, stream, &header);
}

std::string written(ElfStrings& strings) {
    const std::unique_ptr<unsigned char[]> table(strings.createBuffer(true));
    return {table.get(), table.get() + strings.numBytes()};
}

} // namespace

TEST(ElfStrings, ANewTableHoldsTheEmptyString) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    EXPECT_EQ(strings.numBytes(), 1U);
    ASSERT_NE(strings.find(""), nullptr);
    EXPECT_EQ(strings.find("")->getOffset(), 0U);
    EXPECT_EQ(written(strings), "\0"s);
}

TEST(ElfStrings, StringsStandBackToBackInOrderOfAdding) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    EXPECT_EQ(strings.add("main")->getOffset(), 1U);
    EXPECT_EQ(strings.add("a")->getOffset(), 6U);
    EXPECT_EQ(strings.add("zebra")->getOffset(), 8U);
    EXPECT_EQ(strings.numBytes(), 14U);
    EXPECT_EQ(written(strings), "\0main\0a\0zebra\0"s);
}

TEST(ElfStrings, AddingATextTwiceReturnsTheSameString) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    ElfString* first = strings.add("main");
    const std::uint32_t numBytes = strings.numBytes();
    EXPECT_EQ(strings.add("main"), first);
    EXPECT_EQ(strings.add(std::string("main").c_str()), first);
    EXPECT_EQ(strings.find("main"), first);
    EXPECT_EQ(strings.numBytes(), numBytes);
}

TEST(ElfStrings, FindsOnlyWholeTextsThatWereAdded) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    strings.add("main");
    for (const char* text : {"mai", "ain", "main2", "other"})
        EXPECT_EQ(strings.find(text), nullptr) << text;
}

TEST(ElfStrings, AStringKeepsItsNameAndOffsetAsTheTableGrows) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    const ElfString* first = strings.add("first");
    for (int i = 0; i < 1000; ++i)
        strings.add(std::to_string(i).c_str());
    EXPECT_STREQ(first->getName(), "first");
    EXPECT_EQ(first->getOffset(), 1U);
    EXPECT_EQ(strings.find("first"), first);
    EXPECT_EQ(strings.getString(first->getOffset()), "first");
}

TEST(ElfStrings, ATextThatLiesInTheTableItselfCanBeAdded) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    strings.add("prefix_main");
    for (int i = 0; i < 20; ++i) { // through growth of the table and without
        const ElfString* string = strings.add(strings.getEntry(8));
        EXPECT_STREQ(string->getName(), "main");
        strings.add(std::to_string(i).c_str());
        const char* end = strings.getEntry(strings.numBytes() - 2);
        EXPECT_STREQ(strings.add(end)->getName(), std::string(1, std::to_string(i).back()).c_str());
    }
}

TEST(ElfStrings, GivesTheTextFromAnyOffset) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    strings.add("main");
    EXPECT_EQ(strings.getString(1), "main");
    EXPECT_EQ(strings.getString(3), "in");
    EXPECT_EQ(strings.getString(5), "");
    EXPECT_EQ(strings.getString(0xFFFFFFFF), "");
}

TEST(ElfStrings, ARoomierTableHoldsTheSame) {
    ErrorHandler errorHandler;
    ElfStrings strings(&errorHandler);
    strings.add("main");
    EXPECT_EQ(strings.createBuffer(false), nullptr);
    EXPECT_EQ(strings.getString(1), "main");
    EXPECT_EQ(strings.getString(6), "");
    EXPECT_EQ(written(strings), "\0main\0"s);
}

// ---- Tables from a file ----

TEST(ElfStrings, ReadsATable) {
    ErrorHandler errorHandler;
    const auto strings = read(errorHandler, "\0main\0helper\0"s);
    EXPECT_EQ(strings->numBytes(), 13U);
    ASSERT_NE(strings->find("helper"), nullptr);
    EXPECT_EQ(strings->find("helper")->getOffset(), 6U);
    EXPECT_EQ(strings->getString(6), "helper");
    EXPECT_EQ(written(*strings), "\0main\0helper\0"s);
}

TEST(ElfStrings, ATableThatWasReadCanGrow) {
    ErrorHandler errorHandler;
    const auto strings = read(errorHandler, "\0main\0"s);
    EXPECT_EQ(strings->add("helper")->getOffset(), 6U);
    EXPECT_EQ(strings->add("main")->getOffset(), 1U);
    EXPECT_EQ(written(*strings), "\0main\0helper\0"s);
}

TEST(ElfStrings, ReportsBytesBehindTheLastZero) {
    const ChildResult result = runInChild([] {
        ErrorHandler errorHandler;
        read(errorHandler, "\0main\0rest"s);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Strings not correctly terminated\n");
}

TEST(ElfStrings, BytesBehindTheLastZeroAreNoStringButCanBeRead) {
    RecordingErrorHandler errorHandler;
    const auto strings = read(errorHandler, "\0main\0rest"s);
    EXPECT_THAT(errorHandler.messages(), ElementsAre("fatal ERROR: Strings not correctly terminated\n"));
    EXPECT_EQ(strings->find("rest"), nullptr);
    EXPECT_EQ(strings->numBytes(), 6U);
    EXPECT_EQ(strings->getString(6), "rest"); // up to the zero that stands behind the table
}

TEST(ElfStrings, ATableOfNothingButTextReportsAndHoldsNothing) {
    RecordingErrorHandler errorHandler;
    const auto strings = read(errorHandler, "text");
    EXPECT_THAT(errorHandler.messages(), ElementsAre("fatal ERROR: Strings not correctly terminated\n"));
    EXPECT_EQ(strings->numBytes(), 0U);
    EXPECT_EQ(strings->find(""), nullptr);
    EXPECT_EQ(strings->add("x")->getOffset(), 0U);
    EXPECT_EQ(written(*strings), "x\0"s);
}

TEST(ElfStrings, AnEmptyTableHoldsNothing) {
    RecordingErrorHandler errorHandler;
    const auto strings = read(errorHandler, "");
    EXPECT_THAT(errorHandler.messages(), IsEmpty());
    EXPECT_EQ(strings->numBytes(), 0U);
    EXPECT_EQ(strings->getString(0), "");
    EXPECT_EQ(written(*strings), "");
}

TEST(ElfStrings, ATableNeedNotBeginWithTheEmptyString) {
    ErrorHandler errorHandler;
    const auto strings = read(errorHandler, "main\0\0"s);
    EXPECT_EQ(strings->find("main")->getOffset(), 0U);
    EXPECT_EQ(strings->find("")->getOffset(), 5U);
}

// What stands behind a doubled text moves down, and old offsets point elsewhere.
TEST(ElfStrings, ADoubledTextMovesTheTextsBehindItDown) {
    ErrorHandler errorHandler;
    const auto strings = read(errorHandler, "\0one\0one\0two\0three\0"s);
    EXPECT_EQ(strings->numBytes(), 15U);
    EXPECT_EQ(strings->find("one")->getOffset(), 1U);
    EXPECT_EQ(strings->find("two")->getOffset(), 5U);
    EXPECT_EQ(strings->find("three")->getOffset(), 9U);
    EXPECT_EQ(written(*strings), "\0one\0two\0three\0"s);
    // The raw table behind the last text still has what the file had there.
    EXPECT_EQ(strings->getString(9), "three");
    EXPECT_EQ(strings->getString(13), "e"); // was "three"
    EXPECT_EQ(strings->getString(15), "ree");
}

TEST(ElfStrings, TextsAreAddedInTheRoomThatDoubledTextsLeft) {
    ErrorHandler errorHandler;
    const auto strings = read(errorHandler, "\0one\0one\0"s);
    EXPECT_EQ(strings->add("xy")->getOffset(), 5U);
    EXPECT_EQ(strings->getString(5), "xy");
    EXPECT_EQ(strings->getString(8), "");
}

TEST(ElfStrings, WhatTheFileLacksIsZerosAndSoTheEmptyText) {
    for (const std::uint32_t numMissing : {1U, 2U, 3U, 0x3000000U}) {
        RecordingErrorHandler errorHandler;
        std::istringstream stream("main");
        ElfSectionHeader header(1);
        header.sh_size = 4 + numMissing;
        ElfStrings strings(&errorHandler, stream, &header);
        EXPECT_THAT(errorHandler.messages(), IsEmpty());
        EXPECT_EQ(strings.find("main")->getOffset(), 0U);
        EXPECT_EQ(strings.numBytes(), numMissing == 1 ? 5U : 6U);
        EXPECT_EQ(strings.find("") != nullptr, numMissing != 1);
    }
}

TEST(ElfStrings, ATableThatNoFileCanHoldEndsTheProcessAlsoWhereTheErrorHandlerReturns) {
    for (const std::uint32_t size : {0x4000010U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const ChildResult result = runInChild([&] {
            ErrorHandler errorHandler;
            errorHandler.setExitOnError(false);
            std::istringstream stream("short");
            ElfSectionHeader header(1);
            header.sh_size = size;
            ElfStrings(&errorHandler, stream, &header);
        });
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "ERROR: Failed to allocate memory for reading strings\n");
    }
}

// ---- Without memory ----

namespace {

constexpr std::size_t s_textSize = 0x800000;

// How adding a text of `s_textSize` bytes ends where so much memory is left.
ChildResult resultOfAdding(std::size_t numBytesLeft) {
    return runInChild([&] {
        ErrorHandler errorHandler;
        errorHandler.setExitOnError(false);
        ElfStrings strings(&errorHandler);
        const std::string text(s_textSize, 'x');
        leaveMemory(numBytesLeft);
        strings.add(text.c_str());
    });
}

} // namespace

TEST(ElfStrings, ATextWithoutMemoryForItEndsTheProcess) {
    const ChildResult result = resultOfAdding(s_textSize / 2);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Failed to allocate memory for string constant '" +
                                std::string(s_textSize, 'x') + "'\n");
}

TEST(ElfStrings, ATableWithoutMemoryToGrowEndsTheProcess) {
    const ChildResult result = resultOfAdding(2 * s_textSize); // for the text, but not for the table
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Failed to allocate memory\n");
}

// ---- Display ----

TEST(ElfStrings, DisplaysTextsInOrderOfAdding) {
    const ChildResult result = runInChild([] {
        ErrorHandler errorHandler;
        ElfStrings strings(&errorHandler);
        strings.add("zebra");
        strings.add("a text with blanks");
        strings.display();
    });
    EXPECT_EQ(result.output, "\nStrings:\n"
                             "00000000 \n"
                             "00000001 zebra\n"
                             "00000007 a text with blanks\n");
}
