#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_rich = "Relocation section '.rel.text' at offset 0x234 contains 2 entries:\n"
                           "Offset    Info      Type  Sym.Value  Sym.Name\n"
                           "00000000  00000101  1     00010000   main\n"
                           "00000004  00000202  2     00010008   helper\n"
                           "\n"
                           "Relocation section '.rela.info' at offset 0x244 contains 1 entry:\n"
                           "Offset    Info      Type  Sym.Value  Addend  Sym.Name\n"
                           "00000000  00000101  1     00010000      0x7  main\n";

// An object for the machine whose types have names.
ElfBuilder namedElf() {
    ElfBuilder elf;
    elf.m_type = 1;
    elf.m_machine = 3;
    elf.addSection({.name = ".text", .bytes = "codecode"});
    elf.addSection({.name = ".rela.text",
                    .type = 4,
                    .bytes = littleEndianWords({0, 0x102, 0xFFFFFFF0, 4, 0xFF, 0x80000000, 4, 0x901, 0}),
                    .info = 1,
                    .entsize = 12});
    elf.addSymbol({.info = 3, .section = 1});
    return elf;
}

} // namespace

TEST(ElfRelocations, ListsTheTablesOfRelocations) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().bytes);
    folder.write("plain.o", ElfBuilder().build().bytes);
    const CommandCase cases[] = {
        {"zetool elf relocations rich.o", 0, s_rich},
        {"zetool elf relocations plain.o", 0, ""},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfRelocations, SaysWhatIsWrong) {
    const TemporaryFolder folder;
    const LabelledBytes good = richElf().build();
    folder.write("named.o", namedElf().build().bytes);
    folder.write("entries.o", LabelledBytes(good).set("sh_entsize[5]", 0).bytes);
    folder.write("link.o", LabelledBytes(good).set("sh_link[6]", 99).set("sh_type[5]", 1).bytes);
    folder.write("cut.o", good.bytes.substr(0, 0x234 + 15));
    const std::string addends = s_rich.substr(s_rich.find("\n\n") + 2);
    const CommandCase cases[] = {
        {"zetool elf relocations named.o", 1,
         "Relocation section '.rela.text' at offset 0x104 contains 3 entries:\n"
         "Offset    Info      Type        Sym.Value       Addend  Sym.Name\n"
         "00000000  00000102  R_386_PC32  00000000         -0x10  .text\n"
         "00000004  000000ff  255                    -0x80000000\n"
         "00000004  00000901  R_386_32                       0x0  <corrupt>\n",
         "zetool: named.o: names lie outside the strings: 1\n"},
        {"zetool elf relocations entries.o", 1,
         "Relocation section '.rel.text' at offset 0x234 contains 0 entries:\n"
         "Offset  Info  Type  Sym.Value  Sym.Name\n"
         "\n" +
             addends,
         "zetool: entries.o: section 5 '.rel.text': its entries have 0 bytes, not 8\n"},
        {"zetool elf relocations link.o", 1,
         "Relocation section '.rela.info' at offset 0x244 contains 1 entry:\n"
         "Offset    Info      Type  Sym.Value  Addend  Sym.Name\n"
         "00000000  00000101  1                   0x7  <corrupt>\n",
         "zetool: link.o: names lie outside the strings: 1\n"},
        {"zetool elf relocations cut.o", 1,
         "Relocation section '<corrupt>' at offset 0x234 contains 1 entry:\n"
         "Offset    Info      Type  Sym.Value  Sym.Name\n"
         "00000000  00000101  1                <corrupt>\n"
         "\n"
         "Relocation section '<corrupt>' at offset 0x244 contains 0 entries:\n"
         "Offset  Info  Type  Sym.Value  Addend  Sym.Name\n",
         "zetool: cut.o: section 5: reaches past the end of the file\n"
         "zetool: cut.o: section 6: reaches past the end of the file\n"
         "zetool: cut.o: section 7: reaches past the end of the file\n"
         "zetool: cut.o: section 8: reaches past the end of the file\n"
         "zetool: cut.o: section 9: reaches past the end of the file\n"
         "zetool: cut.o: names lie outside the strings: 3\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfRelocations, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().bytes);
    folder.write("named.o", namedElf().build().bytes);
    writtenJson(folder.path(), "zetool elf relocations --json rich.o", "elf-relocations.schema.json");
    const ChildResult result = zetoolShell(folder.path(), "zetool elf relocations --json named.o");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(schemaFaults("elf-relocations.schema.json", result.output), "");
    EXPECT_EQ(result.output, "{\n"
                             "  \"type\": \"elfRelocations\",\n"
                             "  \"version\": 1,\n"
                             "  \"tables\": [\n"
                             "    {\n"
                             "      \"section\": 2,\n"
                             "      \"name\": \".rela.text\",\n"
                             "      \"target\": 1,\n"
                             "      \"relocations\": [\n"
                             "        {\n"
                             "          \"offset\": 0,\n"
                             "          \"type\": 2,\n"
                             "          \"typeText\": \"R_386_PC32\",\n"
                             "          \"symbol\": 1,\n"
                             "          \"symbolValue\": 0,\n"
                             "          \"symbolName\": \".text\",\n"
                             "          \"addend\": -16\n"
                             "        },\n"
                             "        {\n"
                             "          \"offset\": 4,\n"
                             "          \"type\": 255,\n"
                             "          \"typeText\": \"255\",\n"
                             "          \"symbol\": 0,\n"
                             "          \"symbolValue\": null,\n"
                             "          \"symbolName\": \"\",\n"
                             "          \"addend\": -2147483648\n"
                             "        },\n"
                             "        {\n"
                             "          \"offset\": 4,\n"
                             "          \"type\": 1,\n"
                             "          \"typeText\": \"R_386_32\",\n"
                             "          \"symbol\": 9,\n"
                             "          \"symbolValue\": null,\n"
                             "          \"symbolName\": null,\n"
                             "          \"addend\": 0\n"
                             "        }\n"
                             "      ]\n"
                             "    }\n"
                             "  ]\n"
                             "}\n");
}
