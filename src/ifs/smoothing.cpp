// indexedfaceset: smooth corner normals with tangent frames turned along.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "ifs/frame_turns.h"
#include "ifs/incoming_edges.h"
#include "ifs/mesh_buffers.h"
#include "ifs/unit_vectors.h"

namespace {

// The distinct normals of the faces around one vertex (compared with ==), in the order of their
// first occurrence in the vertex's list of incoming half-edges.
//
// A corner's smoothed normal is its face normal plus every normal met in that list which
// equals neither the face normal nor a normal already taken, and lies within the threshold.
// An equal normal met again gives the same answer as at its first occurrence (taken: skipped
// as seen; refused: refused again), so walking the distinct normals gives the same sum, added
// in the same order. Flat fans (a cap's centre) collapse to one entry.
//
// The buffers are reused from vertex to vertex. Short lists are searched linearly; a long list
// (a fan centre) goes through a hash of the normals' bits, so that collecting them stays
// linear in the length of the list.
class distinct_normals {
public:
    // `normal_of(e)`: the normal of the face of half-edge e.
    template <class NormalOf>
    void collect(const facet::detail::incoming_edges& incoming, NormalOf normal_of,
                 std::uint32_t v) {
        m_normals.clear();
        const std::uint32_t first = incoming.first(v);
        const std::uint32_t last = incoming.last(v);
        if (last - first <= linear_limit) {
            for (std::uint32_t h = first; h != last; ++h) {
                const vector3d& m = normal_of(incoming.edge(h));
                bool known = false;
                for (std::size_t k = 0; k < m_normals.size() && !known; ++k)
                    known = m_normals[k] == m;
                if (!known) m_normals.push_back(m);
            }
            return;
        }
        std::size_t capacity = 64;
        while (capacity < 2 * std::size_t{last - first}) capacity *= 2;
        m_slots.assign(capacity, empty);
        for (std::uint32_t h = first; h != last; ++h) {
            const vector3d& m = normal_of(incoming.edge(h));
            std::size_t slot = hash(m) & (capacity - 1);
            bool known = false;
            while (m_slots[slot] != empty) {
                if (m_normals[m_slots[slot]] == m) {
                    known = true;
                    break;
                }
                slot = (slot + 1) & (capacity - 1);
            }
            if (known) continue;
            m_slots[slot] = static_cast<std::uint32_t>(m_normals.size());
            m_normals.push_back(m);
        }
    }

    const vector3d* begin() const { return m_normals.data(); }
    const vector3d* end() const { return m_normals.data() + m_normals.size(); }

private:
    static constexpr std::uint32_t linear_limit = 16;
    static constexpr std::uint32_t empty = 0xffffffffu;

    // Equal normals (==) hash alike: a zero component is hashed as +0 (−0 == +0); a NaN
    // equals nothing, whatever its hash.
    static std::size_t hash(const vector3d& n) {
        std::uint64_t h = 0;
        for (double c : {n.x, n.y, n.z}) {
            const double d = c == 0.0 ? 0.0 : c;
            std::uint64_t bits;
            std::memcpy(&bits, &d, sizeof bits);
            h = (h ^ bits) * 0x9e3779b97f4a7c15ull;
            h ^= h >> 29;
        }
        return static_cast<std::size_t>(h);
    }

    std::vector<vector3d> m_normals;
    std::vector<std::uint32_t> m_slots;
};

// The smoothed normals and their cosines to the face normals of two corners around one vertex,
// one corner in each lane. A corner's normal is its face normal `own` plus every normal of
// `around` that equals neither `own` nor (being distinct) one taken before and lies within the
// threshold, in list order, normalised: a normal left out adds −0, which changes no sum (−0 +
// −0 is −0), so neither lane branches on where its own normal sits in the list.
void smooth_two(const distinct_normals& around, const vector3d& own_a, const vector3d& own_b,
                double threshold, vector3d normal[2], double cosine[2]) {
    using facet::detail::double_pair;
    using mask = long long __attribute__((vector_size(16)));
    const facet::detail::vector_pair own(own_a, own_b);
    facet::detail::vector_pair sum = own;
    const double_pair minus_zero = {-0.0, -0.0};
    for (const vector3d* m = around.begin(); m != around.end(); ++m) {
        const double_pair d = m->x * own.x + m->y * own.y + m->z * own.z;
        const mask same = (m->x == own.x) & (m->y == own.y) & (m->z == own.z);
        const mask take = (d > threshold) & ~same;
        sum.x += take ? double_pair{m->x, m->x} : minus_zero;
        sum.y += take ? double_pair{m->y, m->y} : minus_zero;
        sum.z += take ? double_pair{m->z, m->z} : minus_zero;
    }
    const double_pair length =
        facet::detail::square_roots(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z);
    if (length[0] > 1e-12 && length[1] > 1e-12) {
        sum = facet::detail::vector_pair(sum.x / length, sum.y / length, sum.z / length);
        for (int i = 0; i < 2; ++i) normal[i] = sum.lane(i);
    } else {
        for (int i = 0; i < 2; ++i) {
            normal[i] = sum.lane(i);
            facet::detail::normalize(normal[i]);
        }
    }
    for (int i = 0; i < 2; ++i) {
        double c = dot(normal[i], own.lane(i));
        if (c > 1.0) c = 1.0;
        if (c < -1.0) c = -1.0;
        cosine[i] = c;
    }
}

}  // namespace

void indexedfaceset::smooth_mesh(double angle) { smooth_corners(angle, false); }

void indexedfaceset::smooth_corners(double angle, bool edges_as_built,
                                    carray<std::uint32_t>* corners) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    const std::uint32_t num_faces = this->num_faces();
    const std::uint32_t num_vertices = this->num_vertices();
    const facet::detail::incoming_edges incoming(m_faces, num_vertices, corners);
    // The lists name half-edges 0 .. 3 · num_faces − 1, which must exist (checked once here);
    // the corner arrays hold 3 · num_faces entries (checked once here too).
    if (num_faces > 0) {
        static_cast<void>(m_edges[3 * num_faces - 1]);
        static_cast<void>(m_normals[3 * num_faces - 1]);
        static_cast<void>(m_tangents[3 * num_faces - 1]);
        static_cast<void>(m_bitangents[3 * num_faces - 1]);
    }
    const halfedge* const edges = m_edges.data();
    const face* const faces = m_faces.data();
    vector3d* const normals = m_normals.data();
    vector3d* const tangents = m_tangents.data();
    vector3d* const bitangents = m_bitangents.data();

    // Two passes, so that the costly steps of one corner do not wait for those of the corner
    // before. The first, vertex by vertex, visits every corner once, as the end of the half-edge
    // before it (half-edge 3i + j ends at corner (j + 1) mod 3 of face i), and computes its
    // normal from its own face and the distinct normals around its vertex alone, so the order
    // of the visits does not change a result; it keeps the cosine of the angle the normal turned
    // by. The second, corner by corner in order, turns the tangent frames.
    facet::detail::scratch<double> cosines(3 * num_faces);
    double* const cosine = cosines.data();

    // The face normals packed in face order, so that the walk around the vertices reads 24
    // bytes per face instead of whole face records; and, for half-edges that may have been
    // changed, the index of each one's face when they all point at records of the face array.
    carray<vector3d> packed_normals;
    if (edges_as_built && m_face_normals.size() == num_faces) {
        packed_normals.swap(m_face_normals);  // the builder's table, used up here
    } else {
        facet::detail::size_for_overwrite(packed_normals, num_faces);
        for (std::uint32_t i = 0; i < num_faces; ++i) packed_normals.data()[i] = faces[i].normal;
    }
    const vector3d* const packed = packed_normals.data();
    facet::detail::scratch<std::uint32_t> face_indices(edges_as_built ? 0 : 3 * num_faces);
    std::uint32_t* const face_of = face_indices.data();
    bool in_face_array = !edges_as_built;
    const auto base = reinterpret_cast<std::uintptr_t>(faces);
    for (std::uint32_t e = 0; in_face_array && e < 3 * num_faces; ++e) {
        const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(edges[e].face) - base;
        in_face_array = offset % sizeof(face) == 0 && offset / sizeof(face) < num_faces;
        face_of[e] = static_cast<std::uint32_t>(offset / sizeof(face));
    }

    distinct_normals around;
    for (std::uint32_t v = 0; v < num_vertices; ++v) {
        if (incoming.first(v) == incoming.last(v)) continue;
        if (edges_as_built)  // half-edge e belongs to face e / 3
            around.collect(
                incoming, [packed](std::uint32_t e) -> const vector3d& { return packed[e / 3]; },
                v);
        else if (in_face_array)
            around.collect(
                incoming,
                [packed, face_of](std::uint32_t e) -> const vector3d& {
                    return packed[face_of[e]];
                },
                v);
        else
            around.collect(
                incoming,
                [edges](std::uint32_t e) -> const vector3d& { return edges[e].face->normal; }, v);
        // Two corners at a time; an odd one out goes in both lanes.
        const std::uint32_t last = incoming.last(v);
        for (std::uint32_t h = incoming.first(v); h < last; h += 2) {
            const std::uint32_t e[2] = {incoming.edge(h), incoming.edge(std::min(h + 1, last - 1))};
            vector3d normal[2];
            double c[2];
            smooth_two(around, packed[e[0] / 3], packed[e[1] / 3], threshold, normal, c);
            for (int l = 0; l < 2; ++l) {
                // Half-edge e ends at corner (e mod 3 + 1) mod 3 of face e / 3.
                const std::uint32_t j = 3 * (e[l] / 3) + (e[l] % 3 + 1) % 3;
                normals[j] = normal[l];
                cosine[j] = c[l];
            }
        }
    }

    // The second pass goes block by block, in steps: the arc cosines of a block's corners, then
    // the sines and cosines of the half angles of those that turn, then the rotations, so that
    // the long chains of neighbouring corners (calls, divisions, square roots) lie side by side
    // in the instruction stream instead of each waiting for the one before.
    constexpr std::uint32_t block_faces = 64;
    std::uint32_t turning[3 * block_faces];
    double turn[3 * block_faces];  // degrees
    double half_sin[3 * block_faces];
    double half_cos[3 * block_faces];
    for (std::uint32_t i0 = 0; i0 < num_faces; i0 += block_faces) {
        const std::uint32_t i1 = std::min(num_faces, i0 + block_faces);
        const std::uint32_t j0 = 3 * i0;
        std::uint32_t turns = 0;
        for (std::uint32_t i = i0; i < i1; ++i) {
            const face& f = faces[i];
            for (std::uint32_t k = 0; k < 3; ++k) {
                static_cast<void>(m_texcoords[f.texcoord[k]]);  // corners must have coordinates
                const std::uint32_t j = 3 * i + k;
                tangents[j] = f.tangent;
                bitangents[j] = f.bitangent;
                // A cosine at or above cos(0.0993 degrees) turns by less than 0.1 degree.
                const double phi =
                    cosine[j] >= 0.9999985 ? 0.0 : std::acos(cosine[j]) * 180.0 / geometry::pi;
                turn[j - j0] = phi;
                turning[turns] = j - j0;
                turns += std::fabs(phi) >= 0.1 && facet::detail::longer_than_a_tenth(normals[j]);
            }
        }
        for (std::uint32_t t = 0; t < turns; ++t) {
            const std::uint32_t c = turning[t];
            const double a = geometry::deg_to_rad(turn[c] * 0.5);
            half_sin[c] = std::sin(a);
            half_cos[c] = std::cos(a);
        }
        // Two corners at a time; an odd one out goes in both lanes.
        for (std::uint32_t t = 0; t < turns; t += 2) {
            const std::uint32_t c[2] = {turning[t], turning[std::min(t + 1, turns - 1)]};
            const face& fa = faces[(j0 + c[0]) / 3];
            const face& fb = faces[(j0 + c[1]) / 3];
            const facet::detail::frame_turns r(
                facet::detail::vector_pair(fa.normal, fb.normal),
                facet::detail::vector_pair(normals[j0 + c[0]], normals[j0 + c[1]]),
                facet::detail::double_pair{half_sin[c[0]], half_sin[c[1]]},
                facet::detail::double_pair{half_cos[c[0]], half_cos[c[1]]});
            vector3d tangent[2];
            vector3d bitangent[2];
            r.turn(facet::detail::vector_pair(fa.tangent, fb.tangent),
                   facet::detail::vector_pair(fa.bitangent, fb.bitangent), tangent, bitangent);
            for (int i = 0; i < 2; ++i) {
                tangents[j0 + c[i]] = tangent[i];
                bitangents[j0 + c[i]] = bitangent[i];
            }
        }
    }
    facet::detail::recycle(packed_normals);
}
