// Geometry shared by the extrusion meshes and bounding boxes.
#include "ifs/extrusion_geometry.h"

#include <cmath>
#include <numeric>
#include <utility>

#include "facet/triangulate.h"
#include "ifs/face_shading.h"

namespace facet::detail {

cap_triangulation triangulate_cap(const std::vector<vector2d>& outline) {
    cap_triangulation cap;
    cap.kept.resize(outline.size());
    std::iota(cap.kept.begin(), cap.kept.end(), 0u);
    std::vector<vector2d> contour = outline;
    for (;;) {
        std::vector<unsigned> triangles;
        triangulate(contour, triangles);
        if (triangles.empty()) return cap_triangulation();

        std::vector<char> used(contour.size(), 0);
        for (unsigned index : triangles) used[index] = 1;
        std::vector<std::uint32_t> position(contour.size(), 0);
        std::vector<std::uint32_t> kept;
        std::vector<vector2d> remaining;
        for (std::uint32_t i = 0; i < contour.size(); ++i) {
            if (!used[i]) continue;
            position[i] = static_cast<std::uint32_t>(kept.size());
            kept.push_back(cap.kept[i]);
            remaining.push_back(contour[i]);
        }
        if (kept.size() == contour.size()) {
            cap.triangles = std::move(triangles);
            return cap;
        }
        // The triangulator skipped some points; the next round cuts the outline without them
        // (and may find further ones to skip, so every round drops at least one point).
        cap.kept = std::move(kept);
        contour = std::move(remaining);
    }
}

namespace {

vector2d project_along(unsigned axis, const vector3d& p) {
    switch (axis) {
        case 0:
            return vector2d(p.z, p.y);
        case 1:
            return vector2d(p.x, p.z);
        default:
            return vector2d(p.x, p.y);
    }
}

}  // namespace

std::vector<vector2d> project_outline(const std::vector<vector3d>& outline) {
    const std::size_t n = outline.size();
    vector3d normal;
    for (std::size_t i = 0; i < n; ++i) {
        const vector3d& a = outline[i];
        const vector3d& b = outline[(i + 1) % n];
        normal.x += (a.y - b.y) * (a.z + b.z);
        normal.y += (a.z - b.z) * (a.x + b.x);
        normal.z += (a.x - b.x) * (a.y + b.y);
    }
    unsigned axis = dominant_axis(normal);
    if (normal == vector3d() && n > 0) {
        // No enclosed area (a line, or a figure that cancels itself): project along the axis of
        // the smallest extent, so that a flat outline keeps its shape for the triangulator.
        vector3d lo = outline[0];
        vector3d hi = outline[0];
        for (const vector3d& p : outline) {
            lo = vector3d(std::fmin(lo.x, p.x), std::fmin(lo.y, p.y), std::fmin(lo.z, p.z));
            hi = vector3d(std::fmax(hi.x, p.x), std::fmax(hi.y, p.y), std::fmax(hi.z, p.z));
        }
        const vector3d extent = hi - lo;
        axis = extent.x <= extent.y && extent.x <= extent.z ? 0 : extent.y <= extent.z ? 1 : 2;
    }
    std::vector<vector2d> projected;
    projected.reserve(n);
    for (const vector3d& p : outline) projected.push_back(project_along(axis, p));
    return projected;
}

namespace {

// v turned about the unit axis k by the angle whose cosine and sine are given (Rodrigues).
vector3d rotate(const vector3d& v, const vector3d& k, double c, double s) {
    return v * c + cross(k, v) * s + k * (dot(k, v) * (1.0 - c));
}

}  // namespace

bool sweep_rings(const std::vector<vector2d>& profile, const std::vector<vector3d>& path,
                 std::vector<vector3d>& rings) {
    rings.clear();
    std::vector<vector3d> points;
    for (const vector3d& p : path)
        if (points.empty() || (p - points.back()).length() > 1e-12) points.push_back(p);
    if (points.size() < 2 || profile.empty()) return true;

    const std::size_t segments = points.size() - 1;
    std::vector<vector3d> tangents(segments);
    for (std::size_t s = 0; s < segments; ++s) {
        tangents[s] = points[s + 1] - points[s];
        tangents[s].normalize();
    }

    // The first frame: up is +y made square to the tangent, or -z for a vertical start.
    const vector3d& t0 = tangents[0];
    vector3d up = vector3d(0.0, 1.0, 0.0) - t0 * t0.y;
    if (up.length() < 1e-6) up = vector3d(0.0, 0.0, -1.0) - t0 * -t0.z;
    up.normalize();
    vector3d side = cross(up, t0);

    rings.reserve(points.size() * profile.size());
    for (const vector2d& q : profile) rings.push_back(points[0] + side * q.x + up * q.y);

    for (std::size_t k = 1; k < segments; ++k) {
        const vector3d& t_in = tangents[k - 1];
        const vector3d& t_out = tangents[k];
        vector3d mitre = t_in + t_out;
        if (mitre.normalize() == 0.0) {
            rings.clear();
            return false;
        }
        // The ring of the incoming segment's frame, moved along that segment into the mitre
        // plane through the joint.
        const double denominator = dot(t_in, mitre);
        for (const vector2d& q : profile) {
            const vector3d offset = side * q.x + up * q.y;
            rings.push_back(points[k] + offset - t_in * (dot(offset, mitre) / denominator));
        }
        // Turn the frame by the smallest rotation taking t_in to t_out.
        vector3d axis = cross(t_in, t_out);
        const double sine = axis.normalize();
        if (sine > 0.0) {
            const double cosine = dot(t_in, t_out);
            up = rotate(up, axis, cosine, sine);
            up = up - t_out * dot(up, t_out);
            up.normalize();
            side = cross(up, t_out);
        }
    }

    for (const vector2d& q : profile) rings.push_back(points.back() + side * q.x + up * q.y);
    return true;
}

double signed_volume(const std::vector<vector3d>& vertices,
                     const std::vector<std::uint32_t>& corners) {
    double volume = 0.0;
    for (std::size_t f = 0; f + 2 < corners.size(); f += 3) {
        const vector3d& p0 = vertices[corners[f]];
        const vector3d& p1 = vertices[corners[f + 1]];
        const vector3d& p2 = vertices[corners[f + 2]];
        volume += dot(p0, cross(p1, p2));
    }
    return volume / 6.0;
}

closed_solid assemble_rings(std::vector<vector3d> rings, std::uint32_t m,
                            const std::vector<unsigned>& cap_triangles) {
    closed_solid solid;
    const std::uint32_t count = static_cast<std::uint32_t>(rings.size() / m);
    const std::uint32_t last = (count - 1) * m;
    std::vector<std::uint32_t>& corners = solid.corners;
    corners.reserve(2 * cap_triangles.size() + 6 * static_cast<std::size_t>(m) * (count - 1));

    // The first cap keeps the outline's winding, so its border runs i -> i + 1; the last cap
    // is reversed and every side quad runs against the cap next to it, which pairs all edges.
    for (std::size_t t = 0; t + 2 < cap_triangles.size(); t += 3) {
        corners.push_back(cap_triangles[t]);
        corners.push_back(cap_triangles[t + 1]);
        corners.push_back(cap_triangles[t + 2]);
    }
    for (std::size_t t = 0; t + 2 < cap_triangles.size(); t += 3) {
        corners.push_back(last + cap_triangles[t]);
        corners.push_back(last + cap_triangles[t + 2]);
        corners.push_back(last + cap_triangles[t + 1]);
    }
    for (std::uint32_t r = 0; r + 1 < count; ++r) {
        for (std::uint32_t i = 0; i < m; ++i) {
            const std::uint32_t j = (i + 1) % m;
            const std::uint32_t a = r * m + j;
            const std::uint32_t b = r * m + i;
            const std::uint32_t c = (r + 1) * m + i;
            const std::uint32_t d = (r + 1) * m + j;
            corners.insert(corners.end(), {a, b, c, a, c, d});
        }
    }
    solid.vertices = std::move(rings);
    if (signed_volume(solid.vertices, corners) < 0.0)
        for (std::size_t f = 0; f + 2 < corners.size(); f += 3)
            std::swap(corners[f + 1], corners[f + 2]);
    return solid;
}

}  // namespace facet::detail
