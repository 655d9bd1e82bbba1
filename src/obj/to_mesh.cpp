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

[[noreturn]] void throw_bad_corner(const face& f, std::size_t face_index,
                                   std::size_t vertex_count) {
    int c = 0;
    while (static_cast<std::size_t>(f.corners[static_cast<std::size_t>(c)].vertex) < vertex_count)
        ++c;
    const int v = f.corners[static_cast<std::size_t>(c)].vertex;
    throw bad_face(face_index, "corner " + std::to_string(c) + " has vertex index " +
                                   std::to_string(v) + ", outside the " +
                                   std::to_string(vertex_count) + " vertices");
}

/// The number of triangles the faces give; throws bad_face for the first face that cannot be
/// converted.
std::size_t count_triangles(const obj_info& info) {
    const std::size_t vertex_count = info.vertices.size();
    std::size_t triangles = 0;
    for (std::size_t i = 0; i < info.faces.size(); ++i) {
        const face& f = info.faces[i];
        if (f.corner_count != 3 && f.corner_count != 4) {
            throw bad_face(i, std::to_string(f.corner_count) + " corners, 3 or 4 are needed");
        }
        // A negative index becomes a huge unsigned one.
        for (int c = 0; c < f.corner_count; ++c) {
            if (static_cast<std::size_t>(f.corners[static_cast<std::size_t>(c)].vertex) >=
                vertex_count)
                throw_bad_corner(f, i, vertex_count);
        }
        triangles += static_cast<std::size_t>(f.corner_count - 2);
    }
    return triangles;
}

/// Hands the triangles of every face (checked by count_triangles) to `emit` in order, a quad
/// as the fan around its first corner.
template <class Emit>
void for_each_triangle(const obj_info& info, Emit&& emit) {
    for (const face& f : info.faces) {
        const auto v = [&f](std::size_t c) {
            return static_cast<std::uint32_t>(f.corners[c].vertex);
        };
        emit(graphics::custom_mesh_face(v(0), v(1), v(2), f.material));
        if (f.corner_count == 4) emit(graphics::custom_mesh_face(v(0), v(2), v(3), f.material));
    }
}

}  // namespace

void obj2mesh(const obj_info& info, const std::string& name, graphics::custom_mesh& out) {
    // Everything that allocates or throws bad_face comes before `out` changes.
    const std::size_t triangle_count = count_triangles(info);
    const graphics::brush white(graphics::color(255, 255, 255));
    const graphics::pen black(graphics::color(0, 0, 0));
    std::vector<graphics::style> styles;
    styles.reserve(info.materials.size());
    for (const material& m : info.materials) styles.emplace_back(m.name, white, black);

    if (out.get_vertices().capacity() >= info.vertices.size() &&
        out.get_faces().capacity() >= triangle_count) {
        // Refilled in place: a target converted into before keeps its memory, which matters
        // for large meshes, whose fresh memory costs more than filling it.
        out.set_name(name);
        out.clear();
        for (const vector3d& p : info.vertices) out.add_vertex(p);
        for_each_triangle(info, [&](const graphics::custom_mesh_face& t) { out.add_face(t); });
        out.set_styles(std::move(styles));
        return;
    }
    graphics::custom_mesh mesh(name);
    mesh.set_vertices(info.vertices);
    std::vector<graphics::custom_mesh_face> faces;
    faces.reserve(triangle_count);
    for_each_triangle(info, [&](const graphics::custom_mesh_face& t) { faces.push_back(t); });
    mesh.set_faces(std::move(faces));
    mesh.set_styles(std::move(styles));
    out.swap(mesh);
}

}  // namespace obj_import
