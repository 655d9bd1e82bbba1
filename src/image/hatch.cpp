// The procedural diagonal hatch pattern.
#include <cmath>

#include "facet/textures.h"

namespace graphics {

namespace {

float clamp(float x, float lo, float hi) {
    if (x < lo) return lo;
    if (x < hi) return x;
    return hi;
}

float smoothstep(float x, float a, float b) {
    if (x < a) return 0.0f;
    if (x >= b) return 1.0f;
    const float r = (x - a) / (b - a);
    return (3.0f - 2.0f * r) * (r * r);
}

/// back * (1 - s) + line * s, rounded to the nearest byte (halves up). The blend of two bytes
/// never leaves [0, 255] by more than a rounding error, so the result needs no clamping.
unsigned blend(unsigned back, unsigned line, float s) {
    const float v = static_cast<float>(back) * (1.0f - s) + static_cast<float>(line) * s;
    return static_cast<unsigned>(v + 0.5f);
}

}  // namespace

void make_hatched_texture(const graphics::color& line_color, const graphics::color& back_color,
                          float period, float line_width, float sharpness, unsigned short size,
                          bitmap& out) {
    bitmap image(size, size);
    const float inv = 1.0f / static_cast<float>(size);
    const float e = (1.0f - clamp(sharpness, 0.0f, 1.0f)) * line_width * 0.5f;
    const unsigned lr = line_color.get_red_component(), lg = line_color.get_green_component(),
                   lb = line_color.get_blue_component(), la = line_color.get_alpha_component();
    const unsigned br = back_color.get_red_component(), bg = back_color.get_green_component(),
                   bb = back_color.get_blue_component(), ba = back_color.get_alpha_component();
    unsigned char* p = image.begin();
    for (unsigned y = 0; y < size; ++y) {
        const float v = (static_cast<float>(y) + 0.5f) * inv;
        for (unsigned x = 0; x < size; ++x, p += 4) {
            const float u = (static_cast<float>(x) + 0.5f) * inv;
            const float t = std::fmod(u + v, period);
            const float s = smoothstep(t, 0.0f, e) - smoothstep(t, line_width - e, line_width);
            const float sc = clamp(s, 0.0f, 1.0f);
            p[0] = static_cast<unsigned char>(blend(br, lr, sc));
            p[1] = static_cast<unsigned char>(blend(bg, lg, sc));
            p[2] = static_cast<unsigned char>(blend(bb, lb, sc));
            p[3] = static_cast<unsigned char>(blend(ba, la, sc));
        }
    }
    out.swap(image);
}

}  // namespace graphics
