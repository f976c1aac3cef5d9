#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(ConfigGet, LooksUpElementsAndValues) {
    const TemporaryFolder folder;
    folder.write("a.xml", "<ZSystem>\n<System>\n<Nodes>\n"
                          "<Node number='0'><Processor number='0' numThreads='4'/>\n"
                          "<Processor number='0x1' numThreads='2'/></Node>\n"
                          "<Node number='1'><Processor number='1' codeReference='a&lt;b'/></Node>\n"
                          "</Nodes></System></ZSystem>\n");
    folder.write("double.xml",
                 "<ZSystem><System><Nodes><Node number='1' number='2'/></Nodes></System></ZSystem>");
    folder.write("cut.xml", "<ZSystem");
    const std::string attributes = "      \"attributes\": [\n"
                                   "        {\n"
                                   "          \"name\": \"number\",\n"
                                   "          \"value\": \"0\"\n"
                                   "        },\n"
                                   "        {\n"
                                   "          \"name\": \"numThreads\",\n"
                                   "          \"value\": \"4\"\n"
                                   "        }\n"
                                   "      ]\n";
    const CommandCase cases[] = {
        {"zetool config get a.xml Processor/@numThreads", 0, "4\n"},
        {"zetool config get a.xml /ZSystem/System/Nodes/Node/Processor/@numThreads", 0, "4\n"},
        {"zetool config get - 'Node[number=0]/Processor[number=1]/@numThreads' <a.xml", 0, "2\n"},
        {"zetool config get a.xml 'Processor[number=0x1]/@numThreads' 'Node[number=0x01]/@number'", 0,
         "2\n1\n"},
        {"zetool config get a.xml 'Processor[codeReference=a<b]' "
         "'Processor[codeReference=a<b]/@codeReference'",
         0, "<Processor number=\"1\" codeReference=\"a&lt;b\"/>\na<b\n"},
        {"zetool config get a.xml 'Node[number=0]'", 0,
         "<Node number=\"0\">\n"
         "  <Processor number=\"0\" numThreads=\"4\"/>\n"
         "  <Processor number=\"0x1\" numThreads=\"2\"/>\n"
         "</Node>\n"},
        {"zetool config get a.xml Node/@jtagId", 1, "", "zetool: a.xml: there is no 'Node/@jtagId'\n"},
        {"zetool config get --default a.xml Node/@jtagId Node/@number", 0, "0x0fff1731\n0\n"},
        {"zetool config get -d a.xml Node/@nothing Node/@number", 1, "0\n",
         "zetool: a.xml: there is no 'Node/@nothing'\n"},
        {"zetool config get a.xml 'Node[number=2]/@number' Switch", 1, "",
         "zetool: a.xml: there is no 'Node[number=2]/@number'\n"
         "zetool: a.xml: there is no 'Switch'\n"},
        {"zetool config get a.xml Processor/Processor", 1, "",
         "zetool: a.xml: there is no 'Processor/Processor'\n"},
        {"zetool config get double.xml 'Node[number=0x2]'", 1, "",
         "zetool: double.xml:1: error: duplicate attribute 'number' in node 'Node'\n"},
        {"zetool config get cut.xml Node", 1, "", "zetool: cut.xml:1: error: invalid node name 'ZSystem'\n"},
        {"zetool config get none.xml Node", 2, "",
         "zetool: none.xml: can't be opened: No such file or directory\n"},
        {"zetool config get a.xml @number", 2, "",
         "zetool: config get: '@number' needs an element and an attribute's name around its @\n"},
        {"zetool config get a.xml Node//@number", 2, "",
         "zetool: config get: 'Node//@number' lacks an element's name\n"},
        {"zetool config get a.xml 'Node[number]'", 2, "",
         "zetool: config get: 'Node[number]' has brackets that aren't of the form [attribute=value]\n"},
        {"zetool config get a.xml 'Node[number=0]x'", 2, "",
         "zetool: config get: 'Node[number=0]x' has something other than / behind its brackets\n"},
        {"zetool config get --json -d a.xml Processor/@numThreads Processor/@numTimers Switch", 1,
         "{\n"
         "  \"type\": \"configGet\",\n"
         "  \"version\": 1,\n"
         "  \"results\": [\n"
         "    {\n"
         "      \"path\": \"Processor/@numThreads\",\n"
         "      \"isFound\": true,\n"
         "      \"element\": \"Processor\",\n"
         "      \"line\": 4,\n"
         "      \"value\": \"4\",\n"
         "      \"isDefault\": false,\n" +
             attributes +
             "    },\n"
             "    {\n"
             "      \"path\": \"Processor/@numTimers\",\n"
             "      \"isFound\": true,\n"
             "      \"element\": \"Processor\",\n"
             "      \"line\": 4,\n"
             "      \"value\": \"10\",\n"
             "      \"isDefault\": true,\n" +
             attributes +
             "    },\n"
             "    {\n"
             "      \"path\": \"Switch\",\n"
             "      \"isFound\": false,\n"
             "      \"element\": null,\n"
             "      \"line\": null,\n"
             "      \"value\": null,\n"
             "      \"isDefault\": false,\n"
             "      \"attributes\": []\n"
             "    }\n"
             "  ]\n"
             "}\n",
         "zetool: a.xml: there is no 'Switch'\n"},
    };
    expectCommands(folder.path(), cases);
    for (const char* const path : {"Processor", "Node/@number", "Switch"})
        EXPECT_EQ(
            schemaFaults(
                "config-get.schema.json",
                zetoolShell(folder.path(), std::string("zetool config get --json a.xml ") + path).output),
            "");
}

} // namespace
