#include "tests/support/ChildProcess.h"

#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void redirect(const std::string& file, int flags, int descriptor) {
    const int opened = open(file.c_str(), flags, 0600);
    if (opened < 0 || dup2(opened, descriptor) < 0)
        std::_Exit(126);
    close(opened);
}

// The streams go to files, not pipes: a child can write any amount before it is waited for.
ChildResult waitFor(pid_t child, const TemporaryFolder& folder) {
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        throw std::runtime_error("can't wait for a child process");
    ChildResult result;
    if (WIFEXITED(status))
        result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    result.output = folder.read("output");
    result.error = folder.read("error");
    return result;
}

template<typename Body>
ChildResult forkWith(const Body& body) {
    const TemporaryFolder folder;
    std::fflush(nullptr); // what is buffered here must not be written by the child a second time
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("can't fork");
    if (child == 0) {
        redirect("/dev/null", O_RDONLY, STDIN_FILENO);
        redirect(folder.file("output"), O_WRONLY | O_CREAT, STDOUT_FILENO);
        redirect(folder.file("error"), O_WRONLY | O_CREAT, STDERR_FILENO);
        body();
        std::exit(0);
    }
    return waitFor(child, folder);
}

} // namespace

ChildResult runInChild(const std::function<void()>& body) {
    return forkWith([&] { body(); });
}

ChildResult runProgram(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    return forkWith([&] {
        execvp(arguments[0], arguments.data());
        std::_Exit(127);
    });
}
