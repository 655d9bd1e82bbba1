#include <gtest/gtest.h>

#include <set>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

TEST(Mipmap, AveragesTwoByTwoBlocksTruncatingAndDropsOddEdges) {
    bitmap src(3, 3);
    src.set_pixel(0, 0, color(1, 10, 100, 255));
    src.set_pixel(1, 0, color(2, 10, 101, 255));
    src.set_pixel(0, 1, color(2, 10, 101, 254));
    src.set_pixel(1, 1, color(2, 11, 101, 254));
    src.set_pixel(2, 2, color(255, 255, 255, 255));  // in the dropped column and row
    bitmap dst(9, 9);
    graphics::create_next_mipmap_level(src, dst);
    ASSERT_EQ(dst.width(), 1);
    ASSERT_EQ(dst.height(), 1);
    EXPECT_EQ(dst.get_pixel(0, 0), color(1, 10, 100, 254));  // 7/4, 41/4, 403/4, 1018/4

    bitmap wide(4, 2);
    wide.set_pixel(2, 1, color(200, 0, 0, 0));
    wide.set_pixel(3, 0, color(0, 40, 0, 0));
    graphics::create_next_mipmap_level(wide, wide);  // in place
    ASSERT_EQ(wide.width(), 2);
    ASSERT_EQ(wide.height(), 1);
    EXPECT_EQ(wide.get_pixel(0, 0), color(0, 0, 0, 0));
    EXPECT_EQ(wide.get_pixel(1, 0), color(50, 10, 0, 0));

    graphics::create_next_mipmap_level(bitmap(1, 8), dst);
    EXPECT_EQ(dst.begin(), dst.end());
    EXPECT_EQ(dst.width(), 0);
}

namespace {
bitmap hatch(const color& line, const color& back, float period, float width, float sharpness,
             unsigned short size) {
    bitmap b;
    graphics::make_hatched_texture(line, back, period, width, sharpness, size, b);
    return b;
}
}  // namespace

TEST(Hatch, PatternRepositoryHatchRoundsTheBlendedChannels) {
    const bitmap b = hatch(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, 64);
    ASSERT_EQ(b.width(), 64);
    ASSERT_EQ(b.height(), 64);
    // (0, 0): t = 1/64, e = 0.025, s = 0.68359..., 255 * (1 - s) = 80.68 rounds to 81.
    EXPECT_EQ(b.get_pixel(0, 0), color(81, 81, 81, 255));
    EXPECT_EQ(b.get_pixel(1, 1), color(0, 0, 0, 255));          // t = 3/64: on the stripe
    EXPECT_EQ(b.get_pixel(10, 10), color(255, 255, 255, 255));  // between stripes
    EXPECT_EQ(b.get_pixel(17, 16), color(0, 0, 0, 255));        // the next period
    for (unsigned short y = 0; y < 64; ++y) {
        for (unsigned short x = 0; x < y; ++x) {
            ASSERT_EQ(b.get_pixel(x, y), b.get_pixel(y, x)) << x << "," << y;  // diagonal
        }
    }
}

TEST(Hatch, SharpnessOneGivesPureColorsAndLineWidthZeroBackOnly) {
    const color line(10, 20, 30, 0), back(200, 210, 220, 255);
    std::set<unsigned> colors;
    const bitmap hard = hatch(line, back, 0.25f, 0.1f, 1.0f, 32);
    for (unsigned short y = 0; y < 32; ++y) {
        for (unsigned short x = 0; x < 32; ++x) colors.insert(hard.get_pixel(x, y).get_rgbvalue());
    }
    EXPECT_EQ(colors, (std::set<unsigned>{line.get_rgbvalue(), back.get_rgbvalue()}));
    EXPECT_EQ(hard.get_pixel(0, 0), line);  // alpha blends too

    const bitmap none = hatch(line, back, 0.25f, 0.0f, 0.3f, 16);
    for (const unsigned char* p = none.begin(); p != none.end(); p += 4) {
        ASSERT_EQ(color(p[0], p[1], p[2], p[3]), back);
    }
    EXPECT_EQ(hatch(line, back, 0.0f, 0.1f, 0.5f, 4).get_pixel(3, 2), line);  // t is NaN

    bitmap out(5, 5);
    graphics::make_hatched_texture(line, back, 0.5f, 0.1f, 0.5f, 0, out);
    EXPECT_EQ(out.width(), 0);
    EXPECT_EQ(out.begin(), out.end());
}
