// The half-edges of a face set grouped by the vertex they end at, as flat arrays.
#pragma once

#include <algorithm>
#include <cstdint>

#include "facet/carray.h"
#include "facet/ifs.h"
#include "ifs/corner_counts.h"
#include "ifs/mesh_buffers.h"

namespace facet::detail {

/// For every vertex v, the indices of the half-edges that end at v.
///
/// Half-edge 3i + k of face i runs from corner k to corner (k + 1) mod 3, so half-edges 3i,
/// 3i + 1 and 3i + 2 end at the face's vertices 1, 2 and 0. The lists are stored compressed
/// (counting sorts into one array plus per-vertex offsets), without an allocation per vertex.
/// Only the faces are read; the half-edges need not exist yet.
class incoming_edges {
public:
    /// Groups the 3 · faces.size() half-edges by end vertex, each list in increasing half-edge
    /// index: the lists one gets by appending each half-edge, in index order, to the list of its
    /// end vertex. A vertex index at or beyond `num_vertices` fails "index < m_size".
    /// `packed`: see count_corners.
    incoming_edges(const carray<face>& faces, std::uint32_t num_vertices,
                   carray<std::uint32_t>* packed = nullptr) {
        const std::uint32_t num_faces = faces.size();
        // Every element of these arrays is written below before it is read.
        size_for_overwrite(m_first, num_vertices + 1);
        size_for_overwrite(m_edges, 3 * num_faces);

        // Checked once here: every vertex index is in range from then on. Each corner of a face
        // is the start of one half-edge and the end of another, so the counts serve both.
        carray<std::uint32_t> count;
        count_corners(faces, num_vertices, packed, m_corners, count);
        const std::uint32_t* const fs = m_corners.data();
        std::uint32_t* first = m_first.data();
        first[0] = 0;
        for (std::uint32_t v = 0; v < num_vertices; ++v) first[v + 1] = first[v] + count.data()[v];
        std::uint32_t* next = count.data();  // reused as the bucket cursors

        std::uint32_t* edges = m_edges.data();
        reset(next, num_vertices);
        for (std::uint32_t i = 0; i < num_faces; ++i) {
            edges[next[fs[3 * i + 1]]++] = 3 * i;
            edges[next[fs[3 * i + 2]]++] = 3 * i + 1;
            edges[next[fs[3 * i]]++] = 3 * i + 2;
        }
        recycle(count);
    }

    incoming_edges(const incoming_edges&) = delete;
    incoming_edges& operator=(const incoming_edges&) = delete;
    /// The tables go back to the pool of mesh buffers.
    ~incoming_edges() {
        recycle(m_first);
        recycle(m_edges);
        recycle(m_corners);
    }

    /// Position range of the half-edges ending at `v` (v < num_vertices, unchecked).
    std::uint32_t first(std::uint32_t v) const { return m_first.data()[v]; }
    std::uint32_t last(std::uint32_t v) const { return m_first.data()[v + 1]; }
    /// The half-edge at a position.
    std::uint32_t edge(std::uint32_t position) const { return m_edges.data()[position]; }
    /// The faces' vertex indices, three per face in face order (vertex k of face i at 3i + k).
    const std::uint32_t* corners() const { return m_corners.data(); }

private:
    void reset(std::uint32_t* next, std::uint32_t num_vertices) const {
        for (std::uint32_t v = 0; v < num_vertices; ++v) next[v] = m_first.data()[v];
    }

    carray<std::uint32_t> m_first;    // num_vertices + 1 offsets into m_edges
    carray<std::uint32_t> m_edges;    // half-edge indices, grouped by end vertex
    carray<std::uint32_t> m_corners;  // the faces' vertex indices, packed
};

}  // namespace facet::detail
