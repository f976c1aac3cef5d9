// One call of the PLL search. The goal is less than a millisecond in the worst case: the network reader
// makes one call a node.

#include "infr_libs/ZNLoader/TickTock_G4.h"
#include "infr_libs/ZNLoader/TickTock_L1.h"
#include "infr_libs/ZNLoader/ZNUtils.h"

#include <benchmark/benchmark.h>

namespace {

template<typename Device>
void planClock(benchmark::State& state, unsigned input, unsigned target, unsigned minFeedbackDiv) {
    ZNUtils messages;
    const auto planner = Device::create(&messages);
    for (auto _ : state) {
        unsigned actual = 0;
        benchmark::DoNotOptimize(planner->calculatePllValue(input, target, minFeedbackDiv, &actual));
        benchmark::DoNotOptimize(actual);
    }
}

void g4(benchmark::State& state, unsigned input, unsigned target, unsigned minFeedbackDiv) {
    planClock<TickTock_G4>(state, input, target, minFeedbackDiv);
}

void l1(benchmark::State& state, unsigned input, unsigned target, unsigned minFeedbackDiv) {
    planClock<TickTock_L1>(state, input, target, minFeedbackDiv);
}

} // namespace

// The usual request, met by the first setting.
BENCHMARK_CAPTURE(g4, usual, 25000000, 400000000, 0);
BENCHMARK_CAPTURE(l1, usual, 25000000, 400000000, 0);

// The most steps that each device's limits allow: as many output dividers as the VCO's range has room for,
// as many input dividers as the oscillator has room for, and no exact setting that would end the search.
BENCHMARK_CAPTURE(g4, worst, 100000000, 1999999, 0)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(l1, worst, 100000000, 162499999, 0)->Unit(benchmark::kMicrosecond);
