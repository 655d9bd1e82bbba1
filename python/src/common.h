// Shared pieces of the Python bindings: conversions between the library's value types and
// Python values, numpy views of the library's buffers, the ownership rules of scene objects and
// the guards that turn failed preconditions into Python exceptions.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "facet/appearance.h"
#include "facet/geometry.h"
#include "facet/ifs.h"
#include "facet/objects.h"

namespace py = pybind11;

// ---- vectors as tuples, matrices as (4, 4) arrays ---------------------------------------------

namespace pybind11::detail {

template <>
struct type_caster<vector3d> {
    PYBIND11_TYPE_CASTER(vector3d, const_name("tuple[float, float, float]"));
    bool load(handle src, bool) {
        if (!src || !isinstance<sequence>(src) || isinstance<str>(src)) return false;
        const auto seq = reinterpret_borrow<sequence>(src);
        if (seq.size() != 3) return false;
        try {
            value = vector3d(seq[0].cast<double>(), seq[1].cast<double>(), seq[2].cast<double>());
        } catch (const cast_error&) {
            return false;
        }
        return true;
    }
    static handle cast(const vector3d& v, return_value_policy, handle) {
        return make_tuple(v.x, v.y, v.z).release();
    }
};

template <>
struct type_caster<vector2d> {
    PYBIND11_TYPE_CASTER(vector2d, const_name("tuple[float, float]"));
    bool load(handle src, bool) {
        if (!src || !isinstance<sequence>(src) || isinstance<str>(src)) return false;
        const auto seq = reinterpret_borrow<sequence>(src);
        if (seq.size() != 2) return false;
        try {
            value = vector2d(seq[0].cast<double>(), seq[1].cast<double>());
        } catch (const cast_error&) {
            return false;
        }
        return true;
    }
    static handle cast(const vector2d& v, return_value_policy, handle) {
        return make_tuple(v.x, v.y).release();
    }
};

}  // namespace pybind11::detail

namespace facet_python {

/// Raises ValueError with `message`.
[[noreturn]] inline void value_error(const std::string& message) { throw py::value_error(message); }

/// A matrix as a new (4, 4) float64 array, element [row, column].
py::array_t<double> matrix_to_array(const matrix44d& m);
/// A (4, 4) array-like as a matrix; ValueError for another shape.
matrix44d array_to_matrix(const py::handle& a);

/// An (n, k) float64 array-like as a C-contiguous array (a view when it already is one, else a
/// converted copy); ValueError naming `what` for another shape.
py::array_t<double, py::array::c_style> points_array(const py::handle& a, py::ssize_t k,
                                                     const char* what);
/// An (n, 3) array-like as points.
std::vector<vector3d> to_points3(const py::handle& a, const char* what);
/// An (n, 2) array-like as plane points.
std::vector<vector2<double>> to_points2(const py::handle& a, const char* what);

/// A read-only array over memory owned by `owner` (a Python object that keeps the buffer
/// alive): no element is copied.
template <class T>
py::array view(const py::handle& owner, const T* data, std::vector<py::ssize_t> shape,
               std::vector<py::ssize_t> strides) {
    py::array a(py::dtype::of<T>(), std::move(shape), std::move(strides), data, owner);
    py::detail::array_proxy(a.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return a;
}

/// An array over the elements of `values`, which are moved to the heap and freed with the
/// array: no element is copied.
/// Elements of type E (T itself, or the scalar a record T is made of).
template <class T, class E = T>
py::array adopt(std::vector<T>&& values, std::vector<py::ssize_t> shape,
                std::vector<py::ssize_t> strides = {}) {
    auto* held = new std::vector<T>(std::move(values));
    py::capsule owner(held, [](void* p) { delete static_cast<std::vector<T>*>(p); });
    const auto* data = reinterpret_cast<const E*>(held->data());
    if (strides.empty()) return py::array(py::dtype::of<E>(), std::move(shape), data, owner);
    return py::array(py::dtype::of<E>(), std::move(shape), std::move(strides), data, owner);
}

// ---- scene objects ------------------------------------------------------------------------------
//
// Python holds scene objects through std::shared_ptr with object_deleter. An object created in
// Python belongs to its Python object until it is added to a Scene; from then on the scene owns
// it (it is listed in scene_owned(), and the deleter leaves it alone), and every Python object
// handed out for it keeps the Scene alive. Removing it from the scene hands it back to Python.

/// Deletes the object unless a scene owns it.
struct object_deleter {
    void operator()(primitives::basic_object* object) const;
};

/// The objects that a scene owns.
bool scene_owned(const primitives::basic_object* object);
void set_scene_owned(const primitives::basic_object* object, bool owned);

/// A Python holder for an object of a scene (the scene keeps owning it).
inline std::shared_ptr<primitives::basic_object> scene_handle(primitives::basic_object* object) {
    if (object == nullptr) return nullptr;
    return std::shared_ptr<primitives::basic_object>(object, object_deleter{});
}

/// A new object of type T that Python owns.
template <class T, class... Args>
std::shared_ptr<T> make_object(Args&&... args) {
    return std::shared_ptr<T>(new T(std::forward<Args>(args)...), object_deleter{});
}

/// Applies the keyword arguments every object constructor takes (name, position, orientation,
/// brush, pen, color, material, visible); TypeError for any other.
void apply_common(primitives::basic_object& object, const py::kwargs& kwargs);

// ---- face sets ----------------------------------------------------------------------------------

/// A face set as Python sees it: shared by its arrays, which are views into it. `owner` keeps
/// alive whatever the face set lives in when it is not owned here.
struct face_set {
    std::shared_ptr<void> owner;
    indexedfaceset* mesh = nullptr;
};

/// A new face set owned by the Python object.
std::shared_ptr<face_set> new_face_set();

/// Raises ValueError when building the mesh of `object` would fail a precondition.
void check_mesh_buildable(const primitives::basic_object& object);

// ---- the parts of the module ------------------------------------------------------------------

void bind_exceptions(py::module_& m);
void bind_appearance(py::module_& m);
void bind_objects(py::module_& m);
void bind_primitives(py::module_& m);
void bind_face_set(py::module_& m);
void bind_scene(py::module_& m);
void bind_view(py::module_& m);
void bind_plane(py::module_& m);
void bind_media(py::module_& m);
void bind_render(py::module_& m);
void bind_timing(py::module_& m);

}  // namespace facet_python

namespace facet_python {

/// Points as a new (n, 3) float64 array.
inline py::array_t<double> points_to_array(const std::vector<vector3d>& points) {
    py::array_t<double> out({static_cast<py::ssize_t>(points.size()), py::ssize_t(3)});
    auto r = out.mutable_unchecked<2>();
    for (py::ssize_t i = 0; i < r.shape(0); ++i) {
        r(i, 0) = points[i].x;
        r(i, 1) = points[i].y;
        r(i, 2) = points[i].z;
    }
    return out;
}

/// An (m, 3) array-like of vertex indices, each checked to fit 32 bits unsigned.
std::vector<std::uint32_t> to_indices3(const py::handle& a, const char* what);

}  // namespace facet_python

namespace facet {
class scene;
}

namespace facet_python {
/// The library's scene inside a facet.Scene (TypeError for anything else).
const facet::scene& scene_of(const py::handle& h);
facet::scene& mutable_scene_of(const py::handle& h);
}  // namespace facet_python

namespace facet_python {
/// The Python object for `object`, which keeps `patient` alive.
inline py::object kept_alive(std::shared_ptr<primitives::basic_object> object,
                             const py::handle& patient) {
    py::object out = py::cast(std::move(object));
    py::detail::keep_alive_impl(out, patient);
    return out;
}
}  // namespace facet_python
