#include "tests/support/ChildProcess.h"
#include "tests/tools/zetool/zn/ZnSamples.h"

namespace {

class ZnGraph : public ZnCommands {};

TEST_F(ZnGraph, DrawsNodesAndLinks) {
    const CommandCase cases[] = {
        {"zetool zn graph two.zn", 0,
         "graph network {\n"
         "  node [shape=box];\n"
         "  n0 [label=\"a\\nL1\\n0x0000\"];\n"
         "  n1 [label=\"b\\nproc:L1\\n0x4000\"];\n"
         "  n2 [label=\"d\\ndevice:display\\n0x0000\", shape=ellipse];\n"
         "  n0 -- n1 [label=\"5 wires\", taillabel=\"2\", headlabel=\"13\"];\n"
         "  n1 -- n2 [label=\"2 wires\", taillabel=\"4\", headlabel=\"2\", style=dashed];\n"
         "}\n",
         s_chainLine},
        {"zetool zn graph - <switch.zn", 0,
         "graph network {\n"
         "  node [shape=box];\n"
         "  n0 [label=\"a\\nL1\\n0x0000\"];\n"
         "  n1 [label=\"z\\nperiph:ZS1-SU\\n0x0001\", shape=hexagon];\n"
         "  n0 -- n1 [label=\"5 wires\", taillabel=\"2\", headlabel=\"0\", style=dotted];\n"
         "}\n",
         "zetool: (standard input):1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"},
        {"zetool zn graph bad.zn", 1, "",
         "zetool: bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
         "zetool: bad.zn: Error: ZN11038 JTAG scan chain not specified.\n"},
        {"zetool zn graph none.zn", 2, "", "zetool: none.zn: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder().path(), cases);
}

TEST_F(ZnGraph, IsWhatGraphvizReads) {
    for (const std::string file : {"two.zn", "switch.zn"}) {
        const ChildResult result = run("zetool zn graph " + file + " -o a.dot && dot -Tcanon a.dot");
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        EXPECT_THAT(result.output, testing::HasSubstr("n0 -- n1"));
        EXPECT_THAT(result.error, testing::Not(testing::HasSubstr("a.dot")));
        ASSERT_EQ(run("rm a.dot").exitStatus, 0);
    }
}

// Quotes, backslashes, entities, line ends and bytes that are no UTF-8.
TEST_F(ZnGraph, ShowsIdsAsTheyAre) {
    const std::string id = "a\"b\\\\&lt;\n\xe9 \\";
    NetworkBuilder network;
    network.processor("n").device("d");
    std::string text = network.text();
    const auto at = text.find("Id=\"d\"");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 6, "Id='" + id + " '");
    folder().write("odd.zn", text);
    const ChildResult result = run("zetool zn graph odd.zn");
    EXPECT_THAT(result.output,
                testing::HasSubstr("  n1 [label=\"a\\\"b\\\\\\\\<\\n\xc3\xa9 \\\\ \\ndevice:d\\n0x0000\", "
                                   "shape=ellipse];\n"));
    const ChildResult drawn = run("zetool zn graph odd.zn 2>warnings | dot -Tcanon");
    EXPECT_EQ(drawn.exitStatus, 0);
    EXPECT_EQ(drawn.error, "");
}

TEST_F(ZnGraph, TakesAnyNumberOfNodes) {
    folder().write("cube.zn", NetworkBuilder::hypercube(5).text());
    const ChildResult result = run("zetool zn graph cube.zn | dot -Tcanon");
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_THAT(result.output, testing::HasSubstr("n15 -- n31"));
}

} // namespace
