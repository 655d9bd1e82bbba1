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
#include <string>
#include <vector>

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

// ---- planar and line primitives ---------------------------------------------------------------
//
// Shapes given by points in object space. The default constructors make them ignore shadows
// (flat shapes cast no shadow volumes); the line built from two points keeps the base default
// and casts shadows.

/// A four-cornered flat patch with a texture coordinate per corner, meshed as the two
/// triangles (p1, p2, p3) and (p1, p3, p4).
///
/// Mesh (indexedfaceset::create_mesh for a quad): 4 vertices (the corners in order), 2 faces
/// and 6 texture coordinates, one per face corner (corner k of face i at 3i + k). A face corner
/// on quad corner j gets the quad's texture coordinate j, (u, v), scaled by the object's
/// texture scale (su, sv): (su·u, sv·v), or with texture_rotated set the quarter turn
/// (−su·v, sv·u) that the box projection uses. These coordinates are always the quad's own:
/// the texture-generation mode is recorded in the mesh's style, but box generation does not
/// replace them. Tangent frames are computed from them per face. Normals, half-edges, sharp
/// edges, the display flags, the faces' brush and pen and the standard style follow as for
/// the solids; the quad is not smoothed.
class FACET_API quad : public basic_object {
public:
    /// Corners (−1, 0, 1), (1, 0, 1), (1, 0, −1), (−1, 0, −1) (a 2 × 2 square in y = 0 facing
    /// +y) with texture coordinates (0, 0), (1, 0), (1, 1), (0, 1); ignores shadows.
    quad();

    /// Corner `index` (0 to 3) for writing: marks the object dirty. An index of 4 or more fails
    /// "index < 4".
    vector3d& operator[](unsigned index);
    /// Corner `index` (0 to 3) for reading; does not mark the object dirty. An index of 4 or
    /// more fails "index < 4".
    const vector3d& operator[](unsigned index) const;

    /// Stores the texture coordinate of corner `i` (0 to 3) without marking the object dirty:
    /// the change shows at the next rebuild caused by something else. `i` is not checked; an
    /// index outside 0 to 3 is undefined behaviour.
    void set_texcoord(int i, const texcoord& t) { m_texcoords[i] = t; }
    /// The texture coordinate of corner `i` (0 to 3, not checked).
    texcoord get_texcoord(int i) const { return m_texcoords[i]; }

    /// The axis-aligned box of the four corners: centre at the midpoint of the per-axis
    /// minimum and maximum, extents maximum − minimum.
    boundingbox get_boundingbox() const override;
    /// A new quad (caller owns it): base copy plus corners and texture coordinates.
    quad* clone() const override;
    /// Calls the visitor's quad operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "quad".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    vector3d m_points[4] = {vector3d(-1.0, 0.0, 1.0), vector3d(1.0, 0.0, 1.0),
                            vector3d(1.0, 0.0, -1.0), vector3d(-1.0, 0.0, -1.0)};
    texcoord m_texcoords[4] = {texcoord(0.0f, 0.0f), texcoord(1.0f, 0.0f), texcoord(1.0f, 1.0f),
                               texcoord(0.0f, 1.0f)};
};

/// A flat outline of points, implicitly closed, meshed by ear-clipping triangulation.
///
/// Mesh (indexedfaceset::create_mesh for a polygon): the points are the vertices; the outline
/// is projected onto the coordinate plane that suits its orientation and triangulated keeping
/// its winding (a counter-clockwise outline seen from a side faces that side); then normals,
/// half-edges, sharp edges, the display flags, the faces' brush and pen, the standard style,
/// box texture coordinates (texgen mode box) and tangent frames. Not smoothed. Fewer than 3
/// points give the vertices and no faces. An outline the triangulation cannot cut throws
/// std::runtime_error("Triangulation error: bad polygon") out of get_mesh; the object then
/// stays dirty.
class FACET_API polygon : public basic_object {
public:
    /// No points; ignores shadows.
    polygon();

    /// Appends `p` and marks the object dirty.
    void add_point(const vector3d& p);
    /// Removes the first point equal to `p` (every component exactly equal), if there is one;
    /// marks the object dirty in either case.
    void remove_point(const vector3d& p);
    /// Reverses the order of the points (and so the facing of the mesh); marks the object
    /// dirty.
    void reverse_points();
    /// Removes all points; marks the object dirty.
    void clear();
    std::size_t size() const { return m_points.size(); }
    bool empty() const { return m_points.empty(); }
    /// The points in order.
    const std::vector<vector3d>& get_points() const { return m_points; }

    /// Point `index` for writing: marks the object dirty (also when the index is bad), then
    /// throws std::out_of_range, the exception of std::vector::at, when `index` >= size().
    vector3d& operator[](unsigned index);
    /// Point `index` for reading; does not mark the object dirty. Throws std::out_of_range when
    /// `index` >= size().
    const vector3d& operator[](unsigned index) const;

    /// The axis-aligned box of all points, as for the quad; an empty box when there are none.
    boundingbox get_boundingbox() const override;
    /// A new polygon (caller owns it): base copy plus the points.
    polygon* clone() const override;
    /// Calls the visitor's polygon operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "polygon".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    std::vector<vector3d> m_points;
};

/// One line segment between two points.
///
/// Mesh (indexedfaceset::create_mesh for a line): the two end points as vertices and one line
/// record (0, 1) with the object's pen; no faces, texture coordinates, half-edges or styles.
class FACET_API line : public basic_object {
public:
    /// Both end points at the origin; ignores shadows.
    line();
    /// The segment p1 → p2. Unlike the default line, it casts shadows (ignore_for_shadows stays
    /// false).
    line(const vector3d& p1, const vector3d& p2);

    /// End point `index` (0 or 1) for writing: marks the object dirty. An index of 2 or more
    /// fails "index < 2".
    vector3d& operator[](unsigned index);
    /// End point `index` (0 or 1) for reading; does not mark the object dirty. An index of 2 or
    /// more fails "index < 2".
    const vector3d& operator[](unsigned index) const;

    /// An empty box: lines report no extent.
    boundingbox get_boundingbox() const override;
    /// A new line (caller owns it): base copy plus the end points.
    line* clone() const override;
    /// Calls the visitor's line operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "line".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    vector3d m_points[2];
};

/// An open chain of line segments through its points (never closed).
///
/// Mesh (indexedfaceset::create_mesh for a polyline): with n >= 2 points, the points as
/// vertices and the n − 1 line records (i, i + 1) with the object's pen; with fewer, an empty
/// mesh. No faces, texture coordinates, half-edges or styles.
class FACET_API polyline : public basic_object {
public:
    /// No points; ignores shadows.
    polyline();

    /// Appends `p` and marks the object dirty.
    void add_point(const vector3d& p);
    /// Removes all points without marking the object dirty: a clean polyline keeps its old
    /// mesh until something else marks it dirty.
    void clear();
    /// Replaces all points by `points` and marks the object dirty.
    void set_points(std::vector<vector3d> points);
    std::size_t size() const { return m_points.size(); }
    bool empty() const { return m_points.empty(); }
    /// The points in order.
    const std::vector<vector3d>& get_points() const { return m_points; }

    /// Point `index` for writing: marks the object dirty. An index at or beyond size() fails
    /// "index < m_points.size()".
    vector3d& operator[](unsigned index);
    /// Point `index` for reading; does not mark the object dirty. An index at or beyond size()
    /// fails "index < m_points.size()".
    const vector3d& operator[](unsigned index) const;

    /// An empty box: polylines report no extent.
    boundingbox get_boundingbox() const override;
    /// A new polyline (caller owns it): base copy plus the points.
    polyline* clone() const override;
    /// Calls the visitor's polyline operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "polyline".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    std::vector<vector3d> m_points;
};

// ---- markers and annotations ------------------------------------------------------------------
//
// Light-weight objects that mark or annotate a scene. Arrow and crosshair are meshed as line
// segments only; text, billboard and light have no geometry (their mesh stays empty) and exist
// to be placed, named, parented, saved and visited. All ignore shadows by default.

/// An arrow along +x from the origin: a shaft of the given length and four barbs from the tip.
///
/// Mesh (indexedfaceset::create_mesh for an arrow), with L the length, hl the head length and
/// half = head base × 0.5: vertices (0, 0, 0), (L, 0, 0), (L − hl, ±half, 0), (L − hl, 0,
/// ±half) and the lines (0, 1), (1, 2), (1, 3), (1, 4), (1, 5) with the object's pen. Nothing
/// is clamped: a head longer than the arrow puts the barbs behind the tail.
class FACET_API arrow : public basic_object {
public:
    /// Length 10000, head base 1000, head length 1000; ignores shadows.
    arrow();

    /// Stores the length (in model units) and marks the object dirty.
    void set_length(double length);
    double get_length() const { return m_length; }
    /// Stores the width of the head at its base and the head's length along the shaft, then
    /// marks the object dirty.
    void set_head_size(double head_base, double head_length);
    double get_head_base() const { return m_head_base; }
    double get_head_length() const { return m_head_length; }

    /// A new arrow (caller owns it): base copy plus length and head size.
    arrow* clone() const override;
    /// Calls the visitor's arrow operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "arrow".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    double m_length = 10000.0;
    double m_head_base = 1000.0;
    double m_head_length = 1000.0;
};

/// Three line segments of the given size along x, y and z, centred on the origin.
///
/// Mesh (indexedfaceset::create_mesh for a crosshair), half = size × 0.5: vertices
/// (−half, 0, 0), (half, 0, 0), (0, −half, 0), (0, half, 0), (0, 0, −half), (0, 0, half) and the
/// lines (0, 1), (2, 3), (4, 5) with the object's pen.
class FACET_API crosshair : public basic_object {
public:
    /// Size 1; ignores shadows.
    crosshair();

    /// Stores the full length of each segment and marks the object dirty.
    void set_size(double size);
    double get_size() const { return m_size; }

    /// A new crosshair (caller owns it): base copy plus the size.
    crosshair* clone() const override;
    /// The visitor has no crosshair operation: calls its basic_object operation, then marks the
    /// object dirty.
    void accept(primitive_visitor& v) override;
    /// "crosshair".
    std::string class_id() const override;

protected:
    void update_mesh(indexedfaceset& target) const override;

private:
    double m_size = 1.0;
};

/// A text annotation placed by the object's transform. It has no geometry: its mesh is empty.
class FACET_API text : public basic_object {
public:
    /// Empty text; ignores shadows.
    text();

    /// Stores the text and marks the object dirty. Scene files keep only its first word.
    void set_text(const std::string& t);
    const std::string& get_text() const { return m_text; }

    /// A new text (caller owns it): base copy plus the string. The bounding box is the base's
    /// empty box.
    text* clone() const override;
    /// Calls the visitor's text operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "text".
    std::string class_id() const override;

private:
    std::string m_text;
};

/// A screen-facing rectangle of the given size for the host to draw. It has no geometry: its
/// mesh is empty, and neither its setters nor a visitor mark it dirty.
class FACET_API billboard : public basic_object {
public:
    /// Width and height 0; ignores shadows.
    billboard();

    /// Store only; the object is not marked dirty.
    void set_width(double w) { m_width = w; }
    void set_height(double h) { m_height = h; }
    double get_width() const { return m_width; }
    double get_height() const { return m_height; }

    /// Centre (0, 0, 0), extents (width, height, 0).
    boundingbox get_boundingbox() const override;
    /// A new billboard (caller owns it): base copy plus width and height.
    billboard* clone() const override;
    /// Calls the visitor's billboard operation and, unlike every other type, does not mark the
    /// object dirty.
    void accept(primitive_visitor& v) override;
    /// "billboard".
    std::string class_id() const override;

private:
    double m_width = 0.0;
    double m_height = 0.0;
};

/// A light source: its position and orientation are the light's. No parameters of its own and
/// no geometry (empty mesh, empty bounding box).
class FACET_API light : public basic_object {
public:
    /// Ignores shadows.
    light();

    /// A new light (caller owns it), copied as by the base copy constructor.
    light* clone() const override;
    /// Calls the visitor's light operation, then marks the object dirty.
    void accept(primitive_visitor& v) override;
    /// "light".
    std::string class_id() const override;
};

}  // namespace primitives
