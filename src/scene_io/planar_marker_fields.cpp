// Scene-file fields of the planar, line and marker primitives.
#include <string>

#include "facet/primitives.h"
#include "scene_io/tokens.h"

namespace primitives {

using scene_io::expect;
using scene_io::read_vector;
using scene_io::write_field;
using scene_io::write_vector_field;

namespace {
const char* const quad_corner_keywords[4] = {"p1", "p2", "p3", "p4"};
const char* const line_point_keywords[2] = {"point1", "point2"};
}  // namespace

void quad::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    for (int i = 0; i < 4; ++i) write_vector_field(os, quad_corner_keywords[i], m_points[i]);
}

void quad::do_read(std::istream& is) {
    basic_object::do_read(is);
    for (int i = 0; i < 4; ++i) {
        expect(is, quad_corner_keywords[i]);
        m_points[i] = read_vector(is);
    }
}

void polygon::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    scene_io::write_points(os, m_points);
}

// The points the polygon had are removed, then each point read is added with add_point.
void polygon::do_read(std::istream& is) {
    basic_object::do_read(is);
    const std::vector<vector3d> points = scene_io::read_points(is);
    clear();
    for (const vector3d& p : points) add_point(p);
}

void line::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    for (int i = 0; i < 2; ++i) write_vector_field(os, line_point_keywords[i], m_points[i]);
}

void line::do_read(std::istream& is) {
    basic_object::do_read(is);
    for (int i = 0; i < 2; ++i) {
        expect(is, line_point_keywords[i]);
        m_points[i] = read_vector(is);
    }
}

void polyline::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    scene_io::write_points(os, m_points);
}

// The list is read in full, then replaces the object's points.
void polyline::do_read(std::istream& is) {
    basic_object::do_read(is);
    std::vector<vector3d> points = scene_io::read_points(is);
    m_points.swap(points);
}

void arrow::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "length", m_length);
    write_field(os, "head_base", m_head_base);
    write_field(os, "head_length", m_head_length);
}

void arrow::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_length = scene_io::read_double_field(is, "length");
    m_head_base = scene_io::read_double_field(is, "head_base");
    m_head_length = scene_io::read_double_field(is, "head_length");
}

void crosshair::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "size", m_size);
}

void crosshair::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_size = scene_io::read_double_field(is, "size");
}

void text::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "text", m_text);
}

void text::do_read(std::istream& is) {
    basic_object::do_read(is);
    expect(is, "text");
    m_text = scene_io::read_word(is);
}

void billboard::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "width", m_width);
    write_field(os, "height", m_height);
}

void billboard::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_width = scene_io::read_double_field(is, "width");
    m_height = scene_io::read_double_field(is, "height");
}

}  // namespace primitives
