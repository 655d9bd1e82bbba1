#include "gl/renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <stdexcept>

#include "facet/math3d.h"
#include "facet/primitives.h"
#include "gl/annotations.h"
#include "gl/gl.h"
#include "gl/mesh_buffers.h"
#include "gl/texture_store.h"

namespace facet_gl {

namespace {

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The camera as the object sees it: its meshes are in object space.
camera camera_in_object_space(const camera& cam, const matrix44d& world) {
    const matrix44d to_object = inverse(world);
    return camera(transform_vector(to_object, cam.get_position()),
                  transform_vector_3x3(to_object, cam.get_direction()),
                  transform_vector_3x3(to_object, cam.get_updir()));
}

// One object's buffers for the frame.
struct drawable {
    const primitives::basic_object* object = nullptr;
    matrix44d world;
    bool culled = true;  // back faces culled
    bool faces = true;   // false for edges-only objects
    face_buffers surface;
    line_buffers lines;
    line_buffers outline;
};

constexpr float ambient_level = 0.3f;

float diffuse_level(std::size_t lights) {
    return lights <= 1 ? 0.75f : 0.75f / std::sqrt(static_cast<float>(lights));
}

GLint env_mode(graphics::texture_mode mode) {
    switch (mode) {
        case graphics::texture_mode::replace:
            return GL_REPLACE;
        case graphics::texture_mode::decal:
            return GL_DECAL;
        case graphics::texture_mode::blend:
            return GL_BLEND;
        default:
            return GL_MODULATE;
    }
}

enum class pass { ambient, light, transparent };

// Draws the face batches of every object that belong to `p`.
void draw_faces(const std::vector<std::unique_ptr<drawable>>& objects, const matrix44d& view,
                pass p) {
    glMatrixMode(GL_MODELVIEW);
    for (const auto& d : objects) {
        if (!d->faces || d->surface.num_vertices() == 0) continue;
        const matrix44d m = view * d->world;
        glLoadMatrixd(m.data());
        if (d->culled)
            glEnable(GL_CULL_FACE);
        else
            glDisable(GL_CULL_FACE);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, d->culled ? GL_FALSE : GL_TRUE);
        d->surface.bind();
        for (const face_batch& b : d->surface.batches()) {
            if (b.transparent != (p == pass::transparent)) continue;
            bool textured = b.texture != 0;
            if (p == pass::light) {
                if (b.mode == graphics::texture_mode::replace) continue;  // unlit: ambient only
                textured = textured && b.mode == graphics::texture_mode::modulate;
            }
            if (textured) {
                glEnable(GL_TEXTURE_2D);
                glBindTexture(GL_TEXTURE_2D, b.texture);
                glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, env_mode(b.mode));
            } else {
                glDisable(GL_TEXTURE_2D);
            }
            glDrawArrays(GL_TRIANGLES, b.first, b.count);
        }
    }
    glDisable(GL_TEXTURE_2D);
}

void draw_lines(const line_buffers& lines, const matrix44d& view, const matrix44d& world) {
    if (lines.batches().empty()) return;
    const matrix44d m = view * world;
    glLoadMatrixd(m.data());
    lines.bind();
    for (const line_batch& b : lines.batches()) {
        glLineWidth(b.width);
        glDrawArrays(GL_LINES, b.first, b.count);
    }
}

void set_light(GLenum which, const vector3d& position, float diffuse) {
    const GLfloat pos[4] = {static_cast<GLfloat>(position.x), static_cast<GLfloat>(position.y),
                            static_cast<GLfloat>(position.z), 1.0f};
    const GLfloat color[4] = {diffuse, diffuse, diffuse, 1.0f};
    const GLfloat none[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    glLightfv(which, GL_POSITION, pos);
    glLightfv(which, GL_DIFFUSE, color);
    glLightfv(which, GL_AMBIENT, none);
    glLightfv(which, GL_SPECULAR, none);
    glEnable(which);
}

void set_ambient(float level) {
    const GLfloat ambient[4] = {level, level, level, 1.0f};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
}

}  // namespace

void build_meshes(const facet::scene& s, const std::function<void(double)>& report) {
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (report) report(static_cast<double>(i) / static_cast<double>(s.size()));
        try {
            s[i].get_mesh();
        } catch (const std::exception& e) {
            throw std::runtime_error("object '" + s[i].get_name() + "': " + e.what());
        }
    }
}

std::vector<vector3d> scene_lights(const facet::scene& s) {
    std::vector<vector3d> out;
    const std::vector<matrix44d> world = s.world_matrices();
    for (std::size_t i = 0; i < s.size(); ++i)
        if (dynamic_cast<const primitives::light*>(&s[i]) != nullptr)
            out.push_back(transform_vector(world[i], vector3d(0.0, 0.0, 0.0)));
    return out;
}

frame_stats renderer::render(const facet::scene& s, const view& v,
                             const render_settings& settings) {
    frame_stats stats;
    using clock = std::chrono::steady_clock;

    // Meshes.
    auto start = clock::now();
    build_meshes(s, [&](double f) { report("building meshes", f); });
    const std::vector<matrix44d> world = s.world_matrices();
    stats.meshes = seconds_since(start);

    // Outline edges for this view.
    start = clock::now();
    if (settings.outlines) {
        for (std::size_t i = 0; i < s.size(); ++i) {
            report("finding outlines", static_cast<double>(i) / static_cast<double>(s.size()));
            const primitives::basic_object& o = s[i];
            indexedfaceset& mesh = o.get_mesh();
            if (!o.visible() || mesh.num_edges() == 0) continue;
            try {
                mesh.determine_visible_edges(camera_in_object_space(v.cam, world[i]), v.proj,
                                             mesh.get_visible_edge_treshold());
            } catch (const EMatrix&) {
                // A singular placement: the sharp edges stay as built.
            }
        }
    }
    stats.edges = seconds_since(start);

    // Lights and shadow volumes.
    start = clock::now();
    std::vector<vector3d> lights = scene_lights(s);
    if (lights.empty()) lights.push_back(default_light(s.bounds(), v.cam));
    stats.lights = lights.size();
    if (settings.shadows)
        m_shadows.update(s, lights, [&](double f) { report("building shadow volumes", f); });
    stats.shadow_volumes = seconds_since(start);

    // Upload.
    start = clock::now();
    std::vector<std::unique_ptr<drawable>> objects;
    for (std::size_t i = 0; i < s.size(); ++i) {
        report("uploading", static_cast<double>(i) / static_cast<double>(s.size()));
        const primitives::basic_object& o = s[i];
        const indexedfaceset& mesh = o.get_mesh();
        if (!o.visible() || (mesh.num_faces() == 0 && mesh.num_lines() == 0)) continue;
        auto d = std::make_unique<drawable>();
        d->object = &o;
        d->world = world[i];
        d->culled = mesh.get_backface_culling();
        d->faces = !mesh.edges_only();
        paint p;
        p.bw = settings.bw;
        p.black = o.black_in_bw_mode() || mesh.show_black_in_bw_mode();
        p.textures = !settings.bw || o.show_texture_in_bw_mode() || mesh.show_texture_in_bw_mode();
        if (d->faces) d->surface.upload(mesh, p, m_textures);
        d->lines.upload_lines(mesh, p);
        if (settings.outlines || mesh.edges_only()) d->outline.upload_edges(mesh, p);
        stats.triangles += d->faces ? mesh.num_faces() : 0;
        for (const line_batch& b : d->lines.batches()) stats.edges_drawn += b.count / 2;
        for (const line_batch& b : d->outline.batches()) stats.edges_drawn += b.count / 2;
        objects.push_back(std::move(d));
    }
    if (settings.shadows) m_shadows.upload();
    stats.volume_triangles = settings.shadows ? m_shadows.num_triangles() : 0;
    stats.upload = seconds_since(start);

    // Draw.
    start = clock::now();
    report("drawing", 0.0);
    double vx, vy, vw, vh;
    v.proj.get_viewport(vx, vy, vw, vh);
    glViewport(0, 0, static_cast<GLsizei>(vw), static_cast<GLsizei>(vh));
    const graphics::color bg = settings.bw ? graphics::color(255, 255, 255) : settings.background;
    glClearColor(bg.get_red_component() / 255.0f, bg.get_green_component() / 255.0f,
                 bg.get_blue_component() / 255.0f, 1.0f);
    glClearDepth(1.0);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);

    matrix44d projection, view_matrix;
    v.proj.get_projection_matrix(projection);
    v.cam.get_matrix(view_matrix);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection.data());
    glMatrixMode(GL_MODELVIEW);

    glEnable(GL_DEPTH_TEST);
    glCullFace(GL_BACK);
    glFrontFace(GL_CCW);
    glEnable(GL_NORMALIZE);
    glEnable(GL_LIGHTING);
    glEnable(GL_COLOR_MATERIAL);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_TRUE);
    glEnable(GL_POLYGON_OFFSET_FILL);  // faces behind their own outline edges
    glPolygonOffset(1.0f, 1.0f);

    // Ambient pass: lays down depth.
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    set_ambient(ambient_level);
    draw_faces(objects, view_matrix, pass::ambient);

    // One additive pass per light, masked by its shadow volumes.
    const float diffuse = diffuse_level(lights.size());
    for (std::size_t l = 0; l < lights.size(); ++l) {
        report("drawing", static_cast<double>(l) / static_cast<double>(lights.size()));
        if (settings.shadows) m_shadows.draw_stencil(l, view_matrix);
        glEnable(GL_STENCIL_TEST);
        glStencilFunc(GL_EQUAL, 0, 0xff);
        glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
        if (!settings.shadows) glDisable(GL_STENCIL_TEST);
        glLoadMatrixd(view_matrix.data());
        set_light(GL_LIGHT0, lights[l], diffuse);
        set_ambient(0.0f);
        glDepthFunc(GL_EQUAL);
        glDepthMask(GL_FALSE);
        glEnable(GL_BLEND);
        glBlendFunc(GL_ONE, GL_ONE);
        draw_faces(objects, view_matrix, pass::light);
        glDisable(GL_LIGHT0);
        glDisable(GL_STENCIL_TEST);
    }

    // Transparent faces: every light at once (the fixed pipeline has eight), no shadows.
    glLoadMatrixd(view_matrix.data());
    for (std::size_t l = 0; l < lights.size() && l < 8; ++l)
        set_light(GL_LIGHT0 + static_cast<GLenum>(l), lights[l], diffuse);
    set_ambient(ambient_level);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    draw_faces(objects, view_matrix, pass::transparent);
    for (std::size_t l = 0; l < lights.size() && l < 8; ++l)
        glDisable(GL_LIGHT0 + static_cast<GLenum>(l));

    // Lines and outline edges, unlit, in front of the faces they lie on.
    glDisable(GL_LIGHTING);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDepthMask(GL_TRUE);
    for (const auto& d : objects) {
        draw_lines(d->lines, view_matrix, d->world);
        draw_lines(d->outline, view_matrix, d->world);
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisable(GL_BLEND);
    glLineWidth(1.0f);

    draw_billboards(s, world, v, settings, m_textures);
    draw_texts(s, world, v, settings, m_textures);
    glFinish();
    objects.clear();
    stats.draw = seconds_since(start);
    report("drawing", 1.0);
    return stats;
}

}  // namespace facet_gl
