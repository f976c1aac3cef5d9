#include "infr_libs/AutoDefines/AutoDefines.h"

#include "infr_libs/AutoDefines/zs1bAutoDefines.h"
#include "infr_libs/AutoDefines/zs1cAutoDefines.h"
#include "infr_libs/AutoDefines/zs2aAutoDefines.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/OwnedUtils.h"

#include <gtest/gtest.h>

namespace {

using Created = std::unique_ptr<AutoDefines>;

Created createById(unsigned jtagId) {
    CatchableErrorHandler handler;
    return Created(AutoDefines::createAutoDefines(jtagId, &handler));
}

Created createFrom(const std::string& text) {
    CatchableErrorHandler handler;
    const ParsedText document(text);
    return Created(AutoDefines::createAutoDefines(&*document, &handler));
}

} // namespace

// --- Which architecture

TEST(AutoDefines, ChoosesTheArchitectureByTheIdentifier) {
    EXPECT_NE(dynamic_cast<zs1bAutoDefines*>(createById(0x2731).get()), nullptr);
    EXPECT_NE(dynamic_cast<zs1bAutoDefines*>(createById(0xfff2731).get()), nullptr);
    EXPECT_NE(dynamic_cast<zs1cAutoDefines*>(createById(0x2633).get()), nullptr);
    EXPECT_NE(dynamic_cast<zs2aAutoDefines*>(createById(0x3633).get()), nullptr);
}

TEST(AutoDefines, TheArchitectureIsItsOwnIdentifier) {
    EXPECT_EQ(createById(0x2731)->getArch(), 0x2731U);
    EXPECT_EQ(createById(0xfff2731)->getArch(), 0x2731U);
    EXPECT_EQ(createById(0x2633)->getArch(), 0x2633U);
    EXPECT_EQ(createById(0x3633)->getArch(), 0x3633U);
}

TEST(AutoDefines, TheVersionInTheUpperFourBitsDoesntCount) {
    EXPECT_NE(dynamic_cast<zs1bAutoDefines*>(createById(0x10002731).get()), nullptr);
    EXPECT_NE(dynamic_cast<zs1bAutoDefines*>(createById(0xffff2731).get()), nullptr);
    EXPECT_EQ(createById(0xf0003633)->getArch(), 0x3633U);
}

TEST(AutoDefines, AnUnknownIdentifierIsFatalAndShownWithoutItsVersion) {
    EXPECT_EQ(thrownBy([] { createById(0x12731); }), "ERROR: unrecognised JTAG ID '0x12731'.\n");
    EXPECT_EQ(thrownBy([] { createById(0xafff1731); }), "ERROR: unrecognised JTAG ID '0xfff1731'.\n");
}

TEST(AutoDefines, AnUnknownIdentifierGivesNullOnceItsReportReturned) {
    CollectingErrorHandler handler;
    EXPECT_EQ(AutoDefines::createAutoDefines(0U, &handler), nullptr);
    EXPECT_THAT(handler.messages(), testing::ElementsAre("ERROR: unrecognised JTAG ID '0x0'.\n"));
}

TEST(AutoDefines, TheFirstElementOfADocumentsNodesDecidesWhateverItsName) {
    EXPECT_EQ(createFrom("<ZSystem><System><Nodes><Node jtagId='0x2633'/><Node jtagId='0x2731'/></Nodes>"
                         "</System></ZSystem>")
                  ->getArch(),
              0x2633U);
    EXPECT_EQ(createFrom("<Any><System><Nodes><GlxNode jtagId='10033'/><Node jtagId='0x3633'/></Nodes>"
                         "</System></Any>")
                  ->getArch(),
              0x2731U);
}

TEST(AutoDefines, AFirstElementWithoutAnIdentifierIsAnError) {
    EXPECT_EQ(thrownBy([] {
                  createFrom("<ZSystem><System><Nodes>\n<GlxNode/><Node jtagId='0x2633'/></Nodes></System>"
                             "</ZSystem>");
              }),
              "doc.xml:2: error: missing required attribute 'jtagId' in node 'GlxNode'\n");
}

TEST(AutoDefines, ADocumentWithoutANodeIsAnError) {
    const std::pair<const char*, const char*> rows[] = {
        {"<ZSystem><Nodes/></ZSystem>", "ERROR: No 'System' node defined in XML file\n"},
        {"<ZSystem><System/></ZSystem>", "ERROR: No 'Nodes' node in 'System' node\n"},
        {"<ZSystem><System><Nodes/></System></ZSystem>", "ERROR: No 'Node' in 'Nodes' node\n"},
    };
    for (const auto& [text, message] : rows) {
        EXPECT_EQ(thrownBy([text = text] { createFrom(text); }), message);

        const ParsedText document(text);
        CollectingErrorHandler handler;
        EXPECT_EQ(AutoDefines::createAutoDefines(&*document, &handler), nullptr);
        EXPECT_THAT(handler.messages(), testing::ElementsAre(message));
    }
}

// --- What the architectures say

TEST(AutoDefines, TellsTheArchitecturesApart) {
    const Created zs1b = createById(0x2731);
    const Created zs1c = createById(0x2633);
    const Created zs2a = createById(0x3633);
    EXPECT_EQ(zs1b->m_defaultSwitchLinks, 16U);
    EXPECT_EQ(zs1c->m_defaultSwitchLinks, 8U);
    EXPECT_EQ(zs2a->m_defaultSwitchLinks, 8U);
    EXPECT_STREQ(zs1b->m_date, "Wed Mar 21 20:26:48 2012");
    EXPECT_STREQ(zs1c->m_date, "Wed Mar 21 20:26:49 2012");
    EXPECT_STREQ(zs2a->m_date, "Wed Mar 21 20:26:49 2012");
    for (const AutoDefines* defines : {zs1b.get(), zs1c.get(), zs2a.get()}) {
        EXPECT_STREQ(defines->m_archName, "ZS1");
        EXPECT_STREQ(defines->m_revision, "REVB");
        EXPECT_EQ(defines->PORT_COUNTER_MASK(), 0x3fU);
    }
}

TEST(AutoDefines, CountsThePortsOfZs1b) {
    const Created defines = createById(0x2731);
    EXPECT_EQ(defines->NUM_PORTS(), 29U);
    EXPECT_EQ(defines->NUM_PERIPH_PORTS(), 3U);
}

TEST(AutoDefines, AnswersWhatIsntKnownWithNothing) {
    for (unsigned jtagId : {0x2731, 0x2633, 0x3633}) {
        const Created defines = createById(jtagId);
        EXPECT_EQ(defines->NUM_PADS(), 0U);
        EXPECT_EQ(defines->MAX_NUM_RESOURCES(), 0U);
        EXPECT_EQ(defines->SR_EXISTING_BITS(), 0U);
        EXPECT_EQ(defines->SSR_EXISTING_BITS(), 0U);
        EXPECT_EQ(defines->PORT_TIMER_MASK(), 0U);
        EXPECT_EQ(defines->NUM_PORTS() == 0, jtagId != 0x2731);
        EXPECT_EQ(defines->NUM_PERIPH_PORTS() == 0, jtagId != 0x2731);
    }
}

// --- Fields

TEST(AutoDefines, ThePortWidthIsInBits16To21) {
    for (unsigned jtagId : {0x2731, 0x2633, 0x3633}) {
        const Created defines = createById(jtagId);
        EXPECT_EQ(defines->RES_ID_PORTWIDTH(0x40100), 4U);
        EXPECT_EQ(defines->RES_ID_PORTWIDTH(0xffc0ffff), 0U);
        EXPECT_EQ(defines->RES_ID_PORTWIDTH(0xffffffff), 0x3fU);
    }
}

TEST(AutoDefines, AFieldThatWasSetReadsBack) {
    const Created defines = createById(0x2731);
#define EXPECT_FIELD_TO_READ_BACK(name, mask, shift, ...)                                                    \
    for (unsigned value = 0; value <= mask >> shift; ++value)                                                \
        EXPECT_EQ(defines->name(defines->name##_SET(0, value)), value) << #name;
    ZELM_REGISTER_FIELDS(EXPECT_FIELD_TO_READ_BACK)
}

TEST(AutoDefines, SettingAFieldLeavesTheOtherBitsAndCutsWhatIsTooWide) {
    const Created defines = createById(0x2633);
    EXPECT_EQ(defines->RES_ID_RESNUM_SET(0xffffffff, 0x12), 0xffff12ffU);
    EXPECT_EQ(defines->RES_ID_RESNUM_SET(0, 0xfff), 0xff00U);
    EXPECT_EQ(defines->RES_ID_PORTWIDTH_SET(0, 0x40), 0U);
}

TEST(AutoDefines, AResourceIdentifierIsMadeOfItsThreeFields) {
    const Created defines = createById(0x2731);
    EXPECT_EQ(defines->RES_ID(0, 2, 1), 0x10200U);
    EXPECT_EQ(defines->RES_ID(0x1ff, 0x1ff, 0x7f), 0x3fffffU);
    EXPECT_EQ(defines->RES_ID(0, 0x1ff, 0), 0xff00U);
}

TEST(RegisterFields, EveryFieldIsARunOfBitsThatBeginsAtItsShift) {
    const auto isRun = [](unsigned mask, unsigned shift) {
        if (mask == 0)
            return shift == 0;
        const unsigned value = shift < 32 ? mask >> shift : 0;
        return value << shift == mask && (value & 1) == 1 && (value & (value + 1)) == 0;
    };
#define EXPECT_RUNS(name, mask1b, shift1b, mask1c, shift1c, mask2a, shift2a)                                 \
    EXPECT_TRUE(isRun(mask1b, shift1b) && isRun(mask1c, shift1c) && isRun(mask2a, shift2a)) << #name;
    ZELM_REGISTER_FIELDS(EXPECT_RUNS)
}
