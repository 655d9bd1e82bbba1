// graphics::color: packing, clamping and the HSL conversion.
#include "facet/appearance.h"

namespace graphics {

namespace {

std::uint32_t pack(unsigned r, unsigned g, unsigned b, unsigned a) {
    return ((b & 0xffu) << 24) | ((g & 0xffu) << 16) | ((r & 0xffu) << 8) | (a & 0xffu);
}

}  // namespace

color::color() : m_value(pack(0, 0, 0, 255)) {}

color::color(unsigned r, unsigned g, unsigned b) : m_value(pack(r, g, b, 255)) {}

color::color(unsigned r, unsigned g, unsigned b, unsigned a) : m_value(pack(r, g, b, a)) {}

color::color(unsigned r, unsigned g, unsigned b, unsigned a, double reflection, float shininess)
    : m_value(pack(r, g, b, a)) {
    set_reflection(reflection);
    set_shininess(shininess);
}

void color::set(unsigned r, unsigned g, unsigned b) { m_value = pack(r, g, b, 255); }

void color::set(unsigned r, unsigned g, unsigned b, unsigned a) { m_value = pack(r, g, b, a); }

void color::set_reflection(double v) {
    if (v < 0.0)
        m_reflection = 0.0;
    else if (v > 1.0)
        m_reflection = 1.0;
    else
        m_reflection = v;
}

void color::set_shininess(float v) {
    if (v < 0.0f)
        m_shininess = 0.0f;
    else if (v > 128.0f)
        m_shininess = 128.0f;
    else
        m_shininess = v;
}

bool color::operator==(const color& other) const {
    return m_value == other.m_value && m_reflection == other.m_reflection &&
           m_shininess == other.m_shininess;
}

// Every step is evaluated in double precision and rounded to float when it is stored.
void color::to_hsl(float& h, float& s, float& l) const {
    const float r = static_cast<float>(get_red_component() * (1.0 / 255.0));
    const float g = static_cast<float>(get_green_component() * (1.0 / 255.0));
    const float b = static_cast<float>(get_blue_component() * (1.0 / 255.0));

    float min = r;
    if (g < min) min = g;
    if (b < min) min = b;
    float max = r;
    if (g > max) max = g;
    if (b > max) max = b;
    const float delta = static_cast<float>(static_cast<double>(max) - min);

    l = static_cast<float>((max + min) * 0.5);
    if (delta == 0.0f) {
        h = 0.0f;
        s = 0.0f;
        return;
    }
    if (l < 0.5f)
        s = static_cast<float>(delta / (static_cast<double>(max) + min));
    else
        s = static_cast<float>(delta / (2.0 - max - min));

    const float dr = static_cast<float>(((max - r) * (1.0 / 6.0) + delta * 0.5) / delta);
    const float dg = static_cast<float>(((max - g) * (1.0 / 6.0) + delta * 0.5) / delta);
    const float db = static_cast<float>(((max - b) * (1.0 / 6.0) + delta * 0.5) / delta);

    if (r == max)
        h = static_cast<float>(static_cast<double>(db) - dg);
    else if (g == max)
        h = static_cast<float>(1.0 / 3.0 + dr - db);
    else  // b == max
        h = static_cast<float>(2.0 / 3.0 + dg - dr);

    if (h < 0.0f) h = static_cast<float>(h + 1.0);
    if (h > 1.0f) h = static_cast<float>(h - 1.0);
}

}  // namespace graphics
