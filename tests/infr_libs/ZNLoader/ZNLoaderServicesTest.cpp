// Services: prototypes, and the values of their channel ends.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"

class ZNLoaderServices : public ReadingTest {
protected:
    // A service on a core, from the second line on.
    const ZNLoader::DeviceServiceInfo& readService(const std::string& attributes,
                                                   const std::string& children = "") {
        read("<Network><Nodes><Node Id='a' Type='L1'><Core>\n<Service " + attributes + ">" + children +
             "</Service></Core></Node></Nodes></Network>");
        return *core(0, 0).m_services.at(0);
    }

    static std::string names(const ZNLoader::DeviceServiceInfo& service) {
        std::string names;
        for (const ZNLoader::ChanendInfo* chanend : service.m_chanends)
            names += chanend->m_identifier + " ";
        return names;
    }

    std::string signature(const std::string& proto) {
        std::string name;
        return loader.ensigProto(proto, name, nullptr);
    }
};

TEST_F(ZNLoaderServices, HaveASignatureAndAName) {
    const auto& service = readService("Id='7' Proto='void f(chanend a, chanend b)'",
                                      "<Chanend Identifier='a' End='1'/><Chanend Identifier='b' End='2'/>");
    EXPECT_EQ(service.m_id, "7");
    EXPECT_EQ(service.m_proto, "void f(chanend a, chanend b)");
    EXPECT_EQ(service.m_sig, "fS{0}(chd,chd)");
    EXPECT_EQ(service.m_name, "void f");
    EXPECT_FALSE(service.m_sod);
}

TEST_F(ZNLoaderServices, CountTheChannelEndsOfASignatureToTheEndOfTheText) {
    EXPECT_EQ(signature("f()"), "fS{0}()");
    EXPECT_EQ(signature("f(chanend) chanend"), "fS{0}(chd,chd)");
    EXPECT_EQ(signature("chanend f(int x)"), "fS{0}()");
    EXPECT_EQ(signature(")("), "fS{0}()");
}

TEST_F(ZNLoaderServices, OrderTheirChannelEndsByParameter) {
    const auto& service = readService("Proto='void f(chanend a, chanend b)'",
                                      "<Chanend Identifier='b' End='2'/><Chanend Identifier='a' End='1'/>");
    EXPECT_EQ(names(service), "a b ");
    EXPECT_EQ(service.m_chanends[0]->m_end, 1u);
}

TEST_F(ZNLoaderServices, HaveNoChannelEndWithoutAParameter) {
    EXPECT_EQ(thrownBy([&] {
                  readService("Proto='void f(chanend a, chanend b)'",
                              "<Chanend Identifier='a' End='1'/><Chanend Identifier='b' End='2'/>\n"
                              "<Chanend Identifier='c' End='3'/>\n<Chanend Identifier='d' End='4'/>");
              }),
              "zn:3 Error: ZN11024 Channel end does not match any formal parameter.\n"
              "zn:4 Error: ZN11024 Channel end does not match any formal parameter.\n");
}

TEST_F(ZNLoaderServices, HaveAChannelEndForEachParameter) {
    EXPECT_EQ(thrownBy([&] {
                  readService("Proto='void f(chanend a, chanend b)'", "<Chanend Identifier='a' End='1'/>");
              }),
              "zn:2 Error: ZN11023 Value of chanend \"b\" not specified.\n");
}

TEST_F(ZNLoaderServices, NeedAPrototype) {
    EXPECT_EQ(thrownBy([&] { readService(""); }),
              "zn:2 Error: ZN11022 Unable to parse service function prototype ('(' not found).\n");
}

TEST_F(ZNLoaderServices, MayHaveBlanksAroundTheirParameters) {
    EXPECT_EQ(names(readService("Proto='f(in chanend \t a ,chanend b)'",
                                "<Chanend Identifier='a' End='1'/><Chanend Identifier='b' End='2'/>")),
              "a b ");
}

TEST_F(ZNLoaderServices, SkipOneCharacterBehindTheWordChanendWhateverItIs) {
    EXPECT_EQ(names(readService("Proto='f(chanend_a)'", "<Chanend Identifier='a' End='1'/>")), "a ");
}

TEST_F(ZNLoaderServices, MayHaveTwoParametersOfOneName) {
    const auto& service = readService("Proto='f(chanend a, chanend a)'",
                                      "<Chanend Identifier='a' End='1'/><Chanend Identifier='a' End='2'/>");
    EXPECT_EQ(service.m_chanends.at(0)->m_end, 1u);
    EXPECT_EQ(service.m_chanends.at(1)->m_end, 2u);
}

TEST_F(ZNLoaderServices, MayEndWithTheWordChanendInTheirParameters) {
    EXPECT_EQ(thrownBy([&] { readService("Proto='f(chanend)'"); }),
              "zn:2 Error: ZN11023 Value of chanend \"\" not specified.\n");
}

TEST_F(ZNLoaderServices, MayEndWithTheWordChanendBehindTheirParameters) {
    EXPECT_EQ(thrownBy([&] { readService("Proto='f(x) chanend'"); }),
              "zn:2 Error: ZN11023 Value of chanend \"\" not specified.\n");
}

TEST_F(ZNLoaderServices, GiveNoUnnamedChannelEndToAWordChanendThatEndsTheirParameters) {
    EXPECT_EQ(thrownBy([&] { readService("Proto='f(chanend)'", "<Chanend End='1'/>"); }),
              "zn:2 Error: ZN11023 Value of chanend \"\" not specified.\n");
}

TEST_F(ZNLoaderServices, GiveNoUnnamedChannelEndToAWordChanendThatEndsTheText) {
    EXPECT_EQ(thrownBy([&] { readService("Proto='f(x) chanend'", "<Chanend End='1'/>"); }),
              "zn:2 Error: ZN11023 Value of chanend \"\" not specified.\n");
}

TEST_F(ZNLoaderServices, GiveNoUnnamedChannelEndToAWordChanendWithBlanksAloneBehindIt) {
    EXPECT_EQ(thrownBy([&] { readService("Proto='f(chanend) \t'", "<Chanend End='1'/>"); }),
              "zn:2 Error: ZN11023 Value of chanend \"\" not specified.\n");
}

TEST_F(ZNLoaderServices, GiveAnUnnamedChannelEndToAnUnnamedParameter) {
    const auto& service = readService("Proto='f(chanend )'", "<Chanend End='1'/>");
    ASSERT_EQ(service.m_chanends.size(), 1u);
    EXPECT_EQ(service.m_chanends[0]->m_end, 1u);
}

TEST_F(ZNLoaderServices, PassOverParametersWhenTheParenthesesAreReversed) {
    EXPECT_EQ(names(readService("Proto='f)chanend a('")), "");
}

TEST_F(ZNLoaderServices, OfTheSodKindOnACoreSendToWhereTheyListen) {
    const auto& service = readService(
        "Proto='f(chanend a, chanend b)' Flags='SOD'",
        "<Chanend Identifier='a' End='2:3' Remote='9'/><Chanend Identifier='b' End='5' Remote='8'/>");
    EXPECT_TRUE(service.m_sod);
    EXPECT_EQ(service.m_chanends.at(0)->m_remote, 0x203u);
    EXPECT_TRUE(service.m_chanends.at(0)->m_remoteHasNode);
    EXPECT_TRUE(service.m_chanends.at(0)->m_remoteHasNumber);
    EXPECT_EQ(service.m_chanends.at(0)->m_remoteText, "9");
    EXPECT_EQ(service.m_chanends.at(1)->m_remote, 8u); // its end names no node
}

TEST_F(ZNLoaderServices, OfTheSodKindOnADeviceKeepTheirRemotes) {
    read("<Network><Nodes><Node Type='device:x'><Service Proto='f(chanend a)' Flags='sod'>"
         "<Chanend Identifier='a' End='2:3' Remote='9'/></Service></Node></Nodes></Network>");
    EXPECT_EQ(node<ZNLoader::DeviceNode>(0).m_services.at(0)->m_chanends.at(0)->m_remote, 9u);
}

// ---- Values ----

class ZNLoaderChanend : public ZNLoaderServices {
protected:
    const ZNLoader::ChanendInfo& readEnd(const std::string& attributes) {
        return *readService("Proto='f(chanend a)'", "<Chanend Identifier='a' " + attributes + "/>")
                    .m_chanends.at(0);
    }
};

TEST_F(ZNLoaderChanend, MayBeAChannelAlone) {
    const auto& chanend = readEnd("End='5'");
    EXPECT_EQ(chanend.m_endText, "5");
    EXPECT_EQ(chanend.m_end, 5u);
    EXPECT_FALSE(chanend.m_endHasNode);
    EXPECT_TRUE(chanend.m_endHasNumber);
}

TEST_F(ZNLoaderChanend, MayBeAChannelBehindAColonAlone) {
    const auto& chanend = readEnd("End=':5'");
    EXPECT_EQ(chanend.m_end, 5u);
    EXPECT_TRUE(chanend.m_endHasNode);
    EXPECT_TRUE(chanend.m_endHasNumber);
}

TEST_F(ZNLoaderChanend, MayBeANodeAlone) {
    const auto& chanend = readEnd("End='3:'");
    EXPECT_EQ(chanend.m_end, 0x300u);
    EXPECT_TRUE(chanend.m_endHasNode);
    EXPECT_FALSE(chanend.m_endHasNumber);
}

TEST_F(ZNLoaderChanend, MayBeEmpty) {
    const auto& chanend = readEnd("End=''");
    EXPECT_EQ(chanend.m_end, 0u);
    EXPECT_FALSE(chanend.m_endHasNode);
    EXPECT_FALSE(chanend.m_endHasNumber);
}

TEST_F(ZNLoaderChanend, IsSplitAtItsLastColon) {
    EXPECT_EQ(readEnd("End='1:2:3'").m_end, 0x103u);
}

TEST_F(ZNLoaderChanend, MayHaveANegativeNode) {
    EXPECT_EQ(readEnd("End='-1:2'").m_end, 0xffffff02u);
}

TEST_F(ZNLoaderChanend, HasARemoteOfTheSameForm) {
    const auto& chanend = readEnd("Remote='0x10:4'");
    EXPECT_EQ(chanend.m_remoteText, "0x10:4");
    EXPECT_EQ(chanend.m_remote, 0x1004u);
    EXPECT_TRUE(chanend.m_remoteHasNode);
    EXPECT_TRUE(chanend.m_remoteHasNumber);
    EXPECT_EQ(chanend.m_element->getLineNum(), 2u);
}

TEST_F(ZNLoaderChanend, HasAnEndOfItsOwn) {
    EXPECT_EQ(thrownBy([&] {
                  readService("Proto='f()'", "<Chanend Identifier='a' End='0:5'/>\n"
                                             "<Chanend Identifier='b' End='6'/>\n"
                                             "<Chanend Identifier='c' End='5'/>");
              }),
              "zn:4 Error: ZN11020 Duplicate channel end value (previous was \"a\").\n");
}

TEST_F(ZNLoaderChanend, IsComparedByItsEndBehindARemoteToo) {
    EXPECT_EQ(thrownBy([&] {
                  readService("Proto='f()'", "<Chanend Identifier='a' Remote='1' End='1'/>\n"
                                             "<Chanend Identifier='b' Remote='2' End='0'/>\n"
                                             "<Chanend Identifier='c' Remote='3'/>");
              }),
              "zn:4 Error: ZN11020 Duplicate channel end value (previous was \"b\").\n");
}
