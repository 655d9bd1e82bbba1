// indexedfaceset: the mesh of a free triangle mesh.
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/face_limit.h"
#include "ifs/face_shading.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::create_mesh(const primitives::mesh& m) {
    facet::detail::check_face_count(m, m.triangles_size());
    drop_edge_table();
    // Every vertex and face is written below: a rebuild at the same size reuses the arrays.
    facet::detail::size_for_overwrite(m_vertices, m.vertices_size());
    facet::detail::size_for_overwrite(m_faces, m.triangles_size());

    std::uint32_t i = 0;
    for (auto v = m.vertices_begin(); v != m.vertices_end(); ++v) m_vertices[i++] = *v;

    // The texture settings first (they touch neither vertices nor faces), so that each face
    // record is written once, complete: vertices, the object's brush and pen and style 0 (what
    // finish_mesh would give), flat normal, box texture coordinates and tangent frame.
    apply_display_flags(m);
    apply_texture_settings(m);
    const bool box = m.get_texgen_mode() == graphics::texgen_mode::box;
    const std::uint32_t n = m.triangles_size();
    // The vertex indices packed three per face, for the half-edge lists of both passes.
    carray<std::uint32_t> corners;
    size_shaded_arrays(n, box, corners);
    const facet::detail::face_shading shade(m_vertices, m_texcoords, m_styles, m_texture_rotated,
                                            box);
    face blank;
    blank.brush = m.get_brush();
    blank.pen = m.get_pen();
    blank.style = 0;
    face* const faces = m_faces.data();
    vector3d* const normals = m_face_normals.data();
    std::uint32_t j = 0;
    for (auto t = m.triangles_begin(); t != m.triangles_end(); ++t, ++j) {
        face f = blank;
        f.vertex[0] = t->vertex[0];
        f.vertex[1] = t->vertex[1];
        f.vertex[2] = t->vertex[2];
        normals[j] = shade(f, j);
        faces[j] = f;
        for (std::uint32_t k = 0; k < 3; ++k) corners.data()[3 * j + k] = f.vertex[k];
    }

    const double angle = m.get_smoothing_threshold_angle();
    link_halfedges(&angle, &corners);  // construct_halfedge_data, then determine_sharp_edges
    set_visible_edge_treshold(m.get_visible_edge_threshold_angle());
    smooth_corners(angle, true, &corners);
    facet::detail::recycle(corners);
}
