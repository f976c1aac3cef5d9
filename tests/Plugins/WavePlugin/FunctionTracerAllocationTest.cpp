#include "Plugins/WavePlugin/FunctionTracer.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/StubSimulator.h"

#include <cstdio>
#include <gtest/gtest.h>

TEST(FunctionTracer, AllocatesNothingOnAClockInWhichAThreadStaysInItsFunction) {
    StubSimulator simulator;
    simulator.core().threads.resize(2);
    FunctionTracer tracer(simulator.callbacks(), 0, "stdcore[0]");
    FILE* stream = std::fopen("/dev/null", "w");
    const auto clock = [&](unsigned int thread, const char* function) {
        simulator.core().instruction.valid = 1;
        simulator.core().instruction.thread = thread;
        simulator.core().instruction.functionName = function;
        bool firstChange = true;
        tracer.traceVariables(stream, &firstChange);
    };
    const char* const settled = "a_function_with_a_long_name";
    const char* const unknown = "another_function_with_a_long_name";
    tracer.createShortFunctionName(settled);
    clock(0, settled);
    clock(1, unknown);

    const std::size_t before = numAllocations();
    EXPECT_GT(before, 0U); // they are counted
    for (int i = 0; i < 100; ++i) {
        clock(0, settled);
        clock(1, unknown);
    }
    EXPECT_EQ(numAllocations(), before);
    std::fclose(stream);
}
