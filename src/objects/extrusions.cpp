// primitives::extruded_polygon and primitives::path_extrusion.
#include <utility>

#include "facet/primitives.h"
#include "ifs/extrusion_geometry.h"
#include "objects/point_box.h"

namespace primitives {

// ---- extruded_polygon ----

extruded_polygon::extruded_polygon() = default;

void extruded_polygon::add_point(const vector3d& p) {
    m_points.push_back(p);
    set_dirty(true);
}

void extruded_polygon::clear() {
    m_points.clear();
    set_dirty(true);
}

vector3d& extruded_polygon::operator[](std::size_t i) {
    vector3d& p = m_points.at(i);
    set_dirty(true);
    return p;
}

const vector3d& extruded_polygon::operator[](std::size_t i) const { return m_points.at(i); }

void extruded_polygon::set_points(std::vector<vector3d> points) {
    m_points = std::move(points);
    set_dirty(true);
}

void extruded_polygon::set_extrusion(const vector3d& e) {
    m_extrusion = e;
    set_dirty(true);
}

void extruded_polygon::set_extrusion_scaling(const vector3d& s) {
    m_extrusion_scaling = s;
    set_dirty(true);
}

vector3d extruded_polygon::far_point(const vector3d& p) const {
    const vector3d& s = m_extrusion_scaling;
    return vector3d(p.x * s.x, p.y * s.y, p.z * s.z) + m_extrusion;
}

boundingbox extruded_polygon::get_boundingbox() const {
    std::vector<vector3d> corners = m_points;
    for (const vector3d& p : m_points) corners.push_back(far_point(p));
    return facet::detail::box_of_points(corners.begin(), corners.end());
}

extruded_polygon* extruded_polygon::clone() const { return new extruded_polygon(*this); }

void extruded_polygon::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string extruded_polygon::class_id() const { return "extruded_polygon"; }

void extruded_polygon::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- path_extrusion ----

path_extrusion::path_extrusion() = default;

void path_extrusion::set_profile(std::vector<vector3d> profile) {
    m_profile = std::move(profile);
    set_dirty(true);
}

void path_extrusion::add_profile_point(const vector3d& p) {
    m_profile.push_back(p);
    set_dirty(true);
}

void path_extrusion::set_path(std::vector<vector3d> path) {
    m_path = std::move(path);
    set_dirty(true);
}

void path_extrusion::add_path_point(const vector3d& p) {
    m_path.push_back(p);
    set_dirty(true);
}

void path_extrusion::clear() {
    m_profile.clear();
    m_path.clear();
    set_dirty(true);
}

boundingbox path_extrusion::get_boundingbox() const {
    std::vector<vector2d> profile;
    profile.reserve(m_profile.size());
    for (const vector3d& q : m_profile) profile.push_back(vector2d(q.x, q.y));
    std::vector<vector3d> rings;
    if (!facet::detail::sweep_rings(profile, m_path, rings))
        return facet::detail::box_of_points(m_path.begin(), m_path.end());
    return facet::detail::box_of_points(rings.begin(), rings.end());
}

path_extrusion* path_extrusion::clone() const { return new path_extrusion(*this); }

void path_extrusion::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string path_extrusion::class_id() const { return "path_extrusion"; }

void path_extrusion::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

}  // namespace primitives
