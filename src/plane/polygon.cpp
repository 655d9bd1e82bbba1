// Polygon operations: offsetting with mitred corners, containment, bounds.
#include <limits>

#include "facet/plane.h"

namespace geometry {

namespace {

using point = vector<double, 2>;

}  // namespace

void inflate_polygon(std::vector<point>& polygon, double distance) {
    const std::size_t n = polygon.size();
    if (n == 0) return;

    std::vector<point> inflated;
    inflated.reserve(n);
    line previous(polygon[n - 1], polygon[0]);
    previous.offset(distance);
    for (std::size_t i = 0; i < n; ++i) {
        line next(polygon[i], polygon[(i + 1) % n]);
        next.offset(distance);
        inflated.push_back(intersection(previous, next));
        previous = next;
    }
    polygon.swap(inflated);
}

bool point_in_polygon(const std::vector<point>& polygon, const point& p) {
    const std::size_t n = polygon.size();
    if (n == 0) return false;

    const double px = p[0];
    const double py = p[1];
    bool inside = false;
    std::size_t j = n - 1;
    for (std::size_t i = 0; i < n; ++i) {
        const point& pi = polygon[i];
        const point& pj = polygon[j];
        if ((pi[1] <= py && py < pj[1]) || (pj[1] <= py && py < pi[1])) {
            const double x = (py - pi[1]) * (pj[0] - pi[0]) / (pj[1] - pi[1]) + pi[0];
            if (px < x) inside = !inside;
        }
        j = i;
    }
    return inside;
}

bool get_bounds(const std::vector<point>& polygon, point& min_point, point& max_point) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    double lo[2] = {inf, inf};
    double hi[2] = {-inf, -inf};
    for (const point& p : polygon) {
        for (unsigned axis = 0; axis < 2; ++axis) {
            const double v = p[axis];
            if (v < lo[axis]) lo[axis] = v;
            if (v > hi[axis]) hi[axis] = v;
        }
    }
    min_point = point(lo[0], lo[1]);
    max_point = point(hi[0], hi[1]);
    return lo[0] <= hi[0] && lo[1] <= hi[1];
}

bool get_bounds(const std::vector<point>& polygon, point& min_point, point& max_point,
                double distance) {
    const bool found = get_bounds(polygon, min_point, max_point);
    for (unsigned axis = 0; axis < 2; ++axis) {
        if (!(min_point[axis] <= max_point[axis])) continue;  // an empty axis stays empty
        min_point[axis] -= distance;
        max_point[axis] += distance;
    }
    return found;
}

}  // namespace geometry
