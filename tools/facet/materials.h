// The tool's reading of material references: a scene file names textures through them.
#pragma once

#include <string>

#include "facet/scene.h"
#include "gl/texture_store.h"

namespace facet_tool {

/// Gives every object whose material reference names a texture that texture, made or loaded
/// into `store` (the GL context of the store must be current):
///   "hatch"            the hatch pattern: black diagonal stripes on white, 64 x 64 pixels
///                      (the library's pattern), shown in the black-and-white mode too;
///   "<file>.tga"       the TGA image at that path, relative to `folder` unless absolute, with
///                      its mipmap levels.
/// Texturing is switched on for those objects. Other references are left alone. Throws
/// tool_error naming the object and the file for a TGA file that cannot be read.
void apply_material_references(const facet::scene& s, const std::string& folder,
                               facet_gl::texture_store& store);

}  // namespace facet_tool
