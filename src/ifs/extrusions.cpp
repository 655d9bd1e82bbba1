// indexedfaceset: the closed meshes of extruded polygons and path extrusions.
#include <stdexcept>
#include <utility>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/extrusion_geometry.h"
#include "ifs/face_limit.h"

namespace {

// Replaces the vertices and faces of `target` by those of the solid (faces at their defaults).
void store_solid(indexedfaceset& target, const facet::detail::closed_solid& solid) {
    carray<vector3d>& vertices = target.vertices();
    vertices.resize(static_cast<std::uint32_t>(solid.vertices.size()));
    for (std::uint32_t i = 0; i < vertices.size(); ++i) vertices[i] = solid.vertices[i];

    carray<face>& faces = target.faces();
    faces.resize(static_cast<std::uint32_t>(solid.corners.size() / 3));
    for (std::uint32_t i = 0; i < faces.size(); ++i)
        faces[i] = face(solid.corners[3 * i], solid.corners[3 * i + 1], solid.corners[3 * i + 2]);
}

}  // namespace

void indexedfaceset::create_mesh(const primitives::extruded_polygon& e) {
    const std::vector<vector3d>& points = e.get_points();
    // Two caps of m - 2 triangles and two per side.
    const std::uint64_t m = points.size();
    facet::detail::check_face_count(e, m >= 3 ? 2 * (m - 2) + 2 * m : 0);
    // May throw; nothing has been changed yet.
    const facet::detail::cap_triangulation cap =
        facet::detail::triangulate_cap(facet::detail::project_outline(points));

    facet::detail::closed_solid solid;
    if (!cap.kept.empty()) {
        const auto m = static_cast<std::uint32_t>(cap.kept.size());
        std::vector<vector3d> rings;
        rings.reserve(2 * static_cast<std::size_t>(m));
        for (std::uint32_t i : cap.kept) rings.push_back(points[i]);
        for (std::uint32_t i : cap.kept) rings.push_back(e.far_point(points[i]));
        solid = facet::detail::assemble_rings(std::move(rings), m, cap.triangles);
    }

    store_solid(*this, solid);
    finish_mesh(e);
    smooth_mesh(e.get_smoothing_threshold_angle());
}

void indexedfaceset::create_mesh(const primitives::path_extrusion& p) {
    // Two caps of m - 2 triangles and two per profile edge and path segment (every path point
    // counted: an upper bound).
    const std::uint64_t m = p.get_profile().size(), k = p.get_path().size();
    facet::detail::check_face_count(p, m >= 3 && k >= 2 ? 2 * (m - 2) + 2 * m * (k - 1) : 0);
    std::vector<vector2d> outline;
    outline.reserve(p.get_profile().size());
    for (const vector3d& q : p.get_profile()) outline.push_back(vector2d(q.x, q.y));
    // Both steps may throw; nothing has been changed yet.
    const facet::detail::cap_triangulation cap = facet::detail::triangulate_cap(outline);

    facet::detail::closed_solid solid;
    if (!cap.kept.empty()) {
        std::vector<vector2d> profile;
        profile.reserve(cap.kept.size());
        for (std::uint32_t i : cap.kept) profile.push_back(outline[i]);
        std::vector<vector3d> rings;
        if (!facet::detail::sweep_rings(profile, p.get_path(), rings))
            throw std::runtime_error("Path extrusion error: path turns back on itself");
        if (!rings.empty())
            solid = facet::detail::assemble_rings(
                std::move(rings), static_cast<std::uint32_t>(profile.size()), cap.triangles);
    }

    store_solid(*this, solid);
    finish_mesh(p);
    smooth_mesh(p.get_smoothing_threshold_angle());
}
