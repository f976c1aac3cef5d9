// The three kinds of `Node`, and `Core` with its ports.

#include "infr_libs/ZNLoader/NodeConfig.h"
#include "tests/infr_libs/ZNLoader/ReadingTest.h"

class ZNLoaderNodes : public ReadingTest {
protected:
    void readNodes(const std::string& nodes) { read("<Network><Nodes>" + nodes + "</Nodes></Network>"); }

    // A processor with these attributes beside its id and type.
    ZNLoader::ProcNode& readProcessor(const std::string& attributes, const std::string& children = "") {
        readNodes("<Node Id='a' Type='L1' " + attributes + ">" + children + "</Node>");
        return node(0);
    }

    ZNLoader::ZsscNode& readZssc(const std::string& attributes) {
        readNodes("<Node Id='z' Type='periph:ZS1-SU' " + attributes + "/>");
        return node<ZNLoader::ZsscNode>(0);
    }
};

TEST_F(ZNLoaderNodes, TypeWithoutAColonIsAProcessor) {
    readNodes("<Node Id='a' Type='L1'/>");
    EXPECT_EQ(node(0).m_type, "L1");
    EXPECT_EQ(node(0).m_shortType, "L1");
    EXPECT_EQ(loader.m_procNodes, loader.m_nodes);
}

TEST_F(ZNLoaderNodes, TypeProcIsAProcessor) {
    readNodes("<Node Id='a' Type='proc:L1'/>");
    EXPECT_EQ(node(0).m_type, "proc:L1");
    EXPECT_EQ(node(0).m_shortType, "L1");
    EXPECT_EQ(node(0).m_configFile, devices.folder().file("config_L1.xml"));
    EXPECT_EQ(node(0).m_config->getNumCores(), 1);
}

TEST_F(ZNLoaderNodes, TypeKeepsAllThatStandsBehindTheFirstColon) {
    devices.addNodeType("L1:x", 0x2633, 1);
    readNodes("<Node Id='a' Type='proc:L1:x'/>");
    EXPECT_EQ(node(0).m_shortType, "L1:x");
}

TEST_F(ZNLoaderNodes, ConfigurationIsSharedByNodesOfOneType) {
    readNodes("<Node Id='a' Type='L1'/><Node Id='b' Type='proc:L1'/><Node Id='c' Type='G4'/>");
    EXPECT_EQ(node(0).m_config, node(1).m_config);
    EXPECT_NE(node(0).m_config, node(2).m_config);
}

TEST_F(ZNLoaderNodes, FaultOfAConfigurationIsPassedOnAlone) {
    const std::string file = devices.folder().write("config_Bad.xml", "<ZSystem>\n<System/></ZSystem>");
    EXPECT_EQ(thrownBy([&] { readNodes("<Node Id='a' Type='Bad'/>"); }),
              file + ": Error: ZN11068 No 'Nodes' node defined in XML file\n");
}

TEST_F(ZNLoaderNodes, WithoutATypeIsPassedOverInSilence) {
    readNodes("<Node Id='a'/>");
    EXPECT_TRUE(loader.m_nodes.empty());
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderNodes, ProcessorHasAllItsAttributes) {
    const ZNLoader::ProcNode& node = readProcessor("InPackageId='3' Oscillator='20MHz' OscillatorSrc='z' "
                                                   "SystemFrequency='400' ReferenceFrequency='100k' "
                                                   "PllFeedbackDivMin='5.5' RoutingId='0x80'");
    EXPECT_EQ(node.m_id, "a");
    EXPECT_EQ(node.m_inPackageId, "3");
    EXPECT_EQ(node.m_oscillatorHz, 20000000u);
    EXPECT_EQ(node.m_oscillatorSrc, "z");
    EXPECT_EQ(node.m_systemFreq, 400000000u);
    EXPECT_EQ(node.m_referenceFreq, 100000u);
    EXPECT_EQ(node.m_pllFeedbackDivMin, 11u);
    EXPECT_EQ(node.m_routingId, 0x80u);
    EXPECT_TRUE(node.m_routingIdSet);
    EXPECT_TRUE(node.m_systemFreqByHz);
    EXPECT_TRUE(node.m_referenceFreqByHz);
    EXPECT_EQ(node.m_element->getLineNum(), 1u);
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderNodes, ProcessorMayGiveItsDividers) {
    const ZNLoader::ProcNode& node =
        readProcessor("Oscillator='20' PllInputDiv='1' PllFeedbackDiv='20.5' PllOutputDiv='2' RefDiv='4'");
    EXPECT_EQ(node.m_pllInputDiv, 1u);
    EXPECT_EQ(node.m_pllFeedbackDiv, 41u);
    EXPECT_EQ(node.m_pllOutputDiv, 2u);
    EXPECT_EQ(node.m_refDiv, 4u);
    EXPECT_FALSE(node.m_systemFreqByHz);
    EXPECT_FALSE(node.m_referenceFreqByHz);
}

TEST_F(ZNLoaderNodes, ProcessorMayGiveItsDividersAsRegisters) {
    const ZNLoader::ProcNode& node =
        readProcessor("Oscillator='20' PllDividerStageOneReg='0' PllMultiplierStageReg='9' "
                      "PllDividerStageTwoReg='1' RefDiv='4'");
    EXPECT_EQ(node.m_pllInputDiv, 1u);
    EXPECT_EQ(node.m_pllFeedbackDiv, 10u); // not doubled
    EXPECT_EQ(node.m_pllOutputDiv, 2u);
}

TEST_F(ZNLoaderNodes, RegisterAtTheEndOfAnIntDoesNotOverflow) {
    const ZNLoader::ProcNode& node =
        readProcessor("Oscillator='20' PllDividerStageOneReg='0x7fffffff' PllMultiplierStageReg='9' "
                      "PllDividerStageTwoReg='1' RefDiv='4'");
    EXPECT_EQ(node.m_pllInputDiv, 0x80000000u);
}

TEST_F(ZNLoaderNodes, MinimumOfZeroGoesWithAFeedbackDivider) {
    readProcessor("Oscillator='20' PllInputDiv='1' PllFeedbackDiv='20' PllOutputDiv='2' RefDiv='4' "
                  "PllFeedbackDivMin='0'");
    EXPECT_EQ(node(0).m_pllFeedbackDiv, 40u);
}

TEST_F(ZNLoaderNodes, OscillatorOfZeroIsNone) {
    readProcessor("Oscillator='0' SystemFrequency='400'");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11135 Attribute SystemFrequency is ignored when Oscillator is not "
                        "specified.\n");
}

TEST_F(ZNLoaderNodes, OscillatorSourceServesAsAnOscillator) {
    readProcessor("OscillatorSrc='z' SystemFrequency='400'");
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderNodes, LaterAttributeOfANameCounts) {
    EXPECT_EQ(readProcessor("RoutingId='1' RoutingId='2'").m_routingId, 2u);
}

// ---- Device nodes ----

TEST_F(ZNLoaderNodes, DeviceIsNoProcessor) {
    readNodes("<Node Id='d' Type='device:lcd' RoutingId='5' Flags='PostBoot'/>");
    const auto& device = node<ZNLoader::DeviceNode>(0);
    EXPECT_EQ(device.m_id, "d");
    EXPECT_EQ(device.m_shortType, "lcd");
    EXPECT_EQ(device.m_routingId, 5u);
    EXPECT_EQ(device.m_flags, ZNLoader::DeviceNode::s_postBoot);
    EXPECT_NE(device.m_holdingCore, nullptr);
    EXPECT_TRUE(loader.m_procNodes.empty());
}

TEST_F(ZNLoaderNodes, DeviceNeedsNoId) {
    readNodes("<Node Type='device:'/>");
    EXPECT_EQ(loader.m_nodes.size(), 1u);
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderNodes, DeviceFlagsWithoutAPieceAreFine) {
    readNodes("<Node Type='device:' Flags=''/>");
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderNodes, DeviceFlagOfNoTextIsUnknown) {
    readNodes("<Node Type='device:' Flags='postboot,'/>");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11016 Unrecognised device flag \"\"; ignoring.\n");
}

TEST_F(ZNLoaderNodes, DeviceOffersServices) {
    readNodes("<Node Type='device:'><Service Id='s' Proto='void f()'/></Node>");
    EXPECT_EQ(node<ZNLoader::DeviceNode>(0).m_services.at(0)->m_name, "void f");
}

// ---- ZSSC nodes ----

TEST_F(ZNLoaderNodes, ZsscHasAReferenceAndAnOscillator) {
    const ZNLoader::ZsscNode& zssc = readZssc("Reference='usb[0x10]' Oscillator='20MHz' InPackageId='1'");
    EXPECT_EQ(zssc.m_id, "z");
    EXPECT_EQ(zssc.m_inPackageId, "1");
    EXPECT_EQ(zssc.m_refBase, "usb");
    EXPECT_TRUE(zssc.m_refIndexed);
    EXPECT_EQ(zssc.m_refIndexText, "0x10");
    EXPECT_EQ(zssc.m_refIndex, 16);
    EXPECT_EQ(zssc.m_oscillatorText, "20MHz");
    EXPECT_EQ(zssc.m_oscillatorMHz, 20u);
    EXPECT_TRUE(loader.m_hasZssc);
    EXPECT_TRUE(loader.m_procNodes.empty());
}

TEST_F(ZNLoaderNodes, ZsscReferenceMayBePlain) {
    const ZNLoader::ZsscNode& zssc = readZssc("Reference='usb]'");
    EXPECT_EQ(zssc.m_refBase, "usb]");
    EXPECT_FALSE(zssc.m_refIndexed);
    EXPECT_EQ(zssc.m_refIndexText, "");
    EXPECT_EQ(zssc.m_refIndex, 0);
}

TEST_F(ZNLoaderNodes, ZsscOscillatorIsRoundedUp) {
    EXPECT_EQ(readZssc("Oscillator='4000001Hz'").m_oscillatorMHz, 5u);
}

TEST_F(ZNLoaderNodes, ZsscOscillatorAbove100MHzIsRejected) {
    EXPECT_EQ(thrownBy([&] { readZssc("Oscillator='100000001Hz'"); }),
              "zn:1 Error: ZN11169 System frequency specified (101) is out of range (must be between 5 and "
              "100).\n");
}

TEST_F(ZNLoaderNodes, ZsscOscillatorMayBe100MHz) {
    EXPECT_EQ(readZssc("Oscillator='100'").m_oscillatorMHz, 100u);
}

TEST_F(ZNLoaderNodes, ZsscOscillatorOf4MHzIsRejected) {
    EXPECT_EQ(thrownBy([&] { readZssc("Oscillator='4'"); }),
              "zn:1 Error: ZN11169 System frequency specified (4) is out of range (must be between 5 and "
              "100).\n");
}

TEST_F(ZNLoaderNodes, WordsOfATypeAreComparedExactly) {
    EXPECT_EQ(
        thrownBy([&] { readNodes("\n<Node Id='z' Type='periph:zs1-su'/>\n<Node Id='d' Type='Device:x'/>"); }),
        "zn:2 Error: ZN11177 Unrecognised peripheral type (\"zs1-su\").\n"
        "zn:3 Error: ZN11003 Unrecognised node type (\"Device\").\n");
}

TEST_F(ZNLoaderNodes, ZsscOfAnotherTypeIsMadeAndItsErrorShowsWithALaterOne) {
    EXPECT_EQ(thrownBy([&] { readNodes("\n<Node Id='z' Type='periph:XYZ'/>\n<Node Id='a' Type='odd:x'/>"); }),
              "zn:2 Error: ZN11177 Unrecognised peripheral type (\"XYZ\").\n"
              "zn:3 Error: ZN11003 Unrecognised node type (\"odd\").\n");
    EXPECT_EQ(loader.m_nodes.at(0)->getType(), 3);
}

TEST_F(ZNLoaderNodes, ZsscChildOfAnotherNameIsReadAsAServiceInSpiteOfTheWarning) {
    readNodes("<Node Id='z' Type='periph:ZS1-SU'>\n<Oddity Id='s' Proto='void f()'/></Node>");
    EXPECT_EQ(warnings, "zn:2 Warning: ZN11176 ZSSC Node node contains unknown node \"Oddity\"; ignoring.\n");
    EXPECT_EQ(node<ZNLoader::ZsscNode>(0).m_services.at(0)->m_id, "s");
}

TEST_F(ZNLoaderNodes, ZsscOfAPackageMayHaveNoInPackageId) {
    read(
        "<Network><Packages><Package Id='p' Type='Package'><Nodes><Node Id='z' Type='periph:ZS1-SU'/></Nodes>"
        "</Package></Packages></Network>");
    EXPECT_EQ(loader.m_packages.at(0)->m_nodeIds, (std::map<std::string, std::string>{{"", "z"}}));
}

// ---- Cores ----

TEST_F(ZNLoaderNodes, CoreHasANumberAndAReference) {
    readProcessor("", "\n<Core Number='0x10' Reference='stdcore[010]'/>");
    EXPECT_EQ(core(0, 0).m_number, 16);
    EXPECT_EQ(core(0, 0).m_reference, "stdcore[010]");
    EXPECT_EQ(core(0, 0).m_refBase, "stdcore");
    EXPECT_TRUE(core(0, 0).m_refIndexed);
    EXPECT_EQ(core(0, 0).m_refIndexText, "010");
    EXPECT_EQ(core(0, 0).m_refIndex, 8);
    EXPECT_EQ(core(0, 0).m_element->getLineNum(), 2u);
}

TEST_F(ZNLoaderNodes, CoreIsNumberZeroUnlessItSaysAnother) {
    readProcessor("", "<Core/>");
    EXPECT_EQ(core(0, 0).m_number, 0);
    EXPECT_EQ(core(0, 0).m_reference, "");
}

TEST_F(ZNLoaderNodes, CoreNumbersStayWithinAnInt) {
    readProcessor("", "<Core Number='2147483648'/><Core Number='-0x100000000'/>");
    EXPECT_EQ(core(0, 0).m_number, 2147483647);
    EXPECT_EQ(core(0, 1).m_number, -2147483647 - 1);
}

TEST_F(ZNLoaderNodes, CoreIsNotNamedByAName) {
    readProcessor("", "<Core Name='x' Reference='y'/>");
    EXPECT_EQ(core(0, 0).m_reference, "y");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11006 Core node contains unknown attribute \"Name\"; ignoring.\n");
}

TEST_F(ZNLoaderNodes, CoreHasPortsAndServices) {
    readProcessor("", "<Core><Port Location='ZS1_PORT_1A' Name='PORT_LED' Mods='out'/><Port/>"
                      "<Service Proto='void f()'/></Core>");
    ASSERT_EQ(core(0, 0).m_ports.size(), 2u);
    EXPECT_EQ(core(0, 0).m_ports[0].location, "ZS1_PORT_1A");
    EXPECT_EQ(core(0, 0).m_ports[0].name, "PORT_LED");
    EXPECT_EQ(core(0, 0).m_ports[0].mods, "out");
    EXPECT_EQ(core(0, 0).m_services.size(), 1u);
}
