// Plane geometry on arrays: triangulation, point-in-polygon, offsetting, signed area.
#include <cstring>
#include <limits>

#include "common.h"
#include "facet/plane.h"
#include "facet/triangulate.h"

namespace facet_python {

namespace {

std::vector<geometry::vector<double, 2>> to_polygon(const py::handle& a, const char* what) {
    const auto arr = points_array(a, 2, what);
    const auto r = arr.unchecked<2>();
    std::vector<geometry::vector<double, 2>> out;
    out.reserve(static_cast<std::size_t>(arr.shape(0)));
    for (py::ssize_t i = 0; i < arr.shape(0); ++i) out.emplace_back(r(i, 0), r(i, 1));
    return out;
}

py::array_t<std::uint32_t> triangulate_array(const py::handle& points) {
    // The rows of the C-contiguous (n, 2) array are copied in one block.
    static_assert(sizeof(vector2<double>) == 2 * sizeof(double));
    const auto arr = points_array(points, 2, "points");
    if (static_cast<std::size_t>(arr.shape(0)) > std::numeric_limits<std::uint32_t>::max() - 1u)
        value_error("points: at most 2^32 - 2 points");
    std::vector<vector2<double>> contour(static_cast<std::size_t>(arr.shape(0)));
    if (!contour.empty())
        std::memcpy(contour.data(), arr.data(), contour.size() * sizeof(vector2<double>));
    std::vector<unsigned> result;
    {
        py::gil_scoped_release unlocked;
        triangulate(contour, result);
    }
    const auto m = static_cast<py::ssize_t>(result.size() / 3);
    return adopt(std::move(result), {m, 3});
}

}  // namespace

void bind_plane(py::module_& m) {
    m.def("triangulate", &triangulate_array, py::arg("points"),
          "Triangulates the closed outline `points` ((n, 2) array) by ear clipping: (m, 3) "
          "uint32 indices into `points`, keeping the outline's winding. TriangulationError for "
          "an outline that cannot be cut (self-intersecting).");
    m.def(
        "polygon_area", [](const py::handle& points) { return area(to_points2(points, "points")); },
        py::arg("points"), "The signed area of an (n, 2) outline; positive counter-clockwise.");
    m.def(
        "point_in_polygon",
        [](const py::handle& polygon, const py::handle& points) -> py::object {
            const auto poly = to_polygon(polygon, "polygon");
            const auto arr = py::array_t<double, py::array::forcecast>::ensure(points);
            if (arr && arr.ndim() == 1 && arr.shape(0) == 2)
                return py::bool_(geometry::point_in_polygon(
                    poly, geometry::vector<double, 2>(arr.at(0), arr.at(1))));
            const auto pts = to_polygon(points, "points");
            py::array_t<bool> out(static_cast<py::ssize_t>(pts.size()));
            auto w = out.mutable_unchecked<1>();
            for (std::size_t i = 0; i < pts.size(); ++i)
                w(static_cast<py::ssize_t>(i)) = geometry::point_in_polygon(poly, pts[i]);
            return std::move(out);
        },
        py::arg("polygon"), py::arg("points"),
        "Whether points lie inside the polygon (even-odd rule): a bool for one point (2,), an "
        "(n,) bool array for (n, 2) points.");
    m.def(
        "offset_polygon",
        [](const py::handle& polygon, double distance) {
            auto poly = to_polygon(polygon, "polygon");
            if (!poly.empty() && poly.size() < 3)
                value_error("polygon: at least 3 points are needed");
            geometry::inflate_polygon(poly, distance);
            py::array_t<double> out({static_cast<py::ssize_t>(poly.size()), py::ssize_t(2)});
            auto w = out.mutable_unchecked<2>();
            for (std::size_t i = 0; i < poly.size(); ++i) {
                w(i, 0) = poly[i][0];
                w(i, 1) = poly[i][1];
            }
            return out;
        },
        py::arg("polygon"), py::arg("distance"),
        "The polygon with every edge moved by `distance` along its right-hand normal (mitred "
        "corners): a positive distance grows a counter-clockwise polygon. TriangulationError "
        "when two consecutive edges are parallel.");
}

}  // namespace facet_python
