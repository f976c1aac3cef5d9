#include "tools/tracehost/Progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

using std::chrono::milliseconds;

namespace {

constexpr Progress::Time s_begin{};

// A terminal of the system's own, without a user.
class Terminal {
public:
    Terminal() : m_descriptor(posix_openpt(O_RDWR | O_NOCTTY)) {}
    ~Terminal() { close(m_descriptor); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace

TEST(Progress, ARunWithinASecondShowsNothing) {
    Progress progress(1000, s_begin);
    EXPECT_EQ(progress.update(900, s_begin + milliseconds(999)), "");
    EXPECT_EQ(progress.finish(), "");
}

TEST(Progress, ALongRunShowsItsClockItsShareAndItsSpeed) {
    Progress progress(4000000, s_begin);
    EXPECT_EQ(progress.update(1000000, s_begin + milliseconds(2000)),
              "\r\033[Kclock 1000000 of 4000000 (25 %), 500000 clocks a second");
    EXPECT_EQ(progress.finish(), "\r\033[K");
}

TEST(Progress, TheLineIsRenewedFiveTimesASecond) {
    Progress progress(4000, s_begin);
    EXPECT_NE(progress.update(1000, s_begin + milliseconds(1000)), "");
    EXPECT_EQ(progress.update(1100, s_begin + milliseconds(1199)), "");
    EXPECT_NE(progress.update(1200, s_begin + milliseconds(1200)), "");
}

TEST(Progress, OnlyATerminalShowsIt) {
    unsetenv("NO_COLOR");
    const Terminal terminal;
    EXPECT_TRUE(Progress::isWanted(terminal.descriptor()));
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_FALSE(Progress::isWanted(ends[1]));
    close(ends[0]);
    close(ends[1]);
}

TEST(Progress, NoColorTurnsItOff) {
    const Terminal terminal;
    setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(Progress::isWanted(terminal.descriptor()));
    setenv("NO_COLOR", "", 1); // set but empty counts as unset
    EXPECT_TRUE(Progress::isWanted(terminal.descriptor()));
    unsetenv("NO_COLOR");
}
