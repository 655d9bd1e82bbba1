// How the render command reads material references: the textures a scene file can ask for.
//
// Scene files keep an object's material reference but not its texture settings, so the tool
// gives material references a meaning:
//   "hatch"          the library's hatch pattern (black diagonal stripes on white)
//   "<file>.tga"     the TGA image at that path, relative to the scene file's folder
// Any other reference leaves the object as it is.
#pragma once

#include <string>

#include "facet/scene.h"
#include "gl/texture_store.h"

namespace facet_tool {

/// Switches texturing on for every object of `s` whose material reference names a texture
/// (see above), with that texture's id from `textures`, which must be the registered global
/// texture manager. `scene_path` is the scene file (its folder resolves relative image
/// paths). Throws tool_error "<scene_path>: object '<name>': <image>: <problem>" for an image
/// that cannot be read.
void apply_material_textures(facet::scene& s, const std::string& scene_path,
                             facet_gl::texture_store& textures);

}  // namespace facet_tool
