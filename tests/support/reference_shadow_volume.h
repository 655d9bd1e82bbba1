// The two shadow-volume builders written out plainly: build_shadow_volume (`oriented` false) and
// shadow_volume::rebuild_mesh (true, light in object space). They share no code with the library.
#pragma once

#include <cstdint>
#include <vector>

#include <facet/ifs.h>

namespace reference {

inline vector3d unit(vector3d v) {
    v.normalize();
    return v;
}

inline void shadow_volume(const indexedfaceset& src, vector3d light, bool oriented,
                          indexedfaceset& out) {
    // A face set without half-edges leaves the unoriented output untouched.
    if (!oriented && src.num_edges() == 0) return;
    // Unoriented: paired edges once whose faces are not clearly (by a degree) on the same side.
    // Oriented: half-edges whose face is lit or edge-on (dot <= 0) and whose twin's is not.
    const double e = 0.017453292519943295;
    std::vector<const halfedge*> silhouette;
    for (std::uint32_t i = 0; i < src.num_edges(); ++i) {
        const halfedge& h = src.get_edge(i);
        const halfedge* t = h.m_twinedge;
        if (t == nullptr || (!oriented && !(h.vertex < t->vertex))) continue;
        const vector3d m = (src.get_vertex(h.vertex) + src.get_vertex(t->vertex)) / 2.0;
        const double x = dot(h.face->normal, unit(m - light));
        const double y = dot(t->face->normal, unit(m - light));
        if (oriented ? x <= 0.0 && y > 0.0 : (x > -e && y < e) || (x < e && y > -e))
            silhouette.push_back(&h);
    }
    const auto n = static_cast<std::uint32_t>(silhouette.size());
    out.vertices().resize(4 * n);
    out.faces().resize(2 * n);
    out.styles().resize(1);
    const graphics::color colour =
        oriented ? graphics::color(255, 0, 0, 255) : graphics::color(50, 50, 50, 50);
    out.styles()[0] = graphics::style("std", graphics::brush(colour), graphics::pen(colour));
    out.set_backface_culling(oriented);
    for (std::uint32_t k = 0; k < n; ++k) {
        // The quad A, B, B', A': the far corners 100000.0 away from the light.
        const halfedge& h = *silhouette[k];
        const vector3d a = src.get_vertex(h.vertex), b = src.get_vertex(h.m_twinedge->vertex);
        const vector3d far_a = a + 100000.0 * unit(a - light);
        out.vertices()[4 * k] = a;
        out.vertices()[4 * k + 1] = b;
        out.vertices()[4 * k + 2] = b + 100000.0 * unit(b - light);
        out.vertices()[4 * k + 3] = far_a;
        // Oriented, turned by the lit face's third corner and the bend s against the normal.
        bool forward = true;
        if (oriented) {
            const face& lit = *h.face;
            const vector3d corner = src.get_vertex(lit.vertex[0]) + src.get_vertex(lit.vertex[1]) +
                                    src.get_vertex(lit.vertex[2]) - a - b;
            const vector3d s = unit(lit.normal + h.m_twinedge->face->normal);
            const double qs = dot(unit(cross(far_a - a, b - a)), s);
            const double sc = dot(s, unit(corner - a));
            forward = (qs < 0.0 && sc <= 0.0) || (qs >= 0.0 && sc > 0.0);
        }
        const std::uint32_t v = 4 * k;
        out.faces()[2 * k] = forward ? face(v, v + 1, v + 2) : face(v, v + 2, v + 1);
        out.faces()[2 * k + 1] = forward ? face(v, v + 2, v + 3) : face(v, v + 3, v + 2);
        for (std::uint32_t f : {2 * k, 2 * k + 1}) {
            out.faces()[f].style = 0;
            if (oriented) out.faces()[f].brush = graphics::brush(colour);
        }
    }
    if (!oriented) return;
    out.compute_normals();
    out.construct_halfedge_data();
    out.gen_texcoords_box();
    out.compute_tangent_space();
}

}  // namespace reference
