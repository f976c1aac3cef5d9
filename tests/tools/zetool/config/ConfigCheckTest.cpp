#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(ConfigCheck, NamesWhatAConfigurationCannotHave) {
    const TemporaryFolder folder;
    folder.write("fine.xml", "<ZSystem><System><Trace/></System></ZSystem>");
    folder.write("fine.xml", "<ZSystem><System><TraceConfig><Trace name='TRACE_MEM'/></TraceConfig><Nodes/>"
                             "<Nodes/></System></ZSystem>");
    folder.write("wrong.xml",
                 "<ZSystem>\n<System>\n<Nodes size='4'><Node id='0'/>\n<Nod><Deep/></Nod></Nodes>\n"
                 "</System></ZSystem>\n");
    folder.write("root.xml", "<Network/>");
    folder.write("end.xml", "<ZSystem>\n<System></ZSystem>");
    folder.write("text.xml", "no document");
    folder.write("backslash.xml", "<ZSystem a='x\\");
    folder.write("comment.xml", "<ZSystem>x<!-- y");
    folder.write("node.xml",
                 "<ZSystem><System><Nodes><Node number='0'>\n<Processor number='-1'/></Node></Nodes>"
                 "<Connections/></System></ZSystem>");
    const std::string noEnd = "zetool: text.xml: error: no '<' before the end of file\n";
    const CommandCase cases[] = {
        {"zetool config check fine.xml", 0, "fine.xml: no faults\n"},
        {"zetool config check - <fine.xml", 0, "(standard input): no faults\n"},
        {"zetool config check fine.xml -o report && cat report", 0, "fine.xml: no faults\n"},
        {"zetool config check wrong.xml", 1, "wrong.xml: faults: 3\n",
         "zetool: wrong.xml:3: error: unrecognised attribute 'size' in node 'Nodes'\n"
         "zetool: wrong.xml:4: error: unrecognised subnode 'Nod' in node 'Nodes'\n"
         "zetool: wrong.xml:3: error: unrecognised attribute 'id' in node 'Node'\n"},
        {"zetool config check root.xml", 1, "root.xml: faults: 1\n",
         "zetool: root.xml:1: error: the root must be 'ZSystem', not 'Network'\n"},
        {"zetool config check end.xml", 1, "end.xml: faults: 1\n",
         "zetool: end.xml:2: error: unexpected closing tag 'ZSystem'\n"},
        {"zetool config check text.xml", 1, "text.xml: faults: 1\n", noEnd},
        {"zetool config check comment.xml", 1, "comment.xml: faults: 1\n",
         "zetool: comment.xml: the document ends inside a comment\n"},
        {"zetool config check backslash.xml", 1, "backslash.xml: faults: 1\n",
         "zetool: backslash.xml: a tag ends behind a backslash\n"},
        {"zetool config check node.xml", 0, "node.xml: no faults\n"},
        {"zetool config check --node node.xml", 1, "node.xml: faults: 1\n",
         "zetool: node.xml:2 Error: ZN11072 Illegal core number.\n"},
        {"zetool config check -n fine.xml", 1, "fine.xml: faults: 1\n",
         "zetool: fine.xml: Error: ZN11069 No 'Connections' node defined in XML file\n"},
        {"zetool config check -n - <node.xml", 2, "",
         "zetool: config check: --node needs a file, not standard input\n"},
        {"zetool config check none.xml", 2, "",
         "zetool: none.xml: can't be opened: No such file or directory\n"},
        {"zetool config check --json fine.xml", 0,
         "{\n"
         "  \"type\": \"configCheck\",\n"
         "  \"version\": 1,\n"
         "  \"isValid\": true,\n"
         "  \"faults\": []\n"
         "}\n"},
        {"zetool config check --json root.xml", 1,
         "{\n"
         "  \"type\": \"configCheck\",\n"
         "  \"version\": 1,\n"
         "  \"isValid\": false,\n"
         "  \"faults\": [\n"
         "    {\n"
         "      \"line\": 1,\n"
         "      \"text\": \"the root must be 'ZSystem', not 'Network'\"\n"
         "    }\n"
         "  ]\n"
         "}\n",
         "zetool: root.xml:1: error: the root must be 'ZSystem', not 'Network'\n"},
    };
    expectCommands(folder.path(), cases);
    for (const char* const file : {"fine.xml", "wrong.xml", "root.xml", "text.xml", "comment.xml"})
        EXPECT_EQ(schemaFaults(
                      "config-check.schema.json",
                      zetoolShell(folder.path(), std::string("zetool config check --json ") + file).output),
                  "");
}

} // namespace
