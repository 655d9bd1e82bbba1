// The normalisation steps of an imported model: bounds, axis swap, scale and translation.
#include <limits>
#include <utility>

#include "obj/normalise.h"

namespace obj_import {

namespace {

/// d rounded to single precision as the hardware does it, without the undefined behaviour of
/// converting a value beyond the float range: such values become an infinity of their sign.
float to_single(double d) {
    constexpr double rounds_to_infinity = 0x1.ffffffp127;  // float max plus half an ulp
    if (d >= rounds_to_infinity) return std::numeric_limits<float>::infinity();
    if (d <= -rounds_to_infinity) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(d);
}

void swap_yz(vector3d& p) {
    const float old_y = to_single(p.y);
    p.y = p.z;
    p.z = -old_y;
}

}  // namespace

void obj_info::swap(obj_info& other) noexcept {
    vertices.swap(other.vertices);
    texcoords.swap(other.texcoords);
    normals.swap(other.normals);
    faces.swap(other.faces);
    materials.swap(other.materials);
    std::swap(bounding_box, other.bounding_box);
}

void calc_bounding_box(obj_info& info) {
    if (info.vertices.empty()) return;
    bounding_box_3d& box = info.bounding_box;
    const vector3d& first = info.vertices.front();
    box.x_min = box.x_max = first.x;
    box.y_min = box.y_max = first.y;
    box.z_min = box.z_max = first.z;
    for (const vector3d& p : info.vertices) {
        if (p.x < box.x_min) box.x_min = p.x;
        if (p.x > box.x_max) box.x_max = p.x;
        if (p.y < box.y_min) box.y_min = p.y;
        if (p.y > box.y_max) box.y_max = p.y;
        if (p.z < box.z_min) box.z_min = p.z;
        if (p.z > box.z_max) box.z_max = p.z;
    }
}

void swap_all_yz(obj_info& info) {
    for (vector3d& p : info.vertices) swap_yz(p);
    for (vector3d& n : info.normals) swap_yz(n);
    bounding_box_3d& box = info.bounding_box;
    const double old_y_min = box.y_min;
    const double old_y_max = box.y_max;
    box.y_min = box.z_min;
    box.y_max = box.z_max;
    box.z_min = -old_y_max;
    box.z_max = -old_y_min;
}

void scale(obj_info& info, double factor) {
    for (vector3d& p : info.vertices) {
        p.x *= factor;
        p.y *= factor;
        p.z *= factor;
    }
    bounding_box_3d& box = info.bounding_box;
    box.x_min *= factor;
    box.x_max *= factor;
    box.y_min *= factor;
    box.y_max *= factor;
    box.z_min *= factor;
    box.z_max *= factor;
}

void translate(obj_info& info, const vector3d& offset) {
    const vector3d t = offset;  // `offset` may refer into `info`
    for (vector3d& p : info.vertices) {
        p.x += t.x;
        p.y += t.y;
        p.z += t.z;
    }
    bounding_box_3d& box = info.bounding_box;
    box.x_min += t.x;
    box.x_max += t.x;
    box.y_min += t.y;
    box.y_max += t.y;
    box.z_min += t.z;
    box.z_max += t.z;
}

namespace detail {

void normalise(obj_info& info, double factor) {
    calc_bounding_box(info);
    // The box alone through the steps, then every vertex through all of them at once.
    obj_info box_only;
    box_only.bounding_box = info.bounding_box;
    swap_all_yz(box_only);
    scale(box_only, factor);
    const bounding_box_3d& box = box_only.bounding_box;
    const vector3d offset(-box.x_min, -box.y_min, -box.z_min);
    translate(box_only, offset);
    info.bounding_box = box_only.bounding_box;
    for (vector3d& p : info.vertices) {
        swap_yz(p);
        p.x = p.x * factor + offset.x;
        p.y = p.y * factor + offset.y;
        p.z = p.z * factor + offset.z;
    }
    for (vector3d& n : info.normals) swap_yz(n);
}

}  // namespace detail

}  // namespace obj_import
