// View, projection, viewport and affine transform builders, appenders and point transforms.
#include <cmath>

#include "facet/math3d.h"

using geometry::deg_to_rad;

void calc_view_matrix(const vector3d& eye, const vector3d& dir, const vector3d& up, matrix44d& m) {
    vector3d d = dir;
    d.normalize();
    vector3d s = cross(d, up);
    s.normalize();
    vector3d u = cross(s, d);
    u.normalize();

    m(0, 0) = s.x;
    m(0, 1) = s.y;
    m(0, 2) = s.z;
    m(0, 3) = -dot(s, eye);
    m(1, 0) = u.x;
    m(1, 1) = u.y;
    m(1, 2) = u.z;
    m(1, 3) = -dot(u, eye);
    m(2, 0) = -d.x;
    m(2, 1) = -d.y;
    m(2, 2) = -d.z;
    m(2, 3) = dot(d, eye);
    m(3, 0) = 0.0;
    m(3, 1) = 0.0;
    m(3, 2) = 0.0;
    m(3, 3) = 1.0;
}

void calc_perspective_matrix(double fov, double aspect, double n, double f, matrix44d& m) {
    const double h = std::tan(deg_to_rad(fov * 0.5)) * n;  // half width of the near plane
    const double v = h / aspect;                           // half height of the near plane
    m.fill(0.0);
    m(0, 0) = n / h;
    m(1, 1) = n / v;
    m(2, 2) = -(f + n) / (f - n);
    m(2, 3) = f * n * -2.0 / (f - n);
    m(3, 2) = -1.0;
}

void calc_perspective_matrix(double l, double r, double b, double t, double n, double f,
                             matrix44d& m) {
    m.fill(0.0);
    m(0, 0) = 2.0 * n / (r - l);
    m(1, 1) = 2.0 * n / (t - b);
    m(0, 2) = (r + l) / (r - l);
    m(1, 2) = (t + b) / (t - b);
    m(2, 2) = -(f + n) / (f - n);
    m(2, 3) = -2.0 * f * n / (f - n);
    m(3, 2) = -1.0;
}

void calc_ortho_matrix(double w, double h, double n, double f, matrix44d& m) {
    m.fill(0.0);
    m(0, 0) = 2.0 / w;
    m(1, 1) = 2.0 / h;
    m(2, 2) = -2.0 / (f - n);
    m(2, 3) = -(f + n) / (f - n);
    m(3, 3) = 1.0;
}

void calc_ortho_matrix(double l, double r, double b, double t, double n, double f, matrix44d& m) {
    m.fill(0.0);
    m(0, 0) = 2.0 / (r - l);
    m(1, 1) = 2.0 / (t - b);
    m(2, 2) = -2.0 / (f - n);
    m(0, 3) = -(r + l) / (r - l);
    m(1, 3) = -(t + b) / (t - b);
    m(2, 3) = -(f + n) / (f - n);
    m(3, 3) = 1.0;
}

void calc_viewport_matrix(double x, double y, double w, double h, matrix44d& m) {
    m.set_identity();
    m(0, 0) = w * 0.5;
    m(1, 1) = -h * 0.5;  // screen y grows downwards
    m(0, 3) = w * 0.5 + x;
    m(1, 3) = h * 0.5 + y;
}

void make_translation_matrix(matrix44d& m, double tx, double ty, double tz) {
    m.set_identity();
    m(0, 3) = tx;
    m(1, 3) = ty;
    m(2, 3) = tz;
}

void make_scaling_matrix(matrix44d& m, double sx, double sy, double sz) {
    m.fill(0.0);
    m(0, 0) = sx;
    m(1, 1) = sy;
    m(2, 2) = sz;
    m(3, 3) = 1.0;
}

void make_rotation_matrix(matrix44d& m, double angle, double ax, double ay, double az) {
    // The unit quaternion (w, x, y, z) of the rotation, expanded into a matrix.
    const double a = deg_to_rad(angle * 0.5);
    const double k = std::sin(a) / std::sqrt(ax * ax + ay * ay + az * az);
    const double w = std::cos(a);
    const double x = k * ax;
    const double y = k * ay;
    const double z = k * az;

    m(0, 0) = 1.0 - 2.0 * (y * y + z * z);
    m(0, 1) = 2.0 * (x * y - w * z);
    m(0, 2) = 2.0 * (x * z + w * y);
    m(0, 3) = 0.0;
    m(1, 0) = 2.0 * (x * y + w * z);
    m(1, 1) = 1.0 - 2.0 * (x * x + z * z);
    m(1, 2) = 2.0 * (y * z - w * x);
    m(1, 3) = 0.0;
    m(2, 0) = 2.0 * (x * z - w * y);
    m(2, 1) = 2.0 * (y * z + w * x);
    m(2, 2) = 1.0 - 2.0 * (x * x + y * y);
    m(2, 3) = 0.0;
    m(3, 0) = 0.0;
    m(3, 1) = 0.0;
    m(3, 2) = 0.0;
    m(3, 3) = 1.0;
}

void append_translation(matrix44d& m, double tx, double ty, double tz) {
    double column[4];
    for (int i = 0; i < 4; ++i) column[i] = m(i, 0) * tx + m(i, 1) * ty + m(i, 2) * tz + m(i, 3);
    for (int i = 0; i < 4; ++i) m(i, 3) = column[i];
}

void append_rotation(matrix44d& m, double angle, double ax, double ay, double az) {
    const matrix44d copy = m;
    matrix44d rotation;
    make_rotation_matrix(rotation, angle, ax, ay, az);
    multiply(copy, rotation, m);
}

void append_scaling(matrix44d& m, double sx, double sy, double sz) {
    for (int i = 0; i < 3; ++i) {
        m(i, 0) *= sx;
        m(i, 1) *= sy;
        m(i, 2) *= sz;
    }
}

void transform_vector(const matrix44d& m, const vector3d& p, vector3d& out) {
    const double w = m(3, 0) * p.x + m(3, 1) * p.y + m(3, 2) * p.z + m(3, 3);
    const double x = (m(0, 0) * p.x + m(0, 1) * p.y + m(0, 2) * p.z + m(0, 3)) / w;
    const double y = (m(1, 0) * p.x + m(1, 1) * p.y + m(1, 2) * p.z + m(1, 3)) / w;
    const double z = (m(2, 0) * p.x + m(2, 1) * p.y + m(2, 2) * p.z + m(2, 3)) / w;
    out = vector3d(x, y, z);
}

vector3d transform_vector(const matrix44d& m, const vector3d& p) {
    vector3d out;
    transform_vector(m, p, out);
    return out;
}

void transform_vectors(const matrix44d& m, const vector3d* in, std::size_t count, vector3d* out) {
    // The matrix is read into locals once, so the loop is plain arithmetic the compiler can keep
    // in registers; the expressions are those of transform_vector.
    const double m00 = m(0, 0), m01 = m(0, 1), m02 = m(0, 2), m03 = m(0, 3);
    const double m10 = m(1, 0), m11 = m(1, 1), m12 = m(1, 2), m13 = m(1, 3);
    const double m20 = m(2, 0), m21 = m(2, 1), m22 = m(2, 2), m23 = m(2, 3);
    const double m30 = m(3, 0), m31 = m(3, 1), m32 = m(3, 2), m33 = m(3, 3);
    for (std::size_t i = 0; i < count; ++i) {
        const vector3d p = in[i];
        const double w = m30 * p.x + m31 * p.y + m32 * p.z + m33;
        const double x = (m00 * p.x + m01 * p.y + m02 * p.z + m03) / w;
        const double y = (m10 * p.x + m11 * p.y + m12 * p.z + m13) / w;
        const double z = (m20 * p.x + m21 * p.y + m22 * p.z + m23) / w;
        out[i] = vector3d(x, y, z);
    }
}

void transform_vector_3x3(const matrix44d& m, const vector3d& v, vector3d& out) {
    const double x = m(0, 0) * v.x + m(0, 1) * v.y + m(0, 2) * v.z;
    const double y = m(1, 0) * v.x + m(1, 1) * v.y + m(1, 2) * v.z;
    const double z = m(2, 0) * v.x + m(2, 1) * v.y + m(2, 2) * v.z;
    out = vector3d(x, y, z);
}

vector3d transform_vector_3x3(const matrix44d& m, const vector3d& v) {
    vector3d out;
    transform_vector_3x3(m, v, out);
    return out;
}
