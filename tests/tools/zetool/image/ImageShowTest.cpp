#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/image/ImageSamples.h"
#include "tests/tools/zetool/image/LargeImage.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_header = "header\n"
                             "  tag           ZELM\n"
                             "  version       1\n";
const std::string s_network = "sector 0\n"
                              "  type          network (0x8)\n"
                              "  offset        8\n"
                              "  payload       1 bytes at 24\n"
                              "  padding       3 bytes\n"
                              "  crc           0x86be3526\n";
const std::string s_end = "sector 3\n"
                          "  type          end (0x5555)\n"
                          "  offset        104\n"
                          "  payload       none\n";

TEST(ImageShow, ShowsTheFieldsOfHeaderAndSectors) {
    const TemporaryFolder folder;
    folder.write("page.ze", pageImage().bytes());
    folder.write("odd.ze", ImageBuilder()
                               .nodeDescriptor(3, 0xabcdef)
                               .sector(7, "xyz")
                               .setByte(7, 1)
                               .setByte(10, 1)
                               .setNumber(36, 4, 0)
                               .bytes());
    folder.write("cut.ze", pageImage().cutTo(64).bytes());
    folder.write("tag.ze", "ZALM");
    const std::string binary = "sector 1\n"
                               "  type          binary (0x1)\n"
                               "  offset        32\n"
                               "  payload       17 bytes at 48\n"
                               "  padding       3 bytes\n"
                               "  node          1\n"
                               "  core          2\n"
                               "  address       0x10000\n"
                               "  image         5 bytes at 60\n";
    const std::string jump = "sector 2\n"
                             "  type          goto (0x5)\n"
                             "  offset        72\n"
                             "  payload       12 bytes at 88\n"
                             "  padding       0 bytes\n"
                             "  node          1\n"
                             "  core          2\n"
                             "  address       0x10004\n"
                             "  crc           0xe13dc88a\n";
    const std::string cut =
        "sector 1 at offset 32: Not enough space in the buffer to hold the data: it claims 40 "
        "bytes, but the file has 32 of them\n";
    const CommandCase cases[] = {
        {"zetool image show page.ze", 0,
         s_header + s_network + binary + "  crc           0x3e468792\n" + jump + s_end},
        {"zetool image show page.ze 3", 0, s_header + s_end},
        {"zetool image show - end <page.ze", 0, s_header + s_end},
        {"zetool image show -c page.ze network", 0, s_header + s_network + "  computed crc  0x86be3526\n"},
        {"zetool image show odd.ze", 0,
         s_header + "  reserved      not 0\n"
                    "sector 0\n"
                    "  type          node (0x4)\n"
                    "  offset        8\n"
                    "  payload       12 bytes at 24\n"
                    "  padding       0 bytes\n"
                    "  node          3\n"
                    "  part number   0xabcdef\n"
                    "  crc           0, not checked\n"
                    "  reserved      not 0\n"
                    "sector 1\n"
                    "  type          0x7, unknown\n"
                    "  offset        40\n"
                    "  payload       3 bytes at 56\n"
                    "  padding       1 byte\n"
                    "  crc           0x97d5ac02\n"},
        {"zetool image show cut.ze", 1, s_header + s_network + binary + "  end           cut off\n",
         "zetool: cut.ze: " + cut},
        {"zetool image show cut.ze end", 1, s_header, "zetool: cut.ze: " + cut},
        {"zetool image show tag.ze", 1, "", "zetool: tag.ze: Header tag incorrect\n"},
        {"zetool image show page.ze 4", 2, "", "zetool: page.ze: there is no sector 4\n"},
        {"zetool image show page.ze otp", 2, "", "zetool: page.ze: there is no sector otp\n"},
        {"zetool image show page.ze what", 2, "",
         "zetool: 'what' is neither the number of a sector nor a type such as network\n"},
        {"zetool image show page.ze 99999999999999999999", 2, "",
         "zetool: '99999999999999999999' is neither the number of a sector nor a type such as network\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(ImageShow, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("page.ze", pageImage().bytes());
    folder.write("tag.ze", "ZALM");
    const CommandCase cases[] = {
        {"zetool image show --json page.ze 1", 0,
         "{\n"
         "  \"type\": \"imageShow\",\n"
         "  \"version\": 1,\n"
         "  \"header\": {\n"
         "    \"tag\": \"ZELM\",\n"
         "    \"version\": 1,\n"
         "    \"reservedIsUsed\": false\n"
         "  },\n"
         "  \"sectors\": [\n"
         "    {\n"
         "      \"index\": 1,\n"
         "      \"offset\": 32,\n"
         "      \"type\": 1,\n"
         "      \"typeName\": \"binary\",\n"
         "      \"size\": 17,\n"
         "      \"pad\": 3,\n"
         "      \"node\": 1,\n"
         "      \"core\": 2,\n"
         "      \"address\": \"0x10000\",\n"
         "      \"partNumber\": null,\n"
         "      \"crc\": \"0x3e468792\",\n"
         "      \"computedCrc\": null,\n"
         "      \"isWhole\": true,\n"
         "      \"payloadOffset\": 48,\n"
         "      \"imageOffset\": 60,\n"
         "      \"reservedIsUsed\": false\n"
         "    }\n"
         "  ],\n"
         "  \"fault\": null\n"
         "}\n"},
        {"zetool image show --json tag.ze", 1,
         "{\n"
         "  \"type\": \"imageShow\",\n"
         "  \"version\": 1,\n"
         "  \"header\": null,\n"
         "  \"sectors\": [],\n"
         "  \"fault\": \"Header tag incorrect\"\n"
         "}\n",
         "zetool: tag.ze: Header tag incorrect\n"},
    };
    expectCommands(folder.path(), cases);
    for (const char* line : {"zetool image show --json page.ze", "zetool image show --json tag.ze"})
        EXPECT_EQ(schemaFaults("image-show.schema.json", zetoolShell(folder.path(), line).output), "");
}

TEST(ImageShow, NeedsLittleMemoryForALargeFile) {
    const TemporaryFolder folder;
    writeLargeImage(folder.file("large.ze"));
    const ChildResult result = zetoolShell(folder.path(), s_littleMemory + "zetool image show large.ze 2");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, s_header + "sector 2\n"
                                        "  type          end (0x5555)\n"
                                        "  offset        1073741864\n"
                                        "  payload       none\n");
}

} // namespace
