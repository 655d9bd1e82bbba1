// The half-edges of a face set grouped by the vertex they start at, as flat arrays.
#pragma once

#include <algorithm>
#include <cstdint>

#include "facet/carray.h"
#include "facet/ifs.h"
#include "ifs/corner_counts.h"
#include "ifs/mesh_buffers.h"

namespace facet::detail {

/// For every vertex u, the half-edges that start at u, ordered by end vertex and, among those
/// of one end vertex, by index: the half-edges u -> v of one pair (u, v) are adjacent, the first
/// of them first, and a search by end vertex can bisect.
///
/// Half-edge 3i + k of face i runs from corner k to corner (k + 1) mod 3. The lists are stored
/// compressed (one counting sort into one array plus per-vertex offsets, then a sort of each
/// list), without an allocation per vertex. Only the faces are read; the half-edges need not
/// exist yet.
class outgoing_edges {
public:
    static constexpr std::uint32_t none = 0xffffffffu;

    /// Groups the 3 · faces.size() half-edges by start vertex. A vertex index at or beyond
    /// `num_vertices` fails "index < m_size". `packed`: see count_corners; hand_back returns it.
    outgoing_edges(const carray<face>& faces, std::uint32_t num_vertices,
                   carray<std::uint32_t>* packed = nullptr) {
        const std::uint32_t num_faces = faces.size();
        // Every element of these arrays is written below before it is read.
        size_for_overwrite(m_first, num_vertices + 1);
        size_for_overwrite(m_keys, 3 * num_faces);

        // Checked once here: every vertex index is in range from then on.
        carray<std::uint32_t> count;
        count_corners(faces, num_vertices, packed, m_corners, count);
        std::uint32_t* const first = m_first.data();
        std::uint32_t* const next = count.data();  // becomes the bucket cursors
        first[0] = 0;
        for (std::uint32_t v = 0; v < num_vertices; ++v) {
            first[v + 1] = first[v] + next[v];
            next[v] = first[v];
        }

        // Each half-edge as one key: its end vertex in the high half, its index in the low half,
        // so that sorting the keys orders a list by end vertex, then by index.
        const std::uint32_t* const corners = m_corners.data();
        std::uint64_t* const keys = m_keys.data();
        for (std::uint32_t i = 0; i < num_faces; ++i) {
            const std::uint32_t* c = corners + 3 * i;
            keys[next[c[0]]++] = std::uint64_t{c[1]} << 32 | (3 * i);
            keys[next[c[1]]++] = std::uint64_t{c[2]} << 32 | (3 * i + 1);
            keys[next[c[2]]++] = std::uint64_t{c[0]} << 32 | (3 * i + 2);
        }
        recycle(count);
        for (std::uint32_t u = 0; u < num_vertices; ++u) {
            std::uint64_t* const begin = keys + first[u];
            std::uint64_t* const end = keys + first[u + 1];
            if (end - begin > 16) {
                std::sort(begin, end);
                continue;
            }
            for (std::uint64_t* p = begin + 1; p < end; ++p)  // insertion sort of a short list
                for (std::uint64_t* q = p; q != begin && q[-1] > q[0]; --q) std::swap(q[-1], q[0]);
        }
    }

    outgoing_edges(const outgoing_edges&) = delete;
    outgoing_edges& operator=(const outgoing_edges&) = delete;
    /// The tables go back to the pool of mesh buffers.
    ~outgoing_edges() {
        recycle(m_first);
        recycle(m_keys);
        recycle(m_corners);
    }

    /// Position range of the half-edges starting at `u` (u < num_vertices, unchecked).
    std::uint32_t first(std::uint32_t u) const { return m_first.data()[u]; }
    std::uint32_t last(std::uint32_t u) const { return m_first.data()[u + 1]; }
    /// The half-edge at a position, and its end vertex.
    std::uint32_t edge(std::uint32_t position) const {
        return static_cast<std::uint32_t>(m_keys.data()[position]);
    }
    std::uint32_t end(std::uint32_t position) const {
        return static_cast<std::uint32_t>(m_keys.data()[position] >> 32);
    }
    /// The position of the first half-edge u -> v (u < num_vertices, unchecked), or none. A
    /// short list is counted through without a branch per key (the keys below the first
    /// u -> v), a long one bisected.
    std::uint32_t find(std::uint32_t u, std::uint32_t v) const {
        const std::uint64_t* const keys = m_keys.data();
        const std::uint32_t from = first(u);
        const std::uint32_t to = last(u);
        const std::uint64_t key = std::uint64_t{v} << 32;
        std::uint32_t at = from;
        if (to - from <= 16)
            for (std::uint32_t p = from; p != to; ++p) at += keys[p] < key;
        else
            at = static_cast<std::uint32_t>(std::lower_bound(keys + from, keys + to, key) - keys);
        return at != to && keys[at] >> 32 == v ? at : none;
    }
    /// The faces' vertex indices, three per face in face order (vertex k of face i at 3i + k).
    const std::uint32_t* corners() const { return m_corners.data(); }
    /// Moves the packed vertex indices into `out`, for the next user; corners() is then empty.
    void hand_back(carray<std::uint32_t>& out) { out.swap(m_corners); }

private:
    carray<std::uint32_t> m_first;    // num_vertices + 1 offsets into m_keys
    carray<std::uint64_t> m_keys;     // end vertex << 32 | half-edge index, grouped by start
    carray<std::uint32_t> m_corners;  // the faces' vertex indices, packed
};

}  // namespace facet::detail
