// Text drawn into bitmaps, and text registered as textures.
#include <string>

#include "facet/textures.h"
#include "image/global_manager.h"
#include "text/text_renderer.h"

namespace graphics {

void make_texture_xy(const char* font_name, int font_size, const graphics::color& text_color,
                     const graphics::color& back_color, unsigned short width, unsigned short height,
                     const char* text, bitmap& out) {
    bitmap image(width, height);
    facet::text::draw_text(font_name, font_size, text_color, back_color, text, image);
    out.swap(image);
}

void make_texture(const char* font_name, int font_size, const graphics::color& text_color,
                  const graphics::color& back_color, unsigned short size, const char* text,
                  bitmap& out) {
    make_texture_xy(font_name, font_size, text_color, back_color, size, size, text, out);
}

unsigned make_string_texture(const char* text) {
    texture_manager& manager = facet::image::global_manager();
    bitmap image;
    make_texture("Arial", 48, color(0, 0, 255), color(224, 224, 255), 64, text, image);
    return manager.create_texture(image);
}

unsigned make_number_texture(int number) {
    return make_string_texture(std::to_string(number).c_str());
}

}  // namespace graphics
