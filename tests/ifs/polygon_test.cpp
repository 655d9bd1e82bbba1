// The polygon's mesh: the plane it is projected to, the triangles, the finishing steps and the
// failure of an outline that cannot be cut.
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "facet/triangulate.h"

using graphics::brush;
using graphics::color;
using graphics::pen;

namespace {

primitives::polygon polygon_of(std::initializer_list<vector3d> points) {
    primitives::polygon p;
    for (const vector3d& v : points) p.add_point(v);
    return p;
}

// The faces the mesh must have: triangulate's result for the given 2D outline.
void expect_faces_of(const indexedfaceset& fs, const std::vector<vector2<double>>& outline) {
    std::vector<unsigned> expected;
    triangulate(outline, expected);
    ASSERT_EQ(fs.num_faces(), expected.size() / 3);
    for (std::uint32_t k = 0; k < fs.num_faces(); ++k)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(fs.get_face(k).vertex[c], expected[3 * k + c]);
}

}  // namespace

TEST(PolygonMesh, SquareInZIsProjectedToXY) {
    const primitives::polygon p = polygon_of({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u);
    EXPECT_EQ(fs.get_vertex(2), vector3d(1, 1, 0));
    ASSERT_EQ(fs.num_faces(), 2u);
    expect_faces_of(fs, {{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    for (std::uint32_t k = 0; k < 2; ++k) EXPECT_EQ(fs.get_face(k).normal, vector3d(0, 0, 1));
}

TEST(PolygonMesh, SquareInYIsProjectedToXZ) {
    const primitives::polygon p = polygon_of({{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}});
    const indexedfaceset& fs = p.get_mesh();
    expect_faces_of(fs, {{0, 0}, {1, 0}, {1, 1}, {0, 1}});
    // Counter-clockwise in (x, z) is clockwise seen from +y.
    for (std::uint32_t k = 0; k < 2; ++k) EXPECT_EQ(fs.get_face(k).normal, vector3d(0, -1, 0));
}

TEST(PolygonMesh, OutlineInXIsProjectedToZY) {
    // An L shape in the plane x = 2, so that the triangles depend on the projection.
    const primitives::polygon p =
        polygon_of({{2, 0, 0}, {2, 0, 2}, {2, 1, 2}, {2, 1, 1}, {2, 2, 1}, {2, 2, 0}});
    const indexedfaceset& fs = p.get_mesh();
    expect_faces_of(fs, {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}});
    EXPECT_EQ(fs.num_faces(), 4u);
    // Counter-clockwise in (z, y) is clockwise seen from +x.
    for (std::uint32_t k = 0; k < fs.num_faces(); ++k)
        EXPECT_EQ(fs.get_face(k).normal, vector3d(-1, 0, 0));
}

TEST(PolygonMesh, PlaneNormalSkipsPointsCloserThanATenth) {
    // The second point is 0.05 off the first and off the plane z = 0; taken as B it would
    // tilt the normal to +y and the (x, z) projection would flatten the outline. The third
    // point is B, the fourth C: normal +z, projection (x, y).
    const primitives::polygon p =
        polygon_of({{0, 0, 0}, {0, 0, 0.05}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    const indexedfaceset& fs = p.get_mesh();
    expect_faces_of(fs, {{0, 0}, {0, 0}, {1, 0}, {1, 1}, {0, 1}});
    EXPECT_EQ(fs.num_faces(), 2u);
}

TEST(PolygonMesh, DegenerateOutlinesFallBackToFixedPlanes) {
    // All points within 0.1 of each other: normal (0, 1, 0), projection (x, z), so a tiny
    // square in y = 0 is cut and the same square in z = 0 is flattened to a line.
    EXPECT_EQ(
        polygon_of({{0, 0, 0}, {0.05, 0, 0}, {0.05, 0, 0.05}, {0, 0, 0.05}}).get_mesh().num_faces(),
        2u);
    EXPECT_EQ(
        polygon_of({{0, 0, 0}, {0.05, 0, 0}, {0.05, 0.05, 0}, {0, 0.05, 0}}).get_mesh().num_faces(),
        0u);
    // The first three distinct points on one line: zero normal, projection (z, y), which
    // flattens this outline in z = 0.
    EXPECT_EQ(
        polygon_of({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}).get_mesh().num_faces(),
        0u);
}

TEST(PolygonMesh, FinishingSteps) {
    primitives::polygon p = polygon_of({{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}});
    const brush b(color(10, 20, 30, 255), 2);
    const pen pn(color(1, 2, 3, 255), 4, 5);
    p.set_brush(b);
    p.set_pen(pn);
    p.set_backface_culling(false);
    p.set_black_in_bw_mode(true);
    p.set_visible_edge_threshold_angle(30.0);
    p.set_texture_scale(0.5, 0.25);
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_faces(), 2u);
    for (std::uint32_t k = 0; k < 2; ++k) {
        const face& f = fs.get_face(k);
        EXPECT_EQ(f.style, 0);
        EXPECT_TRUE(f.brush == b);
        EXPECT_TRUE(f.pen == pn);
        for (std::uint32_t c = 0; c < 3; ++c) {
            EXPECT_EQ(fs.get_normal(3 * k + c), vector3d(0, 0, 1));  // flat, not smoothed
            EXPECT_EQ(fs.get_tangent(3 * k + c), vector3d(1, 0, 0));
        }
    }
    EXPECT_FALSE(fs.get_backface_culling());
    EXPECT_TRUE(fs.show_black_in_bw_mode());
    EXPECT_EQ(fs.get_visible_edge_treshold(), 30.0);
    ASSERT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "std");
    EXPECT_EQ(fs.get_style(0).texture.texture_scale, vector2d(0.5, 0.25));
    // Box texture coordinates, z dominant: (0.5 x, 0.25 y).
    ASSERT_EQ(fs.num_texcoords(), 6u);
    for (std::uint32_t i = 0; i < 6; ++i) {
        const vector3d& v = fs.get_vertex(fs.get_face(i / 3).vertex[i % 3]);
        const texcoord& t = fs.get_texcoord(fs.get_face(i / 3).texcoord[i % 3]);
        EXPECT_EQ(t.u, static_cast<float>(0.5 * v.x));
        EXPECT_EQ(t.v, static_cast<float>(0.25 * v.y));
    }
    // The outline's four edges are open and drawn; the diagonal is flat and hidden.
    ASSERT_EQ(fs.num_edges(), 6u);
    int drawn = 0;
    for (std::uint32_t e = 0; e < 6; ++e) drawn += fs.get_edge(e).drawn() ? 1 : 0;
    EXPECT_EQ(drawn, 4);
}

TEST(PolygonMesh, FewerThanThreePointsGiveNoFaces) {
    const primitives::polygon p = polygon_of({{0, 0, 0}, {1, 0, 0}});
    const indexedfaceset& fs = p.get_mesh();
    EXPECT_EQ(fs.num_vertices(), 2u);
    EXPECT_EQ(fs.num_faces(), 0u);
    EXPECT_EQ(fs.num_edges(), 0u);
    EXPECT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(primitives::polygon().get_mesh().num_vertices(), 0u);
}

TEST(PolygonMesh, UncuttableOutlineThrowsAfterReplacingTheVertices) {
    indexedfaceset fs;
    fs.create_mesh(polygon_of({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}));
    ASSERT_EQ(fs.num_faces(), 1u);

    // A bow tie in y = 0, projected to (x, z).
    const primitives::polygon bow_tie = polygon_of({{0, 0, 0}, {4, 0, 4}, {4, 0, 0}, {0, 0, 4}});
    try {
        fs.create_mesh(bow_tie);
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), "Triangulation error: bad polygon");
    }
    EXPECT_EQ(fs.num_vertices(), 4u);
    EXPECT_EQ(fs.get_vertex(1), vector3d(4, 0, 4));
    ASSERT_EQ(fs.num_faces(), 1u);  // the earlier build's
    EXPECT_EQ(fs.get_face(0).normal, vector3d(0, 0, 1));

    // Through the object, the failure leaves it dirty.
    primitives::polygon p = bow_tie;
    EXPECT_THROW(p.get_mesh(), std::runtime_error);
    EXPECT_TRUE(p.is_dirty());
}
