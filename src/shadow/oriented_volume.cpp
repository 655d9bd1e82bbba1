// The oriented shadow volume's mesh: quads, normals, half-edges, texture coordinates and tangent
// frames in one pass, quad by quad.
//
// Every quad has four vertices of its own, so the only twins are the two half-edges of its
// diagonal; the half-edges are written directly instead of searched for.
#include "shadow/oriented_volume.h"

#include "facet/math3d.h"
#include "ifs/box_projection.h"
#include "shadow/extrusion.h"

namespace facet::detail {
namespace {

// Whether the quad A, B, B', A' of a silhouette edge is wound A → B → B' (else A → B' → B): by
// the side of the lit face it lies on and the bend of the edge.
bool forward_winding(const indexedfaceset& source, const halfedge& h, const vector3d& a,
                     const vector3d& b, const vector3d& far_a) {
    const face& lit = *h.face;
    const vector3d corner = source.get_vertex(lit.vertex[0]) + source.get_vertex(lit.vertex[1]) +
                            source.get_vertex(lit.vertex[2]) - a - b;
    const vector3d c = unit(corner - a);
    const vector3d s = unit(lit.normal + h.m_twinedge->face->normal);
    const vector3d q = unit(cross(far_a - a, b - a));
    const double qs = dot(q, s);
    const double sc = dot(s, c);
    return (qs < 0.0 && sc <= 0.0) || (qs >= 0.0 && sc > 0.0);
}

}  // namespace

void write_oriented_volume(const indexedfaceset& source,
                           const std::vector<silhouette_edge>& silhouette, const vector3d& light,
                           indexedfaceset& mesh) {
    const auto n = static_cast<std::uint32_t>(silhouette.size());
    // Every element of these arrays is written below.
    mesh.vertices().resize_for_overwrite(4 * n);
    mesh.faces().resize_for_overwrite(2 * n);
    mesh.normals().resize_for_overwrite(6 * n);
    mesh.edges().resize_for_overwrite(6 * n);
    mesh.texcoords().resize_for_overwrite(6 * n);
    mesh.tangents().resize_for_overwrite(6 * n);
    mesh.bitangents().resize_for_overwrite(6 * n);
    mesh.styles().resize(1);
    const graphics::color red(255, 0, 0, 255);
    mesh.styles()[0] = graphics::style("std", graphics::brush(red), graphics::pen(red));
    mesh.set_backface_culling(true);
    const graphics::style& standard = mesh.styles()[0];
    const box_projection projection(standard.texture.texture_scale.x,
                                    standard.texture.texture_scale.y);

    vector3d* const vertices = mesh.vertices().data();
    face* const faces = mesh.faces().data();
    vector3d* const normals = mesh.normals().data();
    halfedge* const edges = mesh.edges().data();
    const texcoord* const texcoords = mesh.texcoords().data();
    vector3d* const tangents = mesh.tangents().data();
    vector3d* const bitangents = mesh.bitangents().data();
    face side;
    side.style = 0;
    side.brush = standard.brush;
    far_points far(light);
    for (std::uint32_t k = 0; k < n; ++k) {
        const halfedge& h = source.get_edge(silhouette[k].edge);
        const vector3d& a = source.get_vertex(h.vertex);
        const vector3d& b = source.get_vertex(h.m_twinedge->vertex);
        const vector3d far_a = far.of(h.vertex, a);
        const vector3d far_b = far.of(h.m_twinedge->vertex, b);
        vector3d* const quad = vertices + 4 * k;
        write_shadow_quad(quad, a, b, far_a, far_b);

        // The corners of the two faces within the quad, and the diagonal's half-edges (the
        // third of the first face and the first of the second forward, else the other way).
        const bool forward = forward_winding(source, h, a, b, far_a);
        const std::uint32_t corners[2][3] = {{0, forward ? 1u : 2u, forward ? 2u : 1u},
                                             {0, forward ? 2u : 3u, forward ? 3u : 2u}};
        halfedge* const e = edges + 6 * k;
        for (std::uint32_t j = 0; j < 2; ++j) {
            const std::uint32_t i = 2 * k + j;
            const vector3d& p0 = quad[corners[j][0]];
            const vector3d& p1 = quad[corners[j][1]];
            const vector3d& p2 = quad[corners[j][2]];
            face& f = faces[i];
            f = side;
            for (std::uint32_t c = 0; c < 3; ++c) f.vertex[c] = 4 * k + corners[j][c];
            // compute_normals.
            vector3d normal = cross(p1 - p0, p2 - p0);
            normal.normalize();
            f.normal = normal;
            // construct_halfedge_data.
            halfedge* const fe = e + 3 * j;
            for (std::uint32_t c = 0; c < 3; ++c) {
                normals[3 * i + c] = normal;
                fe[c] = halfedge(f.vertex[c], &f);
                fe[c].next = &fe[(c + 1) % 3];
                fe[c].prev = &fe[(c + 2) % 3];
            }
            // gen_texcoords_box and compute_tangent_space.
            mesh.gen_texcoords_for_face(projection.plain, projection.plain, i);
            vector2d uv[3];
            for (std::uint32_t c = 0; c < 3; ++c) {
                const texcoord& t = texcoords[3 * i + c];
                uv[c] = vector2d(static_cast<double>(t.u), static_cast<double>(t.v));
            }
            vector3d tangent;
            vector3d bitangent;
            ComputeTangentBasis(p0, p1, p2, uv[0], uv[1], uv[2], tangent, bitangent);
            for (std::uint32_t c = 0; c < 3; ++c) {
                tangents[3 * i + c] = tangent;
                bitangents[3 * i + c] = bitangent;
            }
            f.tangent = tangent;
            f.bitangent = bitangent;
        }
        halfedge& diagonal_a = forward ? e[2] : e[0];
        halfedge& diagonal_b = forward ? e[3] : e[5];
        diagonal_a.m_twinedge = &diagonal_b;
        diagonal_b.m_twinedge = &diagonal_a;
    }
}

}  // namespace facet::detail
