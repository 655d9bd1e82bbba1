#include "materials.h"

#include "commands.h"
#include "facet/textures.h"
#include "output_file.h"

namespace facet_tool {

namespace {

unsigned make_hatch(facet_gl::texture_store& store) {
    graphics::bitmap pattern;
    graphics::make_hatched_texture(graphics::color(0, 0, 0, 255), graphics::color(255, 255, 255, 255),
                                   0.5, 0.1, 0.5, 64, pattern);
    return store.create_texture(pattern);
}

}  // namespace

void apply_material_references(const facet::scene& s, const std::string& folder,
                               facet_gl::texture_store& store) {
    unsigned hatch = 0;
    for (primitives::basic_object& object : s) {
        const std::string& ref = object.get_material_ref_id();
        unsigned id = 0;
        if (ref == "hatch") {
            if (hatch == 0) hatch = make_hatch(store);
            id = hatch;
            object.set_show_texture_in_bw_mode(true);
        } else if (extension_of(ref) == ".tga") {
            const std::string path = ref.front() == '/' ? ref : folder + ref;
            try {
                id = store.load_tga(path);
            } catch (const std::exception& e) {
                throw tool_error(path + ": " + e.what() + " (texture of '" + object.get_name() +
                                 "')");
            }
        } else {
            continue;
        }
        object.enable_texturing(true);
        object.set_texture_id(id);
    }
}

}  // namespace facet_tool
