#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include "facet/appearance.h"

using graphics::color;

namespace {

template <class T>
std::string text_of(const T& value) {
    std::ostringstream os;
    os << value;
    return os.str();
}

}  // namespace

TEST(Color, ConstructorsSetDefaultsAndPackComponents) {
    const color black;
    EXPECT_EQ(black.get_red_component(), 0u);
    EXPECT_EQ(black.get_alpha_component(), 255u);
    EXPECT_EQ(black.get_reflection(), 0.0);
    EXPECT_EQ(black.get_shininess(), 1.0f);

    const color c(0x12, 0x34, 0x56, 0x78);
    EXPECT_EQ(c.get_red_component(), 0x12u);
    EXPECT_EQ(c.get_green_component(), 0x34u);
    EXPECT_EQ(c.get_blue_component(), 0x56u);
    EXPECT_EQ(c.get_alpha_component(), 0x78u);
    EXPECT_EQ(c.get_rgbvalue(), 0x00563412u);  // 0x00BBGGRR
    EXPECT_EQ(color(1, 2, 3).get_alpha_component(), 255u);
}

TEST(Color, ComponentsWrapToEightBits) {
    EXPECT_EQ(color(300, 0, 0).get_red_component(), 44u);
    const color c(256, 257, 511, 1024);
    EXPECT_EQ(c.get_red_component(), 0u);
    EXPECT_EQ(c.get_green_component(), 1u);
    EXPECT_EQ(c.get_blue_component(), 255u);
    EXPECT_EQ(c.get_alpha_component(), 0u);
    EXPECT_EQ(c.get_rgbvalue() >> 24, 0u);
}

TEST(Color, SetWithoutAlphaResetsAlphaButKeepsExtras) {
    color c(1, 2, 3, 7, 0.25, 9.0f);
    c.set(10, 20, 30);
    EXPECT_EQ(c.get_alpha_component(), 255u);
    EXPECT_EQ(c.get_red_component(), 10u);
    EXPECT_EQ(c.get_reflection(), 0.25);
    EXPECT_EQ(c.get_shininess(), 9.0f);
    c.set(1, 2, 3, 4);
    EXPECT_EQ(c.get_alpha_component(), 4u);
}

TEST(Color, ReflectionAndShininessAreClamped) {
    color c;
    c.set_reflection(-0.5);
    EXPECT_EQ(c.get_reflection(), 0.0);
    c.set_reflection(2);
    EXPECT_EQ(c.get_reflection(), 1.0);
    c.set_reflection(0.3);
    EXPECT_EQ(c.get_reflection(), 0.3);
    c.set_reflection(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(c.get_reflection()));

    c.set_shininess(500.0f);
    EXPECT_EQ(c.get_shininess(), 128.0f);
    c.set_shininess(-1.0f);
    EXPECT_EQ(c.get_shininess(), 0.0f);
    EXPECT_TRUE(std::isnan(color(0, 0, 0, 0, 0.0, std::nanf("")).get_shininess()));

    const color clamped(0, 0, 0, 0, 7.0, 1000.0f);
    EXPECT_EQ(clamped.get_reflection(), 1.0);
    EXPECT_EQ(clamped.get_shininess(), 128.0f);
}

TEST(Color, EqualityLooksBeyondTheTextForm) {
    const color a(1, 2, 3, 4, 0.5, 2.0f);
    color b(1, 2, 3, 4, 0.5, 3.0f);
    EXPECT_NE(a, b);
    EXPECT_EQ(text_of(a), text_of(b));
    b.set_shininess(2.0f);
    EXPECT_EQ(a, b);
    b.set_reflection(0.4);
    EXPECT_TRUE(a != b);
    EXPECT_NE(color(1, 2, 3, 4), color(1, 2, 3, 5));
}

TEST(Color, ToHsl) {
    float h = -1, s = -1, l = -1;
    color(128, 128, 128).to_hsl(h, s, l);
    EXPECT_EQ(h, 0.0f);
    EXPECT_EQ(s, 0.0f);
    EXPECT_EQ(l, static_cast<float>(128 * (1.0 / 255.0)));

    color(255, 0, 0).to_hsl(h, s, l);
    EXPECT_EQ(h, 0.0f);
    EXPECT_EQ(s, 1.0f);
    EXPECT_EQ(l, 0.5f);

    color(0, 0, 255).to_hsl(h, s, l);
    EXPECT_FLOAT_EQ(h, 2.0f / 3.0f);
    EXPECT_EQ(s, 1.0f);

    color(0, 255, 0).to_hsl(h, s, l);
    EXPECT_FLOAT_EQ(h, 1.0f / 3.0f);

    // Magenta: red and blue tie for the maximum, red wins: h = db - dg = 0.5 - 1 + 1.
    color(255, 0, 255).to_hsl(h, s, l);
    EXPECT_FLOAT_EQ(h, 5.0f / 6.0f);

    // Light colors use the l >= 0.5 saturation branch: (255, 128, 128).
    color(255, 128, 128).to_hsl(h, s, l);
    const float mx = 1.0f, mn = static_cast<float>(128 * (1.0 / 255.0));
    EXPECT_EQ(s, static_cast<float>((mx - mn) / (2.0 - mx - mn)));
    EXPECT_EQ(h, 0.0f);
}

TEST(ColorText, WritesFourIntegers) {
    EXPECT_EQ(text_of(color()), "0 0 0 255");
    EXPECT_EQ(text_of(color(255, 0, 0)), "255 0 0 255");
}

TEST(ColorText, ReadAssignsComponentsAndKeepsExtras) {
    color c(9, 9, 9, 9, 0.75, 4.0f);
    std::istringstream is("  1\t2\n3   260 rest");
    is >> c;
    EXPECT_TRUE(is);
    EXPECT_EQ(c, color(1, 2, 3, 4, 0.75, 4.0f));
    std::string rest;
    is >> rest;
    EXPECT_EQ(rest, "rest");
}

TEST(ColorText, FailedReadLeavesTheStreamFailed) {
    color c;
    std::istringstream is("1 2 x");
    c.read(is);
    EXPECT_TRUE(is.fail());
}
