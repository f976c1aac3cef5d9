// Every message of the readers, raised once, with its whole text.
//
// Codes that no document can raise:
//   11138  a processor without a system frequency isn't planned, so none is ever missed by a default
//   11043  "Error finding root node in file.": without a root the parser throws ahead of the loader
//   11043  "Error opening file" of a package file: it was opened a moment before, to find it
//   11090  the pass behind it throws its own errors, and never fails otherwise
// The messages of the checks and of the topologies have tests of their own.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"

#include <ostream>

namespace {

constexpr char s_nothing[] = "nothing thrown";

struct MessageRow {
    const char* name;
    const char* document;
    const char* warnings; // all of them
    const char* thrown = s_nothing;
};

void PrintTo(const MessageRow& row, std::ostream* stream) {
    *stream << row.document;
}

class ZNLoaderMessages : public ReadingTest, public testing::WithParamInterface<MessageRow> {};

// What a document says of a node's attributes and children, which stand on the second line.
#define IN_NODE(attributes, children)                                                                        \
    "<Network><Nodes>\n<Node Id='a' Type='L1' " attributes ">" children "</Node></Nodes></Network>"
#define IN_CORE(children) IN_NODE("", "<Core>" children "</Core>")
#define IN_NETWORK(elements) "<Network>\n" elements "</Network>"
#define IN_PACKAGE(children)                                                                                 \
    "<Network>\n<Packages>\n<Package Id='p' Type='Package'>\n" children "</Package></Packages></Network>"
#define IN_LINK(attributes, children)                                                                        \
    "<Network><Links>\n<Link " attributes ">" children "</Link></Links></Network>"
#define IN_CHAIN(children)                                                                                   \
    "<Network><Nodes><Node Id='a' Type='L1'/></Nodes>\n<JTAGChain>" children "</JTAGChain></Network>"
#define IN_DEVICES(children)                                                                                 \
    "<Network><Nodes><Node Id='a' Type='L1'/></Nodes>\n<ExternalDevices>" children                           \
    "</ExternalDevices></Network>"

} // namespace

TEST_P(ZNLoaderMessages, HaveACodeALocationAndAText) {
    EXPECT_EQ(thrownBy([&] {
                  read(GetParam().document);
                  loader.resolveBootReferences();
                  loader.propagateZssc();
                  loader.planClocks();
              }),
              GetParam().thrown);
    EXPECT_EQ(warnings, GetParam().warnings);
}

std::string nameOf(const testing::TestParamInfo<MessageRow>& info) {
    return info.param.name;
}

// ---- Top level, packages, declarations ----

constexpr MessageRow s_documentMessages[] = {
    {"UnknownElement", IN_NETWORK("<X/>"), "zn:1 Warning: ZN11128 Node <X> is not recognised; ignoring.\n"},
    {"Devices", IN_NETWORK("<Devices/>"),
     "zn:1 Warning: ZN11129 Node type \"Devices\" is deprecated, use \"ExternalDevices\" "
     "instead.\n"},
    {"ChildOfType", IN_NETWORK("<Type>\n<X/></Type>"),
     "zn:3 Warning: ZN11117 Unrecognised node \"X\" in Type node; ignoring.\n"},
    {"SecondType", IN_NETWORK("<Type>a</Type><Type/>"), "",
     "zn:2 Error: ZN11118 Only one Type node is allowed.\n"},
    {"ChildOfName", IN_NETWORK("<Name>\n<X/></Name>"),
     "zn:3 Warning: ZN11119 Unrecognised node \"X\" in Name node; ignoring.\n"},
    {"SecondName", IN_NETWORK("<Name>a</Name><Name/>"), "",
     "zn:2 Error: ZN11120 Only one Name node is allowed.\n"},
    {"ChildOfBoardId", IN_NETWORK("<BoardId>\n<X/></BoardId>"),
     "zn:3 Warning: ZN11165 Unrecognised node \"X\" in BoardId node; ignoring.\n"},
    {"SecondBoardId", IN_NETWORK("<BoardId>a</BoardId><BoardId/>"), "",
     "zn:2 Error: ZN11166 Only one BoardId node is allowed.\n"},
    {"ChildOfZNVersion", IN_NETWORK("<ZNVersion>\n<X/></ZNVersion>"),
     "zn:3 Warning: ZN11174 Unrecognised node \"X\" in ZNVersion node; ignoring.\n"},
    {"ZNVersionBehindBoardId", IN_NETWORK("<BoardId>a</BoardId><ZNVersion/>"), "",
     "zn:2 Error: ZN11175 Only one ZNVersion node is allowed.\n"},
    {"AttributeOfNodes", IN_NETWORK("<Nodes X='1'/>"),
     "zn:2 Warning: ZN11141 Attribute \"X\" in \"Nodes\" node not recognised; ignoring.\n"},
    {"ChildOfNodes", IN_NETWORK("<Nodes>\n<X/></Nodes>"),
     "zn:3 Warning: ZN11002 Node \"X\" in \"Nodes\" node not recognised; ignoring.\n"},
    {"ChildOfPackages", IN_NETWORK("<Packages>\n<X/></Packages>"),
     "zn:3 Warning: ZN11092 Unrecognised node \"X\" in Packages node; ignoring.\n"},
    {"AttributeOfPackage", IN_NETWORK("<Packages>\n<Package X='1' Id='p' Type='Package'/></Packages>"),
     "zn:3 Warning: ZN11093 Unrecognised attribute \"X\" inside Package node; ignoring.\n"},
    {"UnknownPackage", IN_NETWORK("<Packages>\n<Package Type='X'/></Packages>"), "",
     "zn:3 Error: ZN11099 Package type \"X\" cannot be resolved to a package file.\n"},
    {"PackageWithoutType", IN_NETWORK("<Packages>\n<Package/></Packages>"), "",
     "zn:3 Error: ZN11163 Package node does not define the package type (use the \"Type\" "
     "attribute).\n"},
    {"PackageWithoutId", IN_NETWORK("<Packages>\n<Package Type='Package'/></Packages>"), "",
     "zn:3 Error: ZN11162 Package node does not define the package identifier (use the \"Id\" "
     "attribute).\n"},
    {"ChildOfPackage", IN_PACKAGE("<X/>"),
     "zn:2 Warning: ZN11094 Unrecognised node \"X\" in Package node; ignoring.\n"},
    {"AttributeOfComponent", IN_PACKAGE("<Component X='1'/>"),
     "zn:4 Warning: ZN11095 Unrecognised attribute \"X\" inside Component node; ignoring.\n"},
    {"SecondInPackageIdOfComponents",
     IN_PACKAGE("<Component NodeId='a' InPackage='0'/>\n"
                "<Component NodeId='b' InPackage='0'/>"),
     "", "zn:5 Error: ZN11098 InPackageId \"b\" is a duplicate in this Component.\n"},
    {"SecondNodeIdOfComponents",
     IN_PACKAGE("<Component NodeId='a' InPackage='0'/>\n"
                "<Component NodeId='a' InPackage='1'/>"),
     "", "zn:5 Error: ZN11100 Node id \"a\" is a duplicate in this Component.\n"},
    {"SecondInPackageIdOfNodes",
     IN_PACKAGE("<Nodes><Node Id='a' InPackageId='0' Type='L1'/>\n"
                "<Node Id='b' InPackageId='0' Type='L1'/></Nodes>"),
     "", "zn:5 Error: ZN11098 InPackageId \"0\" is a duplicate.\n"},
    {"SecondNodeIdOfNodes",
     IN_PACKAGE("<Nodes><Node Id='a' InPackageId='0' Type='L1'/>\n"
                "<Node Id='a' InPackageId='1' Type='L1'/></Nodes>"),
     "", "zn:5 Error: ZN11100 Node id \"a\" is a duplicate in this package.\n"},
    {"AttributeOfDeclarations", IN_NETWORK("<Declarations X='1'/>"),
     "zn:2 Warning: ZN11145 Attribute \"X\" in \"Delcarations\" node not recognised; "
     "ignoring.\n"},
    {"ChildOfDeclarations", IN_NETWORK("<Declarations>\n<X/></Declarations>"),
     "zn:3 Warning: ZN11146 Node \"X\" inside \"Declaration\" node not recognised; "
     "ignoring.\n"},
    {"AttributeOfDeclaration", IN_NETWORK("<Declarations>\n<Declaration X='1'/></Declarations>"),
     "zn:3 Warning: ZN11147 Attribute \"X\" in \"Delcaration\" node not recognised; "
     "ignoring.\n"},
    {"BadDeclaration", IN_NETWORK("<Declarations>\n<Declaration>core a]</Declaration></Declarations>"), "",
     "zn:3 Error: ZN11148 Failed to parse declaration \"core a]\".\n"},
};

INSTANTIATE_TEST_SUITE_P(Document, ZNLoaderMessages, testing::ValuesIn(s_documentMessages), nameOf);

// ---- Nodes, cores, clocks ----

constexpr MessageRow s_nodesMessages[] = {
    {"SecondType", IN_NODE("Type='G4'", ""), "",
     "zn:2 Error: ZN11041 Only one Type attribute may be specified.\n"},
    {"UnknownKind", IN_NETWORK("<Nodes><Node Type='Proc:L1'/></Nodes>"), "",
     "zn:2 Error: ZN11003 Unrecognised node type (\"Proc\").\n"},
    {"UnknownType", IN_NETWORK("<Nodes><Node Type='proc:X'/></Nodes>"), "",
     "zn:2 Error: ZN11101 Configuration file for node type \"X\" not found.\n"},
    {"KindWithoutAColonIsAType", IN_NETWORK("<Nodes><Node Type='device'/></Nodes>"), "",
     "zn:2 Error: ZN11101 Configuration file for node type \"device\" not found.\n"},
    {"UnknownAttribute", IN_NODE("X='1'", ""),
     "zn:2 Warning: ZN11004 Node node contains unknown attribute \"X\"; ignoring.\n"},
    {"WithoutId", IN_NETWORK("<Nodes><Node Type='L1'/></Nodes>"), "",
     "zn:2 Error: ZN11161 Node has no Id attribute.\n"},
    {"WithoutInPackageId", IN_PACKAGE("<Nodes>\n<Node Id='a' Type='L1'/></Nodes>"), "",
     "zn:5 Error: ZN11160 Node has no InPackageId attribute.\n"},
    {"FrequenciesWithoutOscillator", IN_NODE("SystemFrequency='400' ReferenceFrequency='100'", ""),
     "zn:2 Warning: ZN11135 Attribute ReferenceFrequency is ignored when Oscillator is not "
     "specified.\n"
     "zn:2 Warning: ZN11135 Attribute SystemFrequency is ignored when Oscillator is not "
     "specified.\n"},
    {"BadFrequency", IN_NODE("Oscillator='4x4'", ""), "",
     "zn:2 Error: ZN11060 Frequency (\"4x4\") cannot be parsed.\n"},
    {"BadFrequencySuffix", IN_NODE("Oscillator='4x'", ""), "",
     "zn:2 Error: ZN11060 Frequency (\"4x\") had unrecognised suffix.\n"},
    {"DividersAndSystemFrequency", IN_NODE("PllInputDiv='1' SystemFrequency='400'", ""),
     "zn:2 Warning: ZN11135 Attribute SystemFrequency is ignored when Oscillator is not "
     "specified.\n",
     "zn:2 Error: ZN11121 The PllInputDiv, PllFeedbackDiv, and PllOutputDiv attibutes are "
     "mutually exclusive with SystemFrequency.\n"},
    {"RefDivAndReferenceFrequency", IN_NODE("Oscillator='20' RefDiv='4' ReferenceFrequency='100'", ""), "",
     "zn:2 Error: ZN11122 The RefDiv attribute is mutually exclusive with "
     "ReferenceFrequency.\n"},
    {"FeedbackDivAndItsMinimum", IN_NODE("PllFeedbackDiv='20' PllFeedbackDivMin='10'", ""), "",
     "zn:2 Error: ZN11004 The PllFeedbackDivMin and PllFeedbackDiv attributes are multually "
     "exclusive.\n"},
    {"RefDivWithoutDividers", IN_NODE("RefDiv='4'", ""), "",
     "zn:2 Error: ZN11132 When the RefDiv is specified the PLL divisors must also be "
     "specified.\n"},
    {"NotAllDividers", IN_NODE("PllInputDiv='1' PllOutputDiv='1'", ""), "",
     "zn:2 Error: ZN11123 When one of PllInputDiv, PllFeedbackDiv, or PllOutputDiv are "
     "specified, all three must be.\n"},
    {"DividersWithoutOscillator", IN_NODE("PllInputDiv='1' PllFeedbackDiv='20' PllOutputDiv='1'", ""), "",
     "zn:2 Error: ZN11131 When the PLL divisors are specified the oscillator must also be "
     "specified.\n"},
    {"DividersWithoutRefDiv",
     IN_NODE("Oscillator='20' PllInputDiv='1' PllFeedbackDiv='20' PllOutputDiv='1'", ""), "",
     "zn:2 Error: ZN11124 When the PLL divisors are specified the reference clock divider must "
     "also be specified.\n"},
    {"ChildOfProcessor", IN_NODE("", "\n<X/>"),
     "zn:3 Warning: ZN11142 Node \"X\" in \"Node\" node not recognised; ignoring.\n"},
    {"DeviceFlag", IN_NETWORK("<Nodes><Node Type='device:' Flags='X'/></Nodes>"),
     "zn:2 Warning: ZN11016 Unrecognised device flag \"X\"; ignoring.\n"},
    {"AttributeOfDevice", IN_NETWORK("<Nodes><Node Type='device:' X='1'/></Nodes>"),
     "zn:2 Warning: ZN11004 Device node contains unknown attribute \"X\"; ignoring.\n"},
    {"ChildOfDevice", IN_NETWORK("<Nodes><Node Type='device:'>\n<X/></Node></Nodes>"),
     "zn:3 Warning: ZN11017 Device type node contains unrecognised node \"X\"; ignoring.\n"},
    {"AttributeOfZssc", IN_NETWORK("<Nodes><Node Id='z' Type='periph:ZS1-SU' RoutingId='1'/></Nodes>"),
     "zn:2 Warning: ZN11004 Node node contains unknown attribute \"RoutingId\"; ignoring.\n"},
    {"ZsscWithoutId", IN_NETWORK("<Nodes><Node Type='periph:ZS1-SU'/></Nodes>"), "",
     "zn:2 Error: ZN11161 Node has no Id attribute.\n"},
    {"ZsscOscillator", IN_NETWORK("<Nodes><Node Type='periph:ZS1-SU' Oscillator='101'/></Nodes>"), "",
     "zn:2 Error: ZN11169 System frequency specified (101) is out of range (must be between 5 "
     "and 100).\n"},
    {"UnknownPeripheral", IN_NETWORK("<Nodes><Node Id='z' Type='periph:X:Y'/><Node Type='X:'/></Nodes>"), "",
     "zn:2 Error: ZN11177 Unrecognised peripheral type (\"X:Y\").\n"
     "zn:2 Error: ZN11003 Unrecognised node type (\"X\").\n"},
    {"ChildOfZssc", IN_NETWORK("<Nodes><Node Id='z' Type='periph:ZS1-SU'>\n<X Proto='f()'/></Node></Nodes>"),
     "zn:3 Warning: ZN11176 ZSSC Node node contains unknown node \"X\"; ignoring.\n"},
    {"AttributeOfCore", IN_NODE("", "\n<Core X='1'/>"),
     "zn:3 Warning: ZN11006 Core node contains unknown attribute \"X\"; ignoring.\n"},
    {"AttributeOfPort", IN_CORE("\n<Port X='1'/>"),
     "zn:3 Warning: ZN11007 Unrecognised attribute \"X\" inside Port node; ignoring.\n"},
    {"ChildOfCore", IN_CORE("\n<X/>"),
     "zn:3 Warning: ZN11008 Unrecognised node \"X\" inside Core node; ignoring.\n"},
    {"BadCoreNumber", IN_NODE("", "\n<Core Number='1x'/>"), "",
     "zn:3 Error: ZN11052 Invalid core number \"1x\".\n"},
    {"NoSystemFrequency", IN_NODE("Oscillator='20'", ""),
     "zn:2 Warning: ZN11140 System frequency is unspecified. No PLL configuration will be "
     "performed.\n"},
    {"SystemFrequencyMissed",
     IN_NODE("Oscillator='25MHz' SystemFrequency='333333Hz' ReferenceFrequency='1'", ""), "",
     "ZNHandler: Error: ZN11107 Target frequency (333333) is too low. Minimum PLL frequency "
     "with maxumimum output divide exceeds this frequency.\n"},
    {"FrequenciesMissed",
     IN_NODE("Oscillator='24MHz' SystemFrequency='400000001Hz' ReferenceFrequency='90MHz'", ""),
     "zn:2 Warning: ZN11137 400000001Hz system frequency for node \"a\" could not be achived. "
     "Using 400000000Hz.\n"
     "zn:2 Warning: ZN11137 90000000Hz reference frequency for node \"a\" could not be "
     "achived. Using 80000000Hz.\n"},
    {"DefaultReferenceMissed", IN_NODE("Oscillator='25' SystemFrequency='350'", ""),
     "zn:2 Warning: ZN11136 Default 100Mhz reference frequency for node \"a\" could not be "
     "achived. Using 87500000Hz.\n"},
};

INSTANTIATE_TEST_SUITE_P(Nodes, ZNLoaderMessages, testing::ValuesIn(s_nodesMessages), nameOf);

// ---- Links and scan chain ----

constexpr MessageRow s_linksMessages[] = {
    {"AttributeOfLinks", IN_NETWORK("<Links X='1'/>"),
     "zn:2 Warning: ZN11143 Unrecognised attribute \"X\" in \"Links\" node; ignoring.\n"},
    {"ChildOfLinks", IN_NETWORK("<Links>\n<X/></Links>"),
     "zn:3 Warning: ZN11025 Unrecognised node \"X\" in Link node; ignoring.\n"},
    {"ChildOfLink", IN_LINK("", "\n<X/><LinkEndpoint/>"),
     "zn:3 Warning: ZN11026 Link node contains unrecognised node \"X\"; ignoring.\n"},
    {"OneEnd", IN_LINK("", "<LinkEndpoint/>"), "",
     "zn:2 Error: ZN11027 Link nodes must contain exactly two LinkEndpoint nodes.\n"},
    {"AttributeOfLink", IN_LINK("X='1'", "<LinkEndpoint/><LinkEndpoint/>"),
     "zn:2 Warning: ZN11028 Unrecognised attribute \"X\" in \"Link\" node; ignoring.\n"},
    {"AttributeOfEnd", IN_LINK("", "<LinkEndpoint/>\n<LinkEndpoint X='1'/>"),
     "zn:3 Warning: ZN11029 Endpoint node contains unknown attribute \"X\"; ignoring.\n"},
    {"LinkFlag", IN_LINK("Flags='X,noinit'", "<LinkEndpoint/><LinkEndpoint/>"),
     "zn:2 Warning: ZN11062 Link flag \"X,noinit\" no recognised; ignoring.\n"},
    {"TwoSodEnds", IN_LINK("Flags='sod'", "<LinkEndpoint Chanend='1'/><LinkEndpoint Chanend='1'/>"), "",
     "zn:2 Error: ZN11154 A sod Link node may contain only 1 sod endpoint.\n"},
    {"NoSodEnd", IN_LINK("Flags='sod'", "<LinkEndpoint/><LinkEndpoint/>"), "",
     "zn:2 Error: ZN11155 A sod Link node must contain a sod endpoint.\n"},
    {"SodEndOfANormalLink", IN_LINK("", "<LinkEndpoint Chanend='1'/><LinkEndpoint/>"), "",
     "zn:2 Error: ZN11156 A normal Link node may not contain a sod endpoint.\n"},
    {"AttributeOfChain", IN_NETWORK("<JtagChain X='1'/>"),
     "zn:2 Warning: ZN11104 Found unexpected attribute \"X\" inside \"JtagChain\" node; "
     "ignoring.\n"},
    {"ChildOfChain", IN_CHAIN("\n<X/>"),
     "zn:3 Warning: ZN11030 Found unexpected node \"X\" inside JTAGChain node; ignoring.\n"},
    {"AttributeOfChainDevice", IN_CHAIN("\n<JTAGDevice NodeId='a' Devices='1'/>"),
     "zn:3 Warning: ZN11031 Found unexpected attribute \"Devices\" inside JTAGDevice node; "
     "ignoring.\n"},
    {"AttributeOfChainSpace", IN_CHAIN("\n<JTAGSpace NodeId='a'/>"),
     "zn:3 Warning: ZN11031 Found unexpected attribute \"NodeId\" inside JTAGSpace node; "
     "ignoring.\n"},
    {"UnknownChainNode", IN_CHAIN("\n<JTAGDevice NodeId='X'/>"), "",
     "zn:3 Error: ZN11032 Node \"X\" referenced in JTAGDevice not found.\n"},
    {"ChainDeviceWithoutNode", IN_CHAIN("\n<JTAGDevice/>"), "",
     "zn:3 Error: ZN11102 Device in JTAGChain node does not specify a NodeId.\n"},
    {"SpaceInsideChain", IN_CHAIN("<JTAGDevice NodeId='a'/>\n<JTAGSpace/><JTAGDevice NodeId='a'/>"), "",
     "zn:2 Error: ZN11103 JTAGSpace nodes may occur only at the start end end of the chain.\n"},
};

INSTANTIATE_TEST_SUITE_P(Links, ZNLoaderMessages, testing::ValuesIn(s_linksMessages), nameOf);

// ---- Boot, devices, services ----

constexpr MessageRow s_bootDevicesServicesMessages[] = {
    {"AttributeOfSource", IN_NODE("", "<Boot>\n<Source X='1'/></Boot>"),
     "zn:3 Warning: ZN11086 Attribute \"X\" in Source node not recognised; ignoring.\n"},
    {"AttributeOfBootee", IN_NODE("", "<Boot>\n<Bootee X='1'/></Boot>"),
     "zn:3 Warning: ZN11087 Attribute \"X\" in Bootee node not recognised; ignoring.\n"},
    {"ChildOfBoot", IN_NODE("", "<Boot>\n<X/></Boot>"),
     "zn:3 Warning: ZN11088 Node \"X\" in Boot node not recognised; ignoring.\n"},
    {"UnknownLocation", IN_NODE("", "<Boot>\n<Source Location='X:Y'/></Boot>"), "",
     "zn:3 Error: ZN11089 Boot location specifier \"X\" is not recognised.\n"},
    {"UnknownBootDevice", IN_NODE("", "<Boot><Source Location='spi:X'/></Boot>"), "",
     "zn:2 Error: ZN11130 Node \"a\" boot information does not specify an extant external "
     "device (\"X\").\n"},
    {"UnnamedBootDevice", IN_NODE("", "<Boot><Source Location='spi:'/></Boot>"), "",
     "zn:2 Error: ZN11130 Node \"a\" boot information does not specify an extant external "
     "device.\n"},
    {"ContradictoryBoot",
     IN_NETWORK("<ExternalDevices><Device Name='f'/></ExternalDevices><Nodes>\n"
                "<Node Id='a' Type='L1'><Boot><Source Location='spi:f'/>"
                "<Bootee NodeId='a'/></Boot></Node></Nodes>"),
     "", "zn:3 Error: ZN11091 Node \"a\" has contradictory boot information.\n"},
    {"NoBootees",
     IN_NETWORK("<Nodes><Node Id='d' Type='device:'/>\n"
                "<Node Id='a' Type='L1'><Boot><Bootee NodeId='d'/></Boot></Node></Nodes>"),
     "", "zn:3 Error: ZN11091 Node \"a\" cannot support bootees.\n"},
    {"AttributeOfExternalDevices", IN_NETWORK("<ExternalDevices X='1'/>"),
     "zn:2 Warning: ZN11144 Unrecognised attribute \"X\" in \"ExternalDevices\" node; "
     "ignoring.\n"},
    {"AttributeOfDevice", IN_DEVICES("\n<Device X='1'/>"),
     "zn:3 Warning: ZN11054 Found unexpected attribute \"X\" inside Device node; ignoring.\n"},
    {"UnknownDeviceNode", IN_DEVICES("\n<Device NodeId='X'/>"), "",
     "zn:3 Error: ZN11055 Node \"X\" referenced in Device not found.\n"},
    {"BadDeviceCore", IN_DEVICES("\n<Device Core='X'/>"), "",
     "zn:3 Error: ZN11052 Invalid core number \"X\".\n"},
    {"ChildOfDevice", IN_DEVICES("<ExternalDevice>\n<X/></ExternalDevice>"),
     "zn:3 Warning: ZN11056 Unrecognised node \"ExternalDevice\" in Device node; ignoring.\n"},
    {"AttributeOfAttribute", IN_DEVICES("<Device>\n<Attribute X='1'/></Device>"),
     "zn:3 Warning: ZN11057 Found unexpected attribute \"X\" inside Attribute node; "
     "ignoring.\n"},
    {"UnknownClass", IN_DEVICES("\n<Device Class='X'/>"),
     "zn:3 Warning: ZN11058 Unrecognised device class \"X\"; ignoring.\n"},
    {"SecondDeviceOfAName", IN_DEVICES("<Device Name='n'/>\n<Device Name='n'/>"), "",
     "zn:3 Error: ZN11105 Duplicate device name \"n\".\n"},
    {"AttributeOfService", IN_CORE("\n<Service X='1' Proto='f()'/>"),
     "zn:3 Warning: ZN11018 Unrecognised attribute \"X\" in Service node; ignoring\n"},
    {"ChildOfService", IN_CORE("<Service Proto='f()'>\n<X/></Service>"),
     "zn:3 Warning: ZN11019 Unrecognised node \"X\" in Service node; ignoring.\n"},
    {"SecondChannelEnd",
     IN_CORE("<Service Proto='f()'><Chanend Identifier='n' End='1'/>\n<Chanend End='1'/></Service>"), "",
     "zn:3 Error: ZN11020 Duplicate channel end value (previous was \"n\").\n"},
    {"AttributeOfChanend", IN_CORE("<Service Proto='f(chanend )'>\n<Chanend X='1'/></Service>"),
     "zn:3 Warning: ZN11021 Unrecognised attribute \"X\" in Chanend node; ignoring.\n"},
    {"PrototypeWithoutOpening", IN_CORE("\n<Service Proto='f)'/>"), "",
     "zn:3 Error: ZN11022 Unable to parse service function prototype ('(' not found).\n"},
    {"PrototypeWithoutClosing", IN_CORE("\n<Service Proto='f('/>"), "",
     "zn:3 Error: ZN11022 Unable to parse service function prototype (')' not found).\n"},
    {"ParameterWithoutValue", IN_CORE("\n<Service Proto='f(chanend a)'/>"), "",
     "zn:3 Error: ZN11023 Value of chanend \"a\" not specified.\n"},
    {"ValueWithoutParameter", IN_CORE("<Service Proto='f()'>\n<Chanend/></Service>"), "",
     "zn:3 Error: ZN11024 Channel end does not match any formal parameter.\n"},
    {"ServiceFlag", IN_CORE("\n<Service Proto='f()' Flags='X'/>"),
     "zn:3 Warning: ZN11157 Unrecognised service flag \"X\"; ignoring.\n"},
};

INSTANTIATE_TEST_SUITE_P(BootDevicesServices, ZNLoaderMessages,
                         testing::ValuesIn(s_bootDevicesServicesMessages), nameOf);

// ---- Failures of open ----

class ZNLoaderOpenMessages : public ReadingTest {};

TEST_F(ZNLoaderOpenMessages, FileThatIsNotThere) {
    const std::string file = devices.folder().file("none.zn");
    EXPECT_EQ(thrownBy([&] { loader.open(file); }), "Error: ZN11043 Error opening file '" + file + "'.\n");
}

// A folder counts as a file that is there. It opens, and holds no document.
TEST_F(ZNLoaderOpenMessages, PackageFileThatIsAFolder) {
    std::filesystem::create_directory(devices.folder().file("Folder.pkg"));
    EXPECT_EQ(thrownBy([&] { read("<Network><Packages><Package Type='Folder'/></Packages></Network>"); }),
              devices.folder().file("Folder.pkg") + ": error: no '<' before the end of file\n");
}

TEST_F(ZNLoaderOpenMessages, AnotherRoot) {
    EXPECT_EQ(thrownBy([&] { open("<X/>"); }), "zn:1 Error: ZN11001 Root node is not <Network>\n");
}

TEST_F(ZNLoaderOpenMessages, NoRoot) {
    EXPECT_EQ(thrownBy([&] { open("x"); }), "zn: error: no '<' before the end of file\n");
}

TEST_F(ZNLoaderOpenMessages, BadFeedbackDivider) {
    EXPECT_EQ(thrownBy([&] { open(IN_NODE("PllFeedbackDiv='5.25'", "")); }),
              "zn:2 Error: ZN11127 Invalid PLL feedback divider value \"5.25\".\n"
              "zn: Error: ZN11044 Error parsing file.\n");
}

TEST_F(ZNLoaderOpenMessages, BadMinimumOfTheFeedbackDivider) {
    EXPECT_EQ(thrownBy([&] { open(IN_NODE("PllFeedbackDivMin='-1'", "")); }),
              "zn:2 Error: ZN11133 Invalid minimum PLL feedback divider value \"-1\".\n"
              "zn: Error: ZN11044 Error parsing file.\n");
}

TEST_F(ZNLoaderOpenMessages, BadFeedbackDividerInAPackage) {
    EXPECT_EQ(
        thrownBy([&] { open(IN_PACKAGE("<Nodes><Node Id='a' Type='L1' PllFeedbackDiv='x'/></Nodes>")); }),
        "zn:4 Error: ZN11127 Invalid PLL feedback divider value \"x\".\n"
        "zn: Error: ZN11044 Error parsing file.\n");
}
