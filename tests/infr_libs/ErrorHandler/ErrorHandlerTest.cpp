#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include "infr_libs/ErrorHandler/PrintLeaks.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gtest/gtest.h>

TEST(ErrorHandler, AMessageThatMayNotExitIsPrintedAndTheCallReturns) {
    const ChildResult result = runInChild([] { ErrorHandler().fatalError(false, "node %d\n", 7); });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "node 7\n");
    EXPECT_EQ(result.output, "");
}

TEST(ErrorHandler, AFatalMessageEndsTheProcessWithStatusOne) {
    const ChildResult result = runInChild([] { ErrorHandler().fatalError(true, "node %d\n", 7); });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "node 7\n");
}

TEST(ErrorHandler, AFatalMessageReturnsOnceExitIsSwitchedOff) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setExitOnError(false);
        handler.fatalError(true, "x\n");
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "x\n");
}

TEST(ErrorHandler, TraceOnErrorCopiesAFatalMessageToStandardOutput) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setTraceOnError(true);
        handler.fatalError(false, "%s\n", "text");
    });
    EXPECT_EQ(result.error, "text\n");
    EXPECT_EQ(result.output, "text\n");
}

namespace {

__attribute__((format(printf, 3, 4))) void callFatalVError(ErrorHandler& handler, bool exit,
                                                           const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    handler.fatalVError(exit, format, arguments);
    va_end(arguments);
}

__attribute__((format(printf, 2, 3))) void callVTrace(ErrorHandler& handler, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    handler.vTrace(format, arguments);
    va_end(arguments);
}

} // namespace

TEST(ErrorHandler, FatalVErrorIsNeverCopiedToStandardOutput) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setTraceOnError(true);
        callFatalVError(handler, true, "%d\n", 3);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "3\n");
    EXPECT_EQ(result.output, "");
}

TEST(ErrorHandler, FatalVErrorReturnsWhereItMayNotExit) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        callFatalVError(handler, false, "%d\n", 1);
        handler.setExitOnError(false);
        callFatalVError(handler, true, "%d\n", 2);
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "1\n2\n");
}

TEST(ErrorHandler, TraceGoesToStandardOutputWithoutATarget) {
    const ChildResult result = runInChild([] { ErrorHandler().trace("a %d\n", 1); });
    EXPECT_EQ(result.output, "a 1\n");
}

TEST(ErrorHandler, TraceGoesToTheTarget) {
    const TemporaryFolder folder;
    ErrorHandler handler;
    handler.setTarget(folder.file("trace").c_str());
    handler.trace("a %d\n", 1);
    EXPECT_EQ(folder.read("trace"), "a 1\n");
}

TEST(ErrorHandler, ATargetBeginsEmpty) {
    const TemporaryFolder folder;
    const std::string file = folder.write("trace", "of an earlier run");
    ErrorHandler handler;
    handler.setTarget(file.c_str());
    handler.trace("a\n");
    EXPECT_EQ(folder.read("trace"), "a\n");
}

// The leak check sees a file that stays open.
TEST(ErrorHandler, ANewTargetClosesTheOneBefore) {
    const TemporaryFolder folder;
    ErrorHandler handler;
    handler.setTarget(folder.file("first").c_str());
    const int descriptor = fileno(handler.getTarget());
    handler.setTarget(folder.file("second").c_str());
    EXPECT_EQ(fileno(handler.getTarget()), descriptor);
}

TEST(ErrorHandler, ATargetThatCantBeOpenedMeansStandardOutput) {
    const TemporaryFolder folder;
    ErrorHandler handler;
    handler.setTarget(folder.file("none/trace").c_str());
    EXPECT_EQ(handler.getTarget(), stdout);
}

TEST(ErrorHandler, ANullTargetClosesTheFileAndMeansStandardOutput) {
    const TemporaryFolder folder;
    ErrorHandler handler;
    handler.setTarget(folder.file("trace").c_str());
    EXPECT_NE(handler.getTarget(), stdout);
    handler.setTarget(nullptr);
    EXPECT_EQ(handler.getTarget(), stdout);
}

TEST(ErrorHandler, GdbMiTracingMakesOneRecordOfAMessageWithTwoLines) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setGdbMiTracing(true);
        handler.trace("first \"%s\"\nsecond\\\n", "q");
    });
    EXPECT_EQ(result.output, "@\"first \"q\"\\nsecond\\\\n\"\n");
}

TEST(ErrorHandler, GdbMiTracingGoesToTheTarget) {
    const TemporaryFolder folder;
    const ChildResult result = runInChild([&] {
        ErrorHandler handler;
        handler.setTarget(folder.file("trace").c_str());
        handler.setGdbMiTracing(true);
        handler.trace("a\n");
        std::printf("%s", folder.read("trace").c_str()); // it has reached the file
    });
    EXPECT_EQ(result.output, "@\"a\\n\"\n");
}

TEST(ErrorHandler, GdbMiTracingCutsAMessageAfter1023Characters) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setGdbMiTracing(true);
        handler.trace("%s", std::string(2000, 'x').c_str());
    });
    EXPECT_EQ(result.output, "@\"" + std::string(1023, 'x') + "\"\n");
}

TEST(ErrorHandler, VTraceIgnoresGdbMiTracing) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setGdbMiTracing(true);
        callVTrace(handler, "a\n%d\n", 5);
    });
    EXPECT_EQ(result.output, "a\n5\n");
}

TEST(ErrorHandler, ATypedTraceWritesNothingWhileTheTypeIsOff) {
    const ChildResult result = runInChild([] { ErrorHandler().trace(3, true, "m\n"); });
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "");
}

TEST(ErrorHandler, ATypedTraceWritesItsPrefixToStandardOutputAndItsMessageToTheTarget) {
    // The prefix comes from the configuration's name of the type; a subclass may name it as well.
    struct Named : ErrorHandler {
        Named() { m_traceTypes[3].setTraceString("TRACE_ASYNC"); }
    };
    const TemporaryFolder folder;
    const ChildResult result = runInChild([&] {
        Named handler;
        handler.setTarget(folder.file("trace").c_str());
        handler.setTraceConfig(3, true);
        handler.setGdbMiTracing(true); // has no effect on typed traces
        handler.trace(3, true, "m\n");
    });
    EXPECT_EQ(result.output, "TRACE_ASYNC ");
    EXPECT_EQ(folder.read("trace"), "m\n");
}

TEST(ErrorHandler, APrefixThatWasNeverNamedFailsAnAssertion) {
    const ChildResult result = runInChild([] {
        ErrorHandler handler;
        handler.setTraceConfig(0, true);
        handler.trace(0, true, "m\n");
    });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_NE(result.error.find("Assertion `m_traceString != __null' failed."), std::string::npos);
}

TEST(ErrorHandler, AnUnknownTraceTypeIsReportedAndNothingIsWritten) {
    const ChildResult result = runInChild([] { ErrorHandler().trace(7, true, "m\n"); });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "unknown trace type: 7\n");
    EXPECT_EQ(result.output, "");
}

TEST(ErrorHandler, ANegativeTraceTypeIsIgnored) {
    const ChildResult result = runInChild([] { ErrorHandler().trace(-1, true, "m\n"); });
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, "");
}

TEST(ErrorHandler, TraceTypesAreOffUntilTheyAreTurnedOn) {
    ErrorHandler handler;
    for (int type = 0; type < ErrorHandler::s_numTraceTypes; ++type)
        EXPECT_FALSE(handler.getTraceConfig(type)) << type;
    handler.setTraceConfig(6, true);
    EXPECT_TRUE(handler.getTraceConfig(6));
    handler.setTraceConfig(6, false);
    EXPECT_FALSE(handler.getTraceConfig(6));
}

TEST(ErrorHandler, ATraceTypeThatDoesntExistIsOffAndStaysOff) {
    ErrorHandler handler;
    for (int type : {-1, 7}) {
        handler.setTraceConfig(type, true);
        EXPECT_FALSE(handler.getTraceConfig(type));
    }
}

TEST(TraceType, KeepsACopyOfTheLastText) {
    TraceType type;
    std::string text = "TRACE_MEM";
    type.setTraceString(text.c_str());
    text[0] = 'x';
    EXPECT_STREQ(type.getTraceString(), "TRACE_MEM");
    type.setTraceString("TRACE_PRDTG");
    EXPECT_STREQ(type.getTraceString(), "TRACE_PRDTG");
}

TEST(PrintLeaks, DoesNothing) {
    const ChildResult result = runInChild([] { PrintLeaks(); });
    EXPECT_EQ(result.output + result.error, "");
}
