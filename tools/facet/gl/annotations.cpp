#include "gl/annotations.h"

#include "facet/math3d.h"
#include "facet/primitives.h"
#include "facet/textures.h"
#include "gl/gl.h"
#include "gl/mesh_buffers.h"
#include "gl/renderer.h"
#include "gl/texture_store.h"

namespace facet_gl {

namespace {

bool textures_allowed(const primitives::basic_object& o, const render_settings& settings) {
    return !settings.bw || o.show_texture_in_bw_mode();
}

void set_color(const graphics::color& c) {
    std::uint8_t rgba[4];
    color_bytes(c, rgba);
    glColor4ub(rgba[0], rgba[1], rgba[2], rgba[3]);
}

}  // namespace

void draw_billboards(const facet::scene& s, const std::vector<matrix44d>& world, const view& v,
                     const render_settings& settings, const texture_store& textures) {
    matrix44d view_matrix;
    v.cam.get_matrix(view_matrix);
    vector3d right = cross(v.cam.get_direction(), v.cam.get_updir());
    right.normalize();
    vector3d up = cross(right, v.cam.get_direction());
    up.normalize();

    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(view_matrix.data());
    for (std::size_t i = 0; i < s.size(); ++i) {
        const auto* b = dynamic_cast<const primitives::billboard*>(&s[i]);
        if (b == nullptr || !b->visible()) continue;
        const vector3d c = transform_vector(world[i], vector3d(0.0, 0.0, 0.0));
        const vector3d dx = right * (b->get_width() * 0.5);
        const vector3d dy = up * (b->get_height() * 0.5);
        const vector3d corners[4] = {c - dx - dy, c + dx - dy, c + dx + dy, c - dx + dy};
        const float uv[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

        const bool textured = b->texturing_enabled() && textures.contains(b->get_texture_id()) &&
                              textures_allowed(*b, settings);
        if (settings.bw)
            set_color(b->black_in_bw_mode() ? graphics::color(0, 0, 0)
                                            : graphics::color(255, 255, 255));
        else
            set_color(b->get_brush().get_color());
        if (textured) {
            glEnable(GL_TEXTURE_2D);
            glBindTexture(GL_TEXTURE_2D, b->get_texture_id());
            glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        }
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0f, 1.0f);
        glBegin(GL_QUADS);
        for (int k = 0; k < 4; ++k) {
            glTexCoord2fv(uv[k]);
            glVertex3d(corners[k].x, corners[k].y, corners[k].z);
        }
        glEnd();
        glDisable(GL_POLYGON_OFFSET_FILL);
        glDisable(GL_TEXTURE_2D);
        if (settings.outlines) {
            set_color(settings.bw ? graphics::color(0, 0, 0) : b->get_pen().get_color());
            glLineWidth(static_cast<float>(std::max(1u, b->get_pen().get_width())));
            glBegin(GL_LINE_LOOP);
            for (const vector3d& p : corners) glVertex3d(p.x, p.y, p.z);
            glEnd();
        }
    }
    glPopAttrib();
}

void draw_texts(const facet::scene& s, const std::vector<matrix44d>& world, const view& v,
                const render_settings& /*both modes alike*/, texture_store& textures) {
    if (graphics::get_global_texture_manager() != &textures) return;
    matrix44d view_matrix, projection;
    v.cam.get_matrix(view_matrix);
    v.proj.get_matrix(projection);  // camera space to pixels, y down
    const matrix44d to_screen = projection * view_matrix;
    double vx, vy, width, height;
    v.proj.get_viewport(vx, vy, width, height);

    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0.0, width, height, 0.0, -1.0, 1.0);  // pixels, y down as the projector's screen
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    for (std::size_t i = 0; i < s.size(); ++i) {
        const auto* t = dynamic_cast<const primitives::text*>(&s[i]);
        // Labels are text, not surface textures: both modes show them.
        if (t == nullptr || !t->visible() || t->get_text().empty()) continue;
        const vector3d anchor = transform_vector(world[i], vector3d(0.0, 0.0, 0.0));
        const vector3d in_camera = transform_vector(view_matrix, anchor);
        if (in_camera.z >= 0.0) continue;  // behind the eye
        const vector3d p = transform_vector(to_screen, anchor);
        const unsigned id = graphics::get_label_repos().get_texture_id(t->get_text());
        int w = 0, h = 0;
        textures.size_of(id, w, h);
        if (w == 0 || h == 0) continue;
        glBindTexture(GL_TEXTURE_2D, id);
        const double x0 = p.x - vx - w * 0.5, y0 = p.y - vy - h * 0.5;
        // Row 0 of a label is its bottom line: texture v = 0 at the bottom of the quad.
        glBegin(GL_QUADS);
        glTexCoord2f(0, 1);
        glVertex2d(x0, y0);
        glTexCoord2f(1, 1);
        glVertex2d(x0 + w, y0);
        glTexCoord2f(1, 0);
        glVertex2d(x0 + w, y0 + h);
        glTexCoord2f(0, 0);
        glVertex2d(x0, y0 + h);
        glEnd();
    }
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}

void use_label_style() {
    graphics::label_repos& labels = graphics::get_label_repos();
    labels.set_size(128, 32);
    labels.set_font_size(22);
    labels.set_fg_color(graphics::color(20, 20, 20));
    labels.set_bg_color(graphics::color(255, 255, 255));
    labels.set_mipmap_gen_level(3);
}

}  // namespace facet_gl
