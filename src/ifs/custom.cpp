// indexedfaceset: the mesh of a custom object (a registered or inline mesh with its styles).
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/face_limit.h"
#include "ifs/face_shading.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::create_mesh(const primitives::custom& c) {
    const std::string& id = c.get_mesh_id();
    const graphics::custom_mesh* registered = graphics::get_global_mesh_map().find_mesh(id);
    if (registered != nullptr || id.empty())
        facet::detail::check_face_count(
            c, (id.empty() ? c.get_inline_mesh() : *registered).num_faces());

    drop_edge_table();

    // 1. The object's styles.
    const std::vector<graphics::style> styles = c.get_styles();
    const auto num_styles = static_cast<std::uint32_t>(styles.size());
    m_styles.resize(num_styles);
    for (std::uint32_t i = 0; i < num_styles; ++i) m_styles[i] = styles[i];

    // 2. The source mesh; an id that names no registered mesh ends the build here.
    if (registered == nullptr && !id.empty()) return;
    const graphics::custom_mesh& source = id.empty() ? c.get_inline_mesh() : *registered;

    // 3. Vertices.
    facet::detail::size_for_overwrite(m_vertices, source.num_vertices());  // each one written
    for (std::uint32_t i = 0; i < source.num_vertices(); ++i)
        m_vertices[i] = source.get_vertices()[i];

    // 4. Faces, with the brush and pen of their style or, without a valid one, the object's.
    // The texture settings come first (they touch neither vertices nor faces; the texture
    // coordinates use the rotation the face set holds after them), so that each face record is
    // written once, complete: with its flat normal, box texture coordinates and tangent frame.
    apply_texture_settings(c);
    const bool box = c.get_texgen_mode() == graphics::texgen_mode::box;
    const std::uint32_t n = source.num_faces();
    facet::detail::size_for_overwrite(m_faces, n);  // each one written
    // The vertex indices packed three per face, for the half-edge lists of both passes.
    carray<std::uint32_t> corners;
    size_shaded_arrays(n, box, corners);
    const facet::detail::face_shading shade(m_vertices, m_texcoords, m_styles, m_texture_rotated,
                                            box);
    const graphics::brush object_brush = c.get_brush();
    const graphics::pen object_pen = c.get_pen();
    const face blank;
    for (std::uint32_t j = 0; j < n; ++j) {
        const graphics::custom_mesh_face& from = source.get_faces()[j];
        face f = blank;
        f.vertex[0] = from.vertex[0];
        f.vertex[1] = from.vertex[1];
        f.vertex[2] = from.vertex[2];
        f.style = from.style;
        if (from.style < 0 || static_cast<std::uint32_t>(from.style) >= num_styles) {
            f.brush = object_brush;
            f.pen = object_pen;
        } else {
            f.brush = styles[from.style].brush;
            f.pen = styles[from.style].pen;
        }
        m_face_normals.data()[j] = shade(f, j);
        m_faces[j] = f;
        for (std::uint32_t k = 0; k < 3; ++k) corners.data()[3 * j + k] = f.vertex[k];
    }

    // 5. - 9.
    const double angle = c.get_smoothing_threshold_angle();
    link_halfedges(&angle, &corners);  // construct_halfedge_data, then determine_sharp_edges
    set_visible_edge_treshold(c.get_visible_edge_threshold_angle());
    m_backface_culling = c.get_backface_culling();
    m_edges_only = c.edges_only();
    m_show_texture_in_bw_mode = c.show_texture_in_bw_mode();
    m_black_in_bw_mode = c.black_in_bw_mode();
    m_texture_rotated = c.texture_rotated();
    smooth_corners(angle, true, &corners);
    facet::detail::recycle(corners);
}
