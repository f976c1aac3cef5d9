// Converts and checks a waveform of 1 GB as the plugin writes it, beside `cat`, which only reads it, and
// `vcd2fst`, which converts it to GTKWave's own format; then the same at a tenth of the size, to show that
// memory doesn't grow; then writes a session for two cores of 2,000 functions each.
// usage: WaveBenchmark [MEGABYTES]

#include "tests/support/SampleWave.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int s_numRepetitions = 3;

struct Cost {
    double wallSeconds = 1e9;
    double cpuSeconds = 1e9;
    double peakMegabytes = 0;
    bool failed = false;
};

double now() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// One run of a program, its streams to nowhere. Exit status 1 says that something was found, no failure.
Cost run(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const double start = now();
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    Cost cost;
    cost.wallSeconds = now() - start;
    cost.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    cost.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    cost.failed = !WIFEXITED(status) || WEXITSTATUS(status) > 1;
    return cost;
}

Cost best(const std::vector<std::string>& words) {
    Cost cost;
    for (int repetition = 0; repetition < s_numRepetitions; ++repetition) {
        const Cost one = run(words);
        cost.wallSeconds = std::min(cost.wallSeconds, one.wallSeconds);
        cost.cpuSeconds = std::min(cost.cpuSeconds, one.cpuSeconds);
        cost.peakMegabytes = std::max(cost.peakMegabytes, one.peakMegabytes);
        cost.failed = cost.failed || one.failed;
    }
    return cost;
}

class Random {
public:
    std::uint32_t next() {
        m_state = m_state * 1664525u + 1013904223u;
        return m_state >> 8;
    }

private:
    std::uint32_t m_state = 1;
};

void addBits(std::string& text, std::uint64_t value, int width) {
    text += 'b';
    for (int bit = width - 1; bit >= 0; --bit)
        text += value >> bit & 1 ? '1' : '0';
    text += ' ';
}

// A run of one core: ports that toggle, the clock count, instructions, timers and now and then a function.
void writeWaveform(const std::string& path, double numBytes) {
    TracedCore core;
    for (char letter = 'A'; letter < 'Q'; ++letter)
        core.ports.push_back({std::string("ZS1_PORT_1") + letter, 1, ""});
    core.hasCycles = true;
    core.numThreads = 8;
    core.numTimers = 10;
    core.hasInstructions = true;
    core.functions = {{"main", "main.0"}};
    core.numFunctionThreads = 8;
    SampleWave wave;
    wave.cores = {core};
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        std::abort();
    std::string text = wave.start();
    Random random;
    double written = 0;
    for (std::uint32_t clock = 1; written < numBytes; ++clock) {
        text += "#" + std::to_string(clock) + "\n";
        for (int port = 0; port < 6; ++port) {
            text += random.next() & 1 ? "1po00" : "0po00";
            text += "abcd"[random.next() % 4];
            text += std::to_string(random.next() % 16) + "\n";
        }
        addBits(text, clock, 32);
        text += "_00\n";
        addBits(text, random.next(), 32);
        text += "in00a0\n";
        addBits(text, random.next(), 8);
        text += "in00b0\n";
        addBits(text, random.next(), 64);
        text += "ti00a" + std::to_string(random.next() % 10) + "\n";
        if (clock % 4 == 0) {
            addBits(text, 0x6d61696e2e300000, 64);
            text += "fu00a1\n";
        }
        text += "\n";
        std::fwrite(text.data(), 1, text.size(), file);
        written += static_cast<double>(text.size());
        text.clear();
    }
    std::fclose(file);
}

void print(const char* name, const Cost& cost, double megabytes, const Cost& reading) {
    std::printf("%-28s %8.2f %8.2f %10.0f %10.0f %8.1f %8.1f%s\n", name, cost.wallSeconds, cost.cpuSeconds,
                megabytes / cost.wallSeconds, megabytes / cost.cpuSeconds, cost.peakMegabytes,
                cost.cpuSeconds / reading.cpuSeconds, cost.failed ? "  FAILED" : "");
}

bool measure(const TemporaryFolder& folder, double megabytes) {
    const std::string path = folder.file("a.vcd");
    writeWaveform(path, megabytes * 1e6);
    const Cost reading = best({"cat", path});
    const Cost standard = best({ZETOOL_PROGRAM, "wave", "standard", "-o", "/dev/null", path});
    const Cost check = best({ZETOOL_PROGRAM, "wave", "check", path});
    const Cost converting = run({"vcd2fst", path, folder.file("a.fst")});
    std::printf("%.0f MB                           wall s    cpu s  MB/wall s   MB/cpu s  peak MB  cpu/cat\n",
                megabytes);
    print("cat", reading, megabytes, reading);
    print("zetool wave standard", standard, megabytes, reading);
    print("zetool wave check", check, megabytes, reading);
    print("vcd2fst", converting, megabytes, reading);
    return !standard.failed && !check.failed && megabytes / standard.cpuSeconds >= 100 &&
           megabytes / check.cpuSeconds >= 100;
}

bool measureSession(const TemporaryFolder& folder) {
    SampleWave wave;
    wave.cores.resize(2);
    for (int number = 0; number < 2; ++number) {
        TracedCore& core = wave.cores[static_cast<std::size_t>(number)];
        core.name = "stdcore[" + std::to_string(number) + "]";
        core.tag = "0" + std::to_string(number);
        core.numFunctionThreads = 8;
        core.numThreads = 8;
        for (int port = 0; port < 64; ++port)
            core.ports.push_back(
                {"ZS1_PORT_" + std::to_string(port) + "A", 8, "user_" + std::to_string(port)});
        for (int function = 0; function < 2000; ++function)
            core.functions.emplace_back("a_function_with_a_long_name_" + std::to_string(number) + "_" +
                                            std::to_string(function),
                                        "a_fu." + std::to_string(function % 1000));
    }
    const Cost cost = best({ZETOOL_PROGRAM, "wave", "gtkw", "--force", folder.write("b.vcd", wave.start())});
    std::printf("zetool wave gtkw, two cores of 2,000 functions: %.3f s\n", cost.wallSeconds);
    return !cost.failed && cost.wallSeconds < 0.5;
}

} // namespace

int main(int argc, char** argv) {
    const double megabytes = argc > 1 ? std::atof(argv[1]) : 1000;
    const TemporaryFolder folder;
    const bool small = measure(folder, megabytes / 10);
    const bool large = measure(folder, megabytes);
    const bool session = measureSession(folder);
    return small && large && session ? 0 : 1;
}
