// What every tracer declares, lists and describes, held against each other. The wanted exceptions are tables;
// an entry that is no longer needed fails too.

#include "Plugins/WavePlugin/ClockBlockTracer.h"
#include "Plugins/WavePlugin/CycleTracer.h"
#include "Plugins/WavePlugin/FunctionTracer.h"
#include "Plugins/WavePlugin/InstructionTracer.h"
#include "Plugins/WavePlugin/PadTracer.h"
#include "Plugins/WavePlugin/PortTracer.h"
#include "Plugins/WavePlugin/ThreadTracer.h"
#include "Plugins/WavePlugin/TimerTracer.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/StubSimulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <vector>

using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

// Declared, and wanted to be in no hierarchy.
const std::vector<std::string> s_unlisted = {
    "stdcore[0]_ZS1_PORT_1A_shiftRegValid",
    "stdcore[0]_ZS1_PORT_32A_shiftRegValid",
};

// Declared, and wanted to be without description: patterns, for any resource.
const std::vector<std::string> s_undescribed = {
    ".*_outputThreadPc",  ".*_portDetails",     ".*_shiftRegValid", ".*_shiftRegSize", ".*_shiftRegCount",
    ".*_transferRegFull", ".*_transferRegSize", ".*Timer\\d+_.*",   ".*Functions_.*",
};

struct Declaration {
    unsigned int width;
    std::string identifier;
    std::string name;
};

class SignalsTest : public testing::Test {
protected:
    // A device with two resources of each kind, and a tracer of each kind.
    SignalsTest() {
        StubSimulator::Core& core = simulator.core();
        core.ports = {StubSimulator::port("ZS1_PORT_1A", 1), StubSimulator::port("ZS1_PORT_32A", 32)};
        core.threads.resize(2);
        core.timers.resize(2);
        core.clockBlocks.resize(2);
        simulator.pads = {StubSimulator::pad("Pad0"), StubSimulator::pad("Pad1")};

        tracers.push_back(std::make_unique<PadTracer>(simulator.callbacks()));
        tracers.push_back(std::make_unique<PortTracer>(simulator.callbacks(), 0, s_core, true));
        tracers.push_back(std::make_unique<CycleTracer>(simulator.callbacks(), 0, s_core));
        tracers.push_back(std::make_unique<ThreadTracer>(simulator.callbacks(), 0, s_core));
        tracers.push_back(std::make_unique<ClockBlockTracer>(simulator.callbacks(), 0, s_core));
        tracers.push_back(std::make_unique<TimerTracer>(simulator.callbacks(), 0, s_core));
        tracers.push_back(std::make_unique<InstructionTracer>(simulator.callbacks(), 0, s_core));
        tracers.push_back(std::make_unique<FunctionTracer>(simulator.callbacks(), 0, s_core));

        readDeclarations();
        listed = texts(&ResourceTracer::dumpSignalHierarchy, "<Signal name=\"([^\"]*)\"");
        described = texts(&ResourceTracer::dumpSignalDocs, "<SignalDoc name=\"([^\"]*)\"");
        for (const Declaration& declaration : declarations)
            declared.insert(declaration.name);
    }

    static constexpr const char* s_core = "stdcore[0]";
    StubSimulator simulator;
    std::vector<std::unique_ptr<ResourceTracer>> tracers;
    std::vector<Declaration> declarations;
    std::set<std::string> declared;
    std::vector<std::string> listed;
    std::vector<std::string> described; // patterns

private:
    void readDeclarations() {
        const MemoryStream stream;
        for (const auto& tracer : tracers)
            tracer->declareVariables(stream);
        std::istringstream text(stream.text());
        for (std::string line; std::getline(text, line);) {
            std::smatch pieces;
            const std::regex form(R"(\$var wire (\d+) (\S+) (\S+) \$end)");
            ASSERT_TRUE(std::regex_match(line, pieces, form)) << line;
            declarations.push_back({static_cast<unsigned int>(std::stoul(pieces[1])), pieces[2], pieces[3]});
        }
    }

    std::vector<std::string> texts(void (ResourceTracer::*dump)(StructureFileWriter*), const char* form) {
        const MemoryStream stream;
        StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
        for (const auto& tracer : tracers)
            ((*tracer).*dump)(&writer);
        const std::string text = stream.text();
        const std::regex pattern(form);
        std::vector<std::string> found;
        for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at)
            found.push_back((*at)[1]);
        return found;
    }
};

bool matches(const std::string& name, const std::string& pattern) {
    return std::regex_match(name, std::regex(pattern));
}

bool matchesAny(const std::string& name, const std::vector<std::string>& patterns) {
    return std::ranges::any_of(patterns, [&](const std::string& pattern) { return matches(name, pattern); });
}

} // namespace

TEST_F(SignalsTest, EveryTracerDeclaresItsSignalsForEachResource) {
    EXPECT_EQ(declarations.size(), 2U * (1 + 15 + 4 + 5 + 3 + 1) + 1 + 3);
}

TEST_F(SignalsTest, IdentifiersAndNamesAreUnique) {
    std::set<std::string> identifiers;
    for (const Declaration& declaration : declarations)
        EXPECT_TRUE(identifiers.insert(declaration.identifier).second) << declaration.identifier;
    EXPECT_EQ(declared.size(), declarations.size());
}

TEST_F(SignalsTest, WidthsAreThoseOfNumbers) {
    for (const Declaration& declaration : declarations) {
        EXPECT_GE(declaration.width, 1U) << declaration.name;
        EXPECT_LE(declaration.width, 64U) << declaration.name;
    }
}

TEST_F(SignalsTest, EverySignalIsListedOnceExceptTheWantedOnes) {
    std::vector<std::string> all(listed);
    all.insert(all.end(), s_unlisted.begin(), s_unlisted.end());
    EXPECT_THAT(all, UnorderedElementsAreArray(declared));
}

TEST_F(SignalsTest, EveryDescriptionDescribesSomeSignal) {
    for (const std::string& pattern : described) {
        EXPECT_TRUE(std::ranges::any_of(declared, [&](const std::string& name) {
            return matches(name, pattern);
        })) << pattern;
    }
}

TEST_F(SignalsTest, EverySignalIsDescribedExceptTheWantedOnes) {
    for (const std::string& name : declared)
        EXPECT_NE(matchesAny(name, described), matchesAny(name, s_undescribed)) << name;
}

TEST_F(SignalsTest, EveryExceptionIsNeeded) {
    for (const std::string& pattern : s_undescribed) {
        EXPECT_TRUE(std::ranges::any_of(declared, [&](const std::string& name) {
            return matches(name, pattern);
        })) << pattern;
    }
}

TEST_F(SignalsTest, EverySignalHasAFirstValueInTheOrderOfDeclaration) {
    simulator.core().instruction.mnemonic = "add     ";
    const MemoryStream stream;
    for (const auto& tracer : tracers)
        tracer->initialiseVariables(stream);
    std::vector<std::string> identifiers;
    const std::string text = stream.text();
    const std::regex line("\n(?:[01]|b[01x]+ )([^\n]+)(?=\n)");
    for (std::sregex_iterator at(text.begin(), text.end(), line), end; at != end; ++at)
        identifiers.push_back((*at)[1]);
    std::vector<std::string> expected;
    for (const Declaration& declaration : declarations)
        expected.push_back(declaration.identifier);
    EXPECT_EQ(identifiers, expected);
}
