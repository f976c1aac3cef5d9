#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/image/ImageSamples.h"
#include "tests/tools/zetool/image/LargeImage.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(ImageList, ShowsARowASector) {
    const TemporaryFolder folder;
    folder.write("page.ze", pageImage().bytes());
    folder.write("more.ze", ImageBuilder()
                                .nodeDescriptor(3, 0x1234567890abcdef)
                                .call(4, 5)
                                .sector(7, "xyz")
                                .sector(1, "short")
                                .bytes());
    folder.write("none.ze", ImageBuilder().bytes());
    const CommandCase cases[] = {
        {"zetool image list page.ze", 0,
         "sector  offset  type     size  node  core  address  part number         crc\n"
         "     0       8  network     1                                    0x86be3526\n"
         "     1      32  binary     17     1     2  0x10000               0x3e468792\n"
         "     2      72  goto       12     1     2  0x10004               0xe13dc88a\n"
         "     3     104  end         0\n"},
        {"zetool image list --check - <page.ze", 0,
         "sector  offset  type     size  node  core  address  part number         crc    computed\n"
         "     0       8  network     1                                    0x86be3526  0x86be3526\n"
         "     1      32  binary     17     1     2  0x10000               0x3e468792  0x3e468792\n"
         "     2      72  goto       12     1     2  0x10004               0xe13dc88a  0xe13dc88a\n"
         "     3     104  end         0\n"},
        {"zetool image list more.ze", 0,
         "sector  offset  type    size  node  core  address         part number         crc\n"
         "     0       8  node      12     3                 0x1234567890abcdef  0xc1759d38\n"
         "     1      40  call      12     4     5      0x0                      0xa27094e4\n"
         "     2      72  type 7     3                                           0x97d5ac02\n"
         "     3      96  binary     5                                           0xbb0ff776\n"},
        {"zetool image list none.ze", 0,
         "sector  offset  type  size  node  core  address  part number  crc\n"},
        {"zetool image list absent.ze", 2, "",
         "zetool: absent.ze: can't be opened: No such file or directory\n"},
        {"zetool image list .", 2, "", "zetool: .: can't be read: Is a directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ImageList, ShowsWhereAFileIsCutOrALengthLies) {
    const TemporaryFolder folder;
    const std::string rows = "sector  offset  type     size  node  core  address  part number         crc\n"
                             "     0       8  network     1                                    0x86be3526\n";
    const std::string heads = "sector  offset  type  size  node  core  address  part number  crc\n";
    const std::string fault = "Not enough space in the buffer to hold the data: ";
    folder.write("head.ze", pageImage().cutTo(43).bytes());
    folder.write("payload.ze", pageImage().cutTo(64).bytes());
    folder.write("crc.ze", pageImage().cutTo(71).bytes());
    folder.write("small.ze", pageImage().setNumber(36, 8, 7).bytes());
    folder.write("pad.ze", pageImage().setByte(44, 4).bytes());
    folder.write("smaller.ze", pageImage().setNumber(36, 8, 10).bytes());
    folder.write("huge.ze", pageImage().setNumber(36, 8, 0x7fffffffffffffff).bytes());
    folder.write("largest.ze", pageImage().setNumber(36, 8, 0xffffffffffffffff).bytes());
    folder.write("tag.ze", pageImage().setByte(3, 'N').bytes());
    folder.write("version.ze", pageImage().setByte(4, 2).bytes());
    folder.write("nothing.ze", "");
    const std::string place = "sector 1 at offset 32: ";
    const CommandCase cases[] = {
        {"zetool image list head.ze", 1, rows,
         "zetool: head.ze: " + place + fault + "the file ends behind 11 bytes of its 12\n"},
        {"zetool image list payload.ze", 1, rows + "     1      32  binary     17     1     2  0x10000\n",
         "zetool: payload.ze: " + place + fault + "it claims 40 bytes, but the file has 32 of them\n"},
        {"cat payload.ze | zetool image list - >all", 1, "",
         "zetool: (standard input): " + place + fault + "it claims 40 bytes, but the file has 32 of them\n"},
        {"zetool image list --check - <payload.ze >all", 1, "",
         "zetool: (standard input): " + place + fault + "it claims 40 bytes, but the file has 32 of them\n"},
        {"zetool image list crc.ze", 1, rows + "     1      32  binary     17     1     2  0x10000\n",
         "zetool: crc.ze: " + place + fault + "it claims 40 bytes, but the file has 39 of them\n"},
        {"zetool image list small.ze", 1, rows,
         "zetool: small.ze: " + place + fault + "its size of 7 is too small for pad word and CRC\n"},
        {"zetool image list pad.ze", 1, rows,
         "zetool: pad.ze: " + place + fault + "its padding of 4 bytes is more than 3\n"},
        {"zetool image list smaller.ze", 1, rows,
         "zetool: smaller.ze: " + place + fault + "its size of 10 is too small for its padding of 3 bytes\n"},
        {"zetool image list --json huge.ze >huge.json", 1, "",
         "zetool: huge.ze: " + place + fault +
             "it claims 9223372036854775819 bytes, but the file has 84 of them\n"},
        {"zetool image list largest.ze", 1, rows,
         "zetool: largest.ze: " + place + fault +
             "its size of 18446744073709551615 is more than any file's\n"},
        {"zetool image list tag.ze", 1, heads, "zetool: tag.ze: Header tag incorrect\n"},
        {"zetool image list version.ze", 1, heads, "zetool: version.ze: Header version incorrect\n"},
        {"zetool image list nothing.ze", 1, heads, "zetool: nothing.ze: Header tag incorrect\n"},
    };
    expectCommands(folder.path(), cases);
    EXPECT_EQ(schemaFaults("image-list.schema.json", folder.read("huge.json")), "");
}

TEST(ImageList, SaysWhichCrcIsWrongWhenItIsAskedTo) {
    const TemporaryFolder folder;
    folder.write("a.ze", pageImage().flipBit(24, 0).bytes());
    folder.write("waived.ze", pageImage().flipBit(24, 0).setNumber(28, 4, 0).bytes());
    const CommandCase cases[] = {
        {"zetool image list a.ze", 0,
         "sector  offset  type     size  node  core  address  part number         crc\n"
         "     0       8  network     1                                    0x86be3526\n"
         "     1      32  binary     17     1     2  0x10000               0x3e468792\n"
         "     2      72  goto       12     1     2  0x10004               0xe13dc88a\n"
         "     3     104  end         0\n"},
        {"zetool image list --check a.ze", 1,
         "sector  offset  type     size  node  core  address  part number         crc    computed\n"
         "     0       8  network     1                                    0x86be3526  0x06be3526\n"
         "     1      32  binary     17     1     2  0x10000               0x3e468792  0x3e468792\n"
         "     2      72  goto       12     1     2  0x10004               0xe13dc88a  0xe13dc88a\n"
         "     3     104  end         0\n",
         "zetool: a.ze: sector 0 at offset 8: Detected crc error: 0x86be3526 is stored, 0x06be3526 "
         "computed\n"},
        {"zetool image list --check waived.ze >all", 0, ""},
    };
    expectCommands(folder.path(), cases);
}

TEST(ImageList, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("a.ze", ImageBuilder().elf(1, 2, "program").end().bytes());
    const ChildResult result = zetoolShell(folder.path(), "zetool image list --json a.ze");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "{\n"
                             "  \"type\": \"imageList\",\n"
                             "  \"version\": 1,\n"
                             "  \"sectors\": [\n"
                             "    {\n"
                             "      \"index\": 0,\n"
                             "      \"offset\": 8,\n"
                             "      \"type\": 2,\n"
                             "      \"typeName\": \"elf\",\n"
                             "      \"size\": 19,\n"
                             "      \"pad\": 1,\n"
                             "      \"node\": 1,\n"
                             "      \"core\": 2,\n"
                             "      \"address\": \"0x0\",\n"
                             "      \"partNumber\": null,\n"
                             "      \"crc\": \"0x060ae8f0\",\n"
                             "      \"computedCrc\": null,\n"
                             "      \"isWhole\": true\n"
                             "    },\n"
                             "    {\n"
                             "      \"index\": 1,\n"
                             "      \"offset\": 48,\n"
                             "      \"type\": 21845,\n"
                             "      \"typeName\": \"end\",\n"
                             "      \"size\": 0,\n"
                             "      \"pad\": 0,\n"
                             "      \"node\": null,\n"
                             "      \"core\": null,\n"
                             "      \"address\": null,\n"
                             "      \"partNumber\": null,\n"
                             "      \"crc\": null,\n"
                             "      \"computedCrc\": null,\n"
                             "      \"isWhole\": true\n"
                             "    }\n"
                             "  ],\n"
                             "  \"fault\": null\n"
                             "}\n");
    EXPECT_EQ(schemaFaults("image-list.schema.json", result.output), "");
    EXPECT_THAT(schemaFaults("image-list.schema.json", "{}"), testing::HasSubstr("required"));
}

// Payloads are passed over: of a file of a gigabyte that is one hole.
TEST(ImageList, NeedsLittleMemoryForALargeFile) {
    const TemporaryFolder folder;
    writeLargeImage(folder.file("large.ze"));
    const std::string output =
        "sector  offset        type          size  node  core  address  part number  crc\n"
        "     0  8             network          1                                    CRC\n";
    const ChildResult result = zetoolShell(folder.path(), s_littleMemory + "zetool image list large.ze");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output,
              "sector      offset  type           size  node  core  address  part number         crc\n"
              "     0           8  network           1                                    0x86be3526\n"
              "     1          32  binary   1073741812     1     2  0x10000               0x00000000\n"
              "     2  1073741864  end               0\n");
}

// In a sector of zeros no more than a header is a sector.
TEST(ImageList, DoesNotListZerosWithoutEnd) {
    const TemporaryFolder folder;
    const std::string file = folder.write("zeros.ze", ImageBuilder().bytes());
    std::filesystem::resize_file(file, 1U << 30);
    const ChildResult result = zetoolShell(folder.path(), "zetool image list zeros.ze | tail -n 1");
    EXPECT_EQ(result.output, " 65535  786428  type 0     0\n");
    EXPECT_EQ(result.error,
              "zetool: zeros.ze: there are more than 65536 sectors; the rest, from offset 786440 "
              "on, isn't looked at\n");
}

} // namespace
