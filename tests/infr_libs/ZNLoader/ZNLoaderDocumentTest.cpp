// The top level of a network document, packages and declarations.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/XmlText.h"

class ZNLoaderDocument : public ReadingTest {
protected:
    void declare(const std::string& text) {
        read("<Network><Declarations><Declaration>" + text + "</Declaration></Declarations></Network>");
    }

    // The root element's content, in a document that is sound otherwise.
    static std::string soundWith(const std::string& elements) {
        return NetworkBuilder().processor("a").add(elements).text();
    }
};

TEST_F(ZNLoaderDocument, MayWriteItsRootInAnyCase) {
    std::string text = NetworkBuilder().processor("a").text();
    text.replace(text.find("<Network>"), 9, "<NETWORK>");
    text.replace(text.find("</Network>"), 10, "</NETWORK>");
    open(text);
    EXPECT_EQ(node(0).m_id, "a");
}

TEST_F(ZNLoaderDocument, IsRejectedWithAnotherRoot) {
    EXPECT_EQ(thrownBy([&] { open("\n<netwrk>\n</netwrk>"); }),
              "zn:2 Error: ZN11001 Root node is not <Network>\n");
}

TEST_F(ZNLoaderDocument, MayWriteAnyNameInAnyCase) {
    read("<network><nodeS><NODE ID='a' tYpE='L1'><CORE NUMBER='3' reference='x[1]'>"
         "<PORT LOCATION='L' NAME='N' mods='M'/></CORE></NODE></nodeS></network>");
    EXPECT_EQ(node(0).m_id, "a");
    EXPECT_EQ(core(0, 0).m_number, 3);
    EXPECT_EQ(core(0, 0).m_ports.at(0).location, "L");
}

TEST_F(ZNLoaderDocument, MayPutLinksAheadOfNodes) {
    read("<Network><Links><Link><LinkEndpoint NodeId='a'/><LinkEndpoint NodeId='b'/></Link></Links>"
         "<Nodes><Node Id='a' Type='L1'/></Nodes></Network>");
    EXPECT_EQ(loader.m_links.size(), 1u);
}

TEST_F(ZNLoaderDocument, CarriesTypeNameBoardAndVersion) {
    read("<Network><Type>Board</Type><Name>n</Name><ZNVersion>v</ZNVersion><BoardId>b</BoardId></Network>");
    EXPECT_EQ(loader.m_typeText, "Board");
    EXPECT_EQ(loader.m_typeKind, 2);
    EXPECT_EQ(loader.m_name, "n");
    EXPECT_EQ(loader.m_znVersion, "v");
    EXPECT_EQ(loader.m_boardId, "b");
}

TEST(ZNLoaderDocumentType, IsOneOfThreeKindsOrNone) {
    const struct {
        const char* text;
        int kind;
    } rows[] = {{"Device", 1}, {"Board", 2}, {"Platform", 3}, {"DEVICE", 1}, {"Boards", 0}, {"", 0}};
    for (const auto& row : rows) {
        ZNLoader loader;
        XmlNode element("Type", "zn", 1, loader.m_zelmUtils);
        const std::string value = row.text;
        element.setValue(&value);
        EXPECT_FALSE(loader.readType(&element));
        EXPECT_EQ(loader.m_typeKind, row.kind) << row.text;
    }
}

TEST_F(ZNLoaderDocument, MayRepeatATypeWhoseFirstIsEmpty) {
    read("<Network><Type></Type><Type>Board</Type></Network>");
    EXPECT_EQ(loader.m_typeKind, 2);
}

TEST_F(ZNLoaderDocument, MayNotRepeatAType) {
    EXPECT_EQ(thrownBy([&] { read("<Network><Type>Odd</Type>\n<Type>Board</Type></Network>"); }),
              "zn:2 Error: ZN11118 Only one Type node is allowed.\n");
}

TEST_F(ZNLoaderDocument, MayNotPutTheVersionBehindTheBoardId) {
    EXPECT_EQ(thrownBy([&] { read("<Network><BoardId>b</BoardId>\n<ZNVersion>v</ZNVersion></Network>"); }),
              "zn:2 Error: ZN11175 Only one ZNVersion node is allowed.\n");
}

TEST_F(ZNLoaderDocument, MayPutTheVersionAheadOfTheBoardId) {
    open(soundWith("<ZNVersion>v</ZNVersion><BoardId>b</BoardId>"));
    EXPECT_EQ(loader.m_boardId, "b");
}

TEST_F(ZNLoaderDocument, MayRepeatTheVersionAndTheLastCounts) {
    read("<Network><ZNVersion>1</ZNVersion><ZNVersion>2</ZNVersion></Network>");
    EXPECT_EQ(loader.m_znVersion, "2");
}

TEST_F(ZNLoaderDocument, ReadsDevicesAsExternalDevicesWithAWarning) {
    read("<Network>\n<Devices>\n<Device Name='flash' Class='SpiFlash'/></Devices></Network>");
    EXPECT_EQ(loader.m_devices.at(0)->m_name, "flash");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11129 Node type \"Devices\" is deprecated, use \"ExternalDevices\" "
                        "instead.\n");
}

TEST_F(ZNLoaderDocument, AddsTheWrapperToAReadersFailure) {
    EXPECT_EQ(thrownBy([&] {
                  open("<Network><Nodes>\n<Node Id='a' Type='L1' PllFeedbackDiv='x'/></Nodes></Network>");
              }),
              "zn:2 Error: ZN11127 Invalid PLL feedback divider value \"x\".\n"
              "zn: Error: ZN11044 Error parsing file.\n");
}

TEST_F(ZNLoaderDocument, KeepsTheFirstNodeOfAnIdInItsMap) {
    read("<Network><Nodes><Node Id='a' Type='device:1'/></Nodes><Nodes><Node Id='a' Type='device:2'/>"
         "<Node Id='b' Type='device:3'/></Nodes></Network>");
    EXPECT_EQ(loader.m_nodeMap.at("a"), loader.m_nodes[0]);
    EXPECT_EQ(loader.m_nodeMap.at("b"), loader.m_nodes[2]);
}

TEST_F(ZNLoaderDocument, MayBeOfAnyDepth) {
    read("<Network>" + nestedText(100'000) + "</Network>");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11128 Node <a> is not recognised; ignoring.\n");
}

TEST_F(ZNLoaderDocument, MayHaveAnyNumberOfAttributes) {
    constexpr std::size_t numAttributes = 100'000;
    read("<Network><Nodes><Node Id='d' Type='device:x'" + repeated(" x='1'", numAttributes) +
         "/></Nodes></Network>");
    const std::string warning =
        "zn:1 Warning: ZN11004 Device node contains unknown attribute \"x\"; ignoring.\n";
    EXPECT_EQ(warnings.size(), numAttributes * warning.size());
    EXPECT_EQ(warnings.substr(0, warning.size()), warning);
}

TEST_F(ZNLoaderDocument, MayHaveAnyNumberOfElements) {
    constexpr std::size_t numSections = 20'000;
    read("<Network>" +
         repeated("<Nodes><Node Id='d' Type='device:x'/></Nodes>"
                  "<JTAGChain><JTAGDevice NodeId='d'/></JTAGChain>",
                  numSections) +
         "</Network>");
    EXPECT_EQ(loader.m_nodes.size(), numSections);
    EXPECT_EQ(loader.m_jtagNodes.back(), loader.m_nodes.front());
}

// ---- Declarations ----

TEST_F(ZNLoaderDocument, DeclaresACore) {
    declare("core a");
    const ZNLoader::CoreDeclaration& declaration = *loader.m_declarations.at(0);
    EXPECT_EQ(declaration.m_text, "core a");
    EXPECT_EQ(declaration.m_kind, "core");
    EXPECT_EQ(declaration.m_name, "a");
    EXPECT_FALSE(declaration.m_isArray);
    EXPECT_EQ(declaration.m_element->getLineNum(), 1u);
}

TEST_F(ZNLoaderDocument, DeclaresAnArrayOfCores) {
    declare("core a[2]");
    const ZNLoader::CoreDeclaration& declaration = *loader.m_declarations.at(0);
    EXPECT_EQ(declaration.m_name, "a");
    EXPECT_TRUE(declaration.m_isArray);
    EXPECT_EQ(declaration.m_size, 2);
}

TEST_F(ZNLoaderDocument, TrimsBlanksAndTabsOfADeclaration) {
    declare("core\t \tname \t");
    EXPECT_EQ(loader.m_declarations.at(0)->m_name, "name");
    EXPECT_EQ(loader.m_declarations.at(0)->m_text, "core\t \tname \t");
}

TEST_F(ZNLoaderDocument, KeepsALineEndInADeclaredName) {
    declare("core name\n");
    EXPECT_EQ(loader.m_declarations.at(0)->m_name, "name\n");
}

TEST_F(ZNLoaderDocument, GivesAnArraySizeZeroWhoseBracketsAreReversed) {
    declare("core a]2[");
    EXPECT_EQ(loader.m_declarations.at(0)->m_name, "a]2");
    EXPECT_EQ(loader.m_declarations.at(0)->m_size, 0);
    EXPECT_TRUE(loader.m_declarations.at(0)->m_isArray);
}

TEST_F(ZNLoaderDocument, AddsNothingForAnEmptyDeclaration) {
    read("<Network><Declarations><Declaration/><Declaration> \t</Declaration></Declarations></Network>");
    EXPECT_TRUE(loader.m_declarations.empty());
}

// The parser drops leading blanks, so that a text of blanks alone comes from a tree made by hand only.
TEST(ZNLoaderDeclaration, AddsNothingForATextOfBlanks) {
    ZNLoader loader;
    XmlNode element("Declarations", "zn", 1, loader.m_zelmUtils);
    auto* declaration = new XmlNode("Declaration", "zn", 1, loader.m_zelmUtils);
    element.addNode(declaration);
    const std::string blanks = " \t ";
    declaration->setValue(&blanks);
    EXPECT_FALSE(loader.readDeclarations(&element));
    EXPECT_TRUE(loader.m_declarations.empty());
}

TEST_F(ZNLoaderDocument, RejectsADeclarationOfNoName) {
    EXPECT_EQ(thrownBy([&] { declare("core"); }),
              "zn:1 Error: ZN11148 Failed to parse declaration \"core\".\n");
}

TEST_F(ZNLoaderDocument, RejectsADeclarationWithOneBracket) {
    EXPECT_EQ(thrownBy([&] { declare("core a["); }),
              "zn:1 Error: ZN11148 Failed to parse declaration \"core a[\".\n");
}

TEST_F(ZNLoaderDocument, RejectsADeclarationOfAnotherKind) {
    EXPECT_EQ(thrownBy([&] { declare("port name "); }), // the text as written, its blank included
              "zn:1 Error: ZN11148 Failed to parse declaration \"port name \".\n");
}

// ---- Packages ----

TEST_F(ZNLoaderDocument, ReadsAPackageWithItsNodes) {
    read("<Network><Packages><Package Id='p' Type='Package'>"
         "<Nodes><Node Id='a' InPackageId='0' Type='L1'/></Nodes>"
         "<Links><Link><LinkEndpoint/><LinkEndpoint/></Link></Links>"
         "<Component NodeId='b' InPackage='1'/></Package></Packages></Network>");
    const ZNLoader::Package& package = *loader.m_packages.at(0);
    EXPECT_EQ(package.m_id, "p");
    EXPECT_EQ(package.m_type, "Package");
    EXPECT_EQ(package.m_file, devices.folder().file("Package.pkg"));
    EXPECT_EQ(package.m_nodeIds, (std::map<std::string, std::string>{{"0", "a"}, {"1", "b"}}));
    EXPECT_EQ(*package.m_parser->getRoot()->getName(), "Package");
    EXPECT_EQ(loader.m_nodes.size(), 1u);
    EXPECT_EQ(loader.m_links.size(), 1u);
}

TEST_F(ZNLoaderDocument, LooksAtNothingInAPackageFile) {
    devices.folder().write("Full.pkg", "<Anything><Nodes><Node Id='x' Type='L1'/></Nodes></Anything>");
    read("<Network><Packages><Package Id='p' Type='Full'/></Packages></Network>");
    EXPECT_TRUE(loader.m_nodes.empty());
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderDocument, SharesAPackageFileBetweenPackagesOfOneType) {
    read("<Network><Packages><Package Id='p' Type='Package'/><Package Id='q' Type='Package'/></Packages>"
         "</Network>");
    EXPECT_EQ(loader.m_packages.at(0)->m_parser, loader.m_packages.at(1)->m_parser);
}

TEST_F(ZNLoaderDocument, PassesTheFaultOfAPackageFileOnAlone) {
    const std::string file = devices.folder().write("Bad.pkg", "<a>\n</b>");
    EXPECT_EQ(thrownBy([&] { read("<Network><Packages><Package Id='p' Type='Bad'/></Packages></Network>"); }),
              file + ":2: error: unexpected closing tag 'b'\n");
}

TEST_F(ZNLoaderDocument, TakesTheLastOfTwoTypesOfAPackage) {
    devices.folder().write("Other.pkg", "<Other/>");
    read("<Network><Packages><Package Id='p' Type='Package' Type='Other'/></Packages></Network>");
    EXPECT_EQ(*loader.m_packages.at(0)->m_parser->getRoot()->getName(), "Other");
}

TEST(ZNLoaderPackage, FindsNodesThatWereBoundByHand) {
    ZNLoader::Package package;
    package.m_nodeIds["0"] = "a";
    EXPECT_TRUE(package.holdsNode("a"));
    EXPECT_FALSE(package.holdsNode("0"));
}
