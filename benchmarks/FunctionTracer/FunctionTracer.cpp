// What function tracing costs: the alias section of a million functions, settled while it is written, beside
// writing it with a table of short names that is there already; and a clock.

#include "Plugins/WavePlugin/FunctionTracer.h"

#include "benchmarks/support/ProcessorTime.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr unsigned int s_numFunctions = 1000000;

// A file of the size that is written, anew for each run.
class Section {
public:
    explicit Section(const TemporaryFolder& folder)
        : m_stream(std::fopen(folder.file("section").c_str(), "w")) {}
    ~Section() { std::fclose(m_stream); }

    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

    FILE* stream() { return m_stream; }

private:
    FILE* m_stream;
};

void compareAliases(const char* what, const std::function<std::string(unsigned int)>& nameOf) {
    ElfBuilder builder;
    for (unsigned int i = 0; i < s_numFunctions; ++i)
        builder.addFunction(nameOf(i), 0);
    std::istringstream file(builder.build().bytes);
    ErrorHandler errorHandler;
    ElfHandler elf(&errorHandler, file);

    const TemporaryFolder folder;
    StubSimulator simulator;
    FunctionTracer ready(simulator.callbacks(), 0, "stdcore[0]");
    std::vector<std::string> shortNames(elf.numSymbols());
    for (unsigned int symbol = 1; symbol < elf.numSymbols(); ++symbol)
        shortNames[symbol] = ready.createShortFunctionName(elf.getSymbolName(symbol));

    constexpr int numRuns = 3;
    const double withTable = leastProcessorSeconds(
        [&] {
            Section section(folder);
            StructureFileWriter writer(section.stream(), simulator.callbacks(), nullptr);
            writer.openValueAliasMap("stdcore[0]", "functions");
            for (unsigned int symbol = 1; symbol < elf.numSymbols(); ++symbol) {
                if ((elf.getSymbolInfo(symbol) & 0xf) == 2)
                    writer.addValueAliasEntry(elf.getSymbolName(symbol), shortNames[symbol]);
            }
            writer.closeValueAliasMap();
        },
        numRuns);
    const double settling = leastProcessorSeconds(
        [&] {
            Section section(folder);
            StructureFileWriter writer(section.stream(), simulator.callbacks(), nullptr);
            FunctionTracer tracer(simulator.callbacks(), 0, "stdcore[0]");
            tracer.dumpSignalValueAliases(&writer, &elf, "stdcore[0]");
        },
        numRuns);
    std::printf("%-34s %8.0f ms %8.0f ms %6.2f times\n", what, withTable * 1e3, settling * 1e3,
                settling / withTable);
}

void timeClocks(const char* what, const std::vector<const char*>& functions) {
    constexpr unsigned int numClocks = 4000000;
    const TemporaryFolder folder;
    StubSimulator simulator;
    simulator.core().threads.resize(1);
    simulator.core().instruction.valid = 1;
    FunctionTracer tracer(simulator.callbacks(), 0, "stdcore[0]");
    for (const char* function : functions)
        tracer.createShortFunctionName(function);
    const double seconds = leastProcessorSeconds(
        [&] {
            Section section(folder);
            for (unsigned int clock = 0; clock < numClocks; ++clock) {
                simulator.core().instruction.functionName = functions[clock % functions.size()];
                bool firstChange = true;
                tracer.traceVariables(section.stream(), &firstChange);
            }
        },
        3);
    std::printf("%-34s %8.1f ns\n", what, seconds / numClocks * 1e9);
}

} // namespace

int main() {
    std::printf("%u functions of one image           with a table     settling\n", s_numFunctions);
    compareAliases("all with the same four characters",
                   [](unsigned int i) { return "task_" + std::to_string(i); });
    compareAliases("a thousand to each start", [](unsigned int i) {
        std::string start = std::to_string(1000 + i / 1000);
        return start.append("_function_").append(std::to_string(i));
    });
    compareAliases("each of a start of its own", [](unsigned int i) {
        std::string name;
        for (int digit = 0; digit < 4; ++digit, i /= 32)
            name += static_cast<char>('A' + i % 32);
        return name + "_function";
    });
    std::printf("\na clock in which a thread\n");
    timeClocks("stays in its function", {"main"});
    timeClocks("moves to another one", {"main", "mainloop_of_the_device"});
    return 0;
}
