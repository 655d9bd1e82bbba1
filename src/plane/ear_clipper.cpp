// The clipping loop of triangulate().
//
// Its output is that of the textbook loop over an index array: positions u, v, w with
// u = v mod nv after every test, the middle position erased when it is an ear, a failure
// counter reset to 2·nv after every ear and an error when it runs out. In that loop the next u
// is always the corner after the current u in the remaining outline (after a failure it is the
// old v; after an erase it is the old w, also when v was the last position and the index wraps
// to 0). So the remaining outline is kept as a ring of prev/next links over the corners 0..n−1
// of the cleaned-up outline, in outline order, and the loop is a walk along the ring testing
// the corner after u as the middle of an ear.
//
// Most tests along that walk repeat an earlier failure: a corner whose turn is not counter-
// clockwise stays so until a neighbour is clipped, and a corner with another corner inside its
// triangle stays blocked until a neighbour is clipped or that corner is. Corners whose outcome
// is not known to be a failure are kept in a set of candidates, and the walk jumps straight to
// the next one. A corner leaves the candidates when its test fails and comes back only when a
// neighbour or its blocking corner is clipped. So between two ears the set only shrinks and the
// walk passes each corner at most once: the textbook loop's counter (2·nv tests) cannot run out
// while a candidate is left, and once none is left every test until it runs out fails. The
// error is therefore thrown as soon as the set is empty, after the same triangles.
//
// The test "is any other remaining corner inside the ear" walks a list of the remaining corners
// in z-order over a box that provably holds every corner that could pass (see
// z_order_list.cpp). For almost flat ears, or when the box's range of the list holds too many
// corners, it searches a k-d tree over the remaining corners that prunes only boxes where the
// exact test provably fails (see corner_tree.cpp); the tree is built only when first needed.
#include "plane/ear_clipper.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace facet::plane_detail {

namespace {

constexpr unsigned none = std::numeric_limits<unsigned>::max();

// Below this many remaining corners a plain scan is cheaper than the tree.
constexpr std::size_t tree_threshold = 24;

// The most corners the z-order list meets in one search before it hands the ear to the tree.
constexpr unsigned list_budget = 128;

// The most ears in a row the tree answers alone after the list could not.
constexpr unsigned max_list_pause = 1024;

[[noreturn]] void bad_polygon() { throw std::runtime_error("Triangulation error: bad polygon"); }

}  // namespace

void ear_clipper::start(const std::vector<vector2d>& contour, const std::vector<unsigned>& order) {
    const std::size_t n = order.size();
    m_points.resize(n);
    m_prev.resize(n);
    m_next.resize(n);
    m_alive.assign(n, 1);
    m_blocker.assign(n, none);
    m_blocked_head.assign(n, none);
    m_blocked_pool.clear();
    for (std::size_t i = 0; i < n; ++i) {
        m_points[i] = contour[order[i]];
        m_prev[i] = static_cast<unsigned>(i == 0 ? n - 1 : i - 1);
        m_next[i] = static_cast<unsigned>(i + 1 == n ? 0 : i + 1);
    }
    m_candidates.fill(n);
    m_remaining = n;
    m_tree.clear();
    m_listed = n >= tree_threshold && m_list.build(m_points);
    m_list_pause = 0;
    m_list_backoff = 1;
}

void ear_clipper::run(const std::vector<vector2d>& contour, const std::vector<unsigned>& order,
                      bool reversed, std::vector<unsigned>& result) {
    start(contour, order);
    // The textbook loop starts with u at the last corner, so the first middle is corner 0.
    unsigned next = 0;
    while (m_remaining >= 3) {
        const std::size_t found = m_candidates.find_cyclic(next);
        if (found == id_set::npos) bad_polygon();
        const auto m = static_cast<unsigned>(found);
        const unsigned u = m_prev[m];
        const unsigned w = m_next[m];
        if (is_ear(u, m, w)) {
            if (reversed) {
                result.push_back(order[w]);
                result.push_back(order[m]);
                result.push_back(order[u]);
            } else {
                result.push_back(order[u]);
                result.push_back(order[m]);
                result.push_back(order[w]);
            }
            clip(m);
            next = m_next[w];
        } else {
            next = m_next[m];
        }
    }
}

// The ear test of the corners u, v, w (consecutive in the ring). On failure v leaves the
// candidates, and a corner found inside is remembered as its blocker.
bool ear_clipper::is_ear(unsigned u, unsigned v, unsigned w) {
    const vector2d& P = m_points[u];
    const vector2d& Q = m_points[v];
    const vector2d& R = m_points[w];
    const double twice_area = cross(Q - P, R - P);
    if (twice_area <= 0.0) {
        m_candidates.erase(v);
        return false;
    }
    if (m_remaining == 3) return true;
    const unsigned blocker = find_inside(u, v, w, twice_area);
    if (blocker == none) return true;
    m_candidates.erase(v);
    m_blocker[v] = blocker;
    m_blocked_pool.push_back({v, m_blocked_head[blocker]});
    m_blocked_head[blocker] = static_cast<unsigned>(m_blocked_pool.size() - 1);
    return false;
}

// A remaining corner other than u, v, w inside the triangle u, v, w, or none.
unsigned ear_clipper::find_inside(unsigned u, unsigned v, unsigned w, double twice_area) {
    if (m_remaining >= tree_threshold) {
        if (m_listed && m_list_pause == 0) {
            const unsigned found = m_list.find_inside(m_points, u, v, w, twice_area, list_budget);
            if (found != z_order_list::unknown) {
                m_list_backoff = std::max(m_list_backoff / 2, 1u);
                return found;
            }
            // Ears the list cannot answer tend to come in runs (large ears late in a comb):
            // after each one the list rests twice as many ears as after the one before, up to
            // a limit; each ear it answers halves the next rest.
            m_list_pause = m_list_backoff;
            m_list_backoff = std::min(2 * m_list_backoff, max_list_pause);
        } else if (m_list_pause > 0) {
            --m_list_pause;
        }
        // (Re)built from the ring when missing or when more than a quarter of its corners are
        // gone (dead corners widen the boxes of the leaves that still hold live ones).
        if (m_tree.size() == 0 || 4 * m_remaining < 3 * m_tree.size())
            m_tree.build(m_points, m_next, u, m_remaining);
        const unsigned found = m_tree.find_inside(m_points, m_alive, u, v, w);
        return found == corner_tree::none ? none : found;
    }
    const vector2d& P = m_points[u];
    const vector2d& Q = m_points[v];
    const vector2d& R = m_points[w];
    for (unsigned k = m_next[w]; k != u; k = m_next[k])
        if (inside_ccw(m_points[k], P, Q, R)) return k;
    return none;
}

// Removes the ear tip v from the ring; its neighbours and the corners it blocked become
// candidates again.
void ear_clipper::clip(unsigned v) {
    const unsigned u = m_prev[v];
    const unsigned w = m_next[v];
    m_next[u] = w;
    m_prev[w] = u;
    m_alive[v] = 0;
    if (m_tree.size() != 0) m_tree.kill(v);
    if (m_listed) m_list.remove(v);
    m_candidates.erase(v);
    --m_remaining;
    reconsider(u);
    reconsider(w);
    for (unsigned e = m_blocked_head[v]; e != none; e = m_blocked_pool[e].next) {
        const unsigned corner = m_blocked_pool[e].corner;
        if (m_alive[corner] && m_blocker[corner] == v) reconsider(corner);
    }
    m_blocked_head[v] = none;
}

void ear_clipper::reconsider(unsigned corner) {
    m_blocker[corner] = none;
    m_candidates.insert(corner);
}

}  // namespace facet::plane_detail
