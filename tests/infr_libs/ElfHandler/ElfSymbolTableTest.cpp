#include "infr_libs/ElfHandler/ElfSymbolTable.h"

#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/RecordingErrorHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned s_local = ElfSymbol::STB_LOCAL;
constexpr unsigned s_global = ElfSymbol::STB_GLOBAL;
constexpr unsigned s_weak = ElfSymbol::STB_WEAK;
constexpr unsigned s_function = ElfSymbol::STT_FUNC;

// A new file and its symbol table.
class ElfSymbolTableTest : public testing::Test {
protected:
    RecordingErrorHandler m_errorHandler;
    ElfHandler m_elf{&m_errorHandler, ElfHandler::ET_REL};
    ElfSymbolTable& m_table = *m_elf.getSymbolTable();

    unsigned add(const char* name, unsigned binding = s_global, unsigned value = 0) {
        return m_elf.addSymbol(name, value, 0, binding, s_function, 4);
    }
};

} // namespace

TEST_F(ElfSymbolTableTest, ANewTableHoldsTheNullSymbol) {
    EXPECT_EQ(m_table.numSymbols(), 1U);
    EXPECT_EQ(m_table.numBytes(), 16U);
    EXPECT_EQ(m_table.symbolInfo(0), 0U);
    EXPECT_STREQ(m_table.symbolName(0), "");
}

TEST_F(ElfSymbolTableTest, AddGivesTheNewIndex) {
    const unsigned index = m_table.add(m_elf.addString("main"), 0x100, 7, s_global, s_function, 8);
    EXPECT_EQ(index, 1U);
    EXPECT_EQ(m_table.numSymbols(), 2U);
    EXPECT_EQ(m_table.numBytes(), 32U);
    EXPECT_STREQ(m_table.symbolName(index), "main");
    EXPECT_EQ(m_table.symbolValue(index), 0x100U);
    EXPECT_EQ(m_table.symbolSectionIndex(index), 7U);
    EXPECT_EQ(m_table.symbolInfo(index), 0x12U);
    EXPECT_EQ(m_table.symbolSize(index), 8U);
}

TEST_F(ElfSymbolTableTest, FindsASymbolByName) {
    const unsigned index = add("main");
    EXPECT_EQ(m_table.find("main"), m_table.getSymbol(index));
    EXPECT_EQ(m_table.findNumByName("main"), index);
    EXPECT_EQ(m_table.find("other"), nullptr);
}

TEST_F(ElfSymbolTableTest, TheNumberOfAnUnknownNameIs0) {
    add("main");
    EXPECT_EQ(m_table.findNumByName("other"), 0U);
}

TEST_F(ElfSymbolTableTest, TheEmptyNameIsTheNullSymbols) {
    EXPECT_EQ(m_table.find(""), m_table.getSymbol(0));
    EXPECT_EQ(m_table.findNumByName(""), 0U);
}

TEST_F(ElfSymbolTableTest, OfTwoSymbolsOfOneNameTheLowerIndexIsFound) {
    const unsigned first = add("twin");
    add("other");
    add("twin");
    EXPECT_EQ(m_table.find("twin"), m_table.getSymbol(first));
    EXPECT_EQ(m_table.findNumByName("twin"), first);
    m_table.updateIndex();
    EXPECT_EQ(m_table.findNumByName("twin"), first);
}

TEST_F(ElfSymbolTableTest, FindsSymbolsThatAreAddedAfterALookUp) {
    EXPECT_EQ(m_table.find("late"), nullptr);
    const unsigned index = add("late");
    EXPECT_EQ(m_table.findNumByName("late"), index);
}

TEST_F(ElfSymbolTableTest, FindsASymbolUnderAChangedName) {
    const unsigned index = add("old");
    m_table.updateIndex();
    m_table.getSymbol(index)->st_name = m_elf.addString("new")->getOffset();
    EXPECT_EQ(m_table.findNumByName("new"), index);
}

TEST_F(ElfSymbolTableTest, FindsASymbolUnderItsOldNameToo) {
    const unsigned index = add("old");
    m_table.getSymbol(index)->st_name = m_elf.addString("new")->getOffset();
    EXPECT_EQ(m_table.find("old"), m_table.getSymbol(index));
    EXPECT_EQ(m_table.findNumByName("old"), index);
}

TEST_F(ElfSymbolTableTest, ANameBelongsToTheSymbolThatHadItFirst) {
    const unsigned renamed = add("old");
    m_table.getSymbol(renamed)->st_name = m_elf.addString("name")->getOffset();
    const unsigned added = add("name");
    EXPECT_EQ(m_table.findNumByName("name"), added);
    m_table.updateIndex();
    EXPECT_EQ(m_table.findNumByName("name"), added);
}

TEST_F(ElfSymbolTableTest, UpdatingTheIndexAddsChangedNames) {
    const unsigned renamed = add("old");
    m_table.getSymbol(renamed)->st_name = m_elf.addString("name")->getOffset();
    m_table.updateIndex();
    add("name");
    EXPECT_EQ(m_table.findNumByName("name"), renamed);
    EXPECT_EQ(m_table.findNumByName("old"), renamed);
}

TEST_F(ElfSymbolTableTest, FindGlobalPassesALocalNamesakeOver) {
    const unsigned local = add("twin", s_local);
    const unsigned global = add("twin", s_global);
    EXPECT_EQ(m_table.find("twin"), m_table.getSymbol(local));
    EXPECT_EQ(m_table.findGlobal("twin"), m_table.getSymbol(global));
}

TEST_F(ElfSymbolTableTest, FindGlobalPassesAWeakNamesakeOver) {
    add("twin", s_weak);
    EXPECT_EQ(m_table.findGlobal("twin"), nullptr);
    const unsigned global = add("twin", s_global);
    EXPECT_EQ(m_table.findGlobal("twin"), m_table.getSymbol(global));
}

TEST_F(ElfSymbolTableTest, FindsTheIndexOfASymbolOfItsOwn) {
    for (int i = 0; i < 3000; ++i)
        add(std::to_string(i).c_str());
    for (const unsigned index : {0U, 1U, 1024U, 3000U})
        EXPECT_EQ(m_table.find(m_table.getSymbol(index)), static_cast<int>(index));
    const ElfSymbol stranger(0, 0, 0, 0, 0, 0);
    EXPECT_EQ(m_table.find(&stranger), -1);
}

TEST_F(ElfSymbolTableTest, SymbolsStayInTheirPlaces) {
    const ElfSymbol* first = m_table.getSymbol(add("first"));
    for (int i = 0; i < 3000; ++i)
        add(std::to_string(i).c_str());
    EXPECT_EQ(m_table.find("first"), first);
}

TEST_F(ElfSymbolTableTest, ASymbolOutOfRangeIsNull) {
    EXPECT_EQ(m_table.getSymbol(1), nullptr);
    EXPECT_EQ(m_table.getSymbol(0xFFFFFFFF), nullptr);
}

TEST_F(ElfSymbolTableTest, WritesSymbolsAsInTheFile) {
    m_elf.addSymbol("a", 0x11223344, 0xFFF1, s_weak, s_function, 0x55667788);
    const std::unique_ptr<unsigned char[]> buffer(m_table.createBuffer());
    EXPECT_EQ(std::string(buffer.get() + 16, buffer.get() + 32),
              littleEndianWords({1, 0x11223344, 0x55667788, 0xFFF10022}));
    EXPECT_EQ(std::string(buffer.get(), buffer.get() + 16), std::string(16, '\0'));
}

// ---- Tables from a file ----

TEST(ElfSymbolTable, ReadsAsManyWholeSymbolsAsTheSectionHolds) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addFunction("a", 0);
    image.addFunction("b", 0);
    // The size of an entry isn't used.
    const LabelledBytes file = image.build().set("sh_size[1]", 47).set("sh_entsize[1]", 0);
    EXPECT_EQ(readElf(errorHandler, file.bytes)->numSymbols(), 2U);
}

TEST(ElfSymbolTable, ATableOfNoSymbolsHasNone) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, ElfBuilder().build().set("sh_size[1]", 15).bytes);
    EXPECT_EQ(elf->numSymbols(), 0U);
    EXPECT_EQ(elf->getSymbolTable()->find(""), nullptr);
    EXPECT_EQ(elf->getSymbolTable()->findNumByName(""), 0U);
}

TEST(ElfSymbolTable, NamesThatADoubledTextMovedAreReadAtTheirOldOffsets) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.m_strings = std::string("\0one\0one\0two\0three\0", 19);
    image.addSymbol({.nameOffset = 1});
    image.addSymbol({.nameOffset = 9});  // was "two"
    image.addSymbol({.nameOffset = 13}); // was "three"
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_STREQ(elf->getSymbolName(1), "one");
    EXPECT_STREQ(elf->getSymbolName(2), "three");
    EXPECT_STREQ(elf->getSymbolName(3), "e");
    EXPECT_EQ(elf->getSymbolTable()->findNumByName("three"), 2U);
    EXPECT_EQ(elf->getSymbolTable()->findNumByName("two"), 0U);
}

TEST(ElfSymbolTable, AReadSymbolIsFoundUnderTheNameOfTheFileThoughThatWasChanged) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addFunction("first", 0);
    image.addFunction("second", 0);
    const auto rename = [](ElfSymbol* symbol, std::uint32_t offset) { symbol->st_name = offset; };
    for (const bool global : {true, false}) {
        const auto elf = readElf(errorHandler, image.build().bytes);
        ElfSymbolTable& table = *elf->getSymbolTable();
        const std::uint32_t second = table.findGlobal("second")->st_name;
        rename(global ? table.findGlobal("first") : table.getSymbol(1), second);
        EXPECT_EQ(table.findNumByName("first"), 1U);
        EXPECT_EQ(table.findNumByName("second"), 2U);
        EXPECT_STREQ(elf->getSymbolName(1), "second");
    }
}

// ---- Check ----

TEST_F(ElfSymbolTableTest, CheckReportsTheFirstSectionThatIsNotThere) {
    m_elf.addSymbol("inside", 0, 5, s_global, s_function, 0);
    m_elf.addSymbol("outside", 0, 6, s_global, s_function, 0);
    m_table.check(&m_errorHandler, 5);
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("fatal Invalid section table index for symbol 'outside'\n"));
}

TEST_F(ElfSymbolTableTest, CheckLeavesReservedSectionsAlone) {
    m_elf.addSymbol("last", 0, 0xFEFF, s_global, s_function, 0);
    for (const unsigned section : {0xFF00U, 0xFFF1U, 0xFFF2U, 0xFFFFU})
        m_elf.addSymbol("reserved", 0, section, s_global, s_function, 0);
    m_table.check(&m_errorHandler, 5);
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("fatal Invalid section table index for symbol 'last'\n"));
}

TEST_F(ElfSymbolTableTest, TheHandlersCheckTakesTheHighestSection) {
    m_elf.addAbsoluteSymbol("absolute", 0, s_global, s_function, 0);
    m_elf.addSymbol("inside", 0, 0, s_global, s_function, 0);
    m_elf.check();
    EXPECT_THAT(m_errorHandler.messages(), IsEmpty());
    m_elf.addSymbol("outside", 0, 1, s_global, s_function, 0);
    m_elf.check();
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("fatal Invalid section table index for symbol 'outside'\n"));
}

// ---- The handler's operations ----

TEST_F(ElfSymbolTableTest, AbsoluteCommonAndUndefinedSymbolsHaveTheirSectionIndexes) {
    const unsigned absolute = m_elf.addAbsoluteSymbol("absolute", 1, s_global, s_function, 2, "ignored");
    const unsigned common =
        m_elf.addCommonSymbol("common", 3, 4, s_weak, s_function, "ignored"); // size, value
    const unsigned undefined = m_elf.addUndefinedSymbol("undefined", s_local, s_function, 5, "ignored");
    EXPECT_EQ(m_elf.getSymbolSectionIndex(absolute), 0xFFF1U);
    EXPECT_EQ(m_elf.getSymbolValue(absolute), 1U);
    EXPECT_EQ(m_elf.getSymbolSize(absolute), 2U);
    EXPECT_EQ(m_elf.getSymbolSectionIndex(common), 0xFFF2U);
    EXPECT_EQ(m_elf.getSymbolSize(common), 3U);
    EXPECT_EQ(m_elf.getSymbolValue(common), 4U);
    EXPECT_EQ(m_elf.getSymbolSectionIndex(undefined), 0U);
    EXPECT_EQ(m_elf.getSymbolValue(undefined), 0U);
    EXPECT_EQ(m_elf.getSymbolSize(undefined), 5U);
    EXPECT_FALSE(m_elf.isSymbolGlobal(undefined));
    EXPECT_TRUE(m_elf.isSymbolGlobal(common));
}

TEST_F(ElfSymbolTableTest, LooksUpAValueByName) {
    add("main", s_global, 0x100);
    std::uint32_t value = 7;
    EXPECT_FALSE(m_elf.lookupSymbolValue("other", value));
    EXPECT_EQ(value, 7U);
    EXPECT_TRUE(m_elf.lookupSymbolValue("main", value));
    EXPECT_EQ(value, 0x100U);
}

TEST_F(ElfSymbolTableTest, FindsAndAddsStrings) {
    EXPECT_EQ(m_elf.findString("text"), nullptr);
    const ElfString* string = m_elf.addString("text");
    EXPECT_EQ(m_elf.findString("text"), string);
    EXPECT_STREQ(m_elf.getStringsEntry(string->getOffset()), "text");
    EXPECT_STREQ(m_elf.getStringsEntry(1000), "");
}

TEST_F(ElfSymbolTableTest, AnyOtherBindingIsAnAssertion) {
    const std::vector<std::function<void()>> adders = {
        [&] { m_elf.addSymbol("x", 0, 0, 3, 0, 0); },
        [&] { m_elf.addAbsoluteSymbol("x", 0, 3, 0, 0); },
        [&] { m_elf.addCommonSymbol("x", 0, 0, 3, 0); },
        [&] { m_elf.addUndefinedSymbol("x", 3, 0, 0); },
    };
    for (const auto& add : adders) {
        expectAssertion("binding == 1 || binding == 0 || binding == 2", add);
    }
}

TEST_F(ElfSymbolTableTest, FieldsOfASymbolOutOfRangeAreAnAssertion) {
    const std::vector<std::function<void()>> questions = {
        [&] { m_table.symbolValue(1); },
        [&] { m_table.symbolSize(1); },
        [&] { m_table.symbolInfo(1); },
        [&] { m_table.symbolSectionIndex(1); },
    };
    for (const auto& ask : questions) {
        expectAssertion("symbolNum < m_symbols.size()", ask);
    }
}

// ---- Referenced symbols ----

namespace {

// A section with relocations at 10, 20 and 30 to the symbols 1, 2 and 3, and one at 40 to a symbol that
// isn't there.
class ReferencedSymbolsTest : public ElfSymbolTableTest {
protected:
    void SetUp() override {
        add("a", s_global, 10);
        add("b", s_global, 20);
        add("c", s_global, 30);
        ElfRelocationTable* table = m_elf.newRelocationTable();
        for (unsigned i = 1; i <= 3; ++i)
            table->addRelocation(10 * i, 1, i, 0);
        table->addRelocation(40, 1, 99, 0);
        m_elf.addRelocations(0, table);
    }

    std::set<const ElfSymbol*> m_symbols;
};

} // namespace

TEST_F(ReferencedSymbolsTest, AreAllThatASectionsRelocationsReferTo) {
    m_elf.getReferencedSymbols(m_symbols, 0);
    EXPECT_EQ(m_symbols, (std::set<const ElfSymbol*>{m_table.getSymbol(1), m_table.getSymbol(2),
                                                     m_table.getSymbol(3), nullptr}));
}

TEST_F(ReferencedSymbolsTest, ARangeTakesItsStartAndNotItsEnd) {
    m_elf.getReferencedSymbols(m_symbols, 0, 10, 30);
    EXPECT_EQ(m_symbols, (std::set<const ElfSymbol*>{m_table.getSymbol(1), m_table.getSymbol(2)}));
}

TEST_F(ReferencedSymbolsTest, BetweenTwoSymbolsTheirValuesAreTheRange) {
    for (const unsigned index : {1U, 2U})
        m_table.getSymbol(index)->st_shndx = 0;
    m_elf.getReferencedSymbols(m_symbols, m_table.getSymbol(1), m_table.getSymbol(2));
    EXPECT_EQ(m_symbols, (std::set<const ElfSymbol*>{m_table.getSymbol(1)}));
}

TEST_F(ReferencedSymbolsTest, AreAddedToWhatTheSetHolds) {
    const ElfSymbol other(0, 0, 0, 0, 0, 0);
    m_symbols.insert(&other);
    m_elf.getReferencedSymbols(m_symbols, 0, 30, 31);
    EXPECT_EQ(m_symbols, (std::set<const ElfSymbol*>{m_table.getSymbol(3), &other}));
}

TEST_F(ReferencedSymbolsTest, ASectionThatIsNotThereHasNone) {
    m_elf.getReferencedSymbols(m_symbols, 2);
    m_elf.getReferencedSymbols(m_symbols, 2, 0, 100);
    EXPECT_THAT(m_symbols, IsEmpty());
}

TEST_F(ReferencedSymbolsTest, BothSymbolsMustBeThere) {
    expectAssertion("topSym && botSym",
                    [&] { m_elf.getReferencedSymbols(m_symbols, m_table.getSymbol(1), nullptr); });
}

TEST_F(ReferencedSymbolsTest, BothSymbolsMustLieInOneSection) {
    m_table.getSymbol(2)->st_shndx = 1;
    expectAssertion("topSym->st_shndx == botSym->st_shndx", [&] {
        m_elf.getReferencedSymbols(m_symbols, m_table.getSymbol(1), m_table.getSymbol(2));
    });
}

// ---- Display ----

TEST_F(ElfSymbolTableTest, DisplaysALineForEachSymbol) {
    m_elf.addSymbol("main", 0x10000, 0xFFF1, s_global, s_function, 8);
    const ChildResult result = runInChild([&] { m_table.display(m_elf.getStrings()); });
    EXPECT_EQ(result.output,
              "\nSymbols:\n"
              "0: name: , st_name = 00000000, st_value = 00000000, st_size = 00000000, st_info = 00, "
              "st_other = 00, st_shndx = 00000000\n"
              "1: name: main, st_name = 00000001, st_value = 00010000, st_size = 00000008, st_info = 12, "
              "st_other = 00, st_shndx = 0000fff1\n");
}
