// Ear-clipping triangulation: the public tests and the clean-up passes; the clipping loop
// itself is in ear_clipper.cpp.
#include "facet/triangulate.h"

#include <cmath>
#include <limits>

#include "facet/check.h"
#include "plane/corner_tree.h"
#include "plane/ear_clipper.h"

using facet::plane_detail::clip_ears;
using facet::plane_detail::inside_ccw;

double area(const std::vector<vector2<double>>& contour) {
    const std::size_t n = contour.size();
    if (n < 3) return 0.0;
    double sum = 0.0;
    std::size_t prev = n - 1;
    for (std::size_t i = 0; i < n; ++i) {
        sum += cross(contour[prev], contour[i]);
        prev = i;
    }
    return sum * 0.5;
}

bool inside_triangle(const vector2<double>& p, const vector2<double>& a, const vector2<double>& b,
                     const vector2<double>& c) {
    return inside_ccw(p, a, b, c);
}

bool is_ear(const std::vector<vector2<double>>& contour, const std::vector<unsigned>& V, unsigned u,
            unsigned v, unsigned w) {
    const std::size_t size = V.size();
    FACET_CHECK(u < size);
    FACET_CHECK(v < size);
    FACET_CHECK(w < size);
    for (const unsigned index : V) FACET_CHECK(index < contour.size());

    const vector2d& P = contour[V[u]];
    const vector2d& Q = contour[V[v]];
    const vector2d& R = contour[V[w]];
    if (cross(Q - P, R - P) <= 0.0) return false;
    for (std::size_t k = 0; k < size; ++k) {
        if (k == u || k == v || k == w) continue;
        if (inside_ccw(contour[V[k]], P, Q, R)) return false;
    }
    return true;
}

namespace {

// The outline without repeated points, in counter-clockwise order (reversed when the signed
// area is not positive).
std::vector<unsigned> drop_repeated_points(const std::vector<vector2d>& contour, bool reversed) {
    const std::size_t n = contour.size();
    std::vector<unsigned> kept;
    if (n == 0) return kept;
    kept.reserve(n);
    const auto index = [&](std::size_t i) {
        return static_cast<unsigned>(reversed ? n - 1 - i : i);
    };
    vector2d last = contour[index(n - 1)];
    for (std::size_t i = 0; i < n; ++i) {
        const vector2d& p = contour[index(i)];
        if (p != last) {
            kept.push_back(index(i));
            last = p;
        }
    }
    return kept;
}

vector2d unit(const vector2d& d) { return d / d.length(); }

// Drops the corners whose edges continue straight on or double back, each decided against the
// list as it was before.
std::vector<unsigned> drop_collinear_points(const std::vector<vector2d>& contour,
                                            const std::vector<unsigned>& V) {
    const std::size_t n = V.size();
    if (n < 3) return V;
    std::vector<unsigned> kept;
    kept.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const vector2d& before = contour[V[i == 0 ? n - 1 : i - 1]];
        const vector2d& at = contour[V[i]];
        const vector2d& after = contour[V[(i + 1) % n]];
        const vector2d e1 = unit(at - before);
        const vector2d e2 = unit(after - at);
        if (std::fabs(std::fabs(dot(e1, e2)) - 1.0) >= 0.0001) kept.push_back(V[i]);
    }
    return kept;
}

}  // namespace

void triangulate(const std::vector<vector2<double>>& contour, std::vector<unsigned>& result) {
    FACET_CHECK(contour.size() < std::numeric_limits<unsigned>::max());
    const bool reversed = !(area(contour) > 0.0);
    const std::vector<unsigned> order =
        drop_collinear_points(contour, drop_repeated_points(contour, reversed));
    if (order.size() < 3) return;
    clip_ears(contour, order, reversed, result);
}
