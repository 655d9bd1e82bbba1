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

/// Throws bad_face for corner `corner` of faces[face_index], whose vertex index `vertex` lies
/// outside the vertex list; out of line, so that the checking loop stays small.
[[noreturn]] void throw_bad_corner(std::size_t face_index, std::size_t corner, int vertex,
                                   std::size_t vertex_count) {
    throw bad_face(face_index, "corner " + std::to_string(corner) + " has vertex index " +
                                   std::to_string(vertex) + ", outside the " +
                                   std::to_string(vertex_count) + " vertices");
}

/// Hands the triangles of every face to `emit` in order, a quad as the fan around its first
/// corner; throws bad_face at the first face that cannot be converted, before handing out any
/// of its triangles.
template <class Emit>
void for_each_triangle(const obj_info& info, Emit&& emit) {
    const std::size_t vertex_count = info.vertices.size();
    for (std::size_t i = 0; i < info.faces.size(); ++i) {
        const face& f = info.faces[i];
        if (f.corner_count != 3 && f.corner_count != 4) {
            throw bad_face(i, std::to_string(f.corner_count) + " corners, 3 or 4 are needed");
        }
        std::uint32_t v[4] = {0, 0, 0, 0};
        for (std::size_t c = 0; c < static_cast<std::size_t>(f.corner_count); ++c) {
            // A negative index becomes a huge unsigned one.
            v[c] = static_cast<std::uint32_t>(f.corners[c].vertex);
            if (static_cast<std::size_t>(f.corners[c].vertex) >= vertex_count)
                throw_bad_corner(i, c, f.corners[c].vertex, vertex_count);
        }
        emit(graphics::custom_mesh_face(v[0], v[1], v[2], f.material));
        if (f.corner_count == 4) emit(graphics::custom_mesh_face(v[0], v[2], v[3], f.material));
    }
}

}  // namespace

void obj2mesh(const obj_info& info, const std::string& name, graphics::custom_mesh& out) {
    const graphics::brush white(graphics::color(255, 255, 255));
    const graphics::pen black(graphics::color(0, 0, 0));
    std::vector<graphics::style> styles;
    styles.reserve(info.materials.size());
    for (const material& m : info.materials) styles.emplace_back(m.name, white, black);

    if (out.get_vertices().capacity() >= info.vertices.size() &&
        out.get_faces().capacity() >= info.faces.size()) {
        // A target converted into before is refilled in place and keeps its memory: for large
        // meshes, fresh memory costs more than filling it. All faces are checked first, so that
        // a bad one leaves `out` unchanged.
        for_each_triangle(info, [](const graphics::custom_mesh_face&) {});
        out.set_name(name);
        out.clear();
        for (const vector3d& p : info.vertices) out.add_vertex(p);
        for_each_triangle(info, [&out](const graphics::custom_mesh_face& t) { out.add_face(t); });
        out.set_styles(std::move(styles));
        return;
    }
    graphics::custom_mesh mesh(name);
    mesh.set_vertices(info.vertices);
    std::vector<graphics::custom_mesh_face> faces;
    faces.reserve(info.faces.size());
    for_each_triangle(info, [&faces](const graphics::custom_mesh_face& t) { faces.push_back(t); });
    mesh.set_faces(std::move(faces));
    mesh.set_styles(std::move(styles));
    out.swap(mesh);
}

}  // namespace obj_import
