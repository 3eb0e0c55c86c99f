// Times work that only computes: by the processor's time of this thread, so that other programs on
// the machine do not count.
#pragma once

#include <time.h>

#include "peers/bench.h"

inline uint64_t CpuNanoseconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return uint64_t(now.tv_sec) * 1'000'000'000 + uint64_t(now.tv_nsec);
}

// Prepares and calls an operation at least three times, for so many seconds; the median of the
// calls alone.
template <class Prepare, class Operation>
double MedianCpuTime(double inSeconds, Prepare inPrepare, Operation inOperation) {
    bench::Samples samples(1024);
    const uint64_t start = bench::now_ns();
    while (samples.size() < 3 || double(bench::now_ns() - start) < inSeconds * 1e9) {
        auto prepared = inPrepare();
        const uint64_t before = CpuNanoseconds();
        inOperation(prepared);
        samples.add(CpuNanoseconds() - before);
    }
    return samples.median_ns();
}

template <class Operation>
double MedianCpuTime(double inSeconds, Operation inOperation) {
    return MedianCpuTime(
        inSeconds, [] { return 0; }, [&](int) { inOperation(); });
}
