#include "gl/shadow_pass.h"

#include "facet/math3d.h"
#include "facet/objects.h"
#include "gl/gl.h"

namespace facet_gl {

namespace {

constexpr double extrusion = 100000.0;

// P pulled away from the light as the library pulls the volume's far edge.
vector3d pulled(const vector3d& p, const vector3d& light) {
    vector3d d = p - light;
    d.normalize();
    return p + d * extrusion;
}

void push(std::vector<float>& out, const vector3d& p) {
    out.push_back(static_cast<float>(p.x));
    out.push_back(static_cast<float>(p.y));
    out.push_back(static_cast<float>(p.z));
}

bool casts_shadow(const primitives::basic_object& o) {
    return o.visible() && !o.ignore_for_shadows() && !o.get_mesh().edges_only() &&
           o.get_mesh().num_faces() > 0;
}

}  // namespace

void shadow_pass::update(const facet::scene& s, const std::vector<vector3d>& lights,
                         const std::function<void(double)>& report) {
    m_entries.clear();
    m_map.reset_records();
    const std::vector<matrix44d> world = s.world_matrices();
    for (std::size_t i = 0; i < s.size(); ++i) {
        primitives::basic_object& o = s[i];
        if (report) report(static_cast<double>(i) / static_cast<double>(s.size()));
        if (!casts_shadow(o)) continue;
        const bool dirty = o.shadows_dirty();
        try {
            for (std::size_t l = 0; l < lights.size(); ++l) {
                const auto index = static_cast<std::uint32_t>(l);
                shadow_volume* v = m_map.get_shadow_volume(&o, index);
                if (v == nullptr) {
                    auto fresh = std::make_unique<shadow_volume>(&o, lights[l], 1.0, index);
                    fresh->rebuild_mesh();
                    v = fresh.get();
                    m_map.add_shadow_volume(fresh.release());
                } else {
                    const vector3d before = v->get_light();
                    v->set_light(lights[l], 1.0, index, true);
                    const bool moved = before.x != lights[l].x || before.y != lights[l].y ||
                                       before.z != lights[l].z;
                    if (dirty && !moved) v->rebuild_mesh();
                }
                entry e;
                e.object = &o;
                e.volume = v;
                e.light = l;
                e.light_position = lights[l];
                e.world = world[i];
                m_entries.push_back(std::move(e));
            }
        } catch (const EMatrix&) {
            // A singular placement: the object casts no shadow this frame.
        }
        o.set_shadows_dirty(false);
    }
    m_map.remove_unused_volumes();
}

void shadow_pass::upload() {
    m_triangles = 0;
    std::vector<float> positions;
    std::vector<char> lit;
    for (entry& e : m_entries) {
        positions.clear();
        const indexedfaceset& sides = e.volume->get_mesh();
        for (std::uint32_t f = 0; f < sides.num_faces(); ++f)
            for (int k = 0; k < 3; ++k)
                push(positions, sides.get_vertex(sides.get_face(f).vertex[k]));

        const indexedfaceset& mesh = e.object->get_mesh();
        const vector3d light = primitives::worldspace_to_objectspace(e.light_position, *e.object);
        lit.assign(mesh.num_faces(), 0);
        for (std::uint32_t f = 0; f < mesh.num_faces(); ++f) {
            const face& fc = mesh.get_face(f);
            const vector3d a = mesh.get_vertex(fc.vertex[0]);
            const vector3d b = mesh.get_vertex(fc.vertex[1]);
            const vector3d c = mesh.get_vertex(fc.vertex[2]);
            if (dot(fc.normal, (a + b + c) * (1.0 / 3.0) - light) > 0.0) continue;
            lit[f] = 1;
            push(positions, a);  // the near cap: the face as it is
            push(positions, b);
            push(positions, c);
            push(positions, pulled(a, light));  // the far cap: the face pulled away, reversed
            push(positions, pulled(c, light));
            push(positions, pulled(b, light));
        }
        // Open edges of lit faces are walls of the volume too (the library's sides cover the
        // edges between a lit and an unlit face), facing away from their face.
        const carray<halfedge>& edges = mesh.edges();
        const carray<face>& faces = mesh.faces();
        for (std::uint32_t h = 0; h < edges.size(); ++h) {
            const halfedge& he = edges[h];
            if (he.m_twinedge != nullptr || he.face == nullptr || he.next == nullptr) continue;
            const std::size_t f = static_cast<std::size_t>(he.face - &faces[0]);
            if (f >= lit.size() || !lit[f]) continue;
            const vector3d a = mesh.get_vertex(he.vertex), b = mesh.get_vertex(he.next->vertex);
            const vector3d c = mesh.get_vertex(he.prev->vertex);
            const vector3d a2 = pulled(a, light), b2 = pulled(b, light);
            const bool flip = dot(cross(b - a, b2 - a), c - a) > 0.0;
            const vector3d quad[6] = {a, flip ? b2 : b,  flip ? b : b2,
                                      a, flip ? a2 : b2, flip ? b2 : a2};
            for (const vector3d& p : quad) push(positions, p);
        }
        e.vertices = static_cast<int>(positions.size() / 3);
        m_triangles += positions.size() / 9;
        e.buffer.upload(positions.data(), positions.size() * sizeof(float));
    }
}

void shadow_pass::draw_stencil(std::size_t light, const matrix44d& view) const {
    glClear(GL_STENCIL_BUFFER_BIT);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glDepthMask(GL_FALSE);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_DEPTH_CLAMP);
    glDisable(GL_CULL_FACE);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    // Pushed further back than the faces: the near cap, which lies on the caster's lit faces,
    // then always counts as behind them.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(2.0f, 4.0f);
    glEnable(GL_STENCIL_TEST);
    glStencilFunc(GL_ALWAYS, 0, 0xff);
    glStencilOpSeparate(GL_BACK, GL_KEEP, GL_INCR_WRAP, GL_KEEP);
    glStencilOpSeparate(GL_FRONT, GL_KEEP, GL_DECR_WRAP, GL_KEEP);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glEnableClientState(GL_VERTEX_ARRAY);
    glMatrixMode(GL_MODELVIEW);
    for (const entry& e : m_entries) {
        if (e.light != light || e.vertices == 0) continue;
        const matrix44d m = view * e.world;
        glLoadMatrixd(m.data());
        e.buffer.bind();
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        glDrawArrays(GL_TRIANGLES, 0, e.vertices);
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glPopClientAttrib();
    glPopAttrib();
}

}  // namespace facet_gl
