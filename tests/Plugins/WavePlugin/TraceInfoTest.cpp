#include "Plugins/WavePlugin/TraceInfo.h"

#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "Plugins/WavePlugin/ResourceTracer.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/StubSimulator.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class TraceInfoTest : public testing::Test {
protected:
    TraceInfoTest() {
        simulator.core(s_pid).ports = {StubSimulator::port("P", 1)};
        simulator.core(s_pid).threads.resize(1);
        simulator.core(s_pid).timers.resize(1);
        simulator.core(s_pid).clockBlocks.resize(1);
    }

    // The categories of the core's element in the structure document, in order.
    std::vector<std::string> categories() {
        info.initialise(simulator.callbacks(), &library);
        const MemoryStream stream;
        StructureFileWriter writer(stream, simulator.callbacks(), &library);
        info.dumpSignalHierarchy(&writer);
        std::vector<std::string> names;
        const std::string text = stream.text();
        const std::string mark = "<Category name=\"";
        for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
            at += mark.size();
            names.push_back(text.substr(at, text.find('"', at) - at));
        }
        return names;
    }

    static constexpr unsigned int s_pid = 2U << 16 | 3;
    StubSimulator simulator;
    PluginLibrary library;
    TraceInfo info{s_pid, "core"};
};

} // namespace

TEST_F(TraceInfoTest, KnowsItsCore) {
    EXPECT_EQ(info.getPid(), s_pid);
}

TEST_F(TraceInfoTest, TracesNothingUnlessAsked) {
    EXPECT_THAT(categories(), ElementsAre());
}

TEST_F(TraceInfoTest, MakesItsTracersInAFixedOrder) {
    info.setTraceInstructions(true);
    info.setTraceTimers(true);
    info.setTraceClocks(true);
    info.setTraceThreads(true);
    info.setTraceCycles(true);
    info.setTracePorts(TraceInfo::Ports);
    EXPECT_THAT(categories(),
                ElementsAre("Ports", "Cycles", "Threads", "ClockBlocks", "Timers", "Instructions"));
}

TEST_F(TraceInfoTest, MakesOneTracerOfPortsForDetail) {
    info.setTracePorts(TraceInfo::DetailedPorts);
    EXPECT_THAT(categories(), ElementsAre("Ports"));
    const MemoryStream stream;
    info.declareVariables(stream);
    EXPECT_EQ(std::ranges::count(stream.text(), '\n'), 15);
}

TEST_F(TraceInfoTest, TheLevelOfPortsLastSetCounts) {
    info.setTracePorts(TraceInfo::DetailedPorts);
    info.setTracePorts(TraceInfo::Ports);
    info.initialise(simulator.callbacks(), &library);
    const MemoryStream stream;
    info.declareVariables(stream);
    EXPECT_THAT(stream.text(), HasSubstr("_portDetails"));
    EXPECT_THAT(stream.text(), Not(HasSubstr("_shiftReg")));
}

TEST_F(TraceInfoTest, WritesItsCoreAlsoAroundEmptyCategories) {
    simulator.core(s_pid) = {};
    info.setTracePorts(TraceInfo::Ports);
    info.initialise(simulator.callbacks(), &library);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), &library);
    info.dumpSignalHierarchy(&writer);
    EXPECT_EQ(stream.text(), "        <Core name=\"core\">\n"
                             "            <Category name=\"Ports\">\n"
                             "            </Category>\n"
                             "        </Core>\n");
}

TEST_F(TraceInfoTest, OfACoreWithoutImagesHasNoValueAliases) {
    info.setTraceCycles(true);
    info.initialise(simulator.callbacks(), &library);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), &library);
    info.dumpSignalValueAliases(&writer);
    EXPECT_EQ(stream.text(), "");
}

TEST_F(TraceInfoTest, AsksEachCountOnceAndOnlyForTracersThatItMakes) {
    info.setTraceThreads(true);
    info.initialise(simulator.callbacks(), &library);
    EXPECT_EQ(simulator.calls[19], 1U);
    EXPECT_EQ(simulator.calls[21] + simulator.calls[26] + simulator.calls[32], 0U);
}
