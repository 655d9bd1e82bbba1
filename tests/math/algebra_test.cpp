#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

matrix44d diagonal(double a, double b, double c, double d) {
    matrix44d m;
    m(0, 0) = a;
    m(1, 1) = b;
    m(2, 2) = c;
    m(3, 3) = d;
    return m;
}

// The determinant by the Leibniz formula; exact for small integer matrices.
double leibniz_determinant(const matrix44d& m) {
    int p[4] = {0, 1, 2, 3};
    double sum = 0;
    do {
        int inversions = 0;
        for (int i = 0; i < 4; ++i)
            for (int j = i + 1; j < 4; ++j) inversions += p[i] > p[j];
        const double term = m(0, p[0]) * m(1, p[1]) * m(2, p[2]) * m(3, p[3]);
        sum += inversions % 2 ? -term : term;
    } while (std::next_permutation(p, p + 4));
    return sum;
}

TEST(Determinant, MatchesLeibnizOnIntegerMatrices) {
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> value(-9, 9);
    for (int trial = 0; trial < 500; ++trial) {
        matrix44d m;
        for (int i = 0; i < 16; ++i) m.data()[i] = value(rng);
        EXPECT_EQ(determinant(m), leibniz_determinant(m));
    }
}

TEST(Determinant, FollowsTheColumnPairExpansionOrder) {
    // Values chosen so that the six terms cancel catastrophically: only the stated summation
    // order reproduces this exact result.
    matrix44d m;
    const double v[16] = {1e8, 3, 0.1, 7, 2, 1e-8, 5, 0.3, 0.7, 11, 1e8, 13, 17, 0.9, 19, 1e-8};
    for (int i = 0; i < 16; ++i) m.data()[i] = v[i];
    auto A = [&m](int i, int j) { return m(i, 0) * m(j, 1) - m(i, 1) * m(j, 0); };
    auto B = [&m](int i, int j) { return m(i, 2) * m(j, 3) - m(i, 3) * m(j, 2); };
    const double expected = A(0, 1) * B(2, 3) - A(0, 2) * B(1, 3) + A(0, 3) * B(1, 2) +
                            A(1, 2) * B(0, 3) - A(1, 3) * B(0, 2) + A(2, 3) * B(0, 1);
    EXPECT_EQ(determinant(m), expected);
}

TEST(Inverse, OfADiagonalMatrix) {
    EXPECT_EQ(inverse(diagonal(2, 4, 8, 1)), diagonal(0.5, 0.25, 0.125, 1));
}

TEST(Inverse, OfARigidTransformIsExact) {
    matrix44d m;
    make_rotation_matrix(m, 0, 0, 0, 1);
    append_translation(m, 3, -2, 5);
    matrix44d expected;
    make_translation_matrix(expected, -3, 2, -5);
    EXPECT_EQ(inverse(m), expected);

    matrix44d quarter;  // a quarter turn about z written out exactly
    quarter(0, 1) = -1;
    quarter(1, 0) = 1;
    quarter(2, 2) = 1;
    quarter(3, 3) = 1;
    EXPECT_EQ(inverse(quarter), transpose(quarter));
}

TEST(Inverse, TimesTheMatrixIsTheIdentity) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> value(-10, 10);
    for (int trial = 0; trial < 200; ++trial) {
        matrix44d m;
        for (int i = 0; i < 16; ++i) m.data()[i] = value(rng);
        if (std::fabs(determinant(m)) < 1.0) continue;
        const matrix44d p = m * inverse(m);
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c) EXPECT_NEAR(p(r, c), r == c ? 1.0 : 0.0, 1e-9);
    }
}

TEST(Inverse, SingularMatrixThrowsEMatrix) {
    matrix44d m = diagonal(1, 2, 3, 4);
    for (int c = 0; c < 4; ++c) m(2, c) = 0.0;  // a zero row
    try {
        static_cast<void>(inverse(m));
        FAIL() << "expected EMatrix";
    } catch (const EMatrix& e) {
        EXPECT_STREQ(e.what(), "Determinant is 0, cannot create inverse");
    }
    EXPECT_THROW(static_cast<void>(inverse(matrix44d())), std::runtime_error);
}

TEST(Inverse, NearlySingularIsInvertedAndNaNDoesNotThrow) {
    const matrix44d tiny = diagonal(1e-50, 1e-50, 1e-50, 1e-50);
    EXPECT_NE(determinant(tiny), 0.0);
    EXPECT_NO_THROW(static_cast<void>(inverse(tiny)));

    matrix44d with_nan = diagonal(1, 1, 1, 1);
    with_nan(1, 2) = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(determinant(with_nan)));
    const matrix44d inv = inverse(with_nan);
    EXPECT_TRUE(std::isnan(inv(0, 0)));
}

TEST(Transpose, SwapsRowsAndColumns) {
    matrix44d m;
    for (int i = 0; i < 16; ++i) m.data()[i] = i;
    const matrix44d t = transpose(m);
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_EQ(t(r, c), m(c, r));
    EXPECT_EQ(transpose(t), m);
}

}  // namespace
