// graphics::bitmap: ownership of the pixel array and checked pixel access.
#include "facet/bitmap.h"

#include <algorithm>
#include <utility>

#include "facet/check.h"

namespace graphics {

bitmap::bitmap(unsigned short width, unsigned short height) : m_width(width), m_height(height) {
    const std::size_t n = byte_count();
    if (n != 0) pixels = new unsigned char[n]();
}

bitmap::bitmap(const bitmap& other) : m_width(other.m_width), m_height(other.m_height) {
    const std::size_t n = byte_count();
    if (n != 0) {
        pixels = new unsigned char[n];
        std::copy(other.pixels, other.pixels + n, pixels);
    }
}

bitmap::bitmap(bitmap&& other) noexcept { swap(other); }

bitmap& bitmap::operator=(const bitmap& other) {
    bitmap copy(other);
    swap(copy);
    return *this;
}

bitmap& bitmap::operator=(bitmap&& other) noexcept {
    swap(other);
    return *this;
}

bitmap::~bitmap() { delete[] pixels; }

void bitmap::set_pixel(unsigned short x, unsigned short y, const graphics::color& c) {
    FACET_CHECK(x < m_width && y < m_height);
    unsigned char* p = pixels + (static_cast<std::size_t>(y) * m_width + x) * 4u;
    p[0] = static_cast<unsigned char>(c.get_red_component());
    p[1] = static_cast<unsigned char>(c.get_green_component());
    p[2] = static_cast<unsigned char>(c.get_blue_component());
    p[3] = static_cast<unsigned char>(c.get_alpha_component());
}

graphics::color bitmap::get_pixel(unsigned short x, unsigned short y) const {
    FACET_CHECK(x < m_width && y < m_height);
    const unsigned char* p = pixels + (static_cast<std::size_t>(y) * m_width + x) * 4u;
    return graphics::color(p[0], p[1], p[2], p[3]);
}

void bitmap::swap(bitmap& other) noexcept {
    std::swap(pixels, other.pixels);
    std::swap(m_width, other.m_width);
    std::swap(m_height, other.m_height);
}

}  // namespace graphics
