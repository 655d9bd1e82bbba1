// Scene-file fields of the solids.
#include "facet/primitives.h"
#include "scene_io/tokens.h"

namespace primitives {

using scene_io::write_field;

void box::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "width", m_width);
    write_field(os, "height", m_height);
    write_field(os, "depth", m_depth);
}

void box::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_width = scene_io::read_double_field(is, "width");
    m_height = scene_io::read_double_field(is, "height");
    m_depth = scene_io::read_double_field(is, "depth");
}

void cylinder::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "height", m_height);
    write_field(os, "radius", m_radius);
}

// The number of divisions is not part of the format: a cylinder read back has the default 6.
void cylinder::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_height = scene_io::read_double_field(is, "height");
    m_radius = scene_io::read_double_field(is, "radius");
}

void cone::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "height", m_height);
    write_field(os, "radius", m_radius);
}

void cone::do_read(std::istream& is) {
    basic_object::do_read(is);
    m_height = scene_io::read_double_field(is, "height");
    m_radius = scene_io::read_double_field(is, "radius");
}

}  // namespace primitives
