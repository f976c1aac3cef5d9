// The checks between the parts of a network: every message with its whole text, and what passes.

#include "tests/infr_libs/ZNLoader/HandMadeNetwork.h"
#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/GroupingLocale.h"

#include <ostream>

namespace {

constexpr char s_nothing[] = "nothing thrown";

// A sound network of two processors, "a" on line 3 and "b" on line 4, with cores x[0] and x[1]; further
// elements follow from line 7 on.
#define DECLARATIONS "<Network><Declarations><Declaration>core x[2]</Declaration></Declarations>\n"
#define NODES                                                                                                \
    "<Nodes>\n"                                                                                              \
    "<Node Id='a' Type='L1'><Core Reference='x[0]'/></Node>\n"                                               \
    "<Node Id='b' Type='L1'><Core Reference='x[1]'/></Node>\n"                                               \
    "</Nodes>\n"
#define CHAIN "<JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='b'/></JTAGChain>\n"
#define NOT_IN_A_PACKAGE(line, id)                                                                           \
    "zn:" line " Warning: ZN11158 Node \"" id                                                                \
    "\" is not in a package.  Support for nodes outwith packages is deprecated.\n"
#define NEITHER_IN_A_PACKAGE NOT_IN_A_PACKAGE("3", "a") NOT_IN_A_PACKAGE("4", "b")
#define WITH(elements) DECLARATIONS NODES CHAIN elements "</Network>\n"
#define WITH_LINK(attributes, ends)                                                                          \
    WITH("<Links>\n<Link Encoding='5wire' " attributes ">" ends "</Link></Links>")
#define END(node, link) "<LinkEndpoint NodeId='" node "' Link='" link "'/>"

struct CheckRow {
    const char* name;
    const char* document;
    const char* thrown;
    const char* warnings = "";
};

void PrintTo(const CheckRow& row, std::ostream* stream) {
    *stream << row.document;
}

class ZNLoaderChecks : public ReadingTest, public testing::WithParamInterface<CheckRow> {};

std::string nameOf(const testing::TestParamInfo<CheckRow>& info) {
    return info.param.name;
}

} // namespace

TEST_P(ZNLoaderChecks, EndOpeningWithAMessage) {
    EXPECT_EQ(thrownBy([&] { open(GetParam().document); }), GetParam().thrown);
    EXPECT_EQ(warnings, GetParam().warnings);
}

constexpr CheckRow s_nodeChecks[] = {
    {"MixedArchitectures",
     "<Network><Nodes>\n<Node Id='a' Type='L1'><Core/></Node>\n<Node Id='b' Type='G4'><Core/></Node></Nodes>"
     "</Network>",
     "zn:3 Error: ZN11085 Switch architectures cannot be mixed.\n"},
    {"DuplicateNode",
     "<Network><Nodes>\n<Node Id='a' Type='Any'><Core/></Node>\n<Node Id='b' Type='Any'><Core/></Node>\n"
     "<Node Id='a' Type='device:x'/>\n<Node Id='a' Type='device:x'/></Nodes></Network>",
     "zn:4 Error: ZN11035 Duplicate node name \"a\".\n"
     "zn:2 Error: ZN11035   first used here\n"},
    {"ChainMissing", DECLARATIONS NODES "</Network>", "zn: Error: ZN11038 JTAG scan chain not specified.\n",
     NEITHER_IN_A_PACKAGE},
    {"ChainWithANodeTwice",
     DECLARATIONS NODES
     "<JTAGChain>\n<JTAGDevice NodeId='b'/><JTAGDevice NodeId='a'/><JTAGDevice NodeId='a'/>"
     "<JTAGDevice NodeId='b'/></JTAGChain></Network>",
     "zn:6 Error: ZN11039 JTAG scan chain duplicate (\"b\").\n", NEITHER_IN_A_PACKAGE},
    {"ChainIncomplete",
     DECLARATIONS NODES "<Nodes><Node Id='d' Type='device:x'/></Nodes>\n<JTAGChain/></Network>",
     "zn:7 Error: ZN11040 JTAG scan chain is incomplete.\n"
     "zn:3 Error: ZN11040   node \"a\" is missing.\n"
     "zn:4 Error: ZN11040   node \"b\" is missing.\n",
     NEITHER_IN_A_PACKAGE NOT_IN_A_PACKAGE("6", "d")},
    {"UndeclaredReference",
     "<Network><Nodes>\n<Node Id='a' Type='L1'>\n<Core Reference='y'/></Node></Nodes></Network>",
     "zn:3 Error: ZN11150 Reference code uses identifier which has not been declared.\n"},
    {"CoreWithoutAReference",
     DECLARATIONS "<Nodes>\n<Node Id='a' Type='L1'>\n<Core/></Node></Nodes></Network>",
     "zn:4 Error: ZN11150 Reference code uses identifier which has not been declared.\n"},
    {"ReferenceWithoutAnIndex",
     DECLARATIONS "<Nodes>\n<Node Id='a' Type='L1'>\n<Core Reference='x'/></Node></Nodes></Network>",
     "zn:4 Error: ZN11149 Reference code has mistmatch with declations.\n"
     "zn:1 Error: ZN11149 Declaration here.\n"},
    {"ReferenceTwice",
     DECLARATIONS "<Nodes>\n<Node Id='a' Type='L1'><Core Reference='x[1]'/></Node>\n"
                  "<Node Id='b' Type='L1'><Core Reference='x[01]'/></Node></Nodes></Network>",
     "zn:4 Error: ZN11152 Duplicate reference code \"x[01]\".\n"
     "zn:3 Error: ZN11152 Previously used here.\n"},
    {"PlainReferenceTwice",
     "<Network><Declarations><Declaration>core x</Declaration></Declarations>\n"
     "<Nodes>\n<Node Id='a' Type='L1'><Core Reference='x'/></Node>\n"
     "<Node Id='b' Type='L1'><Core Reference='x'/></Node></Nodes></Network>",
     "zn:4 Error: ZN11152 Duplicate reference code \"x\".\n"
     "zn:3 Error: ZN11152 Previously used here.\n"},
    {"ComponentOfNoNode",
     DECLARATIONS NODES "<Packages>\n<Package Id='p' Type='Package'><Component NodeId='c' InPackage='0'/>"
                        "</Package></Packages></Network>",
     "zn:7 Error: ZN11097 Node id \"c\" in Component node does not match any node.\n"},
    {"NodesInTwoPackages",
     DECLARATIONS NODES "<Packages>\n"
                        "<Package Id='p' Type='Package'><Component NodeId='a' InPackage='0'/>"
                        "<Component NodeId='b' InPackage='1'/></Package>\n"
                        "<Package Id='q' Type='Package'><Component NodeId='a' InPackage='0'/>"
                        "<Component NodeId='b' InPackage='1'/></Package></Packages></Network>",
     "zn:3 Error: ZN11159 Node \"a\" is in more then 1 package.\n"
     "zn:4 Error: ZN11159 Node \"b\" is in more then 1 package.\n"},
};

INSTANTIATE_TEST_SUITE_P(Nodes, ZNLoaderChecks, testing::ValuesIn(s_nodeChecks), nameOf);

constexpr CheckRow s_linkChecks[] = {
    {"UnknownNode", WITH_LINK("", END("a", "ZLA") END("c", "ZLA")),
     "zn:8 Error: ZN11036 Link node uses unknown node \"c\".\n", NEITHER_IN_A_PACKAGE},
    {"UnknownNodeOfASodEnd",
     WITH_LINK("Flags='sod'", END("a", "ZLA") "<LinkEndpoint NodeId='c' RoutingId='1' Chanend='1'/>"),
     "zn:8 Error: ZN11036 Link node uses unknown node \"c\".\n", NEITHER_IN_A_PACKAGE},
    {"SodEndWithoutChanend", WITH_LINK("Flags='sod'", END("a", "ZLA") "<LinkEndpoint RoutingId='1'/>"),
     "zn:8 Error: ZN11036 Link node (SOD) is incompletely specified.\n", NEITHER_IN_A_PACKAGE},
    {"SodEndWithoutRoutingId", WITH_LINK("Flags='sod'", END("a", "ZLA") "<LinkEndpoint Chanend='1'/>"),
     "zn:8 Error: ZN11036 Link node (SOD) is incompletely specified.\n", NEITHER_IN_A_PACKAGE},
    {"BadIdentifier", WITH_LINK("", END("a", "ZLQ") END("b", "ZLA")),
     "zn:8 Error: ZN11061 Link identifier (\"ZLQ\") could not be parsed.\n"
     "zn: Error: ZN11048 Link/node association check failed.\n",
     NEITHER_IN_A_PACKAGE},
    {"UnknownEncoding",
     WITH("<Links>\n<Link Encoding='3wire'>" END("a", "ZLA") END("b", "ZLA") "</Link></Links>"),
     "zn:8 Error: ZN11037 Link node uses unknown link encoding (3wire).\n", NEITHER_IN_A_PACKAGE},
    {"NoEncoding", WITH("<Links>\n<Link>" END("a", "ZLA") END("b", "ZLA") "</Link></Links>"),
     "zn:8 Error: ZN11037 Link node uses unknown link encoding ().\n", NEITHER_IN_A_PACKAGE},
    {"InterTokenDelay", WITH_LINK("Delays='2048'", END("a", "ZLA") END("b", "ZLA")),
     "zn:8 Error: ZN11172 Inter-token delay is out of range.\n", NEITHER_IN_A_PACKAGE},
    {"IntraTokenDelay", WITH_LINK("Delays='2047,2048'", END("a", "ZLA") END("b", "ZLA")),
     "zn:8 Error: ZN11173 Intra-token delay is out of range.\n", NEITHER_IN_A_PACKAGE},
    {"NegativeDelay", WITH_LINK("Delays='1clk'", END("a", "ZLA") END("b", "ZLA")),
     "zn:8 Error: ZN11172 Inter-token delay is out of range.\n", NEITHER_IN_A_PACKAGE},
    {"LinkUsedTwice",
     WITH("<Links>\n<Link Encoding='5wire'>" END("a", "ZLA")
              END("b", "ZLA") "</Link>\n"
                              "<Link Encoding='5wire'>" END("b", "ZLB") END("a", "2") "</Link></Links>"),
     "zn:9 Error: ZN11164 LinkEndpoint \"2\" on node \"a\" is a duplicate.\n"
     "zn:8 Error: ZN11164 Other is LinkEndpoint \"ZLA\" on node \"a\".\n",
     NEITHER_IN_A_PACKAGE},
    {"LinkToItself", WITH_LINK("", END("a", "ZLA") END("a", "Z0La")),
     "zn:8 Error: ZN11164 LinkEndpoint \"Z0La\" on node \"a\" is a duplicate.\n"
     "zn:8 Error: ZN11164 Other is LinkEndpoint \"ZLA\" on node \"a\".\n",
     NEITHER_IN_A_PACKAGE},
};

INSTANTIATE_TEST_SUITE_P(Links, ZNLoaderChecks, testing::ValuesIn(s_linkChecks), nameOf);

#define LINK(node0, link0, node1, link1)                                                                     \
    "<Link Encoding='5wire'>" END(node0, link0) END(node1, link1) "</Link>"
#define WITH_DEVICE(processors, chain, links)                                                                \
    DECLARATIONS "<Nodes>\n" processors "<Node Id='d' Type='device:x'/></Nodes><JTAGChain>" chain            \
                 "</JTAGChain><Links>" links "</Links></Network>"
#define PROCESSOR(id, index) "<Node Id='" id "' Type='L1'><Core Reference='x[" index "]'/></Node>\n"
#define IN_CHAIN(id) "<JTAGDevice NodeId='" id "'/>"

constexpr CheckRow s_topologyChecks[] = {
    {"DeviceInALine",
     WITH_DEVICE(PROCESSOR("a", "0") PROCESSOR("b", "1") PROCESSOR("c", "2"),
                 IN_CHAIN("a") IN_CHAIN("b") IN_CHAIN("c"),
                 LINK("a", "0", "d", "0") LINK("d", "1", "b", "0") LINK("b", "1", "c", "0")),
     "zn: Error: ZN11049 Network positioning failed (may be unsupported topology).\n",
     NEITHER_IN_A_PACKAGE NOT_IN_A_PACKAGE("5", "c") NOT_IN_A_PACKAGE("6", "d")},
    {"DeviceAtTheEndOfALine",
     WITH_DEVICE(PROCESSOR("a", "0") PROCESSOR("b", "1"), IN_CHAIN("a") IN_CHAIN("b"),
                 LINK("a", "0", "b", "0") LINK("b", "1", "d", "0")),
     "zn: Error: ZN11049 Network positioning failed (may be unsupported topology).\n",
     NEITHER_IN_A_PACKAGE NOT_IN_A_PACKAGE("5", "d")},
    {"DeviceBetweenTheOnlyTwoProcessors",
     WITH_DEVICE(PROCESSOR("a", "0") PROCESSOR("b", "1"), IN_CHAIN("a") IN_CHAIN("b"),
                 LINK("a", "0", "d", "0") LINK("d", "1", "b", "0")),
     "zn: Error: ZN11050 Internal error building network.\n",
     NEITHER_IN_A_PACKAGE NOT_IN_A_PACKAGE("5", "d")},
    {"NeitherHypercubeNorPile", WITH("<Links/>"),
     "zn: Error: ZN11049 Network positioning failed (may be unsupported topology).\n", NEITHER_IN_A_PACKAGE},
    {"SoundNetwork", WITH_LINK("", END("a", "ZLA") END("b", "ZLA")), s_nothing, NEITHER_IN_A_PACKAGE},
};

INSTANTIATE_TEST_SUITE_P(Topology, ZNLoaderChecks, testing::ValuesIn(s_topologyChecks), nameOf);

// ---- What a table of whole documents doesn't show ----

using ZNLoaderChecking = ReadingTest;

TEST_F(ZNLoaderChecking, TheNumberOfCoresIsHeldAgainstTheConfiguration) {
    const std::string file = (devices.folder().path() / "config_L1x2.xml").string();
    EXPECT_EQ(
        thrownBy(
            [&] { open("<Network><Nodes>\n<Node Id='a' Type='L1x2'><Core/></Node></Nodes></Network>"); }),
        "zn:2 Error: ZN11153 Number of cores in ZN (1) does not match number (2) in configuration file (" +
            file + ").\n");
}

TEST_F(ZNLoaderChecking, AnArchitectureIsTakenFromTheJtagIdAsItStands) {
    struct Row {
        unsigned jtagId;
        ZNLoader::SwitchArch arch;
    };
    for (const auto& [jtagId, arch] :
         {Row{0x2731, ZNLoader::SwitchArchG4}, Row{0xFFF2731, ZNLoader::SwitchArchG4},
          Row{0x2633, ZNLoader::SwitchArchL1}, Row{0x10002633, ZNLoader::SwitchArchUnknown},
          Row{0x1, ZNLoader::SwitchArchUnknown}}) {
        devices.addNodeType("Model", jtagId, 1);
        std::istringstream stream(NetworkBuilder().processor("a", "Model").text());
        const ZNLoader network("zn", &stream, nullptr);
        EXPECT_EQ(network.m_switchArch, arch) << jtagId;
    }
}

TEST_F(ZNLoaderChecking, ProcessorsWithoutAJtagIdMixWithAnyFollowingArchitecture) {
    // The running word starts at 0, and a 0 replaces it again: wanted.
    devices.addNodeType("None", 0, 1);
    EXPECT_EQ(
        thrownBy([&] {
            open(
                NetworkBuilder().processor("a", "None").processor("b", "L1").link("a", "0", "b", "0").text());
        }),
        s_nothing);
    EXPECT_EQ(loader.m_switchArch, ZNLoader::SwitchArchL1);
}

TEST_F(ZNLoaderChecking, IndicesBeyondTheDeclarationPass) {
    EXPECT_EQ(thrownBy([&] {
                  open("<Network><Declarations><Declaration>core x[1]</Declaration></Declarations><Nodes>"
                       "<Node Id='a' Type='L1'><Core Reference='x[9]'/></Node></Nodes>"
                       "<JTAGChain><JTAGDevice NodeId='a'/></JTAGChain></Network>");
              }),
              s_nothing);
}

// "d" stands in a package and "e" outside, both without a component; "f" and "g" have one.
TEST_F(ZNLoaderChecking, ADeviceIsInAPackageByAComponentAlone) {
    open("<Network><Declarations><Declaration>core x</Declaration></Declarations>\n"
         "<Packages><Package Id='p' Type='Package'><Nodes>\n"
         "<Node Id='a' InPackageId='0' Type='L1'><Core Reference='x'/></Node>\n"
         "<Node Id='d' Type='device:'/>\n"
         "<Node Id='f' Type='device:'/></Nodes>\n"
         "<Component NodeId='f' InPackage='1'/><Component NodeId='g' InPackage='2'/></Package></Packages>\n"
         "<Nodes>\n"
         "<Node Id='e' Type='device:'/>\n"
         "<Node Id='g' Type='device:'/></Nodes>\n"
         "<JTAGChain><JTAGDevice NodeId='a'/></JTAGChain></Network>");
    EXPECT_EQ(warnings, NOT_IN_A_PACKAGE("4", "d") NOT_IN_A_PACKAGE("8", "e"));
}

TEST(ZNLoaderChain, AsLongAsTheListOfNodesIsNotSearched) {
    // Only a node of another network can fill the place of the missing one, so no document leads here.
    ZNLoader::ProcNode foreign;
    HandMadeNetwork network;
    network.processors({"a", "b"});
    ZNLoader& loader = network.loader;
    loader.m_jtagChainElement = network.element();
    loader.m_jtagNodes = {loader.m_nodes[0], &foreign};
    EXPECT_FALSE(loader.checkJTAGChain());

    network.device("d"); // one more node, and the search misses b
    EXPECT_EQ(thrownBy([&] { loader.checkJTAGChain(); }),
              "zn:3 Error: ZN11040 JTAG scan chain is incomplete.\n"
              "zn:2 Error: ZN11040   node \"b\" is missing.\n");
}

TEST_F(ZNLoaderChecking, ADeviceInTheChainReplacesNoOtherNode) {
    EXPECT_EQ(thrownBy([&] {
                  open("<Network><Declarations><Declaration>core x</Declaration></Declarations><Nodes>"
                       "<Node Id='a' Type='L1'><Core Reference='x'/></Node>"
                       "<Node Id='z' Type='periph:ZS1-SU'/><Node Id='d' Type='device:x'/></Nodes>"
                       "<Links><Link Encoding='2wire'><LinkEndpoint NodeId='z' Link='0'/>"
                       "<LinkEndpoint NodeId='a' Link='0'/></Link></Links>"
                       "<JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='d'/><JTAGSpace/></JTAGChain>"
                       "</Network>");
              }),
              "zn:1 Error: ZN11040 JTAG scan chain is incomplete.\n"
              "zn:1 Error: ZN11040   node \"z\" is missing.\n");
    ZNLoader second;
    std::istringstream stream(
        "<Network><Declarations><Declaration>core x</Declaration></Declarations><Nodes>"
        "<Node Id='a' Type='L1'><Core Reference='x'/></Node>"
        "<Node Id='d' Type='device:x'/></Nodes>"
        "<JTAGChain><JTAGDevice NodeId='d'/><JTAGDevice NodeId='a'/></JTAGChain></Network>");
    EXPECT_EQ(thrownBy([&] { second.open("zn", &stream); }), s_nothing);
}

TEST_F(ZNLoaderChecking, IdentifiersGiveLinkNumbers) {
    struct Row {
        const char* text;
        int number;
    };
    for (const auto& [text, number] :
         {Row{"ZLA", 2}, Row{"ZLB", 3}, Row{"ZLC", 0}, Row{"ZLD", 1}, Row{"ZLE", 6}, Row{"ZLP", 13},
          Row{"ZLp", 13}, Row{"Z1LD", 5}, Row{"Z3Lc", 12}, Row{"Z0LA", 2}, Row{"12", 12}, Row{"08", 8},
          Row{"7x", 7}, Row{"99999999999", 2147483647}}) {
        std::istringstream stream(
            NetworkBuilder().processor("a").processor("b").link("a", text, "b", "100").text());
        const ZNLoader network("zn", &stream, nullptr);
        EXPECT_EQ(static_cast<ZNLoader::ZlinkNormalEnd*>(network.m_links[0]->m_end0)->m_linkNumber, number)
            << text;
    }
}

TEST_F(ZNLoaderChecking, LinkNumbersKnowNoGroupsOfDigits) {
    const GroupingLocale locale;
    open(NetworkBuilder().processor("a").processor("b").link("a", "1,234", "b", "100").text());
    EXPECT_EQ(static_cast<ZNLoader::ZlinkNormalEnd*>(loader.m_links[0]->m_end0)->m_linkNumber, 1);
}

TEST_F(ZNLoaderChecking, OtherIdentifiersAreRefused) {
    for (const char* text :
         {"ZLQ", "Z4LA", "zLA", "", "ZlA", "ZL", "ZLAA", "Z1LE", "Z1L", "ZA", "Z12LA", "ZL@", "ZL`"}) {
        ZNLoader network;
        std::istringstream stream(
            NetworkBuilder().processor("a").processor("b").link("a", text, "b", "100").text());
        EXPECT_TRUE(thrownBy([&] { network.open("zn", &stream); })
                        .ends_with(std::string("Error: ZN11061 Link identifier (\"") + text +
                                   "\") could not be parsed.\n"
                                   "zn: Error: ZN11048 Link/node association check failed.\n"))
            << text;
    }
}

TEST_F(ZNLoaderChecking, DelaysOfAnEndGoAheadOfThoseOfItsLink) {
    open(
        "<Network><Declarations><Declaration>core x[2]</Declaration></Declarations><Nodes>"
        "<Node Id='a' Type='L1'><Core Reference='x[0]'/></Node>"
        "<Node Id='b' Type='L1'><Core Reference='x[1]'/></Node></Nodes>"
        "<Links><Link Encoding='2WIRE' Delays='2047,2047'>"
        "<LinkEndpoint NodeId='a' Link='0' Delays='5clk'/><LinkEndpoint NodeId='b' Link='0'/></Link>"
        "<Link Encoding='5Wire'><LinkEndpoint NodeId='a' Link='1'/><LinkEndpoint NodeId='b' Link='1'/></Link>"
        "</Links><JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='b'/></JTAGChain></Network>");
    const ZNLoader::Zlink& first = *loader.m_links[0];
    EXPECT_EQ(first.m_wires, 2);
    EXPECT_EQ(first.m_end0->m_interTokenDelay, 3);
    EXPECT_EQ(first.m_end0->m_intraTokenDelay, 4);
    EXPECT_EQ(first.m_end1->m_interTokenDelay, 2047);
    EXPECT_EQ(first.m_end1->m_intraTokenDelay, 2047);
    const ZNLoader::Zlink& second = *loader.m_links[1];
    EXPECT_EQ(second.m_wires, 5);
    EXPECT_EQ(second.m_end0->m_interTokenDelay, 1);
    EXPECT_EQ(second.m_end1->m_intraTokenDelay, 1);
}

TEST_F(ZNLoaderChecking, ADelayThatItsCorrectionMakesNegativeIsOutOfRange) {
    // On both architectures: one clock less two.
    for (const char* type : {"G4", "L1"}) {
        ZNLoader network;
        std::istringstream stream(NetworkBuilder()
                                      .processor("a", type)
                                      .processor("b", type)
                                      .link("a", "0", "b", "0", "Delays='1clk'")
                                      .text());
        EXPECT_TRUE(thrownBy([&] {
                        network.open("zn", &stream);
                    }).ends_with("Error: ZN11172 Inter-token delay is out of range.\n"))
            << type;
    }
}

TEST_F(ZNLoaderChecking, AnEndOnAZsscNodeHasItsOwnCorrectionOfDelays) {
    open("<Network><Declarations><Declaration>core x</Declaration></Declarations><Nodes>"
         "<Node Id='a' Type='L1'><Core Reference='x'/></Node><Node Id='z' Type='periph:ZS1-SU'/></Nodes>"
         "<Links><Link Encoding='5wire' Delays='5clk'><LinkEndpoint NodeId='z' Link='0'/>"
         "<LinkEndpoint NodeId='a' Link='0'/></Link></Links>"
         "<JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='z'/></JTAGChain></Network>");
    const ZNLoader::Zlink& link = *loader.m_links[0];
    EXPECT_EQ(link.m_end0->m_interTokenDelay, 4);
    EXPECT_EQ(link.m_end0->m_intraTokenDelay, 4);
    EXPECT_EQ(link.m_end1->m_interTokenDelay, 3);
    EXPECT_EQ(link.m_end1->m_intraTokenDelay, 4);
}

TEST_F(ZNLoaderChecking, LinksAreSortedByKind) {
    open(
        "<Network><Declarations><Declaration>core x[2]</Declaration></Declarations><Nodes>"
        "<Node Id='a' Type='L1'><Core Reference='x[0]'/></Node>"
        "<Node Id='b' Type='L1'><Core Reference='x[1]'/></Node>"
        "<Node Id='z' Type='periph:ZS1-SU'/></Nodes><Links>"
        "<Link Encoding='5wire'><LinkEndpoint NodeId='z' Link='0'/><LinkEndpoint NodeId='a' Link='0'/></Link>"
        "<Link Encoding='5wire'><LinkEndpoint NodeId='a' Link='1'/><LinkEndpoint NodeId='b' Link='1'/></Link>"
        "<Link Encoding='5wire' Flags='sod'><LinkEndpoint NodeId='a' Link='2'/>"
        "<LinkEndpoint RoutingId='0x10' Chanend='3'/></Link>"
        "</Links><JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='b'/><JTAGDevice "
        "NodeId='z'/></JTAGChain>"
        "</Network>");
    using Links = std::vector<ZNLoader::Zlink*>;
    EXPECT_EQ(loader.m_zsscLinks, (Links{loader.m_links[0]}));
    EXPECT_EQ(loader.m_normalLinks, (Links{loader.m_links[1]}));
    EXPECT_EQ(loader.m_sodLinks, (Links{loader.m_links[2]}));
    EXPECT_EQ(loader.m_links[0]->m_flags, ZNLoader::Zlink::s_zssc);
    EXPECT_EQ(loader.m_links[2]->m_flags, ZNLoader::Zlink::s_sod);
    const auto& sod = static_cast<ZNLoader::ZlinkSodEnd&>(*loader.m_links[2]->m_end1);
    EXPECT_EQ(sod.m_routingId, 0x10);
    EXPECT_EQ(sod.m_chanend, 3);
    EXPECT_EQ(sod.m_node, nullptr);
    EXPECT_EQ(loader.m_nodes[2]->m_routingId, 1U); // that of "a" with bit 0
}

TEST_F(ZNLoaderChecking, ASodLinkOnAZsscNodeStandsInBothLists) {
    open(
        "<Network><Declarations><Declaration>core x</Declaration></Declarations><Nodes>"
        "<Node Id='a' Type='L1'><Core Reference='x'/></Node><Node Id='z' "
        "Type='periph:ZS1-SU'/></Nodes><Links>"
        "<Link Encoding='5wire'><LinkEndpoint NodeId='z' Link='0'/><LinkEndpoint NodeId='a' Link='0'/></Link>"
        "<Link Encoding='5wire' Flags='sod'><LinkEndpoint NodeId='z' Link='1'/>"
        "<LinkEndpoint RoutingId='1' Chanend='1'/></Link>"
        "</Links><JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='z'/></JTAGChain></Network>");
    EXPECT_EQ(loader.m_sodLinks.size(), 1U);
    EXPECT_EQ(loader.m_zsscLinks.size(), 2U);
    EXPECT_TRUE(loader.m_normalLinks.empty());
}

TEST_F(ZNLoaderChecking, TheSameLinkNumberOnDifferentNodesPasses) {
    EXPECT_EQ(thrownBy([&] {
                  open(NetworkBuilder().processor("a").processor("b").link("a", "0", "b", "0").text());
              }),
              s_nothing);
}

TEST_F(ZNLoaderChecking, OfSeveralRepeatedEndsThePairwiseComparisonsFirstIsNamed) {
    // The second and third link share an end; the fourth repeats its own, and is met first, while the first
    // link is compared with all.
    EXPECT_EQ(thrownBy([&] {
                  open("<Network><Declarations><Declaration>core x[2]</Declaration></Declarations><Nodes>"
                       "<Node Id='a' Type='L1'><Core Reference='x[0]'/></Node>"
                       "<Node Id='b' Type='L1'><Core Reference='x[1]'/></Node></Nodes>"
                       "<JTAGChain><JTAGDevice NodeId='a'/><JTAGDevice NodeId='b'/></JTAGChain><Links>\n"
                       "<Link Encoding='5wire'><LinkEndpoint NodeId='a' Link='0'/><LinkEndpoint NodeId='b' "
                       "Link='0'/></Link>\n"
                       "<Link Encoding='5wire'><LinkEndpoint NodeId='a' Link='1'/><LinkEndpoint NodeId='b' "
                       "Link='1'/></Link>\n"
                       "<Link Encoding='5wire'><LinkEndpoint NodeId='a' Link='1'/><LinkEndpoint NodeId='b' "
                       "Link='2'/></Link>\n"
                       "<Link Encoding='5wire'><LinkEndpoint NodeId='b' Link='9'/><LinkEndpoint NodeId='b' "
                       "Link='9'/></Link>\n"
                       "</Links></Network>");
              }),
              "zn:5 Error: ZN11164 LinkEndpoint \"9\" on node \"b\" is a duplicate.\n"
              "zn:5 Error: ZN11164 Other is LinkEndpoint \"9\" on node \"b\".\n");
}
