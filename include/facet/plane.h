// Plane geometry: infinite lines in implicit form, segments, their intersections and distances,
// compass angles, the ground-plane projection of a 3D point, and polygon operations (offsetting,
// containment, bounds).
//
// Points and directions are geometry::vector<double, 2>. Every intersection test uses the fixed
// tolerance 1e-6. Angles are in degrees. Polygons are std::vector<geometry::vector<double, 2>>,
// closed implicitly (the last point connects to the first).
//
// Nothing here guards against NaN or infinite coordinates: they propagate through the
// arithmetic and make comparisons fail as IEEE comparisons do.
#pragma once

#include <vector>

#include "facet/export.h"
#include "facet/geometry.h"

namespace geometry {

/// The line a·x + b·y + c = 0. After construction (a, b) is the unit normal unless
/// `degenerate` is set, so that a·x + b·y + c is the signed distance of (x, y) from the line,
/// positive on the side the normal points to.
struct FACET_API line {
    double a = 1.0;           ///< x coefficient; (a, b) is the normal
    double b = 0.0;           ///< y coefficient
    double c = 0.0;           ///< constant term
    bool degenerate = false;  ///< set by normalize() when a and b are both 0

    /// The line x = 0 (a = 1, b = 0, c = 0).
    line() = default;

    /// Stores a, b, c, clears `degenerate`, then normalize().
    line(double a, double b, double c);

    /// The line through p1 and p2, normalised; its normal points to the right of the direction
    /// p1 → p2 (y up). Equal points give a degenerate line.
    line(const vector<double, 2>& p1, const vector<double, 2>& p2);

    /// Scales a, b, c by 1 / sqrt(a² + b²) and clears `degenerate`; when a and b are both
    /// exactly 0, sets `degenerate` and leaves the coefficients unchanged.
    void normalize();

    /// c := c − (a² + b²)·d: moves a normalised line by d along its normal.
    void offset(double d);

    /// The signed distance a·p.x + b·p.y + c (not made absolute).
    double distance(const vector<double, 2>& p) const;

    /// The foot of the perpendicular from p: p − (a, b)·distance(p).
    vector<double, 2> project(const vector<double, 2>& p) const;

    /// (a, b).
    vector<double, 2> get_normal() const;

    /// (−b, a).
    vector<double, 2> get_direction() const;

    /// −(a·x + c) / b; no guard, a vertical line (b = 0) gives an infinity or NaN.
    double get_y(double x) const;

    /// −(b·y + c) / a; no guard, a horizontal line (a = 0) gives an infinity or NaN.
    double get_x(double y) const;
};

/// The segment from p1 to p2. Default: (0, 0) to (1, 0).
struct FACET_API line_segment {
    vector<double, 2> p1{0.0, 0.0};
    vector<double, 2> p2{1.0, 0.0};

    line_segment() = default;
    line_segment(const vector<double, 2>& p1, const vector<double, 2>& p2);

    void set_p1(const vector<double, 2>& p);
    void set_p2(const vector<double, 2>& p);
    vector<double, 2> get_p1() const;
    vector<double, 2> get_p2() const;

    /// |p2 − p1|.
    double length() const;

    /// The unit vector from p1 to p2. Throws bad_normalization when the segment is shorter
    /// than 1e-9.
    vector<double, 2> get_direction() const;

    /// The distance from p to the nearest point of the segment (to p1 when p1 = p2).
    double get_distance(const vector<double, 2>& p) const;
};

/// Intersects two lines. Returns false, leaving `out` untouched, when the lines are parallel
/// (|l1.a·l2.b − l1.b·l2.a| < 1e-6) or either is degenerate; otherwise writes the meeting
/// point to `out` and returns true. Never throws.
FACET_API bool intersection(const line& l1, const line& l2, vector<double, 2>& out);

/// The meeting point of two lines. Throws std::runtime_error("intersection of parallel lines")
/// when the lines are parallel or either is degenerate.
FACET_API vector<double, 2> intersection(const line& l1, const line& l2);

/// Intersects two segments: true when their lines meet at a point closer than 1e-6 to both
/// segments. `out` receives the meeting point of the lines whenever they are not parallel,
/// also when the result is false. Zero-length segments never intersect. Never throws.
FACET_API bool intersection(const line_segment& s1, const line_segment& s2, vector<double, 2>& out);

/// Intersects a line with a segment: true when they meet at a point closer than 1e-6 to the
/// segment. `out` receives the meeting point whenever the line and the segment's line are not
/// parallel, also when the result is false. Never throws.
FACET_API bool intersection(const line& l, const line_segment& s, vector<double, 2>& out);

/// The shortest distance between two segments: 0 when they intersect (as above), otherwise the
/// smallest of the four end-point-to-segment distances.
FACET_API double shortest_distance(const line_segment& s1, const line_segment& s2);

/// The point of segment s nearest to p. Throws bad_normalization when s is shorter than 1e-9.
FACET_API vector<double, 2> closest_point_on_line_segment(const line_segment& s,
                                                          const vector<double, 2>& p);

/// The compass angle of a direction in degrees, in [−180, 180], measured clockwise from +x
/// (y up): atan2(−y, x) in degrees. (0, 0) gives 0; (−1, +0) gives −180, (−1, −0) gives 180.
FACET_API double global_angle(const vector<double, 2>& direction);

/// The ground-plane projection of a 3D point: (v.x, v.z); y is dropped.
FACET_API vector<double, 2> project(const vector3<double>& v);

// ---- polygons ------------------------------------------------------------------------------

/// Offsets every edge of the polygon by `distance` along its right-hand normal (y up), with
/// sharp mitred corners and no mitre limit: a positive distance grows a counter-clockwise
/// polygon and shrinks a clockwise one. Point i of the result is the corner belonging to input
/// point i; the point count is unchanged. Throws std::runtime_error("intersection of parallel
/// lines") when two consecutive edges are parallel (collinear points, spikes) or an edge has
/// zero length, and the polygon is then left unchanged (also for fewer than 3 points, which
/// always throw). An empty polygon is left empty.
FACET_API void inflate_polygon(std::vector<vector<double, 2>>& polygon, double distance);

/// Whether p lies inside the polygon by the crossing rule (even-odd, so self-intersecting
/// outlines work too). The edge tests are half-open in y, so a crossing at a vertex is counted
/// once; a point exactly on a left edge counts as inside, on a right edge as outside. False for
/// an empty polygon. Never fails.
FACET_API bool point_in_polygon(const std::vector<vector<double, 2>>& polygon,
                                const vector<double, 2>& p);

/// The axis-aligned bounds of the polygon's points: `min_point` receives the smallest x and
/// the smallest y, `max_point` the largest. NaN coordinates are ignored. Returns true when
/// both axes received at least one coordinate. Otherwise (an empty polygon, or one whose x or
/// y values are all NaN) returns false, and the axes without a coordinate are set to the empty
/// interval [+∞, −∞], which contains nothing and is neutral when bounds are merged.
FACET_API bool get_bounds(const std::vector<vector<double, 2>>& polygon,
                          vector<double, 2>& min_point, vector<double, 2>& max_point);

/// The bounds as above, grown by `distance` on every side (min − distance, max + distance);
/// a negative distance shrinks them and may leave min > max. Empty axes stay empty. Returns
/// the same as the overload without a distance.
FACET_API bool get_bounds(const std::vector<vector<double, 2>>& polygon,
                          vector<double, 2>& min_point, vector<double, 2>& max_point,
                          double distance);

}  // namespace geometry
