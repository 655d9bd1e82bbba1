// Internal helpers of the ear clipper: the exact point-in-triangle test shared with the public
// inside_triangle, a uniform grid over the remaining corners of the outline, and the search box
// that bounds where that test can succeed despite rounding.
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

/// An axis-aligned box, bounds included.
struct search_box {
    double xlo, ylo, xhi, yhi;
};

/// Coordinates up to this magnitude keep every cross product of inside_ccw free of overflow,
/// which the rounding bound of triangle_search_box relies on.
inline constexpr double grid_coordinate_limit = 0x1p400;

/// A box outside which inside_ccw(p, P, Q, R), as computed in floating point, is false for
/// every point p with coordinates within ±grid_coordinate_limit. `twice_area` is the computed
/// cross(Q − P, R − P), positive. Returns false when the triangle is too thin for the rounding
/// bound to give a useful box; the caller must then test every point.
bool triangle_search_box(const vector2d& P, const vector2d& Q, const vector2d& R, double twice_area,
                         search_box& box);

/// A uniform grid of about one cell per corner over a set of corners (ids into a point array),
/// stored as flat cell lists. Corners are not removed from it; the caller skips dead ones and
/// rebuilds the grid when enough have died.
class corner_grid {
public:
    /// Indexes the corners of the ring that starts at `first` and follows `next`, `count` of
    /// them. All their coordinates must be finite.
    void build(const std::vector<vector2d>& points, const std::vector<unsigned>& next,
               unsigned first, std::size_t count);

    /// The number of corners indexed by the last build.
    std::size_t size() const { return m_items.size(); }

    /// Calls visit(id) for every indexed corner whose cell overlaps `box` (so at least for every
    /// corner inside the box) until visit returns true; returns whether it did.
    template <class Visit>
    bool find(const search_box& box, Visit visit) const {
        const int ix0 = cell_x(box.xlo);
        const int ix1 = cell_x(box.xhi);
        const int iy0 = cell_y(box.ylo);
        const int iy1 = cell_y(box.yhi);
        for (int iy = iy0; iy <= iy1; ++iy) {
            const std::size_t row = static_cast<std::size_t>(iy) * static_cast<std::size_t>(m_nx);
            const unsigned* begin = m_items.data() + m_start[row + ix0];
            const unsigned* end = m_items.data() + m_start[row + ix1 + 1];
            for (const unsigned* it = begin; it != end; ++it)
                if (visit(*it)) return true;
        }
        return false;
    }

private:
    // Both mappings are monotone in their argument (a rounded subtraction and a rounded product
    // with a non-negative factor, then clamped), so a value between two bounds never falls into
    // a cell outside the bounds' cells.
    int cell_x(double x) const { return cell(x, m_x0, m_sx, m_nx); }
    int cell_y(double y) const { return cell(y, m_y0, m_sy, m_ny); }
    static int cell(double v, double origin, double scale, int count) {
        const double d = (v - origin) * scale;
        if (!(d > 0.0)) return 0;
        if (d >= static_cast<double>(count)) return count - 1;
        return static_cast<int>(d);
    }

    double m_x0 = 0.0, m_y0 = 0.0;
    double m_sx = 0.0, m_sy = 0.0;
    int m_nx = 1, m_ny = 1;
    std::vector<unsigned> m_start;  // cell c holds m_items[m_start[c] .. m_start[c + 1])
    std::vector<unsigned> m_items;  // corner ids, row by row (y major), cell by cell
};

}  // namespace facet::plane_detail
