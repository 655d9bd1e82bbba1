// Scene-file fields of free meshes, custom objects and extrusions.
#include <string>

#include "facet/primitives.h"
#include "scene_io/tokens.h"

namespace primitives {

using scene_io::expect;
using scene_io::write_field;

void mesh::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    scene_io::write_vector_list(os, "vertices", m_vertices);
    os << "  num_triangles " << m_triangles.size() << "\r\n";
    for (const triangle& t : m_triangles)
        os << "    " << t.vertex[0] << ' ' << t.vertex[1] << ' ' << t.vertex[2] << "\r\n";
}

// The lists are read in full, then replace the object's lists. A triangle naming a vertex
// beyond the block's vertex list is rejected here, so no file can trip the builder's check.
void mesh::do_read(std::istream& is) {
    basic_object::do_read(is);
    std::vector<vector3d> vertices = scene_io::read_vector_list(is, "vertices");
    expect(is, "num_triangles");
    const std::uint32_t count = scene_io::read_count(is);
    std::vector<triangle> triangles;
    for (std::uint32_t i = 0; i < count && is; ++i) {
        triangle t;
        is >> t.vertex[0] >> t.vertex[1] >> t.vertex[2];
        if (!is) break;
        for (std::uint32_t v : t.vertex)
            if (v >= vertices.size())
                throw format_exception(std::to_string(v),
                                       "a vertex index below " + std::to_string(vertices.size()));
        triangles.push_back(t);
    }
    m_vertices.swap(vertices);
    m_triangles.swap(triangles);
}

void custom::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    write_field(os, "mesh_id", m_mesh_id);
}

void custom::do_read(std::istream& is) {
    basic_object::do_read(is);
    expect(is, "mesh_id");
    set_mesh_id(scene_io::read_word(is));
}

// Two "offset" lines are written (extrusion, then its scaling) but one is read: a block written
// here does not read back, a property of the format that is kept. The round-trip dialect reads
// the second line as the scaling.
void extruded_polygon::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    scene_io::write_points(os, m_points);
    scene_io::write_vector_field(os, "offset", m_extrusion);
    scene_io::write_vector_field(os, "offset", m_extrusion_scaling);
}

void extruded_polygon::do_read(std::istream& is) {
    basic_object::do_read(is);
    const std::vector<vector3d> points = scene_io::read_points(is);
    m_points.clear();
    for (const vector3d& p : points) add_point(p);
    expect(is, "offset");
    m_extrusion = scene_io::read_vector(is);
    if (scene_io::reads_round_trip(is)) {
        expect(is, "offset");
        m_extrusion_scaling = scene_io::read_vector(is);
    }
}

void path_extrusion::do_write(std::ostream& os) const {
    basic_object::do_write(os);
    scene_io::write_vector_list(os, "polygon_verts", m_profile);
    scene_io::write_vector_list(os, "path_verts", m_path);
}

void path_extrusion::do_read(std::istream& is) {
    basic_object::do_read(is);
    std::vector<vector3d> profile = scene_io::read_vector_list(is, "polygon_verts");
    std::vector<vector3d> path = scene_io::read_vector_list(is, "path_verts");
    m_profile.swap(profile);
    m_path.swap(path);
}

}  // namespace primitives
