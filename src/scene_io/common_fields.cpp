// The block around every object and the fields all objects share.
#include <istream>
#include <ostream>
#include <string>

#include "facet/objects.h"
#include "scene_io/tokens.h"

namespace primitives {

using scene_io::expect;

void basic_object::write(std::ostream& os) const {
    os << "primitive " << class_id() << "\r\n";
    do_write(os);
    os << "endprimitive"
       << "\r\n";
}

void basic_object::read(std::istream& is) {
    do_read(is);
    expect(is, "endprimitive");
    set_dirty(true);
}

void basic_object::do_write(std::ostream& os) const {
    scene_io::write_field(os, "name", m_name);
    scene_io::write_field(os, "parent", m_parent != nullptr ? m_parent->get_name() : "_null_");
    scene_io::write_field(os, "ownerid", m_owner_id);
    os << "  mat_ref " << m_material_ref_id;  // no line break: the next keyword follows
    scene_io::write_vector_field(os, "position", m_position);
    os << "  orientation ";
    scene_io::write_vector(os, m_orientation_axis);
    os << ' ' << m_orientation_angle << "\r\n";
    os << "  brush " << m_brush << "\r\n";
    os << "  pen " << m_pen << "\r\n";
}

void basic_object::do_read(std::istream& is) {
    expect(is, "name");
    m_name = scene_io::read_word(is);
    expect(is, "parent");
    m_parentname = scene_io::read_word(is);
    expect(is, "ownerid");
    m_owner_id = scene_io::read_word(is);
    expect(is, "mat_ref");
    if (scene_io::reads_round_trip(is)) {
        m_material_ref_id = scene_io::read_material_reference(is);  // "position" consumed too
    } else {
        // Everything up to a NUL or the end of the stream, white space included.
        m_material_ref_id.clear();
        std::getline(is, m_material_ref_id, '\0');
        expect(is, "position");
    }
    m_position = scene_io::read_vector(is);
    expect(is, "orientation");
    m_orientation_axis = scene_io::read_vector(is);
    m_orientation_angle = scene_io::read_double(is);
    expect(is, "brush");
    m_brush.read(is);
    expect(is, "pen");
    m_pen.read(is);
}

}  // namespace primitives
