#pragma once

#include <time.h> // the processor clock is POSIX's

#include <algorithm>
#include <vector>

/// What the benchmarks measure with.
namespace varnic::bench {

struct Cost {
    /// Seconds on the clock, and of all threads together on the processors.
    double elapsed = 0;
    double processor = 0;
};

inline double now(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <class Work>
Cost costOf(Work work) {
    const Cost begin{now(CLOCK_MONOTONIC), now(CLOCK_PROCESS_CPUTIME_ID)};
    work();
    return {now(CLOCK_MONOTONIC) - begin.elapsed, now(CLOCK_PROCESS_CPUTIME_ID) - begin.processor};
}

inline double median(std::vector<Cost> costs, double Cost::* what) {
    std::ranges::sort(costs, {}, what);
    return costs.at(costs.size() / 2).*what;
}

} // namespace varnic::bench
