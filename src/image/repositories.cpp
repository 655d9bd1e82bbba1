// The global texture manager and the pattern and label repositories.
#include <algorithm>

#include "facet/check.h"
#include "facet/textures.h"
#include "image/global_manager.h"

namespace graphics {

namespace {

texture_manager* g_texture_manager = nullptr;

/// A label size as a bitmap extent, clamped to 0..65535.
unsigned short to_extent(long long v) {
    return static_cast<unsigned short>(std::clamp(v, 0LL, 65535LL));
}

}  // namespace

texture_manager::~texture_manager() = default;

void set_global_texture_manager(texture_manager* manager) { g_texture_manager = manager; }

texture_manager* get_global_texture_manager() { return g_texture_manager; }

// ---- patterns ---------------------------------------------------------------------------

void pattern_repos::init() {
    texture_manager& manager = facet::image::global_manager();
    bitmap hatch_image;
    make_hatched_texture(color(0, 0, 0), color(255, 255, 255), 0.5f, 0.1f, 0.5f, 64, hatch_image);
    m_ids.push_back(manager.create_texture(hatch_image));
}

unsigned pattern_repos::get_texture_id(style s) const {
    FACET_CHECK(s < m_ids.size());
    return m_ids[s];
}

bool pattern_repos::is_pattern(unsigned id) const {
    return std::find(m_ids.begin(), m_ids.end(), id) != m_ids.end();
}

pattern_repos& get_pattern_repos() {
    static pattern_repos repos;
    return repos;
}

// ---- labels -----------------------------------------------------------------------------

unsigned label_repos::get_texture_id(const std::string& text) {
    const auto cached = m_cache.find(text);
    if (cached != m_cache.end()) return cached->second;

    texture_manager& manager = facet::image::global_manager();
    bitmap image;
    make_texture_xy("Arial", font_size, fg_color, bg_color, to_extent(width), to_extent(height),
                    text.c_str(), image);
    const unsigned id = manager.create_texture(image);

    long long f = 1;
    for (int level = 1; level <= mipmap_gen_level; ++level) {
        f = 2 * f;
        const long long w = width / f, h = height / f, s = font_size / f;
        if (std::min(w, h) < 1) break;
        bitmap smaller;
        make_texture_xy("Arial", static_cast<int>(s), fg_color, bg_color, to_extent(w),
                        to_extent(h), text.c_str(), smaller);
        manager.set_texture_level(id, smaller, static_cast<unsigned>(level));
    }
    m_cache.emplace(text, id);
    return id;
}

label_repos& get_label_repos() {
    static label_repos repos;
    return repos;
}

}  // namespace graphics

namespace facet::image {

graphics::texture_manager& global_manager() {
    FACET_CHECK(graphics::get_global_texture_manager() != nullptr);
    return *graphics::get_global_texture_manager();
}

}  // namespace facet::image
