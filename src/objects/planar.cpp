// The planar and line primitives: quad, polygon, line and polyline.
#include <algorithm>
#include <utility>

#include "facet/check.h"
#include "facet/primitives.h"

namespace primitives {

namespace {

// The axis-aligned box of points [first, last): centre at the midpoint of the per-axis minimum
// and maximum, extents maximum − minimum. An empty range gives an empty box.
boundingbox bounds_of(const vector3d* first, const vector3d* last) {
    if (first == last) return boundingbox();
    vector3d lo = *first;
    vector3d hi = lo;
    for (const vector3d* p = first; p != last; ++p) {
        lo.x = std::min(lo.x, p->x);
        lo.y = std::min(lo.y, p->y);
        lo.z = std::min(lo.z, p->z);
        hi.x = std::max(hi.x, p->x);
        hi.y = std::max(hi.y, p->y);
        hi.z = std::max(hi.z, p->z);
    }
    return boundingbox((lo + hi) / 2.0, hi.x - lo.x, hi.y - lo.y, hi.z - lo.z);
}

}  // namespace

// ---- quad ----

quad::quad() { set_ignore_for_shadows(true); }

vector3d& quad::operator[](unsigned index) {
    FACET_CHECK(index < 4);
    set_dirty(true);
    return m_points[index];
}

const vector3d& quad::operator[](unsigned index) const {
    FACET_CHECK(index < 4);
    return m_points[index];
}

boundingbox quad::get_boundingbox() const { return bounds_of(m_points, m_points + 4); }

quad* quad::clone() const { return new quad(*this); }

void quad::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string quad::class_id() const { return "quad"; }

void quad::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- polygon ----

polygon::polygon() { set_ignore_for_shadows(true); }

void polygon::add_point(const vector3d& p) {
    m_points.push_back(p);
    set_dirty(true);
}

void polygon::remove_point(const vector3d& p) {
    const auto it = std::find(m_points.begin(), m_points.end(), p);
    if (it != m_points.end()) m_points.erase(it);
    set_dirty(true);
}

void polygon::reverse_points() {
    std::reverse(m_points.begin(), m_points.end());
    set_dirty(true);
}

void polygon::clear() {
    m_points.clear();
    set_dirty(true);
}

vector3d& polygon::operator[](unsigned index) {
    set_dirty(true);
    return m_points.at(index);
}

const vector3d& polygon::operator[](unsigned index) const { return m_points.at(index); }

boundingbox polygon::get_boundingbox() const {
    return bounds_of(m_points.data(), m_points.data() + m_points.size());
}

polygon* polygon::clone() const { return new polygon(*this); }

void polygon::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string polygon::class_id() const { return "polygon"; }

void polygon::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- line ----

line::line() { set_ignore_for_shadows(true); }

line::line(const vector3d& p1, const vector3d& p2) : m_points{p1, p2} {}

vector3d& line::operator[](unsigned index) {
    FACET_CHECK(index < 2);
    set_dirty(true);
    return m_points[index];
}

const vector3d& line::operator[](unsigned index) const {
    FACET_CHECK(index < 2);
    return m_points[index];
}

boundingbox line::get_boundingbox() const { return boundingbox(); }

line* line::clone() const { return new line(*this); }

void line::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string line::class_id() const { return "line"; }

void line::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

// ---- polyline ----

polyline::polyline() { set_ignore_for_shadows(true); }

void polyline::add_point(const vector3d& p) {
    m_points.push_back(p);
    set_dirty(true);
}

void polyline::clear() { m_points.clear(); }

void polyline::set_points(std::vector<vector3d> points) {
    m_points = std::move(points);
    set_dirty(true);
}

vector3d& polyline::operator[](unsigned index) {
    FACET_CHECK(index < m_points.size());
    set_dirty(true);
    return m_points[index];
}

const vector3d& polyline::operator[](unsigned index) const {
    FACET_CHECK(index < m_points.size());
    return m_points[index];
}

boundingbox polyline::get_boundingbox() const { return boundingbox(); }

polyline* polyline::clone() const { return new polyline(*this); }

void polyline::accept(primitive_visitor& v) {
    v.visit(*this);
    set_dirty(true);
}

std::string polyline::class_id() const { return "polyline"; }

void polyline::update_mesh(indexedfaceset& target) const { target.create_mesh(*this); }

}  // namespace primitives
