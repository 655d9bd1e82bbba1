// 4x4 matrices: storage, product, determinant, inverse and the builders, pinned bit for bit.
#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double pi = 3.141592653589793;

// The matrix with the given entries in row order (rows beyond those given stay zero).
matrix44d rows(std::initializer_list<double> v) {
    matrix44d m;
    int i = 0;
    for (double x : v) m(i / 4, i % 4) = x, ++i;
    return m;
}

matrix44d random_matrix(std::mt19937& rng, bool integer) {
    std::uniform_real_distribution<double> value(-10, 10);
    matrix44d m;
    for (int i = 0; i < 16; ++i) m.data()[i] = integer ? std::round(value(rng)) : value(rng);
    return m;
}

TEST(Matrix, ColumnMajorStorageProductAndTranspose) {
    matrix44d m;
    m(1, 3) = 5;
    EXPECT_EQ(m.data()[3 * 4 + 1], 5.0);
    std::mt19937 rng(3);
    const matrix44d a = random_matrix(rng, false), b = random_matrix(rng, false);
    const matrix44d p = a * b;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            double expected = 0.0;  // summed from +0.0 in order of k
            for (int k = 0; k < 4; ++k) expected += a(r, k) * b(k, c);
            EXPECT_EQ(p(r, c), expected);
            EXPECT_EQ(transpose(a)(r, c), a(c, r));
        }
    matrix44d alias = a;
    multiply(alias, b, alias);  // may alias an operand
    EXPECT_EQ(alias, p);
    EXPECT_EQ(a * matrix44d::identity(), a);
    EXPECT_FALSE(std::signbit((rows({-0.0}) * rows({1.0}))(0, 0)));  // −0 + +0 is +0
}

TEST(Determinant, LeibnizOnIntegersAndTheColumnPairOrder) {
    std::mt19937 rng(7);
    for (int trial = 0; trial < 300; ++trial) {
        const matrix44d m = random_matrix(rng, true);
        int p[4] = {0, 1, 2, 3};
        double leibniz = 0;
        do {
            int inversions = 0;
            for (int i = 0; i < 4; ++i)
                for (int j = i + 1; j < 4; ++j) inversions += p[i] > p[j];
            const double term = m(0, p[0]) * m(1, p[1]) * m(2, p[2]) * m(3, p[3]);
            leibniz += inversions % 2 ? -term : term;
        } while (std::next_permutation(p, p + 4));
        EXPECT_EQ(determinant(m), leibniz);
    }
    // The six terms cancel catastrophically: only this summation order gives this result.
    matrix44d m;
    const double v[16] = {1e8, 3, 0.1, 7, 2, 1e-8, 5, 0.3, 0.7, 11, 1e8, 13, 17, 0.9, 19, 1e-8};
    std::copy(v, v + 16, m.data());
    auto A = [&m](int i, int j) { return m(i, 0) * m(j, 1) - m(i, 1) * m(j, 0); };
    auto B = [&m](int i, int j) { return m(i, 2) * m(j, 3) - m(i, 3) * m(j, 2); };
    EXPECT_EQ(determinant(m), A(0, 1) * B(2, 3) - A(0, 2) * B(1, 3) + A(0, 3) * B(1, 2) +
                                  A(1, 2) * B(0, 3) - A(1, 3) * B(0, 2) + A(2, 3) * B(0, 1));
}

TEST(Inverse, ExactCasesProductsAndSingularity) {
    const matrix44d quarter = rows({0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    EXPECT_EQ(inverse(quarter), transpose(quarter));
    std::mt19937 rng(11);
    for (int trial = 0; trial < 100; ++trial) {
        const matrix44d r = random_matrix(rng, false);
        if (std::fabs(determinant(r)) < 1.0) continue;
        const matrix44d p = r * inverse(r);
        for (int i = 0; i < 16; ++i) EXPECT_NEAR(p.data()[i], i % 5 == 0 ? 1.0 : 0.0, 1e-9);
    }
    try {
        static_cast<void>(inverse(rows({1, 0, 0, 0, 0, 2, 0, 0})));  // zero rows
        FAIL() << "expected EMatrix";
    } catch (const EMatrix& e) {
        EXPECT_STREQ(e.what(), "Determinant is 0, cannot create inverse");
    }
    const matrix44d tiny = rows({1e-50, 0, 0, 0, 0, 1e-50, 0, 0, 0, 0, 1e-50, 0, 0, 0, 0, 1e-50});
    EXPECT_EQ(inverse(tiny)(0, 0), 1e50);  // nearly singular is still inverted
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(
        std::isnan(inverse(rows({1, 0, 0, 0, 0, 1, nan, 0, 0, 0, 1, 0, 0, 0, 0, 1}))(0, 0)));
}

TEST(Builders, PinnedMatrices) {
    matrix44d m, s;
    m.fill(42.0);
    calc_view_matrix({0, 0, 5}, {0, 0, -1}, {0, 1, 0}, m);
    EXPECT_EQ(m, rows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, -5, 0, 0, 0, 1}));
    calc_view_matrix({1, 2, 3}, {0, 0, -10}, {0, 1, 0}, m);  // the direction is normalised
    EXPECT_EQ(m, rows({1, 0, 0, -1, 0, 1, 0, -2, 0, 0, 1, -3, 0, 0, 0, 1}));
    calc_view_matrix({1, 2, 3}, {0, 2, 0}, {0, 1, 0}, m);  // up parallel: zero rows
    EXPECT_EQ(m, rows({0, 0, 0, -0.0, 0, 0, 0, -0.0, 0, -1, 0, 2, 0, 0, 0, 1}));
    m.fill(7.0);
    calc_perspective_matrix(90, 2, 1, 100, m);
    const double h = std::tan(90.0 * 0.5 * pi * (1.0 / 180.0)) * 1.0;
    EXPECT_EQ(m, rows({1 / h, 0, 0, 0, 0, 1 / (h / 2), 0, 0, 0, 0, -101.0 / 99, 100 * 1.0 * -2 / 99,
                       0, 0, -1, 0}));
    calc_perspective_matrix(-1, 3, -2, 4, 2, 10, m);
    EXPECT_EQ(m, rows({1, 0, 0.5, 0, 0, 4.0 / 6, 2.0 / 6, 0, 0, 0, -1.5, -5, 0, 0, -1, 0}));
    calc_ortho_matrix(4, 2, 1, 11, m);
    EXPECT_EQ(m, rows({0.5, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.2, -1.2, 0, 0, 0, 1}));
    calc_ortho_matrix(-1, 3, -2, 4, 1, 11, m);
    EXPECT_EQ(m, rows({0.5, 0, 0, -0.5, 0, 2.0 / 6, 0, -2.0 / 6, 0, 0, -0.2, -1.2, 0, 0, 0, 1}));
    calc_viewport_matrix(10, 20, 100, 50, m);  // y flipped: the top left is the origin
    EXPECT_EQ(m, rows({50, 0, 0, 60, 0, -25, 0, 45, 0, 0, 1, 0, 0, 0, 0, 1}));
    make_translation_matrix(m, 1, 2, 3);
    EXPECT_EQ(m, rows({1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1}));
    s.fill(9);
    make_scaling_matrix(s, 2, 3, 4);
    EXPECT_EQ(s, rows({2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
}

TEST(Appenders, PostMultiply) {
    std::mt19937 rng(5);
    const matrix44d g = random_matrix(rng, false);
    matrix44d appended = g, r, t;
    append_rotation(appended, 33, 1, 2, 3);
    make_rotation_matrix(r, 33, 1, 2, 3);
    EXPECT_EQ(appended, g * r);
    appended = g;
    append_translation(appended, 0.5, -1.5, 2.0);
    make_translation_matrix(t, 0.5, -1.5, 2.0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(appended(i, 3), g(i, 0) * 0.5 + g(i, 1) * -1.5 + g(i, 2) * 2.0 + g(i, 3));
        for (int c = 0; c < 3; ++c) EXPECT_EQ(appended(i, c), g(i, c));
    }
    appended = g;
    append_scaling(appended, 2, 3, 4);  // row 3 and column 3 unscaled
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(appended.data()[i], g.data()[i] * (i % 4 == 3 || i >= 12 ? 1 : 2 + i / 4));
}

TEST(TransformVector, DividesByWAndMayOverwriteItsInput) {
    matrix44d m = matrix44d::identity();
    m(3, 3) = 2.0;
    EXPECT_EQ(transform_vector(m, {2, 4, 6}), vector3d(1, 2, 3));
    std::mt19937 rng(9);
    m = random_matrix(rng, false);
    const vector3d p(1, 2, 3);
    vector3d q = p;
    transform_vector(m, q, q);
    const double w = m(3, 0) * 1 + m(3, 1) * 2 + m(3, 2) * 3 + m(3, 3);
    EXPECT_EQ(q, vector3d((m(0, 0) * 1 + m(0, 1) * 2 + m(0, 2) * 3 + m(0, 3)) / w,
                          (m(1, 0) * 1 + m(1, 1) * 2 + m(1, 2) * 3 + m(1, 3)) / w,
                          (m(2, 0) * 1 + m(2, 1) * 2 + m(2, 2) * 3 + m(2, 3)) / w));
    q = p;
    transform_vector_3x3(m, q, q);
    EXPECT_EQ(q, vector3d(m(0, 0) * 1 + m(0, 1) * 2 + m(0, 2) * 3,
                          m(1, 0) * 1 + m(1, 1) * 2 + m(1, 2) * 3,
                          m(2, 0) * 1 + m(2, 1) * 2 + m(2, 2) * 3));
}

}  // namespace
