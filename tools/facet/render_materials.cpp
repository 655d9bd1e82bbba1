#include "render_materials.h"

#include "commands.h"
#include "facet/bitmap.h"
#include "facet/textures.h"
#include "output_file.h"

namespace facet_tool {

namespace {

// The hatch pattern's id, made once per process (the library keeps the ids).
unsigned hatch_texture() {
    static bool made = false;
    if (!made) {
        graphics::get_pattern_repos().init();
        made = true;
    }
    return graphics::get_pattern_repos().get_texture_id(graphics::pattern_repos::hatch);
}

}  // namespace

void apply_material_textures(facet::scene& s, const std::string& scene_path,
                             facet_gl::texture_store& textures) {
    for (primitives::basic_object& o : s) {
        const std::string& ref = o.get_material_ref_id();
        unsigned id = 0;
        if (ref == "hatch") {
            id = hatch_texture();
            o.set_show_texture_in_bw_mode(true);  // a fill pattern is what the mode shows
        } else if (extension_of(ref) == ".tga") {
            const std::string image = ref[0] == '/' ? ref : folder_of(scene_path) + ref;
            try {
                id = textures.load_tga(image);
            } catch (const graphics::tga_exception& e) {
                throw tool_error(scene_path + ": object '" + o.get_name() + "': " + image + ": " +
                                 e.what());
            }
        }
        if (id == 0) continue;
        o.enable_texturing(true);
        o.set_texture_id(id);
    }
}

}  // namespace facet_tool
