#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_header =
    "Field                              Value\n"
    "Magic                              7f 45 4c 46 01 01 01 00 00 00 00 00 00 00 00 00\n"
    "Class                              ELF32\n"
    "Data                               2's complement, little endian\n"
    "Version of the format              1\n"
    "OS/ABI                             UNIX - System V\n"
    "ABI version                        0\n"
    "Type                               EXEC (Executable file)\n"
    "Machine                            Zelm\n"
    "Version                            0x1\n"
    "Entry point address                0x10000\n"
    "Start of program headers           52\n"
    "Start of section headers           116\n"
    "Flags                              0x0\n"
    "Size of this header                52\n"
    "Size of program headers            32\n"
    "Number of program headers          2\n"
    "Size of section headers            40\n"
    "Number of section headers          10\n"
    "Section header string table index  9\n";

const std::string s_segments = "\n"
                               "Program headers:\n"
                               "Type  Offset    VirtAddr    PhysAddr    FileSiz  MemSiz   Flg  Align\n"
                               "LOAD  0x000204  0x00010000  0x00010000  0x00018  0x00028  R E  0x1\n"
                               "NOTE  0x00021c  0x00000000  0x00000000  0x00014  0x00014  R E  0x1\n";

const std::string s_object =
    "Field                              Value\n"
    "Magic                              7f 45 4c 46 01 01 01 03 00 00 00 00 00 00 00 00\n"
    "Class                              ELF32\n"
    "Data                               2's complement, little endian\n"
    "Version of the format              1\n"
    "OS/ABI                             UNIX - GNU\n"
    "ABI version                        0\n"
    "Type                               REL (Relocatable file)\n"
    "Machine                            <unknown: 1234>\n"
    "Version                            0x1\n"
    "Entry point address                0x0\n"
    "Start of program headers           0\n"
    "Start of section headers           52\n"
    "Flags                              0x0\n"
    "Size of this header                52\n"
    "Size of program headers            32\n"
    "Number of program headers          0\n"
    "Size of section headers            40\n"
    "Number of section headers          3\n"
    "Section header string table index  2\n";

class ElfHeaderList : public testing::Test {
protected:
    ElfHeaderList() {
        ElfBuilder rich = richElf();
        rich.m_entry = 0x10000;
        folder.write("rich.o", rich.build().bytes);
        ElfBuilder object;
        object.m_type = 1;
        object.m_machine = 0x1234;
        folder.write("object.o", object.build().set("e_ident[7]", 3).bytes);
        folder.write("wide.o", object.build().set("e_ident[4]", 2).bytes);
        folder.write("cut.o", rich.build().bytes.substr(0, 100));
        folder.write("text.o", "no ELF file\n");
        folder.write("empty.o", "");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(ElfHeaderList, ShowsTheHeaderAndTheSegments) {
    const CommandCase cases[] = {
        {"zetool elf header rich.o", 0, s_header + s_segments},
        {"zetool elf header - < rich.o", 0, s_header + s_segments},
        {"zetool elf header object.o", 0, s_object},
        {"zetool elf header -o header.txt rich.o; cat header.txt", 0, s_header + s_segments},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(ElfHeaderList, SaysWhatIsWrong) {
    const CommandCase cases[] = {
        {"zetool elf header cut.o | tail -n 3", 0,
         "Program headers:\n"
         "Type  Offset    VirtAddr    PhysAddr    FileSiz  MemSiz   Flg  Align\n"
         "LOAD  0x000204  0x00010000  0x00010000  0x00018  0x00028  R E  0x1\n",
         "zetool: cut.o: the program headers reach past the end of the file: 1 of 2 are there\n"
         "zetool: cut.o: the section headers reach past the end of the file: 0 of 10 are there\n"
         "zetool: cut.o: segment 0: reaches past the end of the file\n"},
        {"zetool elf header -o - cut.o > /dev/null", 1, "",
         "zetool: cut.o: the program headers reach past the end of the file: 1 of 2 are there\n"
         "zetool: cut.o: the section headers reach past the end of the file: 0 of 10 are there\n"
         "zetool: cut.o: segment 0: reaches past the end of the file\n"},
        {"zetool elf header wide.o", 2, "",
         "zetool: wide.o: no ELF file of 32 bits in little-endian order (class 2, data encoding 1)\n"},
        {"zetool elf header text.o", 2, "", "zetool: text.o: ERROR: Header is not an ELF file\n"},
        {"zetool elf header empty.o", 2, "", "zetool: empty.o: ERROR: Header is not an ELF file\n"},
        {"zetool elf header - < text.o", 2, "",
         "zetool: (standard input): ERROR: Header is not an ELF file\n"},
        {"zetool elf header none.o", 2, "", "zetool: none.o: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(ElfHeaderList, WritesOneJsonObject) {
    const std::string json =
        writtenJson(folder.path(), "zetool elf header --json rich.o", "elf-header.schema.json");
    EXPECT_THAT(json, testing::StartsWith("{\n"
                                          "  \"type\": \"elfHeader\",\n"
                                          "  \"version\": 1,\n"
                                          "  \"ident\": [\n"
                                          "    127,\n"));
    EXPECT_THAT(json, testing::EndsWith("  \"fileType\": 2,\n"
                                        "  \"fileTypeText\": \"EXEC (Executable file)\",\n"
                                        "  \"machine\": 46238,\n"
                                        "  \"machineText\": \"Zelm\",\n"
                                        "  \"formatVersion\": 1,\n"
                                        "  \"entry\": 65536,\n"
                                        "  \"programHeadersOffset\": 52,\n"
                                        "  \"sectionHeadersOffset\": 116,\n"
                                        "  \"flags\": 0,\n"
                                        "  \"headerSize\": 52,\n"
                                        "  \"programHeaderSize\": 32,\n"
                                        "  \"programHeaderCount\": 2,\n"
                                        "  \"sectionHeaderSize\": 40,\n"
                                        "  \"sectionHeaderCount\": 10,\n"
                                        "  \"sectionNamesIndex\": 9,\n"
                                        "  \"programHeaders\": [\n"
                                        "    {\n"
                                        "      \"type\": 1,\n"
                                        "      \"typeText\": \"LOAD\",\n"
                                        "      \"offset\": 516,\n"
                                        "      \"virtualAddress\": 65536,\n"
                                        "      \"physicalAddress\": 65536,\n"
                                        "      \"fileSize\": 24,\n"
                                        "      \"memorySize\": 40,\n"
                                        "      \"flags\": 5,\n"
                                        "      \"align\": 1\n"
                                        "    },\n"
                                        "    {\n"
                                        "      \"type\": 4,\n"
                                        "      \"typeText\": \"NOTE\",\n"
                                        "      \"offset\": 540,\n"
                                        "      \"virtualAddress\": 0,\n"
                                        "      \"physicalAddress\": 0,\n"
                                        "      \"fileSize\": 20,\n"
                                        "      \"memorySize\": 20,\n"
                                        "      \"flags\": 5,\n"
                                        "      \"align\": 1\n"
                                        "    }\n"
                                        "  ]\n"
                                        "}\n"));
}
