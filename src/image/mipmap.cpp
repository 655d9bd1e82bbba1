// The next smaller mipmap level: a 2 x 2 box filter.
#include "facet/textures.h"

namespace graphics {

void create_next_mipmap_level(const bitmap& src, bitmap& dst) {
    const unsigned short w = static_cast<unsigned short>(src.width() / 2);
    const unsigned short h = static_cast<unsigned short>(src.height() / 2);
    bitmap level(w, h);
    const std::size_t src_row = static_cast<std::size_t>(src.width()) * 4u;
    const unsigned char* in = src.begin();
    unsigned char* out = level.begin();
    for (std::size_t y = 0; y < h; ++y) {
        const unsigned char* top = in + 2 * y * src_row;  // source row 2y
        const unsigned char* bottom = top + src_row;      // source row 2y + 1
        for (std::size_t x = 0; x < w; ++x, top += 8, bottom += 8, out += 4) {
            for (int c = 0; c < 4; ++c) {
                const unsigned sum = unsigned(top[c]) + top[4 + c] + bottom[4 + c] + bottom[c];
                out[c] = static_cast<unsigned char>(sum >> 2);
            }
        }
    }
    dst.swap(level);
}

}  // namespace graphics
