// The builders' check of the face limit (set_mesh_face_limit).
#pragma once

#include <cstdint>

#include "facet/ifs.h"

namespace facet::detail {

/// Throws mesh_too_large naming `object` when `faces` exceeds get_mesh_face_limit().
void check_face_count(const primitives::basic_object& object, std::uint64_t faces);

}  // namespace facet::detail
