#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/target/ZccVariables.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_nothingSet = "Variable                    Value  State\n"
                                 "ZCC_TARGET_PATH                    not set\n"
                                 "ZCC_DEVICE_PATH                    not set\n"
                                 "ZCC_LIBRARY_PATH                   not set\n"
                                 "ZCC_INCLUDE_PATH                   not set\n"
                                 "ZCC_ZC_INCLUDE_PATH                not set\n"
                                 "ZCC_C_INCLUDE_PATH                 not set\n"
                                 "ZCC_CPLUS_INCLUDE_PATH             not set\n"
                                 "ZCC_ASSEMBLER_INCLUDE_PATH         not set\n"
                                 "ZCC_DEFAULT_TARGET                 not set\n"
                                 "ZCC_EXEC_PREFIX                    not set\n"
                                 "\n"
                                 "Kind  Name  File  Note\n";

class TargetList : public testing::Test {
protected:
    TargetList() {
        for (const char* file : {"targets/B/B.zn", "targets/A/A.zn", "targets/none/other.zn", "more/B/B.zn",
                                 "targets/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn", "devices/config_L1.xml",
                                 "devices/Package.pkg", "devices/config_.xml", "devices/notes.txt",
                                 "devices/.pkg", "others/config_L1.xml", "others/config_G4.xml", "file.txt"})
            folder.write(file, "");
    }

    TemporaryFolder folder;
    ZccVariables variables;
};

} // namespace

TEST_F(TargetList, ListsVariablesFoldersAndFiles) {
    const CommandCase cases[] = {
        {"zetool target list", 0, s_nothingSet},
        {"ZCC_TARGET_PATH=targets:more ZCC_DEVICE_PATH=devices:nowhere:others: ZCC_LIBRARY_PATH=file.txt "
         "ZCC_DEFAULT_TARGET=ZS1-L1A-LQ64 ZCC_EXEC_PREFIX=devices zetool target list",
         0,
         "Variable                    Value         State\n"
         "ZCC_TARGET_PATH             targets       folder\n"
         "ZCC_TARGET_PATH             more          folder\n"
         "ZCC_DEVICE_PATH             devices       folder\n"
         "ZCC_DEVICE_PATH             nowhere       missing\n"
         "ZCC_DEVICE_PATH             others        folder\n"
         "ZCC_DEVICE_PATH                           empty, which means /\n"
         "ZCC_LIBRARY_PATH            file.txt      no folder\n"
         "ZCC_INCLUDE_PATH                          not set\n"
         "ZCC_ZC_INCLUDE_PATH                       not set\n"
         "ZCC_C_INCLUDE_PATH                        not set\n"
         "ZCC_CPLUS_INCLUDE_PATH                    not set\n"
         "ZCC_ASSEMBLER_INCLUDE_PATH                not set\n"
         "ZCC_DEFAULT_TARGET          ZS1-L1A-LQ64  targets/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn\n"
         "ZCC_EXEC_PREFIX             devices       folder\n"
         "\n"
         "Kind       Name              File                                          Note\n"
         "target     A                 targets/A/A.zn\n"
         "target     B                 targets/B/B.zn\n"
         "target     ZS1-L01A-LQ64-C4  targets/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn\n"
         "target     B                 more/B/B.zn                                   hidden by "
         "targets/B/B.zn\n"
         "node type  L1                devices/config_L1.xml\n"
         "package    Package           devices/Package.pkg\n"
         "node type  G4                others/config_G4.xml\n"
         "node type  L1                others/config_L1.xml                          hidden by "
         "devices/config_L1.xml\n"},
        {"ZCC_DEFAULT_TARGET=C zetool target list | grep DEFAULT", 0,
         "ZCC_DEFAULT_TARGET          C      no target\n"},
        {"ZCC_DEVICE_PATH=devices zetool target list --json -o list.json; head -n 3 list.json", 0,
         "{\n"
         "  \"type\": \"targetList\",\n"
         "  \"version\": 1,\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(TargetList, NamesAFolderTwiceWhereThePathDoes) {
    const CommandCase cases[] = {
        {"ZCC_TARGET_PATH=more:more zetool target list | tail -n 3", 0,
         "Kind    Name  File         Note\n"
         "target  B     more/B/B.zn\n"
         "target  B     more/B/B.zn\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST_F(TargetList, WritesOneJsonObject) {
    const std::string json = writtenJson(
        folder.path(), "ZCC_TARGET_PATH=more ZCC_DEVICE_PATH=others:devices zetool target list --json",
        "target-list.schema.json");
    EXPECT_THAT(json, testing::HasSubstr("    {\n"
                                         "      \"variable\": \"ZCC_TARGET_PATH\",\n"
                                         "      \"isSet\": true,\n"
                                         "      \"value\": \"more\",\n"
                                         "      \"state\": \"folder\"\n"
                                         "    },\n"));
    EXPECT_THAT(json, testing::EndsWith("    {\n"
                                        "      \"kind\": \"node type\",\n"
                                        "      \"name\": \"L1\",\n"
                                        "      \"file\": \"devices/config_L1.xml\",\n"
                                        "      \"note\": \"hidden by others/config_L1.xml\"\n"
                                        "    },\n"
                                        "    {\n"
                                        "      \"kind\": \"package\",\n"
                                        "      \"name\": \"Package\",\n"
                                        "      \"file\": \"devices/Package.pkg\",\n"
                                        "      \"note\": \"\"\n"
                                        "    }\n"
                                        "  ]\n"
                                        "}\n"));
}
