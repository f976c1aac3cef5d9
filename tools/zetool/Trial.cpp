#include "tools/zetool/Trial.h"

#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int s_cameBack = 93; // no library ends with that
constexpr std::size_t s_mostBytes = std::size_t{1} << 20;

[[noreturn]] void runChild(const std::function<void()>& operation, int descriptor) {
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(descriptor, STDOUT_FILENO);
    dup2(descriptor, STDERR_FILENO);
    int status = 1;
    try {
        operation();
        status = s_cameBack;
    } catch (const std::bad_alloc&) {
        std::fputs("not enough memory\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    } catch (const std::string& text) {
        std::fputs(text.c_str(), stderr);
    }
    std::fflush(nullptr);
    _exit(status); // what is open belongs to the parent
}

// All that comes until the other end closes; what is too much is dropped.
std::string readAll(int descriptor) {
    std::string text;
    char piece[4096];
    for (;;) {
        const ssize_t count = read(descriptor, piece, sizeof piece);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return text;
        if (text.size() < s_mostBytes)
            text.append(piece, static_cast<std::size_t>(count));
    }
}

// The condition of an assertion's line, or nothing.
std::string assertionIn(const std::string& line) {
    constexpr std::string_view s_before = "Assertion `";
    constexpr std::string_view s_behind = "' failed.";
    const std::size_t from = line.find(s_before);
    const std::size_t to = line.rfind(s_behind);
    if (from == std::string::npos || to == std::string::npos || to < from + s_before.size())
        return "";
    return line.substr(from + s_before.size(), to - from - s_before.size());
}

} // namespace

Trial tryOut(const std::function<void()>& operation) {
    int ends[2];
    if (pipe(ends) != 0)
        throw ToolFailure(withSystemError("no pipe"));
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        close(ends[0]);
        close(ends[1]);
        throw ToolFailure(withSystemError("no process"));
    }
    if (child == 0) {
        close(ends[0]);
        runChild(operation, ends[1]);
    }
    close(ends[1]);
    const std::string text = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }

    Trial trial;
    trial.cameBack = WIFEXITED(status) && WEXITSTATUS(status) == s_cameBack;
    bool isExplained = false;
    for (std::string line : linesOf(text)) {
        const std::string assertion = WIFSIGNALED(status) ? assertionIn(line) : "";
        if (!assertion.empty())
            line = "the process aborts: '" + assertion + "' doesn't hold";
        isExplained = isExplained || !line.empty();
        if (!line.empty())
            trial.lines.push_back(line);
    }
    if (!trial.cameBack && !isExplained)
        trial.lines.push_back(WIFSIGNALED(status)
                                  ? "the process ends by signal " + std::to_string(WTERMSIG(status))
                                  : "the process ends");
    return trial;
}
