// An OpenGL context that draws into memory: Mesa's off-screen renderer with an RGBA color
// buffer, 24 depth bits and 8 stencil bits, on the multi-threaded software rasterizer.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace facet_gl {

/// A failure of the drawing module (no context, an image size the renderer refuses).
class gl_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// 8-bit RGBA pixels, top row first, no padding: pixel (x, y) starts at (y * width + x) * 4.
struct rgba_image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// An off-screen OpenGL 4.5 compatibility context with its own framebuffer, current on the
/// calling thread from construction to destruction. One at a time per thread.
///
/// Not copyable, not movable: the context points into its own color buffer.
class offscreen_context {
public:
    /// Creates the context and a width x height framebuffer (pixels) and makes it current.
    /// Throws gl_error for a size outside 1 .. max_size() or when Mesa cannot create the
    /// context.
    offscreen_context(int width, int height);
    /// Releases the context (textures and buffers made in it go with it).
    ~offscreen_context();
    offscreen_context(const offscreen_context&) = delete;
    offscreen_context& operator=(const offscreen_context&) = delete;

    int width() const { return m_width; }
    int height() const { return m_height; }

    /// The largest width and height the renderer accepts, in pixels.
    static int max_size();

    /// Waits for drawing to finish and returns the framebuffer, top row first.
    rgba_image read_pixels() const;

private:
    void* m_context = nullptr;  // OSMesaContext
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_buffer;  // Mesa draws here, bottom row first
};

}  // namespace facet_gl
