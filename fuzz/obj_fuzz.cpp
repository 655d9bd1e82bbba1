// Fuzz harness: OBJ text through obj_import::parse_obj (which normalises it), obj2mesh, the
// global mesh map and a primitives::custom object that draws the registered mesh.
//
// Checked on every input: the record holds material 0 "__default__" and only faces of three or
// four corners; obj2mesh either gives a mesh whose indices are all valid or throws bad_face and
// leaves its target unchanged; every coordinate is finite and the model starts at the origin; the
// custom object's face set refers to its own vertices only and its shadow volume for a light
// builds. Inputs above 64 KB are cut, which keeps each run short.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <sstream>
#include <string>

#include <facet/custom_mesh.h>
#include <facet/ifs.h>
#include <facet/obj_import.h>
#include <facet/primitives.h>
#include <facet/shadow_volume.h>

namespace {

constexpr std::size_t max_input = 64 * 1024;
const char* const mesh_name = "fuzz.obj";

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "obj_fuzz: %s\n", what);
    std::abort();
}

/// Material 0 is the default, faces have 3 or 4 corners, every coordinate is finite and the
/// normalised model's lower corner lies at the origin.
void check_record(const obj_import::obj_info& info) {
    if (info.materials.empty() || info.materials[0].name != "__default__")
        fail("material 0 is not __default__");
    for (const obj_import::face& f : info.faces)
        if (f.corner_count < 3 || f.corner_count > 4) fail("a face with fewer than 3 corners");
    for (const vector3d& v : info.vertices)
        if (!std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.z))
            fail("a vertex is not finite");
    const obj_import::bounding_box_3d& box = info.bounding_box;
    if (!info.vertices.empty() && (box.x_min != 0.0 || box.y_min != 0.0 || box.z_min != 0.0))
        fail("the normalised model does not start at the origin");
}

void check_face_set(const indexedfaceset& ifs) {
    for (std::uint32_t i = 0; i < ifs.num_faces(); ++i)
        for (std::uint32_t v : ifs.get_face(i).vertex)
            if (v >= ifs.num_vertices()) fail("a face of the drawn mesh names a missing vertex");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > max_input) size = max_input;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    obj_import::obj_info info;
    obj_import::parse_obj(in, info);
    check_record(info);

    graphics::custom_mesh converted("untouched");
    try {
        obj_import::obj2mesh(info, mesh_name, converted);
    } catch (const obj_import::bad_face&) {
        if (converted.get_name() != "untouched" || converted.num_vertices() != 0)
            fail("a failed obj2mesh changed its target");
        return 0;
    }
    if (!converted.has_valid_indices()) fail("obj2mesh made a mesh with invalid indices");
    if (converted.num_styles() != info.materials.size()) fail("one style per material expected");

    graphics::get_global_mesh_map().add_mesh(std::move(converted));
    primitives::custom drawer(mesh_name);
    drawer.set_smoothing_threshold_angle(30.0);
    try {
        check_face_set(drawer.get_mesh());
        shadow_volume volume(&drawer, vector3d(1000.0, 20000.0, 3000.0), 1.0, 0);
        volume.rebuild_mesh();
        check_face_set(volume.get_mesh());
    } catch (const std::length_error&) {
        // a mesh above the documented face limit
    }
    graphics::get_global_mesh_map().remove_mesh(mesh_name);
    return 0;
}
