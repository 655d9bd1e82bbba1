#include "gl/texture_store.h"

#include "gl/gl.h"

namespace facet_gl {

namespace {

void upload_level(const graphics::bitmap& image, unsigned level) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, static_cast<GLint>(level), GL_RGBA8, image.width(), image.height(),
                 0, GL_RGBA, GL_UNSIGNED_BYTE, image.begin());
}

}  // namespace

texture_store::~texture_store() {
    if (graphics::get_global_texture_manager() == this)
        graphics::set_global_texture_manager(nullptr);
    for (const auto& entry : m_textures) {
        const GLuint name = entry.first;
        glDeleteTextures(1, &name);
    }
}

unsigned texture_store::create_texture(const graphics::bitmap& image) {
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    m_textures[name] = texture{};
    update_texture(name, image);
    return name;
}

void texture_store::update_texture(unsigned id, const graphics::bitmap& image) {
    auto it = m_textures.find(id);
    if (it == m_textures.end()) return;
    glBindTexture(GL_TEXTURE_2D, id);
    if (image.width() == 0 || image.height() == 0) {
        graphics::bitmap white(1, 1);
        white.set_pixel(0, 0, graphics::color(255, 255, 255, 255));
        upload_level(white, 0);
        it->second = texture{1, 1, 0};
    } else {
        upload_level(image, 0);
        it->second = texture{image.width(), image.height(), 0};
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
}

void texture_store::delete_texture(unsigned id) {
    if (m_textures.erase(id) == 0) return;
    const GLuint name = id;
    glDeleteTextures(1, &name);
    for (auto it = m_files.begin(); it != m_files.end();)
        it = it->second == id ? m_files.erase(it) : std::next(it);
}

void texture_store::set_texture_level(unsigned id, const graphics::bitmap& image, unsigned level) {
    auto it = m_textures.find(id);
    if (it == m_textures.end() || level == 0 || image.width() == 0 || image.height() == 0) return;
    glBindTexture(GL_TEXTURE_2D, id);
    upload_level(image, level);
    if (level > it->second.max_level) {
        it->second.max_level = level;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, static_cast<GLint>(level));
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
}

void texture_store::bind_texture(unsigned id) {
    glBindTexture(GL_TEXTURE_2D, contains(id) ? id : 0);
}

void texture_store::unbind_texture() { glBindTexture(GL_TEXTURE_2D, 0); }

void texture_store::size_of(unsigned id, int& width, int& height) const {
    auto it = m_textures.find(id);
    width = it == m_textures.end() ? 0 : it->second.width;
    height = it == m_textures.end() ? 0 : it->second.height;
}

unsigned texture_store::load_tga(const std::string& path) {
    auto cached = m_files.find(path);
    if (cached != m_files.end()) return cached->second;
    graphics::bitmap image;
    graphics::read_tga(path.c_str(), image);
    const unsigned id = create_texture(image);
    graphics::bitmap level;
    create_next_mipmap_level(image, level);
    for (unsigned n = 1; level.width() > 0 && level.height() > 0; ++n) {
        set_texture_level(id, level, n);
        graphics::bitmap next;
        create_next_mipmap_level(level, next);
        level.swap(next);
    }
    m_files[path] = id;
    return id;
}

}  // namespace facet_gl
