// Fuzz harness: text labels (graphics::make_texture and make_texture_xy) with arbitrary text,
// font names, font sizes and colors, into bitmaps of bounded size.
//
// Input layout: byte 0 picks the font name (a known family, an unknown one, the empty name, a
// null name, or a name taken from the input), bytes 1-4 the font size (a signed 32-bit value,
// extremes included), bytes 5-6 width and height (0 to 255), bytes 7-14 the text and background
// colors; with a name from the input, byte 15 gives its length and the name follows. The rest is
// the text (cut to 512 bytes), passed as a NUL-terminated string, or as a null text when byte 0
// says so. Every pixel must come out opaque, and a square label must equal the same label drawn
// by make_texture_xy.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <facet/bitmap.h>
#include <facet/textures.h>

namespace {

constexpr std::size_t max_text = 512;

/// Takes bytes from the front of the input; 0 once it is used up.
class byte_reader {
public:
    byte_reader(const uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    uint8_t byte() { return m_pos < m_size ? m_data[m_pos++] : 0; }
    std::int32_t int32() {
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v = (v << 8) | byte();
        std::int32_t s;
        std::memcpy(&s, &v, sizeof s);
        return s;
    }
    std::string take(std::size_t n) {
        n = std::min(n, m_size - m_pos);
        std::string s(reinterpret_cast<const char*>(m_data + m_pos), n);
        m_pos += n;
        return s;
    }

private:
    const uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "label_fuzz: %s\n", what);
    std::abort();
}

/// Font sizes that matter most, picked by the low bits of the raw value; else the value itself.
int font_size_of(std::int32_t raw) {
    switch (raw & 0xf) {
        case 0:
            return 0;
        case 1:
            return -1;
        case 2:
            return 2147483647;
        case 3:
            return -2147483647 - 1;
        case 4:
            return 1;
        default:
            return raw % 4096;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    byte_reader in(data, size);
    const uint8_t choice = in.byte();
    const int font_size = font_size_of(in.int32());
    const unsigned short width = in.byte();
    const unsigned short height = in.byte();
    unsigned channels[8];
    for (unsigned& c : channels) c = in.byte();  // in order: argument order is unspecified
    const graphics::color text_color(channels[0], channels[1], channels[2], channels[3]);
    const graphics::color back_color(channels[4], channels[5], channels[6], channels[7]);

    static const char* const families[] = {"Arial", "DejaVu Sans", "Liberation Serif",
                                           "No Such Font", ""};
    std::string font_name;
    const char* font = nullptr;
    const unsigned pick = choice % 8;
    if (pick < 5) {
        font = families[pick];
    } else if (pick == 6) {
        font_name = in.take(in.byte() % 24);
        font = font_name.c_str();
    }
    const std::string text = in.take(max_text);
    const char* text_arg = (choice & 0x80) != 0 ? nullptr : text.c_str();

    graphics::bitmap label;
    graphics::make_texture_xy(font, font_size, text_color, back_color, width, height, text_arg,
                              label);
    if (label.width() != width || label.height() != height) fail("the label has another size");
    for (const unsigned char* p = label.begin(); p != label.end(); p += 4)
        if (p[3] != 255) fail("a label pixel is not opaque");

    if (width <= 64) {
        graphics::bitmap square;
        graphics::make_texture(font, font_size, text_color, back_color, width, text_arg, square);
        graphics::bitmap same;
        graphics::make_texture_xy(font, font_size, text_color, back_color, width, width, text_arg,
                                  same);
        if (!std::equal(square.begin(), square.end(), same.begin(), same.end()))
            fail("make_texture differs from make_texture_xy of a square");
    }
    return 0;
}
