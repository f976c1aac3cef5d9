#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "tests/support/OwnedUtils.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/DamagedInput.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/config/ConfigSchemaWalk.h"

namespace {

const std::string s_default =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<ZSystem xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xsi:noNamespaceSchemaLocation=\"ZSystem.xsd\">\n"
    "  <System>\n"
    "    <Nodes>\n"
    "      <Node bootMode=\"0\" number=\"0\" jtagId=\"0x0fff1731\" userId=\"0x0\">\n"
    "        <Switch/>\n"
    "        <Processor number=\"0\" numThreads=\"8\" numTimers=\"10\" numLocks=\"4\" numSyncs=\"7\" "
    "numChanEnds=\"32\" numClkBlks=\"6\" numMemMaps=\"16\">\n"
    "          <MemoryController>\n"
    "            <Ram base=\"0x10000\" size=\"0x10000\"/>\n"
    "            <ExtRam base=\"0x10000\" size=\"0x4000000000\"/>\n"
    "            <Rom base=\"0xffffc000\" size=\"0x2000\"/>\n"
    "          </MemoryController>\n"
    "          <Otp name=\"\"/>\n"
    "        </Processor>\n"
    "      </Node>\n"
    "      <GlxNode number=\"0\"/>\n"
    "    </Nodes>\n"
    "    <Connections/>\n"
    "  </System>\n"
    "</ZSystem>\n";

const std::string s_namespace = "<ZSystem xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                "xsi:noNamespaceSchemaLocation=\"ZSystem.xsd\">\n";

TEST(ConfigDocuments, AreWhatTheSchemaMakes) {
    const TemporaryFolder folder;
    folder.write("a.xml", "<ZSystem><!-- lost -->\n"
                          "<System maximumCycles='5'>\n"
                          "<Plugins><Plugin args='a &amp;lt;b &lt; c'/></Plugins>\n"
                          "<Nodes><Node number='3'/><GlxNode/></Nodes>\n"
                          "<Connections><PLink width='5'/><SLink/></Connections>\n"
                          "<JtagChain><Node/></JtagChain></System></ZSystem>\n");
    folder.write("wrong.xml", "<ZSystem>\n<System size='1'/>\n<Sys/>\n</ZSystem>\n");
    folder.write("root.xml", "<System/>\n");
    folder.write("cut.xml", "<ZSystem>\n<System");
    folder.write("comment.xml", "<ZSystem>x<!-- y");
    folder.write("quote.xml",
                 "<ZSystem>\n<System><Plugins><Plugin args='say \"x\"'/></Plugins></System></ZSystem>");
    folder.write("kept.xml", "kept");
    const CommandCase cases[] = {
        {"zetool config default", 0, s_default},
        {"zetool config default -o kept.xml", 2, "", "zetool: kept.xml: exists; --force replaces it\n"},
        {"zetool config template | head -n 4", 0,
         s_namespace +
             "  <!-- displayStats: Simulator: If true, statistics are displayed when the simuation "
             "completes. -->\n"
             "  <!-- maximumCycles: Simulator: If non-zero, exits when the given number of cycles are "
             "reached. -->\n"
             "  <!-- gdbMiOutput: Simulator: If true, simulator output uses the gdb mi protocol. -->\n"},
        {"zetool config complete | grep -o '<[A-Z][A-Za-z]*' | sort | uniq -c | grep -v ' 1 '", 0,
         "      2 <Node\n      4 <PLink\n      5 <Trace\n"},
        {"zetool config complete | tail -n 6 | head -n 5", 0,
         "        <ZLink node=\"0\" number=\"0\" bitNum=\"0\" dir=\"in\"/>\n"
         "        <Port name=\"\" node=\"0\" core=\"0\" priority=\"0\" bitNum=\"0\"/>\n"
         "      </Pin>\n"
         "    </Pins>\n"
         "  </System>\n"},
        {"zetool config complete a.xml", 0,
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + s_namespace +
             "  <System maximumCycles=\"5\" displayStats=\"false\" gdbMiOutput=\"false\" "
             "loadElves=\"true\">\n"
             "    <Plugins>\n"
             "      <Plugin args=\"a &amp;lt;b &lt; c\" name=\"\"/>\n"
             "    </Plugins>\n"
             "    <Nodes>\n"
             "      <Node number=\"3\" bootMode=\"0\" jtagId=\"0x0fff1731\" userId=\"0x0\" "
             "interconnectMhz=\"400\" processorMhz=\"400\" referenceMhz=\"100\"/>\n"
             "      <GlxNode number=\"0\"/>\n"
             "    </Nodes>\n"
             "    <Connections>\n"
             "      <PLink width=\"5\" pLink=\"0,0,0\" outBufferBytes=\"16\" inBufferBytes=\"16\"/>\n"
             "      <SLink width=\"9\" end1=\"0,0\" end2=\"0,1\" outBufferBytes=\"16\" "
             "inBufferBytes=\"16\"/>\n"
             "    </Connections>\n"
             "    <JtagChain>\n"
             "      <Node id=\"0\"/>\n"
             "    </JtagChain>\n"
             "  </System>\n"
             "</ZSystem>\n"},
        {"zetool config complete - <a.xml | zetool config complete - >b.xml; "
         "zetool config complete a.xml | cmp - b.xml",
         0, ""},
        {"zetool config complete wrong.xml", 1, "",
         "zetool: wrong.xml:3: error: unrecognised subnode 'Sys' in node 'ZSystem'\n"
         "zetool: wrong.xml:2: error: unrecognised attribute 'size' in node 'System'\n"},
        {"zetool config complete root.xml", 1, "",
         "zetool: root.xml:1: error: the root must be 'ZSystem', not 'System'\n"},
        {"zetool config complete cut.xml", 1, "", "zetool: cut.xml:2: error: invalid node name 'System'\n"},
        {"zetool config complete comment.xml", 1, "",
         "zetool: comment.xml: the document ends inside a comment\n"},
        {"zetool config complete quote.xml", 1, "",
         "zetool: quote.xml:2: the value of 'args' in node 'Plugin' holds a double quote, which can't be "
         "written\n"},
        {"zetool config complete none.xml", 2, "",
         "zetool: none.xml: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
    EXPECT_EQ(folder.read("kept.xml"), "kept");
}

TEST(ConfigDocuments, EveryOneOfThemIsValid) {
    const TemporaryFolder folder;
    for (const char* const command : {"default", "complete", "template"}) {
        const ChildResult result =
            zetoolShell(folder.path(), std::string("zetool config ") + command + " | zetool config check -");
        EXPECT_EQ(result.exitStatus, 0) << command << result.error;
    }
}

TEST(ConfigDocuments, CompletingACompleteDocumentChangesNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(zetoolShell(folder.path(),
                          "zetool config complete -o a.xml; zetool config complete a.xml | cmp - a.xml")
                  .exitStatus,
              0);
}

// The first fault of the walk is the one at which the library's own check ends.
TEST(ConfigSchemaWalk, FindsFirstWhatTheLibraryFindsFirst) {
    for (const char* const text :
         {"<ZSystem/>", "<ZSystem x=''/>", "<ZSystem>\n<A/>\n<System y=''/></ZSystem>",
          "<ZSystem><System><Nodes><Node>\n<Processor><Ports/></Processor></Node>\n<Nod/></Nodes></System></"
          "ZSystem>",
          "<ZSystem><System><TraceConfig><Trace name='TRACE_MEM' x=''/></TraceConfig></System></ZSystem>",
          "<ZSystem><System><JtagChain><Node number='1'/></JtagChain></System></ZSystem>",
          "<ZSystem><System><Connections><PLink end1=''/><SLink "
          "pLink=''/></Connections></System></ZSystem>"}) {
        OwnedUtils utils;
        std::istringstream stream(text);
        const XmlParser parser("a.xml", utils.get(), &stream);
        std::string expected;
        try {
            Configuration(utils.get()).checkConfig(parser.getRoot());
        } catch (const std::string& error) {
            expected = error;
        }
        const std::vector<SchemaFault> faults = SchemaWalk().faults("a.xml", parser.getRoot());
        EXPECT_EQ(faults.empty() ? "" : faults.front().message + "\n", expected) << text;
    }
}

TEST(ConfigDocuments, EveryDamagedDocumentHasAMessage) {
    const TemporaryFolder folder;
    EXPECT_EQ(damageFailures(folder, "a.xml", s_default,
                             {{"config", "complete", "a.xml"},
                              {"config", "check", "a.xml"},
                              {"config", "check", "--node", "--json", "a.xml"},
                              {"config", "get", "a.xml", "Node[number=0]/Processor/@numThreads", "System"},
                              {"config", "get", "--json", "--default", "a.xml", "Node/@referenceMhz"}}),
              "");
}

} // namespace
