#pragma once

#include <algorithm>
#include <sys/resource.h>

// Processor time of this process and of the programs that it ran, in seconds: what others take of the machine
// doesn't count.
inline double processorSeconds() {
    double seconds = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage;
        getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    }
    return seconds;
}

// The least that the work took in some runs.
template<typename Work>
double leastProcessorSeconds(const Work& work, int numRuns = 7) {
    double least = 1e9;
    for (int i = 0; i < numRuns; ++i) {
        const double start = processorSeconds();
        work();
        least = std::min(least, processorSeconds() - start);
    }
    return least;
}
