// The primitive scene objects, by family.
//
// Every primitive is a primitives::basic_object: it keeps its own parameters, marks its mesh
// dirty whenever a parameter setter is called (also with the current value), builds its mesh
// in object space through the matching indexedfaceset::create_mesh overload, and reports an
// axis-aligned bounding box in object space. No setter validates: zero or negative dimensions
// are stored as given and give degenerate or inside-out meshes.
#pragma once

#include <cstdint>
#include <string>

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
    void do_read(std::istream& is) override;
    void do_write(std::ostream& os) const override;

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
    void do_read(std::istream& is) override;
    void do_write(std::ostream& os) const override;

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
    void do_read(std::istream& is) override;
    void do_write(std::ostream& os) const override;

private:
    double m_height = 1.0;
    double m_radius = 0.5;
};

}  // namespace primitives
