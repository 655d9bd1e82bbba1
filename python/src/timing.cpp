// Timings of library calls made from C++ alone, for bench/python_overhead.py: the same work as
// FaceSet-returning mesh() and triangulate(), without Python around it.
#include <chrono>

#include "common.h"
#include "facet/triangulate.h"

namespace facet_python {

namespace {

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

void bind_timing(py::module_& m) {
    m.def(
        "_time_mesh",
        [](const primitives::basic_object& o) {
            py::gil_scoped_release unlocked;
            const auto start = std::chrono::steady_clock::now();
            indexedfaceset target;
            o.fill_mesh(target);
            return seconds_since(start);
        },
        py::arg("object"), "Seconds the library takes to build the object's face set.");
    m.def(
        "_time_triangulate",
        [](const py::handle& points) {
            const std::vector<vector2<double>> contour = to_points2(points, "points");
            py::gil_scoped_release unlocked;
            const auto start = std::chrono::steady_clock::now();
            std::vector<unsigned> result;
            triangulate(contour, result);
            return seconds_since(start);
        },
        py::arg("points"), "Seconds the library takes to triangulate the outline.");
}

}  // namespace facet_python
