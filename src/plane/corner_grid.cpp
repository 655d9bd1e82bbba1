// The corner grid of the ear clipper and the rounding bound that makes it exact.
#include "plane/corner_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace facet::plane_detail {

// Why the box is safe. Let f1, f2, f3 be the exact values of the three cross products of
// inside_ccw(p, P, Q, R) and c1, c2, c3 the computed ones. Each ci is a difference of two
// products of coordinate differences, each operation rounded once; with u = 2^-53 and no
// overflow (coordinates within ±2^400) this gives |ci − fi| ≤ 4.0001·u·(|X| + |Y|) + 2^-1073,
// where X and Y are the exact products (the last term covers results that underflow). Let W be
// the larger side of the triangle's bounding box and t the distance (in the maximum norm) from
// p to that box; every coordinate difference in a product is then at most W on the edge side
// and W + t on the p side, so |ci − fi| ≤ 16·u·W·(W + t) + τ =: F(t) with τ = 2^-1000.
//
// The exact values sum to 2A = cross(Q − P, R − P) and λi = fi / 2A are the barycentric
// coordinates of p. If the computed test succeeds, every ci ≥ 0, so λi ≥ −δ with
// δ = F(t) / 2A, and a point whose barycentric coordinates all exceed −δ lies within 2·δ·W of
// the triangle's bounding box (the extreme points of {λi ≥ −δ, Σλi = 1} are (1 + 2δ, −δ, −δ)
// and its permutations). Hence t ≤ 2·W·F(t) / 2A = κ·(W + t) + 2·W·τ / 2A with
// κ = 32·u·W² / 2A, and for κ ≤ 1/2: t ≤ 2·κ·W + 4·W·τ / 2A. The computed twice_area C is
// itself within 16·u·W² + τ of 2A, which gives the lower bound D used for 2A below. A point
// farther from the bounding box than that margin therefore fails the computed test. The
// margin is doubled and κ limited to 1/4 to absorb the rounding of this computation itself,
// and the box bounds are rounded outwards.
bool triangle_search_box(const vector2d& P, const vector2d& Q, const vector2d& R, double twice_area,
                         search_box& box) {
    constexpr double u = 0x1p-53;
    constexpr double tau = 0x1p-1000;
    constexpr double inf = std::numeric_limits<double>::infinity();

    const double x0 = std::min(P.x, std::min(Q.x, R.x));
    const double x1 = std::max(P.x, std::max(Q.x, R.x));
    const double y0 = std::min(P.y, std::min(Q.y, R.y));
    const double y1 = std::max(P.y, std::max(Q.y, R.y));
    const double w = std::max(x1 - x0, y1 - y0) * (1.0 + 0x1p-30);

    const double area_error = 16.0 * u * w * w + tau;
    const double d = twice_area - 2.0 * area_error;
    if (!(d > 0.0)) return false;
    const double kappa = 32.0 * u * w * w / d;
    if (!(kappa <= 0.25)) return false;
    const double margin = 2.0 * (2.0 * kappa * w + 4.0 * w * tau / d);
    if (!(margin < inf)) return false;

    box.xlo = std::nextafter(x0 - margin, -inf);
    box.xhi = std::nextafter(x1 + margin, inf);
    box.ylo = std::nextafter(y0 - margin, -inf);
    box.yhi = std::nextafter(y1 + margin, inf);
    return true;
}

void corner_grid::build(const std::vector<vector2d>& points, const std::vector<unsigned>& next,
                        unsigned first, std::size_t count) {
    m_items.assign(count, 0);

    double x0 = points[first].x, x1 = x0;
    double y0 = points[first].y, y1 = y0;
    unsigned id = first;
    for (std::size_t i = 0; i < count; ++i, id = next[id]) {
        const vector2d& p = points[id];
        x0 = std::min(x0, p.x);
        x1 = std::max(x1, p.x);
        y0 = std::min(y0, p.y);
        y1 = std::max(y1, p.y);
    }

    // About one cell per corner, shaped after the bounding box.
    const double width = x1 - x0;
    const double height = y1 - y0;
    const double cells = static_cast<double>(count);
    double nx = 1.0, ny = 1.0;
    if (width > 0.0 && height > 0.0) {
        nx = std::ceil(std::sqrt(cells * (width / height)));
        nx = std::min(std::max(nx, 1.0), cells);
        ny = std::min(std::max(std::ceil(cells / nx), 1.0), cells);
    } else if (width > 0.0) {
        nx = cells;
    } else if (height > 0.0) {
        ny = cells;
    }
    m_nx = static_cast<int>(nx);
    m_ny = static_cast<int>(ny);
    m_x0 = x0;
    m_y0 = y0;
    m_sx = m_nx > 1 ? nx / width : 0.0;
    m_sy = m_ny > 1 ? ny / height : 0.0;
    if (!std::isfinite(m_sx)) m_sx = 0.0, m_nx = 1;
    if (!std::isfinite(m_sy)) m_sy = 0.0, m_ny = 1;

    // Counting sort of the corners by cell.
    const std::size_t cell_count = static_cast<std::size_t>(m_nx) * static_cast<std::size_t>(m_ny);
    m_start.assign(cell_count + 1, 0);
    std::vector<unsigned> cell_of(count);
    id = first;
    for (std::size_t i = 0; i < count; ++i, id = next[id]) {
        const std::size_t c = static_cast<std::size_t>(cell_y(points[id].y)) * m_nx +
                              static_cast<std::size_t>(cell_x(points[id].x));
        cell_of[i] = static_cast<unsigned>(c);
        ++m_start[c + 1];
    }
    for (std::size_t c = 0; c < cell_count; ++c) m_start[c + 1] += m_start[c];
    std::vector<unsigned> fill(m_start.begin(), m_start.end() - 1);
    id = first;
    for (std::size_t i = 0; i < count; ++i, id = next[id]) m_items[fill[cell_of[i]]++] = id;
}

}  // namespace facet::plane_detail
