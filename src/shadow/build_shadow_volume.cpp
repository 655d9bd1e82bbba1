// indexedfaceset::build_shadow_volume: the plain, unoriented shadow volume of a face set.
#include <vector>

#include "facet/ifs.h"
#include "shadow/extrusion.h"

namespace {

// One degree in radians, used as a tolerance on dot products of unit vectors.
constexpr double silhouette_tolerance = 0.017453292519943295;

// The two faces are not clearly on the same side of the direction from the light; any NaN
// makes both comparisons false.
bool tolerant_silhouette(double a, double b) {
    const double e = silhouette_tolerance;
    return (a > -e && b < e) || (a < e && b > -e);
}

}  // namespace

void indexedfaceset::build_shadow_volume(vector3d light, indexedfaceset& out) const {
    using facet::detail::extrude_from_light;
    using facet::detail::unit;
    FACET_CHECK(&out != this);

    // The output depends only on the complete silhouette list, so it is written once after the
    // walk; a face set without half-edges writes nothing at all.
    const std::uint32_t num_edges = this->num_edges();
    if (num_edges == 0) return;

    std::vector<const halfedge*> silhouette;
    const halfedge* const edges = m_edges.data();
    for (std::uint32_t i = 0; i < num_edges; ++i) {
        const halfedge& h = edges[i];
        const halfedge* const t = h.m_twinedge;
        if (t == nullptr || !(h.vertex < t->vertex)) continue;
        const vector3d& a = m_vertices[h.vertex];
        const vector3d& b = m_vertices[t->vertex];
        const vector3d d = unit((a + b) / 2.0 - light);
        if (tolerant_silhouette(dot(h.face->normal, d), dot(t->face->normal, d)))
            silhouette.push_back(&h);
    }

    const auto n = static_cast<std::uint32_t>(silhouette.size());
    out.m_vertices.resize(4 * n);
    out.m_faces.resize(2 * n);
    out.m_styles.resize(1);
    const graphics::color grey(50, 50, 50, 50);
    out.m_styles[0] = graphics::style("std", graphics::brush(grey), graphics::pen(grey));
    out.m_backface_culling = false;

    vector3d* const vertices = out.m_vertices.data();
    face* const faces = out.m_faces.data();
    for (std::uint32_t k = 0; k < n; ++k) {
        const halfedge& h = *silhouette[k];
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
