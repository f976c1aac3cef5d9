// Starts the plugin, with every option on both cores, on an image of two programs with many function symbols,
// beside `readelf -sW` and `nm` on the same two objects in the same run, and prints the ratios of time and of
// peak memory. What the process still holds once the plugin has started is shown too: nothing of the image.
//
// usage: PluginStartBenchmark [NUMBER OF SYMBOLS IN ALL]
//
// Each measurement runs in a process of its own; with the words `start IMAGE WAVEFORM` the program is that
// process.

#include "benchmarks/support/ProcessCost.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

constexpr int s_numRepetitions = 5;
constexpr unsigned s_numSymbols = 200'000;

double residentMb() {
    long pages = 0;
    long residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    return static_cast<double>(residentPages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

// The measured process.
int start(const std::string& image, const std::string& waveform) {
    const std::string options =
        " -cycles -ports-detailed -threads -clock-blocks -timers -instructions -functions";
    StubSimulator simulator;
    const double before = residentMb();
    PluginInitialise(simulator.callbacks(), ("-ze " + image + " -o " + waveform + " -pads -core stdcore[0]" +
                                             options + " -core stdcore[1]" + options)
                                                .c_str());
    std::printf("%.1f %.1f\n", before, residentMb());
    return 0;
}

// Names of the length and likeness that C++ functions have.
std::string programOf(const TemporaryFolder& folder, const char* name, unsigned numSymbols) {
    ErrorHandler errorHandler;
    ElfHandler elf(&errorHandler, ElfHandler::ET_EXEC);
    constexpr unsigned s_address = 0x10000;
    constexpr unsigned s_codeSize = 0x10000;
    const unsigned segment =
        elf.addSegment(s_address, s_codeSize, s_codeSize, new unsigned char[s_codeSize](), 5, 4);
    const unsigned text = elf.addProgbitsSection(s_address, s_codeSize, segment, 0, ".text", 6, 4, 0);
    for (unsigned i = 0; i < numSymbols; ++i) {
        const std::string function =
            "_ZN6driver8module" + std::to_string(i % 100) + "11function" + std::to_string(i) + "Ei";
        elf.addSymbol(function.c_str(), s_address + i * 16 % s_codeSize, text, ElfSymbol::STB_GLOBAL,
                      ElfSymbol::STT_FUNC, 16);
    }
    const std::string file = folder.file(name);
    elf.writeToFile(file.c_str());
    return file;
}

void compare(const char* self, unsigned numSymbols) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string objects[] = {programOf(folder, "a.elf", numSymbols / 2),
                                   programOf(folder, "b.elf", numSymbols / 2)};
    const std::string image =
        folder.write("image.ze", sampleImage({{"stdcore[0]", 0, 0, "", {readFile(objects[0])}},
                                              {"stdcore[1]", 0, 1, "", {readFile(objects[1])}}}));
    struct Row {
        const char* name;
        std::vector<std::string> words;
        ProcessCost best = {};
    };
    Row rows[] = {
        {"PluginInitialise", {self, "start", image, folder.file("wave.vcd")}},
        {"readelf -sW", {"readelf", "-sW", objects[0], objects[1]}},
        {"nm", {"nm", objects[0], objects[1]}},
    };
    const std::string output = folder.file("output");
    std::string resident;
    for (int i = 0; i < s_numRepetitions; ++i) {
        for (Row& row : rows) {
            row.best.take(costOf(row.words, output));
            if (&row == rows)
                resident = readFile(output);
        }
    }
    std::printf("%u function symbols on two cores\n\n%-18s %10s %10s %14s %14s\n", numSymbols, "", "time, ms",
                "peak, MB", "plugin / time", "plugin / peak");
    for (const Row& row : rows)
        std::printf("%-18s %10.0f %10.1f %14.2f %14.2f\n", row.name, row.best.ms, row.best.peakMb,
                    rows[0].best.ms / row.best.ms, rows[0].best.peakMb / row.best.peakMb);
    std::printf("\nresident before and behind the start, MB: %s", resident.c_str());
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "start")
        return start(argv[2], argv[3]);
    compare(argv[0], argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : s_numSymbols);
    return 0;
}
