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

TEST(CatchableErrorHandler, ThrowsAMessageOfAnyLengthWhole) {
    CatchableErrorHandler handler;
    const std::string text(200'000, 'x');
    EXPECT_EQ(thrownBy(handler, text), text);
}
