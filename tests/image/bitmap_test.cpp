#include <gtest/gtest.h>

#include <utility>

#include "facet/bitmap.h"

using graphics::bitmap;
using graphics::color;

TEST(Bitmap, SizesAndZeroedRgbaLayoutRowZeroFirst) {
    const bitmap empty;
    EXPECT_EQ(empty.width(), 0);
    EXPECT_EQ(empty.begin(), nullptr);
    EXPECT_EQ(empty.begin(), empty.end());

    bitmap b(3, 2);
    ASSERT_EQ(b.end() - b.begin(), 3 * 2 * 4);
    for (const unsigned char* p = b.begin(); p != b.end(); ++p) EXPECT_EQ(*p, 0);

    b.set_pixel(2, 1, color(10, 20, 30, 40));
    const unsigned char* p = b.begin() + (1 * 3 + 2) * 4;
    EXPECT_EQ(p[0], 10);
    EXPECT_EQ(p[1], 20);
    EXPECT_EQ(p[2], 30);
    EXPECT_EQ(p[3], 40);
    EXPECT_EQ(b.get_pixel(2, 1), color(10, 20, 30, 40));
    EXPECT_EQ(b.get_pixel(1, 1), color(0, 0, 0, 0));

    const bitmap flat(0, 7);  // no pixels, both sizes kept
    EXPECT_EQ(flat.height(), 7);
    EXPECT_EQ(flat.begin(), flat.end());
}

TEST(Bitmap, CopiesAreDeepMovesAndSwapsExchange) {
    bitmap a(2, 2);
    a.set_pixel(1, 1, color(1, 2, 3));
    bitmap copy(a);
    copy.set_pixel(1, 1, color(9, 9, 9));
    EXPECT_EQ(a.get_pixel(1, 1), color(1, 2, 3));

    bitmap assigned(5, 5);
    assigned = a;
    EXPECT_EQ(assigned.width(), 2);
    EXPECT_EQ(assigned.get_pixel(1, 1), color(1, 2, 3));
    EXPECT_NE(assigned.begin(), a.begin());

    const unsigned char* pixels = a.begin();
    bitmap moved(std::move(a));
    EXPECT_EQ(moved.begin(), pixels);
    EXPECT_EQ(a.begin(), nullptr);  // NOLINT(bugprone-use-after-move)

    bitmap other(1, 3);
    const unsigned char* other_pixels = other.begin();
    moved.swap(other);
    EXPECT_EQ(moved.width(), 1);
    EXPECT_EQ(moved.height(), 3);
    EXPECT_EQ(moved.begin(), other_pixels);
    EXPECT_EQ(other.begin(), pixels);
}

TEST(BitmapDeathTest, PixelAccessOutsideFailsTheCheck) {
    bitmap b(4, 3);
    EXPECT_DEATH(b.set_pixel(4, 0, color()), "x < m_width && y < m_height");
    EXPECT_DEATH(b.get_pixel(0, 3), "x < m_width && y < m_height");
    const bitmap empty;
    EXPECT_DEATH(empty.get_pixel(0, 0), "x < m_width && y < m_height");
}
