// Named triangle meshes with their own styles, and the process-wide registry that holds them.
//
// A graphics::custom_mesh is plain data: vertex positions, triangles that index them and carry
// a style index each, and a list of named styles. The OBJ importer produces one per model; a
// host registers it by name in the global mesh map, and primitives::custom objects that name
// it draw it. Nothing here validates indices: a face may be added before its vertices, and an
// index that is still out of range when a mesh is built fails "index < m_size" there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "facet/appearance.h"
#include "facet/check.h"
#include "facet/export.h"
#include "facet/geometry.h"

namespace graphics {

/// A triangle of a custom mesh: three vertex indices in winding order (counter-clockwise seen
/// from the side the face normal points to) and a style index.
struct FACET_API custom_mesh_face {
    std::uint32_t vertex[3] = {0, 0, 0};
    /// Index into the style list of the drawing custom object. A negative index, or one at or
    /// beyond that list, draws the face with the object's own brush and pen.
    std::int32_t style = 0;

    /// Indices 0, 0, 0 and style 0.
    custom_mesh_face() = default;
    custom_mesh_face(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2,
                     std::int32_t style_index = 0)
        : vertex{v0, v1, v2}, style(style_index) {}

    bool operator==(const custom_mesh_face& o) const {
        return vertex[0] == o.vertex[0] && vertex[1] == o.vertex[1] && vertex[2] == o.vertex[2] &&
               style == o.style;
    }
    bool operator!=(const custom_mesh_face& o) const { return !(*this == o); }
};

/// A named triangle mesh with its own style list; a value type (copy, move, swap).
///
/// Indexed accessors check their index against the list they read ("index < m_vertices.size()"
/// and alike) and abort on a violation.
class FACET_API custom_mesh {
public:
    /// Empty name, no vertices, faces or styles.
    custom_mesh() = default;
    /// An empty mesh called `name`.
    explicit custom_mesh(const std::string& name) : m_name(name) {}

    /// The name under which the mesh is registered in the mesh map.
    const std::string& get_name() const { return m_name; }
    void set_name(const std::string& name) { m_name = name; }

    // ---- vertices (object-space positions) ----

    /// Appends a vertex and returns its index.
    std::uint32_t add_vertex(const vector3d& p);
    std::uint32_t num_vertices() const { return static_cast<std::uint32_t>(m_vertices.size()); }
    const vector3d& get_vertex(std::uint32_t index) const {
        FACET_CHECK(index < m_vertices.size());
        return m_vertices[index];
    }
    void set_vertex(std::uint32_t index, const vector3d& p) {
        FACET_CHECK(index < m_vertices.size());
        m_vertices[index] = p;
    }
    const std::vector<vector3d>& get_vertices() const { return m_vertices; }
    void set_vertices(std::vector<vector3d> vertices) { m_vertices = std::move(vertices); }

    // ---- faces ----

    /// Appends a face (its indices are not checked) and returns its index.
    std::uint32_t add_face(const custom_mesh_face& f);
    /// Appends the triangle (v0, v1, v2) with the given style index; returns its index.
    std::uint32_t add_face(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2,
                           std::int32_t style_index = 0);
    std::uint32_t num_faces() const { return static_cast<std::uint32_t>(m_faces.size()); }
    const custom_mesh_face& get_face(std::uint32_t index) const {
        FACET_CHECK(index < m_faces.size());
        return m_faces[index];
    }
    void set_face(std::uint32_t index, const custom_mesh_face& f) {
        FACET_CHECK(index < m_faces.size());
        m_faces[index] = f;
    }
    const std::vector<custom_mesh_face>& get_faces() const { return m_faces; }
    void set_faces(std::vector<custom_mesh_face> faces) { m_faces = std::move(faces); }

    // ---- styles ----

    /// Appends the style (name, brush, pen; empty material reference, default texture
    /// settings) and returns its index: the OBJ importer adds one per material.
    std::int32_t add_style(const std::string& name, const graphics::brush& b,
                           const graphics::pen& p);
    /// Appends a copy of `s` and returns its index.
    std::int32_t add_style(const graphics::style& s);
    std::uint32_t num_styles() const { return static_cast<std::uint32_t>(m_styles.size()); }
    const graphics::style& get_style(std::uint32_t index) const {
        FACET_CHECK(index < m_styles.size());
        return m_styles[index];
    }
    void set_style(std::uint32_t index, const graphics::style& s) {
        FACET_CHECK(index < m_styles.size());
        m_styles[index] = s;
    }
    const std::vector<graphics::style>& get_styles() const { return m_styles; }
    void set_styles(std::vector<graphics::style> styles) { m_styles = std::move(styles); }

    // ---- whole mesh ----

    /// True when every face's three indices are below num_vertices() (an empty mesh is valid).
    /// Readers of untrusted data check this before handing a mesh to the library.
    bool has_valid_indices() const;
    /// Removes all vertices, faces and styles; the name stays.
    void clear();
    /// Exchanges name, vertices, faces and styles with `other` in constant time.
    void swap(custom_mesh& other) noexcept;

private:
    std::string m_name;
    std::vector<vector3d> m_vertices;
    std::vector<custom_mesh_face> m_faces;
    std::vector<graphics::style> m_styles;
};

/// a.swap(b).
inline void swap(custom_mesh& a, custom_mesh& b) noexcept { a.swap(b); }

/// A registry of custom meshes by name, owning every mesh it holds.
///
/// A mesh is registered under its name at the time of registration; renaming it afterwards
/// (through find_mesh) does not move it. References and pointers the map hands out stay valid
/// until that mesh is removed or replaced or the map is cleared or destroyed. The map does not
/// know the custom objects that name its meshes: after changing, replacing or removing a
/// registered mesh, mark those objects dirty (set_dirty(true)) so that they rebuild.
class FACET_API mesh_map {
public:
    mesh_map() = default;
    mesh_map(const mesh_map&) = delete;
    mesh_map& operator=(const mesh_map&) = delete;

    /// Takes `mesh` over (pass it with std::move to avoid a copy) and registers it under its
    /// name; a mesh registered earlier under that name is destroyed and replaced. Returns the
    /// registered mesh. An empty name throws std::invalid_argument("mesh_map: a registered mesh
    /// needs a name") and leaves the map as it was.
    custom_mesh& add_mesh(custom_mesh mesh);
    /// As above for a mesh allocated by the caller; the map takes ownership. A null pointer or
    /// an empty name throws std::invalid_argument (the map is unchanged; a non-null mesh is
    /// still destroyed, as ownership passed with the call).
    custom_mesh& add_mesh(std::unique_ptr<custom_mesh> mesh);

    /// The mesh registered under `name`, or null.
    const custom_mesh* find_mesh(const std::string& name) const;
    custom_mesh* find_mesh(const std::string& name);
    bool contains(const std::string& name) const { return find_mesh(name) != nullptr; }

    /// Destroys the mesh registered under `name`; returns false when there is none.
    bool remove_mesh(const std::string& name);
    /// Destroys every registered mesh.
    void clear() { m_meshes.clear(); }

    std::size_t size() const { return m_meshes.size(); }
    bool empty() const { return m_meshes.empty(); }
    /// The registered names in ascending order.
    std::vector<std::string> get_names() const;

private:
    std::map<std::string, std::unique_ptr<custom_mesh>> m_meshes;
};

/// The process-wide mesh map that primitives::custom objects look their mesh ids up in.
/// Created on first use (without locking: call the library from one thread at a time) and
/// destroyed, with every mesh it holds, when the library is unloaded.
FACET_API mesh_map& get_global_mesh_map();

}  // namespace graphics
