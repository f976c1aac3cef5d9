#include "tests/tools/zetool/zn/ZnSamples.h"

namespace {

class ZnCheck : public ZnCommands {};

TEST_F(ZnCheck, NamesEveryWarningAndTheError) {
    folder().write("cut.zn", "<Network>\n<Nodes");
    folder().write("backslash.zn", "<Network a='\\");
    folder().write("comment.zn", "<Network>x<!-- y");
    const CommandCase cases[] = {
        {"zetool zn check two.zn", 0, "two.zn: the network loads; warnings: 0\n", s_chainLine},
        {"zetool zn check switch.zn", 1, "switch.zn: the network loads; warnings: 1\n", s_lanksWarning},
        {"zetool zn check bad.zn", 1, "bad.zn: the network doesn't load; warnings: 1\n",
         "zetool: bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
         "zetool: bad.zn: Error: ZN11038 JTAG scan chain not specified.\n"},
        {"zetool zn check - <bad.zn", 1, "(standard input): the network doesn't load; warnings: 1\n",
         "zetool: (standard input):1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
         "zetool: (standard input): Error: ZN11038 JTAG scan chain not specified.\n"},
        {"zetool zn check cut.zn", 1, "cut.zn: the network doesn't load; warnings: 0\n",
         "zetool: cut.zn:2: error: invalid node name 'Nodes'\n"},
        {"zetool zn check backslash.zn", 1, "backslash.zn: the network doesn't load; warnings: 0\n",
         "zetool: backslash.zn: a tag ends behind a backslash, here or in a file that the network names\n"},
        {"zetool zn check comment.zn", 1, "comment.zn: the network doesn't load; warnings: 0\n",
         "zetool: comment.zn: the document ends inside a comment, here or in a file that the network "
         "names\n"},
        {"zetool zn check none.zn", 2, "", "zetool: none.zn: can't be opened: No such file or directory\n"},
        {"zetool zn check -o two.zn switch.zn", 2, "",
         s_lanksWarning + std::string("zetool: two.zn: exists; --force replaces it\n")},
        {"zetool zn check --json bad.zn", 1,
         "{\n"
         "  \"type\": \"znCheck\",\n"
         "  \"version\": 1,\n"
         "  \"error\": \"bad.zn: Error: ZN11038 JTAG scan chain not specified.\\n\",\n"
         "  \"warnings\": [\n"
         "    \"bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\"\n"
         "  ]\n"
         "}\n",
         "zetool: bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
         "zetool: bad.zn: Error: ZN11038 JTAG scan chain not specified.\n"},
    };
    expectCommands(folder().path(), cases);
}

// What a warning quotes may hold line ends, and lines that look a little like warnings.
TEST_F(ZnCheck, CountsAndPrintsAWarningOfTwoLinesAsOne) {
    folder().write("lines.zn", "<Network><ExternalDevices>\n"
                               "<Device Class='x\nlines.zn: Warning: ZN11058 y\n'/>\n"
                               "<Device Class='z'/></ExternalDevices>\n"
                               "</Network>\n");
    const std::string messages =
        "zetool: lines.zn:4 Warning: ZN11058 Unrecognised device class \"x\n"
        "lines.zn: Warning: ZN11058 y\n"
        "\"; ignoring.\n"
        "zetool: lines.zn:5 Warning: ZN11058 Unrecognised device class \"z\"; ignoring.\n"
        "zetool: lines.zn: Error: ZN11038 JTAG scan chain not specified.\n";
    const CommandCase cases[] = {
        {"zetool zn check lines.zn", 1, "lines.zn: the network doesn't load; warnings: 2\n", messages},
        {"zetool zn check --json lines.zn", 1,
         "{\n"
         "  \"type\": \"znCheck\",\n"
         "  \"version\": 1,\n"
         "  \"error\": \"lines.zn: Error: ZN11038 JTAG scan chain not specified.\\n\",\n"
         "  \"warnings\": [\n"
         "    \"lines.zn:4 Warning: ZN11058 Unrecognised device class \\\"x\\nlines.zn: Warning: ZN11058 "
         "y\\n\\\"; ignoring.\",\n"
         "    \"lines.zn:5 Warning: ZN11058 Unrecognised device class \\\"z\\\"; ignoring.\"\n"
         "  ]\n"
         "}\n",
         messages},
        {"zetool zn names lines.zn", 1, "", messages},
    };
    expectCommands(folder().path(), cases);
}

TEST_F(ZnCheck, SaysThatAFileOfANodeTypeIsDamaged) {
    const std::pair<const char*, const char*> rows[] = {
        {"<ZSystem a='\\", "a tag ends behind a backslash"},
        {"<ZSystem>x<!-- ", "the document ends inside a comment"},
    };
    for (const auto& [text, fault] : rows) {
        folder().write("config_L1.xml", text);
        const ChildResult result = run("zetool zn check two.zn");
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error,
                  std::string("zetool: two.zn: ") + fault + ", here or in a file that the network names\n");
    }
}

TEST_F(ZnCheck, ItsJsonHoldsToItsSchema) {
    for (const std::string file : {"two.zn", "switch.zn", "bad.zn"})
        EXPECT_EQ(schemaFaults("zn-check.schema.json", run("zetool zn check --json " + file).output), "");
}

} // namespace
