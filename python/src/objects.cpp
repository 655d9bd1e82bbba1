// The base of every scene object: identity, transform, appearance, flags, hierarchy and mesh.
#include <sstream>

#include "common.h"
#include "facet/custom_mesh.h"
#include "facet/primitives.h"

namespace facet_python {

using primitives::basic_object;

void apply_common(basic_object& o, const py::kwargs& kwargs) {
    for (const auto& item : kwargs) {
        const std::string key = py::str(item.first);
        const py::handle v = item.second;
        if (key == "name")
            o.set_name(v.cast<std::string>());
        else if (key == "position")
            o.set_position(v.cast<vector3d>());
        else if (key == "orientation") {
            const auto t = v.cast<std::pair<vector3d, double>>();
            o.set_orientation(t.first, t.second);
        } else if (key == "brush")
            o.set_brush(v.cast<graphics::brush>());
        else if (key == "pen")
            o.set_pen(v.cast<graphics::pen>());
        else if (key == "color")
            o.set_brush(graphics::brush(v.cast<graphics::color>(), o.get_brush().get_style()));
        else if (key == "material")
            o.set_material_ref_id(v.cast<std::string>());
        else if (key == "visible")
            o.set_visible(v.cast<bool>());
        else
            throw py::type_error("unexpected keyword argument '" + key + "'");
    }
}

namespace {

// Whether building the object's mesh makes faces (the builders then compute tangent frames,
// which need the texture coordinates that only the box texture generation makes).
bool makes_faces(const basic_object& o) {
    if (dynamic_cast<const primitives::box*>(&o) || dynamic_cast<const primitives::cylinder*>(&o) ||
        dynamic_cast<const primitives::cone*>(&o))
        return true;
    if (const auto* p = dynamic_cast<const primitives::polygon*>(&o)) return p->size() >= 3;
    if (const auto* mm = dynamic_cast<const primitives::mesh*>(&o)) return mm->triangles_size() > 0;
    if (const auto* e = dynamic_cast<const primitives::extruded_polygon*>(&o))
        return e->size() >= 3;
    if (const auto* pe = dynamic_cast<const primitives::path_extrusion*>(&o))
        return pe->get_profile().size() >= 3 && pe->get_path().size() >= 2;
    if (const auto* cu = dynamic_cast<const primitives::custom*>(&o)) {
        const graphics::custom_mesh* source = cu->get_source_mesh();
        return source != nullptr && source->num_faces() > 0;
    }
    return false;  // quads bring their own texture coordinates; lines and markers have no faces
}

}  // namespace

void check_mesh_buildable(const basic_object& o) {
    if (o.get_texgen_mode() != graphics::texgen_mode::box && makes_faces(o))
        value_error(o.class_id() + " '" + o.get_name() +
                    "': its faces need texture coordinates for their tangent frames, and only "
                    "texgen_mode BOX makes them");
    if (const auto* c = dynamic_cast<const primitives::cylinder*>(&o)) {
        const double n = c->get_number_of_divisions();
        if (n < 1 || n > 1073741823.0)
            value_error("cylinder '" + o.get_name() + "': divisions must be 1 to 2^30 - 1");
    } else if (const auto* mm = dynamic_cast<const primitives::mesh*>(&o)) {
        if (!mm->has_valid_indices())
            value_error("mesh '" + o.get_name() + "': a triangle names a vertex beyond the " +
                        std::to_string(mm->vertices_size()) + " vertices");
    } else if (const auto* cu = dynamic_cast<const primitives::custom*>(&o)) {
        const graphics::custom_mesh* source = cu->get_source_mesh();
        if (source != nullptr && !source->has_valid_indices())
            value_error("custom '" + o.get_name() + "': a face names a vertex beyond the " +
                        std::to_string(source->num_vertices()) + " vertices");
    }
}

namespace {

std::string object_repr(const py::object& self) {
    const auto& o = self.cast<const basic_object&>();
    std::ostringstream os;
    const vector3d p = o.get_position();
    os << "<facet." << py::str(self.attr("__class__").attr("__name__")).cast<std::string>() << " '"
       << o.get_name() << "' at (" << p.x << ", " << p.y << ", " << p.z << ")>";
    return os.str();
}

// The mesh of `o` as a face set of its own, built from the object's current parameters.
std::shared_ptr<face_set> build_mesh(const basic_object& o) {
    check_mesh_buildable(o);
    auto out = new_face_set();
    o.fill_mesh(*out->mesh);
    out->mesh->set_edges_only(o.edges_only());
    out->mesh->set_marked(o.is_marked());
    return out;
}

template <class Getter, class Setter>
void flag(py::class_<basic_object, std::shared_ptr<basic_object>>& c, const char* name, Getter get,
          Setter set) {
    c.def_property(name, get, set);
}

}  // namespace

void bind_objects(py::module_& m) {
    py::class_<basic_object, std::shared_ptr<basic_object>> c(
        m, "SceneObject",
        "The base of every scene object; on its own an empty object (scene type 'empty').");
    c.def(py::init([](const py::kwargs& kw) {
         auto o = make_object<basic_object>();
         apply_common(*o, kw);
         return o;
     }))
        .def_property_readonly("type", &basic_object::class_id,
                               "The type name of the scene format ('box', 'mesh', ...).")
        .def_property("name", &basic_object::get_name, &basic_object::set_name)
        .def_property("owner_id", &basic_object::get_owner_id, &basic_object::set_owner_id)
        .def_property("material", &basic_object::get_material_ref_id,
                      &basic_object::set_material_ref_id)
        .def_property("position", &basic_object::get_position,
                      [](basic_object& o, const vector3d& p) { o.set_position(p); })
        .def_property(
            "orientation",
            [](const basic_object& o) {
                const primitives::axis_angle a = o.get_orientation();
                return std::make_pair(a.axis, a.angle);
            },
            [](basic_object& o, const std::pair<vector3d, double>& a) {
                o.set_orientation(a.first, a.second);
            },
            "(axis, degrees): the rotation relative to the parent.")
        .def_property("brush", &basic_object::get_brush, &basic_object::set_brush)
        .def_property("pen", &basic_object::get_pen, &basic_object::set_pen)
        .def_property(
            "color", [](const basic_object& o) { return o.get_brush().get_color(); },
            [](basic_object& o, const graphics::color& col) {
                o.set_brush(graphics::brush(col, o.get_brush().get_style()));
            },
            "The brush color.");
    flag(c, "visible", &basic_object::visible, &basic_object::set_visible);
    flag(c, "backface_culling", &basic_object::get_backface_culling,
         &basic_object::set_backface_culling);
    flag(c, "edges_only", &basic_object::edges_only, &basic_object::set_edges_only);
    flag(c, "ghost", &basic_object::ghost, &basic_object::set_ghost);
    flag(c, "marked", &basic_object::is_marked, &basic_object::set_marked);
    flag(c, "hide_when_ghosted", &basic_object::hide_when_ghosted,
         &basic_object::set_hide_when_ghosted);
    flag(c, "black_in_bw_mode", &basic_object::black_in_bw_mode,
         &basic_object::set_black_in_bw_mode);
    flag(c, "ignore_for_shadows", &basic_object::ignore_for_shadows,
         &basic_object::set_ignore_for_shadows);
    flag(c, "smoothing_threshold", &basic_object::get_smoothing_threshold_angle,
         &basic_object::set_smoothing_threshold_angle);
    flag(c, "visible_edge_threshold", &basic_object::get_visible_edge_threshold_angle,
         &basic_object::set_visible_edge_threshold_angle);
    flag(c, "texturing", &basic_object::texturing_enabled, &basic_object::enable_texturing);
    flag(c, "texture_id", &basic_object::get_texture_id, &basic_object::set_texture_id);
    flag(c, "normal_map_id", &basic_object::get_norm_map_id, &basic_object::set_norm_map_id);
    flag(c, "texture_rotated", &basic_object::texture_rotated, &basic_object::set_texture_rotated);
    flag(c, "texture_mode", &basic_object::get_texture_mode, &basic_object::set_texture_mode);
    flag(c, "texgen_mode", &basic_object::get_texgen_mode, &basic_object::set_texgen_mode);
    flag(c, "show_texture_in_bw_mode", &basic_object::show_texture_in_bw_mode,
         &basic_object::set_show_texture_in_bw_mode);
    c.def_property("texture_scale", &basic_object::get_texture_scale,
                   [](basic_object& o, const vector2d& s) { o.set_texture_scale(s.x, s.y); })
        .def_property_readonly("dirty", &basic_object::is_dirty,
                               "Whether the object's cached mesh is out of date.")
        .def_property_readonly(
            "bounding_box",
            [](const basic_object& o) {
                const primitives::boundingbox b = o.get_boundingbox();
                return std::make_pair(b.center, vector3d(b.width, b.height, b.depth));
            },
            "(center, size) in object space.")
        .def_property_readonly(
            "world_matrix",
            [](const basic_object& o) {
                return matrix_to_array(primitives::calc_transformation_matrix(o));
            },
            "The object-to-world matrix, (4, 4), through every parent.")
        .def(
            "to_world",
            [](const basic_object& o, const vector3d& p) {
                return primitives::objectspace_to_worldspace(p, o);
            },
            py::arg("point"))
        .def(
            "to_object",
            [](const basic_object& o, const vector3d& p) {
                return primitives::worldspace_to_objectspace(p, o);
            },
            py::arg("point"))
        .def_property_readonly(
            "parent", [](const basic_object& o) { return scene_handle(o.get_parent()); },
            py::keep_alive<0, 1>(), "The parent object, or None (set it through the Scene).")
        .def_property_readonly(
            "children",
            [](const py::object& self) {
                py::list out;
                for (basic_object* child : self.cast<const basic_object&>().get_children())
                    out.append(kept_alive(scene_handle(child), self));
                return out;
            })
        .def_property_readonly(
            "in_scene", [](const basic_object& o) { return scene_owned(&o); },
            "Whether a Scene owns the object.")
        .def("mesh", &build_mesh,
             "The object's face set, built from its current parameters. The face set belongs "
             "to the returned object: its arrays are views into it.")
        .def(
            "copy",
            [](const basic_object& o) {
                return std::shared_ptr<basic_object>(o.clone(), object_deleter{});
            },
            "A copy without parent and children, owned by Python.")
        .def("__repr__", &object_repr);
}

}  // namespace facet_python
