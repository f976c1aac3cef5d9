#include "infr_libs/ErrorHandler/Assertion.h"

#include "tests/support/ChildProcess.h"

#include <csignal>
#include <gtest/gtest.h>

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
