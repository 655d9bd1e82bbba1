// 3D queries: ray against triangle, collinearity, tangent basis.
#include <cmath>

#include "facet/check.h"
#include "facet/math3d.h"

bool ray_triangle_intersection(const vector3d& origin, const vector3d& direction, const vector3d& a,
                               const vector3d& b, const vector3d& c, double* t) {
    constexpr double epsilon = 1e-6;
    const vector3d e1 = b - a;
    const vector3d e2 = c - a;
    const vector3d s = origin - a;

    const vector3d p = cross(direction, e2);
    const double det = dot(p, e1);
    if (-epsilon < det && det < epsilon) return false;  // parallel to the plane

    const double u = dot(p, s) / det;
    if (u < 0.0 || u > 1.0) return false;

    const vector3d q = cross(s, e1);
    const double w = dot(q, direction) / det;
    if (!(w >= 0.0)) return false;  // also rejects NaN
    if (!(u + w <= 1.0)) return false;

    *t = dot(q, e2) / det;
    return *t > 0.0;
}

bool colinear(const vector3d& p1, const vector3d& p2, const vector3d& p3, double angle) {
    FACET_CHECK(p1 != p2);
    FACET_CHECK(p2 != p3);
    const double c = std::cos(angle);
    vector3d a = p2 - p1;
    vector3d b = p3 - p2;
    a.normalize();
    b.normalize();
    return std::fabs(dot(a, b)) > c;
}

void ComputeTangentBasis(const vector3d& P0, const vector3d& P1, const vector3d& P2,
                         const vector2d& UV0, const vector2d& UV1, const vector2d& UV2,
                         vector3d& tangent, vector3d& binormal) {
    const vector3d e1 = P1 - P0;
    const vector3d e2 = P2 - P0;
    const double s1 = UV1.x - UV0.x;
    const double t1 = UV1.y - UV0.y;
    const double s2 = UV2.x - UV0.x;
    const double t2 = UV2.y - UV0.y;

    const double det = t1 * s2 - s1 * t2;
    if (det == 0.0) return;
    const double r = 1.0 / det;

    // The binormal points along decreasing t; consumers of the tangent space rely on that sign.
    tangent = (e1 * -t2 + e2 * t1) * r;
    binormal = (e1 * -s2 + e2 * s1) * r;
    tangent.normalize();
    binormal.normalize();
}
