// Transformation matrices and 3D queries.
//
// Conventions: matrix<double, 4, 4> is column-major, column vectors are multiplied from the left
// (p' = M·p), a translation lives in column 3, and angles are in degrees unless a function says
// otherwise. Builders take their output matrix last and overwrite it; appenders take the matrix
// first and post-multiply it in place (M := M·B, so B acts on a vector first).
//
// Nothing here reports division by zero: zero-sized volumes, equal near and far planes, a zero
// rotation axis or w = 0 in transform_vector give infinities or NaN in the result. The only
// error is inverse() of a matrix whose determinant is exactly zero.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "facet/export.h"
#include "facet/geometry.h"

/// The matrix exception; thrown only by inverse() with "Determinant is 0, cannot create inverse".
class FACET_API EMatrix : public std::runtime_error {
public:
    explicit EMatrix(const std::string& message) : std::runtime_error(message) {}
};

// ---- builders --------------------------------------------------------------------------------

/// The view matrix of an eye at `eye` looking along the direction `dir` (not a target point)
/// with `up` as the up hint. The camera looks along −z of its space, +y up, +x right. When
/// `dir` is parallel to `up` (or zero), rows 0 and 1 come out zero; no error is raised.
FACET_API void calc_view_matrix(const vector3d& eye, const vector3d& dir, const vector3d& up,
                                matrix44d& m);

/// Perspective projection from a horizontal field of view `fov` (degrees), aspect ratio
/// width / height, and near and far distances. Every element not set is zero.
FACET_API void calc_perspective_matrix(double fov, double aspect, double near_distance,
                                       double far_distance, matrix44d& m);

/// Perspective projection of the frustum left, right, bottom, top on the near plane.
FACET_API void calc_perspective_matrix(double left, double right, double bottom, double top,
                                       double near_distance, double far_distance, matrix44d& m);

/// Orthographic projection of a volume `width` × `height` centred on the view axis.
FACET_API void calc_ortho_matrix(double width, double height, double near_distance,
                                 double far_distance, matrix44d& m);

/// Orthographic projection of the box left..right, bottom..top, near..far.
FACET_API void calc_ortho_matrix(double left, double right, double bottom, double top,
                                 double near_distance, double far_distance, matrix44d& m);

/// Maps normalised device x in [−1, 1] to [x, x + width] and y in [−1, 1] to [y + height, y]
/// (pixels; screen y grows downwards, (x, y) is the top-left corner); depth passes unchanged.
FACET_API void calc_viewport_matrix(double x, double y, double width, double height, matrix44d& m);

/// The identity with (tx, ty, tz) in column 3.
FACET_API void make_translation_matrix(matrix44d& m, double tx, double ty, double tz);

/// diag(sx, sy, sz, 1).
FACET_API void make_scaling_matrix(matrix44d& m, double sx, double sy, double sz);

/// Rotation by `angle` degrees about the axis (ax, ay, az), right-handed (counter-clockwise
/// seen from the axis tip). The axis need not be unit length; a zero axis yields NaN.
FACET_API void make_rotation_matrix(matrix44d& m, double angle, double ax, double ay, double az);

// ---- appenders -------------------------------------------------------------------------------

/// m := m · translation(tx, ty, tz); only column 3 changes.
FACET_API void append_translation(matrix44d& m, double tx, double ty, double tz);

/// m := m · rotation(angle degrees, axis).
FACET_API void append_rotation(matrix44d& m, double angle, double ax, double ay, double az);

/// Scales columns 0, 1, 2 of rows 0 to 2 by sx, sy, sz. Row 3 is left unscaled, so for a
/// matrix whose row 3 is not (0, 0, 0, 1) this differs from a product with a scaling matrix.
FACET_API void append_scaling(matrix44d& m, double sx, double sy, double sz);

// ---- transforming ----------------------------------------------------------------------------

/// The projective image of the point p: (M·(p, 1)).xyz / w, the division always performed
/// (w = 0 gives infinities). `out` may be `p`.
FACET_API void transform_vector(const matrix44d& m, const vector3d& p, vector3d& out);
FACET_API vector3d transform_vector(const matrix44d& m, const vector3d& p);
/// transform_vector of `count` points: out[i] is transform_vector(m, in[i]), bit for bit. `out`
/// may be `in` (transformed in place); otherwise the two arrays must not overlap. Does nothing
/// when `count` is 0, when `in` and `out` may be null.
FACET_API void transform_vectors(const matrix44d& m, const vector3d* in, std::size_t count,
                                 vector3d* out);

/// The upper-left 3×3 block times the direction v; no translation, no division.
FACET_API void transform_vector_3x3(const matrix44d& m, const vector3d& v, vector3d& out);
FACET_API vector3d transform_vector_3x3(const matrix44d& m, const vector3d& v);

// ---- algebra ---------------------------------------------------------------------------------

/// The determinant by Laplace expansion along columns 0 and 1.
FACET_API double determinant(const matrix44d& m);

/// The inverse as adjugate / determinant, each cofactor expanded explicitly (no pivoting), so
/// results are reproducible element by element. Throws EMatrix("Determinant is 0, cannot
/// create inverse") when the determinant is exactly 0.0; there is no tolerance and a NaN
/// determinant does not throw.
FACET_API matrix44d inverse(const matrix44d& m);

/// result(i, j) = m(j, i).
FACET_API matrix44d transpose(const matrix44d& m);

// ---- 3D queries ------------------------------------------------------------------------------

/// Ray against triangle (a, b, c), both sides accepted, with a parallelism tolerance of 1e-6.
/// On a hit in front of the origin (parameter strictly positive) returns true. `*t` receives the
/// ray parameter in multiples of `direction` whenever the test reaches the last step, also when
/// it then returns false. `t` must not be null.
FACET_API bool ray_triangle_intersection(const vector3d& origin, const vector3d& direction,
                                         const vector3d& a, const vector3d& b, const vector3d& c,
                                         double* t);

/// Whether p1, p2, p3 lie on one line: |cos| of the turn at p2 exceeds cos(angle), so a
/// reversal counts as collinear too. `angle` is in radians. Preconditions (checked):
/// p1 != p2 and p2 != p3, compared exactly.
FACET_API bool colinear(const vector3d& p1, const vector3d& p2, const vector3d& p3, double angle);

/// The unit tangent (along increasing s) and binormal (along decreasing t) of a textured
/// triangle. When the texture coordinates are degenerate (determinant exactly 0) the outputs
/// are left as the caller set them.
FACET_API void ComputeTangentBasis(const vector3d& P0, const vector3d& P1, const vector3d& P2,
                                   const vector2d& UV0, const vector2d& UV1, const vector2d& UV2,
                                   vector3d& tangent, vector3d& binormal);

/// Whether two oriented boxes overlap, by separating axes.
///
/// A box spans from its local origin to `size` (it is not centred): its corners
/// (i·size.x, j·size.y, k·size.z), i, j, k in {0, 1}, are mapped to world space with
/// transform_vector by its matrix. The candidate axes are the images of the unit axes under m1
/// (transform_vector_3x3), then under m2, then the nine cross products (m1 axis i × m2 axis j).
/// Each axis is normalised before use, so the projections are world distances; an axis of
/// length at most 1e-12 separates nothing and is skipped, and a cross product is skipped when
/// its length is at most 1e-5 times the product of its factors' lengths (edges parallel to
/// within about 1e-5 rad; the face axes already cover that case).
///
/// On each axis the corner sets project to intervals [min1, max1] and [min2, max2], and the
/// penetration depth is min(max1 − min2, max2 − min1): how far (world units) one box must move
/// along the axis to clear the other, negative for a gap. The boxes overlap when the depth
/// exceeds `tolerance` on every axis (strictly). So with tolerance 0 touching boxes do not
/// overlap while a flat box inside a solid one does; a positive tolerance lets boxes
/// interpenetrate by up to that distance, and a negative one counts boxes within that gap as
/// overlapping. A NaN anywhere gives false.
FACET_API bool test_overlapping_boxes(const vector3d& size1, const matrix44d& m1,
                                      const vector3d& size2, const matrix44d& m2, double tolerance);
