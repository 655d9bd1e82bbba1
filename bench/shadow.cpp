// Shadow volumes: indexedfaceset::build_shadow_volume and shadow_volume::rebuild_mesh on closed
// meshes of about 10,000, 100,000 and 1,000,000 triangles (a finely divided cylinder and a UV
// sphere), so that the (linear) growth is visible.
#include <benchmark/benchmark.h>

#include <facet/ifs.h>
#include <facet/objects.h>
#include <facet/primitives.h>
#include <facet/shadow_volume.h>

#include <cmath>
#include <cstdint>

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

void rebuild_cylinder(benchmark::State& state) {
    primitives::cylinder c(2.0, 1.0, static_cast<std::uint32_t>(state.range(0) / 4));
    rebuild(state, c);
}

void rebuild_sphere(benchmark::State& state) {
    std::uint32_t slices = 0, stacks = 0;
    sphere_size(state.range(0), slices, stacks);
    sphere_object s(slices, stacks);
    rebuild(state, s);
}

}  // namespace

BENCHMARK(build_cylinder)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(build_sphere)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(rebuild_cylinder)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(rebuild_sphere)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
