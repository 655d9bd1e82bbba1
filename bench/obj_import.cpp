// OBJ import at three sizes, so that the (linear) growth shows: parse_obj on generated model
// text with vertices, texture coordinates, normals, triangles and a few materials, and on the
// same grid as bare vertices and quads, whose normals the reader computes; obj2mesh of both.
#include <benchmark/benchmark.h>

#include <facet/custom_mesh.h>
#include <facet/obj_import.h>

#include <cmath>
#include <cstdio>
#include <istream>
#include <map>
#include <streambuf>
#include <string>
#include <utility>

namespace {

/// Reads a string in place, without the copy an istringstream makes.
class memory_buffer : public std::streambuf {
public:
    explicit memory_buffer(const std::string& s) {
        char* p = const_cast<char*>(s.data());
        setg(p, p, p + s.size());
    }
};

/// A k × k grid of cells on a gentle wave with about `faces` faces: two triangles per cell
/// ("f a/a/a b/b/b c/c/c" with one texture coordinate and normal per vertex, four materials in
/// bands of rows), or one quad per cell ("f a b c d", no normals) when `quads` is set.
std::string make_model(long faces, bool quads) {
    const long cells = quads ? faces : faces / 2;
    const long k = static_cast<long>(std::lround(std::sqrt(static_cast<double>(cells))));
    const long n = k + 1;
    std::string text = "# generated grid\nmtllib grid.mtl\no grid\n";
    char line[256];
    for (long r = 0; r < n; ++r) {
        for (long c = 0; c < n; ++c) {
            const double y = 0.3 * std::sin(0.2 * static_cast<double>(c)) *
                             std::cos(0.15 * static_cast<double>(r));
            std::snprintf(line, sizeof line, "v %.6f %.6f %.6f\n", 0.01 * static_cast<double>(c), y,
                          0.01 * static_cast<double>(r));
            text += line;
            if (quads) continue;
            std::snprintf(line, sizeof line, "vt %.6f %.6f\nvn %.6f %.6f %.6f\n",
                          static_cast<double>(c) / static_cast<double>(k),
                          static_cast<double>(r) / static_cast<double>(k), 0.0, 1.0, 0.0);
            text += line;
        }
    }
    for (long r = 0; r < k; ++r) {
        if (!quads && r % (k / 4 + 1) == 0) {
            text += "usemtl band" + std::to_string(r / (k / 4 + 1)) + "\n";
        }
        for (long c = 0; c < k; ++c) {
            const long a = r * n + c + 1;  // one-based
            const long b = a + 1;
            const long d = a + n;
            const long e = d + 1;
            if (quads) {
                std::snprintf(line, sizeof line, "f %ld %ld %ld %ld\n", a, d, e, b);
            } else {
                std::snprintf(line, sizeof line, "f %ld/%ld/%ld %ld/%ld/%ld %ld/%ld/%ld\n", a, a, a,
                              d, d, d, b, b, b);
                text += line;
                std::snprintf(line, sizeof line, "f %ld/%ld/%ld %ld/%ld/%ld %ld/%ld/%ld\n", b, b, b,
                              d, d, d, e, e, e);
            }
            text += line;
        }
    }
    return text;
}

const std::string& model(long faces, bool quads) {
    static std::map<std::pair<long, bool>, std::string> cache;
    auto& text = cache[{faces, quads}];
    if (text.empty()) text = make_model(faces, quads);
    return text;
}

void run_parse(benchmark::State& state, bool quads) {
    const std::string& text = model(state.range(0), quads);
    obj_import::obj_info info;
    for (auto _ : state) {
        memory_buffer buffer(text);
        std::istream in(&buffer);
        obj_import::parse_obj(in, info);
        benchmark::DoNotOptimize(info.faces.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * info.faces.size()));
    state.counters["faces"] = static_cast<double>(info.faces.size());
    state.counters["MB"] = static_cast<double>(text.size()) / 1e6;
}

}  // namespace

static void parse_obj_triangles(benchmark::State& state) { run_parse(state, false); }
BENCHMARK(parse_obj_triangles)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

static void parse_obj_quads_computed_normals(benchmark::State& state) { run_parse(state, true); }
BENCHMARK(parse_obj_quads_computed_normals)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

static void obj2mesh(benchmark::State& state) {
    const bool quads = state.range(1) != 0;
    const std::string& text = model(state.range(0), quads);
    memory_buffer buffer(text);
    std::istream in(&buffer);
    obj_import::obj_info info;
    obj_import::parse_obj(in, info);
    graphics::custom_mesh mesh;
    for (auto _ : state) {
        obj_import::obj2mesh(info, "model", mesh);
        benchmark::DoNotOptimize(mesh.get_faces().data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * info.faces.size()));
    state.counters["triangles"] = static_cast<double>(mesh.num_faces());
}
BENCHMARK(obj2mesh)
    ->ArgsProduct({{10000, 100000, 1000000}, {0, 1}})
    ->ArgNames({"faces", "quads"})
    ->Unit(benchmark::kMillisecond);
