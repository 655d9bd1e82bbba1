// The solid primitives: box, cylinder and cone.
#include <cmath>
#include <cstdint>

#include "facet/primitives.h"

namespace primitives {

// ---- box ----

box::box() { set_ignore_for_shadows(false); }

box::box(double w, double h, double d) : m_width(w), m_height(h), m_depth(d) {}

void box::set_width(double w) {
    m_width = w;
    set_dirty(true);
}

void box::set_height(double h) {
    m_height = h;
    set_dirty(true);
}

void box::set_depth(double d) {
    m_depth = d;
    set_dirty(true);
}

void box::set_size(const vector3d& size) {
    m_width = size.x;
    m_height = size.y;
    m_depth = size.z;
    set_dirty(true);
}

boundingbox box::get_boundingbox() const {
    return boundingbox(vector3d(m_width / 2.0, m_height / 2.0, m_depth / 2.0), m_width, m_height,
                       m_depth);
}

box* box::clone() const { return new box(*this); }

void box::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string box::class_id() const { return "box"; }

void box::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- cylinder ----

cylinder::cylinder() { set_ignore_for_shadows(false); }

cylinder::cylinder(double height, double radius) : m_height(height), m_radius(radius) {}

cylinder::cylinder(double height, double radius, std::uint32_t divisions)
    : m_height(height), m_radius(radius), m_number_of_divisions(divisions) {}

void cylinder::set_height(double h) {
    m_height = h;
    set_dirty(true);
}

void cylinder::set_radius(double r) {
    m_radius = r;
    set_dirty(true);
}

void cylinder::set_number_of_divisions(double divisions) {
    constexpr double largest = 4294967295.0;  // 2^32 - 1
    if (!(divisions > 0.0))
        m_number_of_divisions = 0;  // zero, negative or NaN
    else if (divisions >= largest)
        m_number_of_divisions = UINT32_MAX;
    else
        m_number_of_divisions = static_cast<std::uint32_t>(divisions);
    set_dirty(true);
}

boundingbox cylinder::get_boundingbox() const {
    return boundingbox(vector3d(m_radius, m_height / 2.0, m_radius), 2.0 * m_radius, m_height,
                       2.0 * m_radius);
}

cylinder* cylinder::clone() const { return new cylinder(*this); }

void cylinder::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string cylinder::class_id() const { return "cylinder"; }

void cylinder::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- cone ----

cone::cone() { set_ignore_for_shadows(false); }

cone::cone(double height, double radius) : m_height(height), m_radius(radius) {}

void cone::set_height(double h) {
    m_height = h;
    set_dirty(true);
}

void cone::set_radius(double r) {
    m_radius = r;
    set_dirty(true);
}

boundingbox cone::get_boundingbox() const {
    return boundingbox(vector3d(m_radius, m_height / 2.0, m_radius), 2.0 * m_radius, m_height,
                       2.0 * m_radius);
}

cone* cone::clone() const { return new cone(*this); }

void cone::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string cone::class_id() const { return "cone"; }

void cone::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

}  // namespace primitives
