// graphics::custom_mesh and the process-wide mesh map.
#include "facet/custom_mesh.h"

#include <stdexcept>

namespace graphics {

// ---- custom_mesh ----

std::uint32_t custom_mesh::add_vertex(const vector3d& p) {
    m_vertices.push_back(p);
    return static_cast<std::uint32_t>(m_vertices.size() - 1);
}

std::uint32_t custom_mesh::add_face(const custom_mesh_face& f) {
    m_faces.push_back(f);
    return static_cast<std::uint32_t>(m_faces.size() - 1);
}

std::uint32_t custom_mesh::add_face(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2,
                                    std::int32_t style_index) {
    return add_face(custom_mesh_face(v0, v1, v2, style_index));
}

std::int32_t custom_mesh::add_style(const std::string& name, const graphics::brush& b,
                                    const graphics::pen& p) {
    return add_style(graphics::style(name, b, p));
}

std::int32_t custom_mesh::add_style(const graphics::style& s) {
    m_styles.push_back(s);
    return static_cast<std::int32_t>(m_styles.size() - 1);
}

bool custom_mesh::has_valid_indices() const {
    const std::size_t n = m_vertices.size();
    for (const custom_mesh_face& f : m_faces)
        if (f.vertex[0] >= n || f.vertex[1] >= n || f.vertex[2] >= n) return false;
    return true;
}

void custom_mesh::clear() {
    m_vertices.clear();
    m_faces.clear();
    m_styles.clear();
}

void custom_mesh::swap(custom_mesh& other) noexcept {
    m_name.swap(other.m_name);
    m_vertices.swap(other.m_vertices);
    m_faces.swap(other.m_faces);
    m_styles.swap(other.m_styles);
}

// ---- mesh_map ----

custom_mesh& mesh_map::add_mesh(custom_mesh mesh) {
    return add_mesh(std::make_unique<custom_mesh>(std::move(mesh)));
}

custom_mesh& mesh_map::add_mesh(std::unique_ptr<custom_mesh> mesh) {
    if (!mesh) throw std::invalid_argument("mesh_map: null mesh");
    if (mesh->get_name().empty())
        throw std::invalid_argument("mesh_map: a registered mesh needs a name");
    std::unique_ptr<custom_mesh>& slot = m_meshes[mesh->get_name()];
    slot = std::move(mesh);
    return *slot;
}

const custom_mesh* mesh_map::find_mesh(const std::string& name) const {
    const auto it = m_meshes.find(name);
    return it == m_meshes.end() ? nullptr : it->second.get();
}

custom_mesh* mesh_map::find_mesh(const std::string& name) {
    const auto it = m_meshes.find(name);
    return it == m_meshes.end() ? nullptr : it->second.get();
}

bool mesh_map::remove_mesh(const std::string& name) { return m_meshes.erase(name) != 0; }

std::vector<std::string> mesh_map::get_names() const {
    std::vector<std::string> names;
    names.reserve(m_meshes.size());
    for (const auto& entry : m_meshes) names.push_back(entry.first);
    return names;
}

mesh_map& get_global_mesh_map() {
    static mesh_map map;
    return map;
}

}  // namespace graphics
