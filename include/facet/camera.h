// The viewer's placement in world space.
//
// A camera stands at a position, looks along a unit direction and carries a unit up direction
// (which need not be orthogonal to the direction). Its view matrix takes world coordinates into
// camera coordinates, where the camera looks along −z with +y up and +x to the right.
//
// Directions are normalised by the 3D rule of vector3: a vector of length 1e-12 or less
// silently becomes the zero vector. Such a camera is legal; its view matrix is singular, so
// conversions that invert it (camera2worldspace, unproject) throw EMatrix.
#pragma once

#include "facet/export.h"
#include "facet/geometry.h"

/// A plain value type: copy, assignment and swap copy every field.
class FACET_API camera {
public:
    /// Position (0, 0, 0), direction (0, 0, −1), up (0, 1, 0), scene rotation 0.
    camera();

    /// The given position and direction (normalised), up (0, 1, 0), scene rotation 0.
    camera(const vector3d& position, const vector3d& direction);

    /// The given position, direction and up direction; the direction is normalised, then the
    /// up direction. Scene rotation 0.
    camera(const vector3d& position, const vector3d& direction, const vector3d& updir);

    /// The eye point in world space, stored as given.
    void set_position(const vector3d& position);
    /// Stores the viewing direction normalised (a near-zero vector becomes (0, 0, 0)).
    void set_direction(const vector3d& direction);
    /// Stores the up direction normalised (a near-zero vector becomes (0, 0, 0)).
    void set_updir(const vector3d& updir);
    /// Stores an angle for the host, as given. No computation of the library reads it: it
    /// enters neither the view matrix nor the comparisons.
    void set_scene_rotation(double rotation);

    const vector3d& get_position() const { return m_position; }
    const vector3d& get_direction() const { return m_direction; }
    const vector3d& get_updir() const { return m_updir; }
    double get_scene_rotation() const { return m_scene_rotation; }

    /// Turns the camera towards the world point `target`: direction := target − position,
    /// normalised. Position and up direction are unchanged (the up direction is not
    /// re-orthogonalised). A target at the eye gives the zero direction, not an error.
    void look_at(const vector3d& target);

    /// m := the view matrix of position, direction and up direction (calc_view_matrix). The
    /// default camera gives the identity. The scene rotation does not enter it.
    void get_matrix(matrix44d& m) const;

    /// Exact comparison of position, direction and up direction (no tolerance; a NaN component
    /// never compares equal). The scene rotation is not compared. For a tolerant comparison
    /// of directions see equal_cam_dirs.
    bool operator==(const camera& other) const;
    /// True when any of the nine compared components differs (so a camera holding a NaN is
    /// unequal to itself). The scene rotation is not compared.
    bool operator!=(const camera& other) const;

    /// Exchanges every field with `other`.
    void swap(camera& other) noexcept;

private:
    vector3d m_position;
    vector3d m_direction;
    vector3d m_updir;
    double m_scene_rotation;
};

/// Exchanges every field of a and b.
inline void swap(camera& a, camera& b) noexcept { a.swap(b); }
