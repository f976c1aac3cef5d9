#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

// Fields of a good file, what they are set to, and what `check` then says.
struct SpoiltRow {
    std::vector<std::pair<const char*, std::uint32_t>> fields;
    std::string output;
};

void expectSpoilt(const LabelledBytes& good, const std::vector<SpoiltRow>& rows) {
    const TemporaryFolder folder;
    for (const SpoiltRow& row : rows) {
        LabelledBytes file = good;
        for (const auto& [field, value] : row.fields)
            file.set(field, value);
        folder.write("a.o", file.bytes);
        const ChildResult result = zetoolShell(folder.path(), "zetool elf check a.o");
        EXPECT_EQ(result.output, row.output) << row.fields.front().first;
        EXPECT_EQ(result.error, "") << row.fields.front().first;
        EXPECT_EQ(result.exitStatus, 1) << row.fields.front().first;
    }
}

ElfBuilder object() {
    ElfBuilder elf;
    elf.m_type = 1;
    elf.addSection({.name = ".text", .bytes = "codecode"});
    elf.addSection(
        {.name = ".rel.text", .type = 9, .bytes = littleEndianWords({4, 0x201}), .info = 1, .entsize = 8});
    elf.addSymbol({.name = "local", .value = 4, .size = 4, .section = 1});
    elf.addFunction("main", 0);
    elf.addFunction("other", 0);
    return elf;
}

} // namespace

TEST(ElfCheck, FindsNothingInSoundFiles) {
    const TemporaryFolder folder;
    folder.write("rich.o", richElf().build().bytes);
    folder.write("object.o", object().build().set("sh_info[3]", 2).bytes);
    folder.write("sample.o", sampleProgram({"main"}));
    // What the library writes: sh_info 0.
    folder.write("ours.o", object().build().set("sh_info[3]", 0).bytes);
    const CommandCase cases[] = {
        {"zetool elf check rich.o", 0, "rich.o: nothing is wrong\n"},
        {"zetool elf check - < rich.o", 0, "(standard input): nothing is wrong\n"},
        {"zetool elf check object.o", 0, "object.o: nothing is wrong\n"},
        {"zetool elf check sample.o", 0, "sample.o: nothing is wrong\n"},
        {"zetool elf check ours.o", 0, "ours.o: nothing is wrong\n"},
        {"zetool elf check none.o", 2, "", "zetool: none.o: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfCheck, TellsTheReadersMessages) {
    const TemporaryFolder folder;
    folder.write("text.o", "no ELF file\n");
    folder.write("wide.o", sampleProgram({}).replace(4, 1, "\2"));
    folder.write("odd.o", object().build().set("sh_type[1]", 99).set("sh_info[3]", 2).bytes);
    folder.write("far.o",
                 object().build().set("st_shndx[1]", 77).set("st_shndx[3]", 78).set("sh_info[3]", 2).bytes);
    folder.write("both.o", object()
                               .build()
                               .set("st_shndx[1]", 77)
                               .set("st_shndx[3]", 78)
                               .set("sh_info[3]", 2)
                               .set("sh_type[1]", 99)
                               .bytes);
    const CommandCase cases[] = {
        {"zetool elf check text.o", 1, "text.o: ERROR: Header is not an ELF file\n"},
        {"zetool elf check wide.o", 1,
         "wide.o: no ELF file of 32 bits in little-endian order (class 2, data encoding 1)\n"},
        {"zetool elf check odd.o", 1, "odd.o: ERROR: Unsupported section type 99 in section 1\n"},
        {"zetool elf check far.o", 1,
         "far.o: Invalid section table index for symbol 'local' (the first of 2)\n"},
        {"zetool elf check both.o", 1,
         "both.o: ERROR: Unsupported section type 99 in section 1\n"
         "both.o: section 3 '.symtab': symbol 1 'local': its section isn't there (the first of 2)\n"},
    };
    expectCommands(folder.path(), cases);
}

// Strings without the empty text are an assertion of the reader where there is no table of symbols.
TEST(ElfCheck, TellsOfTheReadersLimit) {
    const TemporaryFolder folder;
    ElfBuilder elf;
    elf.m_hasSymbols = false;
    elf.m_strings = "a";
    folder.write("a.o", elf.build().set("sh_name[1]", 0).bytes);
    elf.m_strings = std::string("a\0b\0", 4);
    folder.write("b.o", elf.build().set("sh_name[1]", 0).bytes);
    elf.m_strings = "";
    folder.write("c.o", elf.build().set("sh_name[1]", 0).bytes);
    const std::string s_stops =
        "without a symbol table, strings must hold the empty text; the reader stops at these\n";
    const CommandCase cases[] = {
        {"zetool elf check a.o", 1,
         "a.o: ERROR: Strings not correctly terminated\n"
         "a.o: section 1: its strings don't begin with the empty text\n"},
        {"zetool elf check b.o", 1,
         "b.o: " + s_stops + "b.o: section 1: its strings don't begin with the empty text\n"},
        {"zetool elf check c.o", 1, "c.o: " + s_stops},
        {"zetool elf functions c.o", 1,
         "Functions of 'c.o', 0 entries:\n"
         "Num  Value  Size  Ndx  Short  Name\n",
         "zetool: c.o: " + s_stops},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfCheck, FindsFaultsOfTheHeader) {
    expectSpoilt(
        richElf().build(),
        {
            {{{"e_ident[6]", 2}}, "a.o: the version of the format is 2, not 1\n"},
            {{{"e_version", 0}}, "a.o: e_version is 0, not 1\n"},
            {{{"e_type", 3}}, "a.o: e_type is 3, neither relocatable (1) nor executable (2)\n"},
            {{{"e_ehsize", 51}}, "a.o: e_ehsize is 51, not 52\n"},
            {{{"e_phentsize", 0}}, "a.o: e_phentsize is 0, not 32\n"},
            {{{"e_shentsize", 64}}, "a.o: e_shentsize is 64, not 40\n"},
            {{{"e_shnum", 0}}, "a.o: e_shoff gives section headers a place, but e_shnum counts none\n"},
        });
    expectSpoilt(ElfBuilder().build(), {{{{"e_shstrndx", 1}},
                                         "a.o: e_shstrndx 1 names no section of strings\n"
                                         "a.o: section 1: its name lies outside the strings\n"
                                         "a.o: section 2: its name lies outside the strings\n"}});
}

TEST(ElfCheck, FindsFaultsOfSegments) {
    expectSpoilt(
        richElf().build(),
        {
            {{{"p_memsz[0]", 23}}, "a.o: segment 0: has more bytes in the file than in memory\n"},
            {{{"p_vaddr[0]", 0xFFFFFFF0}}, "a.o: segment 0: reaches past the end of memory\n"},
            {{{"p_align[1]", 3}}, "a.o: segment 1: its alignment 3 is no power of two\n"},
            {{{"p_filesz[1]", 0x1000}}, "a.o: segment 1: reaches past the end of the file\n"},
            {{{"p_type[1]", 1}, {"p_paddr[1]", 0x10027}}, "a.o: segment 1: shares memory with segment 0\n"},
        });
}

TEST(ElfCheck, FindsFaultsOfSections) {
    expectSpoilt(
        richElf().build(),
        {
            {{{"sh_name[4]", 0x1000}}, "a.o: section 4: its name lies outside the strings\n"},
            {{{"sh_addralign[4]", 12}}, "a.o: section 4 '.info': its alignment 12 is no power of two\n"},
            {{{"sh_addr[1]", 0xFFFFFFF0}}, "a.o: section 1 '.text': reaches past the end of memory\n"},
            {{{"sh_link[4]", 10}}, "a.o: section 4 '.info': sh_link 10 names no section\n"},
            {{{"sh_link[5]", 9}}, "a.o: section 5 '.rel.text': sh_link 9 names no table of symbols\n"},
            {{{"sh_link[7]", 1}}, "a.o: section 7 '.group': sh_link 1 names no table of symbols\n"},
            {{{"sh_info[6]", 10}},
             "a.o: ERROR: Invalid sh_info 10 for section 6\n"
             "a.o: section 6 '.rela.info': sh_info 10 names no section\n"},
            {{{"sh_info[7]", 4}}, "a.o: section 7 '.group': sh_info 4 names no symbol\n"},
            {{{"sh_entsize[8]", 24}}, "a.o: section 8 '.symtab': its entries have 24 bytes, not 16\n"},
            {{{"sh_entsize[6]", 0}}, "a.o: section 6 '.rela.info': its entries have 0 bytes, not 12\n"},
            {{{"sh_size[8]", 63}}, "a.o: section 8 '.symtab': its size is no multiple of 16\n"},
            {{{"sh_info[8]", 2}},
             "a.o: section 8 '.symtab': sh_info is 2, but the first symbol that isn't local is 1\n"},
            {{{"sh_offset[4]", 0x22f}},
             "a.o: section 4 '.info': shares bytes of the file with section 3 '.note'\n"},
            {{{"sh_offset[4]", 0}},
             "a.o: section 4 '.info': shares bytes of the file with the file header\n"},
        });
}

TEST(ElfCheck, FindsFaultsOfGroupsAndStrings) {
    const TemporaryFolder folder;
    LabelledBytes group = richElf().build();
    group.bytes.replace(0x250 + 8, 4, littleEndianWords({10}));
    folder.write("group.o", group.bytes);
    folder.write("flags.o", richElf().build().set("sh_size[7]", 0).bytes);
    ElfBuilder strings;
    strings.m_hasSymbols = false;
    strings.m_strings = std::string("\0end", 4);
    folder.write("strings.o", strings.build().set("sh_name[1]", 0).bytes);
    ElfBuilder doubled;
    doubled.m_strings = std::string("\0one\0one\0two\0six\0", 17);
    doubled.addSymbol({.nameOffset = 9});
    doubled.addSymbol({.nameOffset = 10});
    folder.write("doubled.o",
                 doubled.build().set("sh_name[1]", 0).set("sh_name[2]", 0).set("sh_info[1]", 0).bytes);
    const CommandCase cases[] = {
        {"zetool elf check group.o", 1, "group.o: section 7 '.group': its member 10 is no section\n"},
        {"zetool elf check flags.o", 1, "flags.o: section 7 '.group': is a group without flags\n"},
        {"zetool elf check strings.o", 1,
         "strings.o: ERROR: Strings not correctly terminated\n"
         "strings.o: section 1: its last string has no end\n"},
        {"zetool elf check doubled.o", 1,
         "doubled.o: symbol 1: 'two' is read as 'six', since the strings hold a text twice (the first of "
         "2)\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ElfCheck, FindsFaultsOfSymbolsAndRelocations) {
    const std::string s_table = "a.o: section 3 '.symtab': ";
    const std::string s_entries = "a.o: section 2 '.rel.text': ";
    expectSpoilt(
        object().build().set("sh_info[3]", 2),
        {
            {{{"st_value[0]", 1}}, s_table + "symbol 0 '': isn't the null symbol\n"},
            {{{"st_name[2]", 0x1000}}, s_table + "symbol 2 '<corrupt>': its name lies outside the strings\n"},
            {{{"st_info[2]", 0x17}}, s_table + "symbol 2 'main': its binding or type is unknown\n"},
            {{{"st_info[3]", 0x02}},
             s_table + "symbol 3 'other': is local, but stands behind others that aren't\n"},
            {{{"st_value[3]", 8}}, s_table + "symbol 3 'other': lies outside its section\n"},
            {{{"sh_size[1]", 4}, {"st_value[1]", 0}},
             s_entries + "relocation 0: lies outside the section that it is for\n"},
            {{{"sh_size[3]", 32}, {"sh_info[3]", 0}}, s_entries + "relocation 0: its symbol isn't there\n"},
        });
}

TEST(ElfCheck, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("a.o", object().build().set("st_shndx[2]", 77).set("sh_info[3]", 1).bytes);
    folder.write("sound.o", sampleProgram({}));
    const CommandCase cases[] = {
        {"zetool elf check --json a.o", 1,
         "{\n"
         "  \"type\": \"elfCheck\",\n"
         "  \"version\": 1,\n"
         "  \"faults\": [\n"
         "    {\n"
         "      \"fault\": \"reader\",\n"
         "      \"text\": \"Invalid section table index for symbol 'main'\",\n"
         "      \"count\": 1\n"
         "    },\n"
         "    {\n"
         "      \"fault\": \"info\",\n"
         "      \"text\": \"section 3 '.symtab': sh_info is 1, but the first symbol that isn't local is "
         "2\",\n"
         "      \"count\": 1\n"
         "    }\n"
         "  ]\n"
         "}\n"},
        {"zetool elf check --json sound.o", 0,
         "{\n"
         "  \"type\": \"elfCheck\",\n"
         "  \"version\": 1,\n"
         "  \"faults\": []\n"
         "}\n"},
    };
    expectCommands(folder.path(), cases);
    for (const CommandCase& row : cases)
        EXPECT_EQ(schemaFaults("elf-check.schema.json", row.output), "");
}
