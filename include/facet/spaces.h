// Conversions between the spaces of the viewing pipeline.
//
//   world space    the scene's coordinates
//   camera space   the space of camera::get_matrix: the eye at the origin looking along −z
//   screen space   viewport units, x to the right, y downwards, depth as normalised device z
//                  in [−1, 1] (−1 on the near plane, 1 on the far plane)
//
// Every conversion builds its matrices afresh (nothing is cached) and applies the full
// projective transform_vector, division by w included; a point on the eye plane of a
// perspective projector therefore gives infinite coordinates.
//
// Each conversion also has an array form for per-frame work on many points: it builds (and
// inverts) its matrix once per call and gives, point for point, the same bits as the single-
// point form. `out` may be `points` (converted in place); otherwise the arrays must not
// overlap. A count of 0 does nothing and throws nothing. The backward forms throw EMatrix
// before writing anything.
//
// The backward conversions (unproject, camera2worldspace, screen2camera) invert a matrix. When
// it is singular – a camera whose direction or up direction is zero or parallel, a zero-sized
// viewport – they throw EMatrix("Determinant is 0, cannot create inverse") unchanged.
#pragma once
#include <cstddef>

#include "facet/camera.h"
#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/math3d.h"
#include "facet/projector.h"

/// World space to screen space: proj.get_matrix() (viewport · projection) times
/// cam.get_matrix() (view).
FACET_API matrix44d calc_transformation_matrix(const camera& cam, const projector& proj);

/// The screen point of the world point `point`.
FACET_API vector3d project(const vector3d& point, const camera& cam, const projector& proj);

/// The world point of the screen point `point` (x, y in viewport units, z normalised device
/// depth). Throws EMatrix when the world-to-screen matrix is singular.
FACET_API vector3d unproject(const vector3d& point, const camera& cam, const projector& proj);

/// The world point on the far plane under the screen pixel (x, y): unproject of (x, y, 1.0).
/// Throws EMatrix when the world-to-screen matrix is singular.
FACET_API vector3d unproject(int x, int y, const camera& cam, const projector& proj);

/// Camera space to world space by the inverse view matrix. Throws EMatrix when the view matrix
/// is singular (a zero direction or up direction, or the two parallel).
FACET_API vector3d camera2worldspace(const vector3d& point, const camera& cam);

/// World space to camera space by the view matrix.
FACET_API vector3d worldspace2camera(const vector3d& point, const camera& cam);

/// Camera space to screen space by proj.get_matrix().
FACET_API vector3d camera2screen(const vector3d& point, const projector& proj);

/// Screen space to camera space by the inverse of proj.get_matrix(). Throws EMatrix when that
/// matrix is singular (for example a zero-width or zero-height viewport).
FACET_API vector3d screen2camera(const vector3d& point, const projector& proj);

/// The camera moved by the transform m: its position by transform_vector (with the division
/// by w), its direction and up direction by the upper-left 3×3 block, both then normalised by
/// the camera constructor. The result's scene rotation is 0; it is not carried over.
FACET_API camera transform(const camera& cam, const matrix44d& m);

// ---- array forms ------------------------------------------------------------------------------

/// project of points[0 .. count) into out[0 .. count).
FACET_API void project(const vector3d* points, std::size_t count, vector3d* out, const camera& cam,
                       const projector& proj);
/// unproject of points[0 .. count) into out[0 .. count).
FACET_API void unproject(const vector3d* points, std::size_t count, vector3d* out,
                         const camera& cam, const projector& proj);
/// camera2worldspace of points[0 .. count) into out[0 .. count).
FACET_API void camera2worldspace(const vector3d* points, std::size_t count, vector3d* out,
                                 const camera& cam);
/// worldspace2camera of points[0 .. count) into out[0 .. count).
FACET_API void worldspace2camera(const vector3d* points, std::size_t count, vector3d* out,
                                 const camera& cam);
/// camera2screen of points[0 .. count) into out[0 .. count).
FACET_API void camera2screen(const vector3d* points, std::size_t count, vector3d* out,
                             const projector& proj);
/// screen2camera of points[0 .. count) into out[0 .. count).
FACET_API void screen2camera(const vector3d* points, std::size_t count, vector3d* out,
                             const projector& proj);

/// Tolerant comparison of camera directions: true when |a − b| is strictly less than 1e-6
/// (false for a NaN distance).
FACET_API bool equal_cam_dirs(const vector3d& a, const vector3d& b);
