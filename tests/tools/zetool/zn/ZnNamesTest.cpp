#include "tests/tools/zetool/zn/ZnSamples.h"

namespace {

class ZnNames : public ZnCommands {};

TEST_F(ZnNames, ListsCoresAndPorts) {
    const CommandCase cases[] = {
        {"zetool zn names two.zn", 0,
         "core      node  number  location     name\n"
         "left      a          0  ZS1_PORT_1A  PORT_LED\n"
         "right[3]  b          0\n",
         s_chainLine},
        {"zetool zn names switch.zn", 0,
         "core  node  number  location  name\n"
         "a     a          0\n",
         s_lanksWarning},
        {"zetool zn names bad.zn", 1, "",
         "zetool: bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
         "zetool: bad.zn: Error: ZN11038 JTAG scan chain not specified.\n"},
        {"zetool zn names none.zn", 2, "", "zetool: none.zn: can't be opened: No such file or directory\n"},
        {"zetool zn names --json - <two.zn", 0,
         "{\n"
         "  \"type\": \"znNames\",\n"
         "  \"version\": 1,\n"
         "  \"cores\": [\n"
         "    {\n"
         "      \"core\": \"left\",\n"
         "      \"node\": \"a\",\n"
         "      \"number\": 0,\n"
         "      \"routingId\": 0,\n"
         "      \"ports\": [\n"
         "        {\n"
         "          \"location\": \"ZS1_PORT_1A\",\n"
         "          \"name\": \"PORT_LED\"\n"
         "        }\n"
         "      ]\n"
         "    },\n"
         "    {\n"
         "      \"core\": \"right[3]\",\n"
         "      \"node\": \"b\",\n"
         "      \"number\": 0,\n"
         "      \"routingId\": 16384,\n"
         "      \"ports\": []\n"
         "    }\n"
         "  ]\n"
         "}\n",
         s_chainLine},
    };
    expectCommands(folder().path(), cases);
}

TEST_F(ZnNames, ItsJsonHoldsToItsSchema) {
    EXPECT_EQ(schemaFaults("zn-names.schema.json", run("zetool zn names --json two.zn").output), "");
}

} // namespace
