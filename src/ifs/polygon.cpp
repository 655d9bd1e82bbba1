// indexedfaceset: the mesh of a polygon, triangulated in the coordinate plane that faces it.
#include <cmath>
#include <cstdint>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "facet/triangulate.h"
#include "ifs/face_limit.h"

namespace {

// The distance below which outline points count as the same point when the plane is chosen,
// in model units.
constexpr double min_spacing = 0.1;

// The outline's plane normal, not normalised: (B − A) × (C − A) for A = the first point, B the
// first later point (before the last) at least min_spacing from A, C the first point after B at
// least min_spacing from A and from B. (0, 1, 0) when no such three points exist.
vector3d outline_normal(const carray<vector3d>& v) {
    const std::uint32_t n = v.size();
    const vector3d a = v[0];
    vector3d b = a;
    vector3d c = a;
    std::uint32_t i = 1;
    while (i < n - 1 && (b - a).length() < min_spacing) b = v[i++];
    while (i < n && ((c - a).length() < min_spacing || (c - b).length() < min_spacing)) c = v[i++];
    if ((b - a).length() >= min_spacing && (c - a).length() >= min_spacing &&
        (c - b).length() >= min_spacing)
        return cross(b - a, c - a);
    return vector3d(0.0, 1.0, 0.0);
}

// The outline in the coordinate plane facing `normal`: (z, y) when x dominates, (x, z) when y
// does, else (x, y); ties go to the earlier axis.
std::vector<vector2<double>> projected_outline(const carray<vector3d>& v, const vector3d& normal) {
    const double nx = std::fabs(normal.x);
    const double ny = std::fabs(normal.y);
    const double nz = std::fabs(normal.z);
    std::vector<vector2<double>> outline;
    outline.reserve(v.size());
    if (nx >= ny && nx >= nz) {
        for (const vector3d& p : v) outline.emplace_back(p.z, p.y);
    } else if (ny >= nx && ny >= nz) {
        for (const vector3d& p : v) outline.emplace_back(p.x, p.z);
    } else {
        for (const vector3d& p : v) outline.emplace_back(p.x, p.y);
    }
    return outline;
}

}  // namespace

void indexedfaceset::create_mesh(const primitives::polygon& p) {
    const auto n = static_cast<std::uint32_t>(p.size());
    facet::detail::check_face_count(p, n >= 3 ? n - 2 : 0);
    m_vertices.resize(n);
    for (std::uint32_t i = 0; i < n; ++i) m_vertices[i] = p[i];

    std::vector<unsigned> indices;
    if (n >= 3) triangulate(projected_outline(m_vertices, outline_normal(m_vertices)), indices);

    const auto num_faces = static_cast<std::uint32_t>(indices.size() / 3);
    m_faces.resize(num_faces);
    for (std::uint32_t k = 0; k < num_faces; ++k)
        m_faces[k] = face(indices[3 * k], indices[3 * k + 1], indices[3 * k + 2]);

    finish_mesh(p);
}
