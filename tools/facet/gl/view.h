// Where the viewer stands: a camera and a perspective projector for an image, either given or
// framed around the world bounds of a scene.
#pragma once

#include <optional>

#include "facet/camera.h"
#include "facet/projector.h"
#include "facet/scene.h"

namespace facet_gl {

/// A camera and its projection for an image of `width` x `height` pixels.
struct view {
    camera cam;
    perspective_projector proj;
};

/// The horizontal field of view of framed views, in degrees.
constexpr double default_hfov = 50.0;

/// The view for an image of width x height pixels (both >= 1) onto a scene whose meshes span
/// `bounds` (world units; an empty box counts as the unit cube around the origin):
///   - `eye` and `target` given: the camera stands at `eye` looking at `target`;
///   - otherwise the camera looks at `target` (default: the centre of the bounds) from the
///     front, right and above (from `eye` when only that is given), far enough for the
///     bounds' enclosing sphere to fill the picture.
/// Near and far planes enclose the bounds as seen from the eye. An eye on the target looks
/// along −z. The up direction is +y (+z when looking straight up or down).
view make_view(const facet::world_box& bounds, int width, int height,
               const std::optional<vector3d>& eye, const std::optional<vector3d>& target);

/// The position of the light used when a scene has none: above, left of and in front of the
/// view's camera relative to the bounds, so that shadows fall visibly behind the objects.
vector3d default_light(const facet::world_box& bounds, const camera& cam);

}  // namespace facet_gl
