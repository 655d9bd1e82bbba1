// Vectors, angles, ray against triangle, collinearity, tangent bases and box overlap.
#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <cmath>
#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
using point = geometry::vector<double, 2>;

TEST(Vector, ArithmeticNormalisationAndExactEquality) {
    EXPECT_EQ(cross(vector3d(1, 0, 0), vector3d(0, 1, 0)), vector3d(0, 0, 1));
    EXPECT_EQ(dot(vector3d(1e16, 1, -1e16), vector3d(1, 1, 1)), 0.0);  // summed x, y, then z
    EXPECT_EQ(cross(vector2d(1, 2), vector2d(3, 5)), -1.0);
    EXPECT_NE(vector3d(0.1, 0, 0), vector3d(0.1 + 1e-15, 0, 0));
    EXPECT_NE(vector3d(nan, 0, 0), vector3d(nan, 0, 0));
    EXPECT_EQ(vector3d(0.0, 0, 0), vector3d(-0.0, 0, 0));
    // Lengths of at most 1e-12 (and NaN) become the zero vector and report 0.
    const struct {
        vector3d v;
        double length;
        vector3d unit;
    } cases[] = {{{0, 0, 1e-13}, 0, {}},
                 {{1e-12, 0, 0}, 0, {}},
                 {{nan, 1, 0}, 0, {}},
                 {{0, 0, 2e-12}, 2e-12, {0, 0, 1}},
                 {{3, 0, 4}, 5, {0.6, 0, 0.8}}};
    for (auto c : cases) {
        EXPECT_EQ(c.v.normalize(), c.length);
        EXPECT_EQ(c.v, c.unit);
    }
    // The geometry vector throws below 1e-9 instead and leaves itself unchanged; NaN passes.
    point p(3, 4), tiny(1e-10, 0), at(1e-9, 0), with_nan(nan, 1);
    EXPECT_EQ(p[1] + p.length(), 9.0);
    try {
        tiny.normalize();
        FAIL() << "expected bad_normalization";
    } catch (const geometry::bad_normalization& e) {
        EXPECT_STREQ(e.what(), "Normalization of (near-) zero length vector");
    }
    EXPECT_EQ(tiny, point(1e-10, 0));
    at.normalize();
    EXPECT_EQ(at, point(1, 0));
    EXPECT_NO_THROW(with_nan.normalize());
    EXPECT_TRUE(std::isnan(with_nan[1]));
    EXPECT_EQ(geometry::deg_to_rad(90.0), 90.0 * 3.141592653589793 * (1.0 / 180.0));
    EXPECT_EQ(geometry::rad_to_deg(1.0), 1.0 * 180.0 * (1.0 / 3.141592653589793));
}

TEST(VectorDeathTest, IndexTwoOrMoreFailsTheCheck) {
    point p(1, 2);
    EXPECT_DEATH(p[2] = 0, "i < N");
    EXPECT_DEATH(static_cast<void>(static_cast<const point&>(p)[1000]), "i < N");
    EXPECT_DEATH(colinear({1, 2, 3}, {1, 2, 3}, {0, 0, 0}, 0.1), "p1 != p2");
    EXPECT_DEATH(colinear({0, 0, 0}, {1, 2, 3}, {1, 2, 3}, 0.1), "p2 != p3");
}

TEST(RayTriangle, HitsMissesAndTheParameterWritten) {
    const vector3d a(0, 0, 0), b(1, 0, 0), c(0, 1, 0), down(0, 0, -1), up(0, 0, 1);
    const struct {
        vector3d origin, direction;
        bool hit;
        double t;  // 42: left alone
    } cases[] = {
        {{0.2, 0.2, 1}, down, true, 1},
        {{0.2, 0.2, 1}, {0, 0, -4}, true, 0.25},
        {{0.5, 0.5, 1}, down, true, 1},
        {{0, 0, 1}, down, true, 1},  // on an edge, a corner
        {{0.2, 0.2, 1}, up, false, -1},
        {{0.2, 0.2, 0}, up, false, 0},  // behind, at the origin
        {{-0.5, 0.2, 1}, {1, 0, 0}, false, 42},
        {{0.2, 0.2, 0}, {1, 1, 0}, false, 42},  // parallel
        {{0.8, 0.8, 1}, down, false, 42},
        {{-0.1, 0.5, 1}, down, false, 42},
        {{0.5, -0.1, 1}, down, false, 42},
        {{nan, 0.2, 1}, down, false, 42},
        {{0.2, 0.2, 1}, {0, 0, nan}, false, 42},
    };
    for (const auto& k : cases) {
        double t = 42;
        EXPECT_EQ(ray_triangle_intersection(k.origin, k.direction, a, b, c, &t), k.hit);
        EXPECT_EQ(t, k.t) << k.origin.x << " " << k.origin.y << " " << k.origin.z;
    }
    double t = 0;
    EXPECT_TRUE(ray_triangle_intersection({0.2, 0.2, -1}, up, a, c, b, &t));  // from the back
    EXPECT_EQ(t, 1.0);
}

TEST(Colinear, RadiansAndReversals) {
    EXPECT_TRUE(colinear({1, 1, 0}, {2, 1, 0}, {3, 1.01, 0}, 0.1));
    EXPECT_FALSE(colinear({1, 1, 0}, {2, 1, 0}, {3, 1.01, 0}, 0.001));
    EXPECT_TRUE(colinear({0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, 0.001));  // doubling back
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, 0.1));
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {2, 0, 0}, 0.0));  // |cos| > 1 never holds
}

TEST(TangentBasis, BinormalAlongDecreasingT) {
    vector3d t(7, 7, 7), b(8, 8, 8);
    ComputeTangentBasis({0, 0, 0}, {0, 0, 4}, {2, 0, 0}, {0, 0}, {1, 0}, {0, 1}, t, b);
    EXPECT_EQ(t, vector3d(0, 0, 1));
    EXPECT_EQ(b, vector3d(-1, 0, 0));
    ComputeTangentBasis({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0}, {3, 0}, {0, 2}, t, b);
    EXPECT_EQ(t, vector3d(1, 0, 0));
    EXPECT_EQ(b, vector3d(0, -1, 0));
    t = vector3d(7, 7, 7);  // degenerate texture coordinates: the outputs are left alone
    ComputeTangentBasis({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5, 0.5}, {0.5, 0.5}, {1, 1}, t, b);
    EXPECT_EQ(t, vector3d(7, 7, 7));
    ComputeTangentBasis({1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {0, 0}, {1, 0}, {0, 1}, t, b);
    EXPECT_EQ(t, vector3d());  // a degenerate triangle gives zero vectors
    EXPECT_EQ(b, vector3d());
}

matrix44d at(double x, double y, double z, double angle = 0, vector3d axis = {0, 0, 1}) {
    matrix44d m;
    make_translation_matrix(m, x, y, z);
    append_rotation(m, angle, axis.x, axis.y, axis.z);
    return m;
}

TEST(BoxOverlap, SeparatingAxesAndTolerance) {
    const vector3d one(1, 1, 1), beam(4, 0.2, 0.2);
    matrix44d collapse;
    make_scaling_matrix(collapse, 0, 0, 0);
    const matrix44d cross_far = at(0, 0.8, -2, -30, {1, 0, 0}) * at(0, 0, 0, -90, {0, 1, 0});
    const matrix44d cross_near = at(0, 0.05, -2, -30, {1, 0, 0}) * at(0, 0, 0, -90, {0, 1, 0});
    const struct {
        vector3d s1;
        matrix44d m1;
        vector3d s2;
        matrix44d m2;
        double tolerance;
        bool overlap;
    } cases[] = {
        // Boxes span from their origin to their size (not centred).
        {one, at(0, 0, 0), one, at(0.5, 0.5, 0.5), 0, true},
        {one, at(0, 0, 0), one, at(-1.5, 0, 0), 0, false},
        {one, at(0, 0, 0), one, at(-0.6, 0, 0), 0, true},
        {{4, 4, 4}, at(0, 0, 0), one, at(1, 1, 1), 0, true},
        // Touching boxes overlap only with a negative tolerance, a gap once it exceeds the gap.
        {one, at(0, 0, 0), one, at(1, 0, 0), 0, false},
        {one, at(0, 0, 0), one, at(0, 0, 1), 0, false},
        {one, at(0, 0, 0), one, at(1, 0, 0), -1e-9, true},
        {one, at(0, 0, 0), one, at(1.1, 0, 0), -0.05, false},
        {one, at(0, 0, 0), one, at(1.1, 0, 0), -0.15, true},
        // A positive tolerance forgives shallow penetration, measured as the push-out distance.
        {one, at(0, 0, 0), one, at(0.99, 0, 0), 0.02, false},
        {one, at(0, 0, 0), one, at(0.9, 0, 0), 0.02, true},
        {{4, 4, 4}, at(0, 0, 0), one, at(1.5, 1.5, 1.5), 2.4, true},
        {{4, 4, 4}, at(0, 0, 0), one, at(1.5, 1.5, 1.5), 2.5, false},
        // A diamond turned about y whose bounds overlap the unit box, separated by its own face.
        {one, at(0, 0, 0), one, at(0.8, 0, -0.5, 45, {0, 1, 0}), 0, false},
        {one, at(0, 0, 0), one, at(0.3, 0, -0.5, 45, {0, 1, 0}), 0, true},
        // Crossing beams separated only by an edge x edge axis.
        {beam, at(-2, 0, 0, 30), beam, cross_far, 0, false},
        {beam, at(-2, 0, 0, 30), beam, cross_near, 0, true},
        // Flat and collapsed boxes: zero axes are skipped. NaN never overlaps.
        {{2, 2, 2}, at(0, 0, 0), {1, 0, 1}, at(0.5, 1, 0.5), 0, true},
        {{2, 2, 2}, at(0, 0, 0), one, at(1, 1, 1) * collapse, 0, true},
        {{2, 2, 2}, at(0, 0, 0), one, at(3, 1, 1) * collapse, 0, false},
        {one, at(nan, 0, 0), one, at(0, 0, 0), 0, false},
        {one, at(0, 0, 0), one, at(0, 0, 0), nan, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        EXPECT_EQ(test_overlapping_boxes(c.s1, c.m1, c.s2, c.m2, c.tolerance), c.overlap);
        EXPECT_EQ(test_overlapping_boxes(c.s2, c.m2, c.s1, c.m1, c.tolerance), c.overlap);
    }
}

}  // namespace
