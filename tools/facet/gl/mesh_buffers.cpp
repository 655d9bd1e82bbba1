#include "gl/mesh_buffers.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "gl/gl.h"
#include "gl/texture_store.h"

namespace facet_gl {

gl_buffer::~gl_buffer() {
    if (m_name != 0) {
        const GLuint name = m_name;
        glDeleteBuffers(1, &name);
    }
}

gl_buffer& gl_buffer::operator=(gl_buffer&& other) noexcept {
    if (this != &other) {
        gl_buffer old(std::move(*this));
        m_name = other.m_name;
        other.m_name = 0;
    }
    return *this;
}

void gl_buffer::upload(const void* data, std::size_t bytes) {
    if (m_name == 0) {
        GLuint name = 0;
        glGenBuffers(1, &name);
        m_name = name;
    }
    glBindBuffer(GL_ARRAY_BUFFER, m_name);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), data, GL_STATIC_DRAW);
}

void gl_buffer::bind() const { glBindBuffer(GL_ARRAY_BUFFER, m_name); }

namespace {

std::int16_t to_short(double v) {
    const double c = std::max(-1.0, std::min(1.0, v));
    return static_cast<std::int16_t>(std::lround(c * 32767.0));
}

void put(float* out, const vector3d& v) {
    out[0] = static_cast<float>(v.x);
    out[1] = static_cast<float>(v.y);
    out[2] = static_cast<float>(v.z);
}

// The color a face or a line gets in black-and-white mode.
graphics::color bw_color(const paint& p, bool line) {
    return line || p.black ? graphics::color(0, 0, 0, 255) : graphics::color(255, 255, 255, 255);
}

// The texture settings that apply to a face: its style's, or the mesh's without a style.
struct face_texture {
    unsigned id = 0;
    graphics::texture_mode mode = graphics::texture_mode::modulate;
};

face_texture texture_of(const indexedfaceset& mesh, std::int32_t style, const paint& p,
                        const texture_store& textures) {
    face_texture t;
    if (!p.textures) return t;
    if (style >= 0 && static_cast<std::uint32_t>(style) < mesh.num_styles()) {
        const graphics::texture_info& info = mesh.get_style(style).texture;
        if (info.texturing) t = {info.texture_id, info.texture_mode};
    } else if (mesh.get_textured()) {
        t = {mesh.get_texture_id(), mesh.get_texture_mode()};
    }
    if (!textures.contains(t.id)) t = face_texture{};
    return t;
}

}  // namespace

void face_buffers::upload(const indexedfaceset& mesh, const paint& p,
                          const texture_store& textures) {
    const std::uint32_t n = mesh.num_faces();
    const carray<face>& faces = mesh.faces();

    // Batch of every face: one per distinct (texture, mode, transparency), in first-seen order.
    std::vector<std::uint32_t> batch_of(n);
    m_batches.clear();
    for (std::uint32_t i = 0; i < n; ++i) {
        const face& f = faces[i];
        const face_texture t = texture_of(mesh, f.style, p, textures);
        const bool transparent = !p.bw && f.brush.get_color().get_alpha_component() < 255;
        std::uint32_t b = 0;
        while (b < m_batches.size() &&
               (m_batches[b].texture != t.id || m_batches[b].mode != t.mode ||
                m_batches[b].transparent != transparent))
            ++b;
        if (b == m_batches.size()) {
            face_batch fresh;
            fresh.texture = t.id;
            fresh.mode = t.mode;
            fresh.transparent = transparent;
            m_batches.push_back(fresh);
        }
        ++m_batches[b].count;
        batch_of[i] = b;
    }
    std::vector<std::uint32_t> next(m_batches.size());
    int first = 0;
    for (std::size_t b = 0; b < m_batches.size(); ++b) {
        m_batches[b].first = first;
        next[b] = static_cast<std::uint32_t>(first);
        first += m_batches[b].count;
        m_batches[b].count *= 3;
        m_batches[b].first *= 3;
    }
    const bool textured = std::any_of(m_batches.begin(), m_batches.end(),
                                      [](const face_batch& b) { return b.texture != 0; });

    m_vertices = static_cast<std::size_t>(n) * 3;
    std::vector<float> positions(m_vertices * 3);
    std::vector<std::int16_t> normals(m_vertices * 4, 0);
    std::vector<std::uint8_t> colors(m_vertices * 4);
    std::vector<float> uv(textured ? m_vertices * 2 : 0, 0.0f);
    for (std::uint32_t i = 0; i < n; ++i) {
        const face& f = faces[i];
        const std::size_t slot = next[batch_of[i]]++;
        std::uint8_t rgba[4];
        color_bytes(p.bw ? bw_color(p, false) : f.brush.get_color(), rgba);
        for (int k = 0; k < 3; ++k) {
            const std::size_t v = slot * 3 + static_cast<std::size_t>(k);
            const std::uint32_t corner = 3 * i + static_cast<std::uint32_t>(k);
            put(&positions[v * 3], mesh.get_vertex(f.vertex[k]));
            const vector3d& nrm =
                corner < mesh.normals().size() ? mesh.get_normal(corner) : f.normal;
            normals[v * 4] = to_short(nrm.x);
            normals[v * 4 + 1] = to_short(nrm.y);
            normals[v * 4 + 2] = to_short(nrm.z);
            std::copy(rgba, rgba + 4, &colors[v * 4]);
            if (textured && f.texcoord[k] < mesh.num_texcoords()) {
                const texcoord& t = mesh.get_texcoord(f.texcoord[k]);
                uv[v * 2] = t.u;
                uv[v * 2 + 1] = t.v;
            }
        }
    }
    m_positions.upload(positions.data(), positions.size() * sizeof(float));
    m_normals.upload(normals.data(), normals.size() * sizeof(std::int16_t));
    m_colors.upload(colors.data(), colors.size());
    if (textured) m_texcoords.upload(uv.data(), uv.size() * sizeof(float));
}

void face_buffers::bind() const {
    glEnableClientState(GL_VERTEX_ARRAY);
    m_positions.bind();
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glEnableClientState(GL_NORMAL_ARRAY);
    m_normals.bind();
    glNormalPointer(GL_SHORT, 8, nullptr);
    glEnableClientState(GL_COLOR_ARRAY);
    m_colors.bind();
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, nullptr);
    if (!m_texcoords.empty()) {
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        m_texcoords.bind();
        glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
    } else {
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void line_buffers::upload_lines(const indexedfaceset& mesh, const paint& p) {
    std::vector<float> positions;
    std::vector<std::uint8_t> colors;
    std::vector<float> widths;
    const std::uint32_t nv = mesh.num_vertices();
    for (std::uint32_t i = 0; i < mesh.num_lines(); ++i) {
        const line& l = mesh.get_line(i);
        if (l.start >= nv || l.end >= nv) continue;
        float a[3], b[3];
        put(a, mesh.get_vertex(l.start));
        put(b, mesh.get_vertex(l.end));
        positions.insert(positions.end(), a, a + 3);
        positions.insert(positions.end(), b, b + 3);
        std::uint8_t rgba[4];
        color_bytes(p.bw ? bw_color(p, true) : l.pen.get_color(), rgba);
        colors.insert(colors.end(), rgba, rgba + 4);
        colors.insert(colors.end(), rgba, rgba + 4);
        widths.push_back(static_cast<float>(std::max(1u, l.pen.get_width())));
    }
    upload(positions, colors, widths);
}

void line_buffers::upload_edges(const indexedfaceset& mesh, const paint& p) {
    std::vector<float> positions;
    std::vector<std::uint8_t> colors;
    std::vector<float> widths;
    const carray<halfedge>& edges = mesh.edges();
    const std::uint32_t nv = mesh.num_vertices();
    for (std::uint32_t e = 0; e < edges.size(); ++e) {
        const halfedge& h = edges[e];
        if (!h.drawn() || (h.m_twinedge != nullptr && h.m_twinedge < &h)) continue;
        if (h.next == nullptr || h.face == nullptr || h.vertex >= nv || h.next->vertex >= nv)
            continue;
        float a[3], b[3];
        put(a, mesh.get_vertex(h.vertex));
        put(b, mesh.get_vertex(h.next->vertex));
        positions.insert(positions.end(), a, a + 3);
        positions.insert(positions.end(), b, b + 3);
        const graphics::pen& pen = h.face->pen;
        std::uint8_t rgba[4];
        color_bytes(p.bw ? bw_color(p, true) : pen.get_color(), rgba);
        colors.insert(colors.end(), rgba, rgba + 4);
        colors.insert(colors.end(), rgba, rgba + 4);
        widths.push_back(static_cast<float>(std::max(1u, pen.get_width())));
    }
    upload(positions, colors, widths);
}

void line_buffers::upload(const std::vector<float>& positions,
                          const std::vector<std::uint8_t>& colors,
                          const std::vector<float>& widths) {
    m_batches.clear();
    const std::size_t n = widths.size();
    if (n == 0) return;
    // Segments in order of width, stable, so that one draw call covers each width.
    std::vector<std::uint32_t> order(n);
    std::iota(order.begin(), order.end(), 0u);
    const bool uniform =
        std::all_of(widths.begin(), widths.end(), [&](float w) { return w == widths[0]; });
    const std::vector<float>* pos = &positions;
    const std::vector<std::uint8_t>* col = &colors;
    std::vector<float> sorted_positions;
    std::vector<std::uint8_t> sorted_colors;
    if (!uniform) {
        std::stable_sort(order.begin(), order.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return widths[a] < widths[b]; });
        sorted_positions.resize(positions.size());
        sorted_colors.resize(colors.size());
        for (std::size_t i = 0; i < n; ++i) {
            std::copy_n(&positions[order[i] * 6], 6, &sorted_positions[i * 6]);
            std::copy_n(&colors[order[i] * 8], 8, &sorted_colors[i * 8]);
        }
        pos = &sorted_positions;
        col = &sorted_colors;
    }
    for (std::size_t i = 0; i < n; ++i) {
        const float w = widths[order[i]];
        if (m_batches.empty() || m_batches.back().width != w)
            m_batches.push_back(line_batch{static_cast<int>(i * 2), 0, w});
        m_batches.back().count += 2;
    }
    m_positions.upload(pos->data(), pos->size() * sizeof(float));
    m_colors.upload(col->data(), col->size());
}

void line_buffers::bind() const {
    glEnableClientState(GL_VERTEX_ARRAY);
    m_positions.bind();
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glEnableClientState(GL_COLOR_ARRAY);
    m_colors.bind();
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, nullptr);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

}  // namespace facet_gl
