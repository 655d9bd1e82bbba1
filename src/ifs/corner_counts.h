// The faces' vertex indices packed three per face, with the number of corners at each vertex:
// the start of the half-edge lists by start and by end vertex.
#pragma once

#include <algorithm>
#include <cstdint>

#include "facet/carray.h"
#include "facet/ifs.h"
#include "ifs/mesh_buffers.h"

namespace facet::detail {

/// Fills `corners` with the faces' vertex indices in face order (vertex k of face i at 3i + k)
/// and sizes `count` to `num_vertices`, each the number of corners at that vertex. `packed`,
/// when not null and holding three indices per face, is taken over for `corners` (it is left
/// with `corners`' old storage) and the face records are not read. A vertex index at or beyond
/// `num_vertices` fails "index < m_size".
inline void count_corners(const carray<face>& faces, std::uint32_t num_vertices,
                          carray<std::uint32_t>* packed, carray<std::uint32_t>& corners,
                          carray<std::uint32_t>& count) {
    size_for_overwrite(count, num_vertices);
    std::fill(count.begin(), count.end(), 0u);
    if (packed != nullptr && packed->size() == 3 * faces.size()) {
        corners.swap(*packed);
        for (std::uint32_t v : corners) ++count[v];
        return;
    }
    size_for_overwrite(corners, 3 * faces.size());
    std::uint32_t* corner = corners.data();
    for (const face& f : faces)
        for (std::uint32_t v : f.vertex) {
            ++count[v];
            *corner++ = v;
        }
}

}  // namespace facet::detail
