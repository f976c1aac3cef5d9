#include "tests/infr_libs/IosHandler/IosTestSupport.h"
#include "tests/support/ChildProcess.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

using Map = BuiltMap<>;
using CollectingMap = BuiltMap<CollectingErrorHandler>;

// Node 0: core 0 with the default ports, four links.
const std::string s_node =
    "<Nodes><Node number='0'><Switch sLinks='4'/><Processor number='0'/></Node></Nodes>";

std::string port(const std::string& name, unsigned bit, unsigned priority = 0) {
    return "<Port name='" + name + "' node='0' core='0' priority='" + std::to_string(priority) +
           "' bitNum='" + std::to_string(bit) + "'/>";
}

std::string link(unsigned number, unsigned bit, const std::string& dir) {
    return "<ZLink node='0' number='" + std::to_string(number) + "' bitNum='" + std::to_string(bit) +
           "' dir='" + dir + "'/>";
}

std::string pin(const std::string& name, const std::string& contents = "") {
    return "<Pin name='" + name + "'>" + contents + "</Pin>";
}

// The node above, with these pins.
std::string nodeWithPins(const std::string& pins) {
    return s_node + "<Pins>" + pins + "</Pins>";
}

std::string messageOf(const std::string& contents) {
    return thrownBy([&] { Map map(contents); });
}

} // namespace

// --- Ports and cores

TEST(IosHandler, ACoreWithoutPortsHasTheDefaultOnesInTheirOrder) {
    const std::pair<const char*, unsigned> rows[] = {
        {"ZS1_PORT_32A", 0x200000}, {"ZS1_PORT_16A", 0x100000}, {"ZS1_PORT_16B", 0x100100},
        {"ZS1_PORT_8A", 0x80000},   {"ZS1_PORT_8B", 0x80100},   {"ZS1_PORT_8C", 0x80200},
        {"ZS1_PORT_8D", 0x80300},   {"ZS1_PORT_4A", 0x40000},   {"ZS1_PORT_4B", 0x40100},
        {"ZS1_PORT_4C", 0x40200},   {"ZS1_PORT_4D", 0x40300},   {"ZS1_PORT_4E", 0x40400},
        {"ZS1_PORT_4F", 0x40500},   {"ZS1_PORT_1A", 0x10200},   {"ZS1_PORT_1B", 0x10000},
        {"ZS1_PORT_1C", 0x10100},   {"ZS1_PORT_1D", 0x10300},   {"ZS1_PORT_1E", 0x10600},
        {"ZS1_PORT_1F", 0x10400},   {"ZS1_PORT_1G", 0x10500},   {"ZS1_PORT_1H", 0x10700},
        {"ZS1_PORT_1I", 0x10A00},   {"ZS1_PORT_1J", 0x10800},   {"ZS1_PORT_1K", 0x10900},
        {"ZS1_PORT_1L", 0x10B00},   {"ZS1_PORT_1M", 0x10C00},   {"ZS1_PORT_1N", 0x10D00},
        {"ZS1_PORT_1O", 0x10E00},   {"ZS1_PORT_1P", 0x10F00},   {"ZS1_PORT_32B", 0x200100},
        {"ZS1_PORT_16C", 0x100200}, {"ZS1_PORT_16D", 0x100300},
    };
    const Map map(s_node);
    ASSERT_EQ(map->getNumPorts(0, 0), 32U);
    for (unsigned i = 0; i < 32; ++i) {
        EXPECT_EQ(map->getPort(0, 0, i)->getName(), rows[i].first);
        EXPECT_EQ(map->getPort(0, 0, i)->getId(), rows[i].second) << rows[i].first;
    }
}

TEST(IosHandler, ACoreWithAnEmptyListOfPortsHasNone) {
    const Map map("<Nodes><Node number='0'><Processor number='0'><Ports/></Processor></Node></Nodes>");
    EXPECT_EQ(map->getNumPorts(0, 0), 0U);
    EXPECT_EQ(map->getCorePorts(0, 0), nullptr);
    EXPECT_EQ(map->getNumCores(0), 0U);
}

TEST(IosHandler, ListedPortsTakeTheDefaultsPlace) {
    const Map map("<Nodes><Node number='2'><Processor number='1'><Ports><Port name='P' id='0x80300'/>"
                  "<Port name='P' id='0x10000'/><Port name='Q' id='65536'/></Ports></Processor></Node>"
                  "</Nodes>");
    ASSERT_EQ(map->getNumPorts(2, 1), 3U);
    EXPECT_EQ(map->getCorePorts(2, 1)->size(), 3U);
    EXPECT_EQ(map->findPort(2, 1, "P"), map->getPort(2, 1, 0)) << "the first of two";
    EXPECT_EQ(map->findPort(2, 1, "P")->getSize(), 8U);
    EXPECT_EQ(map->findPort(2, 1, "Q")->getId(), 0x10000U);
}

TEST(IosHandler, CountsTheCoresThatHavePorts) {
    const Map map("<Nodes><Node number='0'><Processor number='0'/><Processor number='1'/></Node>"
                  "<Node number='1'><Switch/></Node></Nodes>");
    EXPECT_EQ(map->getNumCores(0), 2U);
    EXPECT_EQ(map->getNumCores(1), 0U);
    EXPECT_EQ(map->getNumCores(2), 0U);
}

TEST(IosHandler, OtherElementsOfNodesAndNodeArePassedOver) {
    const Map map("<Other/><Nodes><GlxNode/><Node number='0'><Other/><Processor number='0'/></Node></Nodes>");
    EXPECT_EQ(map->getNumCores(0), 1U);
}

TEST(IosHandler, ASystemWithoutNodesAndPinsIsEmpty) {
    const Map map("");
    EXPECT_EQ(map->getNumCores(0), 0U);
    EXPECT_EQ(map->getNumPins(), 0U);
    EXPECT_EQ(map->getNumZLinks(0), 0U);
    EXPECT_EQ(map->getPort(0, 0, 0), nullptr);
    EXPECT_EQ(map->getZLink(0, 0), nullptr);
    EXPECT_FALSE(map->isPackageValid(""));
}

TEST(IosHandler, ThePortWidthIsSixBits) {
    const Map map("<Nodes><Node number='0'><Processor number='0'><Ports><Port name='P' id='0xffff0000'/>"
                  "</Ports></Processor></Node></Nodes>");
    EXPECT_EQ(map->getPort(0, 0, 0)->getSize(), 63U);
}

TEST(IosHandler, OnlyASystemElementIsTaken) {
    OwnedUtils<> utils;
    XmlNode other("ZSystem", "f", 1, utils.get());
    for (XmlNode* config : {static_cast<XmlNode*>(nullptr), &other}) {
        const ChildResult result = runInChild([&] { IosHandler map(config, utils.get()); });
        EXPECT_EQ(result.signal, SIGABRT);
        EXPECT_NE(result.error.find(": Assertion `config && *config->getName() == \"System\"' failed."),
                  std::string::npos)
            << result.error;
    }
}

// --- Links

TEST(IosHandler, ASwitchHasTheArchitecturesNumberOfLinksUnlessItSays) {
    const std::string text = "<Nodes><Node number='0'><Switch/></Node><Node number='1'><Switch sLinks='0'/>"
                             "</Node><Node number='2'><Switch sLinks='0x3'/></Node></Nodes>";
    const Map zs1b(text);
    EXPECT_EQ(zs1b->getNumZLinks(0), 16U);
    EXPECT_EQ(zs1b->getNumZLinks(1), 0U);
    EXPECT_EQ(zs1b->getNumZLinks(2), 3U);
    const Map zs1c(text, 0x2633);
    EXPECT_EQ(zs1c->getNumZLinks(0), 8U);
}

TEST(IosHandler, LinksAreNumberedFromZeroAndFoundByNumber) {
    const Map map(s_node);
    for (unsigned number = 0; number < 4; ++number) {
        EXPECT_EQ(map->getZLink(0, number)->getNumber(), number);
        EXPECT_EQ(map->findZLink(0, number), map->getZLink(0, number));
    }
    EXPECT_EQ(map->findZLink(0, 4), nullptr);
    EXPECT_EQ(map->getZLink(0, 4), nullptr);
    EXPECT_EQ(map->findZLink(1, 0), nullptr);
}

TEST(IosHandler, ANumberOfLinksThatNoDeviceHasIsAnError) {
    EXPECT_EQ(messageOf("<Nodes><Node number='5'><Switch sLinks='65537'/></Node></Nodes>"),
              "ERROR: Too many ZLinks (65537) for switch on node 5\n");
    EXPECT_EQ(messageOf("<Nodes><Node number='5'><Switch sLinks='-1'/></Node></Nodes>"),
              "ERROR: Too many ZLinks (4294967295) for switch on node 5\n");
    std::string many;
    for (unsigned i = 0; i < 17; ++i)
        many += "<Node number='" + std::to_string(i) + "'><Switch sLinks='65536'/></Node>";
    EXPECT_EQ(messageOf("<Nodes>" + many + "</Nodes>"),
              "ERROR: Too many ZLinks (65536) for switch on node 16\n");
}

// --- Pins

TEST(IosHandler, PadsAreNumberedFromZeroAcrossPackages) {
    const Map map(nodeWithPins(pin("A:X") + pin("B:X") + pin("A:Y")));
    ASSERT_EQ(map->getNumPins(), 3U);
    for (unsigned i = 0; i < 3; ++i)
        EXPECT_EQ(map->getPin(i)->getNumber(), i);
    EXPECT_EQ(map->findPin("A", "X")->getNumber(), 0U);
    EXPECT_EQ(map->findPin("B", "X")->getNumber(), 1U);
    EXPECT_EQ(map->findPin("A", "Y")->getNumber(), 2U);
}

TEST(IosHandler, TheDocumentsOwnPinNumberIsntRead) {
    const Map map("<Pins><Pin name='A:X' number='7'/></Pins>");
    EXPECT_EQ(map->findPin("A", "X")->getNumber(), 0U);
}

TEST(IosHandler, APinIsFoundInItsPackageAlone) {
    const Map map(nodeWithPins(pin("A:X") + pin("A:X") + pin("B:Y")));
    EXPECT_EQ(map->findPin("B", "X"), nullptr);
    EXPECT_EQ(map->findPin("C", "X"), nullptr);
    EXPECT_EQ(map->findPin("a", "x"), nullptr);
    EXPECT_EQ(map->findPin("A", "X"), map->getPin(0)) << "the first of two";
    EXPECT_TRUE(map->isPackageValid("A"));
    EXPECT_FALSE(map->isPackageValid("C"));
}

TEST(IosHandler, APinNameIsSplitAtItsFirstColon) {
    const Map map("<Pins><Pin name='A:X:1'/><Pin name=':'/></Pins>");
    EXPECT_EQ(map->getPin(0)->getPackageName(), "A");
    EXPECT_EQ(map->getPin(0)->getPinName(), "X:1");
    EXPECT_EQ(map->getPin(1)->getPackageName(), "");
    EXPECT_EQ(map->getPin(1)->getPinName(), "");
}

TEST(IosHandler, APinNameWithoutAColonIsAnError) {
    EXPECT_EQ(messageOf("<Pins><Pin name='AX'/></Pins>"), "ERROR: Invalid pin name format: AX\n");
}

TEST(IosHandler, APinConnectsPortBitsBothWays) {
    const Map map(nodeWithPins(pin("A:X", port("ZS1_PORT_1A", 0, 5) + port("ZS1_PORT_4B", 3, 1))));
    IosPin* const x = map->findPin("A", "X");
    IosPort* const wide = map->findPort(0, 0, "ZS1_PORT_4B");
    ASSERT_EQ(x->getNumPorts(), 2U);
    EXPECT_EQ(x->getPort(0)->getName(), "ZS1_PORT_1A");
    EXPECT_EQ(x->getPort(1), wide);
    EXPECT_EQ(wide->getPin(3), x);
    EXPECT_EQ(wide->getPinPriority(3), 1U);
    EXPECT_EQ(map->findPort(0, 0, "ZS1_PORT_1A")->getPinPriority(0), 5U);
    EXPECT_EQ(x->getZLink(), nullptr);
}

TEST(IosHandler, ABitThatIsntConnectedHasNoPinAndPriorityZero) {
    const Map map(nodeWithPins(pin("A:X", port("ZS1_PORT_4B", 3, 1))));
    EXPECT_EQ(map->findPort(0, 0, "ZS1_PORT_4B")->getPin(2), nullptr);
    EXPECT_EQ(map->findPort(0, 0, "ZS1_PORT_4B")->getPinPriority(2), 0U);
}

TEST(IosHandler, APinConnectsALinkBitBothWays) {
    const Map map(nodeWithPins(pin("A:X", link(2, 3, "in")) + pin("A:Y", link(2, 3, "out"))));
    IosZLink* const two = map->findZLink(0, 2);
    EXPECT_EQ(map->findPin("A", "X")->getZLink(), two);
    EXPECT_EQ(two->getInPin(3), map->findPin("A", "X"));
    EXPECT_EQ(two->getOutPin(3), map->findPin("A", "Y"));
    EXPECT_EQ(two->getInPin(2), nullptr);
    EXPECT_EQ(two->getOutPin(2), nullptr);
}

// The leak check sees a string that was left.
TEST(IosHandler, ASecondNameIsReported) {
    EXPECT_NE(
        messageOf(
            "<Pins><Pin name='A:a name that is too long for a string to hold in itself' name='B:Y'/></Pins>"),
        "nothing thrown");
}

TEST(IosHandler, WhereReportsReturnALinkBitKeepsItsPinAndAPinTakesItsLaterLink) {
    const BuiltMap<CollectingErrorHandler> map(
        nodeWithPins(pin("A:X", link(2, 3, "in") + link(1, 0, "in")) + pin("A:Y", link(2, 3, "in"))));
    EXPECT_EQ(map->findZLink(0, 2)->getInPin(3), map->findPin("A", "X"));
    EXPECT_EQ(map->findPin("A", "X")->getZLink(), map->findZLink(0, 1));
}

TEST(IosHandler, LinksThatADocumentDoesntNumberCountToo) {
    std::string many;
    for (unsigned i = 0; i < 16; ++i)
        many += "<Node number='" + std::to_string(i) + "'><Switch sLinks='65536'/></Node>";
    EXPECT_EQ(messageOf("<Nodes>" + many + "<Node number='16'><Switch/></Node></Nodes>"),
              "ERROR: Too many ZLinks (16) for switch on node 16\n");
}

TEST(IosHandler, AnIndexBeyondTheLastFailsAnAssertion) {
    const Map map(nodeWithPins(pin("A:X", port("ZS1_PORT_1A", 0))));
    const ChildResult pins = runInChild([&] { map->getPin(1); });
    EXPECT_EQ(pins.signal, SIGABRT);
    EXPECT_NE(pins.error.find(": Assertion `index < m_pins.size()' failed."), std::string::npos);
    const ChildResult ports = runInChild([&] { map->getPin(0)->getPort(1); });
    EXPECT_EQ(ports.signal, SIGABRT);
    EXPECT_NE(ports.error.find(": Assertion `index < m_ports.size()' failed."), std::string::npos);
}

TEST(IosHandler, NothingIsConnectedToWhatIsMissingWhereThatIsIgnored) {
    Map map(nodeWithPins(pin("A:X")));
    IosPin* const x = map->getPin(0);
    x->addPort(*map.operator->(), 0, 0, "NONE", 0, 0, true);
    x->addZLink(*map.operator->(), 0, 9, 0, true, true);
    EXPECT_EQ(x->getNumPorts(), 0U);
    EXPECT_EQ(x->getZLink(), nullptr);
}

// --- Faults of the document

TEST(IosHandler, ReportsEachFault) {
    const std::pair<std::string, const char*> rows[] = {
        {nodeWithPins(pin("A:X", port("NONE", 0))), "ERROR: No port 'NONE' found on node 0 core 0\n"},
        {nodeWithPins(pin("A:X", "<Port name='ZS1_PORT_1A' node='1' core='2' priority='0' bitNum='0'/>")),
         "ERROR: No port 'ZS1_PORT_1A' found on node 1 core 2\n"},
        {nodeWithPins(pin("A:X", port("ZS1_PORT_1A", 0)) + pin("A:Y", port("ZS1_PORT_1A", 0))),
         "ERROR: Port 'ZS1_PORT_1A' adding duplicate bit 0\n"},
        {nodeWithPins(pin("A:X", link(0, 0, "in") + link(1, 0, "in"))),
         "ERROR: Two ZLinks for specified pin 'X' in package 'A'\n"},
        {nodeWithPins(pin("A:X", link(4, 0, "in"))), "ERROR: ZLink 4 not found on node 0\n"},
        {nodeWithPins("\n\n" + pin("A:X", "\n" + link(1, 2, "inwards"))),
         "ERROR: ZLink 1 bit 2 has unknown direction 'inwards' - should be 'in' or 'out' (line 4)\n"},
        {nodeWithPins(pin("A:X", link(1, 2, "in")) + pin("A:Y", link(1, 2, "in"))),
         "ERROR: ZLink 1 adding duplicate bit 2 in direction 'in'\n"},
        {nodeWithPins(pin("A:X", link(1, 2, "out")) + pin("A:Y", link(1, 2, "out"))),
         "ERROR: ZLink 1 adding duplicate bit 2 in direction 'out'\n"},
        {"<Pins>\n<Other/></Pins>", "doc.xml:2: error: unrecognised subnode 'Other' in node 'Pins'\n"},
        {"<Pins>" + pin("A:X", "\n<Other/>") + "</Pins>",
         "doc.xml:2: error: unrecognised subnode 'Other' in node 'Pin'\n"},
        {"<Nodes><Node number='0'><Processor number='0'><Ports>\n<Other/></Ports></Processor></Node></Nodes>",
         "doc.xml:2: error: unrecognised subnode 'Other' in node 'Ports'\n"},
        {"<Nodes>\n<Node/></Nodes>",
         "doc.xml:2: error: missing required attribute 'number' in node 'Node'\n"},
        {"<Nodes><Node number='0'>\n<Processor/></Node></Nodes>",
         "doc.xml:2: error: missing required attribute 'number' in node 'Processor'\n"},
        {"<Pins>\n<Pin/></Pins>", "doc.xml:2: error: missing required attribute 'name' in node 'Pin'\n"},
    };
    for (const auto& [text, message] : rows)
        EXPECT_EQ(messageOf(text), message) << text;
}

TEST(IosHandler, EveryAttributeOfAPinsChildrenIsRequired) {
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"Port", {"name", "node", "core", "priority", "bitNum"}},
        {"ZLink", {"node", "number", "bitNum", "dir"}},
    };
    for (const auto& [element, attributes] : rows)
        for (const std::string missing : attributes) {
            std::string text = std::string("<") + element;
            for (const std::string attribute : attributes)
                if (attribute != missing)
                    text += " " + attribute + "='0'";
            EXPECT_EQ(messageOf(nodeWithPins(pin("A:X", text + "/>"))),
                      "doc.xml:1: error: missing required attribute '" + missing + "' in node '" + element +
                          "'\n");
        }
}

TEST(IosHandler, TheFirstOfTwoPinsOfABitStaysConnectedOnceTheReportReturned) {
    CollectingMap map(
        nodeWithPins(pin("A:X", port("ZS1_PORT_1A", 0, 1)) + pin("A:Y", port("ZS1_PORT_1A", 0, 2))));
    EXPECT_THAT(map.handler().messages(),
                testing::ElementsAre("ERROR: Port 'ZS1_PORT_1A' adding duplicate bit 0\n"));
    IosPort* const bit = map->findPort(0, 0, "ZS1_PORT_1A");
    EXPECT_EQ(bit->getPin(0), map->findPin("A", "X"));
    EXPECT_EQ(bit->getPinPriority(0), 1U);
    // The second pin believes in it all the same: wanted.
    EXPECT_EQ(map->findPin("A", "Y")->getNumPorts(), 1U);
}

TEST(IosHandler, BuildingGoesOnBehindAFaultOnceItsReportReturned) {
    CollectingMap map(nodeWithPins("<Other/>" + pin("AX", port("NONE", 0)) + "<Pin/>" +
                                   pin("A:Y", link(9, 0, "in")) + pin("A:Z", link(0, 1, "up"))));
    EXPECT_EQ(map->getNumPins(), 4U);
    EXPECT_EQ(map->findPin("A", "Z")->getNumber(), 3U);
    EXPECT_EQ(map->findZLink(0, 0)->getOutPin(1), map->findPin("A", "Z")) << "not in is out";
    EXPECT_THAT(map.handler().messages(),
                testing::ElementsAre(
                    "doc.xml:1: error: unrecognised subnode 'Other' in node 'Pins'\n",
                    "ERROR: Invalid pin name format: AX\n", "ERROR: No port 'NONE' found on node 0 core 0\n",
                    "doc.xml:1: error: missing required attribute 'name' in node 'Pin'\n",
                    "ERROR: Invalid pin name format: \n", "ERROR: ZLink 9 not found on node 0\n",
                    "ERROR: ZLink 0 bit 1 has unknown direction 'up' - should be 'in' or 'out' (line 1)\n"));
}

TEST(IosHandler, WithoutAnArchitectureASwitchHasNoLinksByDefault) {
    OwnedUtils<> utils;
    std::istringstream stream("<System><Nodes><Node number='0'><Switch/></Node></Nodes></System>");
    const XmlParser parser("doc.xml", utils.get(), &stream);
    const IosHandler map(parser.getRoot(), utils.get());
    EXPECT_EQ(map.getNumZLinks(0), 0U);
}

TEST(IosHandler, TellsWhichNodesAndCoresThereAre) {
    const Map map("<Nodes><Node number='9'><Processor number='2'/><Processor number='0'/></Node>"
                  "<Node number='3'><Switch sLinks='1'/></Node><Node number='5'/></Nodes>");
    EXPECT_EQ(map->getNodes(), (std::vector<unsigned>{3, 9}));
    EXPECT_EQ(map->getCores(9), (std::vector<unsigned>{0, 2}));
    EXPECT_EQ(map->getCores(3), std::vector<unsigned>());
    EXPECT_EQ(map->getCores(4), std::vector<unsigned>());
}

TEST(IosHandler, TellsTheBitsOfAPinsConnections) {
    const Map map(nodeWithPins(pin("A:0", port("ZS1_PORT_1A", 0, 7) + port("ZS1_PORT_4A", 3, 1)) +
                               pin("A:1", link(2, 1, "in")) + pin("A:2", link(2, 0, "out"))));
    EXPECT_EQ(map->getPin(0)->getPortBit(0), 0U);
    EXPECT_EQ(map->getPin(0)->getPortPriority(0), 7U);
    EXPECT_EQ(map->getPin(0)->getPortBit(1), 3U);
    EXPECT_EQ(map->getPin(0)->getPortPriority(1), 1U);
    EXPECT_EQ(map->getPin(0)->getPortBit(2), 0U);
    EXPECT_EQ(map->getPin(0)->getPortPriority(2), 0U);
    EXPECT_EQ(map->getPin(1)->getZLinkBit(), 1U);
    EXPECT_TRUE(map->getPin(1)->isZLinkIn());
    EXPECT_EQ(map->getPin(2)->getZLinkBit(), 0U);
    EXPECT_FALSE(map->getPin(2)->isZLinkIn());
}
