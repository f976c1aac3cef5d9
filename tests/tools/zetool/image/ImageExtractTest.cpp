#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/image/ImageSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(ImageExtract, WritesWhatASectorHolds) {
    const TemporaryFolder folder;
    folder.write("page.ze", pageImage().bytes());
    folder.write("wrong.ze", pageImage().flipBit(24, 0).bytes());
    folder.write("cut.ze", pageImage().cutTo(64).bytes());
    folder.write("short.ze", ImageBuilder().sector(2, "short").bytes());
    folder.write("tag.ze", "");
    const std::string which = "zetool: image extract: which sector? SECTOR or --all, one of the two\n";
    const std::string cut =
        "zetool: cut.ze: sector 1 at offset 32: Not enough space in the buffer to hold the "
        "data: it claims 40 bytes, but the file has 32 of them\n";
    const CommandCase cases[] = {
        {"zetool image extract page.ze 0", 0, "A"},
        {"zetool image extract page.ze binary", 0, "core!"},
        {"cat page.ze | zetool image extract - 1", 0, "core!"},
        {"zetool image extract --raw page.ze binary",
         0,
         {"\x01\x00\x02\x00\x00\x00\x01\x00\x00\x00\x00\x00"
          "core!",
          17}},
        {"zetool image extract page.ze goto", 0, {"\x01\x00\x02\x00\x04\x00\x01\x00\x00\x00\x00\x00", 12}},
        {"zetool image extract page.ze end", 0, ""},
        {"zetool image extract short.ze 0", 0, "short"},
        {"zetool image extract page.ze network -o network.zn && cat network.zn", 0, "A"},
        {"zetool image extract page.ze network -o network.zn", 2, "",
         "zetool: network.zn: exists; --force replaces it\n"},
        {"zetool image extract page.ze network -o network.zn --force", 0, ""},
        {"zetool image extract wrong.ze 0", 1, "@",
         "zetool: wrong.ze: sector 0 at offset 8: Detected crc error: 0x86be3526 is stored, 0x06be3526 "
         "computed\n"},
        {"zetool image extract cut.ze 1 -o none", 1, "", cut},
        {"zetool image extract cut.ze 2 -o none", 1, "", cut},
        {"cat none", 1, "", "cat: none: No such file or directory\n"},
        {"zetool image extract tag.ze 0", 1, "", "zetool: tag.ze: Header tag incorrect\n"},
        {"zetool image extract page.ze 4", 2, "", "zetool: page.ze: there is no sector 4\n"},
        {"zetool image extract page.ze call", 2, "", "zetool: page.ze: there is no sector call\n"},
        {"zetool image extract page.ze", 2, "", which},
        {"zetool image extract page.ze 1 --all -o parts", 2, "", which},
        {"zetool image extract page.ze --all", 2, "",
         "zetool: image extract: --all needs a folder: -o FOLDER\n"},
        {"zetool image extract page.ze --all -o page.ze", 2, "",
         "zetool: page.ze: can't be made: Not a directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ImageExtract, MakesAFileOfEverySector) {
    const TemporaryFolder folder;
    folder.write("page.ze", pageImage().nodeDescriptor(3, 4).sector(7, "xyz").bytes());
    folder.write("cut.ze", pageImage().cutTo(64).bytes());
    const CommandCase cases[] = {
        {"zetool image extract page.ze --all -o some/parts", 0, ""},
        {"cd some/parts; LC_ALL=C ls -1; head -c 5 1-*", 0,
         "0-network.zn\n1-binary-node1-core2.bin\n2-goto-node1-core2.bin\n3-end.bin\n4-node-node3.bin\n5-"
         "type7."
         "bin\ncore!"},
        {"zetool image extract page.ze --all -o some/parts", 2, "",
         "zetool: some/parts/0-network.zn: exists; --force replaces it\n"},
        {"zetool image extract page.ze --all -o some/parts --force", 0, ""},
        {"zetool image extract cut.ze --all -o some/more; ls some/more", 0, "0-network.zn\n",
         "zetool: cut.ze: sector 1 at offset 32: Not enough space in the buffer to hold the data: it claims "
         "40 "
         "bytes, but the file has 32 of them\n"},
    };
    expectCommands(folder.path(), cases);
}

// The parts of an image come out as they went in.
TEST(ImageExtract, GivesBackWhatBuildPacked) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    folder.write("device.zn", sampleNetwork({{"stdcore[0]", 0, 0}, {"stdcore[1]", 0, 1}, {"far", 2, 0}}));
    folder.write("system.xml", sampleConfiguration());
    for (const std::string name : {"a", "bb", "ccc"})
        folder.write(name + ".o", sampleProgram({name}) + name); // of every length
    const CommandCase cases[] = {
        {"zetool image build -n device.zn -c system.xml -e 'stdcore[0]=a.o' -e 'stdcore[1]=bb.o' -e "
         "far=ccc.o "
         "-o app.ze",
         0, ""},
        {"zetool image list app.ze | cut -c 1-32", 0,
         "sector  offset  type     size  n\n"
         "     0       8  config    520   \n"
         "     1     548  network   709   \n"
         "     2    1280  elf       236   \n"
         "     3    1536  elf       238   \n"
         "     4    1796  elf       240   \n"
         "     5    2056  end         0\n"},
        {"zetool image extract app.ze --all -o parts", 0, ""},
        {"cmp parts/0-config.xml system.xml && cmp parts/1-network.zn device.zn", 0, ""},
        {"cmp parts/2-elf-node0-core0.elf a.o && cmp parts/3-elf-node0-core1.elf bb.o", 0, ""},
        {"cmp parts/4-elf-node1-core0.elf ccc.o", 0, ""},
        {"zetool image extract app.ze config | cmp - system.xml", 0, ""},
        {"zetool image extract app.ze network | cmp - device.zn", 0, ""},
        {"zetool image extract app.ze 4 | cmp - ccc.o", 0, ""},
    };
    expectCommands(folder.path(), cases);
}

// The same with the parts of the demo, compiled as its script does.
TEST(ImageExtract, GivesBackTheDemosParts) {
    const TemporaryFolder folder;
    const ScopedVariable examples("EXAMPLES", ZETOOL_EXAMPLES);
    const ScopedVariable devices("ZCC_DEVICE_PATH", ZETOOL_EXAMPLES "/device");
    const CommandCase cases[] = {
        {"for program in sender receiver; do clang -target i386 -c -O1 -ffreestanding -fno-addrsig "
         "-o $program.o $EXAMPLES/program/$program.c; done",
         0, ""},
        {"zetool image build -n $ZCC_DEVICE_PATH/sample.zn -c $ZCC_DEVICE_PATH/system.xml "
         "-e 'stdcore[0]=sender.o' -e 'stdcore[1]=receiver.o' -o app.ze",
         0, ""},
        {"$EXAMPLES/make-image zetool demo.ze && cmp demo.ze app.ze", 0, ""},
        {"zetool image check app.ze", 0, "app.ze: 5 sectors, nothing found\n"},
        {"zetool image extract app.ze 0 | cmp - $ZCC_DEVICE_PATH/system.xml", 0, ""},
        {"zetool image extract app.ze 1 | cmp - $ZCC_DEVICE_PATH/sample.zn", 0, ""},
        {"zetool image extract app.ze 2 | cmp - sender.o", 0, ""},
        {"zetool image extract app.ze 3 | cmp - receiver.o", 0, ""},
        {"zetool image extract app.ze 4", 0, ""},
    };
    expectCommands(folder.path(), cases);
}

} // namespace
