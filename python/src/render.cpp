// Rendering through the tool's OpenGL module and glTF export through its writer.
#include "common.h"
#include "facet/primitives.h"
#include "facet/scene.h"
#include "facet/textures.h"

#ifdef FACET_PYTHON_RENDER
#include <optional>

#include "commands.h"
#include "gl/annotations.h"
#include "gl/offscreen_context.h"
#include "gl/renderer.h"
#include "gl/texture_store.h"
#include "gl/view.h"
#include "gltf_writer.h"
#include "output_file.h"
#include "png_image.h"
#include "progress.h"
#include "render_materials.h"
#endif

namespace facet_python {

#ifdef FACET_PYTHON_RENDER

namespace {

// Puts back what a render changes outside its own frame: the registered texture manager, the
// label and pattern caches (their ids name textures of the render's context, which goes away)
// and the texture settings that material references switch on.
class saved_state {
public:
    explicit saved_state(facet::scene& s)
        : m_manager(graphics::get_global_texture_manager()),
          m_labels(graphics::get_label_repos()),
          m_patterns(graphics::get_pattern_repos()) {
        for (primitives::basic_object& o : s)
            m_objects.push_back(
                {&o, o.texturing_enabled(), o.get_texture_id(), o.show_texture_in_bw_mode()});
    }
    ~saved_state() {
        graphics::set_global_texture_manager(m_manager);
        graphics::get_label_repos() = m_labels;
        graphics::get_pattern_repos() = m_patterns;
        for (const auto& o : m_objects) {
            o.object->enable_texturing(o.texturing);
            o.object->set_texture_id(o.texture_id);
            o.object->set_show_texture_in_bw_mode(o.show_in_bw);
        }
    }
    saved_state(const saved_state&) = delete;
    saved_state& operator=(const saved_state&) = delete;

private:
    struct object_state {
        primitives::basic_object* object;
        bool texturing;
        std::uint32_t texture_id;
        bool show_in_bw;
    };
    graphics::texture_manager* m_manager;
    graphics::label_repos m_labels;
    graphics::pattern_repos m_patterns;
    std::vector<object_state> m_objects;
};

[[noreturn]] void render_error(const std::string& message) {
    PyErr_SetString(py::module_::import("facet._facet").attr("RenderError").ptr(), message.c_str());
    throw py::error_already_set();
}

facet_gl::rgba_image draw(facet::scene& s, int width, int height, bool bw, bool shadows,
                          bool outlines, const std::optional<vector3d>& eye,
                          const std::optional<vector3d>& target,
                          const std::optional<graphics::color>& background,
                          const std::string& texture_dir) {
    const saved_state saved(s);
    std::unique_ptr<facet_gl::offscreen_context> context;
    try {
        context = std::make_unique<facet_gl::offscreen_context>(width, height);
    } catch (const facet_gl::gl_error& e) {
        render_error(std::string("cannot render: ") + e.what());
    }
    facet_gl::texture_store textures;
    graphics::set_global_texture_manager(&textures);
    graphics::get_label_repos() = graphics::label_repos();
    facet_gl::use_label_style();
    graphics::get_pattern_repos() = graphics::pattern_repos();
    graphics::get_pattern_repos().init();
    try {
        const std::string base =
            texture_dir.empty() || texture_dir.back() == '/' ? texture_dir : texture_dir + "/";
        facet_tool::apply_material_textures(s, base + "scene", textures);
        facet_gl::renderer renderer(textures);
        facet_gl::build_meshes(s);
        facet_gl::render_settings settings;
        settings.bw = bw;
        settings.shadows = shadows;
        settings.outlines = outlines;
        if (background) settings.background = *background;
        const facet_gl::view view = facet_gl::make_view(s.bounds(), width, height, eye, target);
        renderer.render(s, view, settings);
        return context->read_pixels();
    } catch (const facet_tool::tool_error& e) {
        render_error(e.what());
    } catch (const facet_gl::gl_error& e) {
        render_error(e.what());
    }
}

py::object render(const py::object& scene, const std::optional<std::string>& path,
                  const std::pair<int, int>& size, bool bw, bool shadows, bool outlines,
                  const std::optional<vector3d>& eye, const std::optional<vector3d>& target,
                  const std::optional<graphics::color>& background,
                  const std::string& texture_dir) {
    const int max = facet_gl::offscreen_context::max_size();
    if (size.first < 1 || size.second < 1 || size.first > max || size.second > max)
        value_error("size: width and height must be 1 to " + std::to_string(max) + " pixels");
    facet::scene& s = mutable_scene_of(scene);
    for (primitives::basic_object& o : s) check_mesh_buildable(o);
    facet_gl::rgba_image image = draw(s, size.first, size.second, bw, shadows, outlines, eye,
                                      target, background, texture_dir);
    if (path) {
        try {
            facet_tool::write_file_atomically(
                *path, [&](std::ostream& out) { facet_tool::write_png(out, image); });
        } catch (const facet_tool::tool_error& e) {
            render_error(e.what());
        }
        return py::none();
    }
    return adopt(std::move(image.pixels), {image.height, image.width, 4});
}

void export_gltf(const py::object& scene, const std::string& path, bool edges) {
    const facet::scene& s = scene_of(scene);
    if (!facet_tool::is_gltf_path(path)) value_error(path + ": expected a .glb or .gltf file");
    for (const primitives::basic_object& o : s) check_mesh_buildable(o);
    facet_tool::progress quiet(true);
    try {
        facet_tool::write_gltf(s, path, edges, quiet);
    } catch (const facet_tool::tool_error& e) {
        value_error(e.what());
    }
}

}  // namespace

void bind_render(py::module_& m) {
    m.def("render", &render, py::arg("scene"), py::arg("path") = py::none(), py::kw_only(),
          py::arg("size") = std::make_pair(640, 480), py::arg("bw") = false,
          py::arg("shadows") = true, py::arg("outlines") = true, py::arg("eye") = py::none(),
          py::arg("target") = py::none(), py::arg("background") = py::none(),
          py::arg("texture_dir") = "",
          "Renders the scene off screen with OpenGL (lit faces, stencil shadows, outline "
          "edges, labels) as the facet tool does. With a path, writes a PNG and returns None; "
          "without, returns the image as an (h, w, 4) uint8 array, top row first. The camera "
          "frames the scene unless `eye` and `target` are given. Material references "
          "'hatch' and '<file>.tga' (relative to `texture_dir`) texture their objects.");
    m.def("export_gltf", &export_gltf, py::arg("scene"), py::arg("path"), py::kw_only(),
          py::arg("edges") = false,
          "Writes the scene as glTF 2.0: binary for .glb, JSON for .gltf. With edges, adds the "
          "outline edges as lines.");
    m.attr("HAS_RENDER") = true;
    m.attr("MAX_RENDER_SIZE") = facet_gl::offscreen_context::max_size();
}

#else

void bind_render(py::module_& m) {
    m.attr("HAS_RENDER") = false;
    m.attr("MAX_RENDER_SIZE") = 0;
}

#endif

}  // namespace facet_python
