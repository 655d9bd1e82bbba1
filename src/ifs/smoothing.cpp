// indexedfaceset: smooth corner normals with tangent frames turned along.
#include <algorithm>
#include <cmath>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "ifs/incoming_edges.h"

void indexedfaceset::smooth_mesh(double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    const std::uint32_t num_faces = this->num_faces();
    const facet::detail::incoming_edges incoming(m_faces, num_vertices());
    // The lists name half-edges 0 .. 3 · num_faces − 1, which must exist (checked once here).
    if (num_faces > 0) static_cast<void>(m_edges[3 * num_faces - 1]);
    const halfedge* edges = m_edges.data();

    std::vector<vector3d> seen;  // the distinct normals taken for the current corner
    for (std::uint32_t i = 0; i < num_faces; ++i) {
        const face& f = m_faces[i];
        const vector3d& own = f.normal;
        for (std::uint32_t k = 0; k < 3; ++k) {
            const std::uint32_t v = f.vertex[k];
            vector3d sum = own;
            vector3d tangent = f.tangent;
            vector3d bitangent = f.bitangent;
            seen.clear();
            seen.push_back(own);
            static_cast<void>(m_texcoords[f.texcoord[k]]);  // corners must have coordinates

            for (const std::uint32_t* h = incoming.begin(v); h != incoming.end(v); ++h) {
                const vector3d& m = edges[*h].face->normal;
                if (std::find(seen.begin(), seen.end(), m) != seen.end()) continue;
                if (dot(m, own) > threshold) {
                    seen.push_back(m);
                    sum += m;
                }
            }
            sum.normalize();

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
