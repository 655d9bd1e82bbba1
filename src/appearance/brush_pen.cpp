// graphics::brush, graphics::pen, graphics::style and graphics::texture_info.
#include "facet/appearance.h"

namespace graphics {

brush::brush() : m_color(255, 255, 255, 255) {}

brush::brush(const graphics::color& c) : m_color(c) {}

brush::brush(const graphics::color& c, unsigned style) : m_color(c), m_style(style) {}

bool brush::operator==(const brush& other) const {
    return m_color == other.m_color && m_style == other.m_style;
}

pen::pen() = default;

pen::pen(const graphics::color& c) : m_color(c) {}

pen::pen(const graphics::color& c, unsigned width) : m_width(width), m_color(c) {}

pen::pen(const graphics::color& c, unsigned width, unsigned style)
    : m_style(style), m_width(width), m_color(c) {}

bool pen::operator==(const pen& other) const {
    return m_style == other.m_style && m_width == other.m_width && m_color == other.m_color;
}

texture_info::texture_info(std::uint32_t texture_id_, std::uint32_t norm_map_id_,
                           graphics::texgen_mode texgen, graphics::texture_mode mode,
                           double scale_u, double scale_v, bool rotated)
    : texture_id(texture_id_),
      norm_map_id(norm_map_id_),
      texgen_mode(texgen),
      texture_mode(mode),
      texture_scale(scale_u, scale_v),
      texture_rotated(rotated) {}

style::style(const std::string& name_, const graphics::brush& b, const graphics::pen& p)
    : name(name_), brush(b), pen(p) {}

}  // namespace graphics
