// Overlap of two oriented boxes by the separating-axis theorem.
#include <algorithm>
#include <cmath>

#include "facet/math3d.h"

namespace {

struct box_corners {
    vector3d corner[8];
};

box_corners world_corners(const vector3d& size, const matrix44d& m) {
    box_corners out;
    int n = 0;
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j)
            for (int k = 0; k < 2; ++k)
                out.corner[n++] = transform_vector(m, vector3d(i * size.x, j * size.y, k * size.z));
    return out;
}

struct interval {
    double low;
    double high;
};

interval project(const box_corners& box, const vector3d& axis) {
    interval r{dot(box.corner[0], axis), dot(box.corner[0], axis)};
    for (int i = 1; i < 8; ++i) {
        const double d = dot(box.corner[i], axis);
        r.low = std::min(r.low, d);
        r.high = std::max(r.high, d);
    }
    return r;
}

// True when `axis` (any length) separates the boxes: along it, the distance either box would have
// to move to clear the other is no more than `tolerance`. A zero-length axis separates nothing.
bool separates(const box_corners& a, const box_corners& b, vector3d axis, double tolerance) {
    if (axis.normalize() == 0.0) return false;
    const interval ia = project(a, axis);
    const interval ib = project(b, axis);
    const double depth = std::min(ia.high - ib.low, ib.high - ia.low);
    return !(depth > tolerance);
}

bool has_nan(const box_corners& box) {
    for (const vector3d& c : box.corner)
        if (std::isnan(c.x) || std::isnan(c.y) || std::isnan(c.z)) return true;
    return false;
}

}  // namespace

bool test_overlapping_boxes(const vector3d& size1, const matrix44d& m1, const vector3d& size2,
                            const matrix44d& m2, double tolerance) {
    constexpr double parallel_threshold = 1e-5;
    const box_corners a = world_corners(size1, m1);
    const box_corners b = world_corners(size2, m2);
    if (has_nan(a) || has_nan(b) || std::isnan(tolerance)) return false;

    const vector3d unit[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    vector3d axes1[3];
    vector3d axes2[3];
    for (int i = 0; i < 3; ++i) axes1[i] = transform_vector_3x3(m1, unit[i]);
    for (int i = 0; i < 3; ++i) axes2[i] = transform_vector_3x3(m2, unit[i]);

    for (const vector3d& axis : axes1)
        if (separates(a, b, axis, tolerance)) return false;
    for (const vector3d& axis : axes2)
        if (separates(a, b, axis, tolerance)) return false;
    for (const vector3d& u : axes1)
        for (const vector3d& v : axes2) {
            const vector3d axis = cross(u, v);
            if (axis.length() <= parallel_threshold * u.length() * v.length()) continue;
            if (separates(a, b, axis, tolerance)) return false;
        }
    return true;
}
