#include "png_image.h"

#include <png.h>

#include <cstdio>
#include <memory>
#include <ostream>
#include <vector>

#include "commands.h"

namespace facet_tool {

namespace {

[[noreturn]] void on_error(png_structp png, png_const_charp message) {
    *static_cast<std::string*>(png_get_error_ptr(png)) = message;
    png_longjmp(png, 1);
}

void on_warning(png_structp, png_const_charp) {}

void on_write(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::ostream*>(png_get_io_ptr(png));
    out->write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(length));
}

void on_flush(png_structp png) { static_cast<std::ostream*>(png_get_io_ptr(png))->flush(); }

}  // namespace

void write_png(std::ostream& out, const facet_gl::rgba_image& image) {
    std::vector<png_byte> rgb(static_cast<std::size_t>(image.width) * image.height * 3);
    for (std::size_t i = 0, n = rgb.size() / 3; i < n; ++i)
        for (int c = 0; c < 3; ++c) rgb[i * 3 + c] = image.pixels[i * 4 + c];
    std::vector<png_bytep> rows(static_cast<std::size_t>(image.height));
    for (int y = 0; y < image.height; ++y)
        rows[y] = rgb.data() + static_cast<std::size_t>(y) * image.width * 3;

    std::string error;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error, on_error, on_warning);
    if (png == nullptr) throw tool_error("cannot start the PNG writer");
    png_infop info = png_create_info_struct(png);
    if (info == nullptr || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        throw tool_error("PNG: " + (error.empty() ? std::string("out of memory") : error));
    }
    png_set_write_fn(png, &out, on_write, on_flush);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width),
                 static_cast<png_uint_32>(image.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);
    png_write_info(png, info);
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    if (!out) throw tool_error("PNG: cannot write the image");
}

facet_gl::rgba_image read_png(const std::string& path) {
    png_image img{};
    img.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&img, path.c_str()))
        throw tool_error(path + ": " + img.message);
    img.format = PNG_FORMAT_RGBA;
    facet_gl::rgba_image out;
    out.width = static_cast<int>(img.width);
    out.height = static_cast<int>(img.height);
    out.pixels.resize(PNG_IMAGE_SIZE(img));
    if (!png_image_finish_read(&img, nullptr, out.pixels.data(), 0, nullptr)) {
        const std::string message = img.message;
        png_image_free(&img);
        throw tool_error(path + ": " + message);
    }
    return out;
}

}  // namespace facet_tool
