// Throughput of the transform kernels every mesh passes through: transforming a batch of
// points, and building world matrices (translation, rotation, product, inverse) per object.
#include <benchmark/benchmark.h>

#include <facet/math3d.h>

#include <vector>

static void transform_points(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    std::vector<vector3d> points(n);
    for (std::size_t i = 0; i < n; ++i) points[i] = vector3d(i * 0.5, i * 0.25, -1.0 * i);
    matrix44d m;
    make_translation_matrix(m, 1, 2, 3);
    append_rotation(m, 30, 1, 1, 0);
    std::vector<vector3d> out(n);
    for (auto _ : state) {
        for (std::size_t i = 0; i < n; ++i) transform_vector(m, points[i], out[i]);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}
BENCHMARK(transform_points)->Arg(1 << 10)->Arg(1 << 14)->Arg(1 << 18);

static void world_matrices(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    std::vector<matrix44d> out(n);
    for (auto _ : state) {
        for (std::size_t i = 0; i < n; ++i) {
            matrix44d m;
            make_translation_matrix(m, i * 1.0, 0.5, -2.0);
            append_rotation(m, i * 0.1, 0, 1, 0);
            out[i] = inverse(m);
        }
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * n));
}
BENCHMARK(world_matrices)->Arg(1 << 8)->Arg(1 << 12)->Arg(1 << 16);
