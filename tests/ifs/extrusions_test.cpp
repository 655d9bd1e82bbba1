// The closed meshes of extruded polygons and path extrusions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "ifs/fixtures.h"

using namespace ifs_test;
using primitives::extruded_polygon;
using primitives::path_extrusion;

namespace {

// A regular n-gon of radius r around the origin, counter-clockwise in x–z (y = 0) or x–y.
std::vector<vector3d> regular_polygon(int n, double r, bool xz) {
    std::vector<vector3d> points;
    for (int i = 0; i < n; ++i) {
        const double c = r * std::cos(2.0 * geometry::pi * i / n);
        const double s = r * std::sin(2.0 * geometry::pi * i / n);
        points.push_back(xz ? vector3d(c, 0.0, s) : vector3d(c, s, 0.0));
    }
    return points;
}

double regular_polygon_area(int n, double r) {
    return n / 2.0 * r * r * std::sin(2.0 * geometry::pi / n);
}

const std::vector<vector3d> unit_square_xz = {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}};
const std::vector<vector3d> centred_square = {
    {-0.5, -0.5, 0}, {0.5, -0.5, 0}, {0.5, 0.5, 0}, {-0.5, 0.5, 0}};

// A closed outward solid of the volume; side corners point away from the axis (the vertex with
// the axis masked out), the caps (faces before 2 (n − 2)) stay flat, the cap borders are drawn.
void expect_round_sides(const indexedfaceset& fs, int n, const vector3d& mask, double volume) {
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_NEAR(ifs_test::volume(fs), volume, 1e-12);
    EXPECT_EQ(drawn_edges(fs), 2 * 2 * n);
    for (std::uint32_t i = 0; i < 3 * fs.num_faces(); ++i) {
        const vector3d& p = fs.get_vertex(fs.get_face(i / 3).vertex[i % 3]);
        const vector3d radial(p.x * mask.x, p.y * mask.y, p.z * mask.z);
        const vector3d& expected = i < 6u * (n - 2) ? fs.get_face(i / 3).normal : radial;
        EXPECT_NEAR((fs.get_normal(i) - expected).length(), 0.0, 1e-12) << "corner " << i;
    }
}

}  // namespace

TEST(ExtrudedPolygonMesh, AnyPlaneWindingAndDirectionGiveOutwardSolids) {
    std::vector<vector3d> clockwise = unit_square_xz;
    std::reverse(clockwise.begin(), clockwise.end());
    const vector3d one(1, 1, 1);
    const auto expect_solid = [](const std::vector<vector3d>& points, const vector3d& extrusion,
                                 const vector3d& scaling, double v, const char* caps) {
        extruded_polygon e;
        e.set_points(points);
        e.set_extrusion(extrusion);
        e.set_extrusion_scaling(scaling);
        const indexedfaceset& fs = e.get_mesh();
        EXPECT_EQ(fs.num_vertices() + fs.num_faces(), 8u + 12u);
        EXPECT_TRUE(is_outward_solid(fs));
        EXPECT_NEAR(volume(fs), v, 1e-14);
        EXPECT_TRUE(caps == nullptr || faces_of(fs, 0, 4) == caps) << faces_of(fs, 0, 4);
        EXPECT_TRUE(scaling.x == 1 || fs.get_vertex(6) == vector3d(0.5, 1, 0.5));
    };
    expect_solid(unit_square_xz, {0, -2, 0}, one, 2.0, "3 1 0|1 3 2|7 4 5|5 6 7");
    expect_solid(clockwise, {0, 2, 0}, one, 2.0, "2 0 3|0 2 1|6 7 4|4 5 6");
    expect_solid(clockwise, {0, -2, 0}, one, 2.0, "2 3 0|0 1 2|6 4 7|4 6 5");
    expect_solid({{0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}}, {3, 0, 0}, one, 3.0,  // x = 0
                 "2 0 3|0 2 1|6 7 4|4 5 6");
    expect_solid({{0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 0}}, {0, 0, 3}, one, 3.0,  // z = 0
                 "2 3 0|0 1 2|6 4 7|4 6 5");
    expect_solid(unit_square_xz, {1, 1, 0.5}, one, 1.0, nullptr);  // oblique: base times height
    // Far square halved about the origin: h/3 (A1 + A2 + sqrt(A1 A2)).
    expect_solid({{-1, 0, -1}, {1, 0, -1}, {1, 0, 1}, {-1, 0, 1}}, {0, 1, 0}, {0.5, 1, 0.5},
                 7.0 / 3.0, nullptr);
    // Normals (1, -1, 0), (1, 0, 1), (0, 1, 1) tie two axes: the first of them is projected
    // away (the other projection would mirror the outline and cut it otherwise).
    expect_solid({{0, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 0, 1}}, {1, -1, 0}, one, 2.0,
                 "2 0 3|0 2 1|6 7 4|4 5 6");
    expect_solid({{0, 0, 0}, {1, 0, -1}, {1, 1, -1}, {0, 1, 0}}, {1, 0, 1}, one, 2.0,
                 "2 0 3|0 2 1|6 7 4|4 5 6");
    expect_solid({{0, 0, 0}, {1, 0, 0}, {1, 1, -1}, {0, 1, -1}}, {0, 1, 1}, one, 2.0,
                 "2 0 3|0 2 1|6 7 4|4 5 6");
    // Repeated and straight points are dropped so that the sides meet the caps.
    expect_solid({{0, 0, 0}, {0.5, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}, {0, 0, 0}},
                 {0, 1, 0}, one, 1.0, nullptr);
    extruded_polygon round;  // smooth sides, sharp caps
    round.set_points(regular_polygon(24, 1.0, true));
    round.set_extrusion(vector3d(0, 3, 0));
    ASSERT_EQ(round.get_mesh().num_faces(), 2u * 22 + 2u * 24);
    expect_round_sides(round.get_mesh(), 24, vector3d(1, 0, 1), 3 * regular_polygon_area(24, 1));
}

TEST(ExtrudedPolygonMesh, SquareTableBadOutlinesThrowAndLeaveTheCacheAsItWas) {
    extruded_polygon e;
    e.set_points(unit_square_xz);
    e.set_extrusion(vector3d(0, 2, 0));
    const indexedfaceset& fs = e.get_mesh();
    EXPECT_EQ(vertices_of(fs), "0 0 0|1 0 0|1 0 1|0 0 1|0 2 0|1 2 0|1 2 1|0 2 1");
    // Caps first (the near one keeps the outline's winding, whose normal is -y), then sides; the
    // twelve edges of the block are drawn.
    EXPECT_EQ(faces_of(fs, 0, 5), "3 0 1|1 2 3|7 5 4|5 7 6|1 0 4");
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_EQ(drawn_edges(fs) + fs.num_texcoords(), 24u + 36u);
    // Self-intersecting outlines; a bow tie encloses no area and is projected along the axis of
    // its smallest extent (not of its smallest coordinates), which keeps it a bow tie.
    for (const std::vector<vector3d>& points : std::vector<std::vector<vector3d>>{
             {{0, 0, 0}, {2, 0, 0}, {2, 0, 2}, {1, 0, -1}, {0, 0, 2}},
             {{0, 0, 0}, {2, 0, 2}, {2, 0, 0}, {0, 0, 2}},
             {{10, 0, 0}, {10, 2, 2}, {10, 2, 0}, {10, 0, 2}},
             {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}}}) {
        e.set_points(points);
        EXPECT_EQ(build_error(e) + build_error(e),  // still dirty: again
                  "Triangulation error: bad polygonTriangulation error: bad polygon");
        EXPECT_EQ(fs.num_vertices() + fs.num_faces(), 8u + 12u);
    }
    e.set_points(unit_square_xz);
    e.set_extrusion(vector3d(0, 3, 0));
    EXPECT_DOUBLE_EQ(volume(e.get_mesh()), 3.0);
    // Nothing left to cap: an empty mesh, no error.
    e.set_points({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(2, 0, 0)});
    EXPECT_EQ(e.get_mesh().num_vertices() + e.get_mesh().num_faces(), 0u);
    EXPECT_EQ(e.get_mesh().get_style(0).name, "std");
}

TEST(PathExtrusionMesh, FramesAlongThePath) {
    // The first frame's up is +y made square to the path, or -z for a vertical start; side is
    // up × tangent; at a bend the frame turns by the smallest rotation between the directions.
    const double tiny = 1e-7;
    const struct {
        std::vector<vector3d> path;
        std::uint32_t vertex;
        vector3d expected;
        double volume;
    } cases[] = {
        {{{0, 0, 0}, {0, 0, 2}}, 5, {0.5, -0.5, 2}, 2.0},
        {{{1, 0, 0}, {4, 0, 0}}, 1, {1, -0.5, -0.5}, 3.0},
        {{{0, 0, 0}, {0, 2, 0}}, 2, {0.5, 0, -0.5}, 2.0},
        {{{0, 0, 0}, {0, -2, 0}}, 2, {-0.5, 0, -0.5}, 2.0},
        {{{0, 0, 0}, {0, 1, tiny}}, 3, {-0.5, 0.5 * tiny, -0.5}, 1.0},
        {{{0, 0, 0}, {0, 0, 2}, {3, 0, 2}}, 9, {3, -0.5, 1.5}, 5.0},
        {{{0, 0, 0}, {0, 0, 2}, {0, 2, 2}}, 9, {0.5, 2, 2.5}, 4.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path[1].x + 2 * c.path[1].y + 4 * c.path.back().x + 8 * c.path.back().y);
        path_extrusion p;
        p.set_profile(centred_square);
        p.set_path(c.path);
        const indexedfaceset& fs = p.get_mesh();
        ASSERT_EQ(fs.num_vertices(), 4u * c.path.size());
        EXPECT_NEAR((fs.get_vertex(c.vertex) - c.expected).length(), 0.0, 1e-12);
        EXPECT_TRUE(is_outward_solid(fs));
        EXPECT_NEAR(volume(fs), c.volume, 1e-14);
        const vector3d t = c.path[1] - c.path[0];  // the first ring is square to the path
        for (std::uint32_t i = 1; i < 4; ++i)
            EXPECT_NEAR(dot(fs.get_vertex(i) - fs.get_vertex(0), t), 0.0, 1e-14 * t.length());
    }
}

TEST(PathExtrusionMesh, FailuresAndDegenerateInput) {
    path_extrusion p;
    p.set_profile({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0)});
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_faces(), 8u);
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1), vector3d(0, 0, 0.5)});
    EXPECT_EQ(build_error(p), "Path extrusion error: path turns back on itself");
    EXPECT_EQ(fs.num_faces(), 8u);
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    p.set_profile({vector3d(0, 0, 0), vector3d(2, 0, 0), vector3d(2, 2, 0), vector3d(1, -1, 0),
                   vector3d(0, 2, 0)});
    EXPECT_EQ(build_error(p), "Triangulation error: bad polygon");
    EXPECT_EQ(fs.num_faces(), 8u);

    p.set_profile({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0)});
    p.set_path({vector3d(1, 1, 1), vector3d(1, 1, 1)});  // no direction: an empty mesh
    EXPECT_EQ(build_error(p), "built 0 faces");
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    p.set_profile({vector3d(0, 0, 0), vector3d(1, 1, 0)});  // fewer than 3 points
    EXPECT_EQ(build_error(p), "built 0 faces");
}
