// indexedfaceset: flat face and corner normals.
#include "facet/ifs.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::compute_normals() {
    drop_edge_table();
    const std::uint32_t n = num_faces();
    facet::detail::size_for_overwrite(m_normals, 3 * n);  // each one written
    for (std::uint32_t i = 0; i < n; ++i) {
        face& f = m_faces[i];
        const vector3d& p0 = m_vertices[f.vertex[0]];
        const vector3d& p1 = m_vertices[f.vertex[1]];
        const vector3d& p2 = m_vertices[f.vertex[2]];
        vector3d normal = cross(p1 - p0, p2 - p0);
        normal.normalize();
        f.normal = normal;
        m_normals[3 * i] = normal;
        m_normals[3 * i + 1] = normal;
        m_normals[3 * i + 2] = normal;
    }
}
