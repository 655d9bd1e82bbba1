// Scene-file fields of the solids.
#include "facet/primitives.h"
#include "scene_io/tokens.h"

namespace primitives {

using scene_io::expect;
using scene_io::read_double;
using scene_io::write_field;

void box::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "width", m_width);
    write_field(os, "height", m_height);
    write_field(os, "depth", m_depth);
}

void box::do_read(std::istream& is) {
    basic_object::do_read(is);
    expect(is, "width");
    m_width = read_double(is);
    expect(is, "height");
    m_height = read_double(is);
    expect(is, "depth");
    m_depth = read_double(is);
}

void cylinder::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "height", m_height);
    write_field(os, "radius", m_radius);
}

// The number of divisions is not part of the format: a cylinder read back has the default 6.
void cylinder::do_read(std::istream& is) {
    basic_object::do_read(is);
    expect(is, "height");
    m_height = read_double(is);
    expect(is, "radius");
    m_radius = read_double(is);
}

void cone::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "height", m_height);
    write_field(os, "radius", m_radius);
}

void cone::do_read(std::istream& is) {
    basic_object::do_read(is);
    expect(is, "height");
    m_height = read_double(is);
    expect(is, "radius");
    m_radius = read_double(is);
}

}  // namespace primitives
