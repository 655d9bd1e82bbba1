// The axis-aligned bounding box of a set of points.
#pragma once

#include <algorithm>

#include "facet/objects.h"

namespace facet::detail {

/// Centre at the midpoint of the per-axis minimum and maximum, extents maximum − minimum; an
/// empty box (centre (0, 0, 0), extents 0) for no points.
template <class Iterator>
primitives::boundingbox box_of_points(Iterator first, Iterator last) {
    if (first == last) return primitives::boundingbox();
    vector3d lo = *first;
    vector3d hi = *first;
    for (; first != last; ++first) {
        const vector3d& p = *first;
        lo = vector3d(std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z));
        hi = vector3d(std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z));
    }
    return primitives::boundingbox((lo + hi) / 2.0, hi.x - lo.x, hi.y - lo.y, hi.z - lo.z);
}

}  // namespace facet::detail
