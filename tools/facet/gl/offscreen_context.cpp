#include "gl/offscreen_context.h"

#include <GL/osmesa.h>

#include <cstring>
#include <string>

#include "gl/gl.h"

namespace facet_gl {

int offscreen_context::max_size() { return 16384; }

offscreen_context::offscreen_context(int width, int height) : m_width(width), m_height(height) {
    if (width < 1 || height < 1 || width > max_size() || height > max_size())
        throw gl_error("image size " + std::to_string(width) + "x" + std::to_string(height) +
                       " outside 1 .. " + std::to_string(max_size()) + " pixels");
    const int attributes[] = {OSMESA_FORMAT,
                              OSMESA_RGBA,
                              OSMESA_DEPTH_BITS,
                              24,
                              OSMESA_STENCIL_BITS,
                              8,
                              OSMESA_PROFILE,
                              OSMESA_COMPAT_PROFILE,
                              OSMESA_CONTEXT_MAJOR_VERSION,
                              4,
                              OSMESA_CONTEXT_MINOR_VERSION,
                              5,
                              0};
    OSMesaContext context = OSMesaCreateContextAttribs(attributes, nullptr);
    if (context == nullptr)
        throw gl_error("cannot create an off-screen OpenGL 4.5 context (OSMesa)");
    m_buffer.assign(static_cast<std::size_t>(width) * height * 4, 0);
    if (!OSMesaMakeCurrent(context, m_buffer.data(), GL_UNSIGNED_BYTE, width, height)) {
        OSMesaDestroyContext(context);
        throw gl_error("cannot make the off-screen OpenGL context current");
    }
    m_context = context;
}

offscreen_context::~offscreen_context() {
    OSMesaMakeCurrent(nullptr, nullptr, GL_UNSIGNED_BYTE, 0, 0);
    OSMesaDestroyContext(static_cast<OSMesaContext>(m_context));
}

rgba_image offscreen_context::read_pixels() const {
    glFinish();
    rgba_image image;
    image.width = m_width;
    image.height = m_height;
    image.pixels.resize(m_buffer.size());
    const std::size_t row = static_cast<std::size_t>(m_width) * 4;
    for (int y = 0; y < m_height; ++y)
        std::memcpy(image.pixels.data() + row * y, m_buffer.data() + row * (m_height - 1 - y), row);
    return image;
}

}  // namespace facet_gl
