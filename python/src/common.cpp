// Conversions, array views and the ownership table of the Python bindings.
#include "common.h"

#include <unordered_set>

namespace facet_python {

py::array_t<double> matrix_to_array(const matrix44d& m) {
    py::array_t<double> out({4, 4});
    auto r = out.mutable_unchecked<2>();
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) r(i, j) = m(i, j);
    return out;
}

matrix44d array_to_matrix(const py::handle& a) {
    const auto arr = py::array_t<double, py::array::forcecast>::ensure(a);
    if (!arr || arr.ndim() != 2 || arr.shape(0) != 4 || arr.shape(1) != 4)
        value_error("expected a (4, 4) matrix");
    const auto r = arr.unchecked<2>();
    matrix44d m;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) m(i, j) = r(i, j);
    return m;
}

py::array_t<double, py::array::c_style> points_array(const py::handle& a, py::ssize_t k,
                                                     const char* what) {
    auto arr = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(a);
    if (!arr) {
        PyErr_Clear();
        value_error(std::string(what) + ": expected an array of shape (n, " + std::to_string(k) +
                    ")");
    }
    if (arr.ndim() == 1 && arr.shape(0) == 0)
        return py::array_t<double>(std::vector<py::ssize_t>{0, k});
    if (arr.ndim() != 2 || arr.shape(1) != k)
        value_error(std::string(what) + ": expected an array of shape (n, " + std::to_string(k) +
                    ")");
    return arr;
}

std::vector<vector3d> to_points3(const py::handle& a, const char* what) {
    const auto arr = points_array(a, 3, what);
    const auto r = arr.unchecked<2>();
    std::vector<vector3d> out(static_cast<std::size_t>(arr.shape(0)));
    for (py::ssize_t i = 0; i < arr.shape(0); ++i) out[i] = vector3d(r(i, 0), r(i, 1), r(i, 2));
    return out;
}

std::vector<vector2<double>> to_points2(const py::handle& a, const char* what) {
    const auto arr = points_array(a, 2, what);
    const auto r = arr.unchecked<2>();
    std::vector<vector2<double>> out(static_cast<std::size_t>(arr.shape(0)));
    for (py::ssize_t i = 0; i < arr.shape(0); ++i) out[i] = vector2<double>(r(i, 0), r(i, 1));
    return out;
}

namespace {

std::unordered_set<const primitives::basic_object*>& owned_table() {
    static auto* table = new std::unordered_set<const primitives::basic_object*>();
    return *table;
}

}  // namespace

void object_deleter::operator()(primitives::basic_object* object) const {
    if (!scene_owned(object)) delete object;
}

bool scene_owned(const primitives::basic_object* object) {
    return owned_table().count(object) != 0;
}

void set_scene_owned(const primitives::basic_object* object, bool owned) {
    if (owned)
        owned_table().insert(object);
    else
        owned_table().erase(object);
}

std::shared_ptr<face_set> new_face_set() {
    auto mesh = std::make_shared<indexedfaceset>();
    auto out = std::make_shared<face_set>();
    out->mesh = mesh.get();
    out->owner = std::move(mesh);
    return out;
}

}  // namespace facet_python

namespace facet_python {

std::vector<std::uint32_t> to_indices3(const py::handle& a, const char* what) {
    auto arr = py::array_t<std::int64_t, py::array::c_style | py::array::forcecast>::ensure(a);
    if (!arr) {
        PyErr_Clear();
        value_error(std::string(what) + ": expected an integer array of shape (m, 3)");
    }
    if (arr.ndim() == 1 && arr.shape(0) == 0) return {};
    if (arr.ndim() != 2 || arr.shape(1) != 3)
        value_error(std::string(what) + ": expected an integer array of shape (m, 3)");
    std::vector<std::uint32_t> out(static_cast<std::size_t>(arr.size()));
    const std::int64_t* data = arr.data();
    for (std::size_t i = 0; i < out.size(); ++i) {
        if (data[i] < 0 || data[i] > 0xffffffffLL)
            value_error(std::string(what) + ": index " + std::to_string(data[i]) +
                        " does not fit 32 bits unsigned");
        out[i] = static_cast<std::uint32_t>(data[i]);
    }
    return out;
}

}  // namespace facet_python
