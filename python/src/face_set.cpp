// The face set (indexedfaceset) with its arrays as numpy views, outline edges and shadow volumes.
#include <sstream>

#include "common.h"
#include "facet/camera.h"
#include "facet/projector.h"
#include "facet/shadow_volume.h"

namespace facet_python {

namespace {

// The byte offset of a member inside its record, measured on a live record.
template <class Record, class Member>
py::ssize_t offset_of(const Record& r, const Member& member) {
    return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&r);
}

// An (n, 3) float64 view of an array of vector3d.
py::array vectors(const py::object& self, const carray<vector3d>& a) {
    static_assert(sizeof(vector3d) == 3 * sizeof(double), "vector3d holds three doubles");
    return view(self, reinterpret_cast<const double*>(a.data()),
                {static_cast<py::ssize_t>(a.size()), 3}, {sizeof(vector3d), sizeof(double)});
}

// An (n, k) view of a field of a record array: k elements of type T from `first` on.
template <class T, class Record>
py::array fields(const py::object& self, const carray<Record>& a, const T* first, py::ssize_t k) {
    std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(a.size())};
    std::vector<py::ssize_t> strides{sizeof(Record)};
    if (k > 0) {
        shape.push_back(k);
        strides.push_back(sizeof(T));
    }
    return view(self, first, std::move(shape), std::move(strides));
}

// Pointer to the field in record 0, or to a dummy record when the array is empty (the view then
// has no elements; numpy only keeps the address).
template <class Record>
const Record& first_record(const carray<Record>& a) {
    static const Record dummy{};
    return a.empty() ? dummy : *a.data();
}

indexedfaceset& mesh_of(const face_set& f) { return *f.mesh; }

// The drawn outline edges: one (start, end) pair per drawn edge, an edge drawn on both of its
// half-edges listed once.
py::array drawn_edges(const face_set& f) {
    const carray<halfedge>& edges = f.mesh->edges();
    std::vector<std::uint32_t> out;
    for (const halfedge& h : edges) {
        if (!h.drawn() || h.next == nullptr) continue;
        const halfedge* t = h.m_twinedge;
        if (t != nullptr && t->drawn() && t < &h) continue;
        out.push_back(h.vertex);
        out.push_back(h.next->vertex);
    }
    const auto n = static_cast<py::ssize_t>(out.size() / 2);
    return adopt(std::move(out), {n, 2});
}

double signed_volume(const indexedfaceset& m) {
    double sum = 0.0;
    for (const face& f : m.faces()) {
        const vector3d& a = m.vertices()[f.vertex[0]];
        const vector3d& b = m.vertices()[f.vertex[1]];
        const vector3d& c = m.vertices()[f.vertex[2]];
        sum += dot(a, cross(b, c));
    }
    return sum / 6.0;
}

double surface_area(const indexedfaceset& m) {
    double sum = 0.0;
    for (const face& f : m.faces()) {
        const vector3d& a = m.vertices()[f.vertex[0]];
        sum += cross(m.vertices()[f.vertex[1]] - a, m.vertices()[f.vertex[2]] - a).length();
    }
    return sum / 2.0;
}

void check_indices(const indexedfaceset& m) {
    for (const face& f : m.faces())
        for (std::uint32_t v : f.vertex)
            if (v >= m.num_vertices()) value_error("a face names a vertex beyond the vertices");
}

std::shared_ptr<face_set> object_shadow_volume(primitives::basic_object& master,
                                               const vector3d& light) {
    check_mesh_buildable(master);
    auto volume = std::make_shared<shadow_volume>(&master, light, 0.0, 0);
    volume->rebuild_mesh();
    auto out = std::make_shared<face_set>();
    out->mesh = &volume->get_mesh();
    out->owner = std::move(volume);
    return out;
}

}  // namespace

void bind_face_set(py::module_& m) {
    py::class_<face_set, std::shared_ptr<face_set>> c(
        m, "FaceSet",
        "A triangle mesh with connectivity, corner normals, tangent frames, texture coordinates, "
        "lines and styles. Its arrays are read-only views into it, not copies: each keeps the "
        "face set alive.");
    c.def_property_readonly("num_vertices",
                            [](const face_set& f) { return f.mesh->num_vertices(); })
        .def_property_readonly("num_faces", [](const face_set& f) { return f.mesh->num_faces(); })
        .def_property_readonly("num_lines", [](const face_set& f) { return f.mesh->num_lines(); })
        .def_property_readonly(
            "vertices",
            [](const py::object& self) {
                return vectors(self, mesh_of(self.cast<const face_set&>()).vertices());
            },
            "(n, 3) float64: the vertex positions.")
        .def_property_readonly(
            "faces",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).faces();
                return fields(self, a, first_record(a).vertex, 3);
            },
            "(m, 3) uint32: the vertex indices of each triangle (a strided view).")
        .def_property_readonly(
            "face_normals",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).faces();
                return fields(self, a, &first_record(a).normal.x, 3);
            },
            "(m, 3) float64: the unit normal of each triangle (a strided view).")
        .def_property_readonly(
            "face_styles",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).faces();
                return fields(self, a, &first_record(a).style, 0);
            },
            "(m,) int32: each triangle's index into styles; -1 for none.")
        .def_property_readonly(
            "face_texcoords",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).faces();
                return fields(self, a, first_record(a).texcoord, 3);
            },
            "(m, 3) uint32: each corner's index into texcoords.")
        .def_property_readonly(
            "normals",
            [](const py::object& self) {
                return vectors(self, mesh_of(self.cast<const face_set&>()).normals());
            },
            "(3m, 3) float64: corner normals; corner k of face i is row 3i + k.")
        .def_property_readonly(
            "tangents",
            [](const py::object& self) {
                return vectors(self, mesh_of(self.cast<const face_set&>()).tangents());
            },
            "(3m, 3) float64: corner tangents.")
        .def_property_readonly(
            "bitangents",
            [](const py::object& self) {
                return vectors(self, mesh_of(self.cast<const face_set&>()).bitangents());
            },
            "(3m, 3) float64: corner bitangents.")
        .def_property_readonly(
            "texcoords",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).texcoords();
                static_assert(sizeof(texcoord) == 2 * sizeof(float), "texcoord holds two floats");
                return view(self, &first_record(a).u, {static_cast<py::ssize_t>(a.size()), 2},
                            {sizeof(texcoord), sizeof(float)});
            },
            "(k, 2) float32: texture coordinates (u, v).")
        .def_property_readonly(
            "lines",
            [](const py::object& self) {
                const auto& a = mesh_of(self.cast<const face_set&>()).lines();
                const line& r = first_record(a);
                const py::ssize_t step = offset_of(r, r.end);
                return view(self, &r.start, {static_cast<py::ssize_t>(a.size()), 2},
                            {sizeof(line), step});
            },
            "(l, 2) uint32: the vertex indices of the stand-alone line segments.")
        .def_property_readonly(
            "edges", &drawn_edges,
            "(e, 2) uint32: the drawn outline edges as vertex index pairs (computed from the "
            "half-edges' marks, so a new array).")
        .def_property_readonly(
            "styles",
            [](const face_set& f) {
                const auto& s = f.mesh->styles();
                return std::vector<graphics::style>(s.begin(), s.end());
            },
            "Copies of the styles the faces refer to.")
        .def_property_readonly("backface_culling",
                               [](const face_set& f) { return f.mesh->get_backface_culling(); })
        .def_property_readonly("edges_only", [](const face_set& f) { return f.mesh->edges_only(); })
        .def_property_readonly("textured", [](const face_set& f) { return f.mesh->get_textured(); })
        .def(
            "bounds",
            [](const face_set& f) {
                vector3d lo, hi;
                f.mesh->get_bounds(lo, hi);
                return std::make_pair(lo, hi);
            },
            "(min, max) corners of the vertices' box.")
        .def(
            "intersect",
            [](const face_set& f, const vector3d& origin,
               const vector3d& direction) -> std::optional<std::pair<double, std::uint32_t>> {
                check_indices(*f.mesh);
                double t = 0.0;
                std::uint32_t face_index = 0;
                if (!f.mesh->intersection(origin, direction, t, face_index)) return std::nullopt;
                return std::make_pair(t, face_index);
            },
            py::arg("origin"), py::arg("direction"),
            "(t, face) of the nearest hit of the ray origin + t * direction, or None.")
        .def(
            "area",
            [](const face_set& f) {
                check_indices(*f.mesh);
                return surface_area(*f.mesh);
            },
            "The summed area of the triangles.")
        .def(
            "volume",
            [](const face_set& f) {
                check_indices(*f.mesh);
                return signed_volume(*f.mesh);
            },
            "The enclosed volume (signed; positive for outward normals of a closed mesh).")
        .def(
            "determine_sharp_edges",
            [](face_set& f, double angle) { f.mesh->determine_sharp_edges(angle); },
            py::arg("angle"), "Marks the creases of `angle` degrees or more and the open edges.")
        .def(
            "determine_visible_edges",
            [](face_set& f, const camera& cam, const projector& proj, std::optional<double> angle) {
                f.mesh->determine_visible_edges(
                    cam, proj, angle ? *angle : f.mesh->get_visible_edge_treshold());
            },
            py::arg("camera"), py::arg("projector"), py::arg("angle") = py::none(),
            "Marks the creases and silhouette edges for a view (camera in the face set's own "
            "space); `angle` defaults to the object's visible-edge threshold.")
        .def(
            "shadow_volume",
            [](const face_set& f, const vector3d& light) {
                auto out = new_face_set();
                f.mesh->build_shadow_volume(light, *out->mesh);
                return out;
            },
            py::arg("light"),
            "The open shadow volume for a point light in the face set's coordinates: one quad "
            "per silhouette edge.")
        .def("__repr__", [](const face_set& f) {
            std::ostringstream os;
            os << "<facet.FaceSet: " << f.mesh->num_vertices() << " vertices, "
               << f.mesh->num_faces() << " faces, " << f.mesh->num_lines() << " lines>";
            return os.str();
        });

    m.def("shadow_volume", &object_shadow_volume, py::arg("object"), py::arg("light"),
          "The shadow volume that `object` casts for a point light at the world position "
          "`light`, in the object's own space: one quad per silhouette edge, faces turned away "
          "from the object, with normals.");
}

}  // namespace facet_python
