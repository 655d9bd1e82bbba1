// Ear-clipping triangulation at three sizes, so the growth shows: convex outlines, gears (a
// convex core after one round), star-shaped outlines with random radii, and combs (long rows of
// reflex corners). The textbook loop from the tests, which tests every remaining corner against
// every candidate ear and erases clipped corners from an array, runs beside it at the sizes
// where it is still tolerable. After the runs a table (bench/ratio_table.h) gives the best CPU
// time of each size, the ratio to the textbook loop where both ran and the growth from one size
// to the next, with the kernel's share of the CPU time ("sys%", from getrusage).
//
// Run with repetitions for the best of several: --benchmark_repetitions=5. The star family is
// also timed beside earcut, from Python, by bench/triangulate_earcut.py.
#include <benchmark/benchmark.h>

#include <facet/triangulate.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "../tests/support/reference_triangulate.h"
#include "kernel_share.h"
#include "ratio_table.h"

namespace {

using outline = std::vector<vector2d>;

constexpr double two_pi = 6.283185307179586;

double unit_random(std::mt19937_64& rng) { return static_cast<double>(rng() >> 11) * 0x1p-53; }

// A regular polygon. Beyond about 440 corners its turns fall below the collinearity tolerance
// of the clean-up (0.0001 on |cos|, about 0.81 degrees), which then removes every corner, so
// at the larger sizes this measures the clean-up alone.
outline convex(std::size_t n) {
    outline o;
    for (std::size_t i = 0; i < n; ++i) {
        const double a = two_pi * static_cast<double>(i) / static_cast<double>(n);
        o.emplace_back(std::cos(a), std::sin(a));
    }
    return o;
}

// A regular polygon with every other corner pushed in by two angle steps: the clean-up keeps
// every corner, the first round clips the outer corners, and the inner ones left form a convex
// polygon of n / 2 corners, clipped to the end.
outline gear(std::size_t n) {
    const double step = two_pi / static_cast<double>(n);
    outline o;
    for (std::size_t i = 0; i < n; ++i) {
        const double a = step * static_cast<double>(i);
        const double r = i % 2 == 1 ? 1.0 : 1.0 - 2.0 * step;
        o.emplace_back(r * std::cos(a), r * std::sin(a));
    }
    return o;
}

// Star-shaped around the origin with random radii in a band a few angle steps wide, so that
// the turns are random (about half the corners reflex) and the clean-up keeps nearly all.
outline star(std::size_t n) {
    std::mt19937_64 rng(n);
    const double step = two_pi / static_cast<double>(n);
    outline o;
    for (std::size_t i = 0; i < n; ++i) {
        const double a = step * static_cast<double>(i);
        const double r = 1.0 + 3.0 * step * unit_random(rng);
        o.emplace_back(r * std::cos(a), r * std::sin(a));
    }
    return o;
}

// A comb: n / 4 teeth hanging from a bar, long rows of reflex corners.
outline comb(std::size_t n) {
    std::mt19937_64 rng(n);
    const std::size_t teeth = n / 4;
    outline o;
    for (std::size_t i = 0; i < teeth; ++i) {
        const double x = static_cast<double>(i) * 2.0;
        o.emplace_back(x, 0.0);
        o.emplace_back(x + 1.0, 0.0);
        o.emplace_back(x + 1.0, -1.0 - unit_random(rng));
        o.emplace_back(x + 2.0, -1.0 - unit_random(rng));
    }
    o.emplace_back(static_cast<double>(teeth) * 2.0, 3.0);
    o.emplace_back(0.0, 3.0);
    return o;
}

using facet_bench::kernel_share;

template <outline (*Make)(std::size_t), bool Reference>
void run(benchmark::State& state) {
    const outline o = Make(static_cast<std::size_t>(state.range(0)));
    std::vector<unsigned> result;
    result.reserve(3 * o.size());
    const kernel_share kernel;
    for (auto _ : state) {
        result.clear();
        if (Reference)
            reference::triangulate(o, result);
        else
            triangulate(o, result);
        benchmark::DoNotOptimize(result.data());
    }
    kernel.report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * o.size()));
    state.counters["triangles"] = static_cast<double>(result.size() / 3);
}

void convex(benchmark::State& s) { run<convex, false>(s); }
void gear(benchmark::State& s) { run<gear, false>(s); }
void star(benchmark::State& s) { run<star, false>(s); }
void comb(benchmark::State& s) { run<comb, false>(s); }
void convex_textbook(benchmark::State& s) { run<convex, true>(s); }
void gear_textbook(benchmark::State& s) { run<gear, true>(s); }
void star_textbook(benchmark::State& s) { run<star, true>(s); }
void comb_textbook(benchmark::State& s) { run<comb, true>(s); }

}  // namespace

BENCHMARK(convex)->Arg(400)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(gear)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(star)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(comb)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(convex_textbook)->Arg(400)->Unit(benchmark::kMillisecond);
BENCHMARK(gear_textbook)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(star_textbook)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(comb_textbook)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    facet_bench::ratio_table table({{"convex", "convex_textbook"},
                                    {"gear", "gear_textbook"},
                                    {"star", "star_textbook"},
                                    {"comb", "comb_textbook"}},
                                   {"sys%"});
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
