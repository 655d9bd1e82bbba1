// indexedfaceset: the meshes of the solid primitives (box, cylinder, cone).
#include <cmath>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "ifs/face_limit.h"

namespace {

// The largest cylinder division count whose 4n faces and 2n + 2 vertices fit 32-bit counts.
constexpr std::uint32_t max_cylinder_divisions = (1u << 30) - 1;

}  // namespace

void indexedfaceset::create_mesh(const primitives::box& b) {
    const double w = b.get_width();
    const double h = b.get_height();
    const double d = b.get_depth();

    m_vertices.resize(8);
    m_vertices[0] = vector3d(0.0, 0.0, d);
    m_vertices[1] = vector3d(w, 0.0, d);
    m_vertices[2] = vector3d(w, 0.0, 0.0);
    m_vertices[3] = vector3d(0.0, 0.0, 0.0);
    m_vertices[4] = vector3d(0.0, h, d);
    m_vertices[5] = vector3d(w, h, d);
    m_vertices[6] = vector3d(w, h, 0.0);
    m_vertices[7] = vector3d(0.0, h, 0.0);

    // Two triangles per side: +z, +x, -z, -x, +y, -y.
    static const std::uint32_t corners[12][3] = {
        {0, 1, 5}, {0, 5, 4}, {1, 2, 6}, {1, 6, 5}, {2, 3, 7}, {2, 7, 6},
        {3, 0, 4}, {3, 4, 7}, {4, 5, 6}, {4, 6, 7}, {0, 3, 2}, {0, 2, 1},
    };
    m_faces.resize(12);
    for (std::uint32_t i = 0; i < 12; ++i)
        m_faces[i] = face(corners[i][0], corners[i][1], corners[i][2]);

    finish_mesh_edges(b);
    m_silhouette_edges = false;
    finish_mesh_appearance(b);
}

void indexedfaceset::create_mesh(const primitives::cylinder& c) {
    const auto n = static_cast<std::uint32_t>(c.get_number_of_divisions());
    const double h = c.get_height();
    const double r = c.get_radius();
    FACET_CHECK(n <= max_cylinder_divisions);
    facet::detail::check_face_count(c, 4 * static_cast<std::uint64_t>(n));

    // Top ring T(i) = i + 2, bottom ring B(i) = n + i + 2.
    const auto top = [](std::uint32_t i) { return i + 2; };
    const auto bottom = [n](std::uint32_t i) { return n + i + 2; };

    m_vertices.resize(2 * n + 2);
    m_vertices[0] = vector3d(0.0, 0.0, 0.0);
    m_vertices[1] = vector3d(0.0, h, 0.0);
    for (std::uint32_t i = 0; i < n; ++i) {
        const double a = 2.0 * i * geometry::pi / n;
        const double x = r * std::sin(a);
        const double z = r * std::cos(a);
        m_vertices[top(i)] = vector3d(x, h, z);
        m_vertices[bottom(i)] = vector3d(x, 0.0, z);
    }

    // n top-cap faces, 2n side faces (two per segment), n bottom-cap faces. With n = 0 the
    // closing segment indexes the empty face array and fails "index < m_size".
    m_faces.resize(4 * n);
    for (std::uint32_t i = 0; i + 1 < n; ++i) {
        m_faces[i] = face(1, top(i), top(i + 1));
        m_faces[n + 2 * i] = face(top(i), bottom(i), top(i + 1));
        m_faces[n + 2 * i + 1] = face(top(i + 1), bottom(i), bottom(i + 1));
        m_faces[3 * n + i] = face(0, bottom(i + 1), bottom(i));
    }
    const std::uint32_t last = n - 1;
    m_faces[n - 1] = face(1, top(last), top(0));
    m_faces[3 * n - 2] = face(top(last), bottom(last), top(0));
    m_faces[3 * n - 1] = face(top(0), bottom(last), bottom(0));
    m_faces[4 * n - 1] = face(0, bottom(0), bottom(last));

    finish_mesh(c);
    smooth_mesh(c.get_smoothing_threshold_angle());
}

void indexedfaceset::create_mesh(const primitives::cone& c) {
    // The cone's segment count is fixed.
    constexpr std::uint32_t n = 12;
    const double h = c.get_height();
    const double r = c.get_radius();

    m_vertices.resize(n + 2);
    for (std::uint32_t i = 0; i < n; ++i) {
        const double a = 2.0 * i * geometry::pi / n;
        m_vertices[i] = vector3d(r * std::sin(a), 0.0, r * std::cos(a));
    }
    m_vertices[n] = vector3d(0.0, 0.0, 0.0);
    m_vertices[n + 1] = vector3d(0.0, h, 0.0);

    // n side faces to the apex, then n base faces.
    m_faces.resize(2 * n);
    for (std::uint32_t i = 0; i + 1 < n; ++i) {
        m_faces[i] = face(i, i + 1, n + 1);
        m_faces[n + i] = face(n, i + 1, i);
    }
    m_faces[n - 1] = face(n - 1, 0, n + 1);
    m_faces[2 * n - 1] = face(0, n - 1, n);

    finish_mesh(c);
    smooth_mesh(c.get_smoothing_threshold_angle());
}
