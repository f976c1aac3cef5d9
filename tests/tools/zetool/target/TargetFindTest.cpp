#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/target/ZccVariables.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

class TargetFind : public testing::Test {
protected:
    TargetFind() {
        for (const char* file :
             {"targets/A/A.zn", "more/A/A.zn", "more/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn",
              "devices/config_L1.xml", "others/config_L1.xml", "others/config_A.xml", "others/A.pkg"})
            folder.write(file, "");
        variables.set("ZCC_TARGET_PATH", "targets:more");
        variables.set("ZCC_DEVICE_PATH", "devices:others");
        variables.set("ZCC_LIBRARY_PATH", "others");
    }

    TemporaryFolder folder;
    ZccVariables variables;
};

} // namespace

TEST_F(TargetFind, ShowsTheFilesThatANameLeadsTo) {
    const CommandCase cases[] = {
        {"zetool target find A", 0,
         "Kind       File                 Note\n"
         "target     targets/A/A.zn\n"
         "node type  others/config_A.xml\n"
         "package    others/A.pkg\n"},
        {"zetool target find L1", 0,
         "Kind       File                   Note\n"
         "node type  devices/config_L1.xml\n"},
        {"zetool target find config_L1.xml", 0,
         "Kind         File                   Note\n"
         "device file  devices/config_L1.xml\n"
         "library      others/config_L1.xml\n"},
        {"zetool target find ZS1-L1A-LQ64", 0,
         "Kind    File                                       Note\n"
         "target  more/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn  an old name of ZS1-L01A-LQ64-C4\n"},
        {"zetool target find ZS1-L01A-LQ64-C4", 0,
         "Kind    File                                       Note\n"
         "target  more/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(TargetFind, SaysThatThereIsNone) {
    const CommandCase cases[] = {
        {"zetool target find B", 1, "", "zetool: cannot find B\n"},
        {"zetool target find ZS1-G4A-FB144", 1, "", "zetool: cannot find ZS1-G4A-FB144\n"},
        {"zetool target find ''", 2, "", "zetool: target find: the name is empty\n"},
        {"zetool target find", 2, "",
         "zetool: target find: NAME is missing\n"
         "zetool: 'zetool target find --help' shows what there is\n"},
        {"unset ZCC_TARGET_PATH ZCC_DEVICE_PATH; zetool target find A", 1, "", "zetool: cannot find A\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(TargetFind, WritesOneJsonObject) {
    const std::string s_found = "{\n"
                                "  \"type\": \"targetFind\",\n"
                                "  \"version\": 1,\n"
                                "  \"name\": \"ZS1-L1A-LQ64\",\n"
                                "  \"files\": [\n"
                                "    {\n"
                                "      \"kind\": \"target\",\n"
                                "      \"file\": \"more/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn\",\n"
                                "      \"note\": \"an old name of ZS1-L01A-LQ64-C4\"\n"
                                "    }\n"
                                "  ]\n"
                                "}\n";
    const std::string s_none = "{\n"
                               "  \"type\": \"targetFind\",\n"
                               "  \"version\": 1,\n"
                               "  \"name\": \"B\",\n"
                               "  \"files\": []\n"
                               "}\n";
    const CommandCase cases[] = {
        {"zetool target find --json ZS1-L1A-LQ64", 0, s_found},
        {"zetool target find --json B", 1, s_none, "zetool: cannot find B\n"},
    };
    expectCommands(folder.path(), cases);
    EXPECT_EQ(schemaFaults("target-find.schema.json", s_found), "");
    EXPECT_EQ(schemaFaults("target-find.schema.json", s_none), "");
}
