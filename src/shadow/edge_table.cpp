// The edge table of a face set: built once from the half-edges and faces, kept by the face set.
#include "shadow/edge_table.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <limits>

namespace facet::detail {
namespace {

// The smallest float at least `x` (infinity for NaN or beyond the float range).
float float_at_least(double x) {
    if (!(x < 1e30)) return std::numeric_limits<float>::infinity();
    const auto f = static_cast<float>(x);
    return static_cast<double>(f) < x ? std::nextafter(f, std::numeric_limits<float>::infinity())
                                      : f;
}

// The extent of `f` about its first corner (see face_extent); a face with a corner that does not
// exist gets an infinite one (and so is never placed at once).
face_extent extent_of(const face& f, const vector3d* positions, std::uint32_t num_vertices) {
    face_extent e;
    if (f.vertex[0] >= num_vertices || f.vertex[1] >= num_vertices || f.vertex[2] >= num_vertices) {
        e.reach = e.tilt = std::numeric_limits<float>::infinity();
        return e;
    }
    const vector3d& p = positions[f.vertex[0]];
    const double coordinates[2][3] = {{p.x, p.y, p.z}, {f.normal.x, f.normal.y, f.normal.z}};
    for (int k = 0; k < 3; ++k) {
        e.corner[k] = static_cast<float>(coordinates[0][k]);
        e.normal[k] = static_cast<float>(coordinates[1][k]);
    }
    double reach = 0.0;
    double tilt = 0.0;
    bool nan = false;
    for (int k = 1; k < 3; ++k) {
        const vector3d d = positions[f.vertex[k]] - p;
        const double length = std::sqrt(dot(d, d));
        const double across = std::fabs(dot(f.normal, d));
        nan = nan || std::isnan(length + across);
        reach = std::fmax(reach, length);
        tilt = std::fmax(tilt, across);
    }
    // Rounding of these few operations is far below a part in 1e9; a NaN (which fmax passes
    // over) makes the extent infinite.
    const double grown = nan ? std::nan("") : 1.0 + 1e-9;
    e.reach = float_at_least(reach * grown);
    e.tilt = float_at_least(tilt * grown);
    return e;
}

bool holds(const face& f, std::uint32_t v) {
    return f.vertex[0] == v || f.vertex[1] == v || f.vertex[2] == v;
}

}  // namespace

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

    const std::uint32_t num_vertices = fs.num_vertices();
    const vector3d* const positions = fs.vertices().data();
    for (std::uint32_t v = 0; v < num_vertices; ++v)
        for (double c : {positions[v].x, positions[v].y, positions[v].z})
            coordinate_bound = std::fmax(coordinate_bound, std::fabs(c));
    extents.reserve(num_faces);
    for (std::uint32_t f = 0; f < num_faces; ++f)
        extents.push_back(extent_of(faces[f], positions, num_vertices));
    // A pair of mutual twins (so a < b) is placed by its faces when both hold both its vertices.
    pairs.resize(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const edge_record& r = records[i];
        if (r.second == edge_record::none || r.a == r.b) continue;
        if (r.normal_a >= num_faces || r.normal_b >= num_faces) continue;
        const face& fa = faces[r.normal_a];
        const face& fb = faces[r.normal_b];
        if (holds(fa, r.a) && holds(fa, r.b) && holds(fb, r.a) && holds(fb, r.b))
            pairs[i] = face_pair{r.normal_a, r.normal_b};
    }
}

std::shared_ptr<const edge_table> edge_table::of(const indexedfaceset& fs) {
    std::shared_ptr<const edge_table> kept = std::atomic_load(&fs.m_edge_table);
    if (kept) return kept;
    auto fresh = std::make_shared<const edge_table>(fs);
    if (fresh->cacheable) std::atomic_store(&fs.m_edge_table, fresh);
    return fresh;
}

}  // namespace facet::detail
