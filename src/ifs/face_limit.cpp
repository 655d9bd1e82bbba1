// The face limit of one object's mesh, checked by the builders before they allocate.
#include "ifs/face_limit.h"

#include "facet/objects.h"

namespace {

std::uint64_t mesh_face_limit = default_mesh_face_limit;

}  // namespace

void set_mesh_face_limit(std::uint64_t faces) { mesh_face_limit = faces; }

std::uint64_t get_mesh_face_limit() { return mesh_face_limit; }

mesh_too_large::mesh_too_large(const std::string& object_name, std::uint64_t faces,
                               std::uint64_t limit)
    : std::length_error("mesh of '" + object_name + "' would hold " + std::to_string(faces) +
                        " faces, above the limit of " + std::to_string(limit)),
      m_faces(faces),
      m_limit(limit) {}

mesh_too_large::~mesh_too_large() = default;

namespace facet::detail {

void check_face_count(const primitives::basic_object& object, std::uint64_t faces) {
    if (faces > mesh_face_limit) throw mesh_too_large(object.get_name(), faces, mesh_face_limit);
}

}  // namespace facet::detail
