// Meshes for the shadow-volume tests: free meshes given by vertex and face lists, a closed UV
// sphere, and a scene object that builds any of them.
#pragma once

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "facet/ifs.h"
#include "facet/objects.h"

namespace shadow_test {

struct mesh_data {
    std::vector<vector3d> vertices;
    std::vector<face> faces;
};

/// Fills `fs` with the vertices and faces, then normals and half-edges.
inline void fill(indexedfaceset& fs, const mesh_data& m) {
    fs.vertices().resize(static_cast<std::uint32_t>(m.vertices.size()));
    for (std::uint32_t i = 0; i < m.vertices.size(); ++i) fs.vertices()[i] = m.vertices[i];
    fs.faces().resize(static_cast<std::uint32_t>(m.faces.size()));
    for (std::uint32_t i = 0; i < m.faces.size(); ++i) fs.faces()[i] = m.faces[i];
    fs.compute_normals();
    fs.construct_halfedge_data();
}

/// The unit cube [0, 1]^3 laid out like the box primitive's mesh (vertex 5 is (1, 1, 1)), with
/// the faces of the sides listed in `sides` (+z, +x, −z, −x, +y, −y; two triangles each).
inline mesh_data cube(std::vector<int> sides = {0, 1, 2, 3, 4, 5}) {
    mesh_data m;
    m.vertices = {{0, 0, 1}, {1, 0, 1}, {1, 0, 0}, {0, 0, 0},
                  {0, 1, 1}, {1, 1, 1}, {1, 1, 0}, {0, 1, 0}};
    static const std::uint32_t corners[12][3] = {
        {0, 1, 5}, {0, 5, 4}, {1, 2, 6}, {1, 6, 5}, {2, 3, 7}, {2, 7, 6},
        {3, 0, 4}, {3, 4, 7}, {4, 5, 6}, {4, 6, 7}, {0, 3, 2}, {0, 2, 1},
    };
    for (int s : sides)
        for (int k = 0; k < 2; ++k) {
            const std::uint32_t* c = corners[2 * s + k];
            m.faces.emplace_back(c[0], c[1], c[2]);
        }
    return m;
}

/// A closed UV sphere of the given radius around the origin: two poles and stacks − 1 rings of
/// `slices` vertices, 2 · slices · (stacks − 1) outward-facing triangles.
inline mesh_data sphere(std::uint32_t slices, std::uint32_t stacks, double radius = 1.0) {
    mesh_data m;
    m.vertices.emplace_back(0.0, radius, 0.0);
    for (std::uint32_t r = 1; r < stacks; ++r) {
        const double theta = 3.141592653589793 * r / stacks;
        for (std::uint32_t s = 0; s < slices; ++s) {
            const double phi = 2.0 * 3.141592653589793 * s / slices;
            m.vertices.emplace_back(radius * std::sin(theta) * std::sin(phi),
                                    radius * std::cos(theta),
                                    radius * std::sin(theta) * std::cos(phi));
        }
    }
    const auto south = static_cast<std::uint32_t>(m.vertices.size());
    m.vertices.emplace_back(0.0, -radius, 0.0);
    const auto ring = [slices](std::uint32_t r, std::uint32_t s) {
        return 1 + (r - 1) * slices + s % slices;
    };
    for (std::uint32_t s = 0; s < slices; ++s) m.faces.emplace_back(0, ring(1, s), ring(1, s + 1));
    for (std::uint32_t r = 1; r + 1 < stacks; ++r)
        for (std::uint32_t s = 0; s < slices; ++s) {
            m.faces.emplace_back(ring(r, s), ring(r + 1, s), ring(r + 1, s + 1));
            m.faces.emplace_back(ring(r, s), ring(r + 1, s + 1), ring(r, s + 1));
        }
    for (std::uint32_t s = 0; s < slices; ++s)
        m.faces.emplace_back(south, ring(stacks - 1, s + 1), ring(stacks - 1, s));
    return m;
}

/// A scene object whose mesh is the given free mesh (normals and half-edges, no styles).
class mesh_object : public primitives::basic_object {
public:
    explicit mesh_object(mesh_data m) : m_data(std::move(m)) {}

protected:
    void update_mesh(indexedfaceset& target) const override { fill(target, m_data); }

private:
    mesh_data m_data;
};

}  // namespace shadow_test
