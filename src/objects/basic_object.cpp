// primitives::basic_object: construction, copying, destruction, identity, hierarchy and the
// appearance setters.
#include <algorithm>

#include "facet/objects.h"

namespace primitives {

primitive_visitor::~primitive_visitor() = default;

basic_object::basic_object() : m_mesh(new indexedfaceset) {}

basic_object::basic_object(const basic_object& other) : m_mesh(new indexedfaceset) {
    copy_common_fields(other);
}

basic_object& basic_object::operator=(const basic_object& other) {
    if (this == &other) return *this;
    copy_common_fields(other);
    m_parentname = "_null_";
    m_owner_id = "_null_";
    m_parent = nullptr;
    m_mesh.reset(new indexedfaceset);
    m_children.clear();
    m_dirty = true;
    m_shadows_dirty = true;
    return *this;
}

basic_object::~basic_object() {
    m_mesh.reset();
    if (m_parent != nullptr) m_parent->remove_child(this);
    for (basic_object* child : m_children) child->m_parent = nullptr;
}

void basic_object::copy_common_fields(const basic_object& other) {
    m_name = other.m_name;
    m_material_ref_id = other.m_material_ref_id;
    m_backface_culling = other.m_backface_culling;
    m_visible = other.m_visible;
    m_edges_only = other.m_edges_only;
    m_ghost = other.m_ghost;
    m_marked = other.m_marked;
    m_hide_when_ghosted = other.m_hide_when_ghosted;
    m_black_in_bw_mode = other.m_black_in_bw_mode;
    m_ignore_for_shadows = other.m_ignore_for_shadows;
    m_position = other.m_position;
    m_orientation_axis = other.m_orientation_axis;
    m_orientation_angle = other.m_orientation_angle;
    m_smoothing_threshold_angle = other.m_smoothing_threshold_angle;
    m_visible_edge_threshold_angle = other.m_visible_edge_threshold_angle;
    m_brush = other.m_brush;
    m_pen = other.m_pen;
    m_texturing = other.m_texturing;
    m_show_texture_in_bw_mode = other.m_show_texture_in_bw_mode;
    m_texture_rotated = other.m_texture_rotated;
    m_texture_id = other.m_texture_id;
    m_norm_map_id = other.m_norm_map_id;
    m_texgen_mode = other.m_texgen_mode;
    m_texture_scale = other.m_texture_scale;
    m_texture_mode = other.m_texture_mode;
}

// ---- identity and hierarchy ----

void basic_object::set_name(const std::string& name) {
    m_name = name;
    for (basic_object* child : m_children) child->m_parentname = name;
}

void basic_object::set_parent(basic_object* p) {
    if (m_parent != nullptr) m_parent->remove_child(this);
    if (p != nullptr) {
        p->add_child(this);
        m_parentname = p->m_name;
    } else {
        m_parentname = "_null_";
    }
    m_parent = p;
}

void basic_object::add_child(basic_object* child) { m_children.push_back(child); }

void basic_object::remove_child(basic_object* child) {
    const auto it = std::find(m_children.begin(), m_children.end(), child);
    if (it != m_children.end()) m_children.erase(it);
}

// ---- transform ----

void basic_object::set_position(const vector3<int>& p) {
    m_position =
        vector3d(static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z));
}

void basic_object::set_orientation(const vector3d& axis, double angle) {
    m_orientation_axis = axis;
    m_orientation_angle = angle;
}

void basic_object::set_orientation(const vector3<int>& axis, double angle) {
    set_orientation(vector3d(static_cast<double>(axis.x), static_cast<double>(axis.y),
                             static_cast<double>(axis.z)),
                    angle);
}

axis_angle basic_object::get_orientation() const {
    axis_angle result;
    result.axis = m_orientation_axis;
    result.angle = m_orientation_angle;
    return result;
}

// ---- appearance ----

void basic_object::set_brush(const graphics::brush& b) {
    if (m_brush != b) {
        m_brush = b;
        set_dirty(true);
    }
}

void basic_object::set_pen(const graphics::pen& p) {
    if (m_pen != p) {
        m_pen = p;
        set_dirty(true);
    }
}

void basic_object::enable_texturing(bool on) {
    if (m_texturing != on) {
        m_texturing = on;
        set_dirty(true);
    }
}

void basic_object::set_texture_id(std::uint32_t id) {
    if (m_texture_id != id) {
        m_texture_id = id;
        set_dirty(true);
    }
}

void basic_object::set_norm_map_id(std::uint32_t id) {
    if (m_norm_map_id != id) {
        m_norm_map_id = id;
        set_dirty(true);
    }
}

void basic_object::set_texture_rotated(bool rotated) {
    m_texture_rotated = rotated;
    set_dirty(true);
}

void basic_object::set_texture_mode(graphics::texture_mode mode) {
    m_texture_mode = mode;
    set_dirty(true);
}

void basic_object::set_texgen_mode(graphics::texgen_mode mode) {
    m_texgen_mode = mode;
    set_dirty(true);
}

void basic_object::set_texture_scale(double s, double t) {
    m_texture_scale = vector2d(s, t);
    set_dirty(true);
}

void basic_object::set_dirty(bool d) const {
    m_dirty = d;
    if (d) m_shadows_dirty = true;
}

}  // namespace primitives
