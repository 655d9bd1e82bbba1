// The flat normal, box texture coordinates and tangent frame of one face, for the builders that
// write each face record once.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "facet/ifs.h"
#include "facet/math3d.h"
#include "ifs/box_projection.h"
#include "ifs/unit_vectors.h"

namespace facet::detail {

/// The largest absolute component of `n` (0 = x, 1 = y, 2 = z); on a tie x before y before z.
inline unsigned dominant_axis(const vector3d& n) {
    const double ax = std::fabs(n.x);
    const double ay = std::fabs(n.y);
    const double az = std::fabs(n.z);
    unsigned axis = 0;
    double largest = ax;
    if (ay > largest) {
        axis = 1;
        largest = ay;
    }
    if (az > largest) axis = 2;
    return axis;
}

/// Row `row` of `m` applied to p.
inline double apply_row(const matrix2x3& m, int row, const vector3d& p) {
    return m(row, 0) * p.x + m(row, 1) * p.y + m(row, 2) * p.z;
}

/// What compute_normals, gen_box_texcoords (when `box`) and compute_tangent_space write for
/// one face, in one visit of the face instead of one pass over all faces each: the same values,
/// as long as the faces are visited in index order (a face without a valid style reads the
/// coordinates its indices name, which only earlier faces write). The corner arrays are left to
/// smooth_mesh.
class face_shading {
public:
    /// `texcoords`: sized to three per face when `box`; `styles` and `rotated` as the face set
    /// holds them after its texture settings. The arguments must outlive this object.
    face_shading(const carray<vector3d>& vertices, carray<texcoord>& texcoords,
                 const carray<graphics::style>& styles, bool rotated, bool box)
        : m_vertices(vertices), m_texcoords(texcoords), m_rotated(rotated), m_box(box) {
        if (!box) return;
        m_projections.reserve(styles.size());
        for (const graphics::style& s : styles)
            m_projections.emplace_back(s.texture.texture_scale.x, s.texture.texture_scale.y);
    }

    /// Writes the normal, the texture-coordinate indices (with box coordinates and a valid
    /// style), the tangent and the bitangent of face `i`, whose vertices and style are set, and
    /// returns the normal. Vertex and texture-coordinate indices out of range fail
    /// "index < m_size".
    const vector3d& operator()(face& f, std::uint32_t i) const {
        const vector3d& p0 = m_vertices[f.vertex[0]];
        const vector3d& p1 = m_vertices[f.vertex[1]];
        const vector3d& p2 = m_vertices[f.vertex[2]];
        f.normal = cross(p1 - p0, p2 - p0);
        normalize(f.normal);  // as f.normal.normalize(), two divisions in one
        if (m_box && f.style >= 0 && static_cast<std::uint32_t>(f.style) < m_projections.size()) {
            const box_projection& projection = m_projections[f.style];
            const unsigned axis = dominant_axis(f.normal);
            const matrix2x3& m = m_rotated ? projection.rotated[axis] : projection.plain[axis];
            const vector3d* const p[3] = {&p0, &p1, &p2};
            for (std::uint32_t k = 0; k < 3; ++k) {
                m_texcoords[3 * i + k] = texcoord(static_cast<float>(apply_row(m, 0, *p[k])),
                                                  static_cast<float>(apply_row(m, 1, *p[k])));
                f.texcoord[k] = 3 * i + k;
            }
        } else if (m_box) {
            texcoord* const slots = m_texcoords.data() + 3 * i;
            slots[0] = slots[1] = slots[2] = texcoord();
        }
        // The frame sees the coordinates as stored, rounded to float: read back from the
        // array, as GCC 12's vectorizer drops the rounding of a pair of coordinates converted
        // to float and straight back to double.
        vector2d uv[3];
        for (int k = 0; k < 3; ++k) {
            const texcoord& t = m_texcoords[f.texcoord[k]];
            uv[k] = vector2d(static_cast<double>(t.u), static_cast<double>(t.v));
        }
        vector3d tangent;  // zero where the coordinates are degenerate
        vector3d bitangent;
        ComputeTangentBasis(p0, p1, p2, uv[0], uv[1], uv[2], tangent, bitangent);
        f.tangent = tangent;
        f.bitangent = bitangent;
        return f.normal;
    }

private:
    const carray<vector3d>& m_vertices;
    carray<texcoord>& m_texcoords;
    std::vector<box_projection> m_projections;
    bool m_rotated;
    bool m_box;
};

}  // namespace facet::detail
