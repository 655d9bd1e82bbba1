// Geometry shared by the extruded-polygon and path-extrusion meshes and bounding boxes: cap
// triangulation with the outline points the caps use, path frames with mitred rings, and the
// assembly of a closed, outward-facing solid from rings of points.
#pragma once

#include <cstdint>
#include <vector>

#include "facet/geometry.h"

namespace facet::detail {

/// A triangulated cap: `kept` lists the outline points (indices into the outline) that the
/// triangles use, in outline order; `triangles` holds three indices into `kept` per triangle,
/// wound as the outline. Empty when fewer than 3 points are left.
struct cap_triangulation {
    std::vector<std::uint32_t> kept;
    std::vector<unsigned> triangles;
};

/// Triangulates the outline with `triangulate` and drops the points it leaves unused
/// (repeated points, straight or doubling-back corners), repeating until every kept point is a
/// corner of some triangle, so that the sides built on the kept points meet the cap edge to
/// edge. Throws the triangulator's std::runtime_error for an outline it cannot cut.
cap_triangulation triangulate_cap(const std::vector<vector2d>& outline);

/// The outline of 3D points projected onto the coordinate plane most square to its Newell
/// normal: x-dominant to (z, y), y-dominant to (x, z), otherwise (x, y) (ties to the earlier).
/// An outline with a zero Newell normal is projected along the axis of its smallest extent.
std::vector<vector2d> project_outline(const std::vector<vector3d>& outline);

/// The rings of a profile (2D points in the profile's x–y plane) swept along a path: one ring
/// per distinct path point (points closer than 1e-12 to the previous kept one are skipped),
/// ring after ring, profile.size() points each. Returns false, leaving `rings` empty, when the
/// path turns straight back on itself; fewer than 2 distinct path points give no rings.
bool sweep_rings(const std::vector<vector2d>& profile, const std::vector<vector3d>& path,
                 std::vector<vector3d>& rings);

/// A closed triangle mesh of rings of m points each (vertex r·m + i is point i of ring r):
/// the cap on the first ring (the triangles as given), the cap on the last ring (reversed), and
/// two triangles per ring edge between consecutive rings. All faces are reversed when the
/// enclosed signed volume comes out negative, so the normals point outwards.
struct closed_solid {
    std::vector<vector3d> vertices;
    std::vector<std::uint32_t> corners;  ///< three vertex indices per face
};
closed_solid assemble_rings(std::vector<vector3d> rings, std::uint32_t m,
                            const std::vector<unsigned>& cap_triangles);

/// The signed volume enclosed by the faces: the sum of p0 · (p1 × p2) / 6 over the faces.
double signed_volume(const std::vector<vector3d>& vertices,
                     const std::vector<std::uint32_t>& corners);

}  // namespace facet::detail
