// Older 32-bit hosts keep the stack aligned to four bytes only.

#include "tests/end_to_end/HostRun.h"

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <cstring>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#if defined(__i386__)

namespace {

unsigned int s_cycle = 0;

const char* version() {
    return "1";
}
double frequency() {
    return 400;
}
unsigned int cycle() {
    return s_cycle;
}
unsigned int count(unsigned int) {
    return 3;
}
void portState(unsigned int, unsigned int port, TracePortState* state) {
    static const char* const s_names[] = {"A", "B", "C"};
    std::memset(state, 0, sizeof *state);
    state->name = s_names[port];
    state->width = 16;
    state->value = s_cycle;
}
void threadState(unsigned int, unsigned int, TraceThreadState* state) {
    std::memset(state, 0, sizeof *state);
    state->inUse = s_cycle & 1;
}

// Calls with the stack pointer this many bytes below a multiple of 16.
unsigned int callAt(unsigned int offset, void* function, unsigned int first, unsigned int second) {
    unsigned int result = 0;
    asm volatile("movl %%esp, %%ebx\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl %%ecx, %%esp\n\t"
                 "pushl %%edi\n\t"
                 "pushl %%esi\n\t"
                 "call *%%eax\n\t"
                 "movl %%ebx, %%esp"
                 : "=a"(result), "+c"(offset)
                 : "a"(function), "S"(first), "D"(second)
                 : "ebx", "edx", "memory", "cc");
    return result;
}

unsigned int wordOf(const void* pointer) {
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(pointer));
}

void playAt(unsigned int offset, const std::string& arguments) {
    void* plugin = dlopen(WAVE_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(plugin) << dlerror();
    TracePluginCallbacks callbacks{};
    callbacks.getInterfaceVersion = version;
    callbacks.getClockFrequency = frequency;
    callbacks.getCycleCount = cycle;
    callbacks.getNumPorts = count;
    callbacks.getPortState = portState;
    callbacks.getNumThreads = count;
    callbacks.getThreadState = threadState;
    const unsigned int instance =
        callAt(offset, dlsym(plugin, "PluginInitialise"), wordOf(&callbacks), wordOf(arguments.c_str()));
    for (s_cycle = 1; s_cycle < 5; ++s_cycle) {
        callAt(offset, dlsym(plugin, "PluginNotify"), instance, 0);
        callAt(offset, dlsym(plugin, "PluginClock"), instance, 0);
    }
    callAt(offset, dlsym(plugin, "PluginTerminate"), instance, 0);
    callAt(offset, dlsym(plugin, "PluginHelp"), 0, 0);
}

} // namespace

TEST(UnalignedStack, EveryEntryPointWorksAtEveryOffset) {
    const HostRun run;
    for (const unsigned int offset : {0U, 4U, 8U, 12U}) {
        const std::string arguments =
            run.arguments("a.vcd", "-core stdcore[0] -ports-detailed -threads -cycles");
        const ChildResult result = runInChild([&] { playAt(offset, arguments); });
        EXPECT_EQ(result.exitStatus, 0) << offset << result.error;
        EXPECT_THAT(run.waveform("a.vcd"),
                    testing::EndsWith("#4\nb0000000000000100 po00a0\nb0000000000000100 po00a1\n"
                                      "b0000000000000100 po00a2\n"
                                      "b00000000000000000000000000000100 _00\n"
                                      "0t00a0\n0t00a1\n0t00a2\n\n#5\n"));
    }
}

#endif
