// The primitive scene objects with their parameters, custom meshes and the mesh registry.
#include "facet/primitives.h"
#include "common.h"
#include "facet/custom_mesh.h"

namespace facet_python {

using namespace primitives;

namespace {

template <class T>
using object_class = py::class_<T, basic_object, std::shared_ptr<T>>;

// Stores a double property `name` on T through a getter and a setter of the library.
template <class T, class G, class S>
void real(object_class<T>& c, const char* name, G get, S set) {
    c.def_property(name, get, set);
}

// A custom mesh's faces as an (m, 3) uint32 array and its style indices as (m,) int32.
py::array_t<std::uint32_t> custom_faces(const graphics::custom_mesh& cm) {
    py::array_t<std::uint32_t> out({static_cast<py::ssize_t>(cm.num_faces()), py::ssize_t(3)});
    auto r = out.mutable_unchecked<2>();
    for (std::uint32_t i = 0; i < cm.num_faces(); ++i)
        for (int k = 0; k < 3; ++k) r(i, k) = cm.get_face(i).vertex[k];
    return out;
}

void set_custom_faces(graphics::custom_mesh& cm, const py::handle& faces,
                      const py::handle& styles) {
    const std::vector<std::uint32_t> idx = to_indices3(faces, "faces");
    std::vector<std::int32_t> style(idx.size() / 3, 0);
    if (!styles.is_none()) {
        const auto s = py::array_t<std::int32_t, py::array::forcecast>::ensure(styles);
        if (!s || s.ndim() != 1 || static_cast<std::size_t>(s.shape(0)) != style.size())
            value_error("face_styles: expected one style index per face");
        for (std::size_t i = 0; i < style.size(); ++i) style[i] = s.at(i);
    }
    std::vector<graphics::custom_mesh_face> out(style.size());
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = graphics::custom_mesh_face(idx[3 * i], idx[3 * i + 1], idx[3 * i + 2], style[i]);
    cm.set_faces(std::move(out));
}

std::vector<mesh::triangle> to_triangles(const py::handle& a) {
    const std::vector<std::uint32_t> idx = to_indices3(a, "triangles");
    std::vector<mesh::triangle> out(idx.size() / 3);
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = mesh::triangle(idx[3 * i], idx[3 * i + 1], idx[3 * i + 2]);
    return out;
}

void set_corners(quad& o, const py::object& a) {
    const auto p = to_points3(a, "corners");
    if (p.size() != 4) value_error("corners: expected 4 points");
    for (unsigned i = 0; i < 4; ++i) o[i] = p[i];
}

void bind_custom_mesh(py::module_& m) {
    using graphics::custom_mesh;
    py::class_<custom_mesh>(m, "CustomMesh",
                            "A named triangle mesh with a style index per face and its styles.")
        .def(py::init([](const std::string& name, const py::object& vertices,
                         const py::object& faces, const py::object& face_styles,
                         const std::vector<graphics::style>& styles) {
                 custom_mesh cm(name);
                 if (!vertices.is_none()) cm.set_vertices(to_points3(vertices, "vertices"));
                 if (!faces.is_none()) set_custom_faces(cm, faces, face_styles);
                 cm.set_styles(styles);
                 return cm;
             }),
             py::arg("name") = "", py::arg("vertices") = py::none(), py::arg("faces") = py::none(),
             py::arg("face_styles") = py::none(),
             py::arg("styles") = std::vector<graphics::style>())
        .def_property("name", &custom_mesh::get_name, &custom_mesh::set_name)
        .def_property(
            "vertices", [](const custom_mesh& cm) { return points_to_array(cm.get_vertices()); },
            [](custom_mesh& cm, const py::object& v) {
                cm.set_vertices(to_points3(v, "vertices"));
            })
        .def_property(
            "faces", &custom_faces,
            [](custom_mesh& cm, const py::object& f) { set_custom_faces(cm, f, py::none()); })
        .def_property_readonly("face_styles",
                               [](const custom_mesh& cm) {
                                   std::vector<std::int32_t> s;
                                   for (const auto& f : cm.get_faces()) s.push_back(f.style);
                                   return py::array_t<std::int32_t>(
                                       static_cast<py::ssize_t>(s.size()), s.data());
                               })
        .def_property("styles", &custom_mesh::get_styles, &custom_mesh::set_styles)
        .def("add_vertex", &custom_mesh::add_vertex, py::arg("point"))
        .def(
            "add_face",
            [](custom_mesh& cm, std::uint32_t a, std::uint32_t b, std::uint32_t c,
               std::int32_t style) { return cm.add_face(a, b, c, style); },
            py::arg("a"), py::arg("b"), py::arg("c"), py::arg("style") = 0)
        .def("add_style", py::overload_cast<const graphics::style&>(&custom_mesh::add_style),
             py::arg("style"))
        .def("has_valid_indices", &custom_mesh::has_valid_indices)
        .def("__repr__", [](const custom_mesh& cm) {
            return "<facet.CustomMesh '" + cm.get_name() +
                   "': " + std::to_string(cm.num_vertices()) + " vertices, " +
                   std::to_string(cm.num_faces()) + " faces>";
        });

    m.def(
        "register_mesh",
        [](const custom_mesh& cm) {
            if (cm.get_name().empty()) value_error("a registered mesh needs a name");
            graphics::get_global_mesh_map().add_mesh(custom_mesh(cm));
        },
        py::arg("mesh"),
        "Registers a copy of the mesh under its name, for Custom objects that name it.");
    m.def(
        "unregister_mesh",
        [](const std::string& name) { return graphics::get_global_mesh_map().remove_mesh(name); },
        py::arg("name"));
    m.def("registered_meshes", [] { return graphics::get_global_mesh_map().get_names(); });
    m.def(
        "registered_mesh",
        [](const std::string& name) -> std::optional<custom_mesh> {
            const custom_mesh* cm = graphics::get_global_mesh_map().find_mesh(name);
            if (cm == nullptr) return std::nullopt;
            return *cm;
        },
        py::arg("name"), "A copy of the mesh registered under `name`, or None.");
}

void bind_solids(py::module_& m) {
    object_class<box> b(m, "Box", "A block of width x height x depth on its corner at the origin.");
    b.def(py::init([](double w, double h, double d, const py::kwargs& kw) {
              auto o = make_object<box>(w, h, d);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("width") = 1.0, py::arg("height") = 1.0, py::arg("depth") = 1.0);
    real(b, "width", &box::get_width, &box::set_width);
    real(b, "height", &box::get_height, &box::set_height);
    real(b, "depth", &box::get_depth, &box::set_depth);

    object_class<cylinder> cy(m, "Cylinder", "An upright cylinder around the y axis.");
    cy.def(py::init([](double h, double r, double n, const py::kwargs& kw) {
               auto o = make_object<cylinder>(h, r);
               o->set_number_of_divisions(n);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("height") = 1.0, py::arg("radius") = 0.5, py::arg("divisions") = 6);
    real(cy, "height", &cylinder::get_height, &cylinder::set_height);
    real(cy, "radius", &cylinder::get_radius, &cylinder::set_radius);
    real(cy, "divisions", &cylinder::get_number_of_divisions, &cylinder::set_number_of_divisions);

    object_class<cone> co(m, "Cone", "An upright cone of 12 segments, base on y = 0.");
    co.def(py::init([](double h, double r, const py::kwargs& kw) {
               auto o = make_object<cone>(h, r);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("height") = 1.0, py::arg("radius") = 0.5);
    real(co, "height", &cone::get_height, &cone::set_height);
    real(co, "radius", &cone::get_radius, &cone::set_radius);
}

void bind_flat(py::module_& m) {
    object_class<quad> q(m, "Quad", "A four-cornered patch with a texture coordinate per corner.");
    q.def(py::init([](const py::object& corners, const py::kwargs& kw) {
              auto o = make_object<quad>();
              if (!corners.is_none()) set_corners(*o, corners);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("corners") = py::none());
    q.def_property(
         "corners",
         [](const quad& o) {
             const quad& c = o;
             return points_to_array({c[0], c[1], c[2], c[3]});
         },
         &set_corners)
        .def_property(
            "texcoords",
            [](const quad& o) {
                py::array_t<float> out({4, 2});
                auto r = out.mutable_unchecked<2>();
                for (int i = 0; i < 4; ++i) {
                    r(i, 0) = o.get_texcoord(i).u;
                    r(i, 1) = o.get_texcoord(i).v;
                }
                return out;
            },
            [](quad& o, const py::object& a) {
                const auto p = to_points2(a, "texcoords");
                if (p.size() != 4) value_error("texcoords: expected 4 coordinates");
                for (int i = 0; i < 4; ++i)
                    o.set_texcoord(
                        i, texcoord(static_cast<float>(p[i].x), static_cast<float>(p[i].y)));
                o.set_dirty(true);
            });

    object_class<polygon> pg(m, "Polygon", "A flat outline, closed implicitly, triangulated.");
    pg.def(py::init([](const py::object& points, const py::kwargs& kw) {
               auto o = make_object<polygon>();
               if (!points.is_none())
                   for (const vector3d& p : to_points3(points, "points")) o->add_point(p);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("points") = py::none())
        .def_property(
            "points", [](const polygon& o) { return points_to_array(o.get_points()); },
            [](polygon& o, const py::object& a) {
                const auto p = to_points3(a, "points");
                o.clear();
                for (const vector3d& v : p) o.add_point(v);
            })
        .def("add_point", &polygon::add_point, py::arg("point"))
        .def("reverse_points", &polygon::reverse_points)
        .def("__len__", &polygon::size);

    object_class<primitives::line> l(m, "Line", "One line segment.");
    l.def(py::init([](const vector3d& a, const vector3d& b, const py::kwargs& kw) {
              auto o = make_object<primitives::line>(a, b);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("start") = vector3d(), py::arg("end") = vector3d())
        .def_property(
            "start", [](const primitives::line& o) { return o[0]; },
            [](primitives::line& o, const vector3d& p) { o[0] = p; })
        .def_property(
            "end", [](const primitives::line& o) { return o[1]; },
            [](primitives::line& o, const vector3d& p) { o[1] = p; });

    object_class<polyline> pl(m, "Polyline", "An open chain of segments through its points.");
    pl.def(py::init([](const py::object& points, const py::kwargs& kw) {
               auto o = make_object<polyline>();
               if (!points.is_none()) o->set_points(to_points3(points, "points"));
               apply_common(*o, kw);
               return o;
           }),
           py::arg("points") = py::none())
        .def_property(
            "points", [](const polyline& o) { return points_to_array(o.get_points()); },
            [](polyline& o, const py::object& a) { o.set_points(to_points3(a, "points")); })
        .def("add_point", &polyline::add_point, py::arg("point"))
        .def("__len__", &polyline::size);
}

void bind_markers(py::module_& m) {
    object_class<arrow> a(m, "Arrow", "An arrow along +x: a shaft and four barbs.");
    a.def(py::init([](double length, double head_base, double head_length, const py::kwargs& kw) {
              auto o = make_object<arrow>();
              o->set_length(length);
              o->set_head_size(head_base, head_length);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("length") = 10000.0, py::arg("head_base") = 1000.0,
          py::arg("head_length") = 1000.0);
    real(a, "length", &arrow::get_length, &arrow::set_length);
    a.def_property("head_base", &arrow::get_head_base, [](arrow& o, double v) {
         o.set_head_size(v, o.get_head_length());
     }).def_property("head_length", &arrow::get_head_length, [](arrow& o, double v) {
        o.set_head_size(o.get_head_base(), v);
    });

    object_class<crosshair> x(m, "Crosshair", "Three segments along x, y and z.");
    x.def(py::init([](double size, const py::kwargs& kw) {
              auto o = make_object<crosshair>();
              o->set_size(size);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("size") = 1.0);
    real(x, "size", &crosshair::get_size, &crosshair::set_size);

    object_class<text> t(m, "Text", "A text label at the object's position (no geometry).");
    t.def(py::init([](const std::string& s, const py::kwargs& kw) {
              auto o = make_object<text>();
              o->set_text(s);
              apply_common(*o, kw);
              return o;
          }),
          py::arg("text") = "");
    t.def_property("text", &text::get_text, &text::set_text);

    object_class<billboard> bb(m, "Billboard", "A screen-facing rectangle (no geometry).");
    bb.def(py::init([](double w, double h, const py::kwargs& kw) {
               auto o = make_object<billboard>();
               o->set_width(w);
               o->set_height(h);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("width") = 0.0, py::arg("height") = 0.0);
    real(bb, "width", &billboard::get_width, &billboard::set_width);
    real(bb, "height", &billboard::get_height, &billboard::set_height);

    object_class<light> li(m, "Light", "A point light at the object's position.");
    li.def(py::init([](const py::kwargs& kw) {
        auto o = make_object<light>();
        apply_common(*o, kw);
        return o;
    }));
}

void bind_composites(py::module_& m) {
    object_class<mesh> me(m, "Mesh", "A free triangle mesh: vertices and triangles.");
    me.def(py::init(
               [](const py::object& vertices, const py::object& triangles, const py::kwargs& kw) {
                   auto o = make_object<mesh>();
                   if (!vertices.is_none()) o->set_vertices(to_points3(vertices, "vertices"));
                   if (!triangles.is_none()) o->set_triangles(to_triangles(triangles));
                   apply_common(*o, kw);
                   return o;
               }),
           py::arg("vertices") = py::none(), py::arg("triangles") = py::none())
        .def_property(
            "vertices", [](const mesh& o) { return points_to_array(o.get_vertices()); },
            [](mesh& o, const py::object& a) { o.set_vertices(to_points3(a, "vertices")); })
        .def_property(
            "triangles",
            [](const mesh& o) {
                py::array_t<std::uint32_t> out(
                    {static_cast<py::ssize_t>(o.triangles_size()), py::ssize_t(3)});
                auto r = out.mutable_unchecked<2>();
                for (std::uint32_t i = 0; i < o.triangles_size(); ++i)
                    for (int k = 0; k < 3; ++k) r(i, k) = o.get_triangle(i).vertex[k];
                return out;
            },
            [](mesh& o, const py::object& a) { o.set_triangles(to_triangles(a)); })
        .def("has_valid_indices", &mesh::has_valid_indices);

    object_class<custom> cu(m, "Custom",
                            "A composite drawn from a custom mesh with several named styles.");
    cu.def(py::init([](const std::string& mesh_id, const py::kwargs& kw) {
               auto o = make_object<custom>(mesh_id);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("mesh_id") = "")
        .def_property("mesh_id", &custom::get_mesh_id, &custom::set_mesh_id)
        .def_property("inline_mesh", &custom::get_inline_mesh, &custom::set_inline_mesh)
        .def_property_readonly("num_styles", &custom::num_styles)
        .def(
            "style",
            [](const custom& o, std::uint32_t i) {
                if (i >= o.num_styles())
                    throw py::index_error("style " + std::to_string(i) + " of " +
                                          std::to_string(o.num_styles()));
                return o.get_style(i);
            },
            py::arg("index"))
        .def(
            "set_style",
            [](custom& o, std::int64_t i, const graphics::style& s) {
                if (i < 0 || i > custom::max_style_index)
                    value_error("style index must be 0 to 2^31 - 1");
                o.set_style(static_cast<std::uint32_t>(i), s);
            },
            py::arg("index"), py::arg("style"))
        .def("reset_styles", &custom::reset_styles)
        .def(
            "add_primitive",
            [](custom& o, const basic_object& part, std::optional<std::int32_t> style) {
                check_mesh_buildable(part);
                if (style) {
                    o.add_primitive(part, *style);
                    return *style;
                }
                return o.add_primitive(part);
            },
            py::arg("part"), py::arg("style") = py::none(),
            "Appends the part's mesh to the inline mesh; returns the style index of its faces.")
        .def("clear", &custom::clear);

    object_class<extruded_polygon> ep(m, "ExtrudedPolygon", "A flat outline extruded to a solid.");
    ep.def(py::init([](const py::object& points, const vector3d& extrusion, const vector3d& scaling,
                       const py::kwargs& kw) {
               auto o = make_object<extruded_polygon>();
               if (!points.is_none()) o->set_points(to_points3(points, "points"));
               o->set_extrusion(extrusion);
               o->set_extrusion_scaling(scaling);
               apply_common(*o, kw);
               return o;
           }),
           py::arg("points") = py::none(), py::arg("extrusion") = vector3d(0.0, 1.0, 0.0),
           py::arg("scaling") = vector3d(1.0, 1.0, 1.0))
        .def_property(
            "points", [](const extruded_polygon& o) { return points_to_array(o.get_points()); },
            [](extruded_polygon& o, const py::object& a) { o.set_points(to_points3(a, "points")); })
        .def_property("extrusion", &extruded_polygon::get_extrusion,
                      &extruded_polygon::set_extrusion)
        .def_property("scaling", &extruded_polygon::get_extrusion_scaling,
                      &extruded_polygon::set_extrusion_scaling);

    object_class<path_extrusion> pe(m, "PathExtrusion", "A profile swept along a path.");
    pe.def(py::init([](const py::object& profile, const py::object& path, const py::kwargs& kw) {
               auto o = make_object<path_extrusion>();
               if (!profile.is_none()) o->set_profile(to_points3(profile, "profile"));
               if (!path.is_none()) o->set_path(to_points3(path, "path"));
               apply_common(*o, kw);
               return o;
           }),
           py::arg("profile") = py::none(), py::arg("path") = py::none())
        .def_property(
            "profile", [](const path_extrusion& o) { return points_to_array(o.get_profile()); },
            [](path_extrusion& o, const py::object& a) { o.set_profile(to_points3(a, "profile")); })
        .def_property(
            "path", [](const path_extrusion& o) { return points_to_array(o.get_path()); },
            [](path_extrusion& o, const py::object& a) { o.set_path(to_points3(a, "path")); });
}

}  // namespace

void bind_primitives(py::module_& m) {
    bind_custom_mesh(m);
    bind_solids(m);
    bind_flat(m);
    bind_markers(m);
    bind_composites(m);
}

}  // namespace facet_python
