// The z-order list of the ear clipper.
//
// A corner is skipped only when inside_ccw(p, a, b, c), as computed in floating point, provably
// fails for it; so the search answers yes or no exactly as testing every corner would. The
// proof bounds the box that can hold such corners.
//
// Let h1, h2, h3 be the exact values of the three cross products of inside_ccw (edges c − b,
// a − c, b − a, each with the exact differences of the given points). They are affine in p and
// sum to T = cross(b − a, c − a), exact, at every p; so λi = hi / T are barycentric coordinates
// of p with respect to a, b, c (λ1 the weight of a), summing to 1. With u = 2^-53 and every
// coordinate at most S in magnitude, the computed product of an edge e differs from the exact
// one by at most 5.001·u·(|e.x|·|p.y − q.y| + |e.y|·|p.x − q.x|) + 2^-1074 (four roundings per
// term: the edge, the difference, the product and the final subtraction), which is at most
// E = 11·u·S·(|e.x| + |e.y|) + 2^-1000 for the computed e. When p passes, every computed product
// is ≥ 0, so every hi ≥ −E and λi ≥ −E / T. Then p.x − min(a.x, b.x, c.x) = Σ λi·(xi − min),
// of which at most two terms are negative, each ≥ −(E / T)·W with W the width of the triangle:
// p.x ≥ min − 2·(E / T)·W, and likewise on the other three sides. The computed T is within
// 5.01·u·(|B.x·C.y| + |B.y·C.x|) + 2^-1074 of the exact one (B, C the computed b − a, c − a);
// the box below uses a lower bound of T, twice the margin and a further 4·u·S for the rounding
// of the box's own bounds. When that lower bound is not positive (an almost flat triangle) or a
// margin is not finite, nothing is proved and the tree answers.
//
// The Morton code of a point is monotone in each coordinate (the scaling to 16 bits rounds
// monotonically and the interleaving keeps the order in each coordinate), so a corner inside
// the box has a code between the codes of the box's lower-left and upper-right corners: the
// corners to test are those met walking the list both ways from the ear's tip (itself in the
// box) until the codes leave that range. A box across a high boundary of the grid has a range
// far longer than its area; when the walk meets too many corners the box is cut into parts
// along such boundaries and each part's range is searched in the sorted codes. Either way only
// the corners' coordinates decide which are tested exactly, so the answer does not depend on
// the cells (they are square, so that flat outlines do not make every box tall in cells).
#include "plane/z_order_list.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "plane/corner_tree.h"

namespace facet::plane_detail {

namespace {

constexpr double unit_roundoff = 0x1p-53;
constexpr double code_limit = 65535.0;

// The most corners the walk from the tip tests before the box is cut into parts.
constexpr unsigned walk_steps = 128;

// The bits of a 16-bit value spread to the even bit positions.
std::uint32_t spread(std::uint32_t v) {
    v = (v | (v << 8)) & 0x00FF00FFu;
    v = (v | (v << 4)) & 0x0F0F0F0Fu;
    v = (v | (v << 2)) & 0x33333333u;
    return (v | (v << 1)) & 0x55555555u;
}

// The offset from `origin` scaled to 0 .. code_limit, clamped (monotone in x).
std::uint32_t grid(double x, double origin, double scale) {
    const double t = (x - origin) * scale;
    return static_cast<std::uint32_t>(t > 0.0 ? std::min(t, code_limit) : 0.0);
}

double edge_error(const vector2d& e, double scale) {
    return 11.0 * unit_roundoff * scale * (std::fabs(e.x) + std::fabs(e.y)) + 0x1p-1000;
}

}  // namespace

bool z_order_list::build(const std::vector<vector2d>& points) {
    const std::size_t n = points.size();
    double xmin = 0.0, xmax = 0.0, ymin = 0.0, ymax = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const vector2d& p = points[i];
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
        if (i == 0 || p.x < xmin) xmin = p.x;
        if (i == 0 || p.x > xmax) xmax = p.x;
        if (i == 0 || p.y < ymin) ymin = p.y;
        if (i == 0 || p.y > ymax) ymax = p.y;
    }
    m_xmin = xmin;
    m_ymin = ymin;
    // Square cells, so that the parts of a box stay few however flat the outline is.
    const double side = std::max(xmax - xmin, ymax - ymin);
    m_xscale = m_yscale = side > 0.0 ? code_limit / side : 0.0;
    m_cells = (std::uint64_t(grid(xmax, xmin, m_xscale)) + 1) * (grid(ymax, ymin, m_yscale) + 1);
    m_scale = std::max(std::max(std::fabs(xmin), std::fabs(xmax)),
                       std::max(std::fabs(ymin), std::fabs(ymax)));

    // Least significant digit first, 11 bits of the code at a time, with the counts of all
    // three digits taken while the codes are made; passes where every code has the same digit
    // are skipped.
    m_corners.resize(n);
    m_sorted.resize(n);
    m_swap.resize(n);
    constexpr unsigned digits = 2048;
    unsigned count[3][digits] = {};
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint32_t c = spread(grid(points[i].x, xmin, m_xscale)) |
                                (spread(grid(points[i].y, ymin, m_yscale)) << 1);
        m_corners[i].code = c;
        m_sorted[i] = (std::uint64_t(c) << 32) | i;
        ++count[0][c & (digits - 1)];
        ++count[1][(c >> 11) & (digits - 1)];
        ++count[2][c >> 22];
    }
    for (unsigned d = 0; d < 3; ++d) {
        const unsigned shift = 32 + 11 * d;
        unsigned* const place = count[d];
        if (place[(m_sorted[0] >> shift) & (digits - 1)] == n) continue;
        unsigned sum = 0;
        for (unsigned k = 0; k < digits; ++k) {
            const unsigned here = place[k];
            place[k] = sum;
            sum += here;
        }
        for (const std::uint64_t key : m_sorted)
            m_swap[place[(key >> shift) & (digits - 1)]++] = key;
        m_sorted.swap(m_swap);
    }
    m_skip.resize(n + 1);
    unsigned previous = none;
    for (std::size_t i = 0; i < n; ++i) {
        const auto id = static_cast<unsigned>(m_sorted[i]);
        m_corners[id].prev = previous;
        m_corners[id].position = static_cast<unsigned>(i);
        if (previous != none) m_corners[previous].next = id;
        previous = id;
        m_skip[i] = static_cast<unsigned>(i);
    }
    if (previous != none) m_corners[previous].next = none;
    m_skip[n] = static_cast<unsigned>(n);
    return true;
}

std::size_t z_order_list::live_from(std::size_t position) {
    // Path halving keeps the chains of removed places short.
    while (m_skip[position] != position) {
        m_skip[position] = m_skip[m_skip[position]];
        position = m_skip[position];
    }
    return position;
}

// The query box in grid cells and in coordinates.
struct z_order_list::box {
    std::uint32_t x0, y0, x1, y1;
    double left, bottom, right, top;
};

// The corners in the box, found by cutting it into parts whose code ranges are not much longer
// than their areas (a box across a high boundary of the grid has a code range far longer than
// its area), and searching each part's range in m_sorted.
unsigned z_order_list::search_parts(const std::vector<vector2d>& points, unsigned u, unsigned v,
                                    unsigned w, const box& b, unsigned budget) {
    const vector2d& pu = points[u];
    const vector2d& pv = points[v];
    const vector2d& pw = points[w];
    struct part {
        std::uint32_t x0, y0, x1, y1;
    };
    part stack[32];
    std::size_t top = 0;
    stack[top++] = {b.x0, b.y0, b.x1, b.y1};
    unsigned steps = 0;
    while (top > 0) {
        const part p = stack[--top];
        const std::uint32_t low = spread(p.x0) | (spread(p.y0) << 1);
        const std::uint32_t high = spread(p.x1) | (spread(p.y1) << 1);
        const std::uint64_t area = std::uint64_t(p.x1 - p.x0 + 1) * (p.y1 - p.y0 + 1);
        if (++steps > budget) return unknown;  // a cut or a search counts as a corner met
        if (high - low >= 4 * area && top + 2 <= std::size(stack)) {
            // Cut at the highest bit where the corners' codes differ: an x bit at even places,
            // a y bit at odd ones. Above it both corners agree, so the cut lies inside.
            const int bit = 31 - __builtin_clz(low ^ high);
            const int k = bit / 2;
            if (bit % 2 == 0) {
                const std::uint32_t cut = (p.x1 >> k) << k;
                stack[top++] = {p.x0, p.y0, cut - 1, p.y1};
                stack[top++] = {cut, p.y0, p.x1, p.y1};
            } else {
                const std::uint32_t cut = (p.y1 >> k) << k;
                stack[top++] = {p.x0, p.y0, p.x1, cut - 1};
                stack[top++] = {p.x0, cut, p.x1, p.y1};
            }
            continue;
        }
        const auto first =
            std::lower_bound(m_sorted.begin(), m_sorted.end(), std::uint64_t(low) << 32);
        for (std::size_t i = live_from(static_cast<std::size_t>(first - m_sorted.begin()));
             i < m_sorted.size() && (m_sorted[i] >> 32) <= high; i = live_from(i + 1)) {
            if (++steps > budget) return unknown;
            const auto k = static_cast<unsigned>(m_sorted[i]);
            const vector2d& q = points[k];
            if (k != u && k != v && k != w && q.x >= b.left && q.x <= b.right && q.y >= b.bottom &&
                q.y <= b.top && inside_ccw(q, pu, pv, pw))
                return k;
        }
    }
    return none;
}

unsigned z_order_list::find_inside(const std::vector<vector2d>& points, unsigned u, unsigned v,
                                   unsigned w, double twice_area, unsigned budget) {
    const vector2d& a = points[u];
    const vector2d& b = points[v];
    const vector2d& c = points[w];
    const double error = std::max(std::max(edge_error(c - b, m_scale), edge_error(a - c, m_scale)),
                                  edge_error(b - a, m_scale));
    const vector2d B = b - a;
    const vector2d C = c - a;
    const double low_area =
        twice_area -
        (8.0 * unit_roundoff * (std::fabs(B.x * C.y) + std::fabs(B.y * C.x)) + 0x1p-1000);
    if (!(low_area > 0.0)) return unknown;
    const double xmin = std::min(std::min(a.x, b.x), c.x);
    const double xmax = std::max(std::max(a.x, b.x), c.x);
    const double ymin = std::min(std::min(a.y, b.y), c.y);
    const double ymax = std::max(std::max(a.y, b.y), c.y);
    const double ratio = 4.0 * error / low_area;
    const double xmargin = ratio * (xmax - xmin) + 4.0 * unit_roundoff * m_scale;
    const double ymargin = ratio * (ymax - ymin) + 4.0 * unit_roundoff * m_scale;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (!(xmargin < infinity && ymargin < infinity)) return unknown;

    box q;
    q.left = xmin - xmargin;
    q.right = xmax + xmargin;
    q.bottom = ymin - ymargin;
    q.top = ymax + ymargin;
    q.x0 = grid(q.left, m_xmin, m_xscale);
    q.x1 = grid(q.right, m_xmin, m_xscale);
    q.y0 = grid(q.bottom, m_ymin, m_yscale);
    q.y1 = grid(q.top, m_ymin, m_yscale);
    // A box over a large share of the occupied grid holds too many corners to be worth a
    // search.
    if (std::uint64_t(q.x1 - q.x0 + 1) * (q.y1 - q.y0 + 1) > m_cells / 64) return unknown;
    const std::uint32_t lowest = spread(q.x0) | (spread(q.y0) << 1);
    const std::uint32_t highest = spread(q.x1) | (spread(q.y1) << 1);
    const auto found = [&](unsigned k) {
        const vector2d& p = points[k];
        return k != u && k != w && p.x >= q.left && p.x <= q.right && p.y >= q.bottom &&
               p.y <= q.top && inside_ccw(p, a, b, c);
    };
    // Most boxes are small and their ranges short: walk the list both ways from the tip.
    unsigned steps = 0;
    for (unsigned k = m_corners[v].next; k != none && m_corners[k].code <= highest;
         k = m_corners[k].next) {
        if (++steps > walk_steps) return search_parts(points, u, v, w, q, budget);
        if (found(k)) return k;
    }
    for (unsigned k = m_corners[v].prev; k != none && m_corners[k].code >= lowest;
         k = m_corners[k].prev) {
        if (++steps > walk_steps) return search_parts(points, u, v, w, q, budget);
        if (found(k)) return k;
    }
    return none;
}

}  // namespace facet::plane_detail
