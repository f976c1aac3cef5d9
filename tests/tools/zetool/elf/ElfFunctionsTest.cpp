#include "tests/support/ElfBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

ElfBuilder sampleElf() {
    ElfBuilder elf;
    elf.addSection({.name = ".text", .bytes = "code"});
    elf.addFunction("main", 0x10000, 8);
    elf.addSymbol({.name = "mainData", .value = 0x20000, .size = 4, .info = 0x11, .section = 1});
    elf.addFunction("mainloop", 0x10008, 200000);
    elf.addFunction("mail", 0x10010);
    elf.addFunction("run", 0x10020);
    elf.addSymbol({.name = "mainOutside", .info = 0x12});
    return elf;
}

const std::string s_sample = "Num  Value        Size  Ndx  Short   Name\n"
                             "  1  00010000        8    1  main.0  main\n"
                             "  3  00010008  0x30d40    1  main.1  mainloop\n"
                             "  4  00010010        4    1  mail.0  mail\n"
                             "  5  00010020        4    1  run     run\n"
                             "  6  00000000        0  UND  main.2  mainOutside\n";

} // namespace

TEST(ElfFunctions, ListsFunctionsWithTheShortNamesOfTheWaveform) {
    const TemporaryFolder folder;
    folder.write("a.o", sampleElf().build().bytes);
    folder.write("none.o", sampleProgram({}));
    const CommandCase cases[] = {
        {"zetool elf functions a.o", 0, "Functions of 'a.o', 5 entries:\n" + s_sample},
        {"zetool elf functions - < a.o", 0, "Functions of '(standard input)', 5 entries:\n" + s_sample},
        {"zetool elf functions none.o", 0,
         "Functions of 'none.o', 0 entries:\n"
         "Num  Value  Size  Ndx  Short  Name\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfFunctions, ProgramsOfACoreShareOneNumbering) {
    const TemporaryFolder folder;
    folder.write("a.o", sampleProgram({"main", "mainloop"}));
    folder.write("b.o", sampleProgram({"mainframe", "mainloop"}));
    const std::string expected = "Functions of 'a.o', 2 entries:\n"
                                 "Num  Value     Size  Ndx  Short   Name\n"
                                 "  1  00010000     4    1  main.0  main\n"
                                 "  2  00010010     4    1  main.1  mainloop\n"
                                 "\n"
                                 "Functions of 'b.o', 2 entries:\n"
                                 "Num  Value     Size  Ndx  Short   Name\n"
                                 "  1  00010000     4    1  main.2  mainframe\n"
                                 "  2  00010010     4    1  main.1  mainloop\n";
    const CommandCase cases[] = {{"zetool elf functions a.o b.o", 0, expected}};
    expectCommands(folder.path(), cases);
}

TEST(ElfFunctions, TheThousandAndFirstOfAStartGoesByItsFirstEightBytes) {
    const TemporaryFolder folder;
    std::vector<std::string> names;
    for (int i = 0; i < 1002; ++i)
        names.push_back("function" + std::to_string(i));
    folder.write("a.o", sampleProgram(names));
    const CommandCase cases[] = {{"zetool elf functions a.o | tail -n 3", 0,
                                  "1000  00013e70     4    1  func.999  function999\n"
                                  "1001  00013e80     4    1  function  function1000\n"
                                  "1002  00013e90     4    1  function  function1001\n"}};
    expectCommands(folder.path(), cases);
}

TEST(ElfFunctions, NamesAreThoseThatThePluginReads) {
    const TemporaryFolder folder;
    ElfBuilder doubled;
    doubled.m_strings = std::string("\0main\0main\0helper\0", 18);
    doubled.addSymbol({.info = 2, .section = 1, .nameOffset = 11});
    folder.write("doubled.o", doubled.build().set("sh_name[1]", 0).set("sh_name[2]", 0).bytes);
    const CommandCase cases[] = {{"zetool elf functions doubled.o", 0,
                                  "Functions of 'doubled.o', 1 entry:\n"
                                  "Num  Value     Size  Ndx  Short  Name\n"
                                  "  1  00000000     0    1  r      r\n"}};
    expectCommands(folder.path(), cases);
}

TEST(ElfFunctions, ListsFilesThatThePluginCantReadBehindAMessage) {
    const TemporaryFolder folder;
    ElfBuilder elf = sampleElf();
    elf.addSection({.name = ".odd", .type = 0x6FFF4C03});
    folder.write("odd.o", elf.build().bytes);
    folder.write("cut.o", sampleElf().build().bytes.substr(0, 260));
    folder.write("text.o", "no ELF file\n");
    const CommandCase cases[] = {
        {"zetool elf functions odd.o", 1, "Functions of 'odd.o', 5 entries:\n" + s_sample,
         "zetool: odd.o: ERROR: Unsupported section type 1879002115 in section 2\n"},
        {"zetool elf functions cut.o", 1,
         "Functions of 'cut.o', 1 entry:\n"
         "Num  Value     Size  Ndx  Short  Name\n"
         "  1  00010000     8    1\n",
         "zetool: cut.o: section 2: reaches past the end of the file\n"
         "zetool: cut.o: section 3: reaches past the end of the file\n"
         "zetool: cut.o: ERROR: Failed to allocate memory for data section\n"
         "zetool: cut.o: names lie outside the strings: 1\n"},
        {"zetool elf functions odd.o text.o", 2, "", "zetool: text.o: ERROR: Header is not an ELF file\n"},
        {"zetool elf functions", 2, "",
         "zetool: elf functions: FILE is missing\n"
         "zetool: 'zetool elf functions --help' shows what there is\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfFunctions, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("a.o", sampleProgram({"main", "ma"}));
    folder.write("b.o", sampleElf().build().bytes);
    EXPECT_EQ(schemaFaults("elf-functions.schema.json",
                           zetoolShell(folder.path(), "zetool elf functions --json a.o b.o").output),
              "");
    const CommandCase cases[] = {{"zetool elf functions --json a.o", 0,
                                  "{\n"
                                  "  \"type\": \"elfFunctions\",\n"
                                  "  \"version\": 1,\n"
                                  "  \"files\": [\n"
                                  "    {\n"
                                  "      \"file\": \"a.o\",\n"
                                  "      \"functions\": [\n"
                                  "        {\n"
                                  "          \"number\": 1,\n"
                                  "          \"value\": 65536,\n"
                                  "          \"size\": 4,\n"
                                  "          \"index\": \"1\",\n"
                                  "          \"shortName\": \"main.0\",\n"
                                  "          \"name\": \"main\"\n"
                                  "        },\n"
                                  "        {\n"
                                  "          \"number\": 2,\n"
                                  "          \"value\": 65552,\n"
                                  "          \"size\": 4,\n"
                                  "          \"index\": \"1\",\n"
                                  "          \"shortName\": \"ma\",\n"
                                  "          \"name\": \"ma\"\n"
                                  "        }\n"
                                  "      ]\n"
                                  "    }\n"
                                  "  ]\n"
                                  "}\n"}};
    expectCommands(folder.path(), cases);
}
