#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>
#include <iostream>
#include <string>

namespace {

std::string thrownBy(ErrorHandler& handler, const std::string& text) {
    try {
        handler.fatalError(true, "%s", text.c_str());
    } catch (const std::string& thrown) {
        return thrown;
    }
    return "nothing";
}

} // namespace

TEST(CatchableErrorHandler, ThrowsTheMessageWithItsLineEndAndPrintsNothing) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        std::cout << '<' << thrownBy(handler, "x\n") << '>' << std::flush;
    });
    EXPECT_EQ(result.output, "<x\n>");
    EXPECT_EQ(result.error, "");
}

TEST(CatchableErrorHandler, PrintsAndReturnsOnceExitIsSwitchedOff) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        handler.setExitOnError(false);
        handler.fatalError(true, "x\n");
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "x\n");
}

TEST(CatchableErrorHandler, PrintsAMessageThatMayNotExit) {
    const ChildResult result = runInChild([] { CatchableErrorHandler().fatalError(false, "x\n"); });
    EXPECT_EQ(result.error, "x\n");
}

TEST(CatchableErrorHandler, TraceOnErrorWritesAThrownMessageToStandardOutputAlone) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        handler.setTraceOnError(true);
        thrownBy(handler, "x\n");
    });
    EXPECT_EQ(result.output, "x\n");
    EXPECT_EQ(result.error, "");
}

TEST(CatchableErrorHandler, TraceOnErrorWritesAPrintedMessageToBothStreams) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        handler.setTraceOnError(true);
        handler.fatalError(false, "x\n");
    });
    EXPECT_EQ(result.output, "x\n");
    EXPECT_EQ(result.error, "x\n");
}

TEST(CatchableErrorHandler, CutsAMessageAfter65535Bytes) {
    CatchableErrorHandler handler;
    const std::string longest(65'535, 'x');
    EXPECT_EQ(thrownBy(handler, longest), longest);
    EXPECT_EQ(thrownBy(handler, longest + "\n"), longest);
    EXPECT_EQ(thrownBy(handler, std::string(200'000, 'x')), longest);
}

TEST(CatchableErrorHandler, CutsAPrintedMessageToo) {
    const ChildResult result =
        runInChild([] { CatchableErrorHandler().fatalError(false, "%s", std::string(70'000, 'x').c_str()); });
    EXPECT_EQ(result.error, std::string(65'535, 'x'));
}

namespace {

__attribute__((format(printf, 3, 4))) void callFatalVError(ErrorHandler& handler, bool exit,
                                                           const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    try {
        handler.fatalVError(exit, format, arguments);
    } catch (const std::string& thrown) {
        std::cout << '<' << thrown << '>' << std::flush;
    }
    va_end(arguments);
}

} // namespace

TEST(CatchableErrorHandler, FatalVErrorThrowsAndIsNeverCopiedToStandardOutput) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        handler.setTraceOnError(true);
        callFatalVError(handler, true, "node %d\n", 7);
    });
    EXPECT_EQ(result.output, "<node 7\n>");
    EXPECT_EQ(result.error, "");
}

TEST(CatchableErrorHandler, FatalVErrorPrintsWhatMayNotExit) {
    const ChildResult result = runInChild([] {
        CatchableErrorHandler handler;
        handler.setTraceOnError(true);
        callFatalVError(handler, false, "node %d\n", 7);
    });
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "node 7\n");
}
