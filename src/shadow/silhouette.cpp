// The silhouette walk: each mutual pair of half-edges measured once.
//
// A pair is measured at its first half-edge: d is the same from both sides (the sum of the two
// positions is commutative), so the second half-edge is decided there too, from the same two
// dot products swapped, and a byte per half-edge carries that answer to its turn. This halves
// the square roots and divisions and reads each twin once, from the half-edge before it, which
// fetches the twins and their faces ahead of time. A twin that does not point back is measured
// on its own.
#include "shadow/silhouette.h"

#include <functional>

#include "shadow/extrusion.h"

namespace facet::detail {
namespace {

// One degree in radians, used as a tolerance on dot products of unit vectors.
constexpr double silhouette_tolerance = 0.017453292519943295;

// How many half-edges ahead the walk fetches each twin, and half as far ahead the twin's face:
// both lie far from the half-edge in memory, and the walk would otherwise wait for each in turn.
constexpr std::uint32_t prefetch_distance = 64;

// A hint to the processor to fetch the cache line at `p`.
void prefetch(const void* p) {
#if defined(__GNUC__)
    __builtin_prefetch(p);
#else
    (void)p;
#endif
}

// Whether the rule looks at a half-edge from vertex index `own` whose twin starts at `twin`.
bool considered(silhouette_rule rule, std::uint32_t own, std::uint32_t twin) {
    return rule == silhouette_rule::oriented || own < twin;
}

// Whether the rule takes a half-edge whose face has dot product `own` with d and whose twin's
// face has `twin`. Any NaN makes every comparison false.
bool counts(silhouette_rule rule, double own, double twin) {
    if (rule == silhouette_rule::oriented) return own <= 0.0 && twin > 0.0;
    const double e = silhouette_tolerance;
    return (own > -e && twin < e) || (own < e && twin > -e);
}

}  // namespace

void find_silhouette(const indexedfaceset& source, const vector3d& light, silhouette_rule rule,
                     std::vector<std::uint32_t>& out) {
    enum : std::uint8_t { open = 0, not_silhouette = 1, silhouette = 2 };
    const carray<vector3d>& vertices = source.vertices();
    const std::uint32_t n = source.num_edges();
    const halfedge* const first = source.edges().data();
    const std::less<const halfedge*> before;
    std::vector<std::uint8_t> decided(n, open);
    for (std::uint32_t i = 0; i < n; ++i) {
        if (i + prefetch_distance < n) prefetch(first[i + prefetch_distance].m_twinedge);
        if (i + prefetch_distance / 2 < n) {
            const halfedge* const soon = first[i + prefetch_distance / 2].m_twinedge;
            if (soon != nullptr) prefetch(&soon->face->normal);
        }
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
        const bool own = considered(rule, a, b);
        const bool twin = paired && considered(rule, b, a);
        if (paired) decided[t - first] = not_silhouette;
        if (!own && !twin) continue;
        const vector3d& pa = vertices[a];
        const vector3d& pb = vertices[b];
        const vector3d& own_normal = h.face->normal;
        const vector3d& twin_normal = t->face->normal;
        // Two faces of equal normals (a flat region) give the same dot product, up to the sign
        // of a zero, which no oriented silhouette edge has.
        if (rule == silhouette_rule::oriented && own_normal == twin_normal) continue;
        const vector3d d = unit((pa + pb) / 2.0 - light);
        const double x = dot(own_normal, d);
        const double y = dot(twin_normal, d);
        if (own && counts(rule, x, y)) out.push_back(i);
        if (twin && counts(rule, y, x)) decided[t - first] = silhouette;
    }
}

}  // namespace facet::detail
