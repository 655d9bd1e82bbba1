// Text forms of color ("R G B A"), brush ("R G B A S") and pen ("R G B A W S").
#include <istream>
#include <ostream>

#include "facet/appearance.h"

namespace graphics {

void color::write(std::ostream& os) const {
    os << get_red_component() << ' ' << get_green_component() << ' ' << get_blue_component() << ' '
       << get_alpha_component();
}

void color::read(std::istream& is) {
    unsigned r = 0;
    unsigned g = 0;
    unsigned b = 0;
    unsigned a = 0;
    is >> r >> g >> b >> a;
    set(r, g, b, a);
}

void brush::write(std::ostream& os) const {
    m_color.write(os);
    os << ' ' << m_style;
}

void brush::read(std::istream& is) {
    m_color.read(is);
    is >> m_style;
}

void pen::write(std::ostream& os) const {
    m_color.write(os);
    os << ' ' << m_width << ' ' << m_style;
}

void pen::read(std::istream& is) {
    m_color.read(is);
    is >> m_width >> m_style;
}

std::ostream& operator<<(std::ostream& os, const color& c) {
    c.write(os);
    return os;
}

std::istream& operator>>(std::istream& is, color& c) {
    c.read(is);
    return is;
}

std::ostream& operator<<(std::ostream& os, const brush& b) {
    b.write(os);
    return os;
}

std::istream& operator>>(std::istream& is, brush& b) {
    b.read(is);
    return is;
}

std::ostream& operator<<(std::ostream& os, const pen& p) {
    p.write(os);
    return os;
}

std::istream& operator>>(std::istream& is, pen& p) {
    p.read(is);
    return is;
}

}  // namespace graphics
