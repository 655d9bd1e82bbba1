// Cameras, the three projectors and the conversions between world and screen on (n, 3) arrays.
#include <pybind11/operators.h>

#include "common.h"
#include "facet/camera.h"
#include "facet/projector.h"
#include "facet/spaces.h"

namespace facet_python {

namespace {

// Applies `f` to every row of an (n, 3) array-like and returns the results as (n, 3).
template <class F>
py::array_t<double> map_points(const py::handle& points, const char* what, F f) {
    const auto in = points_array(points, 3, what);
    const auto r = in.unchecked<2>();
    py::array_t<double> out({in.shape(0), py::ssize_t(3)});
    auto w = out.mutable_unchecked<2>();
    for (py::ssize_t i = 0; i < in.shape(0); ++i) {
        const vector3d p = f(vector3d(r(i, 0), r(i, 1), r(i, 2)));
        w(i, 0) = p.x;
        w(i, 1) = p.y;
        w(i, 2) = p.z;
    }
    return out;
}

matrix44d camera_matrix(const camera& c) {
    matrix44d m;
    c.get_matrix(m);
    return m;
}

}  // namespace

void bind_view(py::module_& m) {
    py::class_<camera>(m, "Camera", "The viewer: a position, a unit direction and an up direction.")
        .def(py::init<const vector3d&, const vector3d&, const vector3d&>(),
             py::arg("position") = vector3d(0, 0, 0), py::arg("direction") = vector3d(0, 0, -1),
             py::arg("up") = vector3d(0, 1, 0))
        .def_property("position", &camera::get_position, &camera::set_position)
        .def_property("direction", &camera::get_direction, &camera::set_direction)
        .def_property("up", &camera::get_updir, &camera::set_updir)
        .def("look_at", &camera::look_at, py::arg("target"))
        .def_property_readonly(
            "matrix", [](const camera& c) { return matrix_to_array(camera_matrix(c)); },
            "(4, 4): world to camera space.")
        .def(py::self == py::self)
        .def(py::self != py::self)
        .def("__repr__", [](const camera& c) {
            const vector3d p = c.get_position(), d = c.get_direction();
            return "Camera(position=(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ", " +
                   std::to_string(p.z) + "), direction=(" + std::to_string(d.x) + ", " +
                   std::to_string(d.y) + ", " + std::to_string(d.z) + "))";
        });

    py::class_<projector>(m, "Projector", "How camera space maps onto the screen (abstract).")
        .def_property("near", &projector::get_nearplane_distance,
                      &projector::set_nearplane_distance)
        .def_property("far", &projector::get_farplane_distance, &projector::set_farplane_distance)
        .def_property(
            "viewport",
            [](const projector& p) {
                double x, y, w, h;
                p.get_viewport(x, y, w, h);
                return py::make_tuple(x, y, w, h);
            },
            [](projector& p, const std::tuple<double, double, double, double>& v) {
                p.set_viewport(std::get<0>(v), std::get<1>(v), std::get<2>(v), std::get<3>(v));
            },
            "(x, y, width, height) in screen units; y runs downwards.")
        .def_property_readonly("projection_matrix",
                               [](const projector& p) {
                                   matrix44d mm;
                                   p.get_projection_matrix(mm);
                                   return matrix_to_array(mm);
                               })
        .def_property_readonly(
            "matrix",
            [](const projector& p) {
                matrix44d mm;
                p.get_matrix(mm);
                return matrix_to_array(mm);
            },
            "(4, 4): camera space to screen (viewport times projection).");

    py::class_<orthographic_projector, projector>(m, "OrthographicProjector")
        .def(py::init<double, double, double, double>(), py::arg("width") = 4.0,
             py::arg("height") = 3.0, py::arg("near") = 1.0, py::arg("far") = 50.0)
        .def_property_readonly("left", &orthographic_projector::get_left)
        .def_property_readonly("right", &orthographic_projector::get_right)
        .def_property_readonly("top", &orthographic_projector::get_top)
        .def_property_readonly("bottom", &orthographic_projector::get_bottom)
        .def(
            "set_bounds",
            [](orthographic_projector& p, double l, double r, double b, double t) {
                p.set_ortho_params(l, r, b, t, p.get_nearplane_distance(),
                                   p.get_farplane_distance());
            },
            py::arg("left"), py::arg("right"), py::arg("bottom"), py::arg("top"));

    py::class_<perspective_projector, projector>(m, "PerspectiveProjector")
        .def(py::init<double, double, double, double>(), py::arg("hfov") = 60.0,
             py::arg("aspect_ratio") = 1.3333, py::arg("near") = 1.0, py::arg("far") = 50.0)
        .def_property("hfov", &perspective_projector::get_hfov, &perspective_projector::set_hfov)
        .def_property("aspect_ratio", &perspective_projector::get_aspect_ratio,
                      &perspective_projector::set_aspect_ratio);

    py::class_<persp_projector_ex, projector>(m, "FrustumProjector",
                                              "A general perspective frustum.")
        .def(py::init<double, double, double, double, double, double>(), py::arg("left"),
             py::arg("right"), py::arg("bottom"), py::arg("top"), py::arg("near") = 1.0,
             py::arg("far") = 50.0)
        .def_property_readonly("left", &persp_projector_ex::get_left)
        .def_property_readonly("right", &persp_projector_ex::get_right)
        .def_property_readonly("bottom", &persp_projector_ex::get_bottom)
        .def_property_readonly("top", &persp_projector_ex::get_top);

    m.def(
        "project",
        [](const py::handle& points, const camera& cam, const projector& proj) {
            // The matrix once, then every point through it, as project() does per point.
            const matrix44d t = calc_transformation_matrix(cam, proj);
            return map_points(points, "points",
                              [&](const vector3d& p) { return transform_vector(t, p); });
        },
        py::arg("points"), py::arg("camera"), py::arg("projector"),
        "(n, 3) world points to (n, 3) screen points (x, y in viewport units, z the depth).");
    m.def(
        "unproject",
        [](const py::handle& points, const camera& cam, const projector& proj) {
            const matrix44d t = inverse(calc_transformation_matrix(cam, proj));
            return map_points(points, "points",
                              [&](const vector3d& p) { return transform_vector(t, p); });
        },
        py::arg("points"), py::arg("camera"), py::arg("projector"),
        "(n, 3) screen points to (n, 3) world points; SingularMatrixError for a degenerate "
        "view.");
    m.def(
        "view_matrix",
        [](const camera& cam, const projector& proj) {
            return matrix_to_array(calc_transformation_matrix(cam, proj));
        },
        py::arg("camera"), py::arg("projector"), "(4, 4): world space to screen space.");
}

}  // namespace facet_python
