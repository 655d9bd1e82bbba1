// indexedfaceset::build_shadow_volume: the plain, unoriented shadow volume of a face set.
#include <vector>

#include "facet/ifs.h"
#include "shadow/extrusion.h"
#include "shadow/silhouette.h"

void indexedfaceset::build_shadow_volume(vector3d light, indexedfaceset& out) const {
    using facet::detail::extrude_from_light;
    using facet::detail::unit;
    FACET_CHECK(&out != this);

    // The output depends only on the complete silhouette list, so it is written once after the
    // walk; a face set without half-edges writes nothing at all.
    if (num_edges() == 0) return;

    std::vector<std::uint32_t> silhouette;
    facet::detail::find_silhouette(*this, light, facet::detail::silhouette_rule::tolerant,
                                   silhouette);

    const auto n = static_cast<std::uint32_t>(silhouette.size());
    // Every vertex and face is written below.
    out.m_vertices.resize_for_overwrite(4 * n);
    out.m_faces.resize_for_overwrite(2 * n);
    out.m_styles.resize(1);
    const graphics::color grey(50, 50, 50, 50);
    out.m_styles[0] = graphics::style("std", graphics::brush(grey), graphics::pen(grey));
    out.m_backface_culling = false;

    vector3d* const vertices = out.m_vertices.data();
    face* const faces = out.m_faces.data();
    for (std::uint32_t k = 0; k < n; ++k) {
        const halfedge& h = m_edges[silhouette[k]];
        const vector3d& a = m_vertices[h.vertex];
        const vector3d& b = m_vertices[h.m_twinedge->vertex];
        facet::detail::write_shadow_quad(vertices + 4 * k, a, b, extrude_from_light(a, light),
                                         extrude_from_light(b, light));
        faces[2 * k] = face(4 * k, 4 * k + 1, 4 * k + 2);
        faces[2 * k].style = 0;
        faces[2 * k + 1] = face(4 * k, 4 * k + 2, 4 * k + 3);
        faces[2 * k + 1].style = 0;
    }
}
