// indexedfaceset: the common tail of the mesh builders.
#include "facet/ifs.h"
#include "facet/objects.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::finish_mesh(const primitives::basic_object& object) {
    finish_mesh_edges(object);
    finish_mesh_appearance(object);
}

void indexedfaceset::finish_mesh_edges(const primitives::basic_object& object) {
    compute_normals();
    const double sharp_angle = object.get_smoothing_threshold_angle();
    link_halfedges(&sharp_angle);  // construct_halfedge_data, then determine_sharp_edges
    set_visible_edge_treshold(object.get_visible_edge_threshold_angle());
}

void indexedfaceset::finish_mesh_appearance(const primitives::basic_object& object) {
    apply_object_appearance(object);
    set_texture_params(object);
}

void indexedfaceset::apply_object_appearance(const primitives::basic_object& object) {
    apply_display_flags(object);
    const graphics::brush brush = object.get_brush();
    const graphics::pen pen = object.get_pen();
    for (face& f : m_faces) {
        f.brush = brush;
        f.pen = pen;
        f.style = 0;
    }
}

void indexedfaceset::apply_display_flags(const primitives::basic_object& object) {
    m_backface_culling = object.get_backface_culling();
    m_edges_only = object.edges_only();
    m_show_texture_in_bw_mode = object.show_texture_in_bw_mode();
    m_black_in_bw_mode = object.black_in_bw_mode();
    m_texture_rotated = object.texture_rotated();
}

void indexedfaceset::size_shaded_arrays(std::uint32_t n, bool box, carray<std::uint32_t>& corners) {
    // smooth_mesh writes every corner normal, tangent and bitangent: they are left unwritten.
    facet::detail::size_for_overwrite(m_normals, 3 * n);
    facet::detail::size_for_overwrite(m_tangents, 3 * n);
    facet::detail::size_for_overwrite(m_bitangents, 3 * n);
    facet::detail::size_for_overwrite(m_face_normals, n);
    facet::detail::size_for_overwrite(corners, 3 * n);
    if (box) facet::detail::size_for_overwrite(m_texcoords, 3 * n);
}
