// The free-mesh and custom builders against their public steps, bit for bit; the buffer pool.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "support/reference_smooth_mesh.h"

namespace {

using geometry::pi;

// An n × n grid on a wave (arrays above the pool's 256 KiB for n >= 60), with a duplicated
// face, a flipped copy, a degenerate face and a face on a third side of one edge.
primitives::mesh wavy_grid(std::uint32_t n, std::uint32_t seed) {
    std::mt19937 rng(seed);
    primitives::mesh m;
    const std::uint32_t k = n + 1;
    for (std::uint32_t v = 0; v < k * k; ++v)
        m.add_vertex(
            vector3d(1.1 * (v % k), (rng() % 5) * 0.25 * std::sin(0.5 * (v % k) + v / k), v / k));
    for (std::uint32_t v = 0; v < n * k; ++v)
        if (v % k != n) m.add_quad(v + 1, v, v + k, v + k + 1);
    using tri = primitives::mesh::triangle;
    for (tri t : {tri(0, k, 1), tri(0, 1, k), tri(2, 2, 3), tri(0, 1, k + 2)}) m.add_triangle(t);
    m.set_smoothing_threshold_angle(10.0 + rng() % 80);
    return m;
}

std::string bits(const void* p, std::size_t n) { return {static_cast<const char*>(p), n}; }

// Everything the builders compute, as bytes (pointers as indices).
std::string contents(const indexedfaceset& fs) {
    std::ostringstream s;
    s << bits(fs.vertices().data(), fs.num_vertices() * sizeof(vector3d))
      << bits(fs.texcoords().data(), fs.num_texcoords() * sizeof(texcoord));
    for (const auto* corners : {&fs.normals(), &fs.tangents(), &fs.bitangents()})
        s << corners->size() << bits(corners->data(), corners->size() * sizeof(vector3d));
    for (const face& f : fs.faces())
        s << bits(f.vertex, sizeof f.vertex) << bits(f.texcoord, sizeof f.texcoord)
          << bits(&f.normal, 3 * sizeof(vector3d)) << f.style << f.brush.get_color().get_rgbvalue()
          << f.pen.get_color().get_rgbvalue() << "|";
    const auto index = [&fs](const halfedge* h) { return h ? h - fs.edges().data() : -1; };
    for (const halfedge& e : fs.edges())
        s << e.vertex << " " << e.face - fs.faces().data() << " " << index(e.next) << " "
          << index(e.prev) << " " << index(e.m_twinedge) << " " << e.flags << "|";
    return s.str();
}

// What create_mesh(mesh) stands for: the vertices and triangles, the object's brush, pen and
// style 0, flat normals, half-edges, sharp edges, texture settings and frames, smoothing.
std::string contents_by_steps(const primitives::mesh& m) {
    indexedfaceset fs;
    fs.vertices().resize(m.vertices_size());
    fs.faces().resize(m.triangles_size());
    std::copy(m.vertices_begin(), m.vertices_end(), fs.vertices().begin());
    face* f = fs.faces().data();
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t, ++f) {
        *f = face(t->vertex[0], t->vertex[1], t->vertex[2]);
        f->brush = m.get_brush();  // the pen keeps its default, the object's
        f->style = 0;
    }
    fs.compute_normals();
    fs.construct_halfedge_data();
    fs.determine_sharp_edges(m.get_smoothing_threshold_angle());
    fs.set_texture_params(m);
    fs.smooth_mesh(m.get_smoothing_threshold_angle());
    return contents(fs);
}

struct MeshBuffers : ::testing::Test {
    void SetUp() override { set_mesh_buffer_limit(0); }  // an empty pool
    void TearDown() override { set_mesh_buffer_limit(default_mesh_buffer_limit); }
};

// Free meshes (seeds 1-3) and a custom object (seed 4), pool off and on, fresh and rebuilt.
TEST_F(MeshBuffers, BuildersAsTheirStepsWithFreshAndReusedStorage) {
    for (std::uint32_t seed = 1; seed <= 4; ++seed)
        for (std::uint64_t limit : {std::uint64_t{0}, default_mesh_buffer_limit}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", limit " << limit);
            set_mesh_buffer_limit(limit);
            const primitives::mesh m = wavy_grid(60 + seed, seed);
            graphics::custom_mesh source;
            source.set_vertices(std::vector<vector3d>(m.vertices_begin(), m.vertices_end()));
            for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t)
                source.add_face(t->vertex[0], t->vertex[1], t->vertex[2], 0);
            primitives::custom c;
            c.set_inline_mesh(std::move(source));
            c.set_smoothing_threshold_angle(m.get_smoothing_threshold_angle());
            const primitives::basic_object* const objects[] = {&m, &c};
            const std::string want = contents_by_steps(m);
            wavy_grid(70, seed).fill_mesh(*std::make_unique<indexedfaceset>());
            indexedfaceset fs;
            for (int rebuilt : {0, 1})
                EXPECT_TRUE((objects[seed / 4]->fill_mesh(fs), contents(fs)) == want) << rebuilt;
        }
}

// Face pointers moved into the face array and out of it: smoothing against the oracle; sharp
// marks (twins paired, then one moved) against a walk marking each half-edge and its twin.
TEST_F(MeshBuffers, SmoothingAndSharpMarksReadTheFacesTheHalfEdgesPointAt) {
    indexedfaceset fs;
    wavy_grid(12, 5).fill_mesh(fs);
    face outside = fs.get_face(7);
    outside.normal = vector3d(0.6, 0.8, 0.0);
    for (bool inside_only : {true, false}) {
        std::mt19937 rng(inside_only ? 3 : 4);
        for (halfedge& e : fs.edges())
            if (rng() % 4 == 0) e.face = &fs.faces()[rng() % fs.num_faces()];
        if (!inside_only) fs.edges()[fs.num_edges() - 1].face = &outside;
        const reference::smoothed expected = reference::smooth_mesh(fs, 50.0);
        fs.smooth_mesh(50.0);
        const std::size_t n = 3 * fs.num_faces() * sizeof(vector3d);
        EXPECT_TRUE(bits(fs.normals().data(), n) == bits(expected.normals.data(), n));
        EXPECT_TRUE(bits(fs.tangents().data(), n) == bits(expected.tangents.data(), n));
        if (!inside_only) fs.edges()[5].m_twinedge = &fs.edges()[fs.num_edges() - 1];
        std::vector<bool> drawn(fs.num_edges());
        for (halfedge& e : fs.edges()) {
            const halfedge* t = e.m_twinedge ? e.m_twinedge : &e;
            e.flags = 1;  // a stale mark, for the walk to overwrite
            drawn[t - &fs.edges()[0]] = drawn[&e - &fs.edges()[0]] =
                !e.m_twinedge || dot(e.face->normal, t->face->normal) <= std::cos(50 * pi / 180);
        }
        fs.determine_sharp_edges(50.0);
        for (const halfedge& e : fs.edges()) EXPECT_EQ(e.drawn(), drawn[&e - &fs.edges()[0]]);
    }
}

// Arrays of destroyed face sets serve the next build; a lower limit frees the oldest first.
TEST_F(MeshBuffers, ThePoolKeepsLargeArraysOldestFirstUpToItsLimit) {
    set_mesh_buffer_limit(default_mesh_buffer_limit);
    const primitives::mesh m = wavy_grid(80, 4);
    auto first = std::make_unique<indexedfaceset>();
    m.fill_mesh(*first);
    const auto old = std::pair{first->faces().data(), first->edges().data()};
    first.reset();
    indexedfaceset fs;
    m.fill_mesh(fs);
    EXPECT_TRUE(std::pair(fs.faces().data(), fs.edges().data()) == old);
    const std::uint64_t older = get_mesh_buffer_bytes();
    ASSERT_GT(older, 0u);
    wavy_grid(90, 2).fill_mesh(*std::make_unique<indexedfaceset>());
    const std::uint64_t newer = get_mesh_buffer_bytes() - older;
    set_mesh_buffer_limit(newer);
    EXPECT_EQ(get_mesh_buffer_bytes(), newer);
    set_mesh_buffer_limit(0);  // frees all
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
    set_mesh_buffer_limit(300 * 1024);
    wavy_grid(10, 1).fill_mesh(*std::make_unique<indexedfaceset>());  // all far below 256 KiB
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
    wavy_grid(60, 1).fill_mesh(*std::make_unique<indexedfaceset>());  // faces above the limit
    EXPECT_LE(get_mesh_buffer_bytes(), 300u * 1024);
}

}  // namespace
