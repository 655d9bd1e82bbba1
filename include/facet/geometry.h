// Vector and matrix value types.
//
//   vector3<T> / vector3d   3D points, directions, normals (fields x, y, z)
//   vector2<T> / vector2d   2D points of texture space and of polygon outlines (fields x, y)
//   geometry::vector<T, N>  the indexed point type of plane geometry (checked operator[])
//   matrix<T, N, M>         column-major matrices; matrix<double, 4, 4> carries every transform
//
// All are header-only value types without heap memory. Sums are formed in the order written
// (x, then y, then z), so results are reproducible bit for bit; the build never contracts
// multiply-adds.
//
// The two normalisation rules differ on purpose: a 3D vector shorter than 1e-12 silently
// becomes the zero vector, a 2D geometry::vector shorter than 1e-9 throws
// geometry::bad_normalization.
#pragma once

#include <cmath>
#include <exception>
#include <type_traits>

#include "facet/check.h"
#include "facet/export.h"

// ---- vector3 ---------------------------------------------------------------------------------

/// A three-component vector. Default construction gives (0, 0, 0).
template <class T>
struct vector3 {
    T x{};
    T y{};
    T z{};

    constexpr vector3() = default;
    constexpr vector3(T x_, T y_, T z_) : x(x_), y(y_), z(z_) {}

    /// sqrt(x·x + y·y + z·z).
    T length() const { return std::sqrt(x * x + y * y + z * z); }

    /// Scales the vector to unit length and returns the length it had. A vector of length at
    /// most 1e-12 (or a NaN length) becomes (0, 0, 0) and 0 is returned; this never throws.
    T normalize() {
        const T len = length();
        if (len > T(1e-12)) {
            x /= len;
            y /= len;
            z /= len;
            return len;
        }
        x = y = z = T(0);
        return T(0);
    }

    vector3& operator+=(const vector3& o) {
        x += o.x;
        y += o.y;
        z += o.z;
        return *this;
    }
    vector3& operator-=(const vector3& o) {
        x -= o.x;
        y -= o.y;
        z -= o.z;
        return *this;
    }
    vector3& operator*=(T s) {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    vector3& operator/=(T s) {
        x /= s;
        y /= s;
        z /= s;
        return *this;
    }
};

using vector3d = vector3<double>;

template <class T>
constexpr vector3<T> operator+(const vector3<T>& a, const vector3<T>& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
template <class T>
constexpr vector3<T> operator-(const vector3<T>& a, const vector3<T>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
template <class T>
constexpr vector3<T> operator-(const vector3<T>& a) {
    return {-a.x, -a.y, -a.z};
}
template <class T>
constexpr vector3<T> operator*(const vector3<T>& a, T s) {
    return {a.x * s, a.y * s, a.z * s};
}
template <class T>
constexpr vector3<T> operator*(T s, const vector3<T>& a) {
    return {s * a.x, s * a.y, s * a.z};
}
template <class T>
constexpr vector3<T> operator/(const vector3<T>& a, T s) {
    return {a.x / s, a.y / s, a.z / s};
}

/// Exact comparison of all three components; NaN never compares equal.
template <class T>
constexpr bool operator==(const vector3<T>& a, const vector3<T>& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
template <class T>
constexpr bool operator!=(const vector3<T>& a, const vector3<T>& b) {
    return !(a == b);
}

/// a.x·b.x + a.y·b.y + a.z·b.z, summed in that order.
template <class T>
constexpr T dot(const vector3<T>& a, const vector3<T>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// (a.y·b.z − a.z·b.y, a.z·b.x − a.x·b.z, a.x·b.y − a.y·b.x).
template <class T>
constexpr vector3<T> cross(const vector3<T>& a, const vector3<T>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// ---- vector2 ---------------------------------------------------------------------------------

/// A two-component vector of texture space and polygon outlines. Default: (0, 0).
template <class T>
struct vector2 {
    T x{};
    T y{};

    constexpr vector2() = default;
    constexpr vector2(T x_, T y_) : x(x_), y(y_) {}

    /// sqrt(x·x + y·y).
    T length() const { return std::sqrt(x * x + y * y); }
};

using vector2d = vector2<double>;

template <class T>
constexpr vector2<T> operator+(const vector2<T>& a, const vector2<T>& b) {
    return {a.x + b.x, a.y + b.y};
}
template <class T>
constexpr vector2<T> operator-(const vector2<T>& a, const vector2<T>& b) {
    return {a.x - b.x, a.y - b.y};
}
template <class T>
constexpr vector2<T> operator*(const vector2<T>& a, T s) {
    return {a.x * s, a.y * s};
}
template <class T>
constexpr vector2<T> operator/(const vector2<T>& a, T s) {
    return {a.x / s, a.y / s};
}
/// Exact comparison of both components.
template <class T>
constexpr bool operator==(const vector2<T>& a, const vector2<T>& b) {
    return a.x == b.x && a.y == b.y;
}
template <class T>
constexpr bool operator!=(const vector2<T>& a, const vector2<T>& b) {
    return !(a == b);
}
/// a.x·b.x + a.y·b.y.
template <class T>
constexpr T dot(const vector2<T>& a, const vector2<T>& b) {
    return a.x * b.x + a.y * b.y;
}
/// The z component of the 3D cross product: a.x·b.y − a.y·b.x.
template <class T>
constexpr T cross(const vector2<T>& a, const vector2<T>& b) {
    return a.x * b.y - a.y * b.x;
}

// ---- geometry::vector ------------------------------------------------------------------------

namespace geometry {

/// Thrown by geometry::vector::normalize for a vector shorter than 1e-9.
class FACET_API bad_normalization : public std::exception {
public:
    /// "Normalization of (near-) zero length vector".
    const char* what() const noexcept override {
        return "Normalization of (near-) zero length vector";
    }
};

inline constexpr double pi = 3.141592653589793;

/// Degrees to radians: multiplied by pi, then by 1/180.
inline constexpr double deg_to_rad(double degrees) { return degrees * pi * (1.0 / 180.0); }

/// Radians to degrees: multiplied by 180, then by 1/pi.
inline constexpr double rad_to_deg(double radians) { return radians * 180.0 * (1.0 / pi); }

/// N values of T in index order; the point and direction type of plane geometry.
/// Default construction gives the zero vector.
template <class T, unsigned N>
class vector {
public:
    constexpr vector() = default;

    /// The 2D point (x, y).
    template <unsigned K = N, class = std::enable_if_t<K == 2>>
    constexpr vector(T x, T y) : m_values{x, y} {}

    /// Checked access; an index of N or more fails "i < N".
    T operator[](unsigned i) const {
        FACET_CHECK(i < N);
        return m_values[i];
    }
    T& operator[](unsigned i) {
        FACET_CHECK(i < N);
        return m_values[i];
    }

    /// The square root of the sum of the squared components, accumulated from 0 in index order.
    T length() const {
        T sum = T(0);
        for (unsigned i = 0; i < N; ++i) sum += m_values[i] * m_values[i];
        return std::sqrt(sum);
    }

    /// Divides every component by the length. Throws bad_normalization (leaving the vector
    /// unchanged) when the length is below 1e-9; a length of exactly 1e-9 is normalised, and a
    /// NaN length passes through and yields NaN components.
    void normalize() {
        const T len = length();
        if (len < T(1e-9)) throw bad_normalization();
        for (unsigned i = 0; i < N; ++i) m_values[i] /= len;
    }

    vector& operator+=(const vector& o) {
        for (unsigned i = 0; i < N; ++i) m_values[i] += o.m_values[i];
        return *this;
    }
    vector& operator-=(const vector& o) {
        for (unsigned i = 0; i < N; ++i) m_values[i] -= o.m_values[i];
        return *this;
    }
    vector& operator*=(T s) {
        for (unsigned i = 0; i < N; ++i) m_values[i] *= s;
        return *this;
    }
    vector& operator/=(T s) {
        for (unsigned i = 0; i < N; ++i) m_values[i] /= s;
        return *this;
    }

    friend vector operator+(vector a, const vector& b) { return a += b; }
    friend vector operator-(vector a, const vector& b) { return a -= b; }
    friend vector operator-(vector a) {
        for (unsigned i = 0; i < N; ++i) a.m_values[i] = -a.m_values[i];
        return a;
    }
    friend vector operator*(vector a, T s) { return a *= s; }
    friend vector operator*(T s, vector a) {
        for (unsigned i = 0; i < N; ++i) a.m_values[i] = s * a.m_values[i];
        return a;
    }
    friend vector operator/(vector a, T s) { return a /= s; }

    /// Exact comparison of every component.
    friend bool operator==(const vector& a, const vector& b) {
        for (unsigned i = 0; i < N; ++i)
            if (!(a.m_values[i] == b.m_values[i])) return false;
        return true;
    }
    friend bool operator!=(const vector& a, const vector& b) { return !(a == b); }

    /// The sum of the component products, accumulated from 0 in index order.
    friend T dot(const vector& a, const vector& b) {
        T sum = T(0);
        for (unsigned i = 0; i < N; ++i) sum += a.m_values[i] * b.m_values[i];
        return sum;
    }

private:
    T m_values[N] = {};
};

}  // namespace geometry

// ---- matrix ----------------------------------------------------------------------------------

/// An N×M matrix stored column-major: element (row r, column c) lives at position c·N + r, the
/// layout a column-major graphics interface accepts directly. Default construction gives all
/// zeros (not the identity). Element access is unchecked.
template <class T, int N, int M>
class matrix {
public:
    static constexpr int rows = N;
    static constexpr int columns = M;

    constexpr matrix() = default;

    T& operator()(int row, int column) { return m_data[column * N + row]; }
    const T& operator()(int row, int column) const { return m_data[column * N + row]; }

    /// The N·M elements in storage (column-major) order.
    T* data() { return m_data; }
    const T* data() const { return m_data; }

    /// Sets every element to `value`.
    void fill(T value) {
        for (T& e : m_data) e = value;
    }

    /// 1 where row equals column, 0 elsewhere.
    void set_identity() {
        for (int c = 0; c < M; ++c)
            for (int r = 0; r < N; ++r) (*this)(r, c) = r == c ? T(1) : T(0);
    }

    /// The identity matrix.
    static matrix identity() {
        matrix m;
        m.set_identity();
        return m;
    }

    /// Exact comparison of all elements.
    friend bool operator==(const matrix& a, const matrix& b) {
        for (int i = 0; i < N * M; ++i)
            if (!(a.m_data[i] == b.m_data[i])) return false;
        return true;
    }
    friend bool operator!=(const matrix& a, const matrix& b) { return !(a == b); }

private:
    T m_data[N * M] = {};
};

using matrix44d = matrix<double, 4, 4>;

/// The ordinary product: out(i,j) = a(i,0)·b(0,j) + a(i,1)·b(1,j) + …, each sum accumulated from
/// 0 in index order. `out` may alias `a` or `b`.
template <class T, int N, int K, int M>
void multiply(const matrix<T, N, K>& a, const matrix<T, K, M>& b, matrix<T, N, M>& out) {
    matrix<T, N, M> result;
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < M; ++j) {
            T sum = T(0);
            for (int k = 0; k < K; ++k) sum += a(i, k) * b(k, j);
            result(i, j) = sum;
        }
    out = result;
}

/// The product a·b (see multiply).
template <class T, int N, int K, int M>
matrix<T, N, M> operator*(const matrix<T, N, K>& a, const matrix<T, K, M>& b) {
    matrix<T, N, M> out;
    multiply(a, b, out);
    return out;
}
