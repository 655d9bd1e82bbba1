// Internal: the remaining corners of the ear clipper in Morton (z-order) order, for the inside
// test of small ears, the common case, without a tree.
#pragma once

#include <cstdint>
#include <vector>

#include "facet/geometry.h"

namespace facet::plane_detail {

/// The corners 0..n−1 of an outline sorted by the Morton code of their coordinates (16 bits per
/// axis over the bounding box of the corners) and linked in that order, remaining corners only.
/// Every corner with coordinates in a box has its code between the codes of the box's lower and
/// upper corners, so the corners in a small box are found by walking the list from a corner
/// inside it. The buffers are kept from one build to the next.
class z_order_list {
public:
    static constexpr unsigned none = ~0u;
    /// find_inside's answer when the walk gave up.
    static constexpr unsigned unknown = ~0u - 1;

    /// Indexes the corners `points` (all remaining). Returns false, leaving the list unusable,
    /// when a coordinate is not finite.
    bool build(const std::vector<vector2d>& points);

    /// Unlinks a corner, which must be linked.
    void remove(unsigned id) {
        const unsigned before = m_corners[id].prev;
        const unsigned after = m_corners[id].next;
        if (before != none) m_corners[before].next = after;
        if (after != none) m_corners[after].prev = before;
        m_skip[m_corners[id].position] = m_corners[id].position + 1;
    }

    /// Like corner_tree::find_inside: a linked corner k other than u, v, w with
    /// inside_ccw(points[k], a, b, c) (a, b, c the points of u, v, w, taken counter-clockwise,
    /// `twice_area` = cross(b − a, c − a) as computed, > 0), or none. Returns `unknown` when the
    /// triangle is too thin to bound safely or the search met more than `budget` corners; the
    /// caller then asks the tree.
    unsigned find_inside(const std::vector<vector2d>& points, unsigned u, unsigned v, unsigned w,
                         double twice_area, unsigned budget);

private:
    struct corner {
        std::uint32_t code;   // the Morton code of its coordinates
        unsigned prev, next;  // its neighbours in code order among the remaining corners
        unsigned position;    // its place in m_sorted
    };
    struct box;

    unsigned search_parts(const std::vector<vector2d>& points, unsigned u, unsigned v, unsigned w,
                          const box& b, unsigned budget);
    std::size_t live_from(std::size_t position);

    std::vector<corner> m_corners;
    std::vector<std::uint64_t> m_sorted, m_swap;  // (code << 32 | id), sorted by code
    // Per place in m_sorted, the place itself when its corner remains, else a place at or
    // before the next remaining one (m_sorted.size() when none remains after it).
    std::vector<unsigned> m_skip;
    double m_xmin = 0.0, m_ymin = 0.0, m_xscale = 0.0, m_yscale = 0.0;
    double m_scale = 0.0;       // the largest coordinate magnitude
    std::uint64_t m_cells = 0;  // the grid cells of the corners' bounding box
};

}  // namespace facet::plane_detail
