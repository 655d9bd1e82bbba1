// Shadow volumes: indexedfaceset::build_shadow_volume and shadow_volume::rebuild_mesh on closed
// meshes of about 10,000, 100,000 and 1,000,000 triangles (a finely divided cylinder and a UV
// sphere), so that the (linear) growth is visible, each against its limit: reading the same
// mesh's triangles as compact arrays (three uint32 indices per triangle, three doubles per
// vertex) once and writing as many bytes as that builder's volume holds. A plain volume of
// build_shadow_volume holds vertices and face records (one_pass_build_*); the oriented volume of
// rebuild_mesh also holds per-corner normals, half-edges, texture coordinates and tangent frames
// (one_pass_rebuild_*), about ten times the bytes per quad. And the frame cycle of a
// shadow_volume_map with 1,000, 10,000 and 100,000 objects, whose time per object should not
// grow with the number of objects.
//
// Builds run a warm-up first, so that the rows show a host's steady state (every frame writes
// into the storage of the last one), not the first touch of fresh pages.
//
// After the runs a table gives each row's best CPU time, its ratio to the limit and its growth;
// compare ratios within one run (--benchmark_repetitions=5 for the best of five).
#include <benchmark/benchmark.h>

#include <facet/ifs.h>
#include <facet/objects.h>
#include <facet/primitives.h>
#include <facet/shadow_volume.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "ratio_table.h"

namespace {

// A closed UV sphere of radius 1 with slices · 2 · (stacks − 1) triangles, normals and
// half-edges.
void make_sphere(indexedfaceset& fs, std::uint32_t slices, std::uint32_t stacks) {
    const std::uint32_t rings = stacks - 1;
    const std::uint32_t south = 1 + rings * slices;
    fs.vertices().resize(south + 1);
    fs.vertices()[0] = vector3d(0.0, 1.0, 0.0);
    for (std::uint32_t r = 1; r <= rings; ++r) {
        const double theta = geometry::pi * r / stacks;
        for (std::uint32_t s = 0; s < slices; ++s) {
            const double phi = 2.0 * geometry::pi * s / slices;
            fs.vertices()[1 + (r - 1) * slices + s] = vector3d(
                std::sin(theta) * std::sin(phi), std::cos(theta), std::sin(theta) * std::cos(phi));
        }
    }
    fs.vertices()[south] = vector3d(0.0, -1.0, 0.0);
    const auto ring = [slices](std::uint32_t r, std::uint32_t s) {
        return 1 + (r - 1) * slices + s % slices;
    };
    fs.faces().resize(2 * slices * rings);
    std::uint32_t f = 0;
    for (std::uint32_t s = 0; s < slices; ++s)
        fs.faces()[f++] = face(0, ring(1, s), ring(1, s + 1));
    for (std::uint32_t r = 1; r < rings; ++r)
        for (std::uint32_t s = 0; s < slices; ++s) {
            fs.faces()[f++] = face(ring(r, s), ring(r + 1, s), ring(r + 1, s + 1));
            fs.faces()[f++] = face(ring(r, s), ring(r + 1, s + 1), ring(r, s + 1));
        }
    for (std::uint32_t s = 0; s < slices; ++s)
        fs.faces()[f++] = face(south, ring(rings, s + 1), ring(rings, s));
    fs.compute_normals();
    fs.construct_halfedge_data();
}

// Sphere sizes for about 10^4, 10^5 and 10^6 triangles.
void sphere_size(std::int64_t triangles, std::uint32_t& slices, std::uint32_t& stacks) {
    if (triangles <= 10000) {
        slices = 100, stacks = 51;
    } else if (triangles <= 100000) {
        slices = 316, stacks = 159;
    } else {
        slices = 1000, stacks = 501;
    }
}

// A scene object whose mesh is the UV sphere.
class sphere_object : public primitives::basic_object {
public:
    sphere_object(std::uint32_t slices, std::uint32_t stacks)
        : m_slices(slices), m_stacks(stacks) {}

protected:
    void update_mesh(indexedfaceset& target) const override {
        make_sphere(target, m_slices, m_stacks);
    }

private:
    std::uint32_t m_slices;
    std::uint32_t m_stacks;
};

const vector3d light(3.0, 4.0, 5.0);

void report(benchmark::State& state, const indexedfaceset& source, const indexedfaceset& out) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * source.num_faces());
    state.counters["faces"] = source.num_faces();
    state.counters["quads"] = out.num_faces() / 2;
}

void build_cylinder(benchmark::State& state) {
    primitives::cylinder c(2.0, 1.0, static_cast<std::uint32_t>(state.range(0) / 4));
    const indexedfaceset& source = c.get_mesh();
    indexedfaceset out;
    for (auto _ : state) {
        source.build_shadow_volume(light, out);
        benchmark::DoNotOptimize(out.num_faces());
    }
    report(state, source, out);
}

void build_sphere(benchmark::State& state) {
    std::uint32_t slices = 0, stacks = 0;
    sphere_size(state.range(0), slices, stacks);
    indexedfaceset source, out;
    make_sphere(source, slices, stacks);
    for (auto _ : state) {
        source.build_shadow_volume(light, out);
        benchmark::DoNotOptimize(out.num_faces());
    }
    report(state, source, out);
}

void rebuild(benchmark::State& state, primitives::basic_object& master) {
    const indexedfaceset& source = master.get_mesh();  // built once, outside the timing
    shadow_volume volume(&master, light, 0.0, 0);
    for (auto _ : state) {
        volume.rebuild_mesh();
        benchmark::DoNotOptimize(volume.get_mesh().num_faces());
    }
    report(state, source, volume.get_mesh());
}

using object_row = void (*)(benchmark::State&, primitives::basic_object&);

// `row` on a cylinder or a sphere of about state.range(0) triangles.
void on_cylinder(benchmark::State& state, object_row row) {
    primitives::cylinder c(2.0, 1.0, static_cast<std::uint32_t>(state.range(0) / 4));
    row(state, c);
}

void on_sphere(benchmark::State& state, object_row row) {
    std::uint32_t slices = 0, stacks = 0;
    sphere_size(state.range(0), slices, stacks);
    sphere_object s(slices, stacks);
    row(state, s);
}

void rebuild_cylinder(benchmark::State& state) { on_cylinder(state, rebuild); }
void rebuild_sphere(benchmark::State& state) { on_sphere(state, rebuild); }

// The bytes of every array of a face set: what a builder writing it has to store.
std::size_t stored_bytes(const indexedfaceset& fs) {
    return fs.vertices().size() * sizeof(vector3d) + fs.faces().size() * sizeof(face) +
           fs.normals().size() * sizeof(vector3d) + fs.edges().size() * sizeof(halfedge) +
           fs.texcoords().size() * sizeof(texcoord) + fs.tangents().size() * sizeof(vector3d) +
           fs.bitangents().size() * sizeof(vector3d) + fs.styles().size() * sizeof(graphics::style);
}

// The limit: the triangles' compact index and vertex arrays read once (a checksum), and as
// many bytes as `volume` stores written once.
void one_pass(benchmark::State& state, const indexedfaceset& source, const indexedfaceset& volume) {
    std::vector<std::uint32_t> indices;
    indices.reserve(3 * std::size_t{source.num_faces()});
    for (const face& f : source.faces()) indices.insert(indices.end(), f.vertex, f.vertex + 3);
    const std::vector<vector3d> vertices(source.vertices().begin(), source.vertices().end());
    std::vector<double> out(stored_bytes(volume) / sizeof(double));
    for (auto _ : state) {
        std::uint32_t index_sum = 0;
        for (std::uint32_t i : indices) index_sum += i;
        double sum = 0.0;
        for (const vector3d& v : vertices) sum += v.x + v.y + v.z;
        const double value = sum + index_sum;
        for (double& d : out) d = value;
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.counters["faces"] = source.num_faces();
    state.counters["quads"] = volume.num_faces() / 2;
}

void one_pass_build_cylinder(benchmark::State& state) {
    primitives::cylinder c(2.0, 1.0, static_cast<std::uint32_t>(state.range(0) / 4));
    indexedfaceset out;
    c.get_mesh().build_shadow_volume(light, out);
    one_pass(state, c.get_mesh(), out);
}

void one_pass_build_sphere(benchmark::State& state) {
    std::uint32_t slices = 0, stacks = 0;
    sphere_size(state.range(0), slices, stacks);
    indexedfaceset source, out;
    make_sphere(source, slices, stacks);
    source.build_shadow_volume(light, out);
    one_pass(state, source, out);
}

void one_pass_rebuild(benchmark::State& state, primitives::basic_object& master) {
    shadow_volume volume(&master, light, 0.0, 0);
    volume.rebuild_mesh();
    one_pass(state, master.get_mesh(), volume.get_mesh());
}

void one_pass_rebuild_cylinder(benchmark::State& state) { on_cylinder(state, one_pass_rebuild); }
void one_pass_rebuild_sphere(benchmark::State& state) { on_sphere(state, one_pass_rebuild); }

// One frame of the host with N objects that each have a volume for light 0: reset the marks,
// look every object's volume up and file it again (the add that keeps a found volume), sweep
// (which keeps all of them). map_frame visits the objects in the order they were created (here
// also the map's key order, their addresses ascending); map_frame_shuffled in a random order,
// which no lookup can foresee.
void frame_cycle(benchmark::State& state, bool shuffled) {
    const auto n = static_cast<std::size_t>(state.range(0));
    std::vector<std::unique_ptr<primitives::basic_object>> objects;
    for (std::size_t i = 0; i < n; ++i)
        objects.push_back(std::make_unique<primitives::basic_object>());
    shadow_volume_map map;
    for (const auto& o : objects) map.add_shadow_volume(new shadow_volume(o.get(), light, 0.0, 0));
    if (shuffled) std::shuffle(objects.begin(), objects.end(), std::mt19937(7));
    for (auto _ : state) {
        map.reset_records();
        for (const auto& o : objects) map.add_shadow_volume(map.get_shadow_volume(o.get(), 0));
        map.remove_unused_volumes();
    }
    // Inverted rate of n · 1e-9 per iteration: CPU nanoseconds per object.
    state.counters["ns_per_object"] = benchmark::Counter(
        static_cast<double>(n) * 1e-9,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["records"] = static_cast<double>(map.num_records());
}

void map_frame(benchmark::State& state) { frame_cycle(state, false); }
void map_frame_shuffled(benchmark::State& state) { frame_cycle(state, true); }

}  // namespace

#define FACET_SIZES(b) \
    BENCHMARK(b)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)
FACET_SIZES(build_cylinder)->MinWarmUpTime(0.2);
FACET_SIZES(build_sphere)->MinWarmUpTime(0.2);
FACET_SIZES(rebuild_cylinder)->MinWarmUpTime(0.2);
FACET_SIZES(rebuild_sphere)->MinWarmUpTime(0.2);
FACET_SIZES(one_pass_build_cylinder);
FACET_SIZES(one_pass_build_sphere);
FACET_SIZES(one_pass_rebuild_cylinder);
FACET_SIZES(one_pass_rebuild_sphere);
BENCHMARK(map_frame)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(map_frame_shuffled)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    facet_bench::ratio_table table({{"build_cylinder", "one_pass_build_cylinder"},
                                    {"build_sphere", "one_pass_build_sphere"},
                                    {"rebuild_cylinder", "one_pass_rebuild_cylinder"},
                                    {"rebuild_sphere", "one_pass_rebuild_sphere"}},
                                   {"quads", "ns_per_object"});
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
