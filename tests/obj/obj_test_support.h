// Helpers shared by the OBJ import tests.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "facet/obj_import.h"

namespace obj_test {

inline obj_import::obj_info parse(const std::string& text) {
    std::istringstream in(text);
    obj_import::obj_info info;
    obj_import::parse_obj(in, info);
    return info;
}

/// What parse_obj does after reading, applied to a record built by hand.
inline obj_import::obj_info normalised(obj_import::obj_info raw) {
    obj_import::calc_bounding_box(raw);
    obj_import::swap_all_yz(raw);
    obj_import::scale(raw, 10000.0);
    const obj_import::bounding_box_3d& b = raw.bounding_box;
    obj_import::translate(raw, vector3d(-b.x_min, -b.y_min, -b.z_min));
    return raw;
}

}  // namespace obj_test
