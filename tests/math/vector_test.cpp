// Vectors, angles, ray against triangle, collinearity, tangent bases and box overlap.
#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
using point = geometry::vector<double, 2>;

TEST(Vector, ArithmeticNormalisationAndExactEquality) {
    EXPECT_EQ(dot(vector3d(1e16, 1, -1e16), vector3d(1, 1, 1)), 0.0);  // summed x, y, then z
    EXPECT_NE(vector3d(nan, 0, 0), vector3d(nan, 0, 0));
    // Lengths of at most 1e-12 (and NaN) become the zero vector and report 0.
    std::vector<double> got;
    for (vector3d v : {vector3d(0, 0, 1e-13), vector3d(1e-12, 0, 0), vector3d(nan, 1, 0),
                       vector3d(0, 0, 2e-12), vector3d(3, 0, 4)})
        got.insert(got.end(), {v.normalize(), v.x, v.y, v.z});
    EXPECT_EQ(got, (std::vector<double>{0, 0, 0,     0, 0, 0, 0, 0,   0, 0,
                                        0, 0, 2e-12, 0, 0, 1, 5, 0.6, 0, 0.8}));
    // The geometry vector throws below 1e-9 instead and leaves itself unchanged; NaN passes.
    point tiny(1e-10, 0), at(1e-9, 0), with_nan(nan, 1);
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
}

TEST(VectorDeathTest, IndexTwoOrMoreFailsTheCheck) {
    EXPECT_DEATH(static_cast<void>(point(1, 2)[2]), "i < N");
    EXPECT_DEATH(colinear({1, 2, 3}, {1, 2, 3}, {0, 0, 0}, 0.1), "p1 != p2");
    EXPECT_DEATH(colinear({0, 0, 0}, {1, 2, 3}, {1, 2, 3}, 0.1), "p2 != p3");
}

TEST(RayTriangle, HitsMissesAndTheParameterWritten) {
    const vector3d a(0, 0, 0), b(1, 0, 0), c(0, 1, 0), down(0, 0, -1), up(0, 0, 1);
    const auto ray = [&](vector3d origin, vector3d direction, bool back = false) {
        double t = 42;  // left alone on a miss found before the parameter
        const bool hit =
            ray_triangle_intersection(origin, direction, a, back ? c : b, back ? b : c, &t);
        return std::to_string(hit) + ":" + testing::PrintToString(t) + " ";
    };
    // Inside, on an edge and a corner; behind, at the origin, parallel, outside, NaN; the back.
    EXPECT_EQ(ray({0.2, 0.2, 1}, down) + ray({0.2, 0.2, 1}, {0, 0, -4}) + ray({0.5, 0.5, 1}, down) +
                  ray({0, 0, 1}, down) + ray({0.2, 0.2, 1}, up) + ray({0.2, 0.2, 0}, up) +
                  ray({-0.5, 0.2, 1}, {1, 0, 0}) + ray({0.2, 0.2, 0}, {1, 1, 0}) +
                  ray({0.8, 0.8, 1}, down) + ray({-0.1, 0.5, 1}, down) + ray({0.5, -0.1, 1}, down) +
                  ray({nan, 0.2, 1}, down) + ray({0.2, 0.2, 1}, {0, 0, nan}) +
                  ray({0.2, 0.2, -1}, up, true),
              "1:1 1:0.25 1:1 1:1 0:-1 0:-0 0:42 0:42 0:42 0:42 0:42 0:42 0:42 1:1 ");
}

TEST(Colinear, RadiansAndReversals) {
    EXPECT_TRUE(colinear({1, 1, 0}, {2, 1, 0}, {3, 1.01, 0}, 0.1));
    EXPECT_FALSE(colinear({1, 1, 0}, {2, 1, 0}, {3, 1.01, 0}, 0.001));
    EXPECT_TRUE(colinear({0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, 0.001));  // doubling back
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, 0.1));
    EXPECT_FALSE(colinear({0, 0, 0}, {1, 0, 0}, {2, 0, 0}, 0.0));  // |cos| > 1 never holds
}

TEST(TangentBasis, BinormalAlongDecreasingT) {
    using v3 = std::vector<vector3d>;
    const auto basis = [](vector3d p1, vector3d p2, vector2d t0, vector2d t1, vector2d t2) {
        vector3d t(7, 7, 7), b(8, 8, 8);
        ComputeTangentBasis({0, 0, 0}, p1, p2, t0, t1, t2, t, b);
        return v3{t, b};
    };
    EXPECT_EQ(basis({0, 0, 4}, {2, 0, 0}, {0, 0}, {1, 0}, {0, 1}), (v3{{0, 0, 1}, {-1, 0, 0}}));
    EXPECT_EQ(basis({1, 0, 0}, {0, 1, 0}, {0, 0}, {3, 0}, {0, 2}), (v3{{1, 0, 0}, {0, -1, 0}}));
    // Degenerate texture coordinates leave the outputs alone; a degenerate triangle zeroes them.
    EXPECT_EQ(basis({1, 0, 0}, {0, 1, 0}, {0.5, 0.5}, {0.5, 0.5}, {1, 1}),
              (v3{{7, 7, 7}, {8, 8, 8}}));
    EXPECT_EQ(basis({0, 0, 0}, {0, 0, 0}, {0, 0}, {1, 0}, {0, 1}), (v3{{}, {}}));
}

matrix44d at(double x, double y, double z, double angle = 0, vector3d axis = {0, 0, 1}) {
    matrix44d m;
    make_translation_matrix(m, x, y, z);
    append_rotation(m, angle, axis.x, axis.y, axis.z);
    return m;
}

TEST(BoxOverlap, SeparatingAxesAndTolerance) {
    const vector3d one(1, 1, 1), beam(4, 0.2, 0.2);
    matrix44d collapse, shrink;
    make_scaling_matrix(collapse, 0, 0, 0);
    make_scaling_matrix(shrink, 1e-3, 1e-3, 1e-3);
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
        // Crossing beams separated only by an edge x edge axis, also with short axes.
        {beam, at(-2, 0, 0, 30), beam, cross_far, 0, false},
        {beam, at(-2, 0, 0, 30), beam, cross_near, 0, true},
        {beam * 1e3, at(-2, 0, 0, 30) * shrink, beam * 1e3, cross_far * shrink, 0, false},
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
