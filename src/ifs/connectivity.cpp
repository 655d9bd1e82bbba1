// indexedfaceset: half-edge connectivity.
#include <algorithm>

#include "facet/ifs.h"
#include "ifs/incoming_edges.h"

void indexedfaceset::construct_halfedge_data() {
    const std::uint32_t num_vertices = this->num_vertices();
    const std::uint32_t num_faces = this->num_faces();
    const facet::detail::incoming_edges incoming(
        m_faces, num_vertices, facet::detail::incoming_edges::order::by_start_then_index);

    m_edges.resize_for_overwrite(3 * num_faces);  // each one written
    halfedge* edges = m_edges.data();
    face* faces = m_faces.data();
    for (std::uint32_t i = 0; i < num_faces; ++i) {
        face& f = faces[i];
        halfedge* e = edges + 3 * i;
        e[0] = halfedge(f.vertex[0], &f);
        e[1] = halfedge(f.vertex[1], &f);
        e[2] = halfedge(f.vertex[2], &f);
        e[0].next = &e[1];
        e[0].prev = &e[2];
        e[1].next = &e[2];
        e[1].prev = &e[0];
        e[2].next = &e[0];
        e[2].prev = &e[1];
    }

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
            halfedge* const reverse =
                found != to && *found == v ? &edges[incoming.edge(found - starts)] : nullptr;
            for (; h != list_end && starts[h] == u; ++h) {
                halfedge& in = edges[incoming.edge(h)];
                if (in.m_twinedge != nullptr || reverse == nullptr) continue;
                if (reverse->m_twinedge == nullptr) reverse->set_twin(&in);
            }
        }
    }
}
