// indexedfaceset: smooth corner normals with tangent frames turned along.
#include <cmath>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "ifs/incoming_edges.h"

namespace {

// For every vertex, the distinct normals of the faces around it (compared with ==), in the
// order of their first occurrence in the vertex's list of incoming half-edges.
//
// A corner's smoothed normal is its face normal plus every normal met in that list which
// equals neither the face normal nor a normal already taken, and lies within the threshold.
// An equal normal met again gives the same answer as at its first occurrence (taken: skipped
// as seen; refused: refused again), so walking the distinct normals gives the same sum, added
// in the same order. Flat fans (a cap's centre) collapse to one entry, which keeps the work per
// corner bounded by the number of different normals at the vertex.
class distinct_normals {
public:
    distinct_normals(const facet::detail::incoming_edges& incoming, const halfedge* edges,
                     std::uint32_t num_vertices, std::uint32_t num_edges)
        : m_first(num_vertices + 1), m_normals(num_edges) {
        std::uint32_t* first = m_first.data();
        vector3d* normals = m_normals.data();
        std::uint32_t size = 0;
        for (std::uint32_t v = 0; v < num_vertices; ++v) {
            first[v] = size;
            for (std::uint32_t h = incoming.first(v); h != incoming.last(v); ++h) {
                const vector3d& m = edges[incoming.edge(h)].face->normal;
                bool known = false;
                for (std::uint32_t k = first[v]; k < size && !known; ++k) known = normals[k] == m;
                if (!known) normals[size++] = m;
            }
        }
        first[num_vertices] = size;
    }

    const vector3d* begin(std::uint32_t v) const { return m_normals.data() + m_first.data()[v]; }
    const vector3d* end(std::uint32_t v) const { return m_normals.data() + m_first.data()[v + 1]; }

private:
    carray<std::uint32_t> m_first;
    carray<vector3d> m_normals;
};

}  // namespace

void indexedfaceset::smooth_mesh(double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    const std::uint32_t num_faces = this->num_faces();
    const std::uint32_t num_vertices = this->num_vertices();
    const facet::detail::incoming_edges incoming(m_faces, num_vertices,
                                                 facet::detail::incoming_edges::order::by_index);
    // The lists name half-edges 0 .. 3 · num_faces − 1, which must exist (checked once here).
    if (num_faces > 0) static_cast<void>(m_edges[3 * num_faces - 1]);
    const distinct_normals around(incoming, m_edges.data(), num_vertices, 3 * num_faces);

    for (std::uint32_t i = 0; i < num_faces; ++i) {
        const face& f = m_faces[i];
        const vector3d& own = f.normal;
        for (std::uint32_t k = 0; k < 3; ++k) {
            const std::uint32_t v = f.vertex[k];
            static_cast<void>(m_texcoords[f.texcoord[k]]);  // corners must have coordinates

            vector3d sum = own;
            for (const vector3d* m = around.begin(v); m != around.end(v); ++m)
                if (!(*m == own) && dot(*m, own) > threshold) sum += *m;
            sum.normalize();

            vector3d tangent = f.tangent;
            vector3d bitangent = f.bitangent;
            double c = dot(sum, own);
            if (c > 1.0) c = 1.0;
            if (c < -1.0) c = -1.0;
            const double phi = std::acos(c) * 180.0 / geometry::pi;
            if (std::fabs(phi) >= 0.1 && sum.length() > 0.1) {
                const vector3d axis = cross(own, sum);
                matrix44d r;
                make_rotation_matrix(r, phi, axis.x, axis.y, axis.z);
                tangent = transform_vector(r, f.tangent);
                tangent.normalize();
                bitangent = transform_vector(r, f.bitangent);
                bitangent.normalize();
            }
            m_normals[3 * i + k] = sum;
            m_tangents[3 * i + k] = tangent;
            m_bitangents[3 * i + k] = bitangent;
        }
    }
}
