// Parses a 20 MB document of the configurations' kind, beside pugixml in the same run, and prints the ratios
// of time and of peak memory; then shows for each dimension of a document that doubling it doubles the time.
// Each measurement runs in a process of its own, so that its peak is its own; the best of several counts.

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XmlText.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <pugixml.hpp>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int s_numRepetitions = 7;

struct Cost {
    double parseMs = 0;
    double deleteMs = 0;
    double peakMb = 0; // of the whole process
};

// Of this process's own time on a processor, which others on the machine disturb least.
class Clock {
public:
    // Milliseconds since the last call, or since construction.
    double lap() {
        const double now = read();
        return now - std::exchange(m_start, now);
    }

private:
    static double read() {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    double m_start = read();
};

Cost parseOurs(const std::string& file) {
    ErrorHandler handler;
    StringLibrary strings(&handler);
    ZelmUtils utils{&handler, &strings};
    Cost cost;
    Clock clock;
    auto* parser = new XmlParser(file.c_str(), &utils, true);
    cost.parseMs = clock.lap();
    delete parser;
    cost.deleteMs = clock.lap();
    return cost;
}

Cost parseTheirs(const std::string& file) {
    Cost cost;
    Clock clock;
    auto* document = new pugi::xml_document;
    if (!document->load_file(file.c_str()))
        std::exit(1);
    cost.parseMs = clock.lap();
    delete document;
    cost.deleteMs = clock.lap();
    return cost;
}

Cost doNothing(const std::string&) {
    return {};
}

using Measured = Cost (*)(const std::string& file);

// What the measured function says, and the peak of the process that it ran in.
Cost inAProcessOfItsOwn(Measured measured, const std::string& file) {
    int ends[2];
    if (pipe(ends) != 0)
        std::exit(1);
    const pid_t child = fork();
    if (child == 0) {
        const Cost cost = measured(file);
        std::_Exit(write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
    }
    Cost cost;
    rusage usage{};
    int status = 0;
    const bool complete = read(ends[0], &cost, sizeof cost) == sizeof cost;
    if (wait4(child, &status, 0, &usage) != child || status != 0 || !complete)
        std::exit(1);
    close(ends[0]);
    close(ends[1]);
    cost.peakMb = static_cast<double>(usage.ru_maxrss) / 1024;
    return cost;
}

void keepBest(Cost& best, const Cost& cost) {
    best.parseMs = std::min(best.parseMs, cost.parseMs);
    best.deleteMs = std::min(best.deleteMs, cost.deleteMs);
    best.peakMb = std::min(best.peakMb, cost.peakMb);
}

// The best of several, the two taking turns so that both see the same machine.
std::pair<Cost, Cost> sideBySide(Measured left, const std::string& leftFile, Measured right,
                                 const std::string& rightFile) {
    std::pair<Cost, Cost> best{inAProcessOfItsOwn(left, leftFile), inAProcessOfItsOwn(right, rightFile)};
    for (int i = 1; i < s_numRepetitions; ++i) {
        keepBest(best.first, inAProcessOfItsOwn(left, leftFile));
        keepBest(best.second, inAProcessOfItsOwn(right, rightFile));
    }
    return best;
}

void printRow(const char* name, const Cost& cost) {
    std::printf("%-12s %10.1f %10.1f %10.1f\n", name, cost.parseMs, cost.deleteMs, cost.peakMb);
}

void compare(const TemporaryFolder& folder) {
    const std::string file = folder.write("configuration.xml", configurationText(20'000'000));
    const double emptyMb = inAProcessOfItsOwn(doNothing, file).peakMb;
    auto [ours, theirs] = sideBySide(parseOurs, file, parseTheirs, file);
    ours.peakMb -= emptyMb;
    theirs.peakMb -= emptyMb;
    std::printf("20 MB configuration, best of %d\n%-12s %10s %10s %10s\n", s_numRepetitions, "", "parse ms",
                "delete ms", "peak MB");
    printRow("XmlParser", ours);
    printRow("pugixml", theirs);
    std::printf("%-12s %10.2f %10.2f %10.2f   (parse: 6 or less; peak: 3 or less)\n", "ratio",
                ours.parseMs / theirs.parseMs, ours.deleteMs / theirs.deleteMs, ours.peakMb / theirs.peakMb);
}

struct Dimension {
    const char* name;
    std::size_t count;
    std::string (*make)(std::size_t count);
};

constexpr Dimension s_dimensions[] = {
    {"attributes", 250'000, [](std::size_t n) { return "<a" + repeated(" b='1'", n) + "/>"; }},
    {"siblings", 250'000, [](std::size_t n) { return "<a>" + repeated("<b/>\n", n) + "</a>"; }},
    {"levels", 250'000, [](std::size_t n) { return nestedText(n); }},
    {"one text", 4'000'000, [](std::size_t n) { return "<a>" + std::string(n, 'x') + "</a>"; }},
    {"lines of text", 1'000'000, [](std::size_t n) { return "<a>x\n" + repeated("x\n", n) + "</a>"; }},
    {"empty lines", 1'000'000, [](std::size_t n) { return "<a>" + repeated("\n", n) + "</a>"; }},
    {"one line", 250'000, [](std::size_t n) { return "<a>" + repeated("<b c='d'>e</b>", n) + "</a>"; }},
    {"comments", 250'000, [](std::size_t n) { return "<a>" + repeated("<!-- c -->", n) + "</a>"; }},
    {"comments in a text", 250'000,
     [](std::size_t n) { return "<a>x" + repeated("<!-- c -->", n) + "</a>"; }},
    {"entities", 500'000, [](std::size_t n) { return "<a>" + repeated("&lt;&amp;", n) + "</a>"; }},
    {"one entity over and over", 1'000'000,
     [](std::size_t n) { return "<a>&" + repeated("amp;", n) + "</a>"; }},
};

void showGrowth(const TemporaryFolder& folder) {
    std::printf("\n%-26s %10s %10s %10s\n", "parse and delete", "ms", "twice: ms", "ratio");
    for (const Dimension& dimension : s_dimensions) {
        const std::string once = folder.write("once.xml", dimension.make(dimension.count));
        const std::string twice = folder.write("twice.xml", dimension.make(2 * dimension.count));
        const auto [small, large] = sideBySide(parseOurs, once, parseOurs, twice);
        const double smallMs = small.parseMs + small.deleteMs;
        const double largeMs = large.parseMs + large.deleteMs;
        std::printf("%-26s %10.1f %10.1f %10.2f\n", dimension.name, smallMs, largeMs, largeMs / smallMs);
    }
}

} // namespace

int main() {
    const TemporaryFolder folder;
    compare(folder);
    showGrowth(folder);
    return 0;
}
