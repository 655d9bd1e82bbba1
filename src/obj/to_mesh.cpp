// obj2mesh: an imported record as a named custom mesh with one style per material.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "facet/appearance.h"
#include "facet/custom_mesh.h"
#include "facet/obj_import.h"

namespace obj_import {

bad_face::bad_face(std::size_t face_index, const std::string& message)
    : std::runtime_error("obj2mesh: face " + std::to_string(face_index) + ": " + message),
      m_face_index(face_index) {}

namespace {

/// The vertex index of corner `c` of faces[f], checked against the vertex count.
std::uint32_t checked_vertex(const face& f, std::size_t face_index, int c,
                             std::size_t vertex_count) {
    const int v = f.corners[static_cast<std::size_t>(c)].vertex;
    if (v < 0 || static_cast<std::size_t>(v) >= vertex_count) {
        throw bad_face(face_index, "corner " + std::to_string(c) + " has vertex index " +
                                       std::to_string(v) + ", outside the " +
                                       std::to_string(vertex_count) + " vertices");
    }
    return static_cast<std::uint32_t>(v);
}

}  // namespace

void obj2mesh(const obj_info& info, const std::string& name, graphics::custom_mesh& out) {
    graphics::custom_mesh mesh(name);
    mesh.set_vertices(info.vertices);

    const std::size_t vertex_count = info.vertices.size();
    std::vector<graphics::custom_mesh_face> faces;
    faces.reserve(info.faces.size());
    for (std::size_t i = 0; i < info.faces.size(); ++i) {
        const face& f = info.faces[i];
        if (f.corner_count != 3 && f.corner_count != 4) {
            throw bad_face(i, std::to_string(f.corner_count) + " corners, 3 or 4 are needed");
        }
        std::uint32_t v[4] = {0, 0, 0, 0};
        for (int c = 0; c < f.corner_count; ++c) v[c] = checked_vertex(f, i, c, vertex_count);
        faces.emplace_back(v[0], v[1], v[2], f.material);
        if (f.corner_count == 4) faces.emplace_back(v[0], v[2], v[3], f.material);
    }
    mesh.set_faces(std::move(faces));

    const graphics::brush white(graphics::color(255, 255, 255));
    const graphics::pen black(graphics::color(0, 0, 0));
    for (const material& m : info.materials) mesh.add_style(m.name, white, black);

    out.swap(mesh);
}

}  // namespace obj_import
