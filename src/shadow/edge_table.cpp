// The edge table of a face set: built once from the half-edges and faces, kept by the face set.
#include "shadow/edge_table.h"

#include <atomic>
#include <cmath>
#include <functional>

namespace facet::detail {

edge_table::edge_table(const indexedfaceset& fs) {
    const std::uint32_t n = fs.num_edges();
    const std::uint32_t num_faces = fs.num_faces();
    const halfedge* const edges = fs.edges().data();
    const face* const faces = fs.faces().data();
    const std::less<const void*> before;
    const auto inside = [&](const void* p, const void* begin, const void* end) {
        return !before(p, begin) && before(p, end);
    };

    normals.reserve(num_faces);
    for (std::uint32_t f = 0; f < num_faces; ++f) normals.push_back(faces[f].normal);
    // The position of the normal of face `f` (appended when it lies outside the face array).
    const auto normal_of = [&](const ::face* f) {
        if (inside(f, faces, faces + num_faces)) return static_cast<std::uint32_t>(f - faces);
        cacheable = false;
        normals.push_back(f->normal);
        return static_cast<std::uint32_t>(normals.size() - 1);
    };

    // A pair is listed at its half-edge with the smaller start vertex (the lower index on a
    // tie), so the records come out in the order of `first`.
    records.reserve(n / 2 + 1);
    for (std::uint32_t i = 0; i < n; ++i) {
        const halfedge& h = edges[i];
        const halfedge* const t = h.m_twinedge;
        if (t == nullptr) continue;
        const bool in_array = inside(t, edges, edges + n);
        if (!in_array) cacheable = false;
        const bool mutual = in_array && t != &h && t->m_twinedge == &h;
        const auto other = static_cast<std::uint32_t>(t - edges);
        edge_record r;
        r.first = i;
        r.a = h.vertex;
        r.b = t->vertex;
        if (mutual) {
            if (r.b < r.a || (r.b == r.a && other < i)) continue;  // listed at the twin
            r.second = other;
        }
        r.normal_a = normal_of(h.face);
        r.normal_b = normal_of(t->face);
        // What build_shadow_volume reads, checked now: every pair of two vertices, and a lone
        // half-edge towards a larger vertex index.
        if (r.a != r.b && (mutual || r.a < r.b)) {
            (void)fs.get_vertex(r.a);
            (void)fs.get_vertex(r.b);
        }
        records.push_back(r);
    }

    for (const vector3d& v : normals) normal_bound = std::fmax(normal_bound, v.length());
    normal_bound *= 1.0 + 1e-9;
}

std::shared_ptr<const edge_table> edge_table::of(const indexedfaceset& fs) {
    std::shared_ptr<const edge_table> kept = std::atomic_load(&fs.m_edge_table);
    if (kept) return kept;
    auto fresh = std::make_shared<const edge_table>(fs);
    if (fresh->cacheable) std::atomic_store(&fs.m_edge_table, fresh);
    return fresh;
}

}  // namespace facet::detail
