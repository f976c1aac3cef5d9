#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_rich = "Symbol table '.symtab' contains 4 entries:\n"
                           "Num  Value     Size  Type    Bind    Vis      Ndx  Name\n"
                           "  0  00000000     0  NOTYPE  LOCAL   DEFAULT  UND\n"
                           "  1  00010000     4  FUNC    GLOBAL  DEFAULT    1  main\n"
                           "  2  00010008     4  FUNC    GLOBAL  DEFAULT    1  helper\n"
                           "  3  00000000     0  OBJECT  WEAK    DEFAULT    4  main\n";

// A symbol of every kind that a list has words for, and of some that it has none for.
ElfBuilder strangeElf() {
    ElfBuilder elf;
    elf.addSection({.name = ".text", .bytes = "code"});
    elf.addSymbol({.info = 3, .section = 1});
    elf.addSymbol({.name = "a.c", .info = 4, .section = 0xFFF1});
    elf.addSymbol({.name = "c\x01", .size = 99999, .info = 0x15, .other = 1, .section = 0xFFF2});
    elf.addSymbol({.name = "tls", .size = 100000, .info = 0x16, .other = 2, .section = 1});
    elf.addSymbol({.name = "os", .info = 0xAA, .other = 3, .section = 0xFF20});
    elf.addSymbol({.name = "cpu", .info = 0xDD, .other = 0x84, .section = 0xFF00});
    elf.addSymbol({.name = "none", .info = 0x77, .section = 0xFF40});
    elf.addSymbol({.name = "far", .section = 77});
    elf.addSymbol({.nameOffset = 0x1000});
    return elf;
}

} // namespace

TEST(ElfSymbols, ListsTheTablesOfSymbols) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().bytes);
    ElfBuilder two = richElf();
    two.addSection({.name = ".dynsym", .type = 11, .bytes = std::string(16, '\0'), .link = 0, .entsize = 16});
    folder.write("two.o", two.build().bytes);
    ElfBuilder none;
    none.m_hasSymbols = false;
    folder.write("none.o", none.build().bytes);
    const std::string s_loaders = "Symbol table '.dynsym' contains 1 entry:\n"
                                  "Num  Value     Size  Type    Bind   Vis      Ndx  Name\n"
                                  "  0  00000000     0  NOTYPE  LOCAL  DEFAULT  UND\n"
                                  "\n";
    const CommandCase cases[] = {
        {"zetool elf symbols rich.o", 0, s_rich},
        {"zetool elf symbols - < rich.o", 0, s_rich},
        {"zetool elf symbols two.o", 0, s_loaders + s_rich},
        {"zetool elf symbols none.o", 0, ""},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfSymbols, HasWordsForSymbolsOfAnyKind) {
    const TemporaryFolder folder;
    folder.write("strange.o", strangeElf().build().bytes);
    folder.write("gnu.o", strangeElf().build().set("e_ident[7]", 3).bytes);
    const CommandCase cases[] = {
        {"zetool elf symbols strange.o | sed 's/   */  /g' | tail -n 9; zetool elf symbols gnu.o 2>/dev/null "
         "| "
         "sed -n 's/   */  /g; /os$/p'",
         0,
         "  1  00000000  0  SECTION  LOCAL  DEFAULT  1  .text\n"
         "  2  00000000  0  FILE  LOCAL  DEFAULT  ABS  a.c\n"
         "  3  00000000  99999  COMMON  GLOBAL  INTERNAL  COM  c^A\n"
         "  4  00000000  0x186a0  TLS  GLOBAL  HIDDEN  1  tls\n"
         "  5  00000000  0  <OS specific>: 10  <OS specific>: 10  PROTECTED  OS [0xff20]  os\n"
         "  6  00000000  0  <processor specific>: 13  <processor specific>: 13  DEFAULT [<other>: 84]  "
         "PRC[0xff00] "
         " cpu\n"
         "  7  00000000  0  <unknown>: 7  <unknown>: 7  DEFAULT  RSV[0xff40]  none\n"
         "  8  00000000  0  NOTYPE  LOCAL  DEFAULT  bad section index[77]  far\n"
         "  9  00000000  0  NOTYPE  LOCAL  DEFAULT  UND  <corrupt>\n"
         "  5  00000000  0  IFUNC  UNIQUE  PROTECTED  OS [0xff20]  os\n",
         "zetool: strange.o: names lie outside the strings: 1\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfSymbols, NamesAreThoseOfTheFile) {
    // A text that stands twice makes the plugin's reader move what is behind.
    const TemporaryFolder folder;
    ElfBuilder doubled;
    doubled.m_strings = std::string("\0one\0one\0two\0", 13);
    doubled.addSymbol({.nameOffset = 9});
    doubled.addSymbol({.nameOffset = 2}); // within a text
    folder.write("doubled.o", doubled.build().set("sh_name[1]", 0).bytes);
    const ChildResult result = zetoolShell(folder.path(), "zetool elf symbols doubled.o");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "Symbol table '' contains 3 entries:\n"
                             "Num  Value     Size  Type    Bind   Vis      Ndx  Name\n"
                             "  0  00000000     0  NOTYPE  LOCAL  DEFAULT  UND\n"
                             "  1  00000000     0  NOTYPE  LOCAL  DEFAULT  UND  two\n"
                             "  2  00000000     0  NOTYPE  LOCAL  DEFAULT  UND  ne\n");
}

TEST(ElfSymbols, SaysWhatIsWrong) {
    const TemporaryFolder folder;
    const LabelledBytes good = richElf().build();
    const std::string cut = good.bytes.substr(0, 0x25c + 2 * 16 + 15);
    folder.write("cut.o", cut);
    // Tables of the same bytes.
    ElfBuilder many;
    for (int i = 0; i < 3; ++i)
        many.addSection({.name = ".again", .type = 2, .bytes = std::string(16, '\0')});
    LabelledBytes tables = many.build();
    for (int i = 1; i < 4; ++i) {
        tables.set("sh_offset[" + std::to_string(i) + "]", 0);
        tables.set("sh_size[" + std::to_string(i) + "]", 16 * 11);
    }
    folder.write("many.o", tables.bytes);
    const CommandCase cases[] = {
        {"zetool elf symbols cut.o", 1,
         "Symbol table '<corrupt>' contains 2 entries:\n"
         "Num  Value     Size  Type    Bind    Vis      Ndx  Name\n"
         "  0  00000000     0  NOTYPE  LOCAL   DEFAULT  UND\n"
         "  1  00010000     4  FUNC    GLOBAL  DEFAULT    1  <corrupt>\n",
         "zetool: cut.o: section 8: reaches past the end of the file\n"
         "zetool: cut.o: section 9: reaches past the end of the file\n"
         "zetool: cut.o: names lie outside the strings: 2\n"},
        {"zetool elf symbols many.o > /dev/null", 1, "",
         "zetool: many.o: section 3 '.again': is left out, since tables take more bytes than the file has\n"
         "zetool: many.o: names lie outside the strings: 12\n"},
        {"zetool elf symbols rich.o another.o", 2, "",
         "zetool: elf symbols: The following argument was not expected: another.o\n"
         "zetool: 'zetool elf symbols --help' shows what there is\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfSymbols, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("strange.o", strangeElf().build().bytes);
    const ChildResult strange = zetoolShell(folder.path(), "zetool elf symbols --json strange.o");
    EXPECT_EQ(strange.exitStatus, 1);
    EXPECT_EQ(schemaFaults("elf-symbols.schema.json", strange.output), "");
    ElfBuilder small;
    small.addSymbol({.name = "\xe9", .value = 1, .size = 2, .info = 0x12, .other = 2, .section = 1});
    folder.write("small.o", small.build().bytes);
    const ChildResult result = zetoolShell(folder.path(), "zetool elf symbols --json small.o");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "{\n"
                             "  \"type\": \"elfSymbols\",\n"
                             "  \"version\": 1,\n"
                             "  \"tables\": [\n"
                             "    {\n"
                             "      \"section\": 1,\n"
                             "      \"name\": \".symtab\",\n"
                             "      \"symbols\": [\n"
                             "        {\n"
                             "          \"number\": 0,\n"
                             "          \"value\": 0,\n"
                             "          \"size\": 0,\n"
                             "          \"type\": \"NOTYPE\",\n"
                             "          \"bind\": \"LOCAL\",\n"
                             "          \"info\": 0,\n"
                             "          \"visibility\": \"DEFAULT\",\n"
                             "          \"other\": 0,\n"
                             "          \"index\": \"UND\",\n"
                             "          \"section\": 0,\n"
                             "          \"name\": \"\"\n"
                             "        },\n"
                             "        {\n"
                             "          \"number\": 1,\n"
                             "          \"value\": 1,\n"
                             "          \"size\": 2,\n"
                             "          \"type\": \"FUNC\",\n"
                             "          \"bind\": \"GLOBAL\",\n"
                             "          \"info\": 18,\n"
                             "          \"visibility\": \"HIDDEN\",\n"
                             "          \"other\": 2,\n"
                             "          \"index\": \"1\",\n"
                             "          \"section\": 1,\n"
                             "          \"name\": \"\\uf7e9\"\n"
                             "        }\n"
                             "      ]\n"
                             "    }\n"
                             "  ]\n"
                             "}\n");
}
