// The plugin as it ships: the module that a simulator loads.

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/PluginRun.h"
#include "tests/support/SampleImage.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsSubsetOf;

namespace {

// Given by the build.
const std::string s_module = WAVEPLUGIN_MODULE;
const std::string s_exportList = WAVEPLUGIN_EXPORT_LIST;

class Module {
public:
    Module() : m_handle(dlopen(s_module.c_str(), RTLD_NOW | RTLD_LOCAL)) {}
    ~Module() {
        if (m_handle)
            dlclose(m_handle);
    }

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    template<typename Function>
    Function find(const char* name) const {
        void* const symbol = m_handle ? dlsym(m_handle, name) : nullptr;
        if (!symbol)
            std::abort();
        return reinterpret_cast<Function>(symbol);
    }

private:
    void* m_handle;
};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

} // namespace

TEST(WavePluginModule, ExportsTheFiveEntryPointsAndNoOtherName) {
    const ChildResult result = runProgram({"nm", "-D", "--defined-only", "--format=posix", s_module});
    std::set<std::string> names;
    for (const std::string& line : linesOf(result.output))
        names.insert(line.substr(0, line.find(' ')));
    EXPECT_THAT(names, ElementsAre("PluginClock", "PluginHelp", "PluginInitialise", "PluginNotify",
                                   "PluginTerminate"));
}

TEST(WavePluginModule, ExportsWhatTheListForTheLinkerNames) {
    std::set<std::string> names;
    const std::string list = readFile(s_exportList);
    const std::regex name(R"(\b(Plugin\w+);)");
    for (std::sregex_iterator at(list.begin(), list.end(), name), end; at != end; ++at)
        names.insert((*at)[1]);
    EXPECT_THAT(names, ElementsAre("PluginClock", "PluginHelp", "PluginInitialise", "PluginNotify",
                                   "PluginTerminate"));
}

TEST(WavePluginModule, NeedsNothingButTheRuntimesOfCAndCpp) {
    const ChildResult result = runProgram({"readelf", "-d", s_module});
    std::vector<std::string> needed;
    const std::regex library(R"(\(NEEDED\).*\[(.*?)\.so)");
    for (std::sregex_iterator at(result.output.begin(), result.output.end(), library), end; at != end; ++at)
        needed.push_back((*at)[1]);
    EXPECT_FALSE(needed.empty());
    EXPECT_THAT(needed, IsSubsetOf({"libc", "libm", "libgcc_s", "libstdc++", "ld-linux", "ld-linux-x86-64"}));
}

#if !defined(WITH_SANITIZERS) // whose own tables hold paths; they don't ship
TEST(WavePluginModule, HoldsNoPathOfTheMachine) {
    const std::string bytes = readFile(s_module);
    const std::string root = s_exportList.substr(0, s_exportList.find("Plugins/WavePlugin"));
    EXPECT_EQ(bytes.find(root), std::string::npos);
    EXPECT_NE(bytes.find("Plugins/WavePlugin/ThreadTracer.cpp"), std::string::npos);
}
#endif

TEST(WavePluginModule, WorksAndBeginsAnewEachTimeItIsLoaded) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    const std::string image = folder.write("image.ze", imageOfCores(s_oneCore));
    const ChildResult result = runInChild([&] {
        for (const char* name : {"first", "second"}) {
            const Module module;
            const unsigned int id = module.find<decltype(&PluginInitialise)>("PluginInitialise")(
                simulator.callbacks(), ("-ze " + image + " -pads -o " + folder.file(name)).c_str());
            std::printf("%u", id);
            simulator.pads[0].value ^= 1;
            module.find<decltype(&PluginClock)>("PluginClock")(id);
            module.find<decltype(&PluginNotify)>("PluginNotify")(id, 1);
            module.find<decltype(&PluginTerminate)>("PluginTerminate")(id);
            if (std::string(module.find<decltype(&PluginHelp)>("PluginHelp")()) != PluginHelp())
                std::abort();
        }
    });
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(result.output, "00");
    EXPECT_THAT(folder.read("first"), EndsWith("#0\n1paa0\n\n#0\n"));
    EXPECT_THAT(folder.read("second"), EndsWith("#0\n0paa0\n\n#0\n"));
}

#if defined(__i386__)

namespace {

// Calls with the stack so many bytes away from a multiple of sixteen. Unused arguments do no harm.
unsigned int callWithStackOffset(void* function, unsigned int offset, const void* first, const void* second) {
    unsigned int result = 0;
    asm volatile("movl %%esp, %%esi\n\t"
                 "andl $-16, %%esp\n\t"
                 "subl $16, %%esp\n\t"
                 "subl %%edx, %%esp\n\t"
                 "pushl %%ecx\n\t"
                 "pushl %%ebx\n\t"
                 "call *%%edi\n\t"
                 "movl %%esi, %%esp"
                 : "=a"(result), "+d"(offset), "+c"(second)
                 : "D"(function), "b"(first)
                 : "esi", "memory", "cc", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7");
    return result;
}

} // namespace

TEST(WavePluginModule, WorksWithAStackAlignedToFourBytes) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    simulator.core().ports = {StubSimulator::port("P", 32)};
    const std::string image = folder.write("image.ze", imageOfCores(s_oneCore));
    for (const unsigned int offset : {0U, 4U, 8U, 12U}) {
        const std::string output = folder.file("wave" + std::to_string(offset));
        const ChildResult result = runInChild([&] {
            const Module module;
            const std::string arguments =
                "-ze " + image + " -pads -ports-detailed -cycles -threads -instructions -o " + output;
            const unsigned int id = callWithStackOffset(module.find<void*>("PluginInitialise"), offset,
                                                        simulator.callbacks(), arguments.c_str());
            const void* const instance = reinterpret_cast<const void*>(id);
            simulator.pads[0].value = 1;
            simulator.core().ports[0].value = 5;
            callWithStackOffset(module.find<void*>("PluginClock"), offset, instance, nullptr);
            callWithStackOffset(module.find<void*>("PluginNotify"), offset, instance, nullptr);
            callWithStackOffset(module.find<void*>("PluginTerminate"), offset, instance, nullptr);
            callWithStackOffset(module.find<void*>("PluginHelp"), offset, nullptr, nullptr);
        });
        EXPECT_EQ(result.exitStatus, 0) << offset << " signal " << result.signal << result.error;
        EXPECT_THAT(readFile(output), EndsWith("#0\n"
                                               "1paa0\n"
                                               "b00000000000000000000000000000101 po00a0\n"
                                               "b00000000000000000000000000000000 _00\n"
                                               "\n"
                                               "#0\n"));
    }
}

#endif
