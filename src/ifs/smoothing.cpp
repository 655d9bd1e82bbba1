// indexedfaceset: smooth corner normals with tangent frames turned along.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"
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

// transform_vector(r, p) for the rotation matrix r of make_rotation_matrix(r, angle, axis),
// with the same arithmetic in the same order, written out: r's last row is (0, 0, 0, 1) and its
// last column (0, 0, 0, 1), so the projective weight is 1 for a finite p and dividing by it
// changes no bit; it is divided only when it is not 1. The weight depends on p alone: it is
// computed once per face frame vector rather than once per corner.
struct rotation {
    double m[3][3];

    rotation(double angle, double ax, double ay, double az) {
        const double a = geometry::deg_to_rad(angle * 0.5);
        const double k = std::sin(a) / std::sqrt(ax * ax + ay * ay + az * az);
        const double w = std::cos(a);
        const double x = k * ax;
        const double y = k * ay;
        const double z = k * az;
        m[0][0] = 1.0 - 2.0 * (y * y + z * z);
        m[0][1] = 2.0 * (x * y - w * z);
        m[0][2] = 2.0 * (x * z + w * y);
        m[1][0] = 2.0 * (x * y + w * z);
        m[1][1] = 1.0 - 2.0 * (x * x + z * z);
        m[1][2] = 2.0 * (y * z - w * x);
        m[2][0] = 2.0 * (x * z - w * y);
        m[2][1] = 2.0 * (y * z + w * x);
        m[2][2] = 1.0 - 2.0 * (x * x + y * y);
    }

    static double weight(const vector3d& p) { return 0.0 * p.x + 0.0 * p.y + 0.0 * p.z + 1.0; }

    // `w`: weight(p).
    vector3d apply(const vector3d& p, double w) const {
        double x = m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + 0.0;
        double y = m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + 0.0;
        double z = m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + 0.0;
        if (!(w == 1.0)) {
            x /= w;
            y /= w;
            z /= w;
        }
        return vector3d(x, y, z);
    }
};

}  // namespace

void indexedfaceset::smooth_mesh(double angle) { smooth_corners(angle, false); }

void indexedfaceset::smooth_corners(double angle, bool edges_as_built) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    const std::uint32_t num_faces = this->num_faces();
    const std::uint32_t num_vertices = this->num_vertices();
    const facet::detail::incoming_edges incoming(m_faces, num_vertices);
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
        for (std::uint32_t h = incoming.first(v); h != incoming.last(v); ++h) {
            const std::uint32_t e = incoming.edge(h);
            const std::uint32_t i = e / 3;
            const std::uint32_t k = (e % 3 + 1) % 3;
            const vector3d& own = packed[i];

            vector3d sum = own;
            for (const vector3d* m = around.begin(); m != around.end(); ++m)
                if (!(*m == own) && dot(*m, own) > threshold) sum += *m;
            facet::detail::normalize(sum);
            double c = dot(sum, own);
            if (c > 1.0) c = 1.0;
            if (c < -1.0) c = -1.0;
            normals[3 * i + k] = sum;
            cosine[3 * i + k] = c;
        }
    }

    for (std::uint32_t i = 0; i < num_faces; ++i) {
        const face& f = faces[i];
        const double tangent_weight = rotation::weight(f.tangent);
        const double bitangent_weight = rotation::weight(f.bitangent);
        for (std::uint32_t k = 0; k < 3; ++k) {
            static_cast<void>(m_texcoords[f.texcoord[k]]);  // corners must have coordinates
            const std::uint32_t j = 3 * i + k;
            const vector3d& sum = normals[j];
            // A cosine at or above cos(0.0993 degrees) turns by less than 0.1 degree.
            const double phi =
                cosine[j] >= 0.9999985 ? 0.0 : std::acos(cosine[j]) * 180.0 / geometry::pi;
            if (std::fabs(phi) >= 0.1 && facet::detail::longer_than_a_tenth(sum)) {
                const vector3d axis = cross(f.normal, sum);
                const rotation r(phi, axis.x, axis.y, axis.z);
                vector3d tangent = r.apply(f.tangent, tangent_weight);
                vector3d bitangent = r.apply(f.bitangent, bitangent_weight);
                facet::detail::normalize(tangent, bitangent);
                tangents[j] = tangent;
                bitangents[j] = bitangent;
            } else {
                tangents[j] = f.tangent;
                bitangents[j] = f.bitangent;
            }
        }
    }
    facet::detail::recycle(packed_normals);
}
