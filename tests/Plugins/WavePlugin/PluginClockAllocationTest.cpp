// Counts what PluginClock allocates. A program of its own, since it takes malloc's place, or has the
// sanitizer tell of it.

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <cstddef>
#include <gtest/gtest.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define WITH_ADDRESS_SANITIZER
#endif
#endif

namespace {

volatile bool s_counting = false;
volatile unsigned int s_allocations = 0;

void count() {
    if (s_counting)
        s_allocations = s_allocations + 1;
}

} // namespace

#ifdef WITH_ADDRESS_SANITIZER

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace {
const int s_hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { count(); }, [](const volatile void*) {});
}

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    count();
    return __libc_malloc(size);
}
void* calloc(std::size_t number, std::size_t size) {
    count();
    return __libc_calloc(number, size);
}
void* realloc(void* block, std::size_t size) {
    count();
    return __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    count();
    return __libc_memalign(alignment, size);
}
}

#endif

TEST(PluginClockAllocation, TheCounterCounts) {
    s_counting = true;
    delete new volatile int(1);
    s_counting = false;
    EXPECT_NE(s_allocations, 0U);
}

TEST(PluginClockAllocation, AClockAllocatesNothing) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    StubSimulator::Core& core = simulator.core();
    core.ports = {StubSimulator::port("P0", 1), StubSimulator::port("P1", 32)};
    core.threads.resize(2);
    core.timers.resize(2);
    core.clockBlocks.resize(2);
    core.instruction.mnemonic = "nop     ";
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string arguments =
        "-ze " + folder.write("image.ze", imageOfCores("c 0 0\n")) + " -o " + folder.file("wave.vcd") +
        " -pads -ports-detailed -cycles -threads -clock-blocks -timers -instructions";
    const unsigned int id = PluginInitialise(simulator.callbacks(), arguments.c_str());

    s_allocations = 0;
    s_counting = true;
    for (simulator.cycle = 0; simulator.cycle < 100; ++simulator.cycle) {
        simulator.pads[0].value ^= 1;
        core.ports[1].value += 1;
        core.ports[0].shiftRegister += 1;
        core.threads[1].resourceType = simulator.cycle % 12;
        core.timers[0].time += 1;
        core.clockBlocks[1].threadsWaiting += 1;
        core.instruction.pc += 2;
        PluginClock(id);
        PluginClock(id); // without a change
    }
    s_counting = false;
    EXPECT_EQ(s_allocations, 0U);
    PluginTerminate(id);
    EXPECT_NE(folder.read("wave.vcd").find("#99\n"), std::string::npos);
}

TEST(PluginClockAllocation, AClockInWhichEachThreadStaysInItsFunctionAllocatesNothing) {
    StubSimulator simulator;
    simulator.core().threads.resize(2);
    TraceInstructionState& instruction = simulator.core().instruction;
    instruction.valid = 1;
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string image = folder.write(
        "image.ze",
        sampleImage({{.name = "c", .programs = {sampleProgram({"a_function_with_a_long_name"})}}}));
    const unsigned int id = PluginInitialise(
        simulator.callbacks(), ("-ze " + image + " -o " + folder.file("wave.vcd") + " -functions").c_str());
    // One thread runs a function of the image, the other one that no symbol names.
    const auto clock = [&](unsigned int thread) {
        instruction.thread = thread;
        instruction.functionName =
            thread == 0 ? "a_function_with_a_long_name" : "another_function_with_a_long_name";
        PluginClock(id);
    };
    clock(0);
    clock(1);

    s_allocations = 0;
    s_counting = true;
    for (unsigned int i = 0; i < 100; ++i)
        clock(i % 2);
    s_counting = false;
    EXPECT_EQ(s_allocations, 0U);
    PluginTerminate(id);
}
