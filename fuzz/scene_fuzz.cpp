// Fuzz harness: scene text through both readers and everything a host does with what was read.
//
//   classic     read_objects into a vector holding an object already (which it must keep as it
//               was), never linking a parent cycle; then every object's mesh, its world matrix,
//               shadow volumes for the scene's light, and write_objects; a complete scene
//               written this way must read back with read_scene (unless a material reference
//               holds what the format cannot carry, or a real is not finite).
//   round trip  facet::read_scene, then the scene's world matrices (bit for bit those of
//               calc_transformation_matrix), meshes, bounds, shadow volumes and write_scene; the
//               text written must read back, and writing that again must give the same text.
//
// A documented exception from a reader or a builder is fine; a crash, a sanitizer report or a
// broken property aborts. Inputs above 64 KB are ignored and the mesh face limit is lowered to
// 65536 faces (a larger mesh is refused with mesh_too_large), which keeps each run short.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <facet/ifs.h>
#include <facet/objects.h>
#include <facet/primitives.h>
#include <facet/scene.h>
#include <facet/scene_io.h>
#include <facet/shadow_volume.h>

namespace {

using object_list = std::vector<primitives::basic_object*>;

constexpr std::size_t max_input = 64 * 1024;
constexpr std::uint64_t face_limit = 65536;
constexpr std::size_t max_shadow_casters = 8;

[[noreturn]] void fail(const char* what, const std::string& detail = std::string()) {
    std::fprintf(stderr, "scene_fuzz: %s\n%s\n", what, detail.c_str());
    std::abort();
}

/// Whether following parents from every object ends at a root.
bool acyclic(const object_list& objects) {
    for (const primitives::basic_object* object : objects) {
        std::size_t steps = 0;
        for (const primitives::basic_object* p = object->get_parent(); p != nullptr;
             p = p->get_parent())
            if (++steps > objects.size()) return false;
    }
    return true;
}

/// Whether the text holds a word that a real reads back from only as a failure.
bool holds_non_finite_word(const std::string& text) {
    std::istringstream words(text);
    std::string word;
    while (words >> word)
        if (word.find("nan") != std::string::npos || word.find("inf") != std::string::npos)
            return true;
    return false;
}

/// Whether every material reference reads back in the round-trip dialect.
bool material_refs_carry(const object_list& objects) {
    for (const primitives::basic_object* object : objects) {
        const std::string& ref = object->get_material_ref_id();
        if (ref.find_first_of(std::string("\r\n\0", 3)) != std::string::npos ||
            ref.find("  position") != std::string::npos || ref.find(' ') == 0)
            return false;
    }
    return true;
}

/// Builds the mesh of every object; returns false when one was refused. Only the documented
/// refusals may come out of get_mesh: the face limit, an outline that cannot be triangulated and
/// a path that turns back on itself.
bool build_meshes(const object_list& objects) {
    bool all = true;
    for (primitives::basic_object* object : objects) {
        try {
            const indexedfaceset& mesh = object->get_mesh();
            for (std::uint32_t i = 0; i < mesh.num_faces(); ++i)
                for (std::uint32_t v : mesh.get_face(i).vertex)
                    if (v >= mesh.num_vertices()) fail("a face names a missing vertex");
        } catch (const mesh_too_large&) {
            all = false;
        } catch (const std::runtime_error& e) {
            const std::string message = e.what();
            if (message != "Triangulation error: bad polygon" &&
                message != "Path extrusion error: path turns back on itself")
                fail("get_mesh threw an undocumented error", message);
            all = false;
        }
    }
    return all;
}

/// The world position of the first light, or a fixed point above the scene without one.
vector3d light_position(const object_list& objects) {
    for (const primitives::basic_object* object : objects)
        if (object->class_id() == "light")
            return primitives::objectspace_to_worldspace(vector3d(0, 0, 0), *object);
    return vector3d(1000.0, 50000.0, 2000.0);
}

/// Shadow volumes of the first few objects for the light, also moved once, through the map.
void build_shadows(const object_list& objects) {
    const vector3d light = light_position(objects);
    shadow_volume_map volumes;
    std::size_t casters = 0;
    for (primitives::basic_object* object : objects) {
        if (casters == max_shadow_casters) break;
        ++casters;
        auto volume = std::make_unique<shadow_volume>(object, light, 1.0, 0u);
        try {
            volume->rebuild_mesh();
            volume->set_light(vector3d(light.x + 10.0, light.y, light.z - 10.0), 1.0, 0u, true);
            (void)volume->get_mesh().num_faces();
        } catch (const std::exception&) {
            // a singular world matrix (EMatrix) or a refused mesh
        }
        volumes.add_shadow_volume(volume.release());
    }
    volumes.reset_records();
    if (!objects.empty()) volumes.get_shadow_volume(objects.front(), 0u);
    volumes.remove_unused_volumes();
}

void same_matrix(const matrix44d& a, const matrix44d& b) {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            if (std::memcmp(&a(r, c), &b(r, c), sizeof(double)) != 0)
                fail("world_matrices differs from calc_transformation_matrix");
}

std::string written(const facet::scene& s) {
    std::ostringstream os;
    facet::write_scene(s, os);
    return os.str();
}

/// read_scene of `text`; a failure aborts unless the text holds a non-finite real.
std::unique_ptr<facet::scene> read_back(const std::string& text, const char* what) {
    std::istringstream is(text);
    try {
        return std::make_unique<facet::scene>(facet::read_scene(is, "written"));
    } catch (const facet::scene_error& e) {
        if (holds_non_finite_word(text)) return nullptr;
        fail(what, std::string(e.what()) + "\n" + text);
    }
}

void classic(const std::string& text) {
    // An object the caller holds already: reading keeps it, first and unchanged.
    auto keeper = std::make_unique<primitives::box>(1.0, 2.0, 3.0);
    keeper->set_name("keeper");
    object_list raw{keeper.get()};
    std::istringstream is(text);
    bool complete = true;
    try {
        read_objects(raw, is);
    } catch (const std::exception&) {
        complete = false;
    }
    std::vector<std::unique_ptr<primitives::basic_object>> owned(raw.begin() + 1, raw.end());
    if (raw.front() != keeper.get() || keeper->get_name() != "keeper" ||
        keeper->get_parent() != nullptr)
        fail("read_objects changed an object the caller held");
    if (!acyclic(raw)) fail("read_objects linked a parent cycle");

    build_meshes(raw);
    for (const primitives::basic_object* object : raw)
        (void)primitives::calc_transformation_matrix(*object);
    build_shadows(raw);
    std::ostringstream os;
    write_objects(raw, os);
    if (complete && material_refs_carry(raw))
        read_back(os.str(), "a scene written by write_objects does not read back");
}

void round_trip(const std::string& text) {
    std::unique_ptr<facet::scene> s;
    std::istringstream is(text);
    try {
        s = std::make_unique<facet::scene>(facet::read_scene(is, "fuzz"));
    } catch (const facet::scene_error&) {
        return;
    }
    const object_list objects = s->objects();
    const std::vector<matrix44d> world = s->world_matrices();
    for (std::size_t i = 0; i < objects.size(); ++i)
        same_matrix(world[i], primitives::calc_transformation_matrix(*objects[i]));
    if (build_meshes(objects)) (void)s->bounds();
    build_shadows(objects);

    const std::string first = written(*s);
    const std::unique_ptr<facet::scene> again =
        read_back(first, "a scene written by write_scene does not read back");
    if (again && written(*again) != first)
        fail("writing a scene read back gives other text", first + "\n----\n" + written(*again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool limited = (set_mesh_face_limit(face_limit), true);
    (void)limited;
    if (size > max_input) return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);
    classic(text);
    round_trip(text);
    return 0;
}
