// The silhouette walk that both shadow-volume builders share.
#pragma once

#include <cstdint>
#include <vector>

#include "facet/ifs.h"
#include "shadow/edge_table.h"

namespace facet::detail {

/// Which half-edges of a face set make up the silhouette as seen from a point light.
enum class silhouette_rule {
    /// build_shadow_volume: each paired edge once, from its half-edge with the smaller start
    /// vertex index, when its two faces are not clearly (by a degree) on the same side of the
    /// direction from the light.
    tolerant,
    /// shadow_volume::rebuild_mesh: each half-edge whose face is lit or edge-on (dot <= 0.0)
    /// and whose twin's face is turned away (dot > 0.0).
    oriented,
};

/// A silhouette half-edge: its index, its start vertex and its twin's start vertex.
struct silhouette_edge {
    std::uint32_t edge = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
};

/// Appends to `out`, in index order, every half-edge of `source` (whose edge table is `table`)
/// that has a twin and is a silhouette edge by `rule`, seen from `light` (in the face set's
/// coordinates): with d = unit((A + B) / 2.0 − light) for A, B the positions of the half-edge's
/// and its twin's start vertices, the rule compares the dot products of their face normals with
/// d. Positions are read checked ("index < m_size"), and only for a half-edge the rule looks at.
/// A list for find_silhouette's output, kept per thread and emptied: its storage is reused by
/// the next build on the same thread.
std::vector<silhouette_edge>& silhouette_scratch();

void find_silhouette(const indexedfaceset& source, const edge_table& table, const vector3d& light,
                     silhouette_rule rule, std::vector<silhouette_edge>& out);

}  // namespace facet::detail
