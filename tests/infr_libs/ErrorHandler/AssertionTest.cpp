#include "infr_libs/ErrorHandler/Assertion.h"

#include "tests/support/ChildProcess.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>

TEST(Assertion, EndsTheProcessWithTheConditionAsItIsWritten) {
    const ChildResult result = runInChild([] {
        const char* m_data = nullptr;
        ZELM_ASSERT(m_data != __null);
    });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_NE(result.error.find(": Assertion `m_data != __null' failed.\n"), std::string::npos)
        << result.error;
}

TEST(Assertion, NamesTheFileFromTheRootOfTheTree) {
    const ChildResult result = runInChild([] { ZELM_ASSERT(0); });
    EXPECT_NE(result.error.find(": tests/infr_libs/ErrorHandler/AssertionTest.cpp:"), std::string::npos)
        << result.error;
}

TEST(Assertion, LetsATrueConditionPass) {
    ZELM_ASSERT(1 + 1 == 2);
    SUCCEED();
}

TEST(Assertion, CallsTheHookAheadOfTheEnd) {
    g_assertionHook = [](const char* condition) { throw std::string(condition); };
    const int number = 1;
    try {
        ZELM_ASSERT(number == 2);
        FAIL();
    } catch (const std::string& condition) {
        EXPECT_EQ(condition, "number == 2");
    }
    g_assertionHook = nullptr;
}

TEST(Assertion, EndsTheProcessWhereTheHookReturns) {
    const ChildResult result = runInChild([] {
        g_assertionHook = [](const char*) {};
        ZELM_ASSERT(0);
    });
    EXPECT_EQ(result.signal, SIGABRT);
}
