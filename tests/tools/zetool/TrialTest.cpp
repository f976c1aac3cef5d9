#include "tools/zetool/Trial.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <csignal>

namespace {

using testing::ElementsAre;

TEST(Trial, TellsWhatAnOperationSays) {
    int number = 1;
    const Trial trial = tryOut([&] {
        number = 2;
        std::fprintf(stderr, "one\n\ntwo");
        std::printf("\nthree");
    });
    EXPECT_TRUE(trial.cameBack);
    EXPECT_THAT(trial.lines, ElementsAre("one", "two", "three"));
    EXPECT_EQ(number, 1); // in a process of its own
}

TEST(Trial, SurvivesAnExit) {
    const Trial trial = tryOut([] { ErrorHandler().fatalError(true, "ERROR: %d\n", 7); });
    EXPECT_FALSE(trial.cameBack);
    EXPECT_THAT(trial.lines, ElementsAre("ERROR: 7"));
    const Trial silent = tryOut([] { std::exit(0); });
    EXPECT_FALSE(silent.cameBack);
    EXPECT_THAT(silent.lines, ElementsAre("the process ends"));
}

TEST(Trial, SurvivesAnAssertionAndASignal) {
    const Trial trial = tryOut([] {
        const char* text = "Assertion `a' failed.";
        ZELM_ASSERT(text == nullptr);
    });
    EXPECT_FALSE(trial.cameBack);
    EXPECT_THAT(trial.lines, ElementsAre("the process aborts: 'text == nullptr' doesn't hold"));
    const Trial killed = tryOut([] { std::raise(SIGKILL); });
    EXPECT_FALSE(killed.cameBack);
    EXPECT_THAT(killed.lines, ElementsAre("the process ends by signal 9"));
}

TEST(Trial, TellsWhatAnOperationThrows) {
    EXPECT_THAT(tryOut([] { throw std::string("one\ntwo\n"); }).lines, ElementsAre("one", "two"));
    EXPECT_THAT(tryOut([] { throw std::runtime_error("reason"); }).lines, ElementsAre("reason"));
    EXPECT_THAT(tryOut([] { throw std::bad_alloc(); }).lines, ElementsAre("not enough memory"));
    EXPECT_FALSE(tryOut([] { throw std::string("one"); }).cameBack);
}

} // namespace
