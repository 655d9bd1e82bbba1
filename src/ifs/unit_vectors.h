// vector3d::normalize with the divisions two to an instruction.
#pragma once

#include "facet/geometry.h"

namespace facet::detail {

// Two doubles in one register. Each lane is divided with the rounding of a scalar division, so
// the results are the bits that v.x / len, v.y / len give one at a time.
using double_pair = double __attribute__((vector_size(16)));

/// What v.normalize() does (a length above 1e-12 divides, any other length, NaN included,
/// gives (0, 0, 0)), with x and y divided together.
inline void normalize(vector3d& v) {
    const double len = v.length();
    if (!(len > 1e-12)) {
        v = vector3d(0.0, 0.0, 0.0);
        return;
    }
    const double_pair xy = double_pair{v.x, v.y} / double_pair{len, len};
    v = vector3d(xy[0], xy[1], v.z / len);
}

/// normalize(a) and normalize(b), in three divisions of two lanes.
inline void normalize(vector3d& a, vector3d& b) {
    const double la = a.length();
    const double lb = b.length();
    if (!(la > 1e-12) || !(lb > 1e-12)) {
        normalize(a);
        normalize(b);
        return;
    }
    const double_pair axy = double_pair{a.x, a.y} / double_pair{la, la};
    const double_pair z = double_pair{a.z, b.z} / double_pair{la, lb};
    const double_pair bxy = double_pair{b.x, b.y} / double_pair{lb, lb};
    a = vector3d(axy[0], axy[1], z[0]);
    b = vector3d(bxy[0], bxy[1], z[1]);
}

/// Whether v.length() > 0.1, taking the square root only for squared lengths near 0.01.
inline bool longer_than_a_tenth(const vector3d& v) {
    const double s = v.x * v.x + v.y * v.y + v.z * v.z;
    if (s > 0.0101) return true;   // sqrt(s) >= 0.1004...
    if (s < 0.0099) return false;  // sqrt(s) <= 0.0995...
    return v.length() > 0.1;       // NaN included
}

}  // namespace facet::detail
