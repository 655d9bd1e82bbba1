// The library's textures as OpenGL textures: a graphics::texture_manager whose ids are GL
// texture names, so that TGA images, hatch patterns and text labels made by the library land
// in the current context with their mipmap levels.
#pragma once

#include <map>
#include <string>

#include "facet/bitmap.h"
#include "facet/textures.h"

namespace facet_gl {

/// A texture manager backed by GL textures of the context current at each call. Ids are GL
/// texture names (never 0). Every texture repeats and filters linearly; once mipmap levels
/// are stored, minification uses them (trilinear).
///
/// The store must be used while the context that owns its textures is current, and destroyed
/// before that context (its destructor deletes the textures). Register it with
/// graphics::set_global_texture_manager for the library's generators; unregister it before
/// it goes away (the destructor does so if it is still the registered manager).
class texture_store : public graphics::texture_manager {
public:
    texture_store() = default;
    ~texture_store() override;
    texture_store(const texture_store&) = delete;
    texture_store& operator=(const texture_store&) = delete;

    /// Uploads `image` as level 0 of a new texture and returns its name. An empty bitmap
    /// gives a 1 x 1 opaque white texture.
    unsigned create_texture(const graphics::bitmap& image) override;
    /// Replaces level 0 of texture `id` and drops its mipmap levels; an unknown id is ignored.
    void update_texture(unsigned id, const graphics::bitmap& image) override;
    /// Deletes texture `id`; an unknown id is ignored.
    void delete_texture(unsigned id) override;
    /// Stores `image` as mipmap level `level` (>= 1) of texture `id`; the texture then
    /// samples levels 0 .. the highest level stored. An unknown id, level 0 or an empty image
    /// is ignored.
    void set_texture_level(unsigned id, const graphics::bitmap& image, unsigned level) override;
    /// Binds texture `id` to GL_TEXTURE_2D (0 or an unknown id unbinds).
    void bind_texture(unsigned id) override;
    void unbind_texture() override;

    /// True when `id` names a texture of this store.
    bool contains(unsigned id) const { return m_textures.count(id) != 0; }
    /// Width and height of level 0 of texture `id` in pixels; (0, 0) for an unknown id.
    void size_of(unsigned id, int& width, int& height) const;

    /// Reads the TGA file `path` (graphics::read_tga), uploads it with its whole chain of
    /// mipmap levels (graphics::create_next_mipmap_level) and returns the id. Textures read
    /// once are cached by path. Throws graphics::tga_exception for an unreadable file.
    unsigned load_tga(const std::string& path);

private:
    struct texture {
        int width = 0;
        int height = 0;
        unsigned max_level = 0;
    };
    std::map<unsigned, texture> m_textures;
    std::map<std::string, unsigned> m_files;
};

}  // namespace facet_gl
