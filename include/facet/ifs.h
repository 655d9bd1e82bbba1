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
#include <memory>
#include <stdexcept>
#include <string>

#include "facet/appearance.h"
#include "facet/carray.h"
#include "facet/check.h"
#include "facet/export.h"
#include "facet/geometry.h"

class camera;
class projector;

namespace primitives {
class basic_object;
class box;
class cylinder;
class cone;
class quad;
class polygon;
class line;
class polyline;
class arrow;
class crosshair;
class custom;
class mesh;
class extruded_polygon;
class path_extrusion;
}  // namespace primitives

namespace facet::detail {
struct edge_table;
}  // namespace facet::detail

/// A 2×3 matrix of doubles mapping an object-space position p to texture coordinates:
/// u = row 0 · p, v = row 1 · p (element access m(row, column); no translation column).
using matrix2x3 = matrix<double, 2, 3>;

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

/// The most faces one object's mesh may hold. A face costs about 564 bytes of face set (the
/// face with its three half-edges, corner normals, tangents, bitangents and texture coordinates)
/// and about 700 bytes at the peak of building, so the default of 4,000,000 faces allows meshes
/// of about 2.2 GiB that take up to about 2.7 GiB while they are built. Every builder whose size
/// follows from the object's counts (free meshes, custom objects, polygons, extruded polygons,
/// path extrusions, cylinders) checks the faces it is about to make against this limit before
/// it allocates anything and throws mesh_too_large when they exceed it. A scene file of N bytes
/// thus never needs more than O(N) memory except up to this limit. Process-wide; set it before
/// building meshes, from one thread.
constexpr std::uint64_t default_mesh_face_limit = 4000000;

/// Sets the face limit of one object's mesh (see default_mesh_face_limit); 0 allows no faces.
FACET_API void set_mesh_face_limit(std::uint64_t faces);
/// The current face limit of one object's mesh.
FACET_API std::uint64_t get_mesh_face_limit();

/// The default of set_mesh_buffer_limit: 2 GiB, about the arrays of two face sets of a
/// 1000 × 1000 grid (2,000,000 faces).
constexpr std::uint64_t default_mesh_buffer_limit = std::uint64_t{2} << 30;

/// Face sets reuse the storage of their large arrays (positions, faces, half-edges, corner
/// normals, tangents and bitangents, texture coordinates, and the builders' scratch tables;
/// arrays of 256 KiB or more): a face set that is destroyed, or an array resized by a builder,
/// hands its storage to a process-wide pool, and the builders take an array of exactly the size
/// they need from it instead of fresh memory, which the kernel would fault in and clear page by
/// page on its first write. The pool holds at most `bytes` bytes, freeing its oldest arrays
/// first; 0 frees everything it holds and turns it off. Thread-safe. The memory of destroyed
/// face sets thus stays with the process up to this limit.
FACET_API void set_mesh_buffer_limit(std::uint64_t bytes);
/// The current limit of the pool of mesh buffers.
FACET_API std::uint64_t get_mesh_buffer_limit();
/// The bytes the pool of mesh buffers holds right now.
FACET_API std::uint64_t get_mesh_buffer_bytes();

/// Thrown by a mesh builder for a mesh that would hold more faces than get_mesh_face_limit()
/// allows; nothing was allocated and the face set is unchanged. what() names the object and the
/// size: "mesh of 'pipe' would hold 2000000 faces, above the limit of 1000000".
class FACET_API mesh_too_large : public std::length_error {
public:
    mesh_too_large(const std::string& object_name, std::uint64_t faces, std::uint64_t limit);
    ~mesh_too_large() override;
    /// The faces the mesh would have held (an upper bound for path extrusions).
    std::uint64_t faces() const noexcept { return m_faces; }
    std::uint64_t limit() const noexcept { return m_limit; }

private:
    std::uint64_t m_faces;
    std::uint64_t m_limit;
};

/// A triangle mesh with connectivity, shading data, line segments and styles.
///
/// Not copyable: builders fill a local face set and exchange it into the target with swap.
///
/// Memory for shadow volumes: the first build_shadow_volume or shadow_volume::rebuild_mesh on a
/// face set builds a side table of its edges (32 bytes per edge with a twin, and per face a copy
/// of its normal and 32 bytes of its corner, normal and extent in single precision: about 104
/// bytes per triangle of a closed mesh, some 18% on top of the face set) that every later
/// volume, for any light, reuses. The table is dropped whenever the face set may change: by
/// every non-const vertices(), faces() and edges(), by swap, and by everything that recomputes
/// the face normals or the half-edges (compute_normals, construct_halfedge_data, apply_transform
/// and the mesh builders). Each thread that builds volumes also keeps a scratch byte per
/// half-edge and per face of the largest face set it walked.
class FACET_API indexedfaceset {
public:
    /// Empty arrays; backface culling on, silhouette edges on, every other flag off, texture and
    /// normal-map ids 0, texture scale (1, 1), visible-edge threshold 65 degrees, texture mode
    /// modulate.
    indexedfaceset() = default;
    /// Hands the storage of the large arrays to the pool of mesh buffers (see
    /// set_mesh_buffer_limit).
    ~indexedfaceset();
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
    carray<vector3d>& vertices() {
        drop_edge_table();
        return m_vertices;
    }
    const carray<vector3d>& vertices() const { return m_vertices; }
    carray<texcoord>& texcoords() { return m_texcoords; }
    const carray<texcoord>& texcoords() const { return m_texcoords; }
    carray<vector3d>& normals() { return m_normals; }
    const carray<vector3d>& normals() const { return m_normals; }
    carray<vector3d>& tangents() { return m_tangents; }
    const carray<vector3d>& tangents() const { return m_tangents; }
    carray<vector3d>& bitangents() { return m_bitangents; }
    const carray<vector3d>& bitangents() const { return m_bitangents; }
    carray<face>& faces() {
        drop_edge_table();
        return m_faces;
    }
    const carray<face>& faces() const { return m_faces; }
    carray<halfedge>& edges() {
        drop_edge_table();
        return m_edges;
    }
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

    // ---- connectivity and outline marks ----

    /// Builds the half-edges: three per face (half-edge 3i + k leaves corner k of face i), each
    /// linked to its face and to the next and previous half-edge of that face, and pairs them
    /// as twins by vertex index (positions are not compared). Twins are searched vertex by
    /// vertex in index order: a half-edge u → v pairs with the first half-edge v → u ending at
    /// u (in face order) if that one is still unpaired. So an edge of two consistently wound
    /// faces is paired; an edge whose faces run the same way is not; on an edge shared by three
    /// or more faces only the first pair in face order is linked and the rest stay open. The
    /// draw marks are cleared. A vertex index beyond the vertices fails "index < m_size".
    /// Afterwards the face and edge arrays must not be resized.
    void construct_halfedge_data();

    /// Marks the outline edges that do not depend on the view: an edge whose two faces meet at
    /// `angle` degrees or more (dot of the face normals <= cos(angle)) is drawn on both half-
    /// edges, a smoother edge is cleared on both, and every open half-edge is drawn. Needs
    /// construct_halfedge_data.
    void determine_sharp_edges(double angle);

    /// Marks the outline edges for a view: creases as in determine_sharp_edges (`angle` in
    /// degrees), plus silhouette edges, where the two faces do not lie clearly on the same side
    /// of the view direction (a tolerance of 0.017453292519943295 on the dot products of the face
    /// normals with proj.get_viewvector(start vertex, cam), so a grazing face counts as a
    /// silhouette). Other paired edges are cleared; open half-edges are drawn. Positions are
    /// passed to the projector as they are stored, so `cam` must be given in the face set's own
    /// space. Does nothing at all on a box's face set, whose outline is its sharp edges. Needs
    /// construct_halfedge_data.
    void determine_visible_edges(const camera& cam, const projector& proj, double angle);

    // ---- texture coordinates and tangent frames ----

    /// Box-projected texture coordinates for every face whose style index names a style:
    /// resizes the texture coordinates, tangents and bitangents to three per face (all zero),
    /// then per face projects its corners along the dominant axis of its normal, scaled by its
    /// style's texture scale (rotated by a quarter turn when texture_rotated() is set). Faces
    /// without a valid style index keep their texture-coordinate indices, and the coordinates
    /// in their slots stay (0, 0).
    void gen_texcoords_box();

    /// Texture coordinates of face `face_index` from the matrix of its normal's dominant axis
    /// (largest absolute component; on a tie x before y before z): rotated[axis] when
    /// texture_rotated() is set, else plain[axis]. Writes coordinates 3i, 3i + 1, 3i + 2 (as
    /// floats) and points the face's texture-coordinate indices at them. An index out of range
    /// (face, or texture coordinates not sized to three per face) fails "index < m_size".
    void gen_texcoords_for_face(const matrix2x3 (&plain)[3], const matrix2x3 (&rotated)[3],
                                std::uint32_t face_index);

    /// Flat tangent frames: per face, ComputeTangentBasis of its positions and texture
    /// coordinates, stored in the face and in its three corner tangents and bitangents (zero
    /// vectors where the texture coordinates are degenerate). A texture-coordinate index beyond
    /// the texture coordinates (for example none were generated) fails "index < m_size".
    void compute_tangent_space();

    /// Smooth corner normals: each corner averages the distinct face normals around its vertex
    /// (identical normals count once) that lie within `angle` degrees of its own face's normal
    /// (dot strictly greater than cos(angle)), normalised; a corner whose normal turned by at
    /// least 0.1 degree has its tangent and bitangent turned with it. Faces, face records,
    /// vertices and connectivity are unchanged; only the corner normals, tangents and
    /// bitangents are rewritten. Needs construct_halfedge_data (the half-edges' face pointers
    /// are read), texture coordinates (one is read per corner; missing ones fail
    /// "index < m_size") and compute_tangent_space.
    ///
    /// Cost: each corner sums the distinct normals around its vertex, in list order, so a vertex
    /// shared by n faces with d distinct normals costs n · d steps. That is linear for meshes of
    /// bounded vertex degree or flat fans (d = 1), but quadratic by definition at a vertex with
    /// many different normals: the centre of a curved fan of 100,000 triangles takes tens of
    /// seconds (a fan 4 times larger takes about 16 times as long: bench/mesh_road.cpp's fan
    /// rows). Everything else (grouping the half-edges, finding the distinct normals) is linear.
    void smooth_mesh(double angle);

    /// Texture settings from the object: creates the standard style if the face set has none;
    /// with exactly one style, copies texturing, texture id, normal-map id, texture mode and
    /// texture scale into the face set and that style, texture_rotated into the face set and the
    /// texture-generation mode into the style (several styles keep their own settings); then
    /// generates box texture coordinates if the object's texture-generation mode is box, and
    /// always computes the tangent frames (see compute_tangent_space for the failure when no
    /// texture coordinates exist).
    void set_texture_params(const primitives::basic_object& object);

    // ---- shadow volume (begin) ----

    /// Writes into `out` the open shadow volume of this face set for a point light at `light`
    /// (in this face set's coordinates): one quad per silhouette edge, pulled 100000.0 units
    /// away from the light. Needs construct_halfedge_data and compute_normals on this face set;
    /// builds neither.
    ///
    /// Each paired edge is looked at once (from its half-edge whose start vertex index is the
    /// smaller); open edges never count. An edge is a silhouette edge when, with d the unit
    /// direction from the light to the edge's midpoint and a, b the dot products of its two face
    /// normals with d, (a > −e and b < e) or (a < e and b > −e) for e = 0.017453292519943295 (a
    /// face within about a degree of edge-on counts as either side; a NaN makes no silhouette).
    ///
    /// For the k-th silhouette edge, from A = the half-edge's start vertex to B = its twin's,
    /// `out` gets vertices 4k = A, 4k + 1 = B, 4k + 2 = B + 100000.0 · unit(B − light),
    /// 4k + 3 = A + 100000.0 · unit(A − light) (a point at the light stays where it is) and
    /// faces 2k = (4k, 4k + 1, 4k + 2), 2k + 1 = (4k, 4k + 2, 4k + 3), default faces with style
    /// 0; the winding is not turned towards the light. Its styles become one style "std" with
    /// brush and pen of color (50, 50, 50, 50) and backface culling is switched off. `out`'s
    /// other arrays and flags are left as they were: it gets no normals and no half-edges (any
    /// half-edges it had point into its replaced faces, so pass a fresh face set).
    ///
    /// A face set without half-edges leaves `out` untouched. `out` must not be this face set
    /// (checked: "&out != this").
    void build_shadow_volume(vector3d light, indexedfaceset& out) const;

    // ---- shadow volume (end) ----

    // ---- mesh builders (each replaces the vertices, faces, half-edges, normals, texture
    // coordinates and tangent frames; lines are kept, and styles unless there are none) ----

    /// A box of the object's width × height × depth occupying [0, w] × [0, h] × [0, d]: 8
    /// vertices, 12 outward-facing triangles, sharp edges at the object's smoothing threshold.
    /// Silhouette marking is switched off for this face set (determine_visible_edges does
    /// nothing). Not smoothed.
    void create_mesh(const primitives::box& b);

    /// A cylinder around the y axis from y = 0 to the object's height, with n = the object's
    /// division count segments: 2n + 2 vertices (bottom and top centre, then the top ring
    /// starting on +z and running towards +x, then the bottom ring) and 4n faces (top cap,
    /// sides, bottom cap), smoothed at the object's smoothing threshold. Zero divisions fail
    /// "index < m_size"; one gives degenerate faces; more than 2^30 − 1 fail
    /// "n <= max_cylinder_divisions" (the face count would not fit 32 bits).
    void create_mesh(const primitives::cylinder& c);

    /// A cone around the y axis with its base on y = 0 and its apex at the object's height,
    /// always of 12 segments: 14 vertices (ring starting on +z, base centre, apex) and 24 faces
    /// (sides, then base), smoothed at the object's smoothing threshold.
    void create_mesh(const primitives::cone& c);

    // ---- mesh builders of the planar, line and marker primitives ----

    /// The quad's two triangles (p1, p2, p3) and (p1, p3, p4) over its 4 corners, with 6 texture
    /// coordinates taken from the quad's own (one per face corner, scaled by the object's
    /// texture scale, a quarter turn with texture_rotated; box generation never replaces them)
    /// and per-face tangent frames from them; then normals, half-edges, sharp edges, display
    /// flags, brush, pen and style 0 per face, and the texture settings of the standard style.
    /// Writes the face set directly; lines are kept. Not smoothed.
    void create_mesh(const primitives::quad& q);

    /// Triangulates the polygon's outline: its points become the vertices, the outline is
    /// projected onto the coordinate plane facing its normal (x: (z, y), y: (x, z), else (x, y);
    /// the normal is (B − A) × (C − A) for the first point A and the next points B, C at least
    /// 0.1 from A and from each other, else (0, 1, 0)) and cut by triangulate; then the finishing
    /// steps of the solids (normals, half-edges, sharp edges, flags, brush, pen, style 0,
    /// set_texture_params). Writes the face set directly; not smoothed. Fewer than 3 points give
    /// no faces. Throws std::runtime_error("Triangulation error: bad polygon") for an outline
    /// that cannot be cut; the vertices are then already replaced, the faces are the old ones.
    void create_mesh(const primitives::polygon& p);

    /// The line's two end points as vertices and one line record (0, 1) with the object's pen,
    /// built in a local face set and exchanged in by swap, so the face set ends with no texture
    /// coordinates, faces, half-edges or styles. Before the exchange set_texture_params(l) runs
    /// on the previous contents (it may build the standard style there, set the texture
    /// members, generate texture coordinates and compute tangents for the old faces); the
    /// normals, tangents and flags stay as that step leaves them. edges_only is not changed.
    void create_mesh(const primitives::line& l);

    /// With n >= 2 points: the points as vertices and n − 1 line records (i, i + 1) with the
    /// object's pen; with fewer, nothing. Built in a local face set and exchanged in by swap:
    /// vertices, texture coordinates, faces, half-edges, lines and styles are replaced (emptied
    /// for fewer than 2 points); normals, tangents and flags stay, edges_only included.
    void create_mesh(const primitives::polyline& p);

    /// The arrow's 6 vertices (tail, tip, four barb ends) and 5 line records (shaft, then the
    /// barbs from the tip) with the object's pen; see primitives::arrow. Exchanged in by swap like
    /// the polyline: no texture coordinates, faces, half-edges or styles remain; normals,
    /// tangents and flags stay. No texture settings, normals or connectivity.
    void create_mesh(const primitives::arrow& a);

    /// The crosshair's 6 vertices and 3 line records (one per axis) with the object's pen; see
    /// primitives::crosshair. Exchanged in by swap like the arrow.
    void create_mesh(const primitives::crosshair& c);

    // ---- end of the planar, line and marker builders ----

    // ---- builders: composites, free meshes and extrusions ----

    /// The mesh of a custom object, written into this face set directly:
    /// 1. the styles become a copy of the object's style list (custom::get_styles);
    /// 2. the source mesh is the inline mesh for an empty mesh id, else the registered mesh of
    ///    that id; an id that names no registered mesh ends the build here, so the face set
    ///    keeps its earlier geometry with the new styles;
    /// 3. vertices and faces are copied in order, each face keeping its style index unchanged
    ///    and taking the brush and pen of that style, or the object's brush and pen when the
    ///    index is negative or beyond the style list;
    /// 4. normals, half-edges, sharp edges at the smoothing threshold and the visible-edge
    ///    threshold; backface culling and edges-only from the object; set_texture_params (one
    ///    style takes the object's texture settings, several keep their own, none gives "std");
    ///    then the black-and-white flags and texture rotation from the object; smooth_mesh at
    ///    the smoothing threshold.
    /// A face index beyond the vertices fails "index < m_size".
    void create_mesh(const primitives::custom& c);

    /// The mesh of a free mesh, written into this face set directly: its vertices and
    /// triangles in order, the common finishing steps (every face the object's brush and pen
    /// and style 0), then smooth_mesh at the smoothing threshold. Lines and styles of an
    /// earlier build are kept. A triangle index beyond the vertices fails "index < m_size".
    void create_mesh(const primitives::mesh& m);

    /// The closed mesh of an extruded polygon (layout: see primitives::extruded_polygon),
    /// finished as the solids and smoothed at the smoothing threshold. Everything is computed
    /// before this face set is touched: when the outline cannot be triangulated the
    /// triangulator's std::runtime_error leaves the face set as it was.
    void create_mesh(const primitives::extruded_polygon& e);

    /// The closed mesh of a path extrusion (layout: see primitives::path_extrusion), finished
    /// as the solids and smoothed at the smoothing threshold. Failures (profile that cannot be
    /// triangulated, path turning back on itself) throw before this face set is touched.
    void create_mesh(const primitives::path_extrusion& p);

    // ---- end of the composite, free-mesh and extrusion builders ----

private:
    // The common tail of the mesh builders, after vertices and faces are in place:
    // finish_mesh_edges computes the normals, the half-edges and the sharp edges (at the
    // object's smoothing threshold) and stores the object's visible-edge threshold;
    // finish_mesh_appearance copies the object's display flags, gives every face the object's
    // brush and pen and style 0, and applies set_texture_params. finish_mesh runs both.
    void finish_mesh(const primitives::basic_object& object);
    void finish_mesh_edges(const primitives::basic_object& object);
    void finish_mesh_appearance(const primitives::basic_object& object);
    // apply_object_appearance is finish_mesh_appearance up to set_texture_params (display flags;
    // brush, pen and style 0 on every face). apply_texture_settings is set_texture_params up to
    // the texture coordinates (the standard style if there is none; with one style, the texture
    // members of the face set and the style).
    void apply_object_appearance(const primitives::basic_object& object);
    // construct_halfedge_data; with an angle (degrees), followed by determine_sharp_edges at
    // that angle, in the same pass over the half-edges. `corners`, when given and holding the
    // faces' vertex indices packed three per face, is read instead of the face records and
    // holds them again on return.
    void link_halfedges(const double* sharp_angle, carray<std::uint32_t>* corners = nullptr);
    // smooth_mesh; with edges_as_built, for half-edges untouched since construct_halfedge_data
    // (so half-edge e belongs to face e / 3), the face normals are read from the faces directly.
    // `corners` as for link_halfedges, but used up.
    void smooth_corners(double angle, bool edges_as_built,
                        carray<std::uint32_t>* corners = nullptr);
    // apply_object_appearance without touching the faces: the display flags only.
    void apply_display_flags(const primitives::basic_object& object);
    void apply_texture_settings(const primitives::basic_object& object);
    // gen_texcoords_box without touching the tangents and bitangents (set_texture_params
    // computes them next).
    void gen_box_texcoords();
    // Sizes, for a builder that shades each of its `n` faces as it writes it, the per-corner
    // normals and frames (written later by smoothing), the packed face normals, `corners` (the
    // vertex indices packed three per face) and, with box texture coordinates, the texture
    // coordinates: every element is written, none is cleared.
    void size_shaded_arrays(std::uint32_t n, bool box, carray<std::uint32_t>& corners);

    carray<vector3d> m_vertices;
    carray<texcoord> m_texcoords;
    carray<vector3d> m_normals;
    carray<vector3d> m_tangents;
    carray<vector3d> m_bitangents;
    carray<face> m_faces;
    carray<halfedge> m_edges;
    carray<line> m_lines;
    carray<graphics::style> m_styles;
    // The face normals packed in face order, for the passes that stream them: written and used
    // up (handed back to the pool of mesh buffers by smooth_corners(angle, true)) by the
    // builders of free meshes and custom objects; empty otherwise.
    carray<vector3d> m_face_normals;
    // The edge table of the shadow-volume builders (src/shadow/edge_table.h), built on first use
    // and shared with the builds that are running. drop_edge_table must be called by every
    // member that may change a vertex position, a face, a face normal, a half-edge or the arrays
    // holding them.
    friend struct facet::detail::edge_table;
    void drop_edge_table() { m_edge_table.reset(); }
    mutable std::shared_ptr<const facet::detail::edge_table> m_edge_table;
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
