// The silhouette walk: one pass over the faces, then one over the edge table.
//
// Each edge needs the signs of x = n · d for its two face normals n, with d = unit((A + B) / 2 −
// light), or for build_shadow_volume where x lies against ±1 degree. Written out, d takes a
// square root and three divisions.
//
// Most faces lie clearly on one side of the light: the first pass places each face at once for
// all its edges, from one corner P and the face's extent (edge_table.h). For every edge
// midpoint M, n · (M − light) differs from s = n · (P − light) by at most the tilt, and |M −
// light| from |P − light| by at most the reach; with generous room for rounding (1e-6 of the
// normal and of the coordinates, above the rounding of the float arithmetic), s beyond the bound
// times the largest distance decides x's side for every edge of the face (compared squared). An
// edge whose two faces are both placed is decided by their sides alone.
//
// The others are mostly decided without the square root, from s = n · v for v = (A + B) / 2 −
// light and len2 = v · v: x differs from s / sqrt(len2) by less than 20 units of rounding of
// |n|, so s² beyond a margin of 1e-12 · |n| above (or below) the square of the bound times len2
// settles the comparison exactly as x would. Only an edge within that margin (or of extreme
// magnitudes) takes the exact formula, so the result is the same bit for bit.
#include "shadow/silhouette.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "shadow/extrusion.h"

namespace facet::detail {
namespace {

// One degree in radians, used as a tolerance on dot products of unit vectors.
constexpr double silhouette_tolerance = 0.017453292519943295;
// The margin of the quick decision, relative to the longest normal.
constexpr double margin = 2e-12;

// Where a dot product lies: below −bound, within ±bound, above +bound, or too close to say.
enum class side : std::uint8_t { below, within, above, unsure };

// The quick decision for one light: bounds ±1 degree (tolerant) or 0 (oriented), squared with
// the margin, to be multiplied by len2.
struct quick_test {
    bool on = false;
    double outside = 0.0;  // s² above outside · len2: |x| beyond the bound
    double inside = 0.0;   // s² below inside · len2: |x| within the bound

    quick_test(silhouette_rule rule, double normal_bound) {
        // Beyond these magnitudes the margin no longer covers underflow: the exact path decides.
        on = normal_bound >= 1e-3 && normal_bound <= 1e6;
        const double e = rule == silhouette_rule::tolerant ? silhouette_tolerance : 0.0;
        const double m = margin * normal_bound;
        outside = (e + m) * (e + m);
        inside = e > m ? (e - m) * (e - m) : 0.0;
    }

    side classify(double s, double outside_len2, double inside_len2) const {
        const double s2 = s * s;
        if (s2 > outside_len2) return s > 0.0 ? side::above : side::below;
        if (s2 < inside_len2) return side::within;
        return side::unsure;
    }
};

// Whether the tolerant rule takes an edge whose faces have dot products x and y with d (either
// order). Any NaN makes every comparison false.
bool tolerant_counts(double x, double y) {
    const double e = silhouette_tolerance;
    return (x > -e && y < e) || (x < e && y > -e);
}

// The tolerant rule on one edge: A, B and the two face normals.
bool tolerant_edge(const quick_test& quick, const vector3d& light, const vector3d& pa,
                   const vector3d& pb, const vector3d& na, const vector3d& nb) {
    const vector3d v = (pa + pb) / 2.0 - light;
    // Two faces of equal normals (a flat region, such as a cap) give the same dot product, up to
    // the sign of a zero, which the rule does not tell apart.
    const bool flat = na == nb;
    if (quick.on) {
        const double len2 = v.x * v.x + v.y * v.y + v.z * v.z;
        if (len2 > 1e-22 && len2 < 1e200) {
            const double outside = quick.outside * len2;
            const double inside = quick.inside * len2;
            const side x = quick.classify(dot(na, v), outside, inside);
            const side y = flat ? x : quick.classify(dot(nb, v), outside, inside);
            // Not taken only when both lie beyond the same bound.
            if (x != side::unsure && y != side::unsure) return x == side::within || x != y;
        }
    }
    const vector3d d = unit(v);
    const double x = dot(na, d);
    return tolerant_counts(x, flat ? x : dot(nb, d));
}

// The oriented rule on one edge: 1 when side a is lit or edge-on and side b turned away, 2 for
// the other way round, 0 for neither.
int oriented_edge(const quick_test& quick, const vector3d& light, const vector3d& pa,
                  const vector3d& pb, const vector3d& na, const vector3d& nb) {
    const vector3d v = (pa + pb) / 2.0 - light;
    if (quick.on) {
        const double len2 = v.x * v.x + v.y * v.y + v.z * v.z;
        if (len2 > 1e-22 && len2 < 1e200) {
            const double outside = quick.outside * len2;
            const side x = quick.classify(dot(na, v), outside, 0.0);
            const side y = quick.classify(dot(nb, v), outside, 0.0);
            if (x != side::unsure && y != side::unsure)
                return x == y ? 0 : x == side::below ? 1 : 2;
        }
    }
    const vector3d d = unit(v);
    const double x = dot(na, d);
    const double y = dot(nb, d);
    return x <= 0.0 && y > 0.0 ? 1 : y <= 0.0 && x > 0.0 ? 2 : 0;
}

// The relative room for rounding in placing faces: more than the float rounding of their
// corners and normals.
constexpr double placing_room = 1e-6;

// Places every face of the table (see the top of this file): `above` or `below` when x lies
// beyond +bound or below −bound for every edge of the face, `unsure` otherwise.
std::vector<side>& place_faces(const edge_table& table, const vector3d& light,
                               const quick_test& quick, double bound) {
    thread_local std::vector<side> sides;
    const std::size_t n = table.extents.size();
    sides.resize(n);
    const double light_bound =
        std::fmax(std::fabs(light.x), std::fmax(std::fabs(light.y), std::fabs(light.z)));
    const double coordinates = table.coordinate_bound + light_bound;
    // NaN or huge coordinates, or extreme normals: nothing is placed.
    if (!quick.on || !(coordinates < 1e15)) {
        std::fill(sides.begin(), sides.end(), side::unsure);
        return sides;
    }
    // In floats: the faces' corners and normals are rounded to floats, and so is every step
    // here, a part in 1.6e7 each; the room is a part in a million of the normal and of the
    // coordinates.
    const auto normal = static_cast<float>(table.normal_bound);
    const auto rounding = static_cast<float>(placing_room * coordinates);
    const float lx = static_cast<float>(light.x);
    const float ly = static_cast<float>(light.y);
    const float lz = static_cast<float>(light.z);
    // x lies beyond the bound where s, less the tilt and the rounding of positions, exceeds
    // `limit` times the largest distance |M − light| <= dist + reach, whose square is at most
    // (1 + 1/16) dist² + 17 reach²: squared, no square root is needed, and the bound is tight
    // where faces are small against their distance. `limit` has room for the rounding of the
    // normal, of s and of x.
    const auto limit =
        static_cast<float>((bound + 2.0 * placing_room * normal) * (1.0 + placing_room));
    const float near_weight = 1.0625f * limit * limit;
    const float reach_weight = 17.0f * limit * limit;
    const face_extent* const extents = table.extents.data();
    side* const out = sides.data();
    for (std::size_t f = 0; f < n; ++f) {
        const face_extent& e = extents[f];
        const float reach = e.reach + rounding;
        const float tilt = e.tilt + normal * rounding;
        const float vx = e.corner[0] - lx;
        const float vy = e.corner[1] - ly;
        const float vz = e.corner[2] - lz;
        const float len2 = vx * vx + vy * vy + vz * vz;
        const float s = e.normal[0] * vx + e.normal[1] * vy + e.normal[2] * vz;
        // Every midpoint at least 1e-9 from the light, where d is a unit vector. An infinite
        // reach (or a NaN anywhere) fails one of the comparisons.
        const float near = reach + 1e-9f;
        const float beyond = std::fabs(s) - tilt;
        const bool placed = (len2 > near * near) & (beyond > 0.0f) &
                            (beyond * beyond > near_weight * len2 + reach_weight * reach * reach);
        // unsure (3), or above (2) or below (0), without a branch.
        const int above = s > 0.0f;
        out[f] = static_cast<side>(3 - static_cast<int>(placed) * (3 - 2 * above));
    }
    return sides;
}

// A record decided by the sides of its two faces, as oriented_edge numbers it: 0 when both lie
// beyond the same bound, 1 when the first lies below and the second above, 2 the other way
// round; −1 when the faces do not decide it.
int by_sides(const face_pair& p, const side* sides) {
    if (p.a == edge_record::none) return -1;
    const side x = sides[p.a];
    const side y = sides[p.b];
    if (x == side::unsure || y == side::unsure) return -1;
    return x == y ? 0 : x == side::below ? 1 : 2;
}

// Sorts `indices`, distinct half-edge indices below n: few of them by comparison, many by a
// byte per half-edge (kept per thread between walks) marked and collected in one pass.
void sort_indices(std::vector<std::uint32_t>& indices, std::uint32_t n) {
    if (indices.size() < n / 16) {
        std::sort(indices.begin(), indices.end());
        return;
    }
    thread_local std::vector<std::uint8_t> marks;
    if (marks.size() < n) marks.resize(n);
    std::fill_n(marks.begin(), n, std::uint8_t{0});  // no memset: data() may be null
    for (std::uint32_t i : indices) marks[i] = 1;
    indices.clear();
    for (std::uint32_t i = 0; i < n; ++i) {
        // Eight marks at a time where there are none.
        if (i + 8 <= n) {
            std::uint64_t word;
            std::memcpy(&word, marks.data() + i, sizeof word);
            if (word == 0) {
                i += 7;
                continue;
            }
        }
        if (marks[i]) indices.push_back(i);
    }
}

}  // namespace

std::vector<silhouette_edge>& silhouette_scratch() {
    thread_local std::vector<silhouette_edge> scratch;
    scratch.clear();
    return scratch;
}

void find_silhouette(const indexedfaceset& source, const edge_table& table, const vector3d& light,
                     silhouette_rule rule, std::vector<silhouette_edge>& out) {
    const quick_test quick(rule, table.normal_bound);
    const vector3d* const positions = source.vertices().data();
    const vector3d* const normals = table.normals.data();
    // The edge table checked the positions of every edge that the tolerant rule reads.

    const std::size_t num_records = table.records.size();
    const edge_record* const records = table.records.data();
    const face_pair* const pairs = table.pairs.data();
    if (rule == silhouette_rule::tolerant) {
        const side* const sides = place_faces(table, light, quick, silhouette_tolerance).data();
        // Each edge is taken from `first`, so the records come in the order of the output.
        for (std::size_t i = 0; i < num_records; ++i) {
            // Decided by the faces: taken from `first` either way round (a placed pair has
            // a < b).
            const int decided = by_sides(pairs[i], sides);
            if (decided == 0) continue;
            if (decided > 0) {
                const edge_record& r = records[i];
                out.push_back({r.first, r.a, r.b});
                continue;
            }
            const edge_record& r = records[i];
            if (!(r.a < r.b)) continue;
            if (tolerant_edge(quick, light, positions[r.a], positions[r.b], normals[r.normal_a],
                              normals[r.normal_b]))
                out.push_back({r.first, r.a, r.b});
        }
        return;
    }

    // Either half-edge of a pair may be taken: listed, then sorted. A half-edge is taken at most
    // once, as it belongs to one record at most.
    thread_local std::vector<std::uint32_t> taken;
    taken.clear();
    const side* const sides = place_faces(table, light, quick, 0.0).data();
    for (std::size_t i = 0; i < num_records; ++i) {
        const int decided = by_sides(pairs[i], sides);
        if (decided == 0) continue;
        if (decided > 0) {
            const edge_record& r = records[i];
            taken.push_back(decided == 1 ? r.first : r.second);
            continue;
        }
        const edge_record& r = records[i];
        // The positions the edge table did not check are read checked (and always, as they
        // would be by the rule).
        if (!(r.a != r.b && (r.second != edge_record::none || r.a < r.b))) {
            (void)source.get_vertex(r.a);
            (void)source.get_vertex(r.b);
        }
        const vector3d& na = normals[r.normal_a];
        const vector3d& nb = normals[r.normal_b];
        // Two faces of equal normals (a flat region) give the same dot product, up to the sign
        // of a zero, which no oriented silhouette edge has.
        if (na == nb) continue;
        const int which = oriented_edge(quick, light, positions[r.a], positions[r.b], na, nb);
        if (which == 1) taken.push_back(r.first);
        if (which == 2 && r.second != edge_record::none) taken.push_back(r.second);
    }
    sort_indices(taken, source.num_edges());
    const halfedge* const edges = source.edges().data();
    for (std::uint32_t i : taken) out.push_back({i, edges[i].vertex, edges[i].m_twinedge->vertex});
}

}  // namespace facet::detail
