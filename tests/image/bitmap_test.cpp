// Bitmaps, mipmap levels and the hatch pattern.
#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

namespace {

TEST(Bitmap, ZeroedRgbaRowsFromRowZeroDeepCopiesAndCheckedAccess) {
    bitmap b(3, 2), flat(0, 7);  // no pixels, both sizes kept
    EXPECT_TRUE(flat.begin() == nullptr && flat.end() == nullptr && flat.height() == 7);
    ASSERT_EQ(std::vector<int>(b.begin(), b.end()), std::vector<int>(3 * 2 * 4, 0));
    b.set_pixel(2, 1, color(10, 20, 30, 40));
    EXPECT_EQ(std::vector<int>(b.begin() + 20, b.end()), (std::vector<int>{10, 20, 30, 40}));
    bitmap copy(b), assigned(5, 5);
    assigned = copy;
    copy.set_pixel(2, 1, color(9, 9, 9));
    EXPECT_TRUE(assigned.width() == 3 && assigned.get_pixel(2, 1) == b.get_pixel(2, 1));
    const unsigned char* pixels = b.begin();
    bitmap moved(std::move(b));
    moved.swap(flat);
    EXPECT_TRUE(flat.begin() == pixels && moved.height() == 7 && b.begin() == nullptr);  // NOLINT
    EXPECT_DEATH(flat.set_pixel(3, 0, color()), "x < m_width && y < m_height");
    EXPECT_DEATH(flat.get_pixel(0, 2), "x < m_width && y < m_height");
}

TEST(Mipmap, AveragesTwoByTwoBlocksTruncatingAndDropsOddEdges) {
    // 7 x 5 pixels: 3 x 2 blocks, the last column and row dropped.
    bitmap src(7, 5);
    for (unsigned short y = 0; y < 5; ++y)
        for (unsigned short x = 0; x < 7; ++x)
            src.set_pixel(x, y, color(x * 37 + y * 11, 255 - x * y, y * 50 + x, 200 + x + y));
    bitmap dst(9, 9), in_place = src;
    graphics::create_next_mipmap_level(src, dst);
    graphics::create_next_mipmap_level(in_place, in_place);
    ASSERT_TRUE(dst.width() == 3 && dst.height() == 2 && in_place.width() == 3);
    for (unsigned short y = 0; y < 2; ++y) {
        for (unsigned short x = 0; x < 3; ++x) {
            unsigned sum[4] = {0, 0, 0, 0};
            for (int k = 0; k < 16; ++k)
                sum[k % 4] += src.begin()[((2 * y + k / 8) * 7 + 2 * x + k / 4 % 2) * 4 + k % 4];
            const color expected(sum[0] / 4, sum[1] / 4, sum[2] / 4, sum[3] / 4);
            EXPECT_EQ(dst.get_pixel(x, y), expected) << x << "," << y;
            EXPECT_EQ(in_place.get_pixel(x, y), expected) << x << "," << y;
        }
    }
    graphics::create_next_mipmap_level(bitmap(1, 8), dst);
    EXPECT_TRUE(dst.begin() == dst.end() && dst.width() == 0);
}

bitmap hatch(const color& line, const color& back, float period, float width, float sharpness,
             unsigned short size) {
    bitmap b;
    graphics::make_hatched_texture(line, back, period, width, sharpness, size, b);
    return b;
}

TEST(Hatch, BlendedChannelsAreRoundedAndTheStripesDiagonal) {
    const bitmap b = hatch(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, 64);
    ASSERT_TRUE(b.width() == 64 && b.height() == 64);
    // (0, 0): t = 1/64, e = 0.025, s = 0.68359..., 255 * (1 - s) = 80.68 rounds to 81.
    // Then the stripe, its falling edge, past it, between stripes, the next period.
    std::vector<unsigned> pixels;
    for (auto [x, y] : {std::pair(0, 0), {1, 1}, {2, 2}, {3, 3}, {10, 10}, {17, 16}})
        pixels.push_back(b.get_pixel(x, y).get_rgbvalue() << 8 |
                         b.get_pixel(x, y).get_alpha_component());
    EXPECT_EQ(pixels, (std::vector<unsigned>{0x515151ff, 0xff, 0x0b0b0bff, ~0u, ~0u, 0xff}));
    for (unsigned short y = 0; y < 64; ++y)
        for (unsigned short x = 0; x < y; ++x) ASSERT_EQ(b.get_pixel(x, y), b.get_pixel(y, x));

    // Sharpness 1 gives the two colors alone (alpha blends too), line width 0 the back alone.
    const color line(10, 20, 30, 0), back(200, 210, 220, 255);
    std::set<unsigned> hard, none;
    const bitmap h = hatch(line, back, 0.25f, 0.1f, 1.0f, 32),
                 n = hatch(line, back, 0.25f, 0, 0.3f, 16);
    for (const unsigned char* p = h.begin(); p != h.end(); p += 4) hard.insert(p[0] | p[3] << 8);
    for (const unsigned char* p = n.begin(); p != n.end(); p += 4) none.insert(p[0] | p[3] << 8);
    EXPECT_EQ(hard, (std::set<unsigned>{10, 200 | 255 << 8}));
    EXPECT_EQ(none, (std::set<unsigned>{200 | 255 << 8}));
    EXPECT_EQ(h.get_pixel(0, 0), line);
    EXPECT_EQ(hatch(line, back, 0.0f, 0.1f, 0.5f, 4).get_pixel(3, 2), line);  // t is NaN
    bitmap out(5, 5);
    graphics::make_hatched_texture(line, back, 0.5f, 0.1f, 0.5f, 0, out);
    EXPECT_TRUE(out.width() == 0 && out.begin() == out.end());
}

}  // namespace
