// indexedfaceset: texture settings from the object, box-projected texture coordinates and flat
// tangent frames.
#include <algorithm>
#include <cmath>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "facet/objects.h"
#include "ifs/box_projection.h"
#include "ifs/face_shading.h"
#include "ifs/mesh_buffers.h"

using facet::detail::apply_row;
using facet::detail::dominant_axis;

void indexedfaceset::set_texture_params(const primitives::basic_object& object) {
    apply_texture_settings(object);
    // compute_tangent_space writes every tangent and bitangent, so they are not zeroed first.
    if (object.get_texgen_mode() == graphics::texgen_mode::box) gen_box_texcoords();
    compute_tangent_space();
}

void indexedfaceset::apply_texture_settings(const primitives::basic_object& object) {
    if (num_styles() == 0) build_standard_style(object);
    if (num_styles() == 1) {
        graphics::texture_info& texture = m_styles[0].texture;
        m_textured = object.texturing_enabled();
        texture.texturing = m_textured;
        m_texture_id = object.get_texture_id();
        texture.texture_id = m_texture_id;
        m_normal_map_id = object.get_norm_map_id();
        texture.norm_map_id = m_normal_map_id;
        m_texture_rotated = object.texture_rotated();
        m_texture_mode = object.get_texture_mode();
        texture.texture_mode = m_texture_mode;
        texture.texgen_mode = object.get_texgen_mode();
        m_texture_scale = object.get_texture_scale();
        texture.texture_scale = m_texture_scale;
    }
}

void indexedfaceset::gen_texcoords_box() {
    const std::uint32_t num_faces = this->num_faces();
    facet::detail::size_for_overwrite(m_texcoords, 3 * num_faces);
    // Zeroed in reused storage rather than in freshly allocated pages.
    facet::detail::size_for_overwrite(m_tangents, 3 * num_faces);
    facet::detail::size_for_overwrite(m_bitangents, 3 * num_faces);
    std::fill(m_tangents.begin(), m_tangents.end(), vector3d());
    std::fill(m_bitangents.begin(), m_bitangents.end(), vector3d());
    gen_box_texcoords();
}

void indexedfaceset::gen_box_texcoords() {
    const std::uint32_t num_faces = this->num_faces();
    // Each face's three slots are written below, with (0, 0) for a face without a style.
    facet::detail::size_for_overwrite(m_texcoords, 3 * num_faces);

    // Every face writes only its own three coordinates, so one pass over the faces with the
    // projection of each face's style gives what a pass per style would.
    std::vector<facet::detail::box_projection> projections;
    projections.reserve(num_styles());
    for (const graphics::style& s : m_styles)
        projections.emplace_back(s.texture.texture_scale.x, s.texture.texture_scale.y);

    for (std::uint32_t i = 0; i < num_faces; ++i) {
        const std::int32_t s = m_faces[i].style;
        if (s < 0 || static_cast<std::uint32_t>(s) >= projections.size()) {
            texcoord* const slots = m_texcoords.data() + 3 * i;
            slots[0] = slots[1] = slots[2] = texcoord();
            continue;
        }
        gen_texcoords_for_face(projections[s].plain, projections[s].rotated, i);
    }
}

void indexedfaceset::gen_texcoords_for_face(const matrix2x3 (&plain)[3],
                                            const matrix2x3 (&rotated)[3],
                                            std::uint32_t face_index) {
    face& f = m_faces[face_index];
    const unsigned axis = dominant_axis(f.normal);
    const matrix2x3& m = m_texture_rotated ? rotated[axis] : plain[axis];
    for (std::uint32_t k = 0; k < 3; ++k) {
        const vector3d& p = m_vertices[f.vertex[k]];
        const std::uint32_t slot = 3 * face_index + k;
        m_texcoords[slot] = texcoord(static_cast<float>(apply_row(m, 0, p)),
                                     static_cast<float>(apply_row(m, 1, p)));
        f.texcoord[k] = slot;
    }
}

void indexedfaceset::compute_tangent_space() {
    const std::uint32_t num_faces = this->num_faces();
    // Each one written.
    facet::detail::size_for_overwrite(m_tangents, 3 * num_faces);
    facet::detail::size_for_overwrite(m_bitangents, 3 * num_faces);
    for (std::uint32_t i = 0; i < num_faces; ++i) {
        face& f = m_faces[i];
        vector2d uv[3];
        for (int k = 0; k < 3; ++k) {
            const texcoord& t = m_texcoords[f.texcoord[k]];
            uv[k] = vector2d(static_cast<double>(t.u), static_cast<double>(t.v));
        }
        vector3d tangent;
        vector3d bitangent;
        ComputeTangentBasis(m_vertices[f.vertex[0]], m_vertices[f.vertex[1]],
                            m_vertices[f.vertex[2]], uv[0], uv[1], uv[2], tangent, bitangent);
        for (std::uint32_t k = 0; k < 3; ++k) {
            m_tangents[3 * i + k] = tangent;
            m_bitangents[3 * i + k] = bitangent;
        }
        f.tangent = tangent;
        f.bitangent = bitangent;
    }
}
