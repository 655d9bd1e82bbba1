// facet convert: an OBJ model as a self-contained scene file (one free mesh) or as glTF.
#include <ostream>
#include <utility>
#include <vector>

#include "commands.h"
#include "facet/primitives.h"
#include "gltf_writer.h"
#include "input.h"
#include "output_file.h"
#include "progress.h"

namespace facet_tool {

namespace {

// The file name of `path` without folder and extension, white space as '_' (a scene file name
// is one word).
std::string object_name_for(const std::string& path) {
    std::string name = stem_of(path);
    for (char& c : name)
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') c = '_';
    return name.empty() ? std::string("model") : name;
}

}  // namespace

void run_convert(const convert_options& options) {
    if (!is_obj_path(options.input))
        throw tool_error(options.input + ": not an .obj model: convert reads OBJ models only");
    progress report(options.quiet);
    if (is_gltf_path(options.output)) {
        // The model as `facet export` writes it: its styles become the materials.
        const facet::scene s = load_input(options.input, report);
        write_gltf(s, options.output, false, report);
        return;
    }
    const std::string name = object_name_for(options.input);
    const graphics::custom_mesh model = read_obj_model(options.input, name, report);
    std::vector<primitives::mesh::triangle> triangles;
    triangles.reserve(model.get_faces().size());
    for (const graphics::custom_mesh_face& f : model.get_faces())
        triangles.emplace_back(f.vertex[0], f.vertex[1], f.vertex[2]);
    facet::scene s;
    auto& mesh = s.emplace<primitives::mesh>();
    mesh.set_name(name);
    mesh.set_vertices(model.get_vertices());
    mesh.set_triangles(std::move(triangles));
    if (!model.get_styles().empty()) mesh.set_brush(model.get_styles().front().brush);
    report.stage("writing " + options.output);
    write_file_atomically(options.output, [&](std::ostream& out) { facet::write_scene(s, out); });
    report.finish();
}

}  // namespace facet_tool
