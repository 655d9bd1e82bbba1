// get_mesh of large free meshes and custom meshes (rebuilt in place, and a free mesh's first
// build into a fresh face set), beside OpenMesh building the same grid in the
// same program (add_vertex / add_face, then face and vertex normals), at three sizes each, and
// the stages of get_mesh one by one. After the runs a table gives the CPU time of each size,
// facet's ratio to OpenMesh and the growth from one size to the next (a 4x larger grid should
// take about 4x as long).
//
// The grid: n × n quads over (n + 1)² vertices on a gentle wave, two triangles per quad, so
// 250, 500 and 1000 give 125k, 500k and 2M triangles.
#include <benchmark/benchmark.h>

#include <facet/custom_mesh.h>
#include <facet/ifs.h>
#include <facet/primitives.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#ifdef FACET_BENCH_OPENMESH
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#endif

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

void count_faces(benchmark::State& state, std::uint32_t faces) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * faces);
    state.counters["faces"] = faces;
}

primitives::mesh grid_mesh(std::uint32_t n) {
    const grid g = make_grid(n);
    primitives::mesh m;
    m.set_vertices(g.vertices);
    std::vector<primitives::mesh::triangle> triangles;
    for (std::size_t i = 0; i < g.triangles.size(); i += 3)
        triangles.emplace_back(g.triangles[i], g.triangles[i + 1], g.triangles[i + 2]);
    m.set_triangles(std::move(triangles));
    return m;
}

// get_mesh of a dirty object whose face set already holds a mesh of the same size (the host
// edits and redraws).
void facet_mesh(benchmark::State& state) {
    const primitives::mesh m = grid_mesh(static_cast<std::uint32_t>(state.range(0)));
    m.get_mesh();
    for (auto _ : state) {
        m.set_dirty(true);
        benchmark::DoNotOptimize(m.get_mesh().num_faces());
    }
    count_faces(state, m.get_mesh().num_faces());
}

// The first build: into a fresh face set each time (destroyed in the loop, as OpenMesh's).
void facet_mesh_first_build(benchmark::State& state) {
    const primitives::mesh m = grid_mesh(static_cast<std::uint32_t>(state.range(0)));
    for (auto _ : state) {
        indexedfaceset fs;
        m.fill_mesh(fs);
        benchmark::DoNotOptimize(fs.num_faces());
    }
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
    for (auto _ : state) {
        c.set_dirty(true);
        benchmark::DoNotOptimize(c.get_mesh().num_faces());
    }
    count_faces(state, c.get_mesh().num_faces());
}

#ifdef FACET_BENCH_OPENMESH
void openmesh(benchmark::State& state) {
    const grid g = make_grid(static_cast<std::uint32_t>(state.range(0)));
    std::size_t faces = 0;
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
    count_faces(state, static_cast<std::uint32_t>(faces));
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

#define SIZES ->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)
BENCHMARK(facet_mesh) SIZES;
BENCHMARK(facet_mesh_first_build) SIZES;
BENCHMARK(facet_custom) SIZES;
#ifdef FACET_BENCH_OPENMESH
BENCHMARK(openmesh) SIZES;
#endif
BENCHMARK(stage_normals) SIZES;
BENCHMARK(stage_halfedges) SIZES;
BENCHMARK(stage_sharp_edges) SIZES;
BENCHMARK(stage_texcoords_and_tangents) SIZES;
BENCHMARK(stage_smoothing) SIZES;

// The console output, then a table of CPU times per size with the ratio to OpenMesh and the
// growth over the next smaller size.
class ratio_reporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            if (r.run_type != Run::RT_Iteration || r.error_occurred) continue;
            const std::string name = r.benchmark_name();
            const auto slash = name.find('/');
            const std::string family = name.substr(0, slash);
            const long size = slash == std::string::npos ? 0 : std::stol(name.substr(slash + 1));
            m_cpu[family][size] = r.GetAdjustedCPUTime();
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        const auto peer = m_cpu.find("openmesh");
        std::printf("\n%-30s %6s %12s %10s %8s\n", "CPU time (ms)", "n", "time", "/openmesh",
                    "growth");
        for (const auto& [family, sizes] : m_cpu) {
            double previous = 0.0;
            for (const auto& [size, time] : sizes) {
                std::printf("%-30s %6ld %12.2f", family.c_str(), size, time);
                if (family.rfind("facet_", 0) == 0 && peer != m_cpu.end() &&
                    peer->second.count(size) != 0)
                    std::printf(" %10.2f", time / peer->second.at(size));
                else
                    std::printf(" %10s", "-");
                if (previous > 0.0)
                    std::printf(" %8.2f\n", time / previous);
                else
                    std::printf(" %8s\n", "-");
                previous = time;
            }
        }
    }

private:
    std::map<std::string, std::map<long, double>> m_cpu;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    ratio_reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
