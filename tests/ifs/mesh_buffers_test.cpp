// The builders of free meshes and custom objects against the public steps they stand for, bit
// for bit, with reused and fresh storage; and the pool of mesh buffers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "support/reference_smooth_mesh.h"

namespace {

// An n × n grid on a wave (arrays above the pool's 256 KiB for n >= 60), with a duplicated
// face, a flipped copy, a degenerate face and a face on a third side of one edge.
primitives::mesh wavy_grid(std::uint32_t n, std::uint32_t seed) {
    std::mt19937 rng(seed);
    primitives::mesh m;
    const std::uint32_t k = n + 1;
    for (std::uint32_t r = 0; r < k; ++r)
        for (std::uint32_t c = 0; c < k; ++c)
            m.add_vertex(vector3d(c, (rng() % 5) * 0.25 * std::sin(0.5 * c + r), r));
    for (std::uint32_t r = 0; r < n; ++r)
        for (std::uint32_t c = 0; c < n; ++c) {
            const std::uint32_t v = r * k + c;
            m.add_triangle(v, v + k, v + 1);
            m.add_triangle(v + 1, v + k, v + k + 1);
        }
    m.add_triangle(0, k, 1);
    m.add_triangle(0, 1, k);
    m.add_triangle(2, 2, 3);
    m.add_triangle(0, 1, k + 2);
    m.set_smoothing_threshold_angle(10.0 + rng() % 80);
    return m;
}

// What create_mesh(mesh) stands for: the vertices and triangles, the object's brush, pen and
// style 0, flat normals, half-edges, sharp edges, texture settings and frames, smoothing.
void build_by_steps(const primitives::mesh& m, indexedfaceset& fs) {
    fs.vertices().resize(m.vertices_size());
    std::uint32_t i = 0;
    for (auto v = m.vertices_begin(); v != m.vertices_end(); ++v) fs.vertices()[i++] = *v;
    fs.faces().resize(m.triangles_size());
    i = 0;
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t, ++i) {
        fs.faces()[i] = face(t->vertex[0], t->vertex[1], t->vertex[2]);
        fs.faces()[i].brush = m.get_brush();
        fs.faces()[i].pen = m.get_pen();
        fs.faces()[i].style = 0;
    }
    fs.compute_normals();
    fs.construct_halfedge_data();
    fs.determine_sharp_edges(m.get_smoothing_threshold_angle());
    fs.set_texture_params(m);
    fs.smooth_mesh(m.get_smoothing_threshold_angle());
}

std::string bits(const void* p, std::size_t n) {
    return std::string(static_cast<const char*>(p), n);
}

// Everything the builders compute, as bytes (pointers as indices).
std::string contents(const indexedfaceset& fs) {
    std::ostringstream s;
    s << bits(fs.vertices().data(), fs.num_vertices() * sizeof(vector3d));
    s << bits(fs.texcoords().data(), fs.num_texcoords() * sizeof(texcoord));
    for (const auto* corners : {&fs.normals(), &fs.tangents(), &fs.bitangents()})
        s << corners->size() << bits(corners->data(), corners->size() * sizeof(vector3d));
    for (const face& f : fs.faces())
        s << bits(f.vertex, sizeof f.vertex) << bits(f.texcoord, sizeof f.texcoord)
          << bits(&f.normal, 3 * sizeof(vector3d)) << f.style << f.brush.get_color().get_rgbvalue()
          << f.pen.get_color().get_rgbvalue() << "|";
    const auto index = [&fs](const halfedge* h) {
        return h == nullptr ? -1 : h - fs.edges().data();
    };
    for (const halfedge& e : fs.edges())
        s << e.vertex << " " << e.face - fs.faces().data() << " " << index(e.next) << " "
          << index(e.prev) << " " << index(e.m_twinedge) << " " << e.flags << "|";
    return s.str();
}

class MeshBuffers : public ::testing::Test {
protected:
    void TearDown() override { set_mesh_buffer_limit(default_mesh_buffer_limit); }
};

TEST_F(MeshBuffers, FreeMeshesAsTheirStepsWithFreshAndReusedStorage) {
    for (std::uint32_t seed = 1; seed <= 3; ++seed)
        for (std::uint64_t limit : {std::uint64_t{0}, default_mesh_buffer_limit}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", limit " << limit);
            set_mesh_buffer_limit(limit);
            const primitives::mesh m = wavy_grid(60 + seed, seed);
            indexedfaceset expected;
            build_by_steps(m, expected);
            const std::string want = contents(expected);
            {
                indexedfaceset first;  // storage of other sizes, then of the same size
                wavy_grid(70, seed).fill_mesh(first);
            }
            indexedfaceset fs;
            m.fill_mesh(fs);
            EXPECT_TRUE(contents(fs) == want);
            m.fill_mesh(fs);  // rebuilt in place
            EXPECT_TRUE(contents(fs) == want);
        }
}

TEST_F(MeshBuffers, CustomObjectsAsTheirSteps) {
    const primitives::mesh m = wavy_grid(61, 9);
    graphics::custom_mesh source;
    for (auto v = m.vertices_begin(); v != m.vertices_end(); ++v) source.add_vertex(*v);
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t)
        source.add_face(t->vertex[0], t->vertex[1], t->vertex[2], 0);
    primitives::custom c;
    c.set_inline_mesh(std::move(source));
    c.set_smoothing_threshold_angle(m.get_smoothing_threshold_angle());
    c.set_brush(m.get_brush());
    c.set_pen(m.get_pen());
    indexedfaceset expected;
    build_by_steps(m, expected);
    indexedfaceset fs;
    c.fill_mesh(fs);
    // The custom object's faces take the brush and pen of the standard style it makes.
    EXPECT_TRUE(contents(fs) == contents(expected));
}

// Half-edges whose face pointers were moved, into the face array (read through face indices)
// and outside it (read through the pointers), against the oracle.
TEST_F(MeshBuffers, SmoothingReadsTheFacesTheHalfEdgesPointAt) {
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
        for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c) {
            SCOPED_TRACE(testing::Message() << "corner " << c << ", inside " << inside_only);
            ASSERT_EQ(bits(&fs.get_normal(c), sizeof(vector3d)),
                      bits(&expected.normals[c], sizeof(vector3d)));
            ASSERT_EQ(bits(&fs.get_tangent(c), sizeof(vector3d)),
                      bits(&expected.tangents[c], sizeof(vector3d)));
        }
    }
}

TEST_F(MeshBuffers, DestroyedFaceSetsLeaveTheirArraysForTheNextBuildOfTheSameSize) {
    set_mesh_buffer_limit(0);
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
    set_mesh_buffer_limit(default_mesh_buffer_limit);
    const primitives::mesh m = wavy_grid(80, 4);
    const face* old_faces = nullptr;
    const halfedge* old_edges = nullptr;
    {
        indexedfaceset fs;
        m.fill_mesh(fs);
        old_faces = fs.faces().data();
        old_edges = fs.edges().data();
    }
    const std::uint64_t pooled = get_mesh_buffer_bytes();
    // Faces, half-edges and the three corner arrays at least.
    EXPECT_GE(pooled,
              m.triangles_size() * (sizeof(face) + 3 * sizeof(halfedge) + 9 * sizeof(vector3d)));
    indexedfaceset fs;
    m.fill_mesh(fs);
    EXPECT_EQ(fs.faces().data(), old_faces);
    EXPECT_EQ(fs.edges().data(), old_edges);
    EXPECT_LT(get_mesh_buffer_bytes(), pooled);

    // A smaller limit frees the oldest arrays down to it; 0 frees all.
    set_mesh_buffer_limit(pooled / 2);
    EXPECT_LE(get_mesh_buffer_bytes(), pooled / 2);
    EXPECT_EQ(get_mesh_buffer_limit(), pooled / 2);
    set_mesh_buffer_limit(0);
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
    {
        indexedfaceset gone;
        m.fill_mesh(gone);
    }
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
}

TEST_F(MeshBuffers, ALowerLimitFreesTheOldestArraysFirst) {
    set_mesh_buffer_limit(0);
    set_mesh_buffer_limit(default_mesh_buffer_limit);
    { wavy_grid(60, 2).fill_mesh(*std::make_unique<indexedfaceset>()); }
    const std::uint64_t older = get_mesh_buffer_bytes();
    { wavy_grid(90, 2).fill_mesh(*std::make_unique<indexedfaceset>()); }
    const std::uint64_t newer = get_mesh_buffer_bytes() - older;
    ASSERT_GT(older, 0u);
    ASSERT_GT(newer, older);
    set_mesh_buffer_limit(newer);
    EXPECT_EQ(get_mesh_buffer_bytes(), newer);
}

TEST_F(MeshBuffers, ArraysAboveTheLimitOrBelowAQuarterMegabyteAreFreed) {
    set_mesh_buffer_limit(0);
    set_mesh_buffer_limit(300 * 1024);
    {
        indexedfaceset small;  // 200 faces: every array far below 256 KiB
        wavy_grid(10, 1).fill_mesh(small);
    }
    EXPECT_EQ(get_mesh_buffer_bytes(), 0u);
    {
        indexedfaceset large;  // faces of 168 · 7200 bytes: above the limit
        wavy_grid(60, 1).fill_mesh(large);
    }
    EXPECT_LE(get_mesh_buffer_bytes(), 300u * 1024);
}

}  // namespace
