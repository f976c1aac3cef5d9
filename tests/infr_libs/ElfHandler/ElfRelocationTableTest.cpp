#include "infr_libs/ElfHandler/ElfRelocationTable.h"

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ElfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t s_rel = ElfSectionHeader::SHT_REL;
constexpr std::uint32_t s_rela = ElfSectionHeader::SHT_RELA;

ElfRelocationTable tableOf(std::uint32_t type, const std::string& bytes, std::uint32_t entsize) {
    const ElfBlock block(static_cast<std::uint32_t>(bytes.size()), newArray(bytes));
    ElfSectionHeader header(1);
    header.sh_type = type;
    header.sh_size = static_cast<std::uint32_t>(bytes.size());
    header.sh_entsize = entsize;
    return ElfRelocationTable(&block, &header);
}

// A table of relocations at these places.
ElfRelocationTable tableAt(const std::vector<std::uint32_t>& offsets) {
    ElfRelocationTable table;
    for (const std::uint32_t offset : offsets)
        table.addRelocation(offset, 1, 1, 0);
    return table;
}

std::vector<std::uint32_t> offsetsOf(const ElfRelocationTable& table) {
    std::vector<std::uint32_t> offsets;
    for (const ElfRelocation& relocation : table.getRelocations())
        offsets.push_back(relocation.getOffset());
    return offsets;
}

std::vector<bool> removedOf(const ElfRelocationTable& table) {
    std::vector<bool> removed;
    for (const ElfRelocation& relocation : table.getRelocations())
        removed.push_back(relocation.getRemoved());
    return removed;
}

std::string bytesOf(const std::unique_ptr<ElfBlock>& block) {
    return {block->getData(), block->getData() + block->getSize()};
}

} // namespace

// ---- Reading ----

TEST(ElfRelocationTable, ANewTableIsEmpty) {
    const ElfRelocationTable table;
    EXPECT_EQ(table.getNumEntries(), 0U);
    EXPECT_FALSE(table.hasAddend());
    EXPECT_FALSE(table.requiresAddend());
}

TEST(ElfRelocationTable, ReadsEntriesWithoutAddend) {
    const auto table = tableOf(s_rel, littleEndianWords({1, 0x102, 5, 0x203}), 8);
    EXPECT_THAT(offsetsOf(table), ElementsAre(1, 5));
    EXPECT_EQ(table.getRelocations().back().getSymbol(), 2U);
    EXPECT_EQ(table.getRelocations().back().getType(), 3U);
    EXPECT_FALSE(table.hasAddend());
}

TEST(ElfRelocationTable, ReadsEntriesWithAddend) {
    const auto table = tableOf(s_rela, littleEndianWords({1, 0x102, 0, 5, 0x203, 0}), 12);
    EXPECT_THAT(offsetsOf(table), ElementsAre(1, 5));
    EXPECT_TRUE(table.hasAddend());
    EXPECT_FALSE(table.requiresAddend()); // all are 0
}

TEST(ElfRelocationTable, RequiresAddendsOnceOneIsNot0) {
    const auto table = tableOf(s_rela, littleEndianWords({1, 0x102, 0, 5, 0x203, 7}), 12);
    EXPECT_TRUE(table.requiresAddend());
    EXPECT_EQ(table.getRelocations().back().getAddend(), 7);
}

TEST(ElfRelocationTable, EntriesStandEntsizeApart) {
    const auto table = tableOf(s_rel, littleEndianWords({1, 0x102, 99, 5, 0x203, 99}), 12);
    EXPECT_THAT(offsetsOf(table), ElementsAre(1, 5));
}

TEST(ElfRelocationTable, AnEntsizeOf0MeansNoEntries) {
    EXPECT_EQ(tableOf(s_rel, littleEndianWords({1, 0x102}), 0).getNumEntries(), 0U);
}

TEST(ElfRelocationTable, ASmallEntsizeStopsAtTheLastEntryThatFits) {
    EXPECT_THAT(offsetsOf(tableOf(s_rel, littleEndianWords({1, 2, 3}), 4)), ElementsAre(1, 2));
    EXPECT_THAT(offsetsOf(tableOf(s_rela, littleEndianWords({1, 2, 3}), 4)), ElementsAre(1));
    EXPECT_THAT(offsetsOf(tableOf(s_rel, std::string(7, 'x'), 1)), IsEmpty());
}

TEST(ElfRelocationTable, ReadsFromTheStartOfTheBlockNotOfTheSection) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = littleEndianWords({11, 0x101, 22, 0x101, 33, 0x101})});
    image.addSection({.name = ".rel", .type = s_rel, .size = 16, .segment = 0, .offset = 8, .entsize = 8});
    const auto elf = readElf(errorHandler, image.build().bytes);
    const auto& tables = elf->getSectionHeader(0)->getRelocations();
    ASSERT_THAT(tables, SizeIs(1));
    EXPECT_THAT(offsetsOf(*tables.front()), ElementsAre(11, 22));
}

TEST(ElfRelocationTable, AnyOtherSectionIsAnAssertion) {
    expectAssertion("sectionHeader->sh_type == 9 || sectionHeader->sh_type == 4", [] { tableOf(1, "", 8); });
}

// ---- Adding ----

TEST(ElfRelocationTable, AnAddendOtherThan0IsWhatEntriesHaveButNotRequire) {
    ElfRelocationTable table;
    table.addRelocation(1, 2, 3, 0);
    EXPECT_FALSE(table.hasAddend());
    table.addRelocation(1, 2, 3, -1);
    EXPECT_TRUE(table.hasAddend());
    EXPECT_FALSE(table.requiresAddend());
}

TEST(ElfRelocationTable, ARelocationToTheNullSymbolIsAnAssertion) {
    expectAssertion("symbol != 0", [] { ElfRelocationTable().addRelocation(0, 1, 0, 0); });
}

// ---- Adjusting ----

TEST(ElfRelocationTable, RemovedBytesTakeTheirEntriesAndMoveThoseBehindDown) {
    ElfRelocationTable table = tableAt({95, 96, 99, 100});
    table.adjustOffsets(100, 4);
    EXPECT_THAT(offsetsOf(table), ElementsAre(95, 96, 99, 96));
    EXPECT_THAT(removedOf(table), ElementsAre(false, true, true, false));
}

TEST(ElfRelocationTable, InsertedBytesMoveEntriesFromThePositionOnUp) {
    ElfRelocationTable table = tableAt({99, 100});
    table.adjustOffsets(100, -4);
    EXPECT_THAT(offsetsOf(table), ElementsAre(99, 104));
    EXPECT_THAT(removedOf(table), ElementsAre(false, false));
}

TEST(ElfRelocationTable, ADeltaOf0ChangesNothing) {
    ElfRelocationTable table = tableAt({99, 100});
    table.adjustOffsets(100, 0);
    EXPECT_THAT(offsetsOf(table), ElementsAre(99, 100));
    EXPECT_THAT(removedOf(table), ElementsAre(false, false));
}

TEST(ElfRelocationTable, MoreRemovedBytesThanLieBeforeThePositionReachToTheStart) {
    ElfRelocationTable table = tableAt({0, 3, 4, 0xFFFFFFFF});
    table.adjustOffsets(4, 100);
    EXPECT_THAT(removedOf(table), ElementsAre(true, true, false, false));
}

TEST(ElfRelocationTable, ARemovedEntryStillCounts) {
    ElfRelocationTable table = tableAt({96, 100});
    table.adjustOffsets(100, 4);
    EXPECT_EQ(table.getNumEntries(), 2U);
}

TEST(ElfRelocationTable, SubstitutesOneSymbolForAnother) {
    ElfRelocationTable table;
    table.addRelocation(0, 7, 1, 0);
    table.addRelocation(4, 8, 2, 0);
    table.substituteSymbol(1, 3);
    EXPECT_EQ(table.getRelocations().front().getSymbol(), 3U);
    EXPECT_EQ(table.getRelocations().front().getType(), 7U);
    EXPECT_EQ(table.getRelocations().back().getSymbol(), 2U);
}

// ---- Encoding ----

TEST(ElfRelocationTable, EncodesEntriesWithAddend) {
    ElfRelocationTable table;
    table.addRelocation(1, 2, 3, 0);
    table.addRelocation(4, 5, 6, -1);
    const std::unique_ptr<ElfBlock> block(table.encode(true));
    EXPECT_EQ(bytesOf(block), littleEndianWords({1, 0x302, 0, 4, 0x605, 0xFFFFFFFF}));
    EXPECT_TRUE(table.hasAddend());
}

TEST(ElfRelocationTable, EncodesEntriesWithoutAddendWhereNoneThatWasReadNeedsOne) {
    ElfRelocationTable table;
    table.addRelocation(4, 5, 6, -1);
    const std::unique_ptr<ElfBlock> block(table.encode(false));
    EXPECT_EQ(bytesOf(block), littleEndianWords({4, 0x605}));
    EXPECT_FALSE(table.hasAddend());
}

TEST(ElfRelocationTable, EncodesRemovedEntriesToo) {
    ElfRelocationTable table = tableAt({96, 100});
    table.adjustOffsets(100, 4);
    const std::unique_ptr<ElfBlock> block(table.encode(false));
    EXPECT_EQ(bytesOf(block), littleEndianWords({96, 0x101, 96, 0x101}));
}

TEST(ElfRelocationTable, WritesWhatItReads) {
    const std::string bytes = littleEndianWords({1, 0x102, 7, 5, 0x203, 0xFFFFFFFF});
    const std::unique_ptr<ElfBlock> block(tableOf(s_rela, bytes, 12).encode(true));
    EXPECT_EQ(bytesOf(block), bytes);
}

TEST(ElfRelocationTable, LeavingOutAnAddendThatWasReadIsAnAssertion) {
    expectAssertion("writeAddend | !m_requiresAddend", [] {
        ElfRelocationTable table = tableOf(s_rela, littleEndianWords({1, 0x102, 7}), 12);
        table.encode(false);
    });
}

TEST(ElfRelocationTable, ASecondEncodingIsAnAssertion) {
    expectAssertion("m_elfBlock == __null", [] {
        ElfRelocationTable table;
        const std::unique_ptr<ElfBlock> block(table.encode(true));
        table.encode(true);
    });
}

// ---- The handler's operations ----

namespace {

class ElfHandlerRelocationsTest : public testing::Test {
protected:
    ErrorHandler m_errorHandler;
    ElfHandler m_elf{&m_errorHandler, ElfHandler::ET_REL};
    unsigned m_text = m_elf.addProgbitsSection(0, 8, newArray("01234567"), ".text", 6, 4, 0);
    unsigned m_data = m_elf.addProgbitsSection(0, 4, newArray("abcd"), ".data", 3, 4, 0);
};

} // namespace

TEST_F(ElfHandlerRelocationsTest, ASectionOfRelocationsIsNamedAfterItsTarget) {
    m_elf.addRelocations(m_data, m_elf.newRelocationTable());
    const ElfSectionHeader* header = m_elf.getSectionHeader(3);
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->getName(m_elf.getStrings()), ".rela.data");
}

TEST_F(ElfHandlerRelocationsTest, ASectionOfRelocationsHasAddendsAndABlockOfItsOwn) {
    ElfRelocationTable* table = m_elf.newRelocationTable();
    table->addRelocation(4, 2, 1, 0);
    m_elf.addRelocations(m_text, table);
    const ElfSectionHeader* header = m_elf.getSectionHeader(3);
    EXPECT_EQ(header->sh_type, 4U);
    EXPECT_EQ(header->sh_flags, 0U);
    EXPECT_EQ(header->sh_size, 12U);
    EXPECT_EQ(header->sh_link, 0U);
    EXPECT_EQ(header->sh_info, m_text);
    EXPECT_EQ(header->sh_addralign, 1U);
    EXPECT_EQ(header->sh_entsize, 12U);
    EXPECT_EQ(sectionData(m_elf, 3), littleEndianWords({4, 0x102, 0}));
    EXPECT_THAT(m_elf.getSectionHeader(m_text)->getRelocations(), ElementsAre(table));
}

TEST_F(ElfHandlerRelocationsTest, RelocationsOfASectionThatIsNotThereAreAnAssertion) {
    expectAssertion("sectionNo < m_sectionHeaders.size()",
                    [&] { m_elf.addRelocations(9, m_elf.newRelocationTable()); });
}

TEST_F(ElfHandlerRelocationsTest, TablesStayInTheirPlaces) {
    ElfRelocationTable* first = m_elf.newRelocationTable();
    first->addRelocation(1, 1, 1, 0);
    for (int i = 0; i < 100; ++i)
        m_elf.newRelocationTable();
    EXPECT_EQ(first->getNumEntries(), 1U);
}

TEST_F(ElfHandlerRelocationsTest, AdjustsTheTablesOfOneSection) {
    ElfRelocationTable* ofText = m_elf.newRelocationTable();
    ElfRelocationTable* ofData = m_elf.newRelocationTable();
    for (ElfRelocationTable* table : {ofText, ofData})
        table->addRelocation(4, 1, 1, 0);
    m_elf.addRelocations(m_text, ofText);
    m_elf.addRelocations(m_data, ofData);
    m_elf.adjustRelocationOffsets(m_text, 2, -8);
    m_elf.adjustRelocationOffsets(99, 2, -8); // not there
    EXPECT_THAT(offsetsOf(*ofText), ElementsAre(12));
    EXPECT_THAT(offsetsOf(*ofData), ElementsAre(4));
}

TEST_F(ElfHandlerRelocationsTest, SubstitutesReferencesInAllTables) {
    ElfRelocationTable* attached = m_elf.newRelocationTable();
    ElfRelocationTable* loose = m_elf.newRelocationTable();
    for (ElfRelocationTable* table : {attached, loose})
        table->addRelocation(4, 1, 1, 0);
    m_elf.addRelocations(m_text, attached);
    m_elf.substituteRelocationReferences(1, 5);
    EXPECT_EQ(attached->getRelocations().front().getSymbol(), 5U);
    EXPECT_EQ(loose->getRelocations().front().getSymbol(), 5U);
}

TEST_F(ElfHandlerRelocationsTest, AllSectionsOfRelocationsNameTheSymbolTable) {
    m_elf.addRelocations(m_text, m_elf.newRelocationTable());
    m_elf.addRelocations(m_data, m_elf.newRelocationTable());
    m_elf.updateRelocationSymbolTableLinks(42);
    EXPECT_EQ(m_elf.getSectionHeader(3)->sh_link, 42U);
    EXPECT_EQ(m_elf.getSectionHeader(4)->sh_link, 42U);
    EXPECT_EQ(m_elf.getSectionHeader(m_text)->sh_link, 0U);
}

// ---- Display ----

TEST(ElfRelocationTable, DisplaysOneEntryInTheSingular) {
    const ChildResult result = runInChild([] { tableAt({0x10}).display(); });
    EXPECT_EQ(result.output, "\nRelocation table contains 1  entry::\n"
                             "Index 0\n"
                             "Offset: 00000010\n"
                             "Type: 00000001\n"
                             "Symbol: 00000001\n"
                             "Addend: 00000000\n");
}

TEST(ElfRelocationTable, DisplaysAnyOtherNumberInThePlural) {
    EXPECT_EQ(runInChild([] { tableAt({}).display(); }).output, "\nRelocation table contains 0  entries::\n");
    EXPECT_THAT(runInChild([] {
                    tableAt({1, 2}).display();
                }).output,
                HasSubstr("\nRelocation table contains 2  entries::\nIndex 0\n"));
}
