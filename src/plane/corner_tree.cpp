// The k-d tree of the ear clipper.
//
// A subtree is skipped only when inside_ccw, as computed in floating point, provably fails for
// every corner in it: the search returns the same yes/no answer as testing every corner. Two
// tests prove it, each for one edge of the triangle at a time.
//
// The box test is exact. The first cross product of inside_ccw(p, a, b, c) is computed as
// fl(fl(e.x · fl(p.y − b.y)) − fl(e.y · fl(p.x − b.x))) with e = c − b fixed. Every operation is
// correctly rounded and rounding is monotone, so the computed value never decreases when p.y
// grows (for e.x ≥ 0) or shrinks (for e.x < 0), nor when p.x shrinks (for e.y ≥ 0) or grows
// (for e.y < 0). Over a bounding box it is therefore largest, as computed, at the corner chosen
// by the signs of e; when that value is negative the test fails for every point in the box. (A
// NaN only makes a point fail, and a NaN at the corner proves nothing.) Likewise for the other
// two edges.
//
// The capsule test bounds rounding errors instead; it is used only when every coordinate is at
// most S = 2^400 in magnitude, so nothing overflows. With u = 2^-53, an edge function
// f(p) = e × (p − b) computed in that order is within 4.0001·u·(|e.x·(p.y − b.y)| +
// |e.y·(p.x − b.x)|) + 2^-1073 ≤ 40·u·S² + 2^-1000 =: G of its exact value (the last term
// covers underflow). A node's capsule is a segment a–b between two of its corners and a radius
// that bounds, with margin for rounding, the exact distance of each corner to the segment
// (measured to the rounded foot point, which is within 16·u·S of an exact point of the segment).
// The exact f is affine, so over the capsule it is at most max(f(a), f(b)) + |e|·radius, and
// f(a) ≤ computed f(a) + G. If the computed max(f(a), f(b)) + |e|·radius + 3·G is negative (the
// third G absorbing the rounding of this sum), every corner has exact f < −G, so its computed
// f is negative and the test fails for it.
#include "plane/corner_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace facet::plane_detail {

namespace {

constexpr unsigned leaf_size = 16;
constexpr double unit_roundoff = 0x1p-53;
constexpr double capsule_coordinate_limit = 0x1p400;
constexpr double infinity = std::numeric_limits<double>::infinity();

}  // namespace

struct corner_tree::edge {
    vector2d from, to, e;
    double length;  // |e|, rounded up

    edge(const vector2d& from_, const vector2d& to_)
        : from(from_), to(to_), e(to_ - from_), length(e.length() * (1.0 + 0x1p-40)) {}
};

bool corner_tree::box_outside(const node& n, const edge& edge) const {
    const vector2d corner(edge.e.y >= 0.0 ? n.xmin : n.xmax, edge.e.x >= 0.0 ? n.ymax : n.ymin);
    return cross(edge.e, corner - edge.from) < 0.0;
}

bool corner_tree::capsule_outside(const node& n, const edge& edge) const {
    const double bound = -(n.radius * edge.length + 3.0 * m_error);
    return cross(edge.e, n.a - edge.from) < bound && cross(edge.e, n.b - edge.from) < bound;
}

void corner_tree::clear() {
    for (const item& it : m_items) m_leaf_of[it.id] = none;
    m_items.clear();
    m_unbounded.clear();
    m_nodes.clear();
    m_built = 0;
}

void corner_tree::build(const std::vector<vector2d>& points, const std::vector<unsigned>& next,
                        unsigned first, std::size_t count) {
    clear();
    if (m_leaf_of.size() < points.size()) m_leaf_of.assign(points.size(), none);

    m_scale = 0.0;
    unsigned id = first;
    for (std::size_t i = 0; i < count; ++i, id = next[id]) {
        const vector2d& p = points[id];
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            m_items.push_back({p, id});
            m_scale = std::max(m_scale, std::max(std::fabs(p.x), std::fabs(p.y)));
        } else {
            m_unbounded.push_back(id);
        }
    }
    m_built = count;
    m_capsules = m_scale <= capsule_coordinate_limit;
    m_error = 40.0 * unit_roundoff * m_scale * m_scale + 0x1p-1000;
    if (!m_items.empty()) {
        m_nodes.reserve(2 * (m_items.size() / leaf_size + 1));
        build_node(0, static_cast<unsigned>(m_items.size()), none);
    }
}

unsigned corner_tree::build_node(unsigned begin, unsigned end, unsigned parent) {
    const auto index = static_cast<unsigned>(m_nodes.size());
    node n{};
    unsigned xlow = begin, xhigh = begin, ylow = begin, yhigh = begin;
    for (unsigned i = begin + 1; i < end; ++i) {
        const vector2d& p = m_items[i].p;
        if (p.x < m_items[xlow].p.x) xlow = i;
        if (p.x > m_items[xhigh].p.x) xhigh = i;
        if (p.y < m_items[ylow].p.y) ylow = i;
        if (p.y > m_items[yhigh].p.y) yhigh = i;
    }
    n.xmin = m_items[xlow].p.x;
    n.xmax = m_items[xhigh].p.x;
    n.ymin = m_items[ylow].p.y;
    n.ymax = m_items[yhigh].p.y;
    const bool split_x = n.xmax - n.xmin >= n.ymax - n.ymin;
    n.begin = begin;
    n.end = end;
    n.right = 0;
    n.parent = parent;
    n.live = end - begin;
    n.radius = infinity;

    const bool leaf = end - begin <= leaf_size;
    if (m_capsules && !leaf) {
        // The segment between the extreme corners along the longer side. The largest squared
        // distance gives the largest distance: the square root is monotone.
        n.a = m_items[split_x ? xlow : ylow].p;
        n.b = m_items[split_x ? xhigh : yhigh].p;
        const vector2d d = n.b - n.a;
        const double dd = dot(d, d);
        double farthest = 0.0;
        for (unsigned i = begin; i < end; ++i) {
            const vector2d& p = m_items[i].p;
            double t = dd > 0.0 ? dot(p - n.a, d) / dd : 0.0;
            t = t > 0.0 ? std::min(t, 1.0) : 0.0;
            const vector2d off = p - (n.a + d * t);
            farthest = std::max(farthest, off.x * off.x + off.y * off.y);
        }
        n.radius =
            std::sqrt(farthest) * (1.0 + 0x1p-40) + 16.0 * unit_roundoff * m_scale + 0x1p-500;
    }
    m_nodes.push_back(n);

    if (leaf) {
        for (unsigned i = begin; i < end; ++i) m_leaf_of[m_items[i].id] = index;
        return index;
    }
    const unsigned mid = begin + (end - begin) / 2;
    std::nth_element(m_items.begin() + begin, m_items.begin() + mid, m_items.begin() + end,
                     [split_x](const item& a, const item& b) {
                         return split_x ? a.p.x < b.p.x : a.p.y < b.p.y;
                     });
    build_node(begin, mid, index);
    const unsigned right = build_node(mid, end, index);
    m_nodes[index].right = right;
    return index;
}

void corner_tree::kill(unsigned id) {
    if (id >= m_leaf_of.size()) return;
    for (unsigned n = m_leaf_of[id]; n != none; n = m_nodes[n].parent) --m_nodes[n].live;
    m_leaf_of[id] = none;
}

unsigned corner_tree::find_inside(const std::vector<vector2d>& points,
                                  const std::vector<unsigned char>& alive, unsigned u, unsigned v,
                                  unsigned w) const {
    const vector2d& a = points[u];
    const vector2d& b = points[v];
    const vector2d& c = points[w];
    const auto candidate = [&](unsigned k, const vector2d& p) {
        return alive[k] && k != u && k != v && k != w && inside_ccw(p, a, b, c);
    };
    for (const unsigned k : m_unbounded)
        if (candidate(k, points[k])) return k;
    if (m_nodes.empty()) return none;

    // The edges in the order inside_ccw tests them.
    const edge edges[3] = {edge(b, c), edge(c, a), edge(a, b)};
    // Depth-first; the tree is balanced, so its depth stays far below the stack size.
    unsigned stack[128];
    std::size_t top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const unsigned index = stack[--top];
        const node& n = m_nodes[index];
        if (n.live == 0) continue;
        if (box_outside(n, edges[0]) || box_outside(n, edges[1]) || box_outside(n, edges[2]))
            continue;
        if (n.right == 0) {
            for (unsigned i = n.begin; i < n.end; ++i)
                if (candidate(m_items[i].id, m_items[i].p)) return m_items[i].id;
            continue;
        }
        if (m_capsules && (capsule_outside(n, edges[0]) || capsule_outside(n, edges[1]) ||
                           capsule_outside(n, edges[2])))
            continue;
        stack[top++] = n.right;
        stack[top++] = index + 1;
    }
    return none;
}

}  // namespace facet::plane_detail
