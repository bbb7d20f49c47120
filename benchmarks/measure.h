// The clock of the benchmarks, statistics of its times, and the main function.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

/// Processor time of this thread only, without other programs.
inline double threadMilliseconds()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

template <typename Work> double millisecondsOf(const Work& work)
{
    const double start = threadMilliseconds();
    work();
    return threadMilliseconds() - start;
}

/// 0 for no values.
inline double median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs the registered benchmarks according to the options. Returns the exit status of the program.
inline int runBenchmarks(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
