// Scene objects: the polymorphic base of every primitive, its visitor interface, the shared
// bounding-box type and the object-to-world transforms.
//
// A scene object has a name, an optional parent and children (never owned), a position and an
// orientation relative to its parent, an appearance, display flags, and a cached mesh that it
// owns and rebuilds lazily: appearance and parameter changes mark it dirty, get_mesh rebuilds a
// dirty mesh through the virtual update_mesh. Meshes are built in object space; the hierarchy
// places them with calc_transformation_matrix.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "facet/appearance.h"
#include "facet/export.h"
#include "facet/geometry.h"
#include "facet/ifs.h"

namespace primitives {

class basic_object;
class box;
class cylinder;
class cone;
class quad;
class polygon;
class line;
class polyline;
class extruded_polygon;
class mesh;
class path_extrusion;
class arrow;
class custom;
class light;
class text;
class billboard;

/// An axis-aligned box given by its centre and its full extents along x (width), y (height)
/// and z (depth).
struct FACET_API boundingbox {
    vector3d center;
    double width = 0.0;
    double height = 0.0;
    double depth = 0.0;

    /// Centre (0, 0, 0), all extents 0.
    boundingbox() = default;
    /// Centre (0, 0, 0).
    boundingbox(double w, double h, double d) : width(w), height(h), depth(d) {}
    boundingbox(const vector3d& c, double w, double h, double d)
        : center(c), width(w), height(h), depth(d) {}

    double get_width() const { return width; }
    double get_height() const { return height; }
    double get_depth() const { return depth; }
    void set_size(double w, double h, double d) {
        width = w;
        height = h;
        depth = d;
    }
    const vector3d& get_center() const { return center; }
    void set_center(const vector3d& c) { center = c; }

    /// True when any extent is exactly 0.0 (a NaN extent does not count).
    bool is_degenerate() const { return width == 0.0 || height == 0.0 || depth == 0.0; }
};

/// Visits scene objects by their dynamic type: one operation per primitive type. Hosts
/// implement it and pass it to basic_object::accept.
class FACET_API primitive_visitor {
public:
    virtual ~primitive_visitor();
    virtual void visit(basic_object& object) = 0;
    virtual void visit(box& object) = 0;
    virtual void visit(cylinder& object) = 0;
    virtual void visit(cone& object) = 0;
    virtual void visit(quad& object) = 0;
    virtual void visit(polygon& object) = 0;
    virtual void visit(line& object) = 0;
    virtual void visit(polyline& object) = 0;
    virtual void visit(extruded_polygon& object) = 0;
    virtual void visit(mesh& object) = 0;
    virtual void visit(path_extrusion& object) = 0;
    virtual void visit(arrow& object) = 0;
    virtual void visit(custom& object) = 0;
    virtual void visit(light& object) = 0;
    virtual void visit(text& object) = 0;
    virtual void visit(billboard& object) = 0;
};

/// A rotation: `angle` degrees about `axis` (right-handed; the axis need not be unit length).
struct FACET_API axis_angle {
    vector3d axis{0.0, 1.0, 0.0};
    double angle = 0.0;
};

/// The base of every scene object; usable on its own as the "empty" object (empty mesh).
///
/// Ownership: the object owns its cached mesh only. Parent and children are plain pointers; the
/// hierarchy operations do not validate (cycles, self-parenting and dangling pointers are the
/// caller's responsibility). Destroying an object removes it from its parent's children and
/// clears its children's parent pointers.
class FACET_API basic_object {
public:
    /// Name "*unknown*", parent and owner "_null_", visible, backface culling on, every other
    /// flag off, position (0, 0, 0), rotation 0 degrees about (0, 1, 0), smoothing threshold
    /// 80 and visible-edge threshold 65 degrees, brush color (255, 255, 192) opaque, default pen,
    /// texturing off, texture ids 0, texgen box, texture mode modulate, texture scale (1, 1),
    /// empty dirty mesh.
    basic_object();

    /// Copies name, material reference, the display flags, position, orientation, threshold
    /// angles, brush, pen and texture settings. The copy has no parent and no children, parent
    /// name and owner id "_null_", and a new empty mesh; it is dirty.
    basic_object(const basic_object& other);

    /// Assigning an object to itself does nothing. Otherwise copies what the copy constructor
    /// copies, resets parent name and owner id to "_null_", the parent pointer to null and the
    /// children to none, replaces the mesh by a new empty one and marks the object dirty. It does
    /// not remove the object from its old parent's children nor clear its old children's parent
    /// pointers: the caller re-links the hierarchy.
    basic_object& operator=(const basic_object& other);

    /// Removes the object from its parent's children and sets each child's parent to null (the
    /// children keep their parent name and are not deleted).
    virtual ~basic_object();

    /// A new object of the same dynamic type (copied as by the copy constructor plus the derived
    /// fields), allocated with new; the caller owns it.
    virtual basic_object* clone() const;

    /// The object's axis-aligned bounds in object space; the base returns an empty box.
    virtual boundingbox get_boundingbox() const;

    /// Calls the visitor's operation for the object's own type, then marks the object dirty
    /// (the visitor may have changed it).
    virtual void accept(primitive_visitor& v);

    /// The type name of the scene format: "empty" for the base.
    virtual std::string class_id() const;

    // ---- scene files ----

    /// Writes the object's block: "primitive " + class_id() + "\r\n", the fields (do_write),
    /// then "endprimitive\r\n".
    void write(std::ostream& os) const;
    /// Reads the object's fields (do_read), expects "endprimitive" (format_exception otherwise)
    /// and marks the object dirty.
    void read(std::istream& is);

    // ---- identity (none of these marks the object dirty) ----

    const std::string& get_name() const { return m_name; }
    /// Also sets the parent name of every current child to `name`.
    void set_name(const std::string& name);
    /// Host-defined owner identifier, "_null_" by default.
    const std::string& get_owner_id() const { return m_owner_id; }
    void set_owner_id(const std::string& id) { m_owner_id = id; }
    /// Host-defined material reference, empty by default.
    const std::string& get_material_ref_id() const { return m_material_ref_id; }
    void set_material_ref_id(const std::string& id) { m_material_ref_id = id; }

    // ---- hierarchy (not owning, not validated) ----

    /// Leaves the current parent (its remove_child), joins `p` (its add_child) and takes its
    /// name as parent name; a null `p` gives the parent name "_null_".
    void set_parent(basic_object* p);
    basic_object* get_parent() const { return m_parent; }
    /// The parent's name at the time of linking or renaming, or "_null_".
    const std::string& get_parentname() const { return m_parentname; }
    /// Appends `child` to the children (no duplicate check); the child's parent is not touched.
    void add_child(basic_object* child);
    /// Removes the first occurrence of `child`, keeping the order of the rest; nothing happens
    /// when it is absent. The child's parent is not touched.
    void remove_child(basic_object* child);
    /// The children in the order they were added.
    const std::vector<basic_object*>& get_children() const { return m_children; }

    // ---- transform relative to the parent (none of these marks the object dirty) ----

    void set_position(const vector3d& p) { m_position = p; }
    void set_position(const vector3<int>& p);
    const vector3d& get_position() const { return m_position; }
    /// Rotation by `angle` degrees about `axis`.
    void set_orientation(const vector3d& axis, double angle);
    void set_orientation(const vector3<int>& axis, double angle);
    axis_angle get_orientation() const;

    // ---- appearance ----

    /// Stores a different brush and marks the object dirty; an equal brush changes nothing.
    void set_brush(const graphics::brush& b);
    graphics::brush get_brush() const { return m_brush; }
    /// Stores a different pen and marks the object dirty; an equal pen changes nothing.
    void set_pen(const graphics::pen& p);
    graphics::pen get_pen() const { return m_pen; }

    /// These three mark the object dirty only when the value changes.
    void enable_texturing(bool on);
    void set_texture_id(std::uint32_t id);
    void set_norm_map_id(std::uint32_t id);
    /// These four always mark the object dirty.
    void set_texture_rotated(bool rotated);
    void set_texture_mode(graphics::texture_mode mode);
    void set_texgen_mode(graphics::texgen_mode mode);
    void set_texture_scale(double s, double t);
    /// Stores only.
    void set_show_texture_in_bw_mode(bool on) { m_show_texture_in_bw_mode = on; }

    bool texturing_enabled() const { return m_texturing; }
    bool texture_rotated() const { return m_texture_rotated; }
    bool show_texture_in_bw_mode() const { return m_show_texture_in_bw_mode; }
    std::uint32_t get_texture_id() const { return m_texture_id; }
    std::uint32_t get_norm_map_id() const { return m_norm_map_id; }
    graphics::texgen_mode get_texgen_mode() const { return m_texgen_mode; }
    graphics::texture_mode get_texture_mode() const { return m_texture_mode; }
    /// The two texture scale factors (x: s, y: t).
    vector2d get_texture_scale() const { return m_texture_scale; }

    // ---- display flags and angles (stored only; none marks the object dirty) ----

    void set_backface_culling(bool on) { m_backface_culling = on; }
    bool get_backface_culling() const { return m_backface_culling; }
    void set_visible(bool on) { m_visible = on; }
    bool visible() const { return m_visible; }
    /// Passed to the mesh on every get_mesh, so it takes effect without a rebuild.
    void set_edges_only(bool on) { m_edges_only = on; }
    bool edges_only() const { return m_edges_only; }
    void set_ghost(bool on) { m_ghost = on; }
    bool ghost() const { return m_ghost; }
    /// Selection mark; passed to the mesh on every get_mesh.
    void set_marked(bool on) { m_marked = on; }
    bool is_marked() const { return m_marked; }
    void set_hide_when_ghosted(bool on) { m_hide_when_ghosted = on; }
    bool hide_when_ghosted() const { return m_hide_when_ghosted; }
    void set_black_in_bw_mode(bool on) { m_black_in_bw_mode = on; }
    bool black_in_bw_mode() const { return m_black_in_bw_mode; }
    /// The object casts no shadow volume (for the host's shadow handling).
    void set_ignore_for_shadows(bool on) { m_ignore_for_shadows = on; }
    bool ignore_for_shadows() const { return m_ignore_for_shadows; }
    /// Degrees; used by mesh smoothing.
    void set_smoothing_threshold_angle(double degrees) { m_smoothing_threshold_angle = degrees; }
    double get_smoothing_threshold_angle() const { return m_smoothing_threshold_angle; }
    /// Degrees; used by sharp and visible edge detection.
    void set_visible_edge_threshold_angle(double degrees) {
        m_visible_edge_threshold_angle = degrees;
    }
    double get_visible_edge_threshold_angle() const { return m_visible_edge_threshold_angle; }

    // ---- dirty state ----

    /// Sets the dirty flag; setting it also sets shadows_dirty, clearing it leaves
    /// shadows_dirty alone.
    void set_dirty(bool d) const;
    /// Sets only shadows_dirty.
    void set_shadows_dirty(bool d) const { m_shadows_dirty = d; }
    bool is_dirty() const { return m_dirty; }
    bool shadows_dirty() const { return m_shadows_dirty; }

    // ---- mesh ----

    /// The cached mesh in object space, rebuilt first when the object is dirty (update_mesh,
    /// then the texturing flag, texture id, normal-map id, texture mode and texture rotation are
    /// pushed into it and the object becomes clean). The edges-only and marked flags are pushed
    /// on every call. The reference stays owned by the object and valid until the object is
    /// assigned to or destroyed; the host may run the mesh's own operations on it (visible
    /// edges, styles, flags). Fails "m_mesh != 0" if the object has no mesh.
    indexedfaceset& get_mesh() const;

    /// Builds a fresh mesh into `target` (update_mesh plus the same texture settings as
    /// get_mesh); neither reads nor changes the dirty state nor the cache.
    void fill_mesh(indexedfaceset& target) const;

protected:
    /// Reads the object's scene-file fields; an override first calls its base's.
    virtual void do_read(std::istream& is);
    /// Writes the object's scene-file fields; an override first calls its base's.
    virtual void do_write(std::ostream& os) const;
    /// Fills `target` from the object's parameters; the base leaves it as it is (empty).
    virtual void update_mesh(indexedfaceset& target) const;

private:
    void copy_common_fields(const basic_object& other);

    std::string m_name = "*unknown*";
    std::string m_parentname = "_null_";
    std::string m_owner_id = "_null_";
    std::string m_material_ref_id;
    bool m_backface_culling = true;
    bool m_visible = true;
    bool m_edges_only = false;
    bool m_ghost = false;
    bool m_marked = false;
    bool m_hide_when_ghosted = false;
    bool m_black_in_bw_mode = false;
    bool m_ignore_for_shadows = false;
    basic_object* m_parent = nullptr;
    vector3d m_position;
    vector3d m_orientation_axis{0.0, 1.0, 0.0};
    double m_orientation_angle = 0.0;
    double m_smoothing_threshold_angle = 80.0;
    double m_visible_edge_threshold_angle = 65.0;
    graphics::brush m_brush{graphics::color(255, 255, 192, 255), 0};
    graphics::pen m_pen;
    bool m_texturing = false;
    bool m_show_texture_in_bw_mode = false;
    bool m_texture_rotated = false;
    std::uint32_t m_texture_id = 0;
    std::uint32_t m_norm_map_id = 0;
    graphics::texgen_mode m_texgen_mode = graphics::texgen_mode::box;
    vector2d m_texture_scale{1.0, 1.0};
    graphics::texture_mode m_texture_mode = graphics::texture_mode::modulate;
    std::unique_ptr<indexedfaceset> m_mesh;
    mutable bool m_dirty = true;
    mutable bool m_shadows_dirty = true;
    std::vector<basic_object*> m_children;
};

/// The object-to-world matrix: translation(position) × rotation(angle, axis), pre-multiplied
/// by the parent's matrix, recursively to the root. Not cached. Computed from the root down
/// without recursion, so a chain of any depth works (in time and memory linear in its depth);
/// parent links that form a cycle fail the check "p != slow".
FACET_API matrix44d calc_transformation_matrix(const basic_object& o);

/// The world position of the object-space point p: transform_vector(calc_transformation_matrix
/// (o), p).
FACET_API vector3d objectspace_to_worldspace(const vector3d& p, const basic_object& o);

/// The object-space position of the world point p, through the inverse of the object's world
/// matrix. Throws EMatrix ("Determinant is 0, cannot create inverse") when that matrix is
/// singular.
FACET_API vector3d worldspace_to_objectspace(const vector3d& p, const basic_object& o);

}  // namespace primitives
