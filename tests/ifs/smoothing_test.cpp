// Smooth corner normals and the tangent frames turned with them.
#include <gtest/gtest.h>

#include <cmath>

#include "facet/ifs.h"
#include "facet/primitives.h"

namespace {

double angle_between(const vector3d& a, const vector3d& b) {
    return std::acos(std::fmin(1.0, dot(a, b) / (a.length() * b.length()))) * 180.0 / geometry::pi;
}

// The unit normal of side segment s of an n-division cylinder (between ring positions s and
// s + 1).
vector3d segment_normal(std::uint32_t s, std::uint32_t n) {
    const double a = (s + 0.5) * 2.0 * geometry::pi / n;
    return vector3d(std::sin(a), 0.0, std::cos(a));
}

// A flat fan of four triangles around vertex 0 at the origin (normal +z) and a fifth triangle
// (0, 4, 5) tilted about the y axis by atan(lift / 2), all with box texture coordinates and
// tangent frames.
void fan_with_tilted_triangle(indexedfaceset& fs, double lift) {
    fs.vertices().resize(6);
    fs.vertices()[0] = vector3d(0, 0, 0);
    fs.vertices()[1] = vector3d(2, 0, 0);
    fs.vertices()[2] = vector3d(0, 2, 0);
    fs.vertices()[3] = vector3d(-2, 0, 0);
    fs.vertices()[4] = vector3d(0, -2, 0);
    fs.vertices()[5] = vector3d(2, -2, lift);
    fs.faces().resize(4);
    fs.faces()[0] = face(0, 1, 2);
    fs.faces()[1] = face(0, 2, 3);
    fs.faces()[2] = face(0, 3, 4);
    fs.faces()[3] = face(0, 4, 5);
    for (face& f : fs.faces()) f.style = 0;
    fs.styles().resize(1);
    fs.compute_normals();
    fs.construct_halfedge_data();
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
}

}  // namespace

TEST(Smoothing, CylinderSidesBlendWithinThirtyDegrees) {
    constexpr std::uint32_t n = 16;  // 22.5 degrees per segment
    primitives::cylinder c(2.0, 1.0, n);
    c.set_smoothing_threshold_angle(30.0);
    const indexedfaceset& fs = c.get_mesh();
    for (std::uint32_t s = 0; s < n; ++s) {
        // Side face n + 2s has corners T(s), B(s), T(s + 1).
        const std::uint32_t f = n + 2 * s;
        for (std::uint32_t k = 0; k < 3; ++k) {
            const vector3d& normal = fs.get_normal(3 * f + k);
            EXPECT_EQ(normal.y, 0.0);
            EXPECT_NEAR(normal.length(), 1.0, 1e-12);
            // Ring position of this corner and the segments meeting there.
            const std::uint32_t ring = k == 2 ? (s + 1) % n : s;
            const vector3d before = segment_normal((ring + n - 1) % n, n);
            const vector3d after = segment_normal(ring, n);
            EXPECT_NEAR(angle_between(normal, before), 11.25, 1e-9) << "face " << f << " " << k;
            EXPECT_NEAR(angle_between(normal, after), 11.25, 1e-9) << "face " << f << " " << k;
            // The tangent frame turned with the normal.
            EXPECT_NEAR(dot(fs.get_tangent(3 * f + k), normal), 0.0, 1e-12);
            EXPECT_NEAR(dot(fs.get_bitangent(3 * f + k), normal), 0.0, 1e-12);
        }
    }
    for (std::uint32_t f = 0; f < n; ++f)
        for (std::uint32_t k = 0; k < 3; ++k) {
            EXPECT_EQ(fs.get_normal(3 * f + k), vector3d(0, 1, 0));  // top cap
            EXPECT_EQ(fs.get_normal(3 * (3 * n + f) + k), vector3d(0, -1, 0));
            EXPECT_EQ(fs.get_tangent(3 * f + k), fs.get_face(f).tangent);
        }
}

TEST(Smoothing, CylinderSidesStayFlatBelowTheSegmentAngle) {
    constexpr std::uint32_t n = 16;
    primitives::cylinder c(2.0, 1.0, n);
    c.set_smoothing_threshold_angle(10.0);
    const indexedfaceset& fs = c.get_mesh();
    for (std::uint32_t f = n; f < 3 * n; ++f)
        for (std::uint32_t k = 0; k < 3; ++k) {
            const vector3d& normal = fs.get_normal(3 * f + k);
            EXPECT_NEAR(angle_between(normal, segment_normal((f - n) / 2, n)), 0.0, 1e-6);
        }
}

TEST(Smoothing, CoplanarFanCountsOnce) {
    // Tilt atan(0.5) = 26.6 degrees, within 30: vertex 0 averages exactly the two distinct
    // normals, however many flat triangles surround it.
    indexedfaceset fs;
    fan_with_tilted_triangle(fs, 1.0);
    const vector3d flat = fs.get_face(0).normal;
    const vector3d tilted = fs.get_face(3).normal;
    ASSERT_EQ(flat, vector3d(0, 0, 1));
    ASSERT_EQ(fs.get_face(1).normal, flat);
    fs.smooth_mesh(30.0);
    vector3d expected = flat + tilted;
    expected.normalize();
    for (std::uint32_t f = 0; f < 4; ++f) EXPECT_EQ(fs.get_normal(3 * f), expected) << f;
    // Vertex 2 touches only flat faces.
    EXPECT_EQ(fs.get_normal(3 * 0 + 2), flat);
    EXPECT_EQ(fs.get_tangent(3 * 0 + 2), fs.get_face(0).tangent);
    // The turned tangent stays perpendicular to the turned normal.
    EXPECT_NEAR(dot(fs.get_tangent(0), expected), 0.0, 1e-12);
    EXPECT_NEAR(dot(fs.get_bitangent(0), expected), 0.0, 1e-12);
    EXPECT_NE(fs.get_tangent(0), fs.get_face(0).tangent);

    // Below the tilt the faces stay apart.
    fs.smooth_mesh(20.0);
    EXPECT_EQ(fs.get_normal(0), flat);
    vector3d renormalised = tilted;  // a lone normal is normalised once more
    renormalised.normalize();
    EXPECT_EQ(fs.get_normal(9), renormalised);
}

TEST(Smoothing, TangentsTurnOnlyFromATenthOfADegree) {
    indexedfaceset fs;
    fan_with_tilted_triangle(fs, 0.005);  // tilt 0.143 degrees: the average turns by 0.072
    fs.smooth_mesh(30.0);
    EXPECT_NE(fs.get_normal(0), fs.get_face(0).normal);
    EXPECT_EQ(fs.get_tangent(0), fs.get_face(0).tangent);
    EXPECT_EQ(fs.get_bitangent(0), fs.get_face(0).bitangent);

    fan_with_tilted_triangle(fs, 0.02);  // tilt 0.573 degrees: the average turns by 0.286
    fs.smooth_mesh(30.0);
    EXPECT_NE(fs.get_tangent(0), fs.get_face(0).tangent);
    EXPECT_NEAR(dot(fs.get_tangent(0), fs.get_normal(0)), 0.0, 1e-12);
}

TEST(Smoothing, NeedsTextureCoordinatesAndHalfEdges) {
    indexedfaceset fs;
    fan_with_tilted_triangle(fs, 1.0);
    fs.faces()[2].texcoord[1] = 99;
    EXPECT_DEATH(fs.smooth_mesh(30.0), "index < m_size");
    fan_with_tilted_triangle(fs, 1.0);
    fs.edges().resize(0);
    EXPECT_DEATH(fs.smooth_mesh(30.0), "index < m_size");
}
