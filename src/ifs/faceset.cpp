// indexedfaceset: destruction, the partial exchange and the style table.
#include "facet/ifs.h"
#include "facet/objects.h"
#include "ifs/mesh_buffers.h"

indexedfaceset::~indexedfaceset() {
    facet::detail::recycle(m_vertices);
    facet::detail::recycle(m_texcoords);
    facet::detail::recycle(m_normals);
    facet::detail::recycle(m_tangents);
    facet::detail::recycle(m_bitangents);
    facet::detail::recycle(m_faces);
    facet::detail::recycle(m_edges);
    facet::detail::recycle(m_face_normals);
}

void indexedfaceset::swap(indexedfaceset& other) noexcept {
    drop_edge_table();
    other.drop_edge_table();
    m_vertices.swap(other.m_vertices);
    m_texcoords.swap(other.m_texcoords);
    m_faces.swap(other.m_faces);
    m_edges.swap(other.m_edges);
    m_lines.swap(other.m_lines);
    m_styles.swap(other.m_styles);
}

void indexedfaceset::set_style(std::uint32_t index, graphics::style s) {
    if (index < num_styles()) m_styles[index] = s;
}

void indexedfaceset::build_standard_style(const primitives::basic_object& object) {
    m_styles.resize(1);
    graphics::style& s = m_styles[0];
    s.name = "std";
    s.material_ref_id = object.get_material_ref_id();
    s.brush = object.get_brush();
    s.pen = object.get_pen();
    s.texture.texture_id = 0;
    s.texture.norm_map_id = 0;
    s.texture.texturing = false;
}
