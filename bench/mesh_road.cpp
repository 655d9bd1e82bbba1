// get_mesh of large free meshes and custom meshes (rebuilt in place, and a free mesh's first
// build into a fresh face set), beside OpenMesh building the same grid in the same program
// (add_vertex / add_face, then face and vertex normals), at three sizes each; the stages of
// get_mesh one by one, each beside a "one pass" row that reads the stage's input bytes and
// writes its output bytes once; and smoothing at the centre of curved fans, whose cost grows
// with the square of the fan by definition (every corner sums the distinct normals around the
// vertex), beside OpenMesh building the same fans. After the runs a table (bench/ratio_table.h)
// gives the best CPU time of each size, the ratio to the peer row and the growth from one size
// to the next (a 4x larger grid should take about 4x as long), with the kernel's share of the
// CPU time ("sys%", from getrusage) of the whole builds.
//
// Run with repetitions for the best of several: --benchmark_repetitions=3.
//
// The grid: n × n quads over (n + 1)² vertices on a gentle wave, two triangles per quad, so
// 250, 500 and 1000 give 125k, 500k and 2M triangles.
#include <benchmark/benchmark.h>

#include <facet/custom_mesh.h>
#include <facet/ifs.h>
#include <facet/primitives.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#ifdef FACET_BENCH_OPENMESH
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#endif

#include "kernel_share.h"
#include "ratio_table.h"

namespace {

struct grid {
    std::vector<vector3d> vertices;
    std::vector<std::uint32_t> triangles;  // three indices per triangle
};

grid make_grid(std::uint32_t n) {
    grid g;
    const std::uint32_t k = n + 1;
    g.vertices.reserve(std::size_t{k} * k);
    for (std::uint32_t r = 0; r < k; ++r)
        for (std::uint32_t c = 0; c < k; ++c)
            g.vertices.emplace_back(c, 0.3 * std::sin(0.2 * c) * std::cos(0.15 * r), r);
    g.triangles.reserve(std::size_t{6} * n * n);
    for (std::uint32_t r = 0; r < n; ++r)
        for (std::uint32_t c = 0; c < n; ++c) {
            const std::uint32_t v = r * k + c;
            for (std::uint32_t i : {v, v + k, v + 1, v + 1, v + k, v + k + 1})
                g.triangles.push_back(i);
        }
    return g;
}

// The fan: n triangles around vertex 0 on a wavy rim, so that the faces around the centre have
// n different normals within the smoothing threshold.
grid make_fan(std::uint32_t n) {
    grid g;
    g.vertices.emplace_back(0.0, 0.0, 0.0);
    for (std::uint32_t i = 0; i < n; ++i) {
        const double t = 6.283185307179586 * i / n;
        g.vertices.emplace_back(std::cos(t), 0.2 * std::sin(7.0 * t), std::sin(t));
    }
    for (std::uint32_t i = 0; i < n; ++i)
        for (std::uint32_t v : {0u, 1 + (i + 1) % n, 1 + i}) g.triangles.push_back(v);
    return g;
}

void count_faces(benchmark::State& state, std::uint32_t faces) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * faces);
    state.counters["faces"] = faces;
}

using facet_bench::kernel_share;

primitives::mesh make_mesh(const grid& g) {
    primitives::mesh m;
    m.set_vertices(g.vertices);
    std::vector<primitives::mesh::triangle> triangles;
    for (std::size_t i = 0; i < g.triangles.size(); i += 3)
        triangles.emplace_back(g.triangles[i], g.triangles[i + 1], g.triangles[i + 2]);
    m.set_triangles(std::move(triangles));
    return m;
}

primitives::mesh grid_mesh(std::uint32_t n) { return make_mesh(make_grid(n)); }

// get_mesh of a dirty object whose face set already holds a mesh of the same size (the host
// edits and redraws).
void rebuild(benchmark::State& state, const primitives::mesh& m) {
    m.get_mesh();
    const kernel_share kernel;
    for (auto _ : state) {
        m.set_dirty(true);
        benchmark::DoNotOptimize(m.get_mesh().num_faces());
    }
    kernel.report(state);
    count_faces(state, m.get_mesh().num_faces());
}

void facet_mesh(benchmark::State& state) {
    rebuild(state, grid_mesh(static_cast<std::uint32_t>(state.range(0))));
}

// The first build: into a fresh face set each time (destroyed in the loop, as OpenMesh's).
void facet_mesh_first_build(benchmark::State& state) {
    const primitives::mesh m = grid_mesh(static_cast<std::uint32_t>(state.range(0)));
    const kernel_share kernel;
    for (auto _ : state) {
        indexedfaceset fs;
        m.fill_mesh(fs);
        benchmark::DoNotOptimize(fs.num_faces());
    }
    kernel.report(state);
    count_faces(state, m.get_mesh().num_faces());
}

void facet_custom(benchmark::State& state) {
    const grid g = make_grid(static_cast<std::uint32_t>(state.range(0)));
    graphics::custom_mesh source;
    source.set_vertices(g.vertices);
    std::vector<graphics::custom_mesh_face> faces;
    for (std::size_t i = 0; i < g.triangles.size(); i += 3)
        faces.emplace_back(g.triangles[i], g.triangles[i + 1], g.triangles[i + 2], 0);
    source.set_faces(std::move(faces));
    primitives::custom c;
    c.set_inline_mesh(std::move(source));
    c.get_mesh();
    const kernel_share kernel;
    for (auto _ : state) {
        c.set_dirty(true);
        benchmark::DoNotOptimize(c.get_mesh().num_faces());
    }
    kernel.report(state);
    count_faces(state, c.get_mesh().num_faces());
}

// Smoothing at the centre of a fan: quadratic in the fan's size by definition.
void facet_fan(benchmark::State& state) {
    rebuild(state, make_mesh(make_fan(static_cast<std::uint32_t>(state.range(0)))));
}

#ifdef FACET_BENCH_OPENMESH
void openmesh_build(benchmark::State& state, const grid& g) {
    std::size_t faces = 0;
    const kernel_share kernel;
    for (auto _ : state) {
        OpenMesh::TriMesh_ArrayKernelT<> mesh;
        std::vector<OpenMesh::VertexHandle> handles;
        handles.reserve(g.vertices.size());
        for (const vector3d& p : g.vertices)
            handles.push_back(mesh.add_vertex(OpenMesh::Vec3f(
                static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z))));
        for (std::size_t i = 0; i < g.triangles.size(); i += 3)
            mesh.add_face(handles[g.triangles[i]], handles[g.triangles[i + 1]],
                          handles[g.triangles[i + 2]]);
        mesh.request_face_normals();
        mesh.request_vertex_normals();
        mesh.update_normals();
        faces = mesh.n_faces();
        benchmark::DoNotOptimize(mesh.normal(OpenMesh::VertexHandle(0))[1]);
    }
    kernel.report(state);
    count_faces(state, static_cast<std::uint32_t>(faces));
}

void openmesh(benchmark::State& state) {
    openmesh_build(state, make_grid(static_cast<std::uint32_t>(state.range(0))));
}

void openmesh_fan(benchmark::State& state) {
    openmesh_build(state, make_fan(static_cast<std::uint32_t>(state.range(0))));
}
#endif

// The stages of get_mesh on a prepared face set of the same grid, each repeated alone.
void prepare(indexedfaceset& fs, std::uint32_t n) {
    const grid g = make_grid(n);
    fs.vertices().resize(static_cast<std::uint32_t>(g.vertices.size()));
    for (std::uint32_t i = 0; i < fs.num_vertices(); ++i) fs.vertices()[i] = g.vertices[i];
    fs.faces().resize(static_cast<std::uint32_t>(g.triangles.size() / 3));
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        fs.faces()[i] = face(g.triangles[3 * i], g.triangles[3 * i + 1], g.triangles[3 * i + 2]);
        fs.faces()[i].style = 0;
    }
    fs.styles().resize(1);
    fs.compute_normals();
    fs.construct_halfedge_data();
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
}

template <class Stage>
void stage(benchmark::State& state, Stage run) {
    indexedfaceset fs;
    prepare(fs, static_cast<std::uint32_t>(state.range(0)));
    for (auto _ : state) run(fs);
    count_faces(state, fs.num_faces());
}

void stage_normals(benchmark::State& s) {
    stage(s, [](indexedfaceset& fs) { fs.compute_normals(); });
}
void stage_halfedges(benchmark::State& s) {
    stage(s, [](indexedfaceset& fs) { fs.construct_halfedge_data(); });
}
void stage_sharp_edges(benchmark::State& s) {
    stage(s, [](indexedfaceset& fs) { fs.determine_sharp_edges(80.0); });
}
void stage_texcoords_and_tangents(benchmark::State& s) {
    stage(s, [](indexedfaceset& fs) {
        fs.gen_texcoords_box();
        fs.compute_tangent_space();
    });
}
void stage_smoothing(benchmark::State& s) {
    stage(s, [](indexedfaceset& fs) { fs.smooth_mesh(80.0); });
}

// "One pass" over a stage's own bytes: sums its input (8 bytes at a time) and writes its output
// once, in buffers allocated and touched before the loop, for a grid of n × n quads: F faces,
// V vertices and 3F half-edges and corners. Bytes of dense arrays (positions, corner arrays,
// half-edges, texture coordinates) are read and written as dense arrays. Bytes that are fields
// of the face records (vertex and texture-coordinate indices, normal, tangent, bitangent) are
// read and written where they lie, in an array of F records of sizeof(face) bytes: a stage
// cannot read a field of every record without bringing in the record's cache lines, and the
// layout of a face is not the stage's to choose, so a reference reading those fields as one
// dense array would be a bound no implementation of the stage could reach.
// The 8-byte words of a face record that a stage reads or writes, one bit each.
constexpr std::uint32_t indices = 0x3;           // vertex[3]: bytes 0 .. 11
constexpr std::uint32_t texcoord_indices = 0x6;  // texcoord[3]: bytes 12 .. 23
constexpr std::uint32_t normal = 0x38;           // bytes 24 .. 47
constexpr std::uint32_t frame = 0xfc0;           // tangent and bitangent: bytes 48 .. 95
static_assert(sizeof(face) % 8 == 0 && offsetof(face, normal) == 24 &&
                  offsetof(face, tangent) == 48 && offsetof(face, bitangent) == 72,
              "the words follow the layout of a face");
constexpr std::size_t record = sizeof(face) / 8;

struct stage_bytes {
    std::size_t in;   // dense bytes read
    std::size_t out;  // dense bytes written
};

constexpr std::size_t vec = sizeof(vector3d);           // one position, normal, tangent
constexpr std::size_t idx = 3 * sizeof(std::uint32_t);  // one triangle's three indices

// The dense bytes; the fields of the face records are the masks of the pass_ rows below.
stage_bytes bytes_of(const char* stage, std::size_t v, std::size_t f) {
    const std::string name = stage;
    const std::size_t corners = 3 * f;
    // Positions in (and the faces' indices); three corner normals out (and the face normals).
    if (name == "normals") return {v * vec, corners * vec};
    // (The faces' indices in); three half-edge records per face out.
    if (name == "halfedges") return {0, corners * sizeof(halfedge)};
    // Half-edge records in (and the face normals); the half-edges' flags out.
    if (name == "sharp_edges") return {corners * sizeof(halfedge), corners * 4};
    // Positions in (and the faces' indices and normals); texture coordinates and the corner
    // tangents and bitangents out (and the faces' texture indices, tangents and bitangents).
    if (name == "texcoords_and_tangents")
        return {v * vec, corners * sizeof(texcoord) + 2 * corners * vec};
    // The half-edges in (and the faces' indices, normals, tangents and bitangents); the corner
    // normals, tangents and bitangents out.
    if (name == "smoothing") return {corners * sizeof(halfedge), 3 * corners * vec};
    // The mesh's positions and triangles in; the face set's positions and face records out.
    return {v * vec + f * idx, v * vec + f * sizeof(face)};
}

// Adds the words `in` of one face record to `sum` and sets its words `out` to `value`
// (unrolled: k is a constant).
template <std::uint32_t in, std::uint32_t out, std::size_t... k>
void face_words(std::uint64_t* w, std::uint64_t& sum, std::uint64_t value,
                std::index_sequence<k...>) {
    ((in >> k & 1 ? static_cast<void>(sum += w[k]) : static_cast<void>(0)), ...);
    ((out >> k & 1 ? static_cast<void>(w[k] = value) : static_cast<void>(0)), ...);
}

// The same for every face record, in record order; the value written does not wait for the
// record's reads, as the dense output does not wait for the dense input word by word.
template <std::uint32_t in, std::uint32_t out>
std::uint64_t pass_over_faces(std::vector<std::uint64_t>& records, std::uint64_t sum) {
    const std::uint64_t value = sum;
    for (std::size_t r = 0; r < records.size(); r += record)
        face_words<in, out>(records.data() + r, sum, value, std::make_index_sequence<record>());
    return sum;
}

template <std::uint32_t face_in = 0, std::uint32_t face_out = 0>
void one_pass(benchmark::State& state, const char* stage) {
    const auto n = static_cast<std::size_t>(state.range(0));
    const std::size_t faces = 2 * n * n;
    const stage_bytes b = bytes_of(stage, (n + 1) * (n + 1), faces);
    std::vector<std::uint64_t> in(b.in / 8, 1);
    std::vector<std::uint64_t> out(b.out / 8, 0);
    std::vector<std::uint64_t> records((face_in | face_out) != 0 ? faces * record : 0, 1);
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (std::uint64_t w : in) sum += w;
        sum = pass_over_faces<face_in, face_out>(records, sum);
        std::fill(out.begin(), out.end(), sum);
        benchmark::DoNotOptimize(out.data());
        benchmark::DoNotOptimize(records.data());
        benchmark::ClobberMemory();
    }
    const auto words = static_cast<double>(__builtin_popcount(face_in | face_out));
    state.counters["MB"] = (static_cast<double>(b.in + b.out) + 8 * words * faces) / 1e6;
}

void pass_normals(benchmark::State& s) { one_pass<indices, normal>(s, "normals"); }
void pass_halfedges(benchmark::State& s) { one_pass<indices>(s, "halfedges"); }
void pass_sharp_edges(benchmark::State& s) { one_pass<normal>(s, "sharp_edges"); }
void pass_texcoords_and_tangents(benchmark::State& s) {
    one_pass<indices | normal, texcoord_indices | frame>(s, "texcoords_and_tangents");
}
// Smoothing stays several times this row: on the wavy grid 83% of the corners turn by 0.1
// degree or more, and each pair of a face normal and a smoothed normal is met once, so every
// such corner takes its own arc cosine and its own sine and cosine of the half angle (0.83
// acos and 0.83 sincos calls per corner at every size; 0.835 and 0.834 at 250). Those calls
// alone take about 1.6 to 2 times this row, before the square roots and divisions of the sums
// and of the turned frames.
void pass_smoothing(benchmark::State& s) {
    one_pass<indices | texcoord_indices | normal | frame>(s, "smoothing");
}
// Copying the input is not reachable alone through the public interface: compare this row
// with the share a profiler gives create_mesh's own loop in facet_mesh.
void pass_copy_input(benchmark::State& s) { one_pass(s, "copy_input"); }

#define SIZES ->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)
BENCHMARK(facet_mesh) SIZES;
BENCHMARK(facet_mesh_first_build) SIZES;
BENCHMARK(facet_custom) SIZES;
#ifdef FACET_BENCH_OPENMESH
BENCHMARK(openmesh) SIZES;
#endif
BENCHMARK(stage_normals) SIZES;
BENCHMARK(pass_normals) SIZES;
BENCHMARK(stage_halfedges) SIZES;
BENCHMARK(pass_halfedges) SIZES;
BENCHMARK(stage_sharp_edges) SIZES;
BENCHMARK(pass_sharp_edges) SIZES;
BENCHMARK(stage_texcoords_and_tangents) SIZES;
BENCHMARK(pass_texcoords_and_tangents) SIZES;
BENCHMARK(stage_smoothing) SIZES;
BENCHMARK(pass_smoothing) SIZES;
BENCHMARK(pass_copy_input) SIZES;

#define FANS ->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMillisecond)
BENCHMARK(facet_fan) FANS;
#ifdef FACET_BENCH_OPENMESH
BENCHMARK(openmesh_fan) FANS;
#endif

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    facet_bench::ratio_table table({{"facet_mesh", "openmesh"},
                                    {"facet_mesh_first_build", "openmesh"},
                                    {"facet_custom", "openmesh"},
                                    {"facet_fan", "openmesh_fan"},
                                    {"stage_normals", "pass_normals"},
                                    {"stage_halfedges", "pass_halfedges"},
                                    {"stage_sharp_edges", "pass_sharp_edges"},
                                    {"stage_texcoords_and_tangents", "pass_texcoords_and_tangents"},
                                    {"stage_smoothing", "pass_smoothing"}},
                                   {"sys%"});
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
