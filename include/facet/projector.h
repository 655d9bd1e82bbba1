// Projectors: how camera space is mapped onto the screen.
//
// A projector holds a projection (orthographic, symmetric perspective from a horizontal field
// of view, or a general perspective frustum), the near and far clipping distances and a
// viewport rectangle in screen units. get_matrix() combines viewport and projection and takes a
// camera-space point to screen coordinates (after the division by w of transform_vector):
// screen x runs from the viewport's left edge to the right, screen y from its top edge
// downwards, and depth is normalised device z in [−1, 1].
//
// Hosts hold projectors through the abstract base and copy them with clone(). The concrete
// classes are also copyable by value; the base is not (to prevent slicing).
//
// No operation validates its parameters or reports an error: degenerate values (zero width,
// height or aspect ratio, near equal to far) give infinities or NaN in the matrices.
#pragma once

#include "facet/camera.h"
#include "facet/export.h"
#include "facet/geometry.h"

/// The abstract projector: clipping distances and viewport.
class FACET_API projector {
public:
    /// Near 1.0, far 50.0, viewport (0, 0, 800, 600).
    projector();
    /// The given near and far distances, viewport (0, 0, 800, 600).
    projector(double near_distance, double far_distance);

    virtual ~projector();

    /// A new heap copy of the same dynamic type with every field copied. The caller owns it
    /// and may delete it through a projector pointer.
    virtual projector* clone() const = 0;

    /// m := the projection matrix (camera space to normalised device coordinates).
    virtual void get_projection_matrix(matrix44d& m) const = 0;

    /// The direction from the world point `point` towards the viewer of `cam`, used to tell
    /// front faces from back faces.
    virtual vector3d get_viewvector(const vector3d& point, const camera& cam) const = 0;

    double get_nearplane_distance() const { return m_near; }
    double get_farplane_distance() const { return m_far; }
    /// Stored as given; not validated.
    void set_nearplane_distance(double distance);
    /// Stored as given; not validated.
    void set_farplane_distance(double distance);

    /// The viewport rectangle in screen units: (x, y) is its top-left corner. Not validated.
    void set_viewport(double x, double y, double width, double height);
    void get_viewport(double& x, double& y, double& width, double& height) const;

    /// m := calc_viewport_matrix(x, y, width, height) of the viewport.
    void get_viewport_matrix(matrix44d& m) const;

    /// m := V · P, the viewport matrix times the projection matrix: camera space to screen.
    void get_matrix(matrix44d& m) const;

protected:
    projector(const projector&) = default;
    projector& operator=(const projector&) = default;

private:
    double m_near;
    double m_far;
    double m_viewport_x;
    double m_viewport_y;
    double m_viewport_width;
    double m_viewport_height;
};

/// Orthographic projection of the box left..right, bottom..top between the near and far planes.
class FACET_API orthographic_projector : public projector {
public:
    /// The base defaults and left −2, right 2, top 1.5, bottom −1.5.
    orthographic_projector();
    /// A rectangle of `width` × `height` centred on the view axis, and the two distances.
    orthographic_projector(double width, double height, double near_distance, double far_distance);
    orthographic_projector(const orthographic_projector&) = default;
    orthographic_projector& operator=(const orthographic_projector&) = default;

    /// A rectangle of `width` × `height` centred on the view axis, and the two distances.
    void set_ortho_params(double width, double height, double near_distance, double far_distance);
    /// Stores each bound as given (note: bottom before top).
    void set_ortho_params(double left, double right, double bottom, double top,
                          double near_distance, double far_distance);

    double get_left() const { return m_left; }
    double get_right() const { return m_right; }
    double get_top() const { return m_top; }
    double get_bottom() const { return m_bottom; }
    /// right − left.
    double width() const;
    /// top − bottom.
    double height() const;

    /// A new orthographic_projector, owned by the caller.
    orthographic_projector* clone() const override;
    /// calc_ortho_matrix(left, right, bottom, top, near, far).
    void get_projection_matrix(matrix44d& m) const override;
    /// −cam's direction, wherever the point is.
    vector3d get_viewvector(const vector3d& point, const camera& cam) const override;

private:
    double m_left;
    double m_right;
    double m_top;
    double m_bottom;
};

/// Symmetric perspective projection from a horizontal field of view and an aspect ratio.
class FACET_API perspective_projector : public projector {
public:
    /// The base defaults, horizontal field of view 60 degrees, aspect ratio 1.3333 (exactly
    /// this decimal, not 4/3).
    perspective_projector();
    /// `hfov` is the horizontal field of view in degrees; `aspect_ratio` is width / height.
    perspective_projector(double hfov, double aspect_ratio, double near_distance,
                          double far_distance);
    perspective_projector(const perspective_projector&) = default;
    perspective_projector& operator=(const perspective_projector&) = default;

    /// `hfov` in degrees, `aspect_ratio` = width / height, and the two distances.
    void set_perspective_params(double hfov, double aspect_ratio, double near_distance,
                                double far_distance);

    /// The horizontal field of view in degrees.
    void set_hfov(double hfov);
    double get_hfov() const { return m_hfov; }
    /// Width / height.
    void set_aspect_ratio(double aspect_ratio);
    double get_aspect_ratio() const { return m_aspect_ratio; }

    /// A new perspective_projector, owned by the caller.
    perspective_projector* clone() const override;
    /// calc_perspective_matrix(hfov, aspect ratio, near, far).
    void get_projection_matrix(matrix44d& m) const override;
    /// cam's position − point, normalised; a point at the eye gives (0, 0, 0).
    vector3d get_viewvector(const vector3d& point, const camera& cam) const override;

private:
    double m_hfov;
    double m_aspect_ratio;
};

/// General perspective projection of a frustum given by its extent on the near plane.
class FACET_API persp_projector_ex : public projector {
public:
    /// The base defaults and all four bounds 0, which gives a matrix of infinities and NaN:
    /// set the bounds (set_perspective_params) before asking for a matrix.
    persp_projector_ex();
    /// The frustum's extent left..right, bottom..top on the near plane, and the two distances.
    persp_projector_ex(double left, double right, double bottom, double top, double near_distance,
                       double far_distance);
    persp_projector_ex(const persp_projector_ex&) = default;
    persp_projector_ex& operator=(const persp_projector_ex&) = default;

    /// Stores the four bounds, then the near and far distances.
    void set_perspective_params(double left, double right, double bottom, double top,
                                double near_distance, double far_distance);

    double get_left() const { return m_left; }
    double get_right() const { return m_right; }
    double get_bottom() const { return m_bottom; }
    double get_top() const { return m_top; }

    /// A new persp_projector_ex, owned by the caller.
    persp_projector_ex* clone() const override;
    /// calc_perspective_matrix(left, right, bottom, top, near, far).
    void get_projection_matrix(matrix44d& m) const override;
    /// cam's position − point, normalised; a point at the eye gives (0, 0, 0).
    vector3d get_viewvector(const vector3d& point, const camera& cam) const override;

private:
    double m_left;
    double m_right;
    double m_bottom;
    double m_top;
};
