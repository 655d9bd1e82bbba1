// indexedfaceset: the mesh of a free triangle mesh.
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/face_limit.h"

void indexedfaceset::create_mesh(const primitives::mesh& m) {
    facet::detail::check_face_count(m, m.triangles_size());
    // Every vertex and face is written below: a rebuild at the same size reuses the arrays.
    m_vertices.resize_for_overwrite(m.vertices_size());
    m_faces.resize_for_overwrite(m.triangles_size());

    std::uint32_t i = 0;
    for (auto v = m.vertices_begin(); v != m.vertices_end(); ++v) m_vertices[i++] = *v;

    std::uint32_t j = 0;
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t)
        m_faces[j++] = face(t->vertex[0], t->vertex[1], t->vertex[2]);

    finish_mesh(m);
    smooth_mesh(m.get_smoothing_threshold_angle());
}
