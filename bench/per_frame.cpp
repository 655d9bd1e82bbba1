// The per-frame work of a host: projecting many points and marking the outline of a view.
//
//   project_each      the single-point project() on every point: two matrices built and
//                     multiplied per point
//   project_array     the array form: one matrix per call
//   cached_matrix     the limit: the same arithmetic, a matrix held by the caller, inlined
//   visible_edges     indexedfaceset::determine_visible_edges on a wavy grid, perspective
//   halfedge_walk     the same marks by the walk that asks the projector at every half-edge
//
// Each at three sizes; the table after the runs gives the ratio of each row to its limit or
// former walk and the growth from size to size (4x the points should take about 4x as long).
#include <benchmark/benchmark.h>

#include <facet/ifs.h>
#include <facet/primitives.h>
#include <facet/spaces.h>

#include <cmath>
#include <map>
#include <vector>

#include "ratio_table.h"

namespace {

const camera& view() {
    static const camera cam(vector3d(3.0, 40.0, 60.0), vector3d(0.1, -0.6, -1.0));
    return cam;
}

const perspective_projector& lens() {
    static const perspective_projector proj = [] {
        perspective_projector p(60.0, 1.5, 0.5, 500.0);
        p.set_viewport(0, 0, 1920, 1280);
        return p;
    }();
    return proj;
}

std::vector<vector3d> points(std::size_t n) {
    std::vector<vector3d> p(n);
    for (std::size_t i = 0; i < n; ++i)
        p[i] = vector3d(std::sin(0.01 * i) * 20.0, 0.001 * i, std::cos(0.013 * i) * 20.0);
    return p;
}

void count_points(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void project_each(benchmark::State& state) {
    const std::vector<vector3d> in = points(static_cast<std::size_t>(state.range(0)));
    std::vector<vector3d> out(in.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < in.size(); ++i) out[i] = project(in[i], view(), lens());
        benchmark::DoNotOptimize(out.data());
    }
    count_points(state);
}

void project_array(benchmark::State& state) {
    const std::vector<vector3d> in = points(static_cast<std::size_t>(state.range(0)));
    std::vector<vector3d> out(in.size());
    for (auto _ : state) {
        project(in.data(), in.size(), out.data(), view(), lens());
        benchmark::DoNotOptimize(out.data());
    }
    count_points(state);
}

void cached_matrix(benchmark::State& state) {
    const std::vector<vector3d> in = points(static_cast<std::size_t>(state.range(0)));
    std::vector<vector3d> out(in.size());
    const matrix44d m = calc_transformation_matrix(view(), lens());
    for (auto _ : state) {
        for (std::size_t i = 0; i < in.size(); ++i) {
            const vector3d& p = in[i];
            const double w = m(3, 0) * p.x + m(3, 1) * p.y + m(3, 2) * p.z + m(3, 3);
            out[i] = vector3d((m(0, 0) * p.x + m(0, 1) * p.y + m(0, 2) * p.z + m(0, 3)) / w,
                              (m(1, 0) * p.x + m(1, 1) * p.y + m(1, 2) * p.z + m(1, 3)) / w,
                              (m(2, 0) * p.x + m(2, 1) * p.y + m(2, 2) * p.z + m(2, 3)) / w);
        }
        benchmark::DoNotOptimize(out.data());
    }
    count_points(state);
}

// An n × n grid of quads on a wave, two triangles each, with its half-edges built.
const indexedfaceset& wavy_grid(std::uint32_t n) {
    static std::map<std::uint32_t, primitives::mesh> meshes;
    primitives::mesh& m = meshes[n];
    if (m.get_vertices().empty()) {
        std::vector<vector3d> vertices;
        std::vector<primitives::mesh::triangle> triangles;
        const std::uint32_t k = n + 1;
        for (std::uint32_t r = 0; r < k; ++r)
            for (std::uint32_t c = 0; c < k; ++c)
                vertices.emplace_back(c * 100.0 / n, 4.0 * std::sin(0.3 * c) * std::cos(0.2 * r),
                                      r * 100.0 / n);
        for (std::uint32_t r = 0; r < n; ++r)
            for (std::uint32_t c = 0; c < n; ++c) {
                const std::uint32_t v = r * k + c;
                triangles.emplace_back(v, v + k, v + 1);
                triangles.emplace_back(v + 1, v + k, v + k + 1);
            }
        m.set_vertices(vertices);
        m.set_triangles(triangles);
    }
    return m.get_mesh();
}

void count_edges(benchmark::State& state, const indexedfaceset& fs) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * fs.num_edges());
}

void visible_edges(benchmark::State& state) {
    indexedfaceset& fs = const_cast<indexedfaceset&>(wavy_grid(state.range(0)));
    for (auto _ : state) fs.determine_visible_edges(view(), lens(), 65.0);
    count_edges(state, fs);
}

void halfedge_walk(benchmark::State& state) {
    indexedfaceset& fs = const_cast<indexedfaceset&>(wavy_grid(state.range(0)));
    const double threshold = std::cos(65.0 * geometry::pi / 180.0);
    for (auto _ : state) {
        for (halfedge& e : fs.edges()) {
            const vector3d v = lens().get_viewvector(fs.get_vertex(e.vertex), view());
            if (e.m_twinedge == nullptr) {
                e.set_drawn(true);
                continue;
            }
            const vector3d& na = e.face->normal;
            const vector3d& nb = e.m_twinedge->face->normal;
            const double a = dot(na, v), b = dot(nb, v);
            const bool drawn = dot(na, nb) <= threshold ||
                               !((a >= 0.017453292519943295 && b >= 0.017453292519943295) ||
                                 (a <= -0.017453292519943295 && b <= -0.017453292519943295));
            e.set_drawn(drawn);
            e.m_twinedge->set_drawn(drawn);
        }
        benchmark::DoNotOptimize(fs.edges().data());
    }
    count_edges(state, fs);
}

}  // namespace

BENCHMARK(project_each)->Arg(1 << 12)->Arg(1 << 14)->Arg(1 << 16);
BENCHMARK(project_array)->Arg(1 << 12)->Arg(1 << 14)->Arg(1 << 16);
BENCHMARK(cached_matrix)->Arg(1 << 12)->Arg(1 << 14)->Arg(1 << 16);
BENCHMARK(visible_edges)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(halfedge_walk)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    facet_bench::ratio_table table({{"project_each", "cached_matrix"},
                                    {"project_array", "cached_matrix"},
                                    {"visible_edges", "halfedge_walk"}});
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
