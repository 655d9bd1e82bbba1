#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "facet/appearance.h"

using graphics::brush;
using graphics::color;
using graphics::pen;

namespace {

template <class T>
std::string text_of(const T& value) {
    std::ostringstream os;
    os << value;
    return os.str();
}

}  // namespace

TEST(Brush, DefaultsAndEquality) {
    const brush b;
    EXPECT_EQ(b.get_color(), color(255, 255, 255, 255));
    EXPECT_EQ(b.get_style(), 0u);
    EXPECT_EQ(brush(color(1, 2, 3)).get_style(), 0u);

    brush other(color(255, 255, 255), 0);
    EXPECT_EQ(b, other);
    other.set_style(2);
    EXPECT_NE(b, other);
    other.set_style(0);
    other.set_color(color(255, 255, 255, 255, 0.5, 1.0f));
    EXPECT_NE(b, other);  // the reflection counts
}

TEST(Brush, TextForm) {
    EXPECT_EQ(text_of(brush()), "255 255 255 255 0");
    EXPECT_EQ(text_of(brush(color(1, 2, 3, 4), 5)), "1 2 3 4 5");

    brush b;
    std::istringstream is("10 20 30 40 7");
    is >> b;
    EXPECT_TRUE(is);
    EXPECT_EQ(b, brush(color(10, 20, 30, 40), 7));
}

TEST(Pen, ConstructorsTakeWidthBeforeStyle) {
    const pen p;
    EXPECT_EQ(p.get_style(), 0u);
    EXPECT_EQ(p.get_width(), 1u);
    EXPECT_EQ(p.get_color(), color(0, 0, 0, 255));

    const pen w(color(1, 1, 1), 3);
    EXPECT_EQ(w.get_width(), 3u);
    EXPECT_EQ(w.get_style(), 0u);

    const pen ws(color(1, 1, 1), 3, 8);
    EXPECT_EQ(ws.get_width(), 3u);
    EXPECT_EQ(ws.get_style(), 8u);

    pen copy(ws);
    EXPECT_EQ(copy, ws);
    copy = p;
    EXPECT_EQ(copy, p);
}

TEST(Pen, EqualityComparesAllThreeFields) {
    const pen base(color(1, 2, 3), 2, 1);
    EXPECT_NE(base, pen(color(1, 2, 3), 2, 0));
    EXPECT_NE(base, pen(color(1, 2, 3), 3, 1));
    EXPECT_NE(base, pen(color(1, 2, 4), 2, 1));
    EXPECT_FALSE(base != pen(color(1, 2, 3), 2, 1));
}

TEST(Pen, TextFormPutsWidthBeforeStyle) {
    EXPECT_EQ(text_of(pen()), "0 0 0 255 1 0");
    EXPECT_EQ(text_of(pen(color(9, 8, 7, 6), 4, 2)), "9 8 7 6 4 2");

    pen p;
    std::istringstream is("1 2 3 4 5 6");
    is >> p;
    EXPECT_TRUE(is);
    EXPECT_EQ(p.get_color().get_red_component(), 1u);
    EXPECT_EQ(p.get_color().get_green_component(), 2u);
    EXPECT_EQ(p.get_color().get_blue_component(), 3u);
    EXPECT_EQ(p.get_color().get_alpha_component(), 4u);
    EXPECT_EQ(p.get_width(), 5u);
    EXPECT_EQ(p.get_style(), 6u);
}

TEST(Style, DefaultsAndNamedConstructor) {
    const graphics::style s;
    EXPECT_EQ(s.name, "");
    EXPECT_EQ(s.brush, brush());
    EXPECT_EQ(s.pen, pen());
    EXPECT_EQ(static_cast<unsigned>(s.texture.texgen_mode), 1u);
    EXPECT_EQ(static_cast<unsigned>(s.texture.texture_mode), 0u);
    EXPECT_EQ(s.texture.texture_scale, vector2d(1.0, 1.0));

    const graphics::style named("std", brush(color(1, 2, 3)), pen(color(4, 5, 6), 2));
    EXPECT_EQ(named.name, "std");
    EXPECT_EQ(named.material_ref_id, "");
    EXPECT_EQ(named.brush, brush(color(1, 2, 3)));
    EXPECT_EQ(named.pen, pen(color(4, 5, 6), 2));
}

TEST(TextureInfo, ConstructorStoresArgumentsInOrder) {
    const graphics::texture_info t(7, 9, graphics::texgen_mode::none,
                                   graphics::texture_mode::replace, 2.0, 0.5, true);
    EXPECT_EQ(t.texture_id, 7u);
    EXPECT_EQ(t.norm_map_id, 9u);
    EXPECT_EQ(t.texgen_mode, graphics::texgen_mode::none);
    EXPECT_EQ(t.texture_mode, graphics::texture_mode::replace);
    EXPECT_EQ(t.texture_scale, vector2d(2.0, 0.5));
    EXPECT_TRUE(t.texture_rotated);
    EXPECT_FALSE(t.texturing);
}
