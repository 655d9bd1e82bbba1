// Internal: the clipping loop of triangulate().
#pragma once

#include <vector>

#include "facet/geometry.h"

namespace facet::plane_detail {

/// Clips ears from the cleaned-up outline `order` (indices into `contour`, counter-clockwise,
/// at least 3 of them) in the order of the textbook loop and appends the triangles to `result`,
/// corners reversed when `reversed` is set. Throws std::runtime_error("Triangulation error:
/// bad polygon") where that loop does, after the same triangles.
void clip_ears(const std::vector<vector2d>& contour, const std::vector<unsigned>& order,
               bool reversed, std::vector<unsigned>& result);

}  // namespace facet::plane_detail
