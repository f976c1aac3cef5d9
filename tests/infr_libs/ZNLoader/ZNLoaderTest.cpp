// Life, lookups and dumps of the loader.

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ZNLoader/NodeConfig.h"
#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/ChildProcess.h"

#include <csignal>
#include <iostream>

namespace {

constexpr char s_twoNodes[] = "<Network><Nodes>"
                              "<Node Id='a' Type='device:x'/><Node Id='b' Type='device:x'/>"
                              "</Nodes></Network>";

// What a loader writes to its trace output.
template<class Operation>
std::string tracedBy(ZNLoader& loader, const Operation& operation) {
    const TemporaryFolder folder;
    loader.m_zelmUtils->errorHandler->setTarget(folder.file("trace").c_str());
    operation();
    loader.m_zelmUtils->errorHandler->setTarget(nullptr);
    return folder.read("trace");
}

ZNLoader::ProcNode* addProcessor(ZNLoader& loader, const std::string& id) {
    auto* node = new ZNLoader::ProcNode;
    node->m_id = id;
    loader.m_nodes.push_back(node);
    loader.m_procNodes.push_back(node);
    return node;
}

ZNLoader::FreeCore* addCore(ZNLoader::ProcNode* node, int number, const std::string& reference) {
    auto* core = new ZNLoader::FreeCore;
    core->m_number = number;
    core->m_reference = reference;
    node->m_cores.push_back(core);
    return core;
}

} // namespace

class ZNLoaderTest : public ReadingTest {};

TEST(ZNLoader, IsEmptyAtFirst) {
    const ZNLoader loader;
    EXPECT_EQ(loader.m_topology, 0);
    EXPECT_EQ(loader.m_switchArch, ZNLoader::SwitchArchUnknown);
    EXPECT_EQ(loader.m_jtagChainElement, nullptr);
    EXPECT_EQ(loader.m_parser, nullptr);
    EXPECT_EQ(loader.m_warnings, nullptr);
    EXPECT_FALSE(loader.m_znOpened);
    EXPECT_TRUE(loader.m_nodes.empty());
}

TEST(ZNLoader, TakesItsPathsFromTheEnvironment) {
    const ScopedVariable path("ZCC_DEVICE_PATH", "a:b");
    const ZNLoader loader;
    EXPECT_EQ(loader.m_paths.getPaths(ZCCPaths::DEVICE_PATH), (std::vector<std::string>{"a", "b"}));
}

TEST(ZNLoader, SelectsItsOwnWarningsForANullTarget) {
    ZNLoader loader;
    loader.setWarningTarget(nullptr);
    EXPECT_EQ(loader.m_warnings, &loader.m_ownWarnings);
    std::string target;
    loader.setWarningTarget(&target);
    EXPECT_EQ(loader.m_warnings, &target);
}

TEST(ZNLoader, IgnoresACodeOnRequest) {
    ZNLoader loader;
    loader.addStandardCompileTimeDiagnosticIgnores();
    std::string target;
    loader.m_utils.buildWarningMessage(&target, 11135, ZNUtils::NoLocation(), "x\n");
    EXPECT_EQ(target, "");
}

TEST_F(ZNLoaderTest, ReadsAFileByName) {
    const std::string file = devices.folder().write("a.zn", NetworkBuilder().processor("a").text());
    const ZNLoader fromFile(file, nullptr);
    EXPECT_EQ(fromFile.m_nodes.at(0)->m_id, "a");
}

TEST_F(ZNLoaderTest, ReadsAStreamUnderAName) {
    std::istringstream stream("<Network>\n</Network>\n");
    EXPECT_EQ(thrownBy([&] { ZNLoader("image", &stream, nullptr); }).substr(0, 7), "image: ");
}

TEST_F(ZNLoaderTest, CollectsWarningsThatNobodyAskedFor) {
    std::istringstream stream(NetworkBuilder().processor("a").add("<Oddity/>").text());
    const ZNLoader fromStream("zn", &stream, nullptr);
    EXPECT_EQ(fromStream.m_ownWarnings, "zn:1 Warning: ZN11128 Node <Oddity> is not recognised; ignoring.\n");
}

// ---- The bound of warnings that nobody asked for ----

TEST_F(ZNLoaderTest, KeepsTheWarningThatReachesTheBoundAndSaysOnceThatMoreAreLeftOut) {
    loader.setWarningTarget(nullptr);
    loader.m_ownWarnings.assign(ZNLoader::s_maxOwnWarnings - 1, 'x');
    EXPECT_EQ(thrownBy([&] { open("<Network>\n<A/><B/><C/></Network>"); }),
              "zn: Error: ZN11038 JTAG scan chain not specified.\n");
    EXPECT_EQ(loader.m_ownWarnings.substr(ZNLoader::s_maxOwnWarnings - 1),
              "zn:1 Warning: ZN11128 Node <A> is not recognised; ignoring.\n"
              "zn: Further warnings are left out.\n");
}

TEST_F(ZNLoaderTest, KeepsNoMoreThanTheBoundOfFlagsThatNobodyKnows) {
    constexpr std::size_t numFlags = 30000; // 900 MB of warnings
    loader.setWarningTarget(nullptr);
    read("<Network><Links><Link Flags='" + std::string(numFlags, ',') +
         "'><LinkEndpoint/><LinkEndpoint/></Link></Links></Network>");
    EXPECT_GE(loader.m_ownWarnings.size(), ZNLoader::s_maxOwnWarnings);
    EXPECT_LT(loader.m_ownWarnings.size(), ZNLoader::s_maxOwnWarnings + numFlags + 200);
}

TEST_F(ZNLoaderTest, HandsEveryWarningToATarget) {
    warnings.assign(ZNLoader::s_maxOwnWarnings, 'x');
    read("<Network>\n<A/><B/></Network>");
    EXPECT_EQ(warnings.substr(ZNLoader::s_maxOwnWarnings),
              "zn:1 Warning: ZN11128 Node <A> is not recognised; ignoring.\n"
              "zn:1 Warning: ZN11128 Node <B> is not recognised; ignoring.\n");
}

TEST_F(ZNLoaderTest, OpensOneDocumentOnly) {
    open(NetworkBuilder().processor("a").text());
    const ChildResult result = runInChild([&] { open("<Network/>"); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_NE(result.error.find("Assertion `!m_znOpened && \"ZN opened twice\"' failed."), std::string::npos)
        << result.error;
}

TEST_F(ZNLoaderTest, PassesTheParsersFaultOnAlone) {
    loader.m_utils.buildErrorMessage(11000, ZNUtils::NoLocation(), "an earlier error\n");
    EXPECT_EQ(thrownBy([&] {
                  open("<Network>"
                       "<Nodes></Network>");
              }),
              "zn:1: error: unexpected closing tag 'Network'\n");
}

TEST_F(ZNLoaderTest, FindsTheFirstNodeOfAnId) {
    read(s_twoNodes);
    EXPECT_EQ(loader.findNodeForId("b"), loader.m_nodes[1]);
    EXPECT_EQ(loader.findNodeForId("c"), nullptr);
}

TEST(ZNLoader, FindsNodesOfAHandMadeModel) {
    ZNLoader loader;
    ZNLoader::Node* first = addProcessor(loader, "a");
    addProcessor(loader, "a");
    EXPECT_EQ(loader.findNodeForId("a"), first);
    EXPECT_EQ(loader.nodeOrdinalOfId("a"), 0u);
}

TEST(ZNLoader, GivesAProcessorsOrdinal) {
    ZNLoader loader;
    addProcessor(loader, "a");
    addProcessor(loader, "b");
    EXPECT_EQ(loader.nodeOrdinalOfId("b"), 1u);
}

TEST(ZNLoader, GivesAnUnknownIdTheOrdinal99999) {
    ZNLoader loader;
    EXPECT_EQ(loader.nodeOrdinalOfId("a"), 99999u);
    addProcessor(loader, "a");
    EXPECT_EQ(loader.nodeOrdinalOfId("b"), 99999u);
}

TEST_F(ZNLoaderTest, CountsProcessorsOnlyAsOrdinals) {
    read("<Network><Nodes><Node Id='d' Type='device:x'/><Node Id='a' Type='L1'/><Node Id='b' Type='L1'/>"
         "</Nodes></Network>");
    EXPECT_EQ(loader.nodeOrdinalOfId("b"), 1u);
    EXPECT_EQ(loader.nodeOrdinalOfId("d"), 99999u);
}

TEST(ZNLoader, FindsADeviceByClassNodeAndCore) {
    ZNLoader loader;
    ZNLoader::Node* node = addProcessor(loader, "a");
    for (const int core : {0, 1, 1}) {
        auto* device = new ZNLoader::ExtDevice;
        device->m_node = node;
        device->m_core = core;
        device->m_class = ZNLoader::ExtDeviceSpiFlash;
        loader.m_devices.push_back(device);
    }
    EXPECT_EQ(loader.findDevice(ZNLoader::ExtDeviceSpiFlash, node, 1), loader.m_devices[1]);
    EXPECT_EQ(loader.findDevice(ZNLoader::ExtDeviceSpiFlash, node, 2), nullptr);
    EXPECT_EQ(loader.findDevice(ZNLoader::ExtDeviceNone, node, 1), nullptr);
    EXPECT_EQ(loader.findDevice(ZNLoader::ExtDeviceSpiFlash, nullptr, 1), nullptr);
}

TEST(ZNLoader, FindsAReferenceCodeByChainPositionAndCore) {
    ZNLoader loader;
    ZNLoader::ProcNode* node = addProcessor(loader, "a");
    addCore(node, 0, "x[0]");
    addCore(node, 1, "x[1]");
    addCore(node, 1, "x[2]");
    auto* device = new ZNLoader::DeviceNode;
    loader.m_nodes.push_back(device);
    loader.m_jtagNodes = {device, node};
    EXPECT_EQ(loader.findReferenceCode(1, 0), "x[0]");
    EXPECT_EQ(loader.findReferenceCode(1, 1), "x[2]"); // of several the last
    EXPECT_EQ(loader.findReferenceCode(1, 2), "");
    EXPECT_EQ(loader.findReferenceCode(0, 0), ""); // no processor
    EXPECT_EQ(loader.findReferenceCode(2, 0), ""); // beyond the chain
}

TEST(ZNLoader, DumpsTheCoresOfANode) {
    ZNLoader loader;
    ZNLoader::ProcNode* node = addProcessor(loader, "a");
    addCore(node, 0, "x[0]");
    addCore(node, 1, "x[1]");
    EXPECT_EQ(tracedBy(loader, [&] { loader.dumpNode(node); }),
              "Node : a, Core (0) : x[0]\nNode : a, Core (1) : x[1]\n");
}

TEST(ZNLoader, DumpsTheCoreThatADeviceHolds) {
    ZNLoader loader;
    ZNLoader::DeviceNode node;
    node.m_id = "d";
    EXPECT_EQ(tracedBy(loader, [&] { loader.dumpNode(&node); }), "Node : d, Core (0) : \n");
}

TEST(ZNLoader, DumpsAZsscNode) {
    ZNLoader loader;
    ZNLoader::ZsscNode node;
    node.m_id = "z";
    node.m_refBase = "usb";
    EXPECT_EQ(tracedBy(loader, [&] { loader.dumpNode(&node); }), "ZSSC found (z), of name : usb\n");
}

TEST(ZNLoader, DumpsANodeOfAnUnknownKind) {
    class OddNode : public ZNLoader::Node {
        int getType() override { return 4; }
    };
    ZNLoader loader;
    OddNode node;
    EXPECT_EQ(tracedBy(loader, [&] { loader.dumpNode(&node); }), "dumpNode of unhandled node type!\n");
}

TEST(ZNLoader, DumpsAListOfNodesAsAddresses) {
    ZNLoader loader;
    std::vector<ZNLoader::Node*> nodes = {addProcessor(loader, "a")};
    char line[64];
    std::snprintf(line, sizeof line, "NodeVec (list):\n\t%p\n", static_cast<void*>(nodes[0]));
    EXPECT_EQ(tracedBy(loader, [&] { loader.dumpNodeVecPtrs(nodes, "list"); }), line);
}

TEST(ZNLoader, DumpsAWholeNetwork) {
    ZNLoader network;
    addCore(addProcessor(network, "a"), 0, "x");
    ZNLoader loader;
    const std::string traced = tracedBy(network, [&] { loader.dumpZN(&network); });
    EXPECT_EQ(traced.substr(0, traced.find("\t")), "Node : a, Core (0) : x\nNodeVec (m_procNodes):\n");
}

TEST(ZNLoaderChainLink, DumpsItsNumbers) {
    const ChildResult result = runInChild([] { ZNLoader::ChainLink{1, nullptr, 2, 3}.dump(); });
    EXPECT_EQ(result.output, "ChainLink::dump()...\nm_position : 1\nm_deviceCount : 2\nm_bitLength : 3\n"
                             "ChainLink::dump done.\n");
}

TEST(ZNLoaderModel, HasTheTypesOfItsKinds) {
    EXPECT_EQ(ZNLoader::ProcNode().getType(), 1);
    EXPECT_EQ(ZNLoader::DeviceNode().getType(), 2);
    EXPECT_EQ(ZNLoader::ZsscNode().getType(), 3);
    EXPECT_EQ(ZNLoader::FreeCore().getType(), 0);
    EXPECT_EQ(ZNLoader::HoldingCore().getType(), 1);
    EXPECT_TRUE(ZNLoader::ZlinkNormalEnd().isNormal());
    EXPECT_FALSE(ZNLoader::ZlinkSodEnd().isNormal());
    EXPECT_EQ(ZNLoader::BootType().getBootStyle(), 0);
    EXPECT_EQ(ZNLoader::BootTypeSPIMaster().getBootStyle(), 1);
    EXPECT_EQ(ZNLoader::BootTypeFromLink().getBootStyle(), 2);
}

TEST(ZNLoaderModel, KeepsAPairOfALinkInTwoWords) {
    EXPECT_EQ(sizeof(ZNLoader::ZlinkUserPair), 2 * sizeof(void*));
}

TEST_F(ZNLoaderTest, LetsAHandMadeProcessorOwnItsConfiguration) {
    ZNLoader::ProcNode node;
    const std::string file = devices.folder().file("config_L1.xml");
    node.m_config = new NodeConfig(file.c_str());
    node.setConfig(std::make_shared<NodeConfig>(file.c_str())); // frees the first one
    EXPECT_EQ(node.m_config->getNumCores(), 1);
}
