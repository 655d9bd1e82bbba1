// The camera: placement, normalised directions, view matrix and exact comparison.
#include "facet/camera.h"

#include <utility>

#include "facet/math3d.h"

camera::camera()
    : m_position(0.0, 0.0, 0.0),
      m_direction(0.0, 0.0, -1.0),
      m_updir(0.0, 1.0, 0.0),
      m_scene_rotation(0.0) {}

camera::camera(const vector3d& position, const vector3d& direction)
    : m_position(position), m_direction(direction), m_updir(0.0, 1.0, 0.0), m_scene_rotation(0.0) {
    m_direction.normalize();
}

camera::camera(const vector3d& position, const vector3d& direction, const vector3d& updir)
    : m_position(position), m_direction(direction), m_updir(updir), m_scene_rotation(0.0) {
    m_direction.normalize();
    m_updir.normalize();
}

void camera::set_position(const vector3d& position) { m_position = position; }

void camera::set_direction(const vector3d& direction) {
    m_direction = direction;
    m_direction.normalize();
}

void camera::set_updir(const vector3d& updir) {
    m_updir = updir;
    m_updir.normalize();
}

void camera::set_scene_rotation(double rotation) { m_scene_rotation = rotation; }

void camera::look_at(const vector3d& target) {
    m_direction = target - m_position;
    m_direction.normalize();
}

void camera::get_matrix(matrix44d& m) const {
    calc_view_matrix(m_position, m_direction, m_updir, m);
}

bool camera::operator==(const camera& other) const {
    return m_position.x == other.m_position.x && m_position.y == other.m_position.y &&
           m_position.z == other.m_position.z && m_direction.x == other.m_direction.x &&
           m_direction.y == other.m_direction.y && m_direction.z == other.m_direction.z &&
           m_updir.x == other.m_updir.x && m_updir.y == other.m_updir.y &&
           m_updir.z == other.m_updir.z;
}

bool camera::operator!=(const camera& other) const {
    return m_position.x != other.m_position.x || m_position.y != other.m_position.y ||
           m_position.z != other.m_position.z || m_direction.x != other.m_direction.x ||
           m_direction.y != other.m_direction.y || m_direction.z != other.m_direction.z ||
           m_updir.x != other.m_updir.x || m_updir.y != other.m_updir.y ||
           m_updir.z != other.m_updir.z;
}

void camera::swap(camera& other) noexcept {
    std::swap(m_position, other.m_position);
    std::swap(m_direction, other.m_direction);
    std::swap(m_updir, other.m_updir);
    std::swap(m_scene_rotation, other.m_scene_rotation);
}
