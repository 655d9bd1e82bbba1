// indexedfaceset: the meshes of the markers (arrow, crosshair): line segments only, built in a
// local face set and exchanged into this one.
#include <cstdint>

#include "facet/ifs.h"
#include "facet/primitives.h"

void indexedfaceset::create_mesh(const primitives::arrow& a) {
    const double length = a.get_length();
    const double head_length = a.get_head_length();
    const double half = a.get_head_base() * 0.5;
    const double head_x = length - head_length;

    indexedfaceset local;
    local.m_vertices.resize(6);
    local.m_vertices[0] = vector3d(0.0, 0.0, 0.0);     // tail
    local.m_vertices[1] = vector3d(length, 0.0, 0.0);  // tip
    local.m_vertices[2] = vector3d(head_x, half, 0.0);
    local.m_vertices[3] = vector3d(head_x, -half, 0.0);
    local.m_vertices[4] = vector3d(head_x, 0.0, half);
    local.m_vertices[5] = vector3d(head_x, 0.0, -half);

    // The shaft, then the four barbs from the tip.
    static const std::uint32_t strokes[5][2] = {{0, 1}, {1, 2}, {1, 3}, {1, 4}, {1, 5}};
    const graphics::pen pen = a.get_pen();
    local.m_lines.resize(5);
    for (std::uint32_t i = 0; i < 5; ++i)
        local.m_lines[i] = line(strokes[i][0], strokes[i][1], pen);

    local.m_edges_only = a.edges_only();
    swap(local);
}

void indexedfaceset::create_mesh(const primitives::crosshair& c) {
    const double half = c.get_size() * 0.5;

    indexedfaceset local;
    local.m_vertices.resize(6);
    local.m_vertices[0] = vector3d(-half, 0.0, 0.0);
    local.m_vertices[1] = vector3d(half, 0.0, 0.0);
    local.m_vertices[2] = vector3d(0.0, -half, 0.0);
    local.m_vertices[3] = vector3d(0.0, half, 0.0);
    local.m_vertices[4] = vector3d(0.0, 0.0, -half);
    local.m_vertices[5] = vector3d(0.0, 0.0, half);

    // One segment along each axis.
    const graphics::pen pen = c.get_pen();
    local.m_lines.resize(3);
    for (std::uint32_t j = 0; j < 3; ++j) local.m_lines[j] = line(2 * j, 2 * j + 1, pen);

    local.m_edges_only = c.edges_only();
    swap(local);
}
