// indexedfaceset::build_shadow_volume: the plain, unoriented shadow volume of a face set.
#include <vector>

#include "facet/ifs.h"
#include "shadow/edge_table.h"
#include "shadow/extrusion.h"
#include "shadow/silhouette.h"

void indexedfaceset::build_shadow_volume(vector3d light, indexedfaceset& out) const {
    using facet::detail::extrude_from_light;
    FACET_CHECK(&out != this);

    // The output depends only on the complete silhouette list, so it is written once after the
    // walk; a face set without half-edges writes nothing at all.
    if (num_edges() == 0) return;

    const std::shared_ptr<const facet::detail::edge_table> table =
        facet::detail::edge_table::of(*this);
    std::vector<facet::detail::silhouette_edge>& silhouette = facet::detail::silhouette_scratch();
    facet::detail::find_silhouette(*this, *table, light, facet::detail::silhouette_rule::tolerant,
                                   silhouette);

    const auto n = static_cast<std::uint32_t>(silhouette.size());
    out.drop_edge_table();
    // Every vertex and face is written below.
    out.m_vertices.resize_for_overwrite(4 * n);
    out.m_faces.resize_for_overwrite(2 * n);
    out.m_styles.resize(1);
    const graphics::color grey(50, 50, 50, 50);
    out.m_styles[0] = graphics::style("std", graphics::brush(grey), graphics::pen(grey));
    out.m_backface_culling = false;

    vector3d* const vertices = out.m_vertices.data();
    face* const faces = out.m_faces.data();
    face side;
    side.style = 0;
    // Neighbouring silhouette edges mostly share a vertex: its far point is taken over.
    facet::detail::far_points far(light);
    for (std::uint32_t k = 0; k < n; ++k) {
        const facet::detail::silhouette_edge& e = silhouette[k];
        const vector3d& a = m_vertices.data()[e.a];
        const vector3d& b = m_vertices.data()[e.b];
        facet::detail::write_shadow_quad(vertices + 4 * k, a, b, far.of(e.a, a), far.of(e.b, b));
        const std::uint32_t v = 4 * k;
        side.vertex[0] = v;
        side.vertex[1] = v + 1;
        side.vertex[2] = v + 2;
        faces[2 * k] = side;
        side.vertex[1] = v + 2;
        side.vertex[2] = v + 3;
        faces[2 * k + 1] = side;
    }
}
