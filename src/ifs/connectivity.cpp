// indexedfaceset: half-edge connectivity.
#include <algorithm>
#include <cmath>

#include "facet/ifs.h"
#include "ifs/mesh_buffers.h"
#include "ifs/outgoing_edges.h"

void indexedfaceset::construct_halfedge_data() { link_halfedges(nullptr); }

void indexedfaceset::link_halfedges(const double* sharp_angle, carray<std::uint32_t>* corners) {
    drop_edge_table();
    const std::uint32_t num_vertices = this->num_vertices();
    const std::uint32_t num_faces = this->num_faces();
    const std::uint32_t num_edges = 3 * num_faces;
    facet::detail::outgoing_edges outgoing(m_faces, num_vertices, corners);

    // A half-edge u -> v pairs with the first half-edge v -> u (in index order) if that one is
    // still unpaired. Whichever of the lists of u and v a walk vertex by vertex reaches first, the
    // first u -> v and the first v -> u take each other (a first u -> u takes itself) and the
    // others of either direction find their partner taken. So each first u -> v looks up the
    // first v -> u; the pairs go into a compact table of half-edge indices (none: unpaired),
    // and the records are then written in one sequential pass.
    constexpr std::uint32_t none = 0xffffffffu;
    facet::detail::scratch<std::uint32_t> twin_table(num_edges);
    std::uint32_t* const twin = twin_table.data();
    std::fill(twin, twin + num_edges, none);
    for (std::uint32_t u = 0; u < num_vertices; ++u) {
        const std::uint32_t from = outgoing.first(u);
        for (std::uint32_t p = from; p != outgoing.last(u); ++p) {
            const std::uint32_t v = outgoing.end(p);
            if (p != from && outgoing.end(p - 1) == v) continue;  // not the first u -> v
            const std::uint32_t reverse = outgoing.find(v, u);
            twin[outgoing.edge(p)] = reverse == none ? none : outgoing.edge(reverse);
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
    const std::uint32_t* const vertex_of = outgoing.corners();
    for (std::uint32_t i = 0; i < num_faces; ++i) {
        halfedge* e = edges + 3 * i;
        for (std::uint32_t k = 0; k < 3; ++k) {
            e[k] = halfedge(vertex_of[3 * i + k], faces + i);
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
    if (corners != nullptr) outgoing.hand_back(*corners);
}
