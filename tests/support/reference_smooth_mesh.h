// The oracle for indexedfaceset::smooth_mesh (same bits), written the plain way: per corner, add
// each new face normal (compared component by component) around its vertex within the angle,
// normalise, and turn the face's frame with a rotation matrix when the normal moved by 0.1 degree
// or more. Reads the faces, the half-edges' face pointers and the face frames.
#pragma once

#include <cmath>
#include <list>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"

namespace reference {

struct smoothed {
    std::vector<vector3d> normals, tangents, bitangents;  // three per face
};

inline smoothed smooth_mesh(const indexedfaceset& fs, double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    std::vector<std::list<const halfedge*>> incoming(fs.num_vertices());
    for (std::uint32_t e = 0; e < 3 * fs.num_faces(); ++e)
        incoming.at(fs.get_face(e / 3).vertex[(e + 1) % 3]).push_back(&fs.get_edge(e));
    smoothed out;
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        for (int k = 0; k < 3; ++k) {
            vector3d sum = f.normal, t = f.tangent, b = f.bitangent;
            std::list<vector3d> seen{f.normal};
            for (const halfedge* h : incoming[f.vertex[k]]) {
                const vector3d m = h->face->normal;
                bool known = false;
                for (const vector3d& s : seen)
                    known = known || (s.x == m.x && s.y == m.y && s.z == m.z);
                if (!known && dot(m, f.normal) > threshold) {
                    seen.push_back(m);
                    sum += m;
                }
            }
            sum.normalize();
            double c = dot(sum, f.normal);
            c = c > 1.0 ? 1.0 : (c < -1.0 ? -1.0 : c);  // a NaN stays
            const double phi = std::acos(c) * 180.0 / geometry::pi;
            if (std::fabs(phi) >= 0.1 && sum.length() > 0.1) {
                const vector3d axis = cross(f.normal, sum);
                matrix44d r;
                make_rotation_matrix(r, phi, axis.x, axis.y, axis.z);
                t = transform_vector(r, f.tangent);
                t.normalize();
                b = transform_vector(r, f.bitangent);
                b.normalize();
            }
            out.normals.push_back(sum);
            out.tangents.push_back(t);
            out.bitangents.push_back(b);
        }
    }
    return out;
}

}  // namespace reference
