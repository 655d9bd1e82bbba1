// primitives::custom: a composite object drawn from a registered or inline mesh with styles.
#include <algorithm>
#include <utility>

#include "facet/math3d.h"
#include "facet/primitives.h"
#include "objects/point_box.h"

namespace primitives {

namespace {

// A style holding the appearance of a part: its name, material reference, brush, pen and
// texture settings.
graphics::style style_of(const basic_object& part) {
    graphics::style s(part.get_name(), part.get_brush(), part.get_pen());
    s.material_ref_id = part.get_material_ref_id();
    s.texture.texture_id = part.get_texture_id();
    s.texture.norm_map_id = part.get_norm_map_id();
    s.texture.texgen_mode = part.get_texgen_mode();
    s.texture.texture_mode = part.get_texture_mode();
    s.texture.texture_scale = part.get_texture_scale();
    s.texture.texture_rotated = part.texture_rotated();
    s.texture.texturing = part.texturing_enabled();
    return s;
}

// The part's placement relative to its parent: translation × rotation.
matrix44d local_matrix(const basic_object& part) {
    const vector3d& p = part.get_position();
    const axis_angle r = part.get_orientation();
    matrix44d translation;
    make_translation_matrix(translation, p.x, p.y, p.z);
    matrix44d rotation;
    make_rotation_matrix(rotation, r.angle, r.axis.x, r.axis.y, r.axis.z);
    return translation * rotation;
}

}  // namespace

custom::custom() = default;

custom::custom(const std::string& mesh_id) : m_mesh_id(mesh_id) {}

void custom::set_mesh_id(const std::string& id) {
    m_mesh_id = id;
    set_dirty(true);
}

void custom::set_inline_mesh(graphics::custom_mesh m) {
    m_inline = std::move(m);
    set_dirty(true);
}

const graphics::custom_mesh* custom::get_source_mesh() const {
    if (m_mesh_id.empty()) return &m_inline;
    return graphics::get_global_mesh_map().find_mesh(m_mesh_id);
}

// ---- styles ----

std::uint32_t custom::num_styles() const {
    const graphics::custom_mesh* source = get_source_mesh();
    std::uint32_t n = source != nullptr ? source->num_styles() : 0;
    if (!m_style_overrides.empty()) n = std::max(n, m_style_overrides.rbegin()->first + 1);
    return n;
}

graphics::style custom::get_style(std::uint32_t index) const {
    FACET_CHECK(index < num_styles());
    const auto it = m_style_overrides.find(index);
    if (it != m_style_overrides.end()) return it->second;
    const graphics::custom_mesh* source = get_source_mesh();
    if (source != nullptr && index < source->num_styles()) return source->get_style(index);
    return graphics::style();
}

std::vector<graphics::style> custom::get_styles() const {
    const graphics::custom_mesh* source = get_source_mesh();
    std::vector<graphics::style> styles;
    if (source != nullptr) styles = source->get_styles();
    styles.resize(num_styles());
    for (const auto& entry : m_style_overrides) styles[entry.first] = entry.second;
    return styles;
}

void custom::set_style(std::uint32_t index, const graphics::style& s) {
    FACET_CHECK(index <= max_style_index);
    m_style_overrides[index] = s;
    set_dirty(true);
}

bool custom::has_style_override(std::uint32_t index) const {
    return m_style_overrides.count(index) != 0;
}

void custom::reset_styles() {
    m_style_overrides.clear();
    set_dirty(true);
}

// ---- composing ----

std::int32_t custom::add_primitive(const basic_object& part) {
    indexedfaceset part_mesh;
    part.fill_mesh(part_mesh);  // may throw; nothing has been changed yet

    const auto first = static_cast<std::int32_t>(m_inline.num_styles());
    std::vector<graphics::style> new_styles;
    std::vector<std::int32_t> style_of_face(part_mesh.num_faces(), first);
    if (part_mesh.num_styles() > 1) {
        // A multi-style part brings its styles along; faces without a valid style keep the
        // part's own appearance through one more style.
        const std::int32_t count = static_cast<std::int32_t>(part_mesh.num_styles());
        for (std::uint32_t i = 0; i < part_mesh.num_styles(); ++i)
            new_styles.push_back(part_mesh.get_style(i));
        for (std::uint32_t j = 0; j < part_mesh.num_faces(); ++j) {
            const std::int32_t s = part_mesh.get_face(j).style;
            if (s >= 0 && s < count) {
                style_of_face[j] = first + s;
            } else {
                if (new_styles.size() == part_mesh.num_styles())
                    new_styles.push_back(style_of(part));
                style_of_face[j] = first + count;
            }
        }
    } else {
        new_styles.push_back(style_of(part));
    }

    append_part(part_mesh, part, style_of_face);
    for (const graphics::style& s : new_styles) m_inline.add_style(s);
    return first;
}

void custom::add_primitive(const basic_object& part, std::int32_t style_index) {
    indexedfaceset part_mesh;
    part.fill_mesh(part_mesh);  // may throw; nothing has been changed yet
    append_part(part_mesh, part, std::vector<std::int32_t>(part_mesh.num_faces(), style_index));
}

void custom::append_part(const indexedfaceset& part_mesh, const basic_object& part,
                         const std::vector<std::int32_t>& style_of_face) {
    const matrix44d placement = local_matrix(part);
    const std::uint32_t base = m_inline.num_vertices();
    for (std::uint32_t i = 0; i < part_mesh.num_vertices(); ++i)
        m_inline.add_vertex(transform_vector(placement, part_mesh.get_vertex(i)));
    for (std::uint32_t j = 0; j < part_mesh.num_faces(); ++j) {
        const face& f = part_mesh.get_face(j);
        m_inline.add_face(base + f.vertex[0], base + f.vertex[1], base + f.vertex[2],
                          style_of_face[j]);
    }
    set_dirty(true);
}

void custom::clear() {
    m_inline.clear();
    m_style_overrides.clear();
    set_dirty(true);
}

// ---- scene object ----

boundingbox custom::get_boundingbox() const {
    const graphics::custom_mesh* source = get_source_mesh();
    if (source == nullptr) return boundingbox();
    return facet::detail::box_of_points(source->get_vertices().begin(),
                                        source->get_vertices().end());
}

custom* custom::clone() const { return new custom(*this); }

void custom::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string custom::class_id() const { return "custom"; }

void custom::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

}  // namespace primitives
