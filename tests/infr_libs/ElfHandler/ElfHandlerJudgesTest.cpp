// What this library writes, read by the programs that other tool chains read such files with.

#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/infr_libs/ElfHandler/ReadobjLists.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LabelledBytes.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint32_t s_local = ElfSymbol::STB_LOCAL;
constexpr std::uint32_t s_global = ElfSymbol::STB_GLOBAL;
constexpr std::uint32_t s_weak = ElfSymbol::STB_WEAK;
constexpr std::uint32_t s_object = ElfSymbol::STT_OBJECT;
constexpr std::uint32_t s_function = ElfSymbol::STT_FUNC;

class ElfHandlerJudgesTest : public testing::Test {
protected:
    TemporaryFolder m_folder;
    ErrorHandler m_errorHandler;
    std::string m_file = m_folder.file("out.elf");

    // An executable with code, data, zeroed data, a note and symbols of every kind.
    void writeExecutable() {
        ElfHandler elf(&m_errorHandler, ElfHandler::ET_EXEC);
        const unsigned code = elf.addSegment(0x10000, 16, 16, newArray("0123456789abcdef"), 5, 4);
        const unsigned data = elf.addSegment(0x20000, 4, 100, newArray("data"), 6, 4);
        const unsigned text = elf.addProgbitsSection(0x10000, 16, code, 0, ".text", 6, 4, 0);
        elf.addProgbitsSection(0x20000, 4, data, 0, ".data", 3, 4, 0);
        elf.addNobitsSection(0x20004, 96, data, 4, ".bss", 3, 4, 0);
        elf.addNoteSection(".note", ElfHandler::NOTE_CORE, "core0", 5);
        elf.addSymbol("local", 0x10008, text, s_local, s_function, 4);
        elf.addSymbol("_start", 0x10000, text, s_global, s_function, 8);
        elf.addSymbol("weak", 0x20000, 2, s_weak, s_object, 4);
        elf.addAbsoluteSymbol("absolute", 0x1234, s_global, 0, 0);
        elf.addCommonSymbol("common", 32, 4, s_global, s_object);
        elf.addUndefinedSymbol("undefined", s_global, 0, 0);
        elf.writeToFile(m_file.c_str());
    }

    // Adds what a relocatable file is for.
    static void addCodeWithRelocations(ElfHandler& elf) {
        const unsigned text = elf.addProgbitsSection(0, 8, newArray("01234567"), ".text", 6, 4, 0);
        const unsigned main = elf.addSymbol("main", 0, text, s_global, s_function, 8);
        const unsigned outside = elf.addUndefinedSymbol("outside", s_global, 0, 0);
        ElfRelocationTable* table = elf.newRelocationTable();
        table->addRelocation(0, 1, outside, 0);
        table->addRelocation(4, 2, main, -16);
        elf.addRelocations(text, table);
    }

    void writeRelocatable() {
        ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
        addCodeWithRelocations(elf);
        elf.writeToFile(m_file.c_str());
    }

    // With the tool chain's own sections and a group.
    void writeOwnSections() {
        ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
        addCodeWithRelocations(elf);
        elf.addInfoSection(0, 4, newArray("info"), ".info", 0, 1, 0);
        elf.addExprSection(0, 4, newArray("expr"), ".expr", 0, 1, 0);
        elf.addNetinfoSection(0, 4, newArray("neti"), ".netinfo", 0, 1, 0);
        elf.addGroupSection(8, newArray(littleEndianWords({1, 1})));
        elf.writeToFile(m_file.c_str());
    }

    ChildResult judge(std::vector<std::string> words) const {
        words.push_back(m_file);
        return runProgram(words);
    }

    // Lists in columns, with blanks reduced to one each.
    std::string readelf() const {
        return std::regex_replace(judge({"readelf", "-aW"}).output, std::regex(" +"), " ");
    }

    // Holds our own reading of the file against llvm-readobj's.
    void expectTheSameLists() {
        const ElfLists expected = readobjLists(m_file);
        const ElfLists lists = ourLists(ElfHandler(&m_errorHandler, m_file.c_str()));
        EXPECT_EQ(lists.sections, expected.sections);
        EXPECT_EQ(lists.symbols, expected.symbols);
        EXPECT_EQ(lists.relocations, expected.relocations);
        EXPECT_EQ(expected.complaints, "");
    }
};

} // namespace

TEST_F(ElfHandlerJudgesTest, OfAnExecutableReadelfMindsTheSymbolTablesInfoAlone) {
    writeExecutable();
    const ChildResult result = judge({"readelf", "-aW"});
    EXPECT_EQ(result.exitStatus, 0);
    // `sh_info` of .symtab is 0, where the standard has the index of the first symbol that isn't local.
    EXPECT_EQ(result.error,
              "readelf: Warning: local symbol 0 found at index >= .symtab's sh_info value of 0\n"
              "readelf: Warning: local symbol 1 found at index >= .symtab's sh_info value of 0\n");
}

TEST_F(ElfHandlerJudgesTest, OfAnExecutableReadelfListsEverything) {
    writeExecutable();
    const std::string lists = readelf();
    for (const char* line :
         {"Entry point address: 0x10000\n", "[ 1] .text PROGBITS 00010000 00018c 000010 00 AX 0 0 4\n",
          "[ 2] .data PROGBITS 00020000 00019c 000004 00 WA 0 0 4\n",
          "[ 3] .bss NOBITS 00020004 0001a0 000060 00 WA 0 0 4\n",
          "[ 4] .note NOTE 00000000 0001a0 000018 00 0 0 0\n",
          " LOAD 0x00018c 0x00010000 0x00010000 0x00010 0x00010 R E 0x4\n",
          " LOAD 0x00019c 0x00020000 0x00020000 0x00004 0x00064 RW 0x4\n", " 01 .data .bss \n",
          " 1: 00010008 4 FUNC LOCAL DEFAULT 1 local\n", " 2: 00010000 8 FUNC GLOBAL DEFAULT 1 _start\n",
          " 3: 00020000 4 OBJECT WEAK DEFAULT 2 weak\n",
          " 4: 00001234 0 NOTYPE GLOBAL DEFAULT ABS absolute\n",
          " 5: 00000004 32 OBJECT GLOBAL DEFAULT COM common\n",
          " 6: 00000000 0 NOTYPE GLOBAL DEFAULT UND undefined\n"})
        EXPECT_THAT(lists, HasSubstr(line));
    EXPECT_THAT(lists, HasSubstr("\n ZELM 0x00000005"));
    EXPECT_THAT(lists, HasSubstr("description data: 63 6f 72 65 30"));
}

TEST_F(ElfHandlerJudgesTest, OfAnExecutableReadobjListsWhatWeRead) {
    writeExecutable();
    expectTheSameLists();
}

TEST_F(ElfHandlerJudgesTest, AnExecutableIsAFileForObjdump) {
    writeExecutable();
    const ChildResult result = judge({"objdump", "-x"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, HasSubstr("start address 0x00010000"));
    EXPECT_THAT(result.output, HasSubstr("00010000 g     F .text\t00000008 _start\n"));
    EXPECT_THAT(result.output, HasSubstr("CONTENTS, ALLOC, LOAD, READONLY, CODE"));
}

TEST_F(ElfHandlerJudgesTest, OfARelocatableFileReadelfMindsTheGivenLayoutAlone) {
    writeRelocatable();
    const ChildResult result = judge({"readelf", "-aW"});
    EXPECT_EQ(result.exitStatus, 0);
    // `e_phoff` is 0x34 also where there are no program headers.
    EXPECT_EQ(result.error,
              "readelf: Warning: possibly corrupt ELF header - it has a non-zero program header "
              "offset, but no program headers\n"
              "readelf: Warning: local symbol 0 found at index >= .symtab's sh_info value of 0\n");
    const std::string lists = readelf();
    EXPECT_THAT(lists, HasSubstr("[ 2] .rela.text RELA 00000000 000104 000018 0c 3 1 1\n"));
    EXPECT_THAT(lists, HasSubstr("00000000 00000201 unrecognized: 1 00000000 outside + 0\n"));
    EXPECT_THAT(lists, HasSubstr("00000004 00000102 unrecognized: 2 00000000 main - 10\n"));
}

TEST_F(ElfHandlerJudgesTest, OfARelocatableFileReadobjListsWhatWeRead) {
    writeRelocatable();
    expectTheSameLists();
    EXPECT_THAT(readobjLists(m_file).relocations, ElementsAre("2 0 1 2 0", "2 4 2 1 4294967280"));
}

TEST_F(ElfHandlerJudgesTest, ARelocatableFileIsAFileForObjdump) {
    writeRelocatable();
    const ChildResult result = judge({"objdump", "-xr"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, HasSubstr("00000000 UNKNOWN           outside\n"));
    EXPECT_THAT(result.output, HasSubstr("00000004 UNKNOWN           main-0x00000010\n"));
}

// Type 19 has another meaning elsewhere, 20 and 21 have none, and a group built here names no symbol table:
// objdump takes such a file for none of its own, and the others complain and go on.
TEST_F(ElfHandlerJudgesTest, TheToolChainsOwnSectionsAreListed) {
    writeOwnSections();
    const ChildResult result = judge({"readelf", "-SsW"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, HasSubstr(".rela.text"));
    EXPECT_THAT(result.output, HasSubstr("<unknown>"));
    EXPECT_EQ(judge({"readelf", "-aW"}).exitStatus, 0);
    EXPECT_EQ(
        judge({"llvm-readobj", "--sections", "--symbols", "--relocations", "--section-groups"}).exitStatus,
        0);
    const ElfLists expected = readobjLists(m_file);
    const ElfLists lists = ourLists(ElfHandler(&m_errorHandler, m_file.c_str()));
    EXPECT_EQ(lists.sections, expected.sections);
    EXPECT_EQ(lists.symbols, expected.symbols);
    EXPECT_THAT(lists.sections, Contains(HasSubstr(".netinfo 21 ")));
    EXPECT_THAT(lists.groups, ElementsAre("6 1 0 1"));
}
