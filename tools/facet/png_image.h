// PNG files of rendered images, through libpng.
#pragma once

#include <iosfwd>
#include <string>

#include "gl/offscreen_context.h"

namespace facet_tool {

/// Writes `image` (top row first) to `out` as an 8-bit RGB PNG; alpha is dropped. Throws
/// tool_error when libpng fails or the stream goes bad.
void write_png(std::ostream& out, const facet_gl::rgba_image& image);

/// Reads the PNG file `path` as 8-bit RGBA, top row first (any bit depth and color type is
/// converted). Throws tool_error naming the file when it cannot be opened or is not a PNG.
facet_gl::rgba_image read_png(const std::string& path);

}  // namespace facet_tool
