// The oracle for indexedfaceset::construct_halfedge_data, written the plain way: a std::list per
// vertex of the half-edges ending there; vertex by vertex, u -> v pairs with the first v -> u in
// the list of u if that one is still unpaired.
#pragma once

#include <list>
#include <vector>

#include "facet/ifs.h"

namespace reference {

inline void construct_halfedge_data(indexedfaceset& fs) {
    std::vector<std::list<halfedge*>> incoming(fs.num_vertices());
    fs.edges().resize(3 * fs.num_faces());
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        face& f = fs.faces()[i];
        halfedge* e = &fs.edges()[3 * i];
        for (int k = 0; k < 3; ++k) {
            e[k] = halfedge(f.vertex[k], &f);
            e[k].next = &e[(k + 1) % 3];
            e[k].prev = &e[(k + 2) % 3];
            incoming.at(f.vertex[(k + 1) % 3]).push_back(&e[k]);
        }
    }
    for (std::uint32_t v = 0; v < fs.num_vertices(); ++v)
        for (halfedge* h : incoming[v]) {
            if (h->m_twinedge != nullptr) continue;
            for (halfedge* g : incoming[h->vertex])
                if (g->vertex == v) {
                    if (g->m_twinedge == nullptr) g->set_twin(h);
                    break;
                }
        }
}

}  // namespace reference
