// Reading and writing uncompressed true-color TGA files.
//
// A TGA file may be hostile: every count in its header is checked against what the file
// actually delivers before memory is committed to it. The pixel data is read in chunks that
// grow geometrically as bytes arrive, so a header announcing 65535 x 65535 x 4 bytes over a
// file of ten bytes costs one small chunk, not 16 GiB.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include "facet/bitmap.h"

namespace graphics {

const char* tga_exception::what() const noexcept { return m_message; }

namespace {

constexpr std::size_t header_size = 18;
constexpr std::size_t first_chunk = std::size_t(1) << 16;

struct file_closer {
    void operator()(std::FILE* f) const noexcept { std::fclose(f); }
};
using file_ptr = std::unique_ptr<std::FILE, file_closer>;

struct tga_header {
    unsigned idlength = 0;
    unsigned colormaptype = 0;
    unsigned datatypecode = 0;
    unsigned short width = 0;
    unsigned short height = 0;
    unsigned bitsperpixel = 0;
};

unsigned short little_endian_16(const unsigned char* p) {
    return static_cast<unsigned short>(p[0] | (p[1] << 8));
}

tga_header decode_header(const unsigned char (&raw)[header_size]) {
    tga_header h;
    h.idlength = raw[0];
    h.colormaptype = raw[1];
    h.datatypecode = raw[2];
    // Bytes 3-11 (color map origin, length and depth, image origins) are not used.
    h.width = little_endian_16(raw + 12);
    h.height = little_endian_16(raw + 14);
    h.bitsperpixel = raw[16];
    return h;
}

/// Reads exactly `n` bytes, allocating only as the data arrives. Throws "Error reading image
/// data" when the file ends first.
std::vector<unsigned char> read_exactly(std::FILE* f, std::size_t n) {
    std::vector<unsigned char> data;
    std::size_t got = 0;
    while (got < n) {
        const std::size_t want = std::min(n - got, std::max(got, first_chunk));
        data.resize(got + want);
        const std::size_t r = std::fread(data.data() + got, 1, want, f);
        got += r;
        if (r < want) throw tga_exception("Error reading image data");
    }
    return data;
}

}  // namespace

void read_tga(const char* filename, bitmap& out) {
    file_ptr file(filename ? std::fopen(filename, "rb") : nullptr);
    if (!file) throw tga_exception("Unable to open TGA file");
    std::FILE* f = file.get();

    unsigned char raw[header_size];
    if (std::fread(raw, 1, header_size, f) != header_size) {
        throw tga_exception("Error reading TGA header");
    }
    const tga_header tga_hdr = decode_header(raw);

    if (tga_hdr.idlength != 0) {
        unsigned char id_field[255];
        if (std::fread(id_field, 1, tga_hdr.idlength, f) != tga_hdr.idlength) {
            throw tga_exception("Error reading id field");
        }
    }

    if (!(tga_hdr.colormaptype == 0)) {
        throw tga_exception("Condition \"tga_hdr.colormaptype == 0\" invalid");
    }
    if (!(tga_hdr.datatypecode == 2)) {
        throw tga_exception("Condition \"tga_hdr.datatypecode == 2\" invalid");
    }
    if (!(tga_hdr.bitsperpixel == 32 || tga_hdr.bitsperpixel == 24)) {
        throw tga_exception(
            "Condition \"tga_hdr.bitsperpixel == 32 || tga_hdr.bitsperpixel == 24\" invalid");
    }

    const std::size_t b = tga_hdr.bitsperpixel / 8;
    const std::size_t count = static_cast<std::size_t>(tga_hdr.width) * tga_hdr.height;
    const std::vector<unsigned char> data = read_exactly(f, count * b);

    bitmap image(tga_hdr.width, tga_hdr.height);
    unsigned char* px = image.begin();
    const unsigned char* src = data.data();
    // Blue-green-red(-alpha) in the file, red-green-blue-alpha in the bitmap.
    for (std::size_t i = 0; i < count; ++i, px += 4, src += b) {
        px[0] = src[2];
        px[1] = src[1];
        px[2] = src[0];
        px[3] = b == 4 ? src[3] : 255;
    }
    out.swap(image);
}

void write_tga(const char* filename, const bitmap& image) {
    file_ptr file(filename ? std::fopen(filename, "wb") : nullptr);
    if (!file) return;
    unsigned char header[header_size] = {};
    header[2] = 2;  // uncompressed true color
    header[12] = static_cast<unsigned char>(image.width() & 0xffu);
    header[13] = static_cast<unsigned char>(image.width() >> 8);
    header[14] = static_cast<unsigned char>(image.height() & 0xffu);
    header[15] = static_cast<unsigned char>(image.height() >> 8);
    header[16] = 32;
    header[17] = 8;  // eight attribute bits, bottom-left origin
    if (std::fwrite(header, 1, header_size, file.get()) != header_size) return;
    const std::size_t n = static_cast<std::size_t>(image.end() - image.begin());
    if (n != 0) std::fwrite(image.begin(), 1, n, file.get());
}

}  // namespace graphics
