// Text drawn into bitmaps. The checks hold for any version of the fonts: they look at where
// the ink is, not at individual glyph pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

namespace {

const color ink_color(0, 0, 0);
const color paper(255, 255, 255);

bitmap draw(const char* text, int font_size, unsigned short w, unsigned short h,
            const char* font = "Arial") {
    bitmap b;
    graphics::make_texture_xy(font, font_size, ink_color, paper, w, h, text, b);
    return b;
}

bool inked(const bitmap& b, unsigned short x, unsigned short y) {
    return b.get_pixel(x, y) != paper;
}

struct ink_box {
    int left = 1 << 20, right = -1, bottom = 1 << 20, top = -1;  // inclusive, rows upwards
    double cx = 0, cy = 0, weight = 0;
    bool empty() const { return right < 0; }
};

ink_box ink_of(const bitmap& b) {
    ink_box box;
    for (unsigned short y = 0; y < b.height(); ++y) {
        for (unsigned short x = 0; x < b.width(); ++x) {
            const double w = 255 - b.get_pixel(x, y).get_red_component();
            if (w == 0) continue;
            box.left = std::min<int>(box.left, x);
            box.right = std::max<int>(box.right, x);
            box.bottom = std::min<int>(box.bottom, y);
            box.top = std::max<int>(box.top, y);
            box.cx += w * (x + 0.5);
            box.cy += w * (y + 0.5);
            box.weight += w;
        }
    }
    box.cx /= box.weight;
    box.cy /= box.weight;
    return box;
}

bool same_pixels(const bitmap& a, const bitmap& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           std::equal(a.begin(), a.end(), b.begin());
}

}  // namespace

TEST(TextTexture, CentredInkOnBackgroundWithOpaqueAlpha) {
    bitmap b;
    graphics::make_texture_xy("Arial", 32, color(0, 0, 0, 0), color(255, 255, 255, 0), 96, 64,
                              "HOH", b);
    ASSERT_EQ(b.width(), 96);
    ASSERT_EQ(b.height(), 64);
    for (const unsigned char* p = b.begin(); p != b.end(); p += 4) ASSERT_EQ(p[3], 255);
    EXPECT_FALSE(inked(b, 0, 0));
    EXPECT_FALSE(inked(b, 95, 63));
    const ink_box box = ink_of(b);
    ASSERT_FALSE(box.empty());
    EXPECT_NEAR(box.cx, 48.0, 2.0);
    EXPECT_NEAR(box.cy, 32.0, 3.0);
    EXPECT_NEAR(box.top - box.bottom + 1, 0.72 * 32, 3.0);  // cap height of a sans font

    bitmap square;
    graphics::make_texture("Arial", 32, color(0, 0, 0, 0), color(255, 255, 255, 0), 64, "HOH",
                           square);
    EXPECT_TRUE(same_pixels(square, draw("HOH", 32, 64, 64)));
}

TEST(TextTexture, AntiAliasedPixelsBlendTextOverBackground) {
    bitmap b;
    graphics::make_texture_xy("Arial", 40, color(255, 0, 0), color(0, 0, 255), 64, 64, "O", b);
    bool partial = false;
    for (const unsigned char* p = b.begin(); p != b.end(); p += 4) {
        ASSERT_EQ(p[1], 0);
        ASSERT_NEAR(p[0] + p[2], 255, 1);
        partial = partial || (p[0] != 0 && p[0] != 255);
    }
    EXPECT_TRUE(partial);
}

TEST(TextTexture, RowZeroIsTheBottomOfTheDrawing) {
    const ink_box underscore = ink_of(draw("_", 40, 64, 64));
    ASSERT_FALSE(underscore.empty());
    EXPECT_LT(underscore.top, 32);

    const bitmap t = draw("T", 40, 64, 64);
    const ink_box box = ink_of(t);
    auto row_ink = [&t](unsigned short y) {
        int n = 0;
        for (unsigned short x = 0; x < t.width(); ++x) n += inked(t, x, y);
        return n;
    };
    EXPECT_GT(row_ink(static_cast<unsigned short>(box.top - 1)),
              2 * row_ink(static_cast<unsigned short>(box.bottom + 1)));  // the bar is on top
}

TEST(TextTexture, MinusSignWidensTheTextAndBothStayCentred) {
    const ink_box plain = ink_of(draw("12", 48, 160, 64));
    const ink_box negative = ink_of(draw("-12", 48, 160, 64));
    ASSERT_FALSE(plain.empty());
    ASSERT_FALSE(negative.empty());
    EXPECT_GT(negative.right - negative.left, plain.right - plain.left + 8);
    EXPECT_NEAR(plain.left, 159 - plain.right, 4);
    EXPECT_NEAR(negative.left, 159 - negative.right, 4);
    EXPECT_NEAR(negative.bottom, plain.bottom, 1);
}

TEST(TextTexture, TextLargerThanTheBitmapIsCutAtItsEdges) {
    const bitmap narrow = draw("WWWWWW", 48, 64, 64);
    const bitmap wide = draw("WWWWWW", 48, 1024, 64);
    EXPECT_FALSE(ink_of(wide).empty());
    bool left_edge = false, right_edge = false;
    for (unsigned short y = 0; y < 64; ++y) {
        left_edge = left_edge || inked(narrow, 0, y);
        right_edge = right_edge || inked(narrow, 63, y);
        for (unsigned short x = 0; x < 64; ++x) {
            ASSERT_EQ(narrow.get_pixel(x, y), wide.get_pixel(x + 480, y)) << x << "," << y;
        }
    }
    EXPECT_TRUE(left_edge && right_edge);

    const bitmap low = draw("Hg", 48, 64, 16);
    const bitmap tall = draw("Hg", 48, 64, 64);
    for (unsigned short y = 0; y < 16; ++y) {
        for (unsigned short x = 0; x < 64; ++x) {
            ASSERT_EQ(low.get_pixel(x, y), tall.get_pixel(x, y + 24)) << x << "," << y;
        }
    }
}

TEST(TextTexture, NothingToDrawGivesTheBackgroundOnly) {
    for (const char* text : {"", " "}) EXPECT_TRUE(ink_of(draw(text, 48, 32, 32)).empty());
    EXPECT_TRUE(ink_of(draw("H", 0, 8, 8)).empty());
    EXPECT_TRUE(ink_of(draw("H", -20, 8, 8)).empty());
    bitmap b;
    graphics::make_texture_xy("Arial", 20, ink_color, paper, 8, 8, nullptr, b);
    EXPECT_TRUE(ink_of(b).empty());
    graphics::make_texture_xy("Arial", 20, ink_color, paper, 0, 8, "H", b);
    EXPECT_EQ(b.begin(), b.end());
    EXPECT_EQ(b.height(), 8);
}

TEST(TextTexture, FontNamesResolveToTwinsAndUnknownNamesToTheFallback) {
    const bitmap arial = draw("Ag", 40, 64, 64, "Arial");
    EXPECT_FALSE(ink_of(arial).empty());
    EXPECT_TRUE(same_pixels(arial, draw("Ag", 40, 64, 64, "arial")));
    EXPECT_TRUE(same_pixels(arial, draw("Ag", 40, 64, 64, "Liberation Sans")));

    const bitmap unknown = draw("Ag", 40, 64, 64, "No Such Font Family");
    EXPECT_FALSE(ink_of(unknown).empty());
    EXPECT_TRUE(same_pixels(unknown, draw("Ag", 40, 64, 64, "DejaVu Sans")));
    EXPECT_TRUE(same_pixels(unknown, draw("Ag", 40, 64, 64, nullptr)));
}

TEST(TextTexture, InvalidUtf8BytesStandForLatin1Characters) {
    const bitmap utf8 = draw("\xc3\xa9", 40, 64, 64);
    EXPECT_FALSE(ink_of(utf8).empty());
    EXPECT_TRUE(same_pixels(utf8, draw("\xe9", 40, 64, 64)));
    EXPECT_FALSE(same_pixels(utf8, draw("\xc3\xa9\xe9", 40, 64, 64)));
}
