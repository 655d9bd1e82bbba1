#include "gl/view.h"

#include <algorithm>
#include <cmath>

namespace facet_gl {

namespace {

constexpr double pi = 3.14159265358979323846;

struct sphere {
    vector3d center;
    double radius = 1.0;
};

sphere enclosing(const facet::world_box& bounds) {
    if (bounds.empty()) return {vector3d(0.0, 0.0, 0.0), std::sqrt(3.0) * 0.5};
    sphere s{bounds.center(), bounds.size().length() * 0.5};
    if (!(s.radius > 1e-9)) s.radius = 1.0;
    return s;
}

vector3d up_for(const vector3d& direction) {
    vector3d d = direction;
    d.normalize();
    return std::abs(d.y) > 0.999 ? vector3d(0.0, 0.0, -1.0) * (d.y > 0 ? -1.0 : 1.0)
                                 : vector3d(0.0, 1.0, 0.0);
}

}  // namespace

view make_view(const facet::world_box& bounds, int width, int height,
               const std::optional<vector3d>& eye, const std::optional<vector3d>& target) {
    const sphere s = enclosing(bounds);
    const double aspect = static_cast<double>(width) / static_cast<double>(height);
    const double half_h = default_hfov * 0.5 * pi / 180.0;
    const double half_v = std::atan(std::tan(half_h) / aspect);
    const vector3d look_at = target ? *target : s.center;

    vector3d position;
    if (eye) {
        position = *eye;
    } else {
        // Back away from the target along `from` until every corner of the bounds is inside
        // the field of view.
        vector3d from(0.55, 0.45, 1.0);
        from.normalize();
        vector3d right = cross(from * -1.0, up_for(from * -1.0));
        right.normalize();
        const vector3d up = cross(right, from * -1.0);
        const double tan_h = std::tan(half_h), tan_v = std::tan(half_v);
        double distance = s.radius * 1e-3;
        const vector3d lo = bounds.empty() ? s.center - vector3d(0.5, 0.5, 0.5) : bounds.min;
        const vector3d hi = bounds.empty() ? s.center + vector3d(0.5, 0.5, 0.5) : bounds.max;
        for (int corner = 0; corner < 8; ++corner) {
            const vector3d c((corner & 1) ? hi.x : lo.x, (corner & 2) ? hi.y : lo.y,
                             (corner & 4) ? hi.z : lo.z);
            const vector3d r = c - look_at;
            const double depth = dot(r, from);
            distance = std::max(distance, depth + std::abs(dot(r, right)) / tan_h);
            distance = std::max(distance, depth + std::abs(dot(r, up)) / tan_v);
        }
        position = look_at + from * (distance * 1.08);
    }
    vector3d direction = look_at - position;
    if (direction.length() <= 1e-12) direction = vector3d(0.0, 0.0, -1.0);
    direction.normalize();

    const double to_center = (s.center - position).length();
    const double reach = to_center + s.radius + (look_at - s.center).length();
    const double far_plane = std::max(reach * 1.05, 1e-3);
    const double near_plane = std::max(std::max(to_center - s.radius, 0.0) * 0.9, far_plane * 1e-4);

    view v;
    v.cam = camera(position, direction, up_for(direction));
    v.proj = perspective_projector(default_hfov, aspect, near_plane, far_plane);
    v.proj.set_viewport(0.0, 0.0, width, height);
    return v;
}

vector3d default_light(const facet::world_box& bounds, const camera& cam) {
    const sphere s = enclosing(bounds);
    vector3d right = cross(cam.get_direction(), vector3d(0.0, 1.0, 0.0));
    if (right.normalize() == 0.0) right = vector3d(1.0, 0.0, 0.0);
    vector3d back = cam.get_direction() * -1.0;
    back.y = 0.0;
    if (back.normalize() == 0.0) back = vector3d(0.0, 0.0, 1.0);
    return s.center + (right * -0.8 + vector3d(0.0, 2.5, 0.0) + back * 0.6) * (s.radius * 1.5);
}

}  // namespace facet_gl
