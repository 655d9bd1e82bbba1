// primitives::mesh: a free triangle mesh.
#include <utility>

#include "facet/primitives.h"
#include "objects/point_box.h"

namespace primitives {

mesh::mesh() = default;

std::uint32_t mesh::add_vertex(const vector3d& p) {
    m_vertices.push_back(p);
    set_dirty(true);
    return static_cast<std::uint32_t>(m_vertices.size() - 1);
}

void mesh::add_triangle(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2) {
    add_triangle(triangle(v0, v1, v2));
}

void mesh::add_triangle(const triangle& t) {
    m_triangles.push_back(t);
    set_dirty(true);
}

void mesh::add_quad(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2, std::uint32_t v3) {
    m_triangles.emplace_back(v0, v1, v2);
    m_triangles.emplace_back(v0, v2, v3);
    set_dirty(true);
}

void mesh::clear() {
    m_vertices.clear();
    m_triangles.clear();
    set_dirty(true);
}

void mesh::set_vertices(std::vector<vector3d> vertices) {
    m_vertices = std::move(vertices);
    set_dirty(true);
}

void mesh::set_triangles(std::vector<triangle> triangles) {
    m_triangles = std::move(triangles);
    set_dirty(true);
}

bool mesh::has_valid_indices() const {
    const std::size_t n = m_vertices.size();
    for (const triangle& t : m_triangles)
        if (t.vertex[0] >= n || t.vertex[1] >= n || t.vertex[2] >= n) return false;
    return true;
}

boundingbox mesh::get_boundingbox() const {
    return facet::detail::box_of_points(m_vertices.begin(), m_vertices.end());
}

mesh* mesh::clone() const { return new mesh(*this); }

void mesh::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string mesh::class_id() const { return "mesh"; }

void mesh::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

}  // namespace primitives
