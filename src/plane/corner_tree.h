// Internal helpers of the ear clipper: the exact point-in-triangle test shared with the public
// inside_triangle, and a k-d tree over the remaining corners of the outline that finds a corner
// passing that test without testing every corner.
#pragma once

#include <cstddef>
#include <vector>

#include "facet/geometry.h"

namespace facet::plane_detail {

/// The point-in-triangle test of inside_triangle, in its exact arithmetic order: edge c − b,
/// then a − c, then b − a; a negative or NaN cross product rejects.
inline bool inside_ccw(const vector2d& p, const vector2d& a, const vector2d& b, const vector2d& c) {
    if (!(cross(c - b, p - b) >= 0.0)) return false;
    if (!(cross(a - c, p - c) >= 0.0)) return false;
    return cross(b - a, p - a) >= 0.0;
}

/// A k-d tree over a set of corners (ids into a point array): nodes split at the median of
/// their longer side, leaves of a few corners. Each node keeps the bounding box of its corners,
/// a capsule around them (a segment and a distance, which hugs corners strung along a curve far
/// better than a box), and the number of corners still alive under it. Corners with a
/// non-finite coordinate are kept in a list that every search scans.
class corner_tree {
public:
    static constexpr unsigned none = ~0u;

    /// Indexes the `count` corners of the ring that starts at `first` and follows `next`.
    void build(const std::vector<vector2d>& points, const std::vector<unsigned>& next,
               unsigned first, std::size_t count);

    /// Empties the tree: size() becomes 0 and kill() ignores every id until the next build. The
    /// buffers are kept.
    void clear();

    /// The number of corners indexed by the last build (dead ones included).
    std::size_t size() const { return m_built; }

    /// Marks a corner dead, so that searches skip subtrees without live corners. Ids outside
    /// the tree are ignored.
    void kill(unsigned id);

    /// A live corner k, other than u, v and w, for which inside_ccw(points[k], a, b, c) holds
    /// (a, b, c the points of u, v, w), or `none` when there is no such corner. Which one is
    /// returned when several qualify is unspecified. u, v, w must have been live at the build.
    unsigned find_inside(const std::vector<vector2d>& points,
                         const std::vector<unsigned char>& alive, unsigned u, unsigned v,
                         unsigned w) const;

private:
    struct node {
        double xmin, ymin, xmax, ymax;  // the bounding box of the node's corners
        vector2d a, b;                  // the capsule: every corner lies within
        double radius;                  //   `radius` of the segment a–b
        unsigned begin, end;            // its corners: m_items[begin .. end)
        unsigned right;                 // the right child (the left one follows the node), or 0
        unsigned parent;                // the parent node, or none for the root
        unsigned live;                  // live corners under the node
    };

    struct edge;
    bool box_outside(const node& n, const edge& e) const;
    bool capsule_outside(const node& n, const edge& e) const;

    unsigned build_node(unsigned begin, unsigned end, unsigned parent);

    struct item {
        vector2d p;
        unsigned id;
    };

    std::vector<node> m_nodes;
    std::vector<item> m_items;          // the corners, grouped by leaf
    std::vector<unsigned> m_unbounded;  // corners with a non-finite coordinate
    std::vector<unsigned> m_leaf_of;    // per corner id, its leaf node, or none
    std::size_t m_built = 0;
    bool m_capsules = false;  // whether the coordinates allow the capsule test
    double m_scale = 0.0;     // the largest coordinate magnitude of the indexed corners
    double m_error = 0.0;     // a bound on the rounding error of an edge function
};

}  // namespace facet::plane_detail
