// The normalisation parse_obj applies to every record, in one pass over the vertices.
#pragma once

#include "facet/obj_import.h"

namespace obj_import::detail {

/// The same as calc_bounding_box, swap_all_yz, scale by `factor` and translate by
/// (-x_min, -y_min, -z_min) of the box that results, one after the other, with the same
/// arithmetic on every value, but with two passes over the vertices instead of four.
void normalise(obj_info& info, double factor);

}  // namespace obj_import::detail
