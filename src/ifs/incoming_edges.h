// The half-edges of a face set grouped by the vertex they end at, as flat arrays.
#pragma once

#include <algorithm>
#include <cstdint>

#include "facet/carray.h"
#include "facet/ifs.h"
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
    enum class order {
        /// Increasing half-edge index: the lists one gets by appending each half-edge, in index
        /// order, to the list of its end vertex.
        by_index,
        /// By start vertex, and by index among half-edges of the same start, with the start
        /// vertices kept alongside (start()): the half-edges u -> v of one pair (u, v) are
        /// adjacent, and a search by start vertex can bisect.
        by_start_then_index,
    };

    /// Groups the 3 · faces.size() half-edges by end vertex. A vertex index at or beyond
    /// `num_vertices` fails "index < m_size".
    incoming_edges(const carray<face>& faces, std::uint32_t num_vertices, order o) {
        const std::uint32_t num_faces = faces.size();
        // Every element of these arrays is written below before it is read.
        size_for_overwrite(m_first, num_vertices + 1);
        size_for_overwrite(m_edges, 3 * num_faces);

        // Checked once here: every vertex index is in range from then on. Each corner of a face
        // is the start of one half-edge and the end of another, so the counts serve both. The
        // face records are read only here; the corners are copied into a packed array (three
        // indices per face) for the passes that follow.
        carray<std::uint32_t> count;
        size_for_overwrite(count, num_vertices);
        std::fill(count.begin(), count.end(), 0u);
        size_for_overwrite(m_corners, 3 * num_faces);
        std::uint32_t* packed = m_corners.data();
        for (const face& f : faces)
            for (std::uint32_t v : f.vertex) {
                ++count[v];
                *packed++ = v;
            }
        const std::uint32_t* const fs = m_corners.data();
        std::uint32_t* first = m_first.data();
        first[0] = 0;
        for (std::uint32_t v = 0; v < num_vertices; ++v) first[v + 1] = first[v] + count.data()[v];
        std::uint32_t* next = count.data();  // reused as the bucket cursors

        std::uint32_t* edges = m_edges.data();
        if (o == order::by_index) {
            reset(next, num_vertices);
            for (std::uint32_t i = 0; i < num_faces; ++i) {
                edges[next[fs[3 * i + 1]]++] = 3 * i;
                edges[next[fs[3 * i + 2]]++] = 3 * i + 1;
                edges[next[fs[3 * i]]++] = 3 * i + 2;
            }
            recycle(count);
            return;
        }

        // Bucket by start vertex (stable); then bucket that sequence by end vertex (stable),
        // keeping the start vertex alongside. The end vertex of half-edge e is the corner after
        // its start: e + 1, or e − 2 for the last half-edge of a face.
        const std::uint32_t num_edges = 3 * num_faces;
        size_for_overwrite(m_spare, num_edges);
        std::uint32_t* se = m_spare.data();
        reset(next, num_vertices);
        for (std::uint32_t i = 0; i < num_faces; ++i) {
            const std::uint32_t* c = fs + 3 * i;
            for (std::uint32_t k = 0; k < 3; ++k) se[next[c[k]]++] = 3 * i + k;
        }
        size_for_overwrite(m_start, num_edges);
        std::uint32_t* starts = m_start.data();
        reset(next, num_vertices);
        for (std::uint32_t u = 0; u < num_vertices; ++u)
            for (std::uint32_t j = first[u]; j < first[u + 1]; ++j) {
                const std::uint32_t e = se[j];
                const std::uint32_t end = fs[e % 3 == 2 ? e - 2 : e + 1];
                const std::uint32_t slot = next[end]++;
                edges[slot] = e;
                starts[slot] = u;
            }
        recycle(count);
    }

    incoming_edges(const incoming_edges&) = delete;
    incoming_edges& operator=(const incoming_edges&) = delete;
    /// The tables go back to the pool of mesh buffers.
    ~incoming_edges() {
        recycle(m_first);
        recycle(m_edges);
        recycle(m_start);
        recycle(m_corners);
        recycle(m_spare);
    }

    /// Position range of the half-edges ending at `v` (v < num_vertices, unchecked).
    std::uint32_t first(std::uint32_t v) const { return m_first.data()[v]; }
    std::uint32_t last(std::uint32_t v) const { return m_first.data()[v + 1]; }
    /// The half-edge at a position.
    std::uint32_t edge(std::uint32_t position) const { return m_edges.data()[position]; }
    /// An array of 3 · faces.size() entries that is no longer needed (by_start_then_index
    /// only): the caller may take it (swap) and overwrite it instead of allocating one.
    carray<std::uint32_t>& spare() { return m_spare; }
    /// The faces' vertex indices, three per face in face order (vertex k of face i at 3i + k).
    const std::uint32_t* corners() const { return m_corners.data(); }
    /// Its start vertex (order by_start_then_index only).
    std::uint32_t start(std::uint32_t position) const { return m_start.data()[position]; }
    /// The start vertices of all positions (order by_start_then_index only).
    const std::uint32_t* starts() const { return m_start.data(); }

private:
    void reset(std::uint32_t* next, std::uint32_t num_vertices) const {
        for (std::uint32_t v = 0; v < num_vertices; ++v) next[v] = m_first.data()[v];
    }

    carray<std::uint32_t> m_first;    // num_vertices + 1 offsets into m_edges
    carray<std::uint32_t> m_edges;    // half-edge indices, grouped by end vertex
    carray<std::uint32_t> m_start;    // start vertex per position (by_start_then_index)
    carray<std::uint32_t> m_corners;  // the faces' vertex indices, packed
    carray<std::uint32_t> m_spare;    // the by-start sequence, dead after construction
};

}  // namespace facet::detail
