// indexedfaceset: the mesh of a free triangle mesh.
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/face_limit.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::create_mesh(const primitives::mesh& m) {
    facet::detail::check_face_count(m, m.triangles_size());
    // Every vertex and face is written below: a rebuild at the same size reuses the arrays.
    facet::detail::size_for_overwrite(m_vertices, m.vertices_size());
    facet::detail::size_for_overwrite(m_faces, m.triangles_size());

    std::uint32_t i = 0;
    for (auto v = m.vertices_begin(); v != m.vertices_end(); ++v) m_vertices[i++] = *v;

    // The faces get the object's brush and pen and style 0 right away, which is what
    // finish_mesh would give them after the normals and half-edges (which read neither).
    face blank;
    blank.brush = m.get_brush();
    blank.pen = m.get_pen();
    blank.style = 0;
    face* const faces = m_faces.data();
    std::uint32_t j = 0;
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t, ++j) {
        faces[j] = blank;
        faces[j].vertex[0] = t->vertex[0];
        faces[j].vertex[1] = t->vertex[1];
        faces[j].vertex[2] = t->vertex[2];
    }

    // smooth_mesh writes every corner normal, tangent and bitangent: the steps before it leave
    // them unwritten.
    finish_mesh_edges(m, false);
    apply_display_flags(m);
    apply_texture_params(m, false);
    smooth_corners(m.get_smoothing_threshold_angle(), true);
}
