#include "Plugins/WavePlugin/ThreadTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

enum WaitingType { NotWaiting = 0, Port = 1, Timer = 2, Unknown = 12 };

// The bits of the texts, eight digits a character.
const std::string s_notAvailable = "0100111000101111010000010010000000100000001000000010000000100000";
const std::string s_port = "0101000001001111010100100101010000100000001000000010000000100000";
const std::string s_timer = "0101010001001001010011010100010101010010001000000010000000100000";

TraceThreadState thread(unsigned int inUse, unsigned int waiting, unsigned int type, unsigned int number) {
    TraceThreadState state{};
    state.inUse = inUse;
    state.waiting = waiting;
    state.resourceType = type;
    state.resourceNumber = number;
    return state;
}

class ThreadTracerTest : public testing::Test {
protected:
    StubSimulator simulator;
    std::vector<TraceThreadState>& threads = simulator.core().threads;
};

} // namespace

TEST_F(ThreadTracerTest, DeclaresFourSignalsAThread) {
    threads = {thread(0, 0, 0, 0), thread(0, 0, 0, 0)};
    const MemoryStream stream;
    ThreadTracer(simulator.callbacks(), 0, "stdcore[0]").declareVariables(stream);
    EXPECT_EQ(stream.text(), "$var wire 1 t00a0 stdcore[0]_Thread0_inuse $end\n"
                             "$var wire 1 t00b0 stdcore[0]_Thread0_waiting $end\n"
                             "$var wire 64 t00c0 stdcore[0]_Thread0_waitingResourceType $end\n"
                             "$var wire 8 t00d0 stdcore[0]_Thread0_waitingResourceNumber $end\n"
                             "$var wire 1 t00a1 stdcore[0]_Thread1_inuse $end\n"
                             "$var wire 1 t00b1 stdcore[0]_Thread1_waiting $end\n"
                             "$var wire 64 t00c1 stdcore[0]_Thread1_waitingResourceType $end\n"
                             "$var wire 8 t00d1 stdcore[0]_Thread1_waitingResourceNumber $end\n");
    EXPECT_EQ(simulator.calls[20], 2U); // the state is asked for also here
}

TEST_F(ThreadTracerTest, ListsEachThreadAsAGroup) {
    threads = {thread(0, 0, 0, 0)};
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    ThreadTracer(simulator.callbacks(), 0, "c").dumpSignalHierarchy(&writer);
    EXPECT_EQ(stream.text(),
              "            <Category name=\"Threads\">\n"
              "                <Group name=\"Thread0\">\n"
              "                    <Signal name=\"c_Thread0_inuse\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"c_Thread0_waiting\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"c_Thread0_waitingResourceType\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"c_Thread0_waitingResourceNumber\" radix=\"HEX\"/>\n"
              "                </Group>\n"
              "            </Category>\n");
    EXPECT_EQ(simulator.calls[20], 0U);
}

TEST_F(ThreadTracerTest, DescribesFourSignals) {
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    ThreadTracer(simulator.callbacks(), 0, "c").dumpSignalDocs(&writer);
    EXPECT_EQ(stream.text(),
              R"xml(        <SignalDoc name=".*Thread\d+_inuse" description="High if the thread is in use">
            <ValueDocs>
                <ValueDoc value="0" text="The thread is not in use"/>
                <ValueDoc value="1" text="The thread is in use"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waiting" description="High if the thread is waiting on a resource">
            <ValueDocs>
                <ValueDoc value="0" text="The thread is not waiting on a resource"/>
                <ValueDoc value="1" text="The thread is waiting on a resource"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waitingResourceType" description="If the thread is waiting, this is the resource type that is causing the wait (ASCII format)">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waitingResourceNumber" description="If the thread is waiting, this is the resource id that is causing the wait">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
)xml");
}

TEST_F(ThreadTracerTest, NamesEachTypeByEightCharacters) {
    const char* const texts[] = {"N/A     ", "PORT    ", "TIMER   ", "CHANEND ", "SYNC    ", "THREAD  ",
                                 "LOCK    ", "CLKBLK  ", "COPROC  ", "PS      ", "CONFIG  ", "INSTR   "};
    ThreadTracer tracer(simulator.callbacks(), 0, "c");
    for (unsigned int type = 0; type < std::size(texts); ++type) {
        std::string text;
        for (int shift = 56; shift >= 0; shift -= 8)
            text += static_cast<char>(tracer.GetWaitingTypeAscii(type) >> shift & 0xff);
        EXPECT_EQ(text, texts[type]);
    }
}

TEST_F(ThreadTracerTest, TheTypeHasAValueFromTheStart) {
    threads = {thread(1, 1, Port, 3)};
    const MemoryStream stream;
    ThreadTracer(simulator.callbacks(), 0, "c").initialiseVariables(stream);
    EXPECT_EQ(stream.text(), "$dumpvars\n1t00a0\n1t00b0\nb" + s_port + " t00c0\nb00000011 t00d0\n$end\n\n");
}

TEST_F(ThreadTracerTest, AThreadThatMovesFromPortToTimerWritesTypeAndNumberUnderOneTimeLine) {
    threads = {thread(1, 1, Port, 3)};
    const PluginResult result = runPlugin(simulator, "-threads", [&](unsigned int id) {
        simulator.cycle = 1;
        threads[0] = thread(1, 1, Timer, 4);
        PluginClock(id);
        simulator.cycle = 2;
        threads[0] = thread(1, 1, Port, 4); // the same number
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(),
              "#1\nb" + s_timer + " t00c0\nb00000100 t00d0\n\n#2\nb" + s_port + " t00c0\n\n#2\n");
}

TEST_F(ThreadTracerTest, AThreadThatStopsWaitingKeepsTypeAndNumberAsReported) {
    threads = {thread(1, 1, Port, 3)};
    const PluginResult result = runPlugin(simulator, "-threads", [&](unsigned int id) {
        simulator.cycle = 1;
        threads[0].waiting = 0;
        PluginClock(id);
        simulator.cycle = 2;
        threads[0].resourceType = NotWaiting;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#1\n0t00b0\n\n#2\nb" + s_notAvailable + " t00c0\n\n#2\n");
}

TEST_F(ThreadTracerTest, TheNumberHasEightDigits) {
    threads = {thread(1, 1, Port, 0)};
    const PluginResult result = runPlugin(simulator, "-threads", [&](unsigned int id) {
        threads[0].resourceNumber = 1;
        PluginClock(id);
        threads[0].resourceNumber = 0x1ff; // its low eight bits
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb00000001 t00d0\n\n#0\nb11111111 t00d0\n\n#0\n");
}

TEST_F(ThreadTracerTest, AnUnknownTypeEndsTheProcessAtTheFirstValues) {
    threads = {thread(1, 0, NotWaiting, 0), thread(1, 0, Unknown, 0)};
    const PluginResult result = runPlugin(simulator, "-threads");
    EXPECT_EQ(result.process.signal, SIGABRT);
    EXPECT_THAT(result.process.error, HasSubstr("Plugins/WavePlugin/ThreadTracer"));
    EXPECT_THAT(result.process.error, HasSubstr("Assertion `0' failed."));
#if !defined(__clang__) // which spells functions in another way
    EXPECT_THAT(result.process.error, HasSubstr("uint64_t ThreadTracer::GetWaitingTypeAscii(uint)"));
#endif
    // What went before it is in the file.
    EXPECT_THAT(result.values(), testing::EndsWith("b00000000 t00d0\n"));
}

TEST_F(ThreadTracerTest, AnUnknownTypeEndsTheProcessAtTheClockThatSeesItAlsoWithoutWaiting) {
    threads = {thread(0, 0, NotWaiting, 0), thread(0, 0, NotWaiting, 0)};
    const PluginResult result = runPlugin(simulator, "-threads", [&](unsigned int id) {
        PluginClock(id);
        simulator.cycle = 5;
        threads[0].inUse = 1;
        threads[1].inUse = 1;
        threads[1].resourceType = Unknown;
        PluginClock(id);
    });
    EXPECT_EQ(result.process.signal, SIGABRT);
    EXPECT_THAT(result.process.error, HasSubstr("Assertion `0' failed."));
    // The threads before it are written, and nothing of its own.
    EXPECT_EQ(result.clocks(), "#5\n1t00a0\n");
}
