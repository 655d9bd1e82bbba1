// The host kit: facet.Scene, scene files, lookup, iteration and world matrices.
#include <sstream>

#include "common.h"
#include "facet/scene.h"

namespace facet_python {

using primitives::basic_object;

namespace {

// A scene as Python holds it. The scene owns its objects; Python objects handed out for them
// keep this object alive. Objects taken out of the scene go back to their Python objects.
struct py_scene {
    facet::scene s;

    py_scene() = default;
    explicit py_scene(facet::scene&& other) : s(std::move(other)) {
        for (basic_object& o : s) set_scene_owned(&o, true);
    }
    py_scene(const py_scene&) = delete;
    py_scene& operator=(const py_scene&) = delete;
    ~py_scene() {
        for (basic_object& o : s) set_scene_owned(&o, false);
    }

    bool contains(const basic_object& o) const { return s.index_of(o) >= 0; }

    // Takes `o` out of the scene. An object that has a Python object goes back to it (its
    // holder deletes it); one that has none is destroyed here.
    void take_out(const basic_object& o) {
        std::unique_ptr<basic_object> released = s.release(o);
        set_scene_owned(released.get(), false);
        const auto& instances = py::detail::get_internals().registered_instances;
        if (instances.find(released.get()) != instances.end()) released.release();
    }
};

basic_object& add(py_scene& self, basic_object& o, basic_object* parent) {
    if (scene_owned(&o)) value_error("object '" + o.get_name() + "' already belongs to a scene");
    if (parent != nullptr && !self.contains(*parent))
        value_error("parent '" + parent->get_name() + "' is not in this scene");
    if (o.get_parent() != nullptr || !o.get_children().empty())
        value_error("object '" + o.get_name() + "' is linked to objects outside this scene");
    set_scene_owned(&o, true);
    // The Python holder keeps the pointer but no longer deletes it: the scene owns the object.
    self.s.add(std::unique_ptr<basic_object>(&o), parent);
    return o;
}

std::string scene_repr(const py_scene& self) {
    std::ostringstream os;
    os << "<facet.Scene: " << self.s.size() << " objects>";
    return os.str();
}

}  // namespace

void bind_scene(py::module_& m) {
    py::class_<py_scene>(m, "Scene",
                         "A hierarchy of scene objects that the scene owns, in the order added.")
        .def(py::init<>())
        .def(
            "add",
            [](py_scene& self, basic_object& o, basic_object* parent) {
                return scene_handle(&add(self, o, parent));
            },
            py::arg("object"), py::arg("parent") = nullptr, py::keep_alive<0, 1>(),
            "Adds `object` (the scene owns it from now on) under `parent` (a root when None) "
            "and returns it.")
        .def(
            "set_parent",
            [](py_scene& self, basic_object& child, basic_object* parent) {
                self.s.set_parent(child, parent);
            },
            py::arg("child"), py::arg("parent"),
            "Hangs `child` under `parent` (None: makes it a root). ValueError for objects outside "
            "the scene or a link that would close a cycle.")
        .def(
            "remove",
            [](py_scene& self, const basic_object& o) {
                if (!self.contains(o)) return false;
                self.take_out(o);
                return true;
            },
            py::arg("object"),
            "Takes `object` out of the scene (its children become roots); the Python object "
            "owns it again. False when it is not in the scene.")
        .def("clear",
             [](py_scene& self) {
                 while (!self.s.empty()) self.take_out(self.s[self.s.size() - 1]);
             })
        .def("__len__", [](const py_scene& self) { return self.s.size(); })
        .def(
            "__getitem__",
            [](const py_scene& self, const py::object& key) {
                if (py::isinstance<py::str>(key)) {
                    basic_object* o = self.s.find(key.cast<std::string>());
                    if (o == nullptr) throw py::key_error(key.cast<std::string>());
                    return scene_handle(o);
                }
                auto i = key.cast<std::ptrdiff_t>();
                const auto n = static_cast<std::ptrdiff_t>(self.s.size());
                if (i < 0) i += n;
                if (i < 0 || i >= n) throw py::index_error("scene index out of range");
                return scene_handle(&self.s[static_cast<std::size_t>(i)]);
            },
            py::arg("key"), py::keep_alive<0, 1>(),
            "The object at a position (int) or the first one of a name (str).")
        .def(
            "find",
            [](const py_scene& self, const std::string& name) {
                return scene_handle(self.s.find(name));
            },
            py::arg("name"), py::keep_alive<0, 1>(), "The first object called `name`, or None.")
        .def(
            "__contains__",
            [](const py_scene& self, const basic_object& o) { return self.contains(o); },
            py::arg("object"))
        .def(
            "index",
            [](const py_scene& self, const basic_object& o) {
                const std::ptrdiff_t i = self.s.index_of(o);
                if (i < 0) value_error("object '" + o.get_name() + "' is not in this scene");
                return i;
            },
            py::arg("object"))
        .def(
            "objects",
            [](const py::object& self) {
                py::list out;
                for (basic_object& o : self.cast<const py_scene&>().s)
                    out.append(kept_alive(scene_handle(&o), self));
                return out;
            },
            "The objects in scene order.")
        .def("__iter__",
             [](const py::object& self) { return self.attr("objects")().attr("__iter__")(); })
        .def(
            "world_matrices",
            [](const py_scene& self) {
                std::vector<matrix44d> w = self.s.world_matrices();
                const auto n = static_cast<py::ssize_t>(w.size());
                // matrix44d is column-major: element [row, column] at column * 4 + row.
                return adopt<matrix44d, double>(
                    std::move(w), {n, 4, 4},
                    {sizeof(matrix44d), sizeof(double), 4 * sizeof(double)});
            },
            "(k, 4, 4) float64: the object-to-world matrix of every object, in scene order.")
        .def(
            "world_bounds",
            [](const py_scene& self) {
                for (basic_object& o : self.s) check_mesh_buildable(o);
                std::vector<std::pair<vector3d, vector3d>> out;
                for (const facet::world_box& b : self.s.world_bounds())
                    out.emplace_back(b.min, b.max);
                return out;
            },
            "The (min, max) world box of every object's mesh; min above max when empty.")
        .def(
            "bounds",
            [](const py_scene& self) -> std::optional<std::pair<vector3d, vector3d>> {
                for (basic_object& o : self.s) check_mesh_buildable(o);
                const facet::world_box b = self.s.bounds();
                if (b.empty()) return std::nullopt;
                return std::make_pair(b.min, b.max);
            },
            "The (min, max) world box of all meshes, or None when no mesh has vertices.")
        .def("__repr__", &scene_repr);

    m.def(
        "read_scene",
        [](const std::string& path) { return std::make_unique<py_scene>(facet::read_scene(path)); },
        py::arg("path"), "Reads a scene file; FormatError names the line and the object.");
    m.def(
        "write_scene",
        [](const py_scene& s, const std::string& path) { facet::write_scene(s.s, path); },
        py::arg("scene"), py::arg("path"),
        "Writes a scene file that read_scene reads back (reals at 17 digits).");
    m.def(
        "scene_from_string",
        [](const std::string& text, const std::string& source) {
            std::istringstream is(text);
            return std::make_unique<py_scene>(facet::read_scene(is, source));
        },
        py::arg("text"), py::arg("source") = "scene");
    m.def(
        "scene_to_string",
        [](const py_scene& s) {
            std::ostringstream os;
            facet::write_scene(s.s, os);
            return os.str();
        },
        py::arg("scene"));
}

// For the rendering and export module: the scene inside a Python Scene.
const facet::scene& scene_of(const py::handle& h) { return h.cast<const py_scene&>().s; }
facet::scene& mutable_scene_of(const py::handle& h) { return h.cast<py_scene&>().s; }

}  // namespace facet_python
