// Reads an image of a million function symbols and lists their names and infos, beside other tools' listers
// of symbols on the same file in the same run, and prints the ratios of time and of peak memory. The file is
// made by the library's own writer, the time of which is shown too.
//
// usage: ElfHandlerBenchmark [NUMBER OF SYMBOLS]
//
// Each measurement runs in a process of its own, so that its peak is its own; all write to /dev/null, and the
// best of several counts. With the words `make FILE NUMBER`, `read FILE` and `list FILE` the program is that
// process.

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "benchmarks/support/ProcessCost.h"
#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int s_numRepetitions = 7;
constexpr const char* s_numSymbols = "1000000";

// ---- What a measured process does ----

// Names of the length and likeness that C++ functions have.
void makeFile(const char* file, unsigned numSymbols) {
    ErrorHandler errorHandler;
    ElfHandler elf(&errorHandler, ElfHandler::ET_EXEC);
    constexpr unsigned s_functionSize = 16;
    constexpr unsigned s_address = 0x10000;
    constexpr unsigned s_codeSize = 0x10000;
    const unsigned segment =
        elf.addSegment(s_address, s_codeSize, s_codeSize, new unsigned char[s_codeSize](), 5, 4);
    const unsigned text = elf.addProgbitsSection(s_address, s_codeSize, segment, 0, ".text", 6, 4, 0);
    elf.addSymbol("_start", s_address, text, ElfSymbol::STB_GLOBAL, ElfSymbol::STT_FUNC, s_functionSize);
    for (unsigned i = 1; i < numSymbols; ++i) {
        char name[64];
        std::snprintf(name, sizeof name, "_ZN6driver8module%02u11function%06uEi", i % 100, i);
        elf.addSymbol(name, s_address + i * s_functionSize % s_codeSize, text, ElfSymbol::STB_GLOBAL,
                      ElfSymbol::STT_FUNC, s_functionSize);
    }
    elf.writeToFile(file);
}

// As the function tracer goes through the symbols. The sum keeps the reading from being left out.
void readFile(const char* file) {
    ErrorHandler errorHandler;
    const ElfHandler elf(&errorHandler, file);
    unsigned sum = 0;
    for (unsigned i = 0; i < elf.numSymbols(); ++i)
        sum += elf.getSymbolInfo(i) + static_cast<unsigned char>(*elf.getSymbolName(i));
    std::printf("%u\n", sum);
}

// The lines of `nm -p`.
void listFile(const char* file) {
    ErrorHandler errorHandler;
    const ElfHandler elf(&errorHandler, file);
    for (unsigned i = 1; i < elf.numSymbols(); ++i) {
        const char kind = (elf.getSymbolInfo(i) & 0xF) == ElfSymbol::STT_FUNC ? 'T' : '?';
        std::printf("%08x %c %s\n", elf.getSymbolValue(i), kind, elf.getSymbolName(i));
    }
}

// ---- Measuring ----

struct Row {
    const char* name;
    std::vector<std::string> words;
    ProcessCost best = {};
};

void compare(const char* self, const char* numSymbols) {
    const TemporaryFolder folder;
    const std::string file = folder.file("image.elf");
    const ProcessCost make = costOf({self, "make", file, numSymbols});
    std::printf("%s symbols, a file of %.1f MB, built and written in %.0f ms with %.0f MB\n\n", numSymbols,
                static_cast<double>(std::filesystem::file_size(file)) / 1e6, make.ms, make.peakMb);

    std::vector<Row> rows = {
        {"ours, reading alone", {self, "read", file}},
        {"ours, listing", {self, "list", file}},
        {"nm -p", {"nm", "-p", file}},
        {"eu-nm -p", {"eu-nm", "-p", file}},
        {"llvm-nm --no-sort", {"llvm-nm", "--no-sort", file}},
    };
    for (int i = 0; i < s_numRepetitions; ++i) {
        for (Row& row : rows)
            row.best.take(costOf(row.words));
    }
    const ProcessCost& ours = rows[1].best;
    std::printf("%-22s %10s %10s %12s %12s\n", "", "time, ms", "peak, MB", "ours / time", "ours / peak");
    for (const Row& row : rows)
        std::printf("%-22s %10.0f %10.0f %12.2f %12.2f\n", row.name, row.best.ms, row.best.peakMb,
                    ours.ms / row.best.ms, ours.peakMb / row.best.peakMb);
}

} // namespace

int main(int argc, char** argv) {
    const std::string word = argc > 2 ? argv[1] : "";
    if (word == "make" && argc == 4)
        makeFile(argv[2], static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)));
    else if (word == "read")
        readFile(argv[2]);
    else if (word == "list")
        listFile(argv[2]);
    else
        compare(argv[0], argc > 1 ? argv[1] : s_numSymbols);
}
