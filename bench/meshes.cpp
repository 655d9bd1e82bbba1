// Mesh building: a cylinder's whole road through get_mesh, and the connectivity and smoothing
// passes on a large grid, each at three sizes so that the (linear) growth is visible.
#include <benchmark/benchmark.h>

#include <facet/ifs.h>
#include <facet/primitives.h>

#include <cmath>

// get_mesh of a dirty cylinder: vertex and face tables, normals, half-edges, sharp edges, box
// texture coordinates, tangent frames and smoothing.
static void cylinder_get_mesh(benchmark::State& state) {
    const auto divisions = static_cast<std::uint32_t>(state.range(0));
    primitives::cylinder c(2.0, 1.0, divisions);
    c.set_smoothing_threshold_angle(30.0);
    for (auto _ : state) {
        c.set_dirty(true);
        benchmark::DoNotOptimize(c.get_mesh().num_faces());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 4 * divisions);
    state.counters["faces"] = 4.0 * divisions;
}
BENCHMARK(cylinder_get_mesh)->Arg(64)->Arg(1024)->Arg(16384)->Unit(benchmark::kMicrosecond);

// A k × k grid of vertices on a gentle wave, two triangles per cell, with box texture
// coordinates and tangent frames ready for smoothing.
static void make_grid(indexedfaceset& fs, std::uint32_t k) {
    fs.vertices().resize(k * k);
    for (std::uint32_t r = 0; r < k; ++r)
        for (std::uint32_t c = 0; c < k; ++c)
            fs.vertices()[r * k + c] = vector3d(c, 0.3 * std::sin(0.2 * c) * std::cos(0.15 * r), r);
    fs.faces().resize(2 * (k - 1) * (k - 1));
    std::uint32_t f = 0;
    for (std::uint32_t r = 0; r + 1 < k; ++r)
        for (std::uint32_t c = 0; c + 1 < k; ++c) {
            const std::uint32_t v = r * k + c;
            fs.faces()[f++] = face(v, v + k, v + 1);
            fs.faces()[f++] = face(v + 1, v + k, v + k + 1);
        }
    for (face& x : fs.faces()) x.style = 0;
    fs.styles().resize(1);
    fs.compute_normals();
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
}

static void grid_halfedges_and_smoothing(benchmark::State& state) {
    const auto k = static_cast<std::uint32_t>(state.range(0));
    indexedfaceset fs;
    make_grid(fs, k);
    for (auto _ : state) {
        fs.construct_halfedge_data();
        fs.smooth_mesh(30.0);
        benchmark::DoNotOptimize(fs.get_normal(0).y);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * fs.num_faces());
    state.counters["faces"] = fs.num_faces();
}
BENCHMARK(grid_halfedges_and_smoothing)
    ->Arg(64)
    ->Arg(256)
    ->Arg(1024)
    ->Unit(benchmark::kMillisecond);
