// What both shadow-volume builders share: the unit vector, the extrusion away from the light
// and the four corners of a side quad.
#pragma once

#include <cstdint>

#include "facet/geometry.h"

namespace facet::detail {

/// How far the far end of a shadow volume lies beyond each silhouette vertex.
inline constexpr double shadow_extrusion_length = 100000.0;

/// `v` normalised by the vector rule: a length of at most 1e-12 (or NaN) gives the zero vector.
inline vector3d unit(vector3d v) {
    v.normalize();
    return v;
}

/// p + 100000.0 · unit(p − light); a point at the light stays where it is.
inline vector3d extrude_from_light(const vector3d& p, const vector3d& light) {
    return p + shadow_extrusion_length * unit(p - light);
}

/// extrude_from_light of vertices given by index, remembering the last two: the silhouette
/// edges of a loop come mostly one after the other, so each vertex is extruded about once.
class far_points {
public:
    explicit far_points(const vector3d& light) : m_light(light) {}

    /// extrude_from_light(p, light) for vertex `index` at p.
    vector3d of(std::uint32_t index, const vector3d& p) {
        for (int k = 0; k < 2; ++k)
            if (m_known[k] && m_index[k] == index) return m_far[k];
        m_next ^= 1;
        m_known[m_next] = true;
        m_index[m_next] = index;
        m_far[m_next] = extrude_from_light(p, m_light);
        return m_far[m_next];
    }

private:
    vector3d m_light;
    bool m_known[2] = {false, false};
    std::uint32_t m_index[2] = {0, 0};
    vector3d m_far[2];
    int m_next = 0;
};

/// The corners of the side quad of edge A → B, from `quad` on: A, B, B', A'.
inline void write_shadow_quad(vector3d* quad, const vector3d& a, const vector3d& b,
                              const vector3d& far_a, const vector3d& far_b) {
    quad[0] = a;
    quad[1] = b;
    quad[2] = far_b;
    quad[3] = far_a;
}

}  // namespace facet::detail
