// Ear-clipping triangulation.
//
// The clipping order is that of the textbook loop over an index array: positions u, v, w with
// u = v mod nv after every test, the middle position erased on success. In that loop the next
// u is always the corner after the current u in the remaining outline (after a failure it is
// the old v; after an erase it is the old w, which also holds when v was the last position and
// the index wraps to 0). So the remaining outline is kept as a ring of prev/next links and u
// simply steps along it. The "is any other corner inside the ear" test asks a grid over the
// remaining corners for the cells of a box that provably holds every corner the exact test
// could accept (see corner_grid.cpp), and remembers for each corner the point that blocked it
// last, which blocks it again as long as its neighbours and that point remain.
#include "facet/triangulate.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "facet/check.h"
#include "plane/corner_grid.h"

using facet::plane_detail::corner_grid;
using facet::plane_detail::grid_coordinate_limit;
using facet::plane_detail::inside_ccw;
using facet::plane_detail::search_box;
using facet::plane_detail::triangle_search_box;

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

constexpr unsigned none = std::numeric_limits<unsigned>::max();

// Below this many remaining corners a plain scan is cheaper than the grid.
constexpr std::size_t grid_threshold = 24;

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

// The remaining outline as a ring of corners 0..n−1 (positions in the cleaned-up index list).
class ear_clipper {
public:
    ear_clipper(const std::vector<vector2d>& contour, const std::vector<unsigned>& order)
        : m_order(order),
          m_points(order.size()),
          m_prev(order.size()),
          m_next(order.size()),
          m_alive(order.size(), 1),
          m_blocker(order.size(), none),
          m_blocked_prev(order.size()),
          m_blocked_next(order.size()),
          m_remaining(order.size()) {
        const std::size_t n = order.size();
        for (std::size_t i = 0; i < n; ++i) {
            m_points[i] = contour[order[i]];
            m_prev[i] = static_cast<unsigned>(i == 0 ? n - 1 : i - 1);
            m_next[i] = static_cast<unsigned>(i + 1 == n ? 0 : i + 1);
            const vector2d& p = m_points[i];
            // The negated test also rejects NaN.
            if (!(std::fabs(p.x) <= grid_coordinate_limit &&
                  std::fabs(p.y) <= grid_coordinate_limit))
                m_grid_allowed = false;
        }
    }

    void run(bool reversed, std::vector<unsigned>& result) {
        unsigned u = static_cast<unsigned>(m_remaining - 1);
        long long count = 2 * static_cast<long long>(m_remaining);
        while (m_remaining >= 3) {
            if (count <= 0) throw std::runtime_error("Triangulation error: bad polygon");
            --count;
            const unsigned v = m_next[u];
            const unsigned w = m_next[v];
            if (is_ear(u, v, w)) {
                if (reversed)
                    result.insert(result.end(), {m_order[w], m_order[v], m_order[u]});
                else
                    result.insert(result.end(), {m_order[u], m_order[v], m_order[w]});
                remove(v);
                count = 2 * static_cast<long long>(m_remaining);
            }
            u = m_next[u];
        }
    }

private:
    void remove(unsigned v) {
        const unsigned u = m_prev[v];
        const unsigned w = m_next[v];
        m_next[u] = w;
        m_prev[w] = u;
        m_alive[v] = 0;
        --m_remaining;
    }

    bool is_ear(unsigned u, unsigned v, unsigned w) {
        const vector2d& P = m_points[u];
        const vector2d& Q = m_points[v];
        const vector2d& R = m_points[w];
        const double twice_area = cross(Q - P, R - P);
        if (twice_area <= 0.0) return false;
        if (m_remaining == 3) return true;

        const unsigned last = m_blocker[v];
        if (last != none && m_alive[last] && m_blocked_prev[v] == u && m_blocked_next[v] == w)
            return false;

        const unsigned blocker = find_inside(u, v, w, twice_area);
        if (blocker == none) return true;
        m_blocker[v] = blocker;
        m_blocked_prev[v] = u;
        m_blocked_next[v] = w;
        return false;
    }

    // A remaining corner other than u, v, w inside the triangle u, v, w, or none.
    unsigned find_inside(unsigned u, unsigned v, unsigned w, double twice_area) {
        const vector2d& P = m_points[u];
        const vector2d& Q = m_points[v];
        const vector2d& R = m_points[w];
        search_box box;
        if (use_grid(u) && triangle_search_box(P, Q, R, twice_area, box)) {
            unsigned found = none;
            m_grid.find(box, [&](unsigned k) {
                if (!m_alive[k] || k == u || k == v || k == w) return false;
                if (!inside_ccw(m_points[k], P, Q, R)) return false;
                found = k;
                return true;
            });
            return found;
        }
        for (unsigned k = m_next[w]; k != u; k = m_next[k])
            if (inside_ccw(m_points[k], P, Q, R)) return k;
        return none;
    }

    // Whether the grid serves the next query; (re)builds it from the ring through `start` when
    // it is missing or more than half of its corners are gone.
    bool use_grid(unsigned start) {
        if (!m_grid_allowed || m_remaining < grid_threshold) return false;
        if (m_grid.size() == 0 || 2 * m_remaining < m_grid.size())
            m_grid.build(m_points, m_next, start, m_remaining);
        return true;
    }

    const std::vector<unsigned>& m_order;
    std::vector<vector2d> m_points;
    std::vector<unsigned> m_prev;
    std::vector<unsigned> m_next;
    std::vector<unsigned char> m_alive;
    std::vector<unsigned> m_blocker;  // the corner that last kept this one from being an ear
    std::vector<unsigned> m_blocked_prev;
    std::vector<unsigned> m_blocked_next;
    std::size_t m_remaining;
    bool m_grid_allowed = true;
    corner_grid m_grid;
};

}  // namespace

void triangulate(const std::vector<vector2<double>>& contour, std::vector<unsigned>& result) {
    FACET_CHECK(contour.size() < std::numeric_limits<unsigned>::max());
    const bool reversed = !(area(contour) > 0.0);
    const std::vector<unsigned> order =
        drop_collinear_points(contour, drop_repeated_points(contour, reversed));
    if (order.size() < 3) return;
    ear_clipper(contour, order).run(reversed, result);
}
