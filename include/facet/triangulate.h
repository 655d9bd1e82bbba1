// Ear-clipping triangulation of simple polygons given as closed outlines of vector2<double>
// points (the last point connects back to the first).
//
// Below, cross(a, b) = a.x·b.y − a.y·b.x. All comparisons are exact (no epsilon) except the
// collinearity clean-up of triangulate(), which uses the fixed tolerance 0.0001.
#pragma once

#include <vector>

#include "facet/export.h"
#include "facet/geometry.h"

/// The signed area of the outline: 0.5 · the sum over i of cross(contour[i−1], contour[i])
/// (with contour[−1] the last point), summed in order from i = 0. Positive for a
/// counter-clockwise outline (y up); 0 for fewer than 3 points.
FACET_API double area(const std::vector<vector2<double>>& contour);

/// Whether p lies in the triangle a, b, c, taken counter-clockwise: cross(c − b, p − b) ≥ 0,
/// cross(a − c, p − c) ≥ 0 and cross(b − a, p − a) ≥ 0, tested in that order. Points on an edge
/// or a corner count as inside; a NaN cross product counts as outside.
FACET_API bool inside_triangle(const vector2<double>& p, const vector2<double>& a,
                               const vector2<double>& b, const vector2<double>& c);

/// Whether the corner at position v of the index list V is an ear of the outline: with
/// P = contour[V[u]], Q = contour[V[v]], R = contour[V[w]], the turn P → Q → R is strictly
/// counter-clockwise (cross(Q − P, R − P) > 0, no epsilon; a NaN passes this step) and no
/// point contour[V[k]] at another position k of V (compared as positions, so a point at
/// another position with the same coordinates as a corner blocks the ear) is
/// inside_triangle(…, P, Q, R). u, v and w must be positions in V and every index in V a
/// position in contour (checked preconditions).
FACET_API bool is_ear(const std::vector<vector2<double>>& contour, const std::vector<unsigned>& V,
                      unsigned u, unsigned v, unsigned w);

/// Triangulates the outline by ear clipping and appends the triangles to `result`, three
/// indices into `contour` each, keeping the winding of the outline (counter-clockwise input
/// gives counter-clockwise triangles, clockwise input clockwise ones; an outline whose signed
/// area is not positive is walked in reverse). `result` is not cleared.
///
/// Before clipping, points equal to the point before them are dropped (a closing point equal to
/// the first point makes the first one drop), then every corner whose edges continue straight
/// on or double back (| |cos| − 1 | below 0.0001 between the unit edge directions). A point with
/// a NaN or infinite coordinate is dropped with both its neighbours. Outlines left with fewer
/// than 3 points yield nothing and no error.
///
/// The first candidate ear has its tip at the first remaining corner; the walk goes on along
/// the outline. After 2·n consecutive corners that are not ears (n the corners left), throws
/// std::runtime_error("Triangulation error: bad polygon"), which is how self-intersecting
/// outlines usually end. The triangles found before the error stay appended to `result`.
///
/// The result equals that of the textbook loop (test every remaining point against every
/// candidate ear, erase clipped corners from an array), but corners known to fail are skipped
/// and a spatial index over the remaining corners answers the inside test, which makes the cost
/// near-linear (n log n) for ordinary outlines. The outline may hold at most 2^32 − 2 points
/// (checked precondition).
///
/// Thread-safe: each thread has its own working memory, which it keeps between calls (about
/// 120 bytes per point of the largest outline it has triangulated), so that repeated calls
/// neither allocate nor touch fresh pages. `result` grows at most once per call.
FACET_API void triangulate(const std::vector<vector2<double>>& contour,
                           std::vector<unsigned>& result);
