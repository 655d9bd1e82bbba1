// Text drawn into bitmaps, checked by where the ink is and by comparing drawings (any font
// version).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "facet/textures.h"

using graphics::bitmap;
using graphics::color;

namespace {

// Text in (255, 10, 0) on (0, 200, 255): the red byte is the coverage.
bitmap draw(const char* text, int font_size, unsigned short w, unsigned short h,
            const char* font = "Arial") {
    bitmap b;
    graphics::make_texture_xy(font, font_size, color(255, 10, 0, 0), color(0, 200, 255, 0), w, h,
                              text, b);
    return b;
}

bool inked(const bitmap& b, int x, int y) { return b.begin()[(y * b.width() + x) * 4] != 0; }

struct ink_box {
    int left = 1 << 20, right = -1, bottom = 1 << 20, top = -1;  // inclusive, rows upwards
    bool empty() const { return right < 0; }
};

ink_box ink_of(const bitmap& b) {
    ink_box box;
    for (int y = 0; y < b.height(); ++y)
        for (int x = 0; x < b.width(); ++x)
            if (inked(b, x, y))
                box = {std::min(box.left, x), std::max(box.right, x), std::min(box.bottom, y),
                       std::max(box.top, y)};
    return box;
}

bool same(const bitmap& a, const bitmap& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           std::equal(a.begin(), a.end(), b.begin());
}

TEST(TextTexture, CentredOpaqueBlendRoundedToTheNearestByteWithRowZeroAtTheBottom) {
    const bitmap b = draw("HOH", 32, 96, 64);
    ASSERT_TRUE(b.width() == 96 && b.height() == 64);
    bool partial = false;
    for (const unsigned char* p = b.begin(); p != b.end(); p += 4) {
        const int c = p[0];
        ASSERT_TRUE(p[1] == std::lround((200.0 * (255 - c) + 10.0 * c) / 255.0) &&
                    p[2] == 255 - c && p[3] == 255)
            << c;
        partial = partial || (c != 0 && c != 255);
    }
    EXPECT_TRUE(partial);
    const ink_box box = ink_of(b);
    EXPECT_NEAR(box.left + box.right + 1, 96, 4);
    EXPECT_NEAR(box.bottom + box.top + 1, 64, 6);
    EXPECT_NEAR(box.top - box.bottom + 1, 0.72 * 32, 3.0);  // cap height of a sans font
    bitmap square;
    graphics::make_texture("Arial", 32, color(255, 10, 0), color(0, 200, 255), 64, "HOH", square);
    EXPECT_TRUE(same(square, draw("HOH", 32, 64, 64)));

    EXPECT_LT(ink_of(draw("_", 40, 64, 64)).top, 32);
    const bitmap t = draw("T", 40, 64, 64);
    const ink_box tb = ink_of(t);
    int bar = 0, stem = 0;
    for (int x = 0; x < 64; ++x) bar += inked(t, x, tb.top - 1), stem += inked(t, x, tb.bottom + 1);
    EXPECT_GT(bar, 2 * stem);  // the bar is on top
}

TEST(TextTexture, TextLargerThanTheBitmapIsCutAtItsEdges) {
    const bitmap narrow = draw("WWWWWW", 48, 64, 64), wide = draw("WWWWWW", 48, 1024, 64);
    const bitmap low = draw("Hg", 48, 64, 16), tall = draw("Hg", 48, 64, 64);
    EXPECT_TRUE(ink_of(narrow).left == 0 && ink_of(narrow).right == 63);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) ASSERT_EQ(narrow.get_pixel(x, y), wide.get_pixel(x + 480, y));
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 64; ++x) ASSERT_EQ(low.get_pixel(x, y), tall.get_pixel(x, y + 24));
}

TEST(TextTexture, NothingToDrawGivesTheBackgroundOnly) {
    for (const char* text : {"", " ", static_cast<const char*>(nullptr)})
        EXPECT_TRUE(ink_of(draw(text, 48, 32, 32)).empty());
    EXPECT_TRUE(ink_of(draw("H", 0, 8, 8)).empty() && ink_of(draw("H", -20, 8, 8)).empty());
    const bitmap none = draw("H", 20, 0, 8);
    EXPECT_TRUE(none.begin() == none.end() && none.height() == 8);
}

TEST(TextTexture, FontNamesResolveToTwinsAndUnknownNamesToTheFallback) {
    const bitmap arial = draw("Ag", 40, 64, 64, "Arial");
    const bitmap unknown = draw("Ag", 40, 64, 64, "No Such Font Family");
    EXPECT_FALSE(ink_of(arial).empty() || ink_of(unknown).empty() || same(arial, unknown));
    for (const char* name : {"arial", "Liberation Sans"})
        EXPECT_TRUE(same(arial, draw("Ag", 40, 64, 64, name))) << name;
    // "serif": a generic name whose fonts are only weakly bound to it finds no font of its own.
    for (const char* name : {"DejaVu Sans", static_cast<const char*>(nullptr), "serif"})
        EXPECT_TRUE(same(unknown, draw("Ag", 40, 64, 64, name))) << (name ? name : "null");
}

TEST(TextTexture, BytesOutsideValidShortestUtf8StandForLatin1Characters) {
    // Each text and its bytes as Latin-1 in UTF-8: the same drawing unless the text is valid.
    const struct {
        const char *text, *latin1;
        bool valid;
    } cases[] = {{"\xc3\xa9", "\xc3\x83\xc2\xa9", true},
                 {"\xe9", "\xc3\xa9", false},
                 {"\xe0\xa0\x80", "\xc3\xa0\xc2\xa0\xc2\x80", true},  // U+0800
                 {"\xed\x9f\xbf", "\xc3\xad\xc2\x9f\xc2\xbf", true},  // U+D7FF
                 {"\xee\x80\x80", "\xc3\xae\xc2\x80\xc2\x80", true},  // U+E000
                 {"\xf0\x90\x80\x80", "\xc3\xb0\xc2\x90\xc2\x80\xc2\x80", true},
                 {"\xf4\x8f\xbf\xbf", "\xc3\xb4\xc2\x8f\xc2\xbf\xc2\xbf", true},  // U+10FFFF
                 {"\xc1\xa9", "\xc3\x81\xc2\xa9", false},                         // overlong
                 {"\xe0\x9f\xbf", "\xc3\xa0\xc2\x9f\xc2\xbf", false},
                 {"\xf0\x8f\xbf\xbf", "\xc3\xb0\xc2\x8f\xc2\xbf\xc2\xbf", false},
                 {"\xed\xa0\x80", "\xc3\xad\xc2\xa0\xc2\x80", false},  // surrogates
                 {"\xed\xbf\xbf", "\xc3\xad\xc2\xbf\xc2\xbf", false},
                 {"\xf4\x90\x80\x80", "\xc3\xb4\xc2\x90\xc2\x80\xc2\x80", false},  // too large
                 {"\xf5\x80\x80\x80", "\xc3\xb5\xc2\x80\xc2\x80\xc2\x80", false},
                 {"\xc3\x41", "\xc3\x83\x41", false},  // no continuation byte
                 {"A\xc3", "A\xc3\x83", false}};       // cut by the end
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const bitmap drawn = draw(c.text, 28, 200, 48);
        EXPECT_FALSE(ink_of(drawn).empty()) << c.latin1;
        EXPECT_EQ(same(drawn, draw(c.latin1, 28, 200, 48)), !c.valid) << c.latin1;
    }
}

}  // namespace
