// RGBA bitmaps and uncompressed true-color TGA files.
//
//   graphics::bitmap         8-bit RGBA pixels, row 0 first, no row padding
//   graphics::tga_exception  what read_tga throws for an unreadable or unsupported file
//   graphics::read_tga       loads a 24- or 32-bit uncompressed TGA file
//   graphics::write_tga      stores a bitmap as a 32-bit TGA file, bytes as they are in memory
#pragma once

#include <cstddef>
#include <exception>

#include "facet/appearance.h"
#include "facet/export.h"

namespace graphics {

/// A block of 8-bit RGBA pixels. Pixel (x, y) starts at byte (y * width + x) * 4 and holds
/// red, green, blue and alpha in this order; rows follow one another without padding and row 0
/// comes first. Width and height are unsigned 16-bit values. The bitmap owns its pixels.
class FACET_API bitmap {
public:
    /// An empty bitmap: no pixels, width and height 0.
    bitmap() noexcept = default;
    /// A width x height bitmap, every byte 0 (transparent black). A bitmap with a zero width or
    /// height holds no pixel array but keeps both sizes.
    bitmap(unsigned short width, unsigned short height);
    /// A deep copy of the pixels.
    bitmap(const bitmap& other);
    /// Takes the pixels over; `other` is left empty.
    bitmap(bitmap&& other) noexcept;
    /// Copies into a temporary and swaps with it (a failed copy leaves this bitmap unchanged).
    bitmap& operator=(const bitmap& other);
    /// Swaps with `other`; `other` is left with this bitmap's former pixels.
    bitmap& operator=(bitmap&& other) noexcept;
    ~bitmap();

    /// The first pixel byte and one past the last (begin + width * 4 * height). Both are null
    /// for a bitmap without pixels.
    unsigned char* begin() noexcept { return pixels; }
    unsigned char* end() noexcept { return pixels + byte_count(); }
    const unsigned char* begin() const noexcept { return pixels; }
    const unsigned char* end() const noexcept { return pixels + byte_count(); }

    unsigned short width() const noexcept { return m_width; }
    unsigned short height() const noexcept { return m_height; }

    /// Stores the red, green, blue and alpha components of `c` in pixel (x, y). Outside the
    /// bitmap fails the check "x < m_width && y < m_height".
    void set_pixel(unsigned short x, unsigned short y, const graphics::color& c);
    /// The pixel (x, y) as color(red, green, blue, alpha). Outside the
    /// bitmap fails the check "x < m_width && y < m_height".
    graphics::color get_pixel(unsigned short x, unsigned short y) const;

    /// Exchanges the pixel arrays and the sizes.
    void swap(bitmap& other) noexcept;

private:
    std::size_t byte_count() const noexcept {
        return static_cast<std::size_t>(m_width) * 4u * m_height;
    }

    unsigned char* pixels = nullptr;
    unsigned short m_width = 0;
    unsigned short m_height = 0;
};

/// The failure of read_tga. Holds a pointer to a string literal, which it neither copies nor
/// owns; what() returns it.
class FACET_API tga_exception : public std::exception {
public:
    explicit tga_exception(const char* message) noexcept : m_message(message) {}
    const char* what() const noexcept override;

private:
    const char* m_message;
};

/// Replaces `out` with the image in the TGA file `filename`: uncompressed true color
/// (datatype 2), no color map, 24 or 32 bits per pixel. The file's rows are taken in file order
/// (the first row of the file becomes row 0; the origin bit is not looked at), its
/// blue-green-red(-alpha) bytes become red-green-blue-alpha, and 24-bit pixels get alpha 255.
///
/// Throws tga_exception, leaving `out` unchanged, with one of these messages:
/// "Unable to open TGA file", "Error reading TGA header", "Error reading id field",
/// "Condition \"tga_hdr.colormaptype == 0\" invalid",
/// "Condition \"tga_hdr.datatypecode == 2\" invalid",
/// "Condition \"tga_hdr.bitsperpixel == 32 || tga_hdr.bitsperpixel == 24\" invalid",
/// "Error reading image data" (the file holds fewer pixel bytes than its header announces; memory
/// is only allocated as the data actually arrives, so a lying header costs nothing).
FACET_API void read_tga(const char* filename, bitmap& out);

/// Writes `image` to `filename` (created or truncated) as a 32-bit TGA file: the 18-byte header
/// (datatype 2, image descriptor 8) and then the pixel bytes exactly as stored, red first. The
/// bytes are not reordered, so read_tga of the file returns red and blue exchanged. Reports no
/// failure: a file that cannot be opened or written is silently left as it is.
FACET_API void write_tga(const char* filename, const bitmap& image);

}  // namespace graphics
