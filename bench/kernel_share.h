// The kernel's share of a benchmark's CPU time, as the counter "sys%": page faults of fresh
// memory show up here.
#pragma once

#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace facet_bench {

/// The kernel's share of this thread's CPU time between construction and report(), in percent.
class kernel_share {
public:
    kernel_share() { getrusage(RUSAGE_THREAD, &m_start); }
    void report(benchmark::State& state) const {
        rusage end{};
        getrusage(RUSAGE_THREAD, &end);
        const double user = seconds(end.ru_utime) - seconds(m_start.ru_utime);
        const double sys = seconds(end.ru_stime) - seconds(m_start.ru_stime);
        state.counters["sys%"] = user + sys > 0.0 ? 100.0 * sys / (user + sys) : 0.0;
    }

private:
    static double seconds(const timeval& t) { return t.tv_sec + 1e-6 * t.tv_usec; }
    rusage m_start{};
};

}  // namespace facet_bench
