// The parent links of a scene's objects as indices, and an order that visits parents first.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "facet/objects.h"

namespace facet {

using owned_objects = std::vector<std::unique_ptr<primitives::basic_object>>;

/// For each object, the index of its parent within `objects`; -1 for a root and for a parent
/// that is not among them.
std::vector<std::ptrdiff_t> parent_indices(const owned_objects& objects);

/// The indices of `objects` ordered so that every parent comes before its children; objects of
/// unrelated subtrees keep their relative order. Linear in the number of objects. Throws
/// std::invalid_argument naming an object of a cycle when the parent links form one.
std::vector<std::size_t> top_down_order(const owned_objects& objects);

}  // namespace facet
