// indexedfaceset: half-edge connectivity.
#include "facet/ifs.h"
#include "ifs/incoming_edges.h"

void indexedfaceset::construct_halfedge_data() {
    const std::uint32_t num_vertices = this->num_vertices();
    const std::uint32_t num_faces = this->num_faces();
    const facet::detail::incoming_edges incoming(m_faces, num_vertices);

    m_edges.resize(3 * num_faces);
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

    // A half-edge u -> v pairs with the first half-edge that ends at u and starts at v, if that
    // one is still unpaired.
    for (std::uint32_t v = 0; v < num_vertices; ++v) {
        for (const std::uint32_t* h = incoming.begin(v); h != incoming.end(v); ++h) {
            halfedge& in = edges[*h];
            if (in.m_twinedge != nullptr) continue;
            const std::uint32_t u = in.vertex;
            for (const std::uint32_t* g = incoming.begin(u); g != incoming.end(u); ++g) {
                halfedge& out = edges[*g];
                if (out.vertex != v) continue;
                if (out.m_twinedge == nullptr) out.set_twin(&in);
                break;
            }
        }
    }
}
