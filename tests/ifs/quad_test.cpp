// The quad's mesh: corners, triangles, its own texture coordinates (kept under box texture
// generation), tangent frames and the finishing steps.
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "facet/primitives.h"

namespace {

void expect_coord(const indexedfaceset& fs, std::uint32_t slot, float u, float v) {
    EXPECT_EQ(fs.get_texcoord(slot).u, u) << "slot " << slot;
    EXPECT_EQ(fs.get_texcoord(slot).v, v) << "slot " << slot;
}

}  // namespace

TEST(QuadMesh, CornersTrianglesAndCoordinates) {
    primitives::quad q;
    const indexedfaceset& fs = q.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u);
    for (std::uint32_t i = 0; i < 4; ++i) EXPECT_EQ(fs.get_vertex(i), std::as_const(q)[i]);
    ASSERT_EQ(fs.num_faces(), 2u);
    const std::uint32_t corners[2][3] = {{0, 1, 2}, {0, 2, 3}};
    for (std::uint32_t i = 0; i < 2; ++i) {
        const face& f = fs.get_face(i);
        for (std::uint32_t k = 0; k < 3; ++k) {
            EXPECT_EQ(f.vertex[k], corners[i][k]);
            EXPECT_EQ(f.texcoord[k], 3 * i + k);
        }
        EXPECT_EQ(f.normal, vector3d(0, 1, 0));  // the default quad faces +y
        EXPECT_EQ(f.style, 0);
    }
    // One coordinate per face corner, from the quad's corners (0,0) (1,0) (1,1) (0,1), even
    // though the default texture-generation mode is box.
    ASSERT_EQ(q.get_texgen_mode(), graphics::texgen_mode::box);
    ASSERT_EQ(fs.num_texcoords(), 6u);
    expect_coord(fs, 0, 0, 0);
    expect_coord(fs, 1, 1, 0);
    expect_coord(fs, 2, 1, 1);
    expect_coord(fs, 3, 0, 0);
    expect_coord(fs, 4, 1, 1);
    expect_coord(fs, 5, 0, 1);
    EXPECT_EQ(fs.num_lines(), 0u);
}

TEST(QuadMesh, CoordinatesFollowScaleAndRotation) {
    primitives::quad q;
    q.set_texcoord(1, texcoord(0.5f, 0.25f));
    q.set_texture_scale(2.0, 4.0);
    {
        const indexedfaceset& fs = q.get_mesh();
        expect_coord(fs, 1, 1, 1);  // (2 · 0.5, 4 · 0.25)
        expect_coord(fs, 2, 2, 4);
        expect_coord(fs, 5, 0, 4);
        EXPECT_EQ(fs.get_style(0).texture.texgen_mode, graphics::texgen_mode::box);
    }
    // A quarter turn, as in the box projection: (−su · v, sv · u).
    q.set_texture_rotated(true);
    const indexedfaceset& fs = q.get_mesh();
    EXPECT_TRUE(fs.texture_rotated());
    expect_coord(fs, 1, -0.5f, 2);
    expect_coord(fs, 2, -2, 4);
    expect_coord(fs, 5, -2, 0);
}

TEST(QuadMesh, TangentFramesFromTheQuadsCoordinates) {
    primitives::quad q;
    q[0] = vector3d(0, 0, 0);
    q[1] = vector3d(2, 0, 0);
    q[2] = vector3d(2, 3, 1);
    q[3] = vector3d(0, 3, 1);
    const indexedfaceset& fs = q.get_mesh();
    for (std::uint32_t i = 0; i < 2; ++i) {
        const face& f = fs.get_face(i);
        vector3d tangent, bitangent;
        vector2d uv[3];
        for (int k = 0; k < 3; ++k) {
            const texcoord& t = fs.get_texcoord(f.texcoord[k]);
            uv[k] = vector2d(t.u, t.v);
        }
        ComputeTangentBasis(fs.get_vertex(f.vertex[0]), fs.get_vertex(f.vertex[1]),
                            fs.get_vertex(f.vertex[2]), uv[0], uv[1], uv[2], tangent, bitangent);
        EXPECT_EQ(f.tangent, tangent);
        EXPECT_EQ(f.bitangent, bitangent);
        for (std::uint32_t k = 0; k < 3; ++k) {
            EXPECT_EQ(fs.get_tangent(3 * i + k), tangent);
            EXPECT_EQ(fs.get_bitangent(3 * i + k), bitangent);
        }
    }
    // u runs along +x on this quad.
    EXPECT_GT(fs.get_face(0).tangent.x, 0.0);
}

TEST(QuadMesh, FinishingSteps) {
    primitives::quad q;
    q.set_brush(graphics::brush(graphics::color(1, 2, 3, 255), 0));
    q.set_material_ref_id("tile");
    q.enable_texturing(true);
    q.set_texture_id(11);
    q.set_show_texture_in_bw_mode(true);
    const indexedfaceset& fs = q.get_mesh();
    EXPECT_TRUE(fs.get_face(1).brush == q.get_brush());
    EXPECT_TRUE(fs.get_face(1).pen == q.get_pen());
    ASSERT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "std");
    EXPECT_EQ(fs.get_style(0).material_ref_id, "tile");
    EXPECT_EQ(fs.get_style(0).texture.texture_id, 11u);
    EXPECT_TRUE(fs.get_textured());
    EXPECT_TRUE(fs.show_texture_in_bw_mode());
    // Two faces sharing the flat diagonal: the four outline half-edges are drawn, the diagonal
    // is not.
    ASSERT_EQ(fs.num_edges(), 6u);
    EXPECT_FALSE(fs.get_edge(2).drawn());  // face 0: 2 -> 0
    EXPECT_FALSE(fs.get_edge(3).drawn());  // face 1: 0 -> 2
    for (std::uint32_t e : {0u, 1u, 4u, 5u}) EXPECT_TRUE(fs.get_edge(e).drawn()) << e;
    // Corner normals stay flat.
    for (std::uint32_t c = 0; c < 6; ++c) EXPECT_EQ(fs.get_normal(c), vector3d(0, 1, 0));
}

TEST(QuadMesh, OtherTexgenModesKeepTheCoordinatesToo) {
    primitives::quad q;
    q.set_texgen_mode(graphics::texgen_mode::none);
    const indexedfaceset& fs = q.get_mesh();
    ASSERT_EQ(fs.num_texcoords(), 6u);
    expect_coord(fs, 4, 1, 1);
    EXPECT_EQ(fs.get_style(0).texture.texgen_mode, graphics::texgen_mode::none);
}
