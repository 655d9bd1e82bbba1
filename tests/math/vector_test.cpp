#include <gtest/gtest.h>

#include <facet/geometry.h>

#include <cmath>
#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Vector3, ArithmeticFollowsTheWrittenFormulas) {
    const vector3d a(1, 2, 3), b(4, -5, 6);
    EXPECT_EQ(a - b, vector3d(-3, 7, -3));
    EXPECT_EQ(a + b, vector3d(5, -3, 9));
    EXPECT_EQ(dot(a, b), 1 * 4 + 2 * -5 + 3 * 6);
    EXPECT_EQ(cross(a, b), vector3d(2 * 6 - 3 * -5, 3 * 4 - 1 * 6, 1 * -5 - 2 * 4));
    EXPECT_EQ(cross(vector3d(1, 0, 0), vector3d(0, 1, 0)), vector3d(0, 0, 1));
    EXPECT_DOUBLE_EQ(vector3d(2, 3, 6).length(), 7.0);
    EXPECT_EQ(vector3d(), vector3d(0, 0, 0));
}

TEST(Vector3, DotIsSummedInComponentOrder) {
    // (1e16 + 1) - 1e16 loses the 1 when x and y are summed first; z is added last.
    const vector3d a(1e16, 1, -1e16), ones(1, 1, 1);
    EXPECT_EQ(dot(a, ones), (1e16 + 1.0) + -1e16);
    EXPECT_EQ(dot(a, ones), 0.0);
}

TEST(Vector3, NormalizeZeroesShortVectorsSilently) {
    vector3d tiny(0, 0, 1e-13);
    EXPECT_EQ(tiny.normalize(), 0.0);
    EXPECT_EQ(tiny, vector3d(0, 0, 0));

    vector3d small(0, 0, 2e-12);
    EXPECT_EQ(small.normalize(), 2e-12);
    EXPECT_EQ(small, vector3d(0, 0, 1));

    vector3d at_threshold(1e-12, 0, 0);
    EXPECT_EQ(at_threshold.normalize(), 0.0);
    EXPECT_EQ(at_threshold, vector3d(0, 0, 0));

    vector3d with_nan(nan, 1, 0);
    EXPECT_EQ(with_nan.normalize(), 0.0);
    EXPECT_EQ(with_nan, vector3d(0, 0, 0));

    vector3d v(3, 0, 4);
    EXPECT_EQ(v.normalize(), 5.0);
    EXPECT_EQ(v, vector3d(3.0 / 5.0, 0, 4.0 / 5.0));
}

TEST(Vector3, EqualityIsExact) {
    EXPECT_NE(vector3d(1, 2, 3), vector3d(1, 2, 3 + 1e-15 * 3));
    EXPECT_NE(vector3d(0.1, 0, 0), vector3d(0.1 + 1e-15, 0, 0));
    EXPECT_NE(vector3d(nan, 0, 0), vector3d(nan, 0, 0));
    EXPECT_EQ(vector3d(0.0, 0, 0), vector3d(-0.0, 0, 0));
}

TEST(Vector2, BasicOperations) {
    const vector2d a(1, 2), b(3, 5);
    EXPECT_EQ(b - a, vector2d(2, 3));
    EXPECT_EQ(a + b, vector2d(4, 7));
    EXPECT_EQ(dot(a, b), 13.0);
    EXPECT_EQ(cross(a, b), 1 * 5 - 2 * 3);
    EXPECT_EQ(vector2d(3, 4).length(), 5.0);
}

using point = geometry::vector<double, 2>;

TEST(GeometryVector, IndexingAndLength) {
    point p(3, 4);
    EXPECT_EQ(p[0], 3.0);
    EXPECT_EQ(p[1], 4.0);
    p[1] = -4;
    EXPECT_EQ(p.length(), 5.0);
    EXPECT_EQ(p - point(1, 1), point(2, -5));
    EXPECT_EQ(dot(p, point(1, 1)), -1.0);
    EXPECT_EQ(point(), point(0, 0));
}

TEST(GeometryVector, NormalizeThrowsBelowOneBillionth) {
    point tiny(1e-10, 0);
    try {
        tiny.normalize();
        FAIL() << "expected bad_normalization";
    } catch (const geometry::bad_normalization& e) {
        EXPECT_STREQ(e.what(), "Normalization of (near-) zero length vector");
    }
    EXPECT_EQ(tiny, point(1e-10, 0));  // unchanged

    point at_threshold(1e-9, 0);
    at_threshold.normalize();
    EXPECT_EQ(at_threshold, point(1, 0));

    point zero;
    EXPECT_THROW(zero.normalize(), geometry::bad_normalization);
    EXPECT_THROW(zero.normalize(), std::exception);

    point with_nan(nan, 1);
    EXPECT_NO_THROW(with_nan.normalize());
    EXPECT_TRUE(std::isnan(with_nan[0]));
    EXPECT_TRUE(std::isnan(with_nan[1]));
}

using GeometryVectorDeathTest = ::testing::Test;

TEST_F(GeometryVectorDeathTest, IndexTwoOrMoreFailsTheCheck) {
    point p(1, 2);
    const point& cp = p;
    EXPECT_DEATH(p[2] = 0, "i < N");
    EXPECT_DEATH(static_cast<void>(cp[2]), "i < N");
    EXPECT_DEATH(static_cast<void>(cp[1000]), "i < N");
}

TEST(Matrix, DefaultIsZeroAndStorageIsColumnMajor) {
    matrix44d m;
    for (int i = 0; i < 16; ++i) EXPECT_EQ(m.data()[i], 0.0);
    m(1, 3) = 5;  // row 1, column 3
    EXPECT_EQ(m.data()[3 * 4 + 1], 5.0);
    m.fill(2.5);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(m.data()[i], 2.5);
    m.set_identity();
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_EQ(m(r, c), r == c ? 1.0 : 0.0);
    EXPECT_EQ(m, matrix44d::identity());
}

TEST(Matrix, ProductIsTheOrdinaryOneAndMayAliasItsOperands) {
    matrix44d a, b;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            a(r, c) = r * 4 + c + 1;
            b(r, c) = (r == c) ? 2.0 : (r + 1 == c ? 1.0 : 0.0);
        }
    const matrix44d p = a * b;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            double expected = 0.0;
            for (int k = 0; k < 4; ++k) expected += a(r, k) * b(k, c);
            EXPECT_EQ(p(r, c), expected);
        }
    matrix44d alias = a;
    multiply(alias, b, alias);
    EXPECT_EQ(alias, p);
    EXPECT_EQ(a * matrix44d::identity(), a);
}

TEST(Matrix, ProductSumStartsFromPositiveZero) {
    // A sum of negative zeros accumulated from +0.0 is +0.0.
    matrix44d a, b;
    a(0, 0) = -0.0;
    b(0, 0) = 1.0;
    const matrix44d p = a * b;
    EXPECT_FALSE(std::signbit(p(0, 0)));
}

TEST(Angles, DegreesConvertMultiplyingByPiThenByOneOver180) {
    EXPECT_EQ(geometry::deg_to_rad(90.0), 90.0 * 3.141592653589793 * (1.0 / 180.0));
    EXPECT_EQ(geometry::rad_to_deg(geometry::pi),
              3.141592653589793 * 180.0 * (1.0 / 3.141592653589793));
}

}  // namespace
