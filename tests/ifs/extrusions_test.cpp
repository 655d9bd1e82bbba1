// The closed meshes of extruded polygons and path extrusions: vertex tables, closedness,
// outward normals, enclosed volumes, smoothing, and the failures that leave the cache alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "support/solid_checks.h"

using facet_test::is_closed;
using facet_test::is_outward_solid;
using facet_test::volume;
using primitives::extruded_polygon;
using primitives::path_extrusion;

namespace {

constexpr double pi = 3.141592653589793;

// A regular n-gon of radius r around the origin, counter-clockwise in the plane given by
// `plane` ("xz": x and z, y = 0; "xy": x and y, z = 0).
std::vector<vector3d> regular_polygon(int n, double r, const std::string& plane) {
    std::vector<vector3d> points;
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * pi * i / n;
        if (plane == "xz")
            points.emplace_back(r * std::cos(a), 0.0, r * std::sin(a));
        else
            points.emplace_back(r * std::cos(a), r * std::sin(a), 0.0);
    }
    return points;
}

double regular_polygon_area(int n, double r) { return n / 2.0 * r * r * std::sin(2.0 * pi / n); }

std::vector<vector3d> unit_square_xz() {
    return {vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(1, 0, 1), vector3d(0, 0, 1)};
}

// Half-edges with the draw mark set.
int drawn_edges(const indexedfaceset& fs) {
    int n = 0;
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) n += fs.get_edge(e).drawn();
    return n;
}

std::string message_of(const primitives::basic_object& o) {
    try {
        o.get_mesh();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no exception";
}

}  // namespace

TEST(ExtrudedPolygonMesh, SquareTableClosedAndVolume) {
    extruded_polygon e;
    e.set_points(unit_square_xz());
    e.set_extrusion(vector3d(0, 2, 0));
    const indexedfaceset& fs = e.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 8u);
    ASSERT_EQ(fs.num_faces(), 12u);
    for (std::uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(fs.get_vertex(i), unit_square_xz()[i]);
        EXPECT_EQ(fs.get_vertex(4 + i), unit_square_xz()[i] + vector3d(0, 2, 0));
    }
    // Caps first (near keeps the outline's winding, whose normal is -y), then the sides.
    for (std::uint32_t f = 0; f < 2; ++f) EXPECT_EQ(fs.get_face(f).normal, vector3d(0, -1, 0));
    for (std::uint32_t f = 2; f < 4; ++f) EXPECT_EQ(fs.get_face(f).normal, vector3d(0, 1, 0));
    const face& side = fs.get_face(4);
    EXPECT_EQ(side.vertex[0], 1u);
    EXPECT_EQ(side.vertex[1], 0u);
    EXPECT_EQ(side.vertex[2], 4u);
    EXPECT_EQ(side.normal, vector3d(0, 0, -1));
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_DOUBLE_EQ(volume(fs), 2.0);
    EXPECT_EQ(drawn_edges(fs), 24);  // the twelve edges of the block
    EXPECT_EQ(fs.get_face(0).style, 0);
    EXPECT_EQ(fs.get_face(0).brush, e.get_brush());
    EXPECT_EQ(fs.num_texcoords(), 36u);
}

TEST(ExtrudedPolygonMesh, AnyWindingAndSideGiveOutwardNormals) {
    std::vector<vector3d> clockwise = unit_square_xz();
    std::reverse(clockwise.begin(), clockwise.end());
    for (const auto& outline : {unit_square_xz(), clockwise}) {
        for (double h : {2.0, -2.0}) {
            extruded_polygon e;
            e.set_points(outline);
            e.set_extrusion(vector3d(0, h, 0));
            EXPECT_TRUE(is_outward_solid(e.get_mesh()));
            EXPECT_DOUBLE_EQ(volume(e.get_mesh()), 2.0);
        }
    }
}

TEST(ExtrudedPolygonMesh, ObliqueTaperedAndTiltedVolumes) {
    extruded_polygon oblique;  // Cavalieri: base area times height
    oblique.set_points(unit_square_xz());
    oblique.set_extrusion(vector3d(1, 1, 0.5));
    EXPECT_TRUE(is_outward_solid(oblique.get_mesh()));
    EXPECT_NEAR(volume(oblique.get_mesh()), 1.0, 1e-14);

    extruded_polygon frustum;  // far square scaled by one half about the origin
    frustum.set_points(
        {vector3d(-1, 0, -1), vector3d(1, 0, -1), vector3d(1, 0, 1), vector3d(-1, 0, 1)});
    frustum.set_extrusion_scaling(vector3d(0.5, 1, 0.5));
    const indexedfaceset& f = frustum.get_mesh();
    EXPECT_EQ(f.get_vertex(6), vector3d(0.5, 1, 0.5));
    EXPECT_TRUE(is_outward_solid(f));
    EXPECT_NEAR(volume(f), 7.0 / 3.0, 1e-14);  // h/3 (A1 + A2 + sqrt(A1 A2))

    extruded_polygon tilted;  // outline in the plane z = x, area vector (-1, 0, 1)
    tilted.set_points({vector3d(0, 0, 0), vector3d(1, 0, 1), vector3d(1, 1, 1), vector3d(0, 1, 0)});
    tilted.set_extrusion(vector3d(0, 0, 1));
    EXPECT_TRUE(is_outward_solid(tilted.get_mesh()));
    EXPECT_NEAR(volume(tilted.get_mesh()), 1.0, 1e-14);
}

TEST(ExtrudedPolygonMesh, RoundOutlineHasSmoothSidesAndSharpCaps) {
    const int n = 24;
    extruded_polygon e;
    e.set_points(regular_polygon(n, 1.0, "xz"));
    e.set_extrusion(vector3d(0, 3, 0));
    const indexedfaceset& fs = e.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 2u * n);
    ASSERT_EQ(fs.num_faces(), 2u * (n - 2) + 2u * n);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_NEAR(volume(fs), 3.0 * regular_polygon_area(n, 1.0), 1e-12);
    EXPECT_EQ(drawn_edges(fs), 2 * 2 * n);  // only the two cap borders

    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        for (std::uint32_t k = 0; k < 3; ++k) {
            const vector3d& normal = fs.get_normal(3 * i + k);
            if (i < 2u * (n - 2)) {
                EXPECT_EQ(normal, f.normal) << "cap corners stay flat";
            } else {
                const vector3d& p = fs.get_vertex(f.vertex[k]);
                EXPECT_NEAR((normal - vector3d(p.x, 0, p.z)).length(), 0.0, 1e-12)
                    << "side corners take the radial direction";
            }
        }
    }
}

TEST(ExtrudedPolygonMesh, RepeatedAndStraightPointsAreDroppedToStayClosed) {
    extruded_polygon e;
    e.set_points({vector3d(0, 0, 0), vector3d(0.5, 0, 0), vector3d(1, 0, 0), vector3d(1, 0, 0),
                  vector3d(1, 0, 1), vector3d(0, 0, 1), vector3d(0, 0, 0)});
    const indexedfaceset& fs = e.get_mesh();
    EXPECT_EQ(fs.num_vertices(), 8u);
    EXPECT_EQ(fs.num_faces(), 12u);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_DOUBLE_EQ(volume(fs), 1.0);

    // Nothing left to cap: an empty mesh, no error.
    e.set_points({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(2, 0, 0)});
    EXPECT_EQ(e.get_mesh().num_vertices(), 0u);
    EXPECT_EQ(e.get_mesh().num_faces(), 0u);
    EXPECT_EQ(e.get_mesh().get_style(0).name, "std");
}

TEST(ExtrudedPolygonMesh, BadOutlineThrowsAndLeavesTheCacheAsItWas) {
    extruded_polygon e;
    e.set_points(unit_square_xz());
    const indexedfaceset& fs = e.get_mesh();
    ASSERT_EQ(fs.num_faces(), 12u);

    // A self-intersecting outline.
    e.set_points({vector3d(0, 0, 0), vector3d(2, 0, 0), vector3d(2, 0, 2), vector3d(1, 0, -1),
                  vector3d(0, 0, 2)});
    EXPECT_EQ(message_of(e), "Triangulation error: bad polygon");
    EXPECT_TRUE(e.is_dirty());
    EXPECT_EQ(fs.num_vertices(), 8u);
    EXPECT_EQ(fs.num_faces(), 12u);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_EQ(message_of(e), "Triangulation error: bad polygon");  // still dirty, tried again

    e.set_points(unit_square_xz());
    e.set_extrusion(vector3d(0, 3, 0));
    EXPECT_DOUBLE_EQ(volume(e.get_mesh()), 3.0);
    EXPECT_FALSE(e.is_dirty());
}

TEST(PathExtrusionMesh, StraightPathsTableAndFrames) {
    const std::vector<vector3d> square = {vector3d(-0.5, -0.5, 0), vector3d(0.5, -0.5, 0),
                                          vector3d(0.5, 0.5, 0), vector3d(-0.5, 0.5, 0)};
    path_extrusion p;
    p.set_profile(square);
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 2)});
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 8u);
    ASSERT_EQ(fs.num_faces(), 12u);
    for (std::uint32_t i = 0; i < 4; ++i) {  // along +z the profile shows as given
        EXPECT_EQ(fs.get_vertex(i), square[i]);
        EXPECT_EQ(fs.get_vertex(4 + i), square[i] + vector3d(0, 0, 2));
    }
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_DOUBLE_EQ(volume(fs), 2.0);
    EXPECT_EQ(drawn_edges(fs), 24);

    // Along +x the profile's x runs along -z (side = up × tangent); y stays up.
    p.set_path({vector3d(1, 0, 0), vector3d(4, 0, 0)});
    EXPECT_EQ(p.get_mesh().get_vertex(1), vector3d(1, -0.5, -0.5));
    EXPECT_DOUBLE_EQ(volume(p.get_mesh()), 3.0);

    // A vertical start takes -z as up: the profile's x stays x, its y runs along -z.
    p.set_path({vector3d(0, 0, 0), vector3d(0, 2, 0)});
    EXPECT_EQ(p.get_mesh().get_vertex(2), vector3d(0.5, 0, -0.5));
    EXPECT_TRUE(is_outward_solid(p.get_mesh()));
}

TEST(PathExtrusionMesh, NoTwistAlongStraightRuns) {
    path_extrusion p;
    p.set_profile(regular_polygon(5, 0.3, "xy"));
    const vector3d d(1, 2, 3);
    p.set_path({vector3d(0, 0, 0), d, d * 2.0, d * 2.0, d * 5.0});  // a repeated point is skipped
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u * 5u);
    const double along[] = {0.0, 1.0, 2.0, 5.0};
    for (std::uint32_t r = 1; r < 4; ++r)
        for (std::uint32_t i = 0; i < 5; ++i)
            EXPECT_NEAR((fs.get_vertex(5 * r + i) - d * along[r] - fs.get_vertex(i)).length(), 0.0,
                        1e-12);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_NEAR(volume(fs), regular_polygon_area(5, 0.3) * 5.0 * d.length(), 1e-12);
}

TEST(PathExtrusionMesh, MitredBendsKeepTheVolume) {
    path_extrusion l;
    l.set_profile({vector3d(-0.5, -0.5, 0), vector3d(0.5, -0.5, 0), vector3d(0.5, 0.5, 0),
                   vector3d(-0.5, 0.5, 0)});
    l.set_path({vector3d(0, 0, 0), vector3d(0, 0, 2), vector3d(3, 0, 2)});
    const indexedfaceset& fs = l.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 12u);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_NEAR(volume(fs), 5.0, 1e-14);
    vector3d mitre(1, 0, 1);
    mitre.normalize();
    for (std::uint32_t i = 4; i < 8; ++i)  // the joint ring lies in the mitre plane
        EXPECT_NEAR(dot(fs.get_vertex(i) - vector3d(0, 0, 2), mitre), 0.0, 1e-15);

    // A round profile along a path bending in space.
    const int n = 16;
    path_extrusion tube;
    tube.set_profile(regular_polygon(n, 0.5, "xy"));
    const std::vector<vector3d> path = {vector3d(0, 0, 0), vector3d(0, 0, 3), vector3d(2, 1, 4),
                                        vector3d(2, 4, 4), vector3d(5, 4, 2)};
    tube.set_path(path);
    double length = 0.0;
    for (std::size_t i = 1; i < path.size(); ++i) length += (path[i] - path[i - 1]).length();
    const indexedfaceset& t = tube.get_mesh();
    EXPECT_EQ(t.num_vertices(), 5u * n);
    EXPECT_EQ(t.num_faces(), 2u * (n - 2) + 4u * 2u * n);
    EXPECT_TRUE(is_outward_solid(t));
    EXPECT_NEAR(volume(t), regular_polygon_area(n, 0.5) * length, 1e-12);
}

TEST(PathExtrusionMesh, RoundProfileShadesSmoothlyWithSharpCaps) {
    const int n = 20;
    path_extrusion p;
    p.set_profile(regular_polygon(n, 1.0, "xy"));
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 4)});
    const indexedfaceset& fs = p.get_mesh();
    EXPECT_EQ(drawn_edges(fs), 2 * 2 * n);
    for (std::uint32_t i = 2 * (n - 2); i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        for (std::uint32_t k = 0; k < 3; ++k) {
            const vector3d& q = fs.get_vertex(f.vertex[k]);
            EXPECT_NEAR((fs.get_normal(3 * i + k) - vector3d(q.x, q.y, 0)).length(), 0.0, 1e-12);
        }
    }
    EXPECT_EQ(fs.get_normal(0), fs.get_face(0).normal);
    EXPECT_EQ(std::fabs(fs.get_face(0).normal.z), 1.0);
}

TEST(PathExtrusionMesh, FailuresAndDegenerateInput) {
    path_extrusion p;
    p.set_profile({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0)});
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_faces(), 8u);

    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1), vector3d(0, 0, 0.5)});
    EXPECT_EQ(message_of(p), "Path extrusion error: path turns back on itself");
    EXPECT_TRUE(p.is_dirty());
    EXPECT_EQ(fs.num_faces(), 8u);
    EXPECT_TRUE(is_outward_solid(fs));

    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    p.set_profile({vector3d(0, 0, 0), vector3d(2, 0, 0), vector3d(2, 2, 0), vector3d(1, -1, 0),
                   vector3d(0, 2, 0)});
    EXPECT_EQ(message_of(p), "Triangulation error: bad polygon");
    EXPECT_EQ(fs.num_faces(), 8u);

    p.set_profile({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0)});
    p.set_path({vector3d(1, 1, 1), vector3d(1, 1, 1)});  // no direction: empty mesh
    EXPECT_EQ(p.get_mesh().num_faces(), 0u);
    EXPECT_EQ(p.get_mesh().num_vertices(), 0u);
    p.set_path({vector3d(0, 0, 0), vector3d(0, 0, 1)});
    p.set_profile({vector3d(0, 0, 0), vector3d(1, 1, 0)});  // fewer than 3 points
    EXPECT_EQ(p.get_mesh().num_faces(), 0u);
}
