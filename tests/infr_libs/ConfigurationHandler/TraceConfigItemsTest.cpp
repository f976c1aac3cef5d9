// What `ErrorHandler` reads from a configuration.

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/OwnedUtils.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr char s_allNames[] = "<TraceConfig value='true'>"
                              "<Trace name='TRACE_SWITCH_DATA' value='true'/>"
                              "<Trace name='TRACE_SWITCH_CTRL' value='true'/>"
                              "<Trace name='TRACE_ISTREAM' value='true'/>"
                              "<Trace name='TRACE_ASYNC' value='true'/>"
                              "<Trace name='TRACE_MEM' value='true'/>"
                              "<Trace name='TRACE_CHECKER' value='true'/>"
                              "<Trace name='TRACE_PRDTG' value='true'/>"
                              "</TraceConfig>";

// The numbers of the types that are on, as digits.
std::string typesOn(const ErrorHandler& handler) {
    std::string types;
    for (int type = 0; type < ErrorHandler::s_numTraceTypes; ++type)
        if (handler.getTraceConfig(type))
            types += static_cast<char>('0' + type);
    return types;
}

} // namespace

TEST(TraceConfigItems, ATypeThatIsOffIsNamedToo) {
    const ChildResult result = runInChild([] {
        const ParsedText document(
            "<TraceConfig value='true'><Trace name='TRACE_MEM' value='false'/></TraceConfig>");
        ErrorHandler handler;
        handler.handleTraceConfigItems(&*document);
        handler.setTraceConfig(4, true);
        handler.trace(4, true, "m\n");
    });
    EXPECT_EQ(result.output, "TRACE_MEM m\n");
}

// The leak check sees a string that was left.
TEST(TraceConfigItems, ASecondNameIsReported) {
    const ParsedText document(
        "<TraceConfig value='true'>"
        "<Trace name='a name that is too long for a string to hold in itself' name='b'/>"
        "</TraceConfig>");
    ErrorHandler handler;
    EXPECT_NE(thrownBy([&] { handler.handleTraceConfigItems(&*document); }), "nothing thrown");
}

TEST(TraceConfigItems, TurnOnEachTypeAndNameItsLines) {
    const ChildResult result = runInChild([] {
        const ParsedText document(s_allNames);
        ErrorHandler handler;
        handler.handleTraceConfigItems(&*document);
        for (int type = 0; type < ErrorHandler::s_numTraceTypes; ++type)
            handler.trace(type, true, "%d\n", type);
    });
    EXPECT_EQ(result.output, "TRACE_SWITCH_DATA 0\n"
                             "TRACE_SWITCH_CTRL 1\n"
                             "TRACE_ISTREAM 2\n"
                             "TRACE_ASYNC 3\n"
                             "TRACE_MEM 4\n"
                             "TRACE_CHECKER 5\n"
                             "TRACE_PRDTG 6\n");
}

TEST(TraceConfigItems, APrefixGoesToStandardOutputAndItsLineToTheTarget) {
    const TemporaryFolder folder;
    const ChildResult result = runInChild([&] {
        const ParsedText document(s_allNames);
        ErrorHandler handler;
        handler.setTarget(folder.file("trace").c_str());
        handler.handleTraceConfigItems(&*document);
        handler.trace(3, true, "m\n");
    });
    EXPECT_EQ(result.output, "TRACE_ASYNC ");
    EXPECT_EQ(folder.read("trace"), "m\n");
}

TEST(TraceConfigItems, AValueMayBeMissingWhileTheParentIsOff) {
    const ParsedText document("<TraceConfig value='false'><Trace name='TRACE_MEM'/></TraceConfig>");
    CatchableErrorHandler handler;
    EXPECT_NO_THROW(handler.handleTraceConfigItems(&*document));
    EXPECT_EQ(typesOn(handler), "");
}

TEST(TraceConfigItems, AMissingValueIsAnErrorWhileTheParentIsOn) {
    const ParsedText document("<TraceConfig value='true'><Trace name='TRACE_MEM'/></TraceConfig>");
    CatchableErrorHandler handler;
    EXPECT_EQ(thrownBy([&] { handler.handleTraceConfigItems(&*document); }),
              "doc.xml:1: error: missing required attribute 'value' in node 'Trace'\n");
}

TEST(TraceConfigItems, AParentWithoutAValueIsAnError) {
    const ParsedText document("<TraceConfig/>");
    CatchableErrorHandler handler;
    EXPECT_EQ(thrownBy([&] { handler.handleTraceConfigItems(&*document); }),
              "doc.xml:1: error: missing required attribute 'value' in node 'TraceConfig'\n");
}

TEST(TraceConfigItems, AParentThatIsOffTurnsNothingOn) {
    const ParsedText document(
        "<TraceConfig value='false'><Trace name='TRACE_MEM' value='true'/></TraceConfig>");
    CatchableErrorHandler handler;
    handler.handleTraceConfigItems(&*document);
    EXPECT_EQ(typesOn(handler), "");
}

TEST(TraceConfigItems, FalseTurnsNothingOff) {
    const ParsedText document(
        "<TraceConfig value='true'><Trace name='TRACE_MEM' value='false'/></TraceConfig>");
    CatchableErrorHandler handler;
    handler.setTraceConfig(4, true);
    handler.handleTraceConfigItems(&*document);
    EXPECT_EQ(typesOn(handler), "4");
}

TEST(TraceConfigItems, AnUnknownNameIsFatal) {
    const ParsedText document("<TraceConfig value='true'><Trace name='TRACE_X' value='true'/></TraceConfig>");
    CatchableErrorHandler handler;
    EXPECT_EQ(thrownBy([&] { handler.handleTraceConfigItems(&*document); }),
              "Unrecognised trace config: TRACE_X\n");
}

TEST(TraceConfigItems, AnUnknownNameIsFiledUnderTypeZeroOnceItsReportReturned) {
    const ChildResult result = runInChild([] {
        const ParsedText document(
            "<TraceConfig value='true'><Trace name='TRACE_X' value='true'/></TraceConfig>");
        ErrorHandler handler;
        handler.setExitOnError(false);
        handler.handleTraceConfigItems(&*document);
        handler.trace(0, true, "m\n");
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "Unrecognised trace config: TRACE_X\n");
    EXPECT_EQ(result.output, "TRACE_X m\n");
}

TEST(TraceConfigItems, AnotherElementIsReportedAndTheNextOneTaken) {
    OwnedUtils<CollectingErrorHandler> utils;
    std::istringstream stream("<TraceConfig value='true'><Plugin/><Trace name='TRACE_MEM' value='true'/>"
                              "</TraceConfig>");
    const XmlParser parser("doc.xml", utils.get(), &stream);
    utils.handler.handleTraceConfigItems(parser.getRoot());
    EXPECT_THAT(
        utils.handler.messages(),
        testing::ElementsAre("doc.xml:1: error: unrecognised subnode 'Plugin' in node 'TraceConfig'\n"));
    EXPECT_EQ(typesOn(utils.handler), "4");
}

TEST(TraceConfigItems, AnItemWithoutANameIsReportedAndPassedOver) {
    OwnedUtils<CollectingErrorHandler> utils;
    std::istringstream stream("<TraceConfig value='true'><Trace value='true'/></TraceConfig>");
    const XmlParser parser("doc.xml", utils.get(), &stream);
    utils.handler.handleTraceConfigItems(parser.getRoot());
    EXPECT_THAT(
        utils.handler.messages(),
        testing::ElementsAre("doc.xml:1: error: missing required attribute 'name' in node 'Trace'\n"));
    EXPECT_EQ(typesOn(utils.handler), "");
}
