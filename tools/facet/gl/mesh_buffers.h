// A scene object's mesh as OpenGL vertex buffers: its faces (one vertex per face corner, with
// the corner normals, the face colors and texture coordinates), its stand-alone lines and its
// outline edges, each grouped into batches that one draw call covers.
//
// Buffers hold object-space positions: draw them with the object's world matrix.
#pragma once

#include <cstdint>
#include <vector>

#include "facet/appearance.h"
#include "facet/ifs.h"

namespace facet_gl {

class texture_store;

/// How an object is colored.
struct paint {
    bool bw = false;       ///< black-and-white mode: faces white (black when `black`), lines black
    bool black = false;    ///< the object is drawn black in black-and-white mode
    bool textures = true;  ///< textures are drawn (in black-and-white mode: the object asks)
};

/// A GL buffer object name, deleted with its owner. Move-only.
class gl_buffer {
public:
    gl_buffer() = default;
    ~gl_buffer();
    gl_buffer(gl_buffer&& other) noexcept : m_name(other.m_name) { other.m_name = 0; }
    gl_buffer& operator=(gl_buffer&& other) noexcept;
    gl_buffer(const gl_buffer&) = delete;
    gl_buffer& operator=(const gl_buffer&) = delete;

    /// Replaces the contents with `bytes` bytes from `data` (creating the buffer first).
    void upload(const void* data, std::size_t bytes);
    /// Binds the buffer to GL_ARRAY_BUFFER.
    void bind() const;
    bool empty() const { return m_name == 0; }

private:
    unsigned m_name = 0;
};

/// A run of vertices drawn with one texture and one opacity.
struct face_batch {
    int first = 0;
    int count = 0;         ///< vertices: three per face
    unsigned texture = 0;  ///< texture store id; 0 for none
    graphics::texture_mode mode = graphics::texture_mode::modulate;
    bool transparent = false;  ///< some face of the batch has a brush alpha below 255
};

/// A run of line vertices (two per segment) drawn with one width.
struct line_batch {
    int first = 0;
    int count = 0;
    float width = 1.0f;  ///< pixels
};

/// The faces of one mesh on the GPU. Faces with a zero normal are drawn as they are.
class face_buffers {
public:
    /// Uploads the faces of `mesh`: per face its brush color (or the black-and-white color of
    /// `p`), the texture of its style (or of the mesh when the style index names none) when
    /// texturing is on for it, `p.textures` allows it and `textures` holds that id. Texture
    /// coordinate indices beyond the mesh's coordinates give (0, 0).
    void upload(const indexedfaceset& mesh, const paint& p, const texture_store& textures);
    /// Sets the vertex, normal, color and texture-coordinate arrays to these buffers.
    void bind() const;
    const std::vector<face_batch>& batches() const { return m_batches; }
    /// The number of face vertices (three per face).
    std::size_t num_vertices() const { return m_vertices; }

private:
    gl_buffer m_positions;  // float x3
    gl_buffer m_normals;    // short x4, normalized
    gl_buffer m_colors;     // unsigned byte x4
    gl_buffer m_texcoords;  // float x2, only when a batch is textured
    std::vector<face_batch> m_batches;
    std::size_t m_vertices = 0;
};

/// Line segments on the GPU: positions and colors, batched by width.
class line_buffers {
public:
    /// The stand-alone lines of `mesh`, each in its pen's color and width (black in
    /// black-and-white mode).
    void upload_lines(const indexedfaceset& mesh, const paint& p);
    /// The half-edges of `mesh` marked drawn, a paired edge once, in the pen color and width of
    /// its face (black in black-and-white mode).
    void upload_edges(const indexedfaceset& mesh, const paint& p);
    /// Sets the vertex and color arrays to these buffers (normals and texture coordinates off).
    void bind() const;
    const std::vector<line_batch>& batches() const { return m_batches; }

private:
    // Segment i: positions 6i .. 6i + 5, colors 8i .. 8i + 7, width widths[i].
    void upload(const std::vector<float>& positions, const std::vector<std::uint8_t>& colors,
                const std::vector<float>& widths);

    gl_buffer m_positions;
    gl_buffer m_colors;
    std::vector<line_batch> m_batches;
};

/// The four bytes of `c` (red, green, blue, alpha).
inline void color_bytes(const graphics::color& c, std::uint8_t out[4]) {
    out[0] = static_cast<std::uint8_t>(c.get_red_component());
    out[1] = static_cast<std::uint8_t>(c.get_green_component());
    out[2] = static_cast<std::uint8_t>(c.get_blue_component());
    out[3] = static_cast<std::uint8_t>(c.get_alpha_component());
}

}  // namespace facet_gl
