// Determinant, inverse and transpose of 4x4 matrices.
#include "facet/math3d.h"

namespace {

// The 3x3 determinant of m without row `skip_row` and column `skip_column`, expanded along its
// first row: a·(e·k − f·h) − b·(d·k − f·g) + c·(d·h − e·g), rows and columns in ascending order.
double minor3(const matrix44d& m, int skip_row, int skip_column) {
    int r[3];
    int c[3];
    for (int i = 0, n = 0; i < 4; ++i)
        if (i != skip_row) r[n++] = i;
    for (int i = 0, n = 0; i < 4; ++i)
        if (i != skip_column) c[n++] = i;
    const double a = m(r[0], c[0]), b = m(r[0], c[1]), cc = m(r[0], c[2]);
    const double d = m(r[1], c[0]), e = m(r[1], c[1]), f = m(r[1], c[2]);
    const double g = m(r[2], c[0]), h = m(r[2], c[1]), k = m(r[2], c[2]);
    return a * (e * k - f * h) - b * (d * k - f * g) + cc * (d * h - e * g);
}

}  // namespace

double determinant(const matrix44d& m) {
    // 2x2 minors of columns 0 and 1 (A) and of columns 2 and 3 (B), rows i and j.
    auto A = [&m](int i, int j) { return m(i, 0) * m(j, 1) - m(i, 1) * m(j, 0); };
    auto B = [&m](int i, int j) { return m(i, 2) * m(j, 3) - m(i, 3) * m(j, 2); };
    return A(0, 1) * B(2, 3) - A(0, 2) * B(1, 3) + A(0, 3) * B(1, 2) + A(1, 2) * B(0, 3) -
           A(1, 3) * B(0, 2) + A(2, 3) * B(0, 1);
}

matrix44d inverse(const matrix44d& m) {
    const double det = determinant(m);
    if (det == 0.0) throw EMatrix("Determinant is 0, cannot create inverse");
    matrix44d result;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            const double cofactor = ((i + j) % 2 == 0 ? 1.0 : -1.0) * minor3(m, j, i);
            result(i, j) = cofactor / det;
        }
    return result;
}

matrix44d transpose(const matrix44d& m) {
    matrix44d result;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) result(i, j) = m(j, i);
    return result;
}
