#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_rich = "Nr  Name        Type      Addr      Off     Size    ES  Flg  Lk  Inf  Al\n"
                           " 0              NULL      00000000  000000  000000  00        0    0   0\n"
                           " 1  .text       PROGBITS  00010000  000204  000018  00   AX   0    0   1\n"
                           " 2  .bss        NOBITS    00000000  00021c  000010  00   WA   0    0   1\n"
                           " 3  .note       NOTE      00000000  00021c  000014  00        0    0   1\n"
                           " 4  .info       INFO      00000000  000230  000004  00        0    0   1\n"
                           " 5  .rel.text   REL       00000000  000234  000010  08        8    1   1\n"
                           " 6  .rela.info  RELA      00000000  000244  00000c  0c        8    4   1\n"
                           " 7  .group      GROUP     00000000  000250  00000c  04        8    1   1\n"
                           " 8  .symtab     SYMTAB    00000000  00025c  000040  10        9    1   1\n"
                           " 9  .strtab     STRTAB    00000000  00029c  000050  00        0    0   1\n";

// Types and flags that have no words, and a name that would spoil the list.
ElfBuilder strangeElf() {
    ElfBuilder elf;
    elf.addSection({.name = "a\nb\x7f", .type = 0x6FFF4C03, .flags = 0xFE0002F7});
    elf.addSection({.name = "c", .type = 0x7FFFFFFF, .flags = 0x00101000});
    elf.addSection({.name = "d", .type = 0x80000001, .flags = 0x00000D00});
    elf.addSection({.name = "e", .type = 30});
    return elf;
}

const std::string s_strange =
    "Nr  Name     Type                 Addr      Off     Size    ES          Flg  Lk  Inf  Al\n"
    " 0           NULL                 00000000  000000  000000  00                0    0   0\n"
    " 1  a^Jb^?   LOOS+0xfff4c03       00000000  00014c  000000  00  WAXMSILGEop   0    0   1\n"
    " 2  c        LOPROC+0xfffffff     00000000  00014c  000000  00           ox   0    0   1\n"
    " 3  d        LOUSER+0x1           00000000  00014c  000000  00          OTC   0    0   1\n"
    " 4  e        0000001e: <unknown>  00000000  00014c  000000  00                0    0   1\n"
    " 5  .symtab  SYMTAB               00000000  00014c  000010  10                6    1   1\n"
    " 6  .strtab  STRTAB               00000000  00015c  00001c  00                0    0   1\n";

} // namespace

TEST(ElfSections, ListsTheSectionHeaders) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().bytes);
    folder.write("strange.o", strangeElf().build().bytes);
    folder.write("bare.o", ElfBuilder().build().set("e_shnum", 0).set("e_shoff", 0).bytes);
    const CommandCase cases[] = {
        {"zetool elf sections rich.o", 0, s_rich},
        {"zetool elf sections strange.o", 0, s_strange},
        {"zetool elf sections bare.o", 0, "Nr  Name  Type  Addr  Off  Size  ES  Flg  Lk  Inf  Al\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfSections, SaysWhatIsWrong) {
    const TemporaryFolder folder;
    const LabelledBytes good = richElf().build();
    folder.write("name.o", LabelledBytes(good).set("sh_name[4]", 0x1000).bytes);
    folder.write("cut.o", good.bytes.substr(0, 116 + 2 * 40 + 39));
    folder.write("size.o", LabelledBytes(good).set("sh_size[4]", 0xFFFFFFFF).bytes);
    std::string badName = s_rich;
    badName.replace(badName.find(".info "), 9, "<corrupt>");
    std::string badSize = s_rich;
    badSize.replace(badSize.find("000230  000004"), 16, "000230  ffffffff");
    const std::string s_head = "Nr  Name       Type      Addr      Off     Size    ES  Flg  Lk  Inf  Al\n";
    const CommandCase cases[] = {
        {"zetool elf sections name.o", 1, badName, "zetool: name.o: names lie outside the strings: 1\n"},
        {"zetool elf sections cut.o", 1,
         s_head + " 0             NULL      00000000  000000  000000  00        0    0   0\n"
                  " 1  <corrupt>  PROGBITS  00010000  000204  000018  00   AX   0    0   1\n",
         "zetool: cut.o: the section headers reach past the end of the file: 2 of 10 are there\n"
         "zetool: cut.o: segment 0: reaches past the end of the file\n"
         "zetool: cut.o: segment 1: reaches past the end of the file\n"
         "zetool: cut.o: section 1: reaches past the end of the file\n"
         "zetool: cut.o: names lie outside the strings: 1\n"},
        {"zetool elf sections size.o > /dev/null", 1, "",
         "zetool: size.o: section 4 '.info': reaches past the end of the file\n"},
        {"zetool elf sections none.o", 2, "", "zetool: none.o: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfSections, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().set("sh_name[4]", 0x1000).bytes);
    folder.write("bare.o", ElfBuilder().build().set("sh_name[1]", 0x1000).bytes);
    const ChildResult rich = zetoolShell(folder.path(), "zetool elf sections --json rich.o");
    EXPECT_EQ(rich.exitStatus, 1);
    EXPECT_EQ(schemaFaults("elf-sections.schema.json", rich.output), "");
    const ChildResult bare = zetoolShell(folder.path(), "zetool elf sections --json bare.o");
    EXPECT_EQ(bare.output, "{\n"
                           "  \"type\": \"elfSections\",\n"
                           "  \"version\": 1,\n"
                           "  \"sections\": [\n"
                           "    {\n"
                           "      \"number\": 0,\n"
                           "      \"name\": \"\",\n"
                           "      \"type\": 0,\n"
                           "      \"typeText\": \"NULL\",\n"
                           "      \"flags\": 0,\n"
                           "      \"flagsText\": \"\",\n"
                           "      \"address\": 0,\n"
                           "      \"offset\": 0,\n"
                           "      \"size\": 0,\n"
                           "      \"link\": 0,\n"
                           "      \"info\": 0,\n"
                           "      \"align\": 0,\n"
                           "      \"entrySize\": 0\n"
                           "    },\n"
                           "    {\n"
                           "      \"number\": 1,\n"
                           "      \"name\": null,\n"
                           "      \"type\": 2,\n"
                           "      \"typeText\": \"SYMTAB\",\n"
                           "      \"flags\": 0,\n"
                           "      \"flagsText\": \"\",\n"
                           "      \"address\": 0,\n"
                           "      \"offset\": 172,\n"
                           "      \"size\": 16,\n"
                           "      \"link\": 2,\n"
                           "      \"info\": 1,\n"
                           "      \"align\": 1,\n"
                           "      \"entrySize\": 16\n"
                           "    },\n"
                           "    {\n"
                           "      \"number\": 2,\n"
                           "      \"name\": \".strtab\",\n"
                           "      \"type\": 3,\n"
                           "      \"typeText\": \"STRTAB\",\n"
                           "      \"flags\": 0,\n"
                           "      \"flagsText\": \"\",\n"
                           "      \"address\": 0,\n"
                           "      \"offset\": 188,\n"
                           "      \"size\": 17,\n"
                           "      \"link\": 0,\n"
                           "      \"info\": 0,\n"
                           "      \"align\": 1,\n"
                           "      \"entrySize\": 0\n"
                           "    }\n"
                           "  ]\n"
                           "}\n");
}
