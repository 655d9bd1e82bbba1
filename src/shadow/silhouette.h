// The silhouette walk that both shadow-volume builders share.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "facet/ifs.h"
#include "shadow/extrusion.h"

namespace facet::detail {

/// Asks the processor to fetch the cache line at `p` (a hint; it does nothing elsewhere).
inline void prefetch(const void* p) {
#if defined(__GNUC__)
    __builtin_prefetch(p);
#else
    (void)p;
#endif
}

/// How many half-edges ahead the walk below fetches each twin, and half as far ahead the
/// twin's face: twins and their faces lie far from the half-edge in memory, and the walk would
/// otherwise wait for each of them in turn.
inline constexpr std::uint32_t silhouette_prefetch_distance = 64;

/// Appends to `out`, in index order, the index of every half-edge h of `edges` that has a twin
/// t, for which `rule.considered(h.vertex, t->vertex)` holds and then `rule.counts(x, y)`, where
/// x and y are the dot products of h's and t's face normals with d = unit((A + B) / 2.0 − light)
/// for A, B the positions (in `vertices`, read checked) of h's and t's start vertices. Positions
/// are read only for a considered half-edge.
///
/// Each mutual pair is measured once, at its first half-edge: d is the same from both sides
/// (the sum is commutative), so the second half-edge is decided there too, from
/// rule.considered(t->vertex, h.vertex) and rule.counts(y, x), and a byte per half-edge carries
/// the answer to its turn. This halves the square roots and divisions and reads each twin only
/// once, from the half-edge before it. A twin that does not point back is measured on its own.
template <class Rule>
void find_silhouette(const carray<halfedge>& edges, const carray<vector3d>& vertices,
                     const vector3d& light, const Rule& rule, std::vector<std::uint32_t>& out) {
    enum : std::uint8_t { open = 0, not_silhouette = 1, silhouette = 2 };
    const std::uint32_t n = edges.size();
    const halfedge* const first = edges.data();
    const std::less<const halfedge*> before;
    std::vector<std::uint8_t> decided(n, open);
    constexpr std::uint32_t ahead = silhouette_prefetch_distance;
    for (std::uint32_t i = 0; i < n; ++i) {
        if (i + ahead < n) prefetch(first[i + ahead].m_twinedge);
        if (i + ahead / 2 < n && first[i + ahead / 2].m_twinedge != nullptr)
            prefetch(&first[i + ahead / 2].m_twinedge->face->normal);
        if (decided[i] != open) {
            if (decided[i] == silhouette) out.push_back(i);
            continue;
        }
        const halfedge& h = first[i];
        const halfedge* const t = h.m_twinedge;
        if (t == nullptr) continue;
        const std::uint32_t a = h.vertex;
        const std::uint32_t b = t->vertex;
        const bool paired = before(&h, t) && before(t, first + n) && t->m_twinedge == &h;
        const bool own = rule.considered(a, b);
        const bool twin = paired && rule.considered(b, a);
        if (paired) decided[t - first] = not_silhouette;
        if (!own && !twin) continue;
        const vector3d d = unit((vertices[a] + vertices[b]) / 2.0 - light);
        const double x = dot(h.face->normal, d);
        const double y = dot(t->face->normal, d);
        if (own && rule.counts(x, y)) out.push_back(i);
        if (twin && rule.counts(y, x)) decided[t - first] = silhouette;
    }
}

}  // namespace facet::detail
