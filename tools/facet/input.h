// What the subcommands read: a scene file or an OBJ model, as a facet::scene.
#pragma once

#include <string>

#include "facet/custom_mesh.h"
#include "facet/scene.h"
#include "progress.h"

namespace facet_tool {

/// True when `path` names an OBJ model (extension ".obj", any case).
bool is_obj_path(const std::string& path);

/// Reads the OBJ model at `path` as the library's importer does (parse_obj normalises it:
/// y and z swapped, scaled by 10000, lower corner at the origin) and converts it with obj2mesh
/// into a custom mesh called `name`. Throws tool_error naming the file for a file that cannot be
/// opened, holds no faces, or holds a face that cannot be drawn (obj2mesh's message).
graphics::custom_mesh read_obj_model(const std::string& path, const std::string& name,
                                     progress& report);

/// Reads `path` into a scene:
///   - an .obj model becomes one custom object, named after the file's stem, drawing the model
///     registered in the global mesh map under that stem;
///   - anything else is read as a scene file with read_scene. A custom object whose mesh id
///     ends in ".obj" and names no registered mesh draws that OBJ file, found relative to the
///     scene file's folder and registered under the id.
/// Throws tool_error (scene errors keep read_scene's "file:line: object: problem" message).
facet::scene load_input(const std::string& path, progress& report);

}  // namespace facet_tool
