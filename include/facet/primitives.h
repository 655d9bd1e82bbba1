// The primitive scene objects, by family.
//
// Every primitive is a primitives::basic_object: it keeps its own parameters, marks its mesh
// dirty whenever a parameter setter is called (also with the current value), builds its mesh
// in object space through the matching indexedfaceset::create_mesh overload, and reports an
// axis-aligned bounding box in object space. No setter validates: zero or negative dimensions
// are stored as given and give degenerate or inside-out meshes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/ifs.h"
#include "facet/objects.h"

namespace primitives {

// ---- solids ---------------------------------------------------------------------------------
//
// The solids stand on the plane y = 0 with y as their height axis. A box occupies
// [0, width] × [0, height] × [0, depth]: it is placed by its corner, not its centre.

/// A rectangular block of width (x) × height (y) × depth (z), meshed as 12 triangles with
/// sharp edges and no silhouette marking.
class FACET_API box : public basic_object {
public:
    /// 1 × 1 × 1.
    box();
    box(double w, double h, double d);

    double get_width() const { return m_width; }
    double get_height() const { return m_height; }
    double get_depth() const { return m_depth; }
    /// (width, height, depth).
    vector3d get_size() const { return vector3d(m_width, m_height, m_depth); }

    /// Each stores the value and marks the object dirty.
    void set_width(double w);
    void set_height(double h);
    void set_depth(double d);
    /// Width, height and depth from x, y and z; marks the object dirty.
    void set_size(const vector3d& size);

    /// Centre (width/2, height/2, depth/2), extents (width, height, depth).
    boundingbox get_boundingbox() const override;
    /// A new box (caller owns it), copied as by the base copy constructor plus the size.
    box* clone() const override;
    /// Calls the visitor's box operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "box".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    double m_width = 1.0;
    double m_height = 1.0;
    double m_depth = 1.0;
};

/// An upright cylinder of the given height and radius, meshed with a configurable number of
/// segments around its axis and smoothed at the smoothing threshold angle.
class FACET_API cylinder : public basic_object {
public:
    /// Height 1, radius 0.5, 6 divisions.
    cylinder();
    /// 6 divisions.
    cylinder(double height, double radius);
    cylinder(double height, double radius, std::uint32_t divisions);

    double get_height() const { return m_height; }
    double get_radius() const { return m_radius; }
    /// Each stores the value and marks the object dirty.
    void set_height(double h);
    void set_radius(double r);

    /// The number of segments around the axis, as a whole number held in a double.
    double get_number_of_divisions() const { return m_number_of_divisions; }
    /// Stores `divisions` truncated toward zero (7.9 gives 7) and marks the object dirty.
    /// Values that do not fit the unsigned 32-bit count are clamped: negative values and NaN
    /// give 0, values of 2^32 − 1 and above (+infinity included) give 2^32 − 1. The mesh needs
    /// at least one division: with 0, get_mesh fails "index < m_size"; with more than
    /// 2^30 − 1 it fails "n <= max_cylinder_divisions".
    void set_number_of_divisions(double divisions);

    /// Centre (radius, height/2, radius), extents (2 radius, height, 2 radius): the box of a
    /// cylinder placed by a corner. The mesh itself is built around the y axis (x and z in
    /// [−radius, radius]); hosts that need the mesh's extent use indexedfaceset::get_bounds.
    boundingbox get_boundingbox() const override;
    /// A new cylinder (caller owns it): base copy plus height, radius and divisions.
    cylinder* clone() const override;
    /// Calls the visitor's cylinder operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "cylinder".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    double m_height = 1.0;
    double m_radius = 0.5;
    std::uint32_t m_number_of_divisions = 6;
};

/// An upright cone with its base of the given radius on y = 0 and its apex at the given
/// height, always meshed with 12 segments and smoothed at the smoothing threshold angle.
class FACET_API cone : public basic_object {
public:
    /// Height 1, radius 0.5.
    cone();
    cone(double height, double radius);

    double get_height() const { return m_height; }
    double get_radius() const { return m_radius; }
    /// Each stores the value and marks the object dirty.
    void set_height(double h);
    void set_radius(double r);

    /// As for the cylinder: centre (radius, height/2, radius), extents (2 radius, height,
    /// 2 radius), while the mesh is built around the y axis.
    boundingbox get_boundingbox() const override;
    /// A new cone (caller owns it): base copy plus height and radius.
    cone* clone() const override;
    /// Calls the visitor's cone operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "cone".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    double m_height = 1.0;
    double m_radius = 0.5;
};

// ---- composites, free meshes and extrusions -------------------------------------------------
//
// Free meshes and custom objects carry caller-supplied triangles; extruded polygons and path
// extrusions sweep an outline and are meshed as closed solids (every edge shared by two faces,
// normals pointing out of the enclosed volume). All setters mark the object dirty.

/// A free triangle mesh: vertex positions and triangles of three vertex indices each, drawn
/// with the object's brush and pen (one style) and smoothed at the smoothing threshold angle.
///
/// Indices are not checked when added (vertices may follow their triangles); a triangle index
/// at or beyond the vertex count when the mesh is built fails "index < m_size" in get_mesh.
class FACET_API mesh : public basic_object {
public:
    /// Three vertex indices in winding order (counter-clockwise seen from the front).
    struct triangle {
        std::uint32_t vertex[3] = {0, 0, 0};

        triangle() = default;
        triangle(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2) : vertex{v0, v1, v2} {}
        bool operator==(const triangle& o) const {
            return vertex[0] == o.vertex[0] && vertex[1] == o.vertex[1] && vertex[2] == o.vertex[2];
        }
        bool operator!=(const triangle& o) const { return !(*this == o); }
    };
    using vertex_iterator = std::vector<vector3d>::const_iterator;
    using triangle_iterator = std::vector<triangle>::const_iterator;

    /// No vertices, no triangles.
    mesh();

    /// Appends a vertex and returns its index.
    std::uint32_t add_vertex(const vector3d& p);
    /// Appends the triangle (v0, v1, v2).
    void add_triangle(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2);
    void add_triangle(const triangle& t);
    /// Appends the quad v0 → v1 → v2 → v3 as the two triangles (v0, v1, v2) and (v0, v2, v3).
    void add_quad(std::uint32_t v0, std::uint32_t v1, std::uint32_t v2, std::uint32_t v3);
    /// Removes all vertices and triangles.
    void clear();

    /// The vertex sequence, in index order.
    std::uint32_t vertices_size() const { return static_cast<std::uint32_t>(m_vertices.size()); }
    vertex_iterator vertices_begin() const { return m_vertices.begin(); }
    vertex_iterator vertices_end() const { return m_vertices.end(); }
    /// The triangle sequence, in the order added.
    std::uint32_t triangles_size() const { return static_cast<std::uint32_t>(m_triangles.size()); }
    triangle_iterator triangles_begin() const { return m_triangles.begin(); }
    triangle_iterator triangles_end() const { return m_triangles.end(); }

    /// Checked access ("index < m_vertices.size()", "index < m_triangles.size()").
    const vector3d& get_vertex(std::uint32_t index) const {
        FACET_CHECK(index < m_vertices.size());
        return m_vertices[index];
    }
    const triangle& get_triangle(std::uint32_t index) const {
        FACET_CHECK(index < m_triangles.size());
        return m_triangles[index];
    }
    /// Whole sequences (the scene-file fields "vertices" and "triangles").
    const std::vector<vector3d>& get_vertices() const { return m_vertices; }
    void set_vertices(std::vector<vector3d> vertices);
    const std::vector<triangle>& get_triangles() const { return m_triangles; }
    void set_triangles(std::vector<triangle> triangles);

    /// True when every triangle index is below vertices_size().
    bool has_valid_indices() const;

    /// The axis-aligned box of all vertices (used or not); an empty box without vertices.
    boundingbox get_boundingbox() const override;
    /// A new mesh (caller owns it): base copy plus vertices and triangles.
    mesh* clone() const override;
    /// Calls the visitor's mesh operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "mesh".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    std::vector<vector3d> m_vertices;
    std::vector<triangle> m_triangles;
};

/// A composite object drawn from a triangle mesh with several named styles.
///
/// The geometry comes from the global mesh map when the mesh id is not empty (an id that names
/// no registered mesh draws nothing new: the object keeps its earlier geometry), or from the
/// object's own inline mesh when the id is empty. add_primitive builds up the inline mesh from
/// other primitives, each part with its own style.
///
/// Styles: by default the object shows the styles of its source mesh (the registered mesh, or
/// the inline mesh). set_style overrides single entries; an override wins over the mesh's style
/// of the same index and stays when the source mesh changes, until reset_styles. Each face is
/// drawn with the brush and pen of its style, or with the object's own brush and pen when its
/// style index is negative or beyond the style list.
///
/// A custom does not notice changes to a registered mesh: mark it dirty after changing the map.
class FACET_API custom : public basic_object {
public:
    /// Empty mesh id, empty inline mesh, no style overrides.
    custom();
    /// Draws the registered mesh `mesh_id`.
    explicit custom(const std::string& mesh_id);

    /// The registered mesh to draw; empty to draw the inline mesh.
    const std::string& get_mesh_id() const { return m_mesh_id; }
    void set_mesh_id(const std::string& id);

    /// The object's own mesh, drawn while the mesh id is empty.
    const graphics::custom_mesh& get_inline_mesh() const { return m_inline; }
    /// Replaces the inline mesh (pass it with std::move to avoid a copy).
    void set_inline_mesh(graphics::custom_mesh m);

    /// The mesh the object draws: the inline mesh for an empty id, the registered mesh of that
    /// name, or null when the id names no registered mesh. The pointer is owned elsewhere.
    const graphics::custom_mesh* get_source_mesh() const;

    /// The number of styles: that of the source mesh, or more when an override lies beyond it
    /// (the gap is filled with default styles).
    std::uint32_t num_styles() const;
    /// Style `index`: its override, else the source mesh's, else a default style. Fails
    /// "index < num_styles()" beyond the list.
    graphics::style get_style(std::uint32_t index) const;
    /// All num_styles() styles, in index order.
    std::vector<graphics::style> get_styles() const;
    /// The largest style index a face can carry (faces hold signed 32-bit style indices).
    static constexpr std::uint32_t max_style_index = 2147483647u;
    /// Overrides style `index` with `s`; the list grows to reach it. An index above
    /// max_style_index fails "index <= max_style_index".
    void set_style(std::uint32_t index, const graphics::style& s);
    /// Whether style `index` is overridden by set_style.
    bool has_style_override(std::uint32_t index) const;
    /// Drops every override: the object shows its source mesh's styles again.
    void reset_styles();

    /// Appends the mesh of `part` to the inline mesh, each vertex placed by the part's own
    /// position and orientation (its parent is not taken into account; lines of the part's mesh
    /// are not carried over), and returns the style index its faces take: a new style appended
    /// to the inline mesh, named after the part and holding its material reference, brush, pen
    /// and texture settings. A part whose mesh has several styles (a custom) brings all of them,
    /// appended in order with its faces' indices moved along, plus one style from the part's
    /// own appearance when it has faces without a valid style; the first new index is returned.
    /// The part's mesh is built afresh (fill_mesh, its cache is untouched); if that throws, this
    /// object is left as it was.
    std::int32_t add_primitive(const basic_object& part);
    /// As above, but the faces take `style_index` and no style is added.
    void add_primitive(const basic_object& part, std::int32_t style_index);
    /// Empties the inline mesh (vertices, faces, styles; its name stays) and drops every style
    /// override. The mesh id stays.
    void clear();

    /// The axis-aligned box of the source mesh's vertices; an empty box when there is none.
    boundingbox get_boundingbox() const override;
    /// A new custom (caller owns it): base copy plus mesh id, inline mesh and overrides.
    custom* clone() const override;
    /// Calls the visitor's custom operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "custom".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    void append_part(const indexedfaceset& part_mesh, const basic_object& part,
                     const std::vector<std::int32_t>& style_of_face);

    std::string m_mesh_id;
    graphics::custom_mesh m_inline;
    std::map<std::uint32_t, graphics::style> m_style_overrides;
};

/// A flat outline extruded into a solid: the near outline is the given points, the far outline
/// is each point scaled component-wise about the object's origin by the extrusion scaling and
/// moved by the extrusion vector: far(p) = (p.x·s.x, p.y·s.y, p.z·s.z) + e.
///
/// The outline is closed implicitly, may wind either way and may lie in any plane (its plane is
/// taken from its Newell normal); the extrusion may point to either side of it and need not be
/// square to it. The mesh is closed with outward normals:
/// - vertices: the near outline, then the far outline (m points each, m the points kept: points
///   equal to their predecessor and straight or doubling-back corners are dropped as the
///   triangulator drops them, so that caps and sides share every vertex);
/// - faces: the near cap (m − 2 triangles, by `triangulate`), the far cap, then two triangles
///   per side, in outline order.
/// It is smoothed at the smoothing threshold angle: with the default 80 degrees the sides of a
/// round outline shade smoothly while borders where a cap meets the sides at more than the
/// threshold (always for a straight extrusion square to the outline) stay sharp.
///
/// Bad input: an outline left with fewer than 3 points gives an empty mesh; an outline that
/// cannot be triangulated (self-intersecting) makes get_mesh throw std::runtime_error
/// ("Triangulation error: bad polygon") with the cached mesh untouched and the object still
/// dirty. A zero extrusion or a scaling that collapses the far outline gives degenerate faces.
class FACET_API extruded_polygon : public basic_object {
public:
    /// No points, extrusion (0, 1, 0), extrusion scaling (1, 1, 1).
    extruded_polygon();

    /// Appends a point to the outline.
    void add_point(const vector3d& p);
    /// Removes all points.
    void clear();
    std::size_t size() const { return m_points.size(); }
    bool empty() const { return m_points.empty(); }
    /// Point i; marks the object dirty (the caller may write through the reference). An index
    /// not below size() throws std::out_of_range.
    vector3d& operator[](std::size_t i);
    /// Point i without marking dirty; std::out_of_range beyond size().
    const vector3d& operator[](std::size_t i) const;
    /// The whole outline (the scene-file point lines).
    const std::vector<vector3d>& get_points() const { return m_points; }
    void set_points(std::vector<vector3d> points);

    /// The vector from the near to the far outline (the first scene-file "offset").
    const vector3d& get_extrusion() const { return m_extrusion; }
    void set_extrusion(const vector3d& e);
    /// The component-wise scaling of the far outline (the second scene-file "offset").
    const vector3d& get_extrusion_scaling() const { return m_extrusion_scaling; }
    void set_extrusion_scaling(const vector3d& s);
    /// The far counterpart of p: (p.x·s.x, p.y·s.y, p.z·s.z) + e.
    vector3d far_point(const vector3d& p) const;

    /// The axis-aligned box of the near and far outline points; an empty box without points.
    boundingbox get_boundingbox() const override;
    /// A new extruded polygon (caller owns it): base copy plus outline, extrusion and scaling.
    extruded_polygon* clone() const override;
    /// Calls the visitor's extruded-polygon operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "extruded_polygon".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    std::vector<vector3d> m_points;
    vector3d m_extrusion{0.0, 1.0, 0.0};
    vector3d m_extrusion_scaling{1.0, 1.0, 1.0};
};

/// A profile outline swept along a path of points, with mitred joints.
///
/// The profile lies in its own x–y plane (z is ignored), closed implicitly, winding either way.
/// It is carried along the path by a frame (side, up, tangent): at the first point the tangent
/// is the first segment's direction, up is (0, 1, 0) made square to it ((0, 0, −1) when the
/// path starts vertically), side = up × tangent; the profile's x runs along side and y along
/// up, its origin on the path. A path along +z thus shows the profile as it is given. From
/// segment to segment the frame turns by the smallest rotation that takes one direction to the
/// next, so it never twists along straight runs. At an inner point the ring of profile points
/// lies in the mitre plane (square to the sum of the two directions) and is shared by both
/// segments; there is no mitre limit, so sharp turns give long mitres. The end caps are square
/// to the first and last segments.
///
/// Path points closer than 1e-12 to the previous one are skipped. The mesh is closed with
/// outward normals: vertices ring by ring (m profile points kept each, as for
/// extruded_polygon), faces the start cap, the end cap, then two triangles per profile edge
/// segment by segment. Smoothed at the smoothing threshold angle: sides of a round profile and
/// gentle bends shade smoothly, caps and bends sharper than the threshold stay sharp.
///
/// Bad input: fewer than 3 kept profile points or fewer than 2 distinct path points give an
/// empty mesh; a profile that cannot be triangulated makes get_mesh throw std::runtime_error
/// ("Triangulation error: bad polygon"), and a path that turns straight back on itself throws
/// std::runtime_error("Path extrusion error: path turns back on itself"); either way the cached
/// mesh is untouched and the object stays dirty.
class FACET_API path_extrusion : public basic_object {
public:
    /// No profile, no path.
    path_extrusion();

    /// The profile outline (the scene-file list "polygon_verts").
    const std::vector<vector3d>& get_profile() const { return m_profile; }
    void set_profile(std::vector<vector3d> profile);
    void add_profile_point(const vector3d& p);
    /// The path (the scene-file list "path_verts").
    const std::vector<vector3d>& get_path() const { return m_path; }
    void set_path(std::vector<vector3d> path);
    void add_path_point(const vector3d& p);
    /// Removes the profile and the path.
    void clear();

    /// The axis-aligned box of every profile point placed along the path as the mesh places
    /// it; for a path that turns back on itself, the box of the path points; an empty box when
    /// the profile is empty or the path has fewer than 2 distinct points.
    boundingbox get_boundingbox() const override;
    /// A new path extrusion (caller owns it): base copy plus profile and path.
    path_extrusion* clone() const override;
    /// Calls the visitor's path-extrusion operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "path_extrusion".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    std::vector<vector3d> m_profile;
    std::vector<vector3d> m_path;
};

}  // namespace primitives
