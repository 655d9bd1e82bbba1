// The indexed face set: the mesh every scene object turns itself into.
//
// A face set holds shared vertex positions, triangles (`face`) that index them, three normals,
// tangents and bitangents per face (corner 3i + k belongs to corner k of face i), texture
// coordinates, half-edge connectivity (three half-edges per face, each with a draw mark), stand-
// alone line segments and a table of named styles that faces refer to by index. All arrays are
// checked `carray`s: an index out of range fails "index < m_size".
//
// Half-edges point into the face and edge arrays. Once connectivity is built, those two arrays
// must not be resized; exchanging whole arrays (swap) keeps the pointers valid.
#pragma once

#include <cstdint>

#include "facet/appearance.h"
#include "facet/carray.h"
#include "facet/check.h"
#include "facet/export.h"
#include "facet/geometry.h"

namespace primitives {
class basic_object;
}

/// A texture coordinate (u, v). Default (0, 0).
struct FACET_API texcoord {
    float u = 0.0f;
    float v = 0.0f;

    constexpr texcoord() = default;
    constexpr texcoord(float u_, float v_) : u(u_), v(v_) {}
};

/// A triangle of a face set.
struct FACET_API face {
    /// Vertex indices in winding order: counter-clockwise seen from the side the normal
    /// (p1 − p0) × (p2 − p0) points to.
    std::uint32_t vertex[3] = {0, 0, 0};
    /// Texture-coordinate indices, one per corner.
    std::uint32_t texcoord[3] = {0, 0, 0};
    /// The unit face normal (zero until computed; zero for a degenerate face).
    vector3d normal;
    vector3d tangent;
    vector3d bitangent;
    graphics::brush brush;
    graphics::pen pen;
    /// Index into the face set's styles; −1 means no style.
    std::int32_t style = -1;

    /// All indices 0, style −1.
    face() = default;
    /// The triangle (v0, v1, v2); every other field at its default.
    face(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2) : vertex{v0, v1, v2} {}
};

/// A stand-alone line segment between two vertices, drawn with its own pen. Lines take no part
/// in connectivity.
struct FACET_API line {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
    graphics::pen pen;

    line() = default;
    /// The segment start → end with the default pen.
    line(std::uint32_t start_, std::uint32_t end_) : start(start_), end(end_) {}
    line(std::uint32_t start_, std::uint32_t end_, const graphics::pen& p)
        : start(start_), end(end_), pen(p) {}
};

/// One corner of a face seen as the directed edge leaving that corner.
struct FACET_API halfedge {
    /// Bit 0 of `flags`: the edge is drawn as an outline.
    static constexpr std::uint32_t draw_mark = 1u;

    /// The vertex the half-edge starts at.
    std::uint32_t vertex = 0;
    /// The owning face inside the face array (not owned).
    ::face* face = nullptr;
    /// The following and preceding half-edges of the same face.
    halfedge* next = nullptr;
    halfedge* prev = nullptr;
    /// The opposite half-edge of the neighbouring face; null on an open or non-manifold edge.
    halfedge* m_twinedge = nullptr;
    std::uint32_t flags = 0;

    halfedge() = default;
    /// The half-edge leaving `start_vertex` in face `f`; no links, flags 0.
    halfedge(std::uint32_t start_vertex, ::face* f) : vertex(start_vertex), face(f) {}

    /// Links this half-edge and `twin` as each other's twins. Both must be unlinked: checked as
    /// "twin->m_twinedge == 0" and "m_twinedge == 0".
    void set_twin(halfedge* twin) {
        FACET_CHECK(twin->m_twinedge == 0);
        FACET_CHECK(m_twinedge == 0);
        m_twinedge = twin;
        twin->m_twinedge = this;
    }

    /// Whether the draw mark is set.
    bool drawn() const { return (flags & draw_mark) != 0; }
    /// Sets or clears the draw mark; other bits stay.
    void set_drawn(bool d) { flags = d ? (flags | draw_mark) : (flags & ~draw_mark); }
};

/// A triangle mesh with connectivity, shading data, line segments and styles.
///
/// Not copyable: builders fill a local face set and exchange it into the target with swap.
class FACET_API indexedfaceset {
public:
    /// Empty arrays; backface culling on, silhouette edges on, every other flag off, texture and
    /// normal-map ids 0, texture scale (1, 1), visible-edge threshold 65 degrees, texture mode
    /// modulate.
    indexedfaceset() = default;
    indexedfaceset(const indexedfaceset&) = delete;
    indexedfaceset& operator=(const indexedfaceset&) = delete;

    // ---- counts ----
    std::uint32_t num_vertices() const { return m_vertices.size(); }
    std::uint32_t num_faces() const { return m_faces.size(); }
    /// The number of half-edges (three per face once connectivity is built).
    std::uint32_t num_edges() const { return m_edges.size(); }
    std::uint32_t num_lines() const { return m_lines.size(); }
    std::uint32_t num_texcoords() const { return m_texcoords.size(); }
    std::uint32_t num_styles() const { return m_styles.size(); }

    // ---- checked element access (an index out of range fails "index < m_size") ----
    const vector3d& get_vertex(std::uint32_t i) const { return m_vertices[i]; }
    const face& get_face(std::uint32_t i) const { return m_faces[i]; }
    const halfedge& get_edge(std::uint32_t i) const { return m_edges[i]; }
    const line& get_line(std::uint32_t i) const { return m_lines[i]; }
    const texcoord& get_texcoord(std::uint32_t i) const { return m_texcoords[i]; }
    /// Per-corner normal, tangent and bitangent: corner k of face i is index 3i + k.
    const vector3d& get_normal(std::uint32_t i) const { return m_normals[i]; }
    const vector3d& get_tangent(std::uint32_t i) const { return m_tangents[i]; }
    const vector3d& get_bitangent(std::uint32_t i) const { return m_bitangents[i]; }
    const graphics::style& get_style(std::uint32_t i) const { return m_styles[i]; }

    // ---- whole arrays, for builders and bulk readers ----
    // Resizing the face or edge array invalidates the half-edges' pointers.
    carray<vector3d>& vertices() { return m_vertices; }
    const carray<vector3d>& vertices() const { return m_vertices; }
    carray<texcoord>& texcoords() { return m_texcoords; }
    const carray<texcoord>& texcoords() const { return m_texcoords; }
    carray<vector3d>& normals() { return m_normals; }
    const carray<vector3d>& normals() const { return m_normals; }
    carray<vector3d>& tangents() { return m_tangents; }
    const carray<vector3d>& tangents() const { return m_tangents; }
    carray<vector3d>& bitangents() { return m_bitangents; }
    const carray<vector3d>& bitangents() const { return m_bitangents; }
    carray<face>& faces() { return m_faces; }
    const carray<face>& faces() const { return m_faces; }
    carray<halfedge>& edges() { return m_edges; }
    const carray<halfedge>& edges() const { return m_edges; }
    carray<line>& lines() { return m_lines; }
    const carray<line>& lines() const { return m_lines; }
    carray<graphics::style>& styles() { return m_styles; }
    const carray<graphics::style>& styles() const { return m_styles; }

    // ---- flags and parameters (plain stores and loads) ----
    void set_backface_culling(bool b) { m_backface_culling = b; }
    bool get_backface_culling() const { return m_backface_culling; }
    void set_edges_only(bool b) { m_edges_only = b; }
    bool edges_only() const { return m_edges_only; }
    void set_marked(bool b) { m_marked = b; }
    bool is_marked() const { return m_marked; }
    void set_textured(bool b) { m_textured = b; }
    bool get_textured() const { return m_textured; }
    void set_show_texture_in_bw_mode(bool b) { m_show_texture_in_bw_mode = b; }
    bool show_texture_in_bw_mode() const { return m_show_texture_in_bw_mode; }
    void set_black_in_bw_mode(bool b) { m_black_in_bw_mode = b; }
    bool show_black_in_bw_mode() const { return m_black_in_bw_mode; }
    void set_texture_rotated(bool b) { m_texture_rotated = b; }
    bool texture_rotated() const { return m_texture_rotated; }
    void set_texture_mode(graphics::texture_mode mode) { m_texture_mode = mode; }
    graphics::texture_mode get_texture_mode() const { return m_texture_mode; }
    /// Texture id of the host's texture manager; 0 means none.
    void set_texture_id(std::uint32_t id) { m_texture_id = id; }
    std::uint32_t get_texture_id() const { return m_texture_id; }
    void set_normal_map_id(std::uint32_t id) { m_normal_map_id = id; }
    std::uint32_t get_normal_map_id() const { return m_normal_map_id; }
    /// Degrees; stored for the host, the edge operations take their angle as an argument.
    void set_visible_edge_treshold(double degrees) { m_visible_edge_treshold = degrees; }
    double get_visible_edge_treshold() const { return m_visible_edge_treshold; }
    /// Scale along the two texture axes.
    void set_texture_scale(double u, double v) { m_texture_scale = vector2d(u, v); }
    /// The texture scale (x: u, y: v).
    vector2d get_texture_scale() const { return m_texture_scale; }

    // ---- operations ----

    /// Exchanges exactly six arrays with `other`: vertices, texture coordinates, faces,
    /// half-edges, lines and styles. Normals, tangents, bitangents and all flags and scalars
    /// stay with their face set.
    void swap(indexedfaceset& other) noexcept;

    /// Moves every vertex by the point transform transform_vector(m, p) (with the projective
    /// division) and recomputes the face and corner normals from the moved positions. Half-
    /// edges, texture coordinates, tangents and lines are left as they are; a mirroring matrix
    /// keeps the vertex order, so the normals follow the mirrored winding.
    void apply_transform(const matrix44d& m);

    /// The axis-aligned bounds of all vertices (in object space), obtained through a
    /// primitives::boundingbox (centre = midpoint of the per-axis extremes, extents = maximum −
    /// minimum): min = centre − extents / 2, max = centre + extents / 2. An empty face set gives
    /// (0, 0, 0) for both.
    void get_bounds(vector3d& min, vector3d& max) const;

    /// Casts the ray origin + t · direction (t > 0) against every face in index order and
    /// reports the nearest hit: on a tie the lower face index wins. Returns false when no face is
    /// hit; `t` and `face_index` are then left unchanged.
    bool intersection(const vector3d& origin, const vector3d& direction, double& t,
                      std::uint32_t& face_index) const;

    /// Overwrites style `index` with `s`. An index at or beyond num_styles() is ignored.
    void set_style(std::uint32_t index, graphics::style s);

    /// Replaces the styles by one style "std" made from the object: its material reference,
    /// brush and pen; texture id 0, normal-map id 0, texturing off, other texture settings at
    /// their defaults.
    void build_standard_style(const primitives::basic_object& object);

    /// Flat normals: each face's normal is (p1 − p0) × (p2 − p0) normalised (zero for a
    /// degenerate face) and copied to its three corner normals. Resizes the normals to three
    /// per face.
    void compute_normals();

private:
    carray<vector3d> m_vertices;
    carray<texcoord> m_texcoords;
    carray<vector3d> m_normals;
    carray<vector3d> m_tangents;
    carray<vector3d> m_bitangents;
    carray<face> m_faces;
    carray<halfedge> m_edges;
    carray<line> m_lines;
    carray<graphics::style> m_styles;
    bool m_marked = false;
    bool m_silhouette_edges = true;
    bool m_backface_culling = true;
    bool m_edges_only = false;
    bool m_textured = false;
    bool m_show_texture_in_bw_mode = false;
    bool m_black_in_bw_mode = false;
    bool m_texture_rotated = false;
    std::uint32_t m_texture_id = 0;
    std::uint32_t m_normal_map_id = 0;
    vector2d m_texture_scale{1.0, 1.0};
    double m_visible_edge_treshold = 65.0;
    graphics::texture_mode m_texture_mode = graphics::texture_mode::modulate;
};
