#include "tests/support/ElfBuilder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/image/ImageSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

std::string program(std::uint32_t second) {
    ElfBuilder elf;
    elf.m_entry = 0x10002;
    elf.addSegment({.vaddr = 0x10000, .bytes = "code"});
    elf.addSegment({.vaddr = second, .bytes = "data"});
    return elf.build().bytes;
}

TEST(ImageFlatten, MakesBinarySectorsOfElfSectors) {
    const TemporaryFolder folder;
    folder.write("a.ze", ImageBuilder().zn("A").elf(1, 2, program(0x10006)).jump(1, 2).end().bytes());
    folder.write("flat.ze", ImageBuilder()
                                .zn("A")
                                .binary(1, 2, 0x10000, std::string("code\0\0data", 10))
                                .jump(1, 2, 0x10002)
                                .end()
                                .bytes());
    folder.write("none.ze", ImageBuilder().elf(0, 0, ElfBuilder().build().bytes).bytes());
    folder.write("text.ze", ImageBuilder().elf(0, 0, program(0x10006)).elf(0, 0, "text").bytes());
    folder.write("wide.ze", ImageBuilder().elf(0, 0, program(0x70000000)).bytes());
    folder.write("cut.ze", pageImage().cutTo(64).bytes());
    folder.write("crc.ze", pageImage().flipBit(24, 0).bytes());
    const CommandCase cases[] = {
        {"zetool image flatten a.ze -o made.ze && cmp made.ze flat.ze", 0, ""},
        {"zetool image flatten - -o - <a.ze | cmp - flat.ze", 0, ""},
        {"zetool image flatten flat.ze -o made.ze", 2, "", "zetool: made.ze: exists; --force replaces it\n"},
        {"zetool image flatten flat.ze -o made.ze --force && cmp made.ze flat.ze", 0, ""},
        {"zetool image flatten none.ze -o no.ze", 1, "",
         "zetool: none.ze: sector 0: Bad segment size in ELF file.\n"},
        {"zetool image flatten text.ze -o no.ze", 1, "",
         "zetool: text.ze: sector 1: File was not an ELF file.\n"},
        {"zetool image flatten wide.ze -o no.ze", 1, "",
         "zetool: wide.ze: sector 0: Out of memory.\n"
         "zetool: wide.ze: flat images of more than 67108864 bytes aren't made\n"},
        {"zetool image flatten cut.ze -o no.ze", 1, "",
         "zetool: cut.ze: Not enough space in the buffer to hold the data\n"},
        {"zetool image flatten crc.ze -o no.ze", 1, "", "zetool: crc.ze: Detected crc error\n"},
        {"zetool image flatten absent.ze -o no.ze", 2, "",
         "zetool: absent.ze: can't be opened: No such file or directory\n"},
        {"zetool image flatten a.ze", 2, "", "zetool: image flatten: --output is missing\n"},
        {"cat no.ze", 1, "", "cat: no.ze: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

} // namespace
