// The half-edges of a face set grouped by the vertex they end at, as one flat array.
#pragma once

#include <cstdint>

#include "facet/carray.h"
#include "facet/ifs.h"

namespace facet::detail {

/// For every vertex v, the indices of the half-edges that end at v, in increasing index order.
///
/// Half-edge 3i + k of face i runs from corner k to corner (k + 1) mod 3, so half-edges 3i,
/// 3i + 1 and 3i + 2 end at the face's vertices 1, 2 and 0. Filling one list per vertex while
/// walking the half-edges in index order gives exactly these lists; here they are stored
/// compressed (a counting sort into one array plus per-vertex offsets), without an allocation
/// per vertex. The half-edges need not exist yet: only the faces are read.
class incoming_edges {
public:
    /// Groups the 3 · faces.size() half-edges by end vertex. A vertex index at or beyond
    /// `num_vertices` fails "index < m_size".
    incoming_edges(const carray<face>& faces, std::uint32_t num_vertices) {
        const std::uint32_t num_faces = faces.size();
        carray<std::uint32_t> cursor(num_vertices);
        for (const face& f : faces) {
            ++cursor[f.vertex[1]];
            ++cursor[f.vertex[2]];
            ++cursor[f.vertex[0]];
        }
        // All indices are in range from here on.
        m_first.resize(num_vertices + 1);
        std::uint32_t* first = m_first.data();
        std::uint32_t* next = cursor.data();
        first[0] = 0;
        for (std::uint32_t v = 0; v < num_vertices; ++v) {
            first[v + 1] = first[v] + next[v];
            next[v] = first[v];
        }
        m_edges.resize(3 * num_faces);
        std::uint32_t* edges = m_edges.data();
        const face* fs = faces.data();
        for (std::uint32_t i = 0; i < num_faces; ++i) {
            edges[next[fs[i].vertex[1]]++] = 3 * i;
            edges[next[fs[i].vertex[2]]++] = 3 * i + 1;
            edges[next[fs[i].vertex[0]]++] = 3 * i + 2;
        }
    }

    /// The half-edges ending at `v` (v < num_vertices, unchecked).
    const std::uint32_t* begin(std::uint32_t v) const { return m_edges.data() + m_first.data()[v]; }
    const std::uint32_t* end(std::uint32_t v) const {
        return m_edges.data() + m_first.data()[v + 1];
    }

private:
    carray<std::uint32_t> m_first;  // num_vertices + 1 offsets into m_edges
    carray<std::uint32_t> m_edges;  // half-edge indices, grouped by end vertex
};

}  // namespace facet::detail
