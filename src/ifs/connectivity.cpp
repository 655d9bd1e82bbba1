// indexedfaceset: half-edge connectivity.
#include <algorithm>
#include <cmath>

#include "facet/ifs.h"
#include "ifs/incoming_edges.h"
#include "ifs/mesh_buffers.h"

void indexedfaceset::construct_halfedge_data() { link_halfedges(nullptr); }

void indexedfaceset::link_halfedges(const double* sharp_angle) {
    const std::uint32_t num_vertices = this->num_vertices();
    const std::uint32_t num_faces = this->num_faces();
    const std::uint32_t num_edges = 3 * num_faces;
    facet::detail::incoming_edges incoming(
        m_faces, num_vertices, facet::detail::incoming_edges::order::by_start_then_index);

    // The twins are found first, as half-edge indices in a compact table (none: unpaired), and
    // the half-edge records are then written in one sequential pass.
    constexpr std::uint32_t none = 0xffffffffu;
    carray<std::uint32_t> twin_table;
    twin_table.swap(incoming.spare());
    facet::detail::size_for_overwrite(twin_table, num_edges);
    std::uint32_t* const twin = twin_table.data();
    std::fill(twin, twin + num_edges, none);

    // A half-edge u -> v pairs with the first half-edge v -> u (in index order) if that one is
    // still unpaired. In list v the half-edges u -> v of one start vertex u are adjacent and in
    // index order; the pairs (u, v) are independent of each other, so taking them group by group
    // links exactly what a walk through the list in index order would.
    const std::uint32_t* const starts = incoming.starts();
    for (std::uint32_t v = 0; v < num_vertices; ++v) {
        std::uint32_t h = incoming.first(v);
        const std::uint32_t list_end = incoming.last(v);
        while (h != list_end) {
            const std::uint32_t u = starts[h];
            // The first half-edge v -> u: the first of start v in the list of u.
            const std::uint32_t* const from = starts + incoming.first(u);
            const std::uint32_t* const to = starts + incoming.last(u);
            const std::uint32_t* const found = std::lower_bound(from, to, v);
            const std::uint32_t reverse =
                found != to && *found == v ? incoming.edge(found - starts) : none;
            for (; h != list_end && starts[h] == u; ++h) {
                const std::uint32_t in = incoming.edge(h);
                if (twin[in] != none || reverse == none) continue;
                if (twin[reverse] == none) {
                    twin[reverse] = in;
                    twin[in] = reverse;
                }
            }
        }
    }

    // With an angle, the draw marks of determine_sharp_edges: an open half-edge is drawn, a pair
    // when the dot of its faces' normals is at most the threshold (the same bits taken from
    // either side, as the products commute).
    const bool mark = sharp_angle != nullptr;
    const double threshold = mark ? std::cos(*sharp_angle * geometry::pi / 180.0) : 0.0;
    // The normals from the packed side table when a builder made one, else from the faces.
    const bool packed = m_face_normals.size() == num_faces;
    const vector3d* const packed_normals = m_face_normals.data();
    const auto normal_of = [&](std::uint32_t i) -> const vector3d& {
        return packed ? packed_normals[i] : m_faces.data()[i].normal;
    };
    facet::detail::size_for_overwrite(m_edges, num_edges);  // each one written
    halfedge* const edges = m_edges.data();
    face* const faces = m_faces.data();
    const std::uint32_t* const corners = incoming.corners();
    for (std::uint32_t i = 0; i < num_faces; ++i) {
        halfedge* e = edges + 3 * i;
        for (std::uint32_t k = 0; k < 3; ++k) {
            e[k] = halfedge(corners[3 * i + k], faces + i);
            const std::uint32_t t = twin[3 * i + k];
            e[k].m_twinedge = t == none ? nullptr : edges + t;
            if (mark)
                e[k].flags = t == none || dot(normal_of(i), normal_of(t / 3)) <= threshold
                                 ? halfedge::draw_mark
                                 : 0u;
        }
        e[0].next = &e[1];
        e[0].prev = &e[2];
        e[1].next = &e[2];
        e[1].prev = &e[0];
        e[2].next = &e[0];
        e[2].prev = &e[1];
    }
    facet::detail::recycle(twin_table);
}
