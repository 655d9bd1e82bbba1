// Colors, brushes and pens: packing, clamping, HSL, equality and the text forms.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

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

TEST(Color, ComponentsWrapToEightBitsAndPackAsBgr) {
    // Each color and its components as 0xBBGGRRAA.
    std::vector<unsigned> packed;
    for (const color& c : {color(), color(0x12, 0x34, 0x56, 0x78), color(1, 2, 3),
                           color(256, 257, 511, 1024), color(300, 0, 0)})
        packed.push_back(c.get_rgbvalue() << 8 | c.get_alpha_component());
    EXPECT_EQ(packed,
              (std::vector<unsigned>{0xff, 0x56341278, 0x030201ff, 0xff010000, 0x00002cff}));
    color c(1, 2, 3, 7, 0.25, 9.0f);
    c.set(10, 20, 30);  // alpha back to 255, the extras stay
    EXPECT_EQ(c, color(10, 20, 30, 255, 0.25, 9.0f));
    c.set(1, 2, 3, 4);
    EXPECT_EQ(c, color(1, 2, 3, 4, 0.25, 9.0f));
}

TEST(Color, ReflectionAndShininessAreClampedButNanIsKept) {
    color c;
    std::vector<double> got;
    for (double v : {-0.5, 2.0, 0.3, 500.0, -1.0, 7.0}) {
        c.set_reflection(v);
        c.set_shininess(static_cast<float>(v));
        got.insert(got.end(), {c.get_reflection(), c.get_shininess()});
    }
    EXPECT_EQ(got, (std::vector<double>{0, 0, 1, 2, 0.3, 0.3f, 1, 128, 0, 0, 1, 7}));
    c.set_reflection(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(c.get_reflection()));
    EXPECT_TRUE(std::isnan(color(0, 0, 0, 0, 0.0, std::nanf("")).get_shininess()));
    EXPECT_EQ(color(0, 0, 0, 0, 7.0, 1000.0f), color(0, 0, 0, 0, 1.0, 128.0f));
}

TEST(Color, ToHslRoundsEachStepToFloat) {
    const float g128 = static_cast<float>(128 * (1.0 / 255.0));
    const struct {
        color c;
        float h, s, l;
    } cases[] = {{color(128, 128, 128), 0, 0, g128},
                 {color(255, 0, 0), 0, 1, 0.5f},
                 {color(0, 0, 255), 2 / 3.0f, 1, 0.5f},
                 {color(0, 255, 0), 1 / 3.0f, 1, 0.5f},
                 {color(255, 0, 255), 5 / 6.0f, 1, 0.5f},           // red wins the tie with blue
                 {color(255, 128, 128), 0, 1, (1 + g128) * 0.5f}};  // the l >= 0.5 branch
    for (const auto& t : cases) {
        SCOPED_TRACE(text_of(t.c));
        float h = -1, s = -1, l = -1;
        t.c.to_hsl(h, s, l);
        EXPECT_FLOAT_EQ(h, t.h);
        EXPECT_TRUE(s == t.s && l == t.l) << s << " " << l;
    }
}

TEST(Appearance, TextFormsPutWidthBeforeStyleAndLeaveOutTheExtras) {
    EXPECT_EQ(text_of(color(255, 0, 0)) + " | " + text_of(brush()) + " | " + text_of(pen()) +
                  " | " + text_of(pen(color(9, 8, 7, 6), 4, 2)),
              "255 0 0 255 | 255 255 255 255 0 | 0 0 0 255 1 0 | 9 8 7 6 4 2");

    std::istringstream is("  1\t2\n3   260 rest 10 20 30 40 7 1 2 3 4 5 6 1 2 x");
    color c(9, 9, 9, 9, 0.75, 4.0f);
    brush b;
    pen p;
    std::string rest;
    is >> c >> rest >> b >> p;
    ASSERT_TRUE(is);
    EXPECT_TRUE(c == color(1, 2, 3, 4, 0.75, 4.0f) && rest == "rest" &&  // wrapped, extras kept
                b == brush(color(10, 20, 30, 40), 7) && p == pen(color(1, 2, 3, 4), 5, 6));
    c.read(is);
    EXPECT_TRUE(is.fail());
}

}  // namespace
