// Ear-clipping triangulation: the public tests and the clean-up passes; the clipping loop
// itself is in ear_clipper.cpp.
#include "facet/triangulate.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "facet/check.h"
#include "plane/corner_tree.h"
#include "plane/ear_clipper.h"

using facet::plane_detail::ear_clipper;
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
// area is not positive), into `kept`.
void drop_repeated_points(const std::vector<vector2d>& contour, bool reversed,
                          std::vector<unsigned>& kept) {
    const std::size_t n = contour.size();
    kept.clear();
    if (n == 0) return;
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
}

vector2d unit(const vector2d& d) { return d / d.length(); }

// The corners of V (at least 3) without those whose edges continue straight on or double
// back, each decided against the list as it was before, into `kept`.
void drop_collinear_points(const std::vector<vector2d>& contour, const std::vector<unsigned>& V,
                           std::vector<unsigned>& kept) {
    const std::size_t n = V.size();
    kept.clear();
    // The edge leaving a corner is the edge arriving at the next one.
    vector2d arriving = unit(contour[V[0]] - contour[V[n - 1]]);
    for (std::size_t i = 0; i < n; ++i) {
        const vector2d leaving = unit(contour[V[i + 1 == n ? 0 : i + 1]] - contour[V[i]]);
        if (std::fabs(std::fabs(dot(arriving, leaving)) - 1.0) >= 0.0001) kept.push_back(V[i]);
        arriving = leaving;
    }
}

// The working memory of triangulate(), one per thread, kept between calls.
struct workspace {
    std::vector<unsigned> distinct;  // the outline without repeated points
    std::vector<unsigned> order;     // and without collinear ones
    ear_clipper clipper;
};

}  // namespace

void triangulate(const std::vector<vector2<double>>& contour, std::vector<unsigned>& result) {
    FACET_CHECK(contour.size() < std::numeric_limits<unsigned>::max());
    thread_local workspace scratch;
    const bool reversed = !(area(contour) > 0.0);
    drop_repeated_points(contour, reversed, scratch.distinct);
    if (scratch.distinct.size() < 3) return;
    drop_collinear_points(contour, scratch.distinct, scratch.order);
    const std::size_t n = scratch.order.size();
    if (n < 3) return;
    // Room for every triangle, growing geometrically when many outlines go into one list.
    const std::size_t needed = result.size() + 3 * (n - 2);
    if (result.capacity() < needed) result.reserve(std::max(needed, 2 * result.capacity()));
    scratch.clipper.run(contour, scratch.order, reversed, result);
}
