// facet render: a scene or OBJ model drawn off screen with OpenGL into a PNG.
#include <cstdio>
#include <memory>
#include <string>

#include "commands.h"
#include "facet/textures.h"
#include "gl/annotations.h"
#include "gl/offscreen_context.h"
#include "gl/renderer.h"
#include "gl/texture_store.h"
#include "input.h"
#include "output_file.h"
#include "png_image.h"
#include "progress.h"
#include "render_materials.h"

namespace facet_tool {

namespace {

// Keeps the texture store registered with the library while it lives.
class registration {
public:
    explicit registration(graphics::texture_manager& m) {
        graphics::set_global_texture_manager(&m);
    }
    ~registration() { graphics::set_global_texture_manager(nullptr); }
    registration(const registration&) = delete;
    registration& operator=(const registration&) = delete;
};

void print_stats(const render_options& o, const facet_gl::frame_stats& f, double read,
                 double meshes, double write, double total) {
    std::fprintf(stderr,
                 "facet render: %dx%d, %zu triangles, %zu edges and lines, %zu light%s, %zu "
                 "shadow-volume triangles\n",
                 o.width, o.height, f.triangles, f.edges_drawn, f.lights, f.lights == 1 ? "" : "s",
                 f.volume_triangles);
    const struct {
        const char* name;
        double seconds;
    } rows[] = {{"read", read},       {"meshes", meshes + f.meshes},
                {"edges", f.edges},   {"shadow volumes", f.shadow_volumes},
                {"upload", f.upload}, {"draw", f.draw},
                {"write", write},     {"total", total}};
    for (const auto& r : rows) std::fprintf(stderr, "  %-15s %8.3f s\n", r.name, r.seconds);
}

}  // namespace

void run_render(const render_options& o) {
    const stopwatch total;
    if (o.width < 1 || o.height < 1 || o.width > facet_gl::offscreen_context::max_size() ||
        o.height > facet_gl::offscreen_context::max_size())
        throw tool_error("--size " + std::to_string(o.width) + "x" + std::to_string(o.height) +
                         ": expected WIDTHxHEIGHT, each 1 to " +
                         std::to_string(facet_gl::offscreen_context::max_size()) + " pixels");
    progress report(o.quiet);

    stopwatch clock;
    facet::scene s = load_input(o.input, report);
    const double read = clock.seconds();

    std::unique_ptr<facet_gl::offscreen_context> context;
    try {
        context = std::make_unique<facet_gl::offscreen_context>(o.width, o.height);
    } catch (const facet_gl::gl_error& e) {
        throw tool_error(o.input + ": cannot render: " + e.what());
    }
    facet_gl::texture_store textures;
    const registration registered(textures);
    facet_gl::use_label_style();
    apply_material_textures(s, o.input, textures);

    facet_gl::renderer renderer(textures);
    std::string stage;
    renderer.set_progress([&](const std::string& name, double fraction) {
        if (name != stage) report.stage(stage = name);
        report.update(fraction);
    });

    facet_gl::frame_stats stats;
    double meshes = 0.0;
    try {
        clock = stopwatch();
        facet_gl::build_meshes(s, [&](double f) {
            if (stage != "building meshes") report.stage(stage = "building meshes");
            report.update(f);
        });
        const facet::world_box bounds = s.bounds();
        meshes = clock.seconds();
        facet_gl::render_settings settings;
        settings.bw = o.bw;
        settings.shadows = o.shadows;
        settings.outlines = o.outlines;
        const facet_gl::view view = facet_gl::make_view(bounds, o.width, o.height, o.eye, o.target);
        stats = renderer.render(s, view, settings);
    } catch (const tool_error&) {
        throw;
    } catch (const std::exception& e) {
        throw tool_error(o.input + ": " + e.what());
    }

    report.stage("writing " + o.output);
    clock = stopwatch();
    const facet_gl::rgba_image image = context->read_pixels();
    write_file_atomically(o.output, [&](std::ostream& out) { write_png(out, image); });
    const double write = clock.seconds();
    report.finish();
    if (o.stats) print_stats(o, stats, read, meshes, write, total.seconds());
}

}  // namespace facet_tool
