// OBJ import at three sizes, so that the (linear) growth shows: parse_obj on generated model
// text with vertices, texture coordinates, normals, triangles and a few materials, and on the
// same grid as bare vertices and quads, whose normals the reader computes; obj2mesh of the
// triangle models.
//
// Beside each parse runs its limit, read_memchr: the same in-memory stream read in blocks of
// the size parse_obj reads with istream::read, and its newlines counted with memchr, which is
// what any line reader has to do at least. After the runs a table (bench/ratio_table.h) gives,
// per row and size, the best CPU time of the repetitions, the ratio to the limit, the growth over
// the next smaller size (4x the text or the triangles should take about 4x as long), the size of
// the text and the throughput.
//
// The *_file rows measure the same pair on the triangle text written to a file first, read
// through std::ifstream as a host reads a model: both then pay the kernel's copy out of the page
// cache, which on a small virtual machine runs at about 1 GB/s, not the 5 GB/s of memory.
//
// Sizes are face counts: 1M, 2M and 4M faces give about 104, 210 and 440 MB of triangle text.
// Run with --benchmark_repetitions=5 to take the best of five on a loaded machine.
#include <benchmark/benchmark.h>

#include <facet/custom_mesh.h>
#include <facet/obj_import.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <map>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "ratio_table.h"

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
    text.reserve(static_cast<std::size_t>(faces) * (quads ? 60 : 112));
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

void report_bytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    state.counters["MB"] = static_cast<double>(text.size()) / 1e6;
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
    report_bytes(state, text);
    state.counters["faces"] = static_cast<double>(info.faces.size());
}

/// The lines of `in`, read in blocks as parse_obj reads them and counted with one memchr each.
long count_lines(std::istream& in, std::vector<char>& data) {
    long lines = 0;
    for (;;) {
        in.read(data.data(), static_cast<std::streamsize>(data.size()));
        const auto got = static_cast<std::size_t>(in.gcount());
        const char* p = data.data();
        const char* const end = p + got;
        while (const void* nl = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
            ++lines;
            p = static_cast<const char*>(nl) + 1;
        }
        if (got < data.size()) return lines;
    }
}

/// The limit of any line reader on the same source: the stream read in blocks as parse_obj
/// reads it, and one memchr per line.
void run_read_memchr(benchmark::State& state, bool quads) {
    const std::string& text = model(state.range(0), quads);
    std::vector<char> data(std::size_t(1) << 16);
    long lines = 0;
    for (auto _ : state) {
        memory_buffer buffer(text);
        std::istream in(&buffer);
        lines = count_lines(in, data);
        benchmark::DoNotOptimize(lines);
    }
    report_bytes(state, text);
    state.counters["lines"] = static_cast<double>(lines);
}

/// The triangle model of `faces` faces as a file in the temporary folder, written once per run
/// (and left there for the next one); its name.
std::string model_file(long faces) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("facet_bench_model_" + std::to_string(faces) + ".obj"))
                                 .string();
    const std::string& text = model(faces, false);
    std::ifstream probe(path, std::ios::binary | std::ios::ate);
    if (!probe || probe.tellg() != static_cast<std::streamoff>(text.size())) {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    return path;
}

/// parse_obj reading the triangle model's file, as a host imports a model.
void parse_obj_file(benchmark::State& state) {
    const std::string path = model_file(state.range(0));
    obj_import::obj_info info;
    for (auto _ : state) {
        std::ifstream in(path, std::ios::binary);
        obj_import::parse_obj(in, info);
        benchmark::DoNotOptimize(info.faces.data());
    }
    report_bytes(state, model(state.range(0), false));
    state.counters["faces"] = static_cast<double>(info.faces.size());
}

/// The limit on the same file: read in blocks through std::ifstream, newlines found by memchr.
void read_memchr_file(benchmark::State& state) {
    const std::string path = model_file(state.range(0));
    std::vector<char> data(std::size_t(1) << 16);
    long lines = 0;
    for (auto _ : state) {
        std::ifstream in(path, std::ios::binary);
        lines = count_lines(in, data);
        benchmark::DoNotOptimize(lines);
    }
    report_bytes(state, model(state.range(0), false));
    state.counters["lines"] = static_cast<double>(lines);
}

}  // namespace

#define SIZES ->Arg(1000000)->Arg(2000000)->Arg(4000000)->Unit(benchmark::kMillisecond)

static void parse_obj_triangles(benchmark::State& state) { run_parse(state, false); }
static void read_memchr_triangles(benchmark::State& state) { run_read_memchr(state, false); }
static void parse_obj_quads(benchmark::State& state) { run_parse(state, true); }
static void read_memchr_quads(benchmark::State& state) { run_read_memchr(state, true); }
BENCHMARK(read_memchr_triangles) SIZES;
BENCHMARK(parse_obj_triangles) SIZES;
BENCHMARK(read_memchr_quads) SIZES;
BENCHMARK(parse_obj_quads) SIZES;
BENCHMARK(read_memchr_file) SIZES;
BENCHMARK(parse_obj_file) SIZES;

/// obj2mesh of the triangle model, converted again and again into the same target mesh.
static void obj2mesh_triangles(benchmark::State& state) {
    const std::string& text = model(state.range(0), false);
    memory_buffer buffer(text);
    std::istream in(&buffer);
    obj_import::obj_info info;
    obj_import::parse_obj(in, info);
    graphics::custom_mesh mesh;
    for (auto _ : state) {
        obj_import::obj2mesh(info, "model", mesh);
        benchmark::DoNotOptimize(mesh.get_faces().data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(info.faces.size()));
    state.counters["triangles"] = static_cast<double>(mesh.num_faces());
}
BENCHMARK(obj2mesh_triangles) SIZES;

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    facet_bench::ratio_table table({{"parse_obj_triangles", "read_memchr_triangles"},
                                    {"parse_obj_quads", "read_memchr_quads"},
                                    {"parse_obj_file", "read_memchr_file"}},
                                   {"MB", "bytes_per_second"});
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
