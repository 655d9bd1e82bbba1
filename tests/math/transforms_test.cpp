#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <cmath>

namespace {

void expect_near(const vector3d& a, const vector3d& b, double eps = 1e-12) {
    EXPECT_NEAR(a.x, b.x, eps);
    EXPECT_NEAR(a.y, b.y, eps);
    EXPECT_NEAR(a.z, b.z, eps);
}

matrix44d sample_matrix() {
    matrix44d m;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) m(r, c) = 0.25 * (r * 4 + c) - 1.3 + (r == c ? 3.0 : 0.0);
    return m;
}

TEST(ViewMatrix, EyeOnTheZAxisLookingDown) {
    matrix44d m;
    m.fill(42.0);
    calc_view_matrix({0, 0, 5}, {0, 0, -1}, {0, 1, 0}, m);
    matrix44d expected = matrix44d::identity();
    expected(2, 3) = -5;
    EXPECT_EQ(m, expected);
}

TEST(ViewMatrix, DirectionIsNormalisedAndParallelUpGivesZeroRows) {
    matrix44d m;
    calc_view_matrix({1, 2, 3}, {0, 0, -10}, {0, 1, 0}, m);
    EXPECT_EQ(m(2, 2), 1.0);
    EXPECT_EQ(m(2, 3), -3.0);  // d·eye with d = (0, 0, -1)

    calc_view_matrix({1, 2, 3}, {0, 2, 0}, {0, 1, 0}, m);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(m(0, c), 0.0);
        EXPECT_EQ(m(1, c), 0.0);
    }
    EXPECT_EQ(m(2, 1), -1.0);
    EXPECT_EQ(m(2, 3), 2.0);
    EXPECT_EQ(m(3, 3), 1.0);
}

TEST(ViewMatrix, MapsTheViewDirectionToMinusZ) {
    matrix44d m;
    const vector3d eye(3, 4, 5), dir(-1, -1, -1);
    calc_view_matrix(eye, dir, {0, 1, 0}, m);
    expect_near(transform_vector(m, eye), {0, 0, 0});
    expect_near(transform_vector(m, eye + dir), {0, 0, -std::sqrt(3.0)});
    const vector3d up = transform_vector_3x3(m, {0, 1, 0});
    EXPECT_NEAR(up.x, 0.0, 1e-15);
    EXPECT_GT(up.y, 0.0);
}

TEST(Projection, PerspectiveFromFieldOfView) {
    matrix44d m;
    m.fill(7.0);
    calc_perspective_matrix(90, 1, 1, 100, m);
    matrix44d expected;
    const double h = std::tan(90.0 * 0.5 * 3.141592653589793 * (1.0 / 180.0)) * 1.0;
    expected(0, 0) = 1.0 / h;
    expected(1, 1) = 1.0 / (h / 1.0);
    expected(2, 2) = -101.0 / 99.0;
    expected(2, 3) = 100.0 * 1.0 * -2.0 / 99.0;
    expected(3, 2) = -1.0;
    EXPECT_EQ(m, expected);
    EXPECT_NEAR(m(0, 0), 1.0, 1e-15);
    EXPECT_DOUBLE_EQ(m(2, 3), -200.0 / 99.0);
    EXPECT_EQ(m(3, 3), 0.0);
}

TEST(Projection, FieldOfViewIsHorizontal) {
    matrix44d m;
    calc_perspective_matrix(60, 2.0, 1, 10, m);
    EXPECT_DOUBLE_EQ(m(1, 1), 2.0 * m(0, 0));
}

TEST(Projection, PerspectiveFromFrustum) {
    matrix44d m;
    calc_perspective_matrix(-1, 3, -2, 4, 2, 10, m);
    matrix44d expected;
    expected(0, 0) = 4.0 / 4.0;
    expected(1, 1) = 4.0 / 6.0;
    expected(0, 2) = 2.0 / 4.0;
    expected(1, 2) = 2.0 / 6.0;
    expected(2, 2) = -12.0 / 8.0;
    expected(2, 3) = -40.0 / 8.0;
    expected(3, 2) = -1.0;
    EXPECT_EQ(m, expected);
}

TEST(Projection, Orthographic) {
    matrix44d m;
    calc_ortho_matrix(4, 2, 1, 11, m);
    matrix44d expected;
    expected(0, 0) = 0.5;
    expected(1, 1) = 1.0;
    expected(2, 2) = -0.2;
    expected(2, 3) = -12.0 / 10.0;
    expected(3, 3) = 1.0;
    EXPECT_EQ(m, expected);

    calc_ortho_matrix(-1, 3, 0, 2, 1, 11, m);
    expected(0, 0) = 0.5;
    expected(1, 1) = 1.0;
    expected(0, 3) = -0.5;
    expected(1, 3) = -1.0;
    EXPECT_EQ(m, expected);
}

TEST(Projection, DegenerateVolumesGiveInfinitiesNotErrors) {
    matrix44d m;
    calc_ortho_matrix(0, 1, 1, 1, m);
    EXPECT_TRUE(std::isinf(m(0, 0)));
    EXPECT_TRUE(std::isinf(m(2, 2)));
    calc_perspective_matrix(0, 1, 1, 10, m);  // a zero field of view
    EXPECT_TRUE(std::isinf(m(0, 0)));
    calc_perspective_matrix(60, 1, 5, 5, m);  // equal near and far planes
    EXPECT_TRUE(std::isinf(m(2, 2)));
}

TEST(Viewport, FlipsYSoTheTopLeftIsTheOrigin) {
    matrix44d m;
    calc_viewport_matrix(0, 0, 640, 480, m);
    EXPECT_EQ(transform_vector(m, {-1, -1, 0.25}), vector3d(0, 480, 0.25));
    EXPECT_EQ(transform_vector(m, {1, 1, -0.5}), vector3d(640, 0, -0.5));
    calc_viewport_matrix(10, 20, 100, 50, m);
    EXPECT_EQ(transform_vector(m, {-1, 1, 0}), vector3d(10, 20, 0));
    EXPECT_EQ(m(2, 2), 1.0);
    EXPECT_EQ(m(2, 3), 0.0);
}

TEST(AffineBuilders, TranslationAndScaling) {
    matrix44d t;
    make_translation_matrix(t, 1, 2, 3);
    EXPECT_EQ(t.data()[12], 1.0);  // element (0,3) is the 13th stored double
    EXPECT_EQ(transform_vector(t, {1, 1, 1}), vector3d(2, 3, 4));
    EXPECT_EQ(transform_vector_3x3(t, {1, 1, 1}), vector3d(1, 1, 1));

    matrix44d s;
    s.fill(9);
    make_scaling_matrix(s, 2, 3, 4);
    matrix44d expected;
    expected(0, 0) = 2;
    expected(1, 1) = 3;
    expected(2, 2) = 4;
    expected(3, 3) = 1;
    EXPECT_EQ(s, expected);
}

TEST(Rotation, QuarterTurnsAreRightHanded) {
    matrix44d m;
    make_rotation_matrix(m, 90, 0, 0, 1);
    expect_near(transform_vector(m, {1, 0, 0}), {0, 1, 0}, 1e-15);
    make_rotation_matrix(m, 90, 1, 0, 0);
    expect_near(transform_vector(m, {0, 1, 0}), {0, 0, 1}, 1e-15);
    make_rotation_matrix(m, 90, 0, 1, 0);
    expect_near(transform_vector(m, {0, 0, 1}), {1, 0, 0}, 1e-15);
}

TEST(Rotation, AxisLengthDoesNotMatter) {
    matrix44d unit, long_axis;
    make_rotation_matrix(unit, 90, 0, 0, 1);
    make_rotation_matrix(long_axis, 90, 0, 0, 5);
    EXPECT_EQ(unit, long_axis);
}

TEST(Rotation, MatchesTheQuaternionFormulaBitForBit) {
    matrix44d m;
    make_rotation_matrix(m, 37.5, 1, -2, 0.5);
    const double a = 37.5 * 0.5 * 3.141592653589793 * (1.0 / 180.0);
    const double k = std::sin(a) / std::sqrt(1.0 * 1.0 + -2.0 * -2.0 + 0.5 * 0.5);
    const double w = std::cos(a), x = k * 1, y = k * -2, z = k * 0.5;
    EXPECT_EQ(m(0, 0), 1 - 2 * (y * y + z * z));
    EXPECT_EQ(m(0, 1), 2 * (x * y - w * z));
    EXPECT_EQ(m(0, 2), 2 * (x * z + w * y));
    EXPECT_EQ(m(1, 0), 2 * (x * y + w * z));
    EXPECT_EQ(m(1, 2), 2 * (y * z - w * x));
    EXPECT_EQ(m(2, 1), 2 * (y * z + w * x));
    EXPECT_EQ(m(2, 2), 1 - 2 * (x * x + y * y));
    EXPECT_EQ(m(3, 3), 1.0);
}

TEST(Rotation, ZeroAxisIsNotGuarded) {
    matrix44d m;
    make_rotation_matrix(m, 30, 0, 0, 0);
    EXPECT_TRUE(std::isnan(m(0, 1)));
}

TEST(Appenders, TranslationPostMultiplies) {
    matrix44d a = matrix44d::identity(), t;
    append_translation(a, 1, 2, 3);
    make_translation_matrix(t, 1, 2, 3);
    EXPECT_EQ(a, t);

    matrix44d s;
    make_scaling_matrix(s, 2, 2, 2);
    append_translation(s, 1, 0, 0);
    EXPECT_EQ(s(0, 3), 2.0);
    EXPECT_EQ(s(1, 3), 0.0);
    EXPECT_EQ(s(2, 3), 0.0);
    EXPECT_EQ(s(3, 3), 1.0);

    const matrix44d g = sample_matrix();
    matrix44d appended = g;
    append_translation(appended, 0.5, -1.5, 2.0);
    make_translation_matrix(t, 0.5, -1.5, 2.0);
    const matrix44d product = g * t;
    for (int r = 0; r < 4; ++r) EXPECT_DOUBLE_EQ(appended(r, 3), product(r, 3));
}

TEST(Appenders, RotationIsTheProductWithARotationMatrix) {
    const matrix44d g = sample_matrix();
    matrix44d appended = g, r;
    append_rotation(appended, 33, 1, 2, 3);
    make_rotation_matrix(r, 33, 1, 2, 3);
    EXPECT_EQ(appended, g * r);
}

TEST(Appenders, ScalingLeavesRowThreeUnscaled) {
    matrix44d g = sample_matrix();
    const matrix44d before = g;
    append_scaling(g, 2, 3, 4);
    const double factor[3] = {2, 3, 4};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(g(r, c), before(r, c) * factor[c]);
    for (int c = 0; c < 4; ++c) EXPECT_EQ(g(3, c), before(3, c));
    for (int r = 0; r < 4; ++r) EXPECT_EQ(g(r, 3), before(r, 3));
}

TEST(TransformVector, DividesByWAlways) {
    matrix44d m = matrix44d::identity();
    m(3, 3) = 2.0;
    EXPECT_EQ(transform_vector(m, {2, 4, 6}), vector3d(1, 2, 3));
    m(3, 3) = 0.0;
    const vector3d at_infinity = transform_vector(m, {1, -1, 0});
    EXPECT_TRUE(std::isinf(at_infinity.x));
    EXPECT_TRUE(std::isinf(at_infinity.y));
    EXPECT_TRUE(std::isnan(at_infinity.z));  // 0 / 0
}

TEST(TransformVector, OutputMayBeTheInput) {
    matrix44d m;
    make_rotation_matrix(m, 90, 0, 0, 1);
    append_translation(m, 1, 0, 0);
    vector3d p(1, 2, 3);
    const vector3d expected = transform_vector(m, p);
    transform_vector(m, p, p);
    EXPECT_EQ(p, expected);
    vector3d d(1, 2, 3);
    const vector3d expected_d = transform_vector_3x3(m, d);
    transform_vector_3x3(m, d, d);
    EXPECT_EQ(d, expected_d);
}

}  // namespace
