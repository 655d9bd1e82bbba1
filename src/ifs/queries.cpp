// indexedfaceset: transforming, bounds and ray casting.
#include "facet/ifs.h"
#include "facet/math3d.h"
#include "facet/objects.h"

void indexedfaceset::apply_transform(const matrix44d& m) {
    for (vector3d& v : m_vertices) v = transform_vector(m, v);
    compute_normals();
}

void indexedfaceset::get_bounds(vector3d& min, vector3d& max) const {
    primitives::boundingbox box;
    if (!m_vertices.empty()) {
        vector3d lo = m_vertices[0];
        vector3d hi = lo;
        for (const vector3d& v : m_vertices) {
            if (v.x < lo.x) lo.x = v.x;
            if (v.y < lo.y) lo.y = v.y;
            if (v.z < lo.z) lo.z = v.z;
            if (v.x > hi.x) hi.x = v.x;
            if (v.y > hi.y) hi.y = v.y;
            if (v.z > hi.z) hi.z = v.z;
        }
        box = primitives::boundingbox((lo + hi) / 2.0, hi.x - lo.x, hi.y - lo.y, hi.z - lo.z);
    }
    const vector3d half(box.width / 2.0, box.height / 2.0, box.depth / 2.0);
    min = box.center - half;
    max = box.center + half;
}

bool indexedfaceset::intersection(const vector3d& origin, const vector3d& direction, double& t,
                                  std::uint32_t& face_index) const {
    bool hit = false;
    double nearest = 0.0;
    std::uint32_t nearest_face = 0;
    for (std::uint32_t i = 0; i < num_faces(); ++i) {
        const face& f = m_faces[i];
        double ti = 0.0;
        if (!ray_triangle_intersection(origin, direction, m_vertices[f.vertex[0]],
                                       m_vertices[f.vertex[1]], m_vertices[f.vertex[2]], &ti))
            continue;
        if (!hit || ti < nearest) {
            hit = true;
            nearest = ti;
            nearest_face = i;
        }
    }
    if (hit) {
        t = nearest;
        face_index = nearest_face;
    }
    return hit;
}
