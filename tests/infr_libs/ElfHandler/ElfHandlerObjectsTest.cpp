// What other tool chains write, read by this library: its lists are those of llvm-readobj.

#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ReadobjLists.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::IsEmpty;
using testing::Not;

// Functions, data, zeroed data, weak and local symbols, calls that want relocations, and a template that
// wants a COMDAT group.
constexpr const char* s_source = R"(
template<class T> inline T twice(T value) { return value + value; }
extern "C" int outside(int);
int initialised = 3;
int table[] = {1, 2, 3};
static int zeroed;
const char* text = "text";
__attribute__((weak)) int weakOne() { return 1; }
__attribute__((visibility("hidden"))) int hiddenOne() { return 2; }
static int local(int value) { return outside(value) + zeroed++; }
extern "C" int main() { return local(twice(initialised)) + int(twice(2.5)) + table[2] + weakOne(); }
int (*pointer)(int) = local;
)";

struct ObjectKind {
    const char* name;
    std::vector<std::string> options; // of the compiler
    bool hasGroups;
};

class ElfHandlerObjectsTest : public testing::TestWithParam<ObjectKind> {
protected:
    TemporaryFolder m_folder;
    CatchableErrorHandler m_errorHandler;

    std::string compile(const std::vector<std::string>& options) {
        const std::string object = m_folder.file("sample.o");
        std::vector<std::string> words = {"clang++", "-c",   "-fno-addrsig",
                                          "-o",      object, m_folder.write("sample.cpp", s_source)};
        words.insert(words.end(), options.begin(), options.end());
        const ChildResult result = runProgram(words);
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        return object;
    }

    void expectTheSameLists(const std::string& file) {
        const ElfLists expected = readobjLists(file);
        const ElfLists lists = ourLists(ElfHandler(&m_errorHandler, file.c_str()));
        EXPECT_EQ(lists.sections, expected.sections);
        EXPECT_EQ(lists.symbols, expected.symbols);
        EXPECT_EQ(lists.relocations, expected.relocations);
        EXPECT_EQ(lists.groups, expected.groups);
        EXPECT_EQ(expected.complaints, "");
        EXPECT_THAT(lists.symbols, Not(IsEmpty()));
    }
};

} // namespace

TEST_P(ElfHandlerObjectsTest, HasTheListsOfReadobj) {
    const std::string object = compile(GetParam().options);
    expectTheSameLists(object);
    const ElfHandler elf(&m_errorHandler, object.c_str());
    EXPECT_THAT(elf.getRelocationTables(), Not(IsEmpty()));
    EXPECT_EQ(!elf.getGroups().empty(), GetParam().hasGroups);
    EXPECT_NE(elf.getSymbolTable()->findGlobal("main"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ElfHandlerObjectsTest,
    testing::Values(ObjectKind{"Plain", {"-target", "i386"}, true},
                    ObjectKind{"Optimised", {"-target", "i386", "-O2"}, false},
                    ObjectKind{"Debug", {"-target", "i386", "-g"}, true},
                    ObjectKind{
                        "Sections", {"-target", "i386", "-ffunction-sections", "-fdata-sections"}, true},
                    ObjectKind{"WithAddends", {"-target", "powerpcle"}, true}),
    [](const auto& kind) { return kind.param.name; });

TEST_F(ElfHandlerObjectsTest, AnImageWithASegmentHasTheListsOfReadobj) {
    const std::string description = m_folder.write("image.yaml", R"(--- !ELF
FileHeader:
  Class: ELFCLASS32
  Data: ELFDATA2LSB
  Type: ET_EXEC
  Machine: EM_386
  SectionHeaderStringTable: .strtab
ProgramHeaders:
  - {Type: PT_LOAD, Flags: [PF_R, PF_X], VAddr: 0x1000, FirstSec: .text, LastSec: .bss}
Sections:
  - {Name: .text, Type: SHT_PROGBITS, Flags: [SHF_ALLOC, SHF_EXECINSTR], Address: 0x1000, Content: "00112233"}
  - {Name: .bss, Type: SHT_NOBITS, Flags: [SHF_ALLOC, SHF_WRITE], Address: 0x1004, Size: 32}
Symbols:
  - {Name: _start, Type: STT_FUNC, Section: .text, Value: 0x1000, Size: 4, Binding: STB_GLOBAL}
)");
    const std::string image = m_folder.file("image.elf");
    ASSERT_EQ(runProgram({"yaml2obj", description, "-o", image}).exitStatus, 0);
    expectTheSameLists(image);
    const ElfHandler elf(&m_errorHandler, image.c_str());
    EXPECT_EQ(elf.getBlocks().size(), 3U); // the segment, symbols and strings
}

// What a linker makes has a table of section names apart.
TEST_F(ElfHandlerObjectsTest, AnObjectWithATableOfSectionNamesApartIsRefused) {
    const std::string object = compile({"-target", "i386"});
    const std::string linked = m_folder.file("linked.o");
    ASSERT_EQ(runProgram({"ld", "-m", "elf_i386", "-r", "-o", linked, object}).exitStatus, 0);
    std::string message;
    try {
        const ElfHandler elf(&m_errorHandler, linked.c_str());
    } catch (const std::string& thrown) {
        message = thrown;
    }
    EXPECT_EQ(message, "ERROR: Only one string table is supported\n");
}
