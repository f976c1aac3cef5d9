#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/pins/PinSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(PinsFind, ShowsTheRowsOfPinsPortsAndLinks) {
    const TemporaryFolder folder;
    folder.write("a.ze", pinImage(s_pinDocument));
    const std::string heads = "pad  package  pin  node  core  port or link  bit  priority  direction\n";
    const std::string x0OfA = "  0  A        X0      7     0  P1              0         0\n"
                              "  0  A        X0      7     0  P4              2         1\n";
    const std::string linkOfX1 = "  1  A        X1      7        link3           0            in\n";
    const std::string portOfB = "  2  B        X0      7     1  P1              0         0\n";
    const std::string linkOfB = "  2  B        X0      7        link3           1            out\n";
    const CommandCase cases[] = {
        {"zetool pins find a.ze X0", 0,
         "pad  package  pin  node  core  port or link  bit  priority  direction\n" + x0OfA + portOfB +
             linkOfB},
        {"zetool pins find a.ze link3", 0, heads + linkOfX1 + linkOfB},
        {"zetool pins find a.ze 7:link3", 0, heads + linkOfX1 + linkOfB},
        {"zetool pins find - B:X0 <a.ze", 0, heads + portOfB + linkOfB},
        {"zetool pins find a.ze NC", 0,
         "pad  package  pin  node  core  port or link  bit  priority  direction\n"
         "  3  B        NC\n"},
        {"zetool pins find a.ze A:NC x0 P2 6:link3 7:2:P1", 1,
         "pad  package  pin  node  core  port or link  bit  priority  direction\n",
         "zetool: a.ze: there is no pin, port or link 'A:NC'\n"
         "zetool: a.ze: there is no pin, port or link 'x0'\n"
         "zetool: a.ze: there is no pin, port or link 'P2'\n"
         "zetool: a.ze: there is no pin, port or link '6:link3'\n"
         "zetool: a.ze: there is no pin, port or link '7:2:P1'\n"},
        {"zetool pins find a.ze link0 X1 7:link4", 1, heads + linkOfX1,
         "zetool: a.ze: 'link0' has no pin\n"
         "zetool: a.ze: there is no pin, port or link '7:link4'\n"},
        {"zetool pins find a.ze", 2, "",
         "zetool: pins find: NAME is missing\nzetool: 'zetool pins find --help' shows what there is\n"},
        {"zetool pins find absent.ze X0", 2, "",
         "zetool: absent.ze: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(PinsFind, TellsPortsOfCoresApart) {
    const TemporaryFolder folder;
    folder.write("a.ze", pinImage(s_pinDocument));
    const std::string heads = "pad  package  pin  node  core  port or link  bit  priority  direction\n";
    const std::string ofCore0 = "  0  A        X0      7     0  P1              0         0\n";
    const std::string ofCore1 = "  2  B        X0      7     1  P1              0         0\n";
    const CommandCase cases[] = {
        {"zetool pins find a.ze P1", 0, heads + ofCore0 + ofCore1},
        {"zetool pins find a.ze 7:1:P1", 0, heads + ofCore1},
        {"zetool pins find a.ze 7:1:P1 7:0:P1", 0, heads + ofCore1 + ofCore0},
    };
    expectCommands(folder.path(), cases);
}

TEST(PinsFind, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("a.ze", pinImage(s_pinDocument));
    const ChildResult result = zetoolShell(folder.path(), "zetool pins find --json a.ze X1 no");
    EXPECT_EQ(result.error, "zetool: a.ze: there is no pin, port or link 'no'\n");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "{\n"
                             "  \"type\": \"pinsFind\",\n"
                             "  \"version\": 1,\n"
                             "  \"results\": [\n"
                             "    {\n"
                             "      \"name\": \"X1\",\n"
                             "      \"connections\": [\n"
                             "        {\n"
                             "          \"pad\": 1,\n"
                             "          \"package\": \"A\",\n"
                             "          \"pin\": \"X1\",\n"
                             "          \"port\": null,\n"
                             "          \"link\": {\n"
                             "            \"node\": 7,\n"
                             "            \"number\": 3,\n"
                             "            \"bit\": 0,\n"
                             "            \"direction\": \"in\"\n"
                             "          }\n"
                             "        }\n"
                             "      ]\n"
                             "    },\n"
                             "    {\n"
                             "      \"name\": \"no\",\n"
                             "      \"connections\": []\n"
                             "    }\n"
                             "  ]\n"
                             "}\n");
    EXPECT_EQ(schemaFaults("pins-find.schema.json", result.output), "");
}

} // namespace
