// The projector family: clipping distances, viewport, and the three projections.
#include "facet/math3d.h"
#include "facet/projector.h"

// ---- projector -------------------------------------------------------------------------------

projector::projector() : projector(1.0, 50.0) {}

projector::projector(double near_distance, double far_distance)
    : m_near(near_distance),
      m_far(far_distance),
      m_viewport_x(0.0),
      m_viewport_y(0.0),
      m_viewport_width(800.0),
      m_viewport_height(600.0) {}

projector::~projector() = default;

void projector::set_nearplane_distance(double distance) { m_near = distance; }

void projector::set_farplane_distance(double distance) { m_far = distance; }

void projector::set_viewport(double x, double y, double width, double height) {
    m_viewport_x = x;
    m_viewport_y = y;
    m_viewport_width = width;
    m_viewport_height = height;
}

void projector::get_viewport(double& x, double& y, double& width, double& height) const {
    x = m_viewport_x;
    y = m_viewport_y;
    width = m_viewport_width;
    height = m_viewport_height;
}

void projector::get_viewport_matrix(matrix44d& m) const {
    calc_viewport_matrix(m_viewport_x, m_viewport_y, m_viewport_width, m_viewport_height, m);
}

void projector::get_matrix(matrix44d& m) const {
    matrix44d viewport;
    get_viewport_matrix(viewport);
    matrix44d projection;
    get_projection_matrix(projection);
    multiply(viewport, projection, m);
}

// ---- orthographic_projector ------------------------------------------------------------------

orthographic_projector::orthographic_projector()
    : m_left(-2.0), m_right(2.0), m_top(1.5), m_bottom(-1.5) {}

orthographic_projector::orthographic_projector(double width, double height, double near_distance,
                                               double far_distance)
    : projector(near_distance, far_distance),
      m_left(-width * 0.5),
      m_right(width * 0.5),
      m_top(height * 0.5),
      m_bottom(-height * 0.5) {}

void orthographic_projector::set_ortho_params(double width, double height, double near_distance,
                                              double far_distance) {
    m_left = -width * 0.5;
    m_right = width * 0.5;
    m_top = height * 0.5;
    m_bottom = -height * 0.5;
    set_nearplane_distance(near_distance);
    set_farplane_distance(far_distance);
}

void orthographic_projector::set_ortho_params(double left, double right, double bottom, double top,
                                              double near_distance, double far_distance) {
    m_left = left;
    m_right = right;
    m_bottom = bottom;
    m_top = top;
    set_nearplane_distance(near_distance);
    set_farplane_distance(far_distance);
}

double orthographic_projector::width() const { return m_right - m_left; }

double orthographic_projector::height() const { return m_top - m_bottom; }

orthographic_projector* orthographic_projector::clone() const {
    return new orthographic_projector(*this);
}

void orthographic_projector::get_projection_matrix(matrix44d& m) const {
    calc_ortho_matrix(m_left, m_right, m_bottom, m_top, get_nearplane_distance(),
                      get_farplane_distance(), m);
}

vector3d orthographic_projector::get_viewvector(const vector3d& /*point*/,
                                                const camera& cam) const {
    return -cam.get_direction();
}

// ---- perspective_projector -------------------------------------------------------------------

perspective_projector::perspective_projector() : m_hfov(60.0), m_aspect_ratio(1.3333) {}

perspective_projector::perspective_projector(double hfov, double aspect_ratio, double near_distance,
                                             double far_distance)
    : projector(near_distance, far_distance), m_hfov(hfov), m_aspect_ratio(aspect_ratio) {}

void perspective_projector::set_perspective_params(double hfov, double aspect_ratio,
                                                   double near_distance, double far_distance) {
    m_hfov = hfov;
    m_aspect_ratio = aspect_ratio;
    set_nearplane_distance(near_distance);
    set_farplane_distance(far_distance);
}

void perspective_projector::set_hfov(double hfov) { m_hfov = hfov; }

void perspective_projector::set_aspect_ratio(double aspect_ratio) { m_aspect_ratio = aspect_ratio; }

perspective_projector* perspective_projector::clone() const {
    return new perspective_projector(*this);
}

void perspective_projector::get_projection_matrix(matrix44d& m) const {
    calc_perspective_matrix(m_hfov, m_aspect_ratio, get_nearplane_distance(),
                            get_farplane_distance(), m);
}

namespace {

// The unit direction from `point` towards the eye of `cam` (zero for a point at the eye).
vector3d towards_eye(const vector3d& point, const camera& cam) {
    vector3d v = cam.get_position() - point;
    v.normalize();
    return v;
}

}  // namespace

vector3d perspective_projector::get_viewvector(const vector3d& point, const camera& cam) const {
    return towards_eye(point, cam);
}

// ---- persp_projector_ex ----------------------------------------------------------------------

persp_projector_ex::persp_projector_ex() : m_left(0.0), m_right(0.0), m_bottom(0.0), m_top(0.0) {}

persp_projector_ex::persp_projector_ex(double left, double right, double bottom, double top,
                                       double near_distance, double far_distance)
    : projector(near_distance, far_distance),
      m_left(left),
      m_right(right),
      m_bottom(bottom),
      m_top(top) {}

void persp_projector_ex::set_perspective_params(double left, double right, double bottom,
                                                double top, double near_distance,
                                                double far_distance) {
    m_left = left;
    m_right = right;
    m_bottom = bottom;
    m_top = top;
    set_nearplane_distance(near_distance);
    set_farplane_distance(far_distance);
}

persp_projector_ex* persp_projector_ex::clone() const { return new persp_projector_ex(*this); }

void persp_projector_ex::get_projection_matrix(matrix44d& m) const {
    calc_perspective_matrix(m_left, m_right, m_bottom, m_top, get_nearplane_distance(),
                            get_farplane_distance(), m);
}

vector3d persp_projector_ex::get_viewvector(const vector3d& point, const camera& cam) const {
    return towards_eye(point, cam);
}
