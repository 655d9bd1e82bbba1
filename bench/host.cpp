// The host kit: world matrices of a whole hierarchy in one pass against asking every object
// for its own (the recursive product up its parent chain), and reading back a written scene.
#include <benchmark/benchmark.h>

#include <facet/primitives.h>
#include <facet/scene.h>

#include <sstream>
#include <string>

namespace {

// A single chain: every object the child of the one before, depth = n.
facet::scene chain(std::size_t n) {
    facet::scene s;
    primitives::basic_object* parent = nullptr;
    for (std::size_t i = 0; i < n; ++i) {
        auto& o = s.add(std::make_unique<primitives::box>(), parent);
        o.set_name("part" + std::to_string(i));  // parents are found by name when read
        o.set_position(vector3d(0.5, 0.25 * (i % 7), -1.0));
        o.set_orientation(vector3d(0, 1, 0), 0.1 * (i % 13));
        parent = &o;
    }
    return s;
}

}  // namespace

static void scene_world_matrices(benchmark::State& state) {
    const facet::scene s = chain(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(s.world_matrices().data());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * s.size()));
}
BENCHMARK(scene_world_matrices)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Each object's matrix asked for on its own: quadratic in the depth of a chain.
static void per_object_matrices(benchmark::State& state) {
    const facet::scene s = chain(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        for (const primitives::basic_object& o : s)
            benchmark::DoNotOptimize(primitives::calc_transformation_matrix(o));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * s.size()));
}
BENCHMARK(per_object_matrices)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMicrosecond);

static void read_written_scene(benchmark::State& state) {
    std::ostringstream os;
    facet::write_scene(chain(static_cast<std::size_t>(state.range(0))), os);
    const std::string text = os.str();
    for (auto _ : state) {
        std::istringstream in(text);
        benchmark::DoNotOptimize(facet::read_scene(in).size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
// A flat scene: every object the child of one root.
static void destroy_flat_scene(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto s = std::make_unique<facet::scene>();
        auto& root = s->emplace<primitives::basic_object>();
        for (int64_t i = 0; i < state.range(0); ++i)
            s->add(std::make_unique<primitives::basic_object>(), &root);
        state.ResumeTiming();
        s.reset();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(destroy_flat_scene)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK(read_written_scene)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
