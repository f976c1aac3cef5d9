// Links with their ends, and the scan chain.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/ChildProcess.h"

class ZNLoaderLinks : public ReadingTest {
protected:
    void readLink(const std::string& attributes, const std::string& children) {
        read("<Network><Links><Link " + attributes + ">" + children + "</Link></Links></Network>");
    }
};

TEST_F(ZNLoaderLinks, HaveAnEncodingDelaysAndFlags) {
    readLink("Encoding='5Wire' Delays='3,4' Flags='NoInit'", "<LinkEndpoint/><LinkEndpoint/>");
    const ZNLoader::Zlink& link = *loader.m_links.at(0);
    EXPECT_EQ(link.m_encoding, "5Wire");
    EXPECT_EQ(link.m_delays, "3,4");
    EXPECT_EQ(link.m_flags, ZNLoader::Zlink::s_noInit);
    EXPECT_EQ(link.m_element->getLineNum(), 1u);
}

TEST_F(ZNLoaderLinks, HaveTwoEndsInDocumentOrder) {
    readLink("", "<LinkEndpoint NodeId='a' Link='Z0LA' Delays='7'/><LinkEndpoint NodeId='b' Link='3'/>");
    auto& end0 = dynamic_cast<ZNLoader::ZlinkNormalEnd&>(*loader.m_links.at(0)->m_end0);
    auto& end1 = dynamic_cast<ZNLoader::ZlinkNormalEnd&>(*loader.m_links.at(0)->m_end1);
    EXPECT_EQ(end0.m_nodeId, "a");
    EXPECT_EQ(end0.m_linkText, "Z0LA");
    EXPECT_EQ(end0.m_delays, "7");
    EXPECT_EQ(end1.m_nodeId, "b");
    EXPECT_EQ(end1.m_linkText, "3");
}

TEST_F(ZNLoaderLinks, WithThreeChildrenAreRejectedEvenIfOneIsUnknown) {
    EXPECT_EQ(thrownBy([&] { readLink("", "<LinkEndpoint/><LinkEndpoint/><Oddity/>"); }),
              "zn:1 Error: ZN11027 Link nodes must contain exactly two LinkEndpoint nodes.\n");
}

TEST_F(ZNLoaderLinks, WithoutAChildAreRejected) {
    EXPECT_EQ(thrownBy([&] { readLink("", ""); }),
              "zn:1 Error: ZN11027 Link nodes must contain exactly two LinkEndpoint nodes.\n");
}

TEST_F(ZNLoaderLinks, TakeAnUnknownChildAsAnEndpoint) {
    readLink("", "\n<LinkEndpoint NodeId='a'/>\n<Oddity NodeId='b'/>");
    EXPECT_EQ(warnings, "zn:3 Warning: ZN11026 Link node contains unrecognised node \"Oddity\"; ignoring.\n");
    EXPECT_EQ(loader.m_links.at(0)->m_end1->m_nodeId, "b");
}

TEST_F(ZNLoaderLinks, ShowTheWholeListOfFlagsForAnUnknownOne) {
    readLink("Flags='noinit,x,y'", "<LinkEndpoint/><LinkEndpoint/>");
    EXPECT_EQ(warnings, "zn:1 Warning: ZN11062 Link flag \"noinit,x,y\" no recognised; ignoring.\n"
                        "zn:1 Warning: ZN11062 Link flag \"noinit,x,y\" no recognised; ignoring.\n");
    EXPECT_EQ(loader.m_links.at(0)->m_flags, ZNLoader::Zlink::s_noInit);
}

TEST_F(ZNLoaderLinks, EndIsNormalUnlessItSaysOtherwise) {
    readLink("", "<LinkEndpoint/><LinkEndpoint/>");
    auto& end = dynamic_cast<ZNLoader::ZlinkNormalEnd&>(*loader.m_links.at(0)->m_end0);
    EXPECT_EQ(end.m_linkText, "");
}

TEST_F(ZNLoaderLinks, EndIsSodByARoutingIdOrAChanend) {
    readLink("Flags='SOD'", "<LinkEndpoint Link='1'/><LinkEndpoint RoutingId='2' Chanend='3' NodeId='d'/>");
    auto& end = dynamic_cast<ZNLoader::ZlinkSodEnd&>(*loader.m_links.at(0)->m_end1);
    EXPECT_EQ(end.m_routingIdText, "2");
    EXPECT_EQ(end.m_chanendText, "3");
    EXPECT_EQ(end.m_nodeId, "d");
}

TEST_F(ZNLoaderLinks, EndThatIsNormalKnowsNoSodAttributes) {
    readLink("Flags='sod'",
             "<LinkEndpoint Link='1' RoutingId='2' Chanend='3'/><LinkEndpoint RoutingId='1'/>");
    EXPECT_TRUE(loader.m_links.at(0)->m_end0->isNormal());
    EXPECT_EQ(warnings,
              "zn:1 Warning: ZN11029 Endpoint node contains unknown attribute \"RoutingId\"; ignoring.\n"
              "zn:1 Warning: ZN11029 Endpoint node contains unknown attribute \"Chanend\"; ignoring.\n");
}

TEST_F(ZNLoaderLinks, EndThatIsSodKnowsNoLink) {
    readLink("Flags='sod'", "<LinkEndpoint Chanend='3' Link='1'/><LinkEndpoint Link='1'/>");
    EXPECT_FALSE(loader.m_links.at(0)->m_end0->isNormal());
    EXPECT_EQ(warnings,
              "zn:1 Warning: ZN11029 Endpoint node contains unknown attribute \"Link\"; ignoring.\n");
}

// ---- Scan chain ----

class ZNLoaderScanChain : public ReadingTest {
protected:
    // A chain over the nodes a, b, c and d.
    void readChain(const std::string& entries, const std::string& attributes = "") {
        read("<Network><Nodes><Node Id='a' Type='L1'/><Node Id='b' Type='L1'/><Node Id='c' Type='L1'/>"
             "<Node Id='d' Type='device:x'/></Nodes>\n<JTAGChain " +
             attributes + ">" + entries + "</JTAGChain></Network>");
    }

    std::string chain() const {
        std::string ids;
        for (const ZNLoader::Node* node : loader.m_jtagNodes)
            ids += node->m_id;
        return ids;
    }
};

TEST_F(ZNLoaderScanChain, KeepsDocumentOrderWithoutPositions) {
    readChain("<JTAGDevice NodeId='c'/><JTAGDevice NodeId='a'/><JTAGDevice NodeId='b'/>");
    EXPECT_EQ(chain(), "cab");
    EXPECT_EQ(loader.m_jtagChainElement->getLineNum(), 2u);
}

TEST_F(ZNLoaderScanChain, IsSortedByPosition) {
    readChain("<JTAGDevice NodeId='a' Position='7'/><JTAGDevice NodeId='b' Position='-1'/>");
    EXPECT_EQ(chain(), "ba");
}

TEST_F(ZNLoaderScanChain, CountsOnFromAPosition) {
    readChain("<JTAGDevice NodeId='a' Position='2'/><JTAGDevice NodeId='b'/><JTAGDevice NodeId='c' "
              "Position='1'/>");
    EXPECT_EQ(chain(), "cab"); // 1, 2, 3
}

TEST_F(ZNLoaderScanChain, KeepsDocumentOrderOfEqualPositions) {
    readChain("<JTAGDevice NodeId='b' Position='1'/><JTAGDevice NodeId='c' Position='1'/>"
              "<JTAGDevice NodeId='a' Position='1'/>");
    EXPECT_EQ(chain(), "bca");
}

TEST_F(ZNLoaderScanChain, CountsOnFromTheLastPositionThereIs) {
    readChain("<JTAGDevice NodeId='a' Position='0x7fffffff'/><JTAGDevice NodeId='b'/>");
    EXPECT_EQ(chain(), "ba"); // the counter wraps
}

TEST_F(ZNLoaderScanChain, MayHaveASpaceAtEachEnd) {
    readChain("<JTAGSpace Devices='1' BitLength='4'/><JTAGDevice NodeId='a'/><JTAGSpace Devices='2' "
              "BitLength='0x10' Position='9'/>");
    EXPECT_EQ(chain(), "a");
    EXPECT_EQ(loader.m_jtagPreDevices, 1);
    EXPECT_EQ(loader.m_jtagPreBits, 4);
    EXPECT_EQ(loader.m_jtagPostDevices, 2);
    EXPECT_EQ(loader.m_jtagPostBits, 16);
}

TEST_F(ZNLoaderScanChain, TakesASingleSpaceAsALeadingOne) {
    readChain("<JTAGSpace Devices='3'/>");
    EXPECT_EQ(loader.m_jtagPreDevices, 3);
    EXPECT_EQ(loader.m_jtagPreBits, 0);
    EXPECT_EQ(loader.m_jtagPostDevices, 0);
}

TEST_F(ZNLoaderScanChain, HasAMaximumFrequency) {
    readChain("", "MaxFrequency='10kHz'");
    EXPECT_EQ(loader.m_jtagMaxFrequency, 10000);
}

TEST_F(ZNLoaderScanChain, MayHoldADevice) {
    readChain("<JTAGDevice NodeId='d'/>");
    EXPECT_EQ(chain(), "d");
}

TEST_F(ZNLoaderScanChain, GivenTwiceAddsItsNodesAndReplacesTheRest) {
    read("<Network><Nodes><Node Id='d' Type='device:x'/></Nodes>"
         "<JTAGChain MaxFrequency='1Hz'><JTAGSpace Devices='3'/><JTAGDevice NodeId='d'/></JTAGChain>\n"
         "<JTAGChain><JTAGDevice NodeId='d'/></JTAGChain></Network>");
    EXPECT_EQ(chain(), "dd");
    EXPECT_EQ(loader.m_jtagPreDevices, 0);
    EXPECT_EQ(loader.m_jtagMaxFrequency, 0);
    EXPECT_EQ(loader.m_jtagChainElement->getLineNum(), 2u);
}

TEST_F(ZNLoaderScanChain, PrintsALineForEachAttributeAheadOfReadingIt) {
    const ChildResult result = runInChild([&] {
        std::fputs(thrownBy([&] { readChain("", "Oddity='1' MaxFrequency='x1' MaxFrequency='2'"); }).c_str(),
                   stdout);
    });
    EXPECT_EQ(result.error, "readJTAGChain attrs : 0\nreadJTAGChain attrs : 1\n");
    EXPECT_EQ(result.output, "zn:2 Error: ZN11060 Frequency (\"x1\") cannot be parsed.\n");
}
