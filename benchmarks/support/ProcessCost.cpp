#include "benchmarks/support/ProcessCost.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

void ProcessCost::take(const ProcessCost& other) {
    ms = std::min(ms, other.ms);
    peakMb = std::min(peakMb, other.peakMb);
}

ProcessCost costOf(const std::vector<std::string>& words, const std::string& output) {
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        std::_Exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
        std::fprintf(stderr, "%s failed\n", words.front().c_str());
        std::exit(1);
    }
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return {milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
}
