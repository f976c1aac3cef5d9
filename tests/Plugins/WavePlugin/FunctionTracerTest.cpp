#include "Plugins/WavePlugin/FunctionTracer.h"

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/PluginRun.h"
#include "tests/support/SampleImage.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

// The 64 digits of a short name, zeros behind its end.
std::string digits(std::string_view text) {
    std::string digits;
    for (std::size_t byte = 0; byte < 8; ++byte) {
        for (int bit = 7; bit >= 0; --bit)
            digits += byte < text.size() && (text[byte] >> bit & 1) != 0 ? '1' : '0';
    }
    return digits;
}

const std::string s_unknown(64, 'x');

// A tracer of a core with some threads, and what it writes.
class TracedCore {
public:
    explicit TracedCore(unsigned int numThreads = 2, unsigned int pid = 0,
                        const std::string& name = "stdcore[0]")
        : m_pid(pid) {
        m_simulator.core(pid).threads.resize(numThreads);
        m_tracer = std::make_unique<FunctionTracer>(m_simulator.callbacks(), pid, name);
    }

    FunctionTracer& tracer() { return *m_tracer; }
    StubSimulator& simulator() { return m_simulator; }
    TraceInstructionState& instruction() { return m_simulator.core(m_pid).instruction; }

    // What one clock writes.
    std::string clock() {
        bool firstChange = true;
        m_tracer->traceVariables(m_output, &firstChange);
        const std::string text = take();
        EXPECT_EQ(firstChange, text.empty());
        return text;
    }

    // What a clock writes in which the thread executes an instruction of the function.
    std::string execute(unsigned int thread, const char* function) {
        instruction() = {};
        instruction().valid = 1;
        instruction().thread = thread;
        instruction().functionName = function;
        ++m_simulator.cycle;
        return clock();
    }

    // The part of the structure document that an ELF image with these symbols gives.
    std::string aliases(const ElfBuilder& symbols, const std::string& coreName = "stdcore[0]") {
        ErrorHandler errorHandler;
        std::istringstream file(symbols.build().bytes);
        ElfHandler elf(&errorHandler, file);
        StructureFileWriter writer(m_output, m_simulator.callbacks(), nullptr);
        m_tracer->dumpSignalValueAliases(&writer, &elf, coreName);
        return take();
    }

    std::string hierarchy() {
        StructureFileWriter writer(m_output, m_simulator.callbacks(), nullptr);
        m_tracer->dumpSignalHierarchy(&writer);
        return take();
    }

    std::string docs() {
        StructureFileWriter writer(m_output, m_simulator.callbacks(), nullptr);
        m_tracer->dumpSignalDocs(&writer);
        return take();
    }

    std::string declarations() {
        m_tracer->declareVariables(m_output);
        return take();
    }

    std::string firstValues() {
        m_tracer->initialiseVariables(m_output);
        return take();
    }

private:
    // What was written since the last call.
    std::string take() {
        std::string text = m_output.text().substr(m_taken);
        m_taken += text.size();
        return text;
    }

    StubSimulator m_simulator;
    unsigned int m_pid;
    std::unique_ptr<FunctionTracer> m_tracer;
    MemoryStream m_output;
    std::size_t m_taken = 0;
};

ElfBuilder imageWith(const std::vector<std::string>& functions) {
    ElfBuilder elf;
    for (const std::string& name : functions)
        elf.addFunction(name, 0);
    return elf;
}

} // namespace

// --- The structure document ---

TEST(FunctionTracer, ListsEachFunctionWithItsShortName) {
    TracedCore core;
    EXPECT_EQ(core.aliases(imageWith({"main", "mainloop", "mail"})),
              "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
              "            <Entry name=\"main\" alias=\"main.0\"/>\n"
              "            <Entry name=\"mainloop\" alias=\"main.1\"/>\n"
              "            <Entry name=\"mail\" alias=\"mail.0\"/>\n"
              "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, AFunctionOfTwoImagesIsListedInBothUnderOneShortName) {
    TracedCore core;
    core.aliases(imageWith({"main", "mainloop"}));
    EXPECT_EQ(core.aliases(imageWith({"mainline", "mainloop"})),
              "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
              "            <Entry name=\"mainline\" alias=\"main.2\"/>\n"
              "            <Entry name=\"mainloop\" alias=\"main.1\"/>\n"
              "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, AFunctionThatOccursTwiceInAnImageIsListedTwice) {
    TracedCore core;
    EXPECT_EQ(core.aliases(imageWith({"main", "main"})),
              "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
              "            <Entry name=\"main\" alias=\"main.0\"/>\n"
              "            <Entry name=\"main\" alias=\"main.0\"/>\n"
              "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, TheThousandAndFirstFunctionOfAStartIsListedUnderItsOwnFirstEightBytes) {
    TracedCore core;
    std::vector<std::string> functions;
    for (int i = 0; i <= 1000; ++i)
        functions.push_back("handler" + std::to_string(i));
    const std::string aliases = core.aliases(imageWith(functions));
    EXPECT_NE(aliases.find("<Entry name=\"handler999\" alias=\"hand.999\"/>\n"), std::string::npos);
    EXPECT_NE(aliases.find("<Entry name=\"handler1000\" alias=\"handler1\"/>\n"), std::string::npos);
    EXPECT_EQ(core.tracer().getShortFunctionName("handler1000"), "handler1");
    EXPECT_EQ(core.tracer().createShortFunctionName("handler1000"), "handler1");
}

TEST(FunctionTracer, TwoCoresMayUseOneShortNameForDifferentFunctions) {
    const auto aliasesOf = [](unsigned int pid, const std::string& name, const char* function) {
        return TracedCore(2, pid, name).aliases(imageWith({function}), name);
    };
    EXPECT_EQ(aliasesOf(0, "stdcore[0]", "main"),
              "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
              "            <Entry name=\"main\" alias=\"main.0\"/>\n"
              "        </ValueAliasMap>\n");
    EXPECT_EQ(aliasesOf(1, "stdcore[1]", "mainloop"),
              "        <ValueAliasMap coreName=\"stdcore[1]\" category=\"functions\">\n"
              "            <Entry name=\"mainloop\" alias=\"main.0\"/>\n"
              "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, AnImageWithoutFunctionsGivesAnEmptyMap) {
    TracedCore core;
    ElfBuilder elf;
    elf.addSymbol({.name = "data", .info = 0x11});    // an object
    elf.addSymbol({.name = "section", .info = 0x03}); // a section
    for (const ElfBuilder& image : {ElfBuilder(), elf})
        EXPECT_EQ(core.aliases(image),
                  "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
                  "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, FunctionsOfAnyBindingAndSectionAreListed) {
    TracedCore core;
    ElfBuilder elf;
    elf.addSymbol({.name = "local", .info = 0x02});
    elf.addSymbol({.name = "globalUndefined", .info = 0x12, .section = 0});
    elf.addSymbol({.name = "weak", .info = 0x22});
    EXPECT_EQ(core.aliases(elf), "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
                                 "            <Entry name=\"local\" alias=\"loca.0\"/>\n"
                                 "            <Entry name=\"globalUndefined\" alias=\"glob.0\"/>\n"
                                 "            <Entry name=\"weak\" alias=\"weak.0\"/>\n"
                                 "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, AFunctionOfFewerThanFourCharactersIsListedUnderItsOwnName) {
    TracedCore core;
    EXPECT_EQ(core.aliases(imageWith({"ab", "abcd"})),
              "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
              "            <Entry name=\"ab\" alias=\"ab\"/>\n"
              "            <Entry name=\"abcd\" alias=\"abcd.0\"/>\n"
              "        </ValueAliasMap>\n");
}

TEST(FunctionTracer, SignalsStandWithoutAGroupIndentedAsIfInOne) {
    EXPECT_EQ(TracedCore().hierarchy(),
              "            <Category name=\"Functions\">\n"
              "                    <Signal name=\"stdcore[0]_Functions_Thread0\" radix=\"ASCII\"/>\n"
              "                    <Signal name=\"stdcore[0]_Functions_Thread1\" radix=\"ASCII\"/>\n"
              "            </Category>\n");
}

TEST(FunctionTracer, HasNoDocumentation) {
    EXPECT_EQ(TracedCore().docs(), "");
}

// --- The waveform ---

TEST(FunctionTracer, DeclaresASignalForEachThread) {
    EXPECT_EQ(TracedCore(2, 0x10002).declarations(),
              "$var wire 64 fu12a0 stdcore[0]_Functions_Thread0 $end\n"
              "$var wire 64 fu12a1 stdcore[0]_Functions_Thread1 $end\n");
}

TEST(FunctionTracer, BeginsUnknownWithoutAskingTheSimulator) {
    TracedCore core;
    const auto calls = core.simulator().calls;
    EXPECT_EQ(core.firstValues(),
              "$dumpvars\nb" + s_unknown + " fu00a0\nb" + s_unknown + " fu00a1\n$end\n\n");
    EXPECT_EQ(core.simulator().calls, calls);
}

TEST(FunctionTracer, WritesTheShortNameOfTheFunctionThatAThreadExecutes) {
    TracedCore core;
    core.aliases(imageWith({"main", "mainloop"}));
    EXPECT_EQ(core.execute(1, "mainloop"), "#1\nb" + digits("main.1") + " fu00a1\n");
    EXPECT_EQ(core.execute(0, "main"),
              "#2\n"
              "b0110110101100001011010010110111000101110001100000000000000000000 fu00a0\n");
}

TEST(FunctionTracer, AThreadThatStaysInItsFunctionWritesNothing) {
    TracedCore core;
    core.execute(0, "main");
    EXPECT_EQ(core.execute(0, "main"), "");
    EXPECT_EQ(core.execute(0, std::string("main").c_str()), ""); // another copy of the text
}

TEST(FunctionTracer, AFunctionOfTheSameShortNameWritesNothing) {
    TracedCore core; // both go by their first eight bytes
    core.execute(0, "interrupt_enter");
    EXPECT_EQ(core.execute(0, "interrupt_leave"), "");
    EXPECT_EQ(core.execute(0, "interrupt_enter"), "");
}

TEST(FunctionTracer, AThreadThatReturnsToAFunctionWritesItAgain) {
    TracedCore core;
    EXPECT_EQ(core.execute(0, "main"), "#1\nb" + digits("main") + " fu00a0\n");
    EXPECT_EQ(core.execute(0, "mail"), "#2\nb" + digits("mail") + " fu00a0\n");
    EXPECT_EQ(core.execute(0, "main"), "#3\nb" + digits("main") + " fu00a0\n");
}

TEST(FunctionTracer, EachThreadHasAFunctionOfItsOwn) {
    TracedCore core;
    EXPECT_EQ(core.execute(0, "main"), "#1\nb" + digits("main") + " fu00a0\n");
    EXPECT_EQ(core.execute(1, "main"), "#2\nb" + digits("main") + " fu00a1\n");
    EXPECT_EQ(core.execute(0, "main"), "");
}

TEST(FunctionTracer, AThreadThatNeverRunsStaysUnknown) {
    TracedCore core;
    core.firstValues();
    for (const char* function : {"main", "mail", "main"})
        EXPECT_EQ(core.execute(0, function).find("fu00a1"), std::string::npos);
}

TEST(FunctionTracer, WithoutAnInstructionAllSignalsHold) {
    TracedCore core;
    core.execute(0, "main");
    core.instruction().valid = 0;
    core.instruction().functionName = "mail";
    EXPECT_EQ(core.clock(), "");
}

TEST(FunctionTracer, AnyValidWordButZeroIsAnInstruction) {
    TracedCore core;
    core.execute(0, "main");
    core.instruction().valid = 0x80000000;
    core.instruction().functionName = "mail";
    EXPECT_EQ(core.clock(), "#1\nb" + digits("mail") + " fu00a0\n");
}

TEST(FunctionTracer, TheFirstFunctionIsAChangeAlsoWithAnEmptyName) {
    TracedCore core;
    EXPECT_EQ(core.execute(0, ""), "#1\nb" + std::string(64, '0') + " fu00a0\n");
    EXPECT_EQ(core.execute(0, ""), "");
    EXPECT_EQ(core.execute(1, "\xff"), "#3\nb" + digits("\xff") + " fu00a1\n");
}

TEST(FunctionTracer, AFunctionOutsideTheSymbolsGoesByItsFirstEightBytes) {
    TracedCore core;
    core.aliases(imageWith({"main"}));
    EXPECT_EQ(core.execute(0, "mainloop_of_the_day"), "#1\nb" + digits("mainloop") + " fu00a0\n");
}

TEST(FunctionTracer, AShortNameOutsideTheSymbolsEndsAtItsTerminator) {
    TracedCore core;
    const char memory[] = "abc\0defgh"; // what follows the name must not show
    EXPECT_EQ(core.execute(0, memory), "#1\nb" + digits("abc") + " fu00a0\n");
    const std::unique_ptr<char[]> exact(new char[3]{'a', 'b', '\0'}); // nor be read
    EXPECT_EQ(core.execute(0, exact.get()), "#2\nb" + digits("ab") + " fu00a0\n");
}

TEST(FunctionTracer, AShorterNameLeavesNothingOfALongerOne) {
    TracedCore core;
    core.execute(0, "longname");
    EXPECT_EQ(core.execute(0, "ab"), "#2\nb" + digits("ab") + " fu00a0\n");
    EXPECT_EQ(core.execute(0, "longname"), "#3\nb" + digits("longname") + " fu00a0\n");
}

TEST(FunctionTracer, AThreadThatTheCoreDoesntHaveWritesNothing) {
    TracedCore core(2);
    EXPECT_EQ(core.execute(2, "main"), "");
    EXPECT_EQ(core.execute(0xffffffff, "main"), "");
}

TEST(FunctionTracer, NoFunctionNameWritesNothing) {
    TracedCore core;
    EXPECT_EQ(core.execute(0, nullptr), "");
}

TEST(FunctionTracer, AsksForTheInstructionOnceAClock) {
    TracedCore core(8);
    const auto before = core.simulator().calls[18];
    core.execute(3, "main");
    EXPECT_EQ(core.simulator().calls[18], before + 1);
}

TEST(FunctionTracer, NamesThatExpireWithTheNextCallbackAreCopied) {
    TracedCore core;
    core.simulator().textsExpire = true;
    EXPECT_EQ(core.execute(0, "main"), "#1\nb" + digits("main") + " fu00a0\n");
    EXPECT_EQ(core.execute(0, "main"), "");
    EXPECT_EQ(core.execute(0, "mail"), "#3\nb" + digits("mail") + " fu00a0\n");
}

// --- Whole runs ---

TEST(FunctionTracer, TheDocumentPairsTheNamesOfEveryImageAndTheWaveformShowsTheShortOnes) {
    StubSimulator simulator;
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string image = folder.write(
        "image.ze",
        sampleImage({{.name = "stdcore[0]",
                      .programs = {sampleProgram({"main", "mainloop"}), sampleProgram({"mainline", "main"})}},
                     {.name = "stdcore[1]", .core = 1, .programs = {sampleProgram({"mainloop"})}}}));
    const std::string waveform = folder.file("wave.vcd");
    const ChildResult process = runInChild([&] {
        for (const unsigned int pid : {0U, 1U}) {
            simulator.core(pid).threads.resize(1);
            simulator.core(pid).instruction.valid = 1;
            simulator.core(pid).instruction.functionName = "mainloop";
        }
        const std::string options =
            "-ze " + image + " -o " + waveform + " -core stdcore[0] -functions -core stdcore[1] -functions";
        const unsigned int id = PluginInitialise(simulator.callbacks(), options.c_str());
        PluginClock(id);
        PluginTerminate(id);
    });
    ASSERT_EQ(process.exitStatus, 0) << process.error;
    const std::string written = folder.read("wave.vcd");
    EXPECT_NE(written.find("    <ValueAliases>\n"
                           "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
                           "            <Entry name=\"main\" alias=\"main.0\"/>\n"
                           "            <Entry name=\"mainloop\" alias=\"main.1\"/>\n"
                           "        </ValueAliasMap>\n"
                           "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
                           "            <Entry name=\"mainline\" alias=\"main.2\"/>\n"
                           "            <Entry name=\"main\" alias=\"main.0\"/>\n"
                           "        </ValueAliasMap>\n"
                           "        <ValueAliasMap coreName=\"stdcore[1]\" category=\"functions\">\n"
                           "            <Entry name=\"mainloop\" alias=\"main.0\"/>\n"
                           "        </ValueAliasMap>\n"
                           "    </ValueAliases>\n"),
              std::string::npos)
        << written;
    EXPECT_THAT(written, testing::EndsWith("#0\nb" + digits("main.1") + " fu00a0\nb" + digits("main.0") +
                                           " fu01a0\n\n#0\n"));
}

TEST(FunctionTracer, ComesLastWhateverTheOrderOfTheOptions) {
    StubSimulator simulator;
    simulator.core().threads.resize(1);
    const PluginResult result = runPlugin(simulator, "-functions -threads -cycles");
    EXPECT_THAT(result.declarations(),
                testing::EndsWith("$var wire 64 fu00a0 stdcore[0]_Functions_Thread0 $end\n"));
}
