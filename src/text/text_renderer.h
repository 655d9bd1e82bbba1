// The text rasterizer behind make_texture and make_texture_xy: FreeType draws the glyphs,
// fontconfig finds the font file for a family name. This is the library's only
// platform-dependent code.
#pragma once

#include "facet/appearance.h"
#include "facet/bitmap.h"

namespace facet::text {

/// Fills `target` (of any size) with `back`, draws `text` on it in `fg` and sets every alpha
/// byte to 255, following the layout rules documented in facet/textures.h: bold face of
/// `font_name` (or the fallback), em height `font_size` pixels, one line centred in the bitmap
/// and cut at its edges, anti-aliased, the bottom line of the drawing in row 0.
void draw_text(const char* font_name, int font_size, const graphics::color& fg,
               const graphics::color& back, const char* text, graphics::bitmap& target);

}  // namespace facet::text
