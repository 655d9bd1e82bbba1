// shadow_volume: the oriented shadow volume of a scene object for one light.
#include "facet/shadow_volume.h"

#include <vector>

#include "facet/check.h"
#include "facet/objects.h"
#include "shadow/extrusion.h"
#include "shadow/silhouette.h"

namespace {

// Moves the arrays of `from` that the volume's build rewrites into the fresh face set `to`, so
// that those whose size does not change keep their storage (each is resized for overwriting or
// written whole before it is read).
void take_arrays(indexedfaceset& from, indexedfaceset& to) {
    to.vertices().swap(from.vertices());
    to.faces().swap(from.faces());
    to.normals().swap(from.normals());
    to.edges().swap(from.edges());
    to.texcoords().swap(from.texcoords());
    to.tangents().swap(from.tangents());
    to.bitangents().swap(from.bitangents());
}

}  // namespace

shadow_volume::shadow_volume(primitives::basic_object* master, const vector3d& light,
                             double light_value, std::uint32_t light_index)
    : m_master(master),
      m_mesh(new indexedfaceset),
      m_light(light),
      m_light_value(light_value),
      m_light_index(light_index) {}

shadow_volume::~shadow_volume() = default;

indexedfaceset& shadow_volume::get_mesh() const {
    FACET_CHECK(m_mesh != 0);
    return *m_mesh;
}

void shadow_volume::set_light(const vector3d& light, const double& light_value,
                              std::uint32_t light_index, bool active) {
    m_light_index = light_index;
    m_active = active;
    if (light.x != m_light.x || light.y != m_light.y || light.z != m_light.z ||
        light_value != m_light_value) {
        m_light = light;
        m_light_value = light_value;
        rebuild_mesh();
    }
}

void shadow_volume::rebuild_mesh() {
    using facet::detail::extrude_from_light;
    using facet::detail::unit;
    FACET_CHECK(m_master != 0);

    const std::unique_ptr<indexedfaceset> old = std::move(m_mesh);
    m_mesh.reset(new indexedfaceset);
    const indexedfaceset& source = m_master->get_mesh();
    const vector3d light = primitives::worldspace_to_objectspace(m_light, *m_master);

    // Silhouette edges, each taken once: from its lit (or edge-on) face towards the face that
    // is turned away.
    std::vector<std::uint32_t> silhouette;
    facet::detail::find_silhouette(source, light, facet::detail::silhouette_rule::oriented,
                                   silhouette);

    indexedfaceset& mesh = *m_mesh;
    if (old) take_arrays(*old, mesh);
    const auto n = static_cast<std::uint32_t>(silhouette.size());
    mesh.vertices().resize_for_overwrite(4 * n);
    mesh.faces().resize_for_overwrite(2 * n);
    mesh.styles().resize(1);
    const graphics::color red(255, 0, 0, 255);
    const graphics::style standard("std", graphics::brush(red), graphics::pen(red));
    mesh.styles()[0] = standard;
    mesh.set_backface_culling(true);

    vector3d* const vertices = mesh.vertices().data();
    face* const faces = mesh.faces().data();
    for (std::uint32_t k = 0; k < n; ++k) {
        const halfedge& h = source.get_edge(silhouette[k]);
        const halfedge& t = *h.m_twinedge;
        const vector3d& a = source.get_vertex(h.vertex);
        const vector3d& b = source.get_vertex(t.vertex);
        const vector3d far_a = extrude_from_light(a, light);
        const vector3d far_b = extrude_from_light(b, light);
        facet::detail::write_shadow_quad(vertices + 4 * k, a, b, far_a, far_b);

        // Wind the quad by the side of the lit face it lies on and the bend of the edge.
        const face& lit = *h.face;
        const vector3d corner = source.get_vertex(lit.vertex[0]) +
                                source.get_vertex(lit.vertex[1]) +
                                source.get_vertex(lit.vertex[2]) - a - b;
        const vector3d c = unit(corner - a);
        const vector3d s = unit(lit.normal + t.face->normal);
        const vector3d q = unit(cross(far_a - a, b - a));
        const double qs = dot(q, s);
        const double sc = dot(s, c);
        const std::uint32_t v = 4 * k;
        if ((qs < 0.0 && sc <= 0.0) || (qs >= 0.0 && sc > 0.0)) {
            faces[2 * k] = face(v, v + 1, v + 2);
            faces[2 * k + 1] = face(v, v + 2, v + 3);
        } else {
            faces[2 * k] = face(v, v + 2, v + 1);
            faces[2 * k + 1] = face(v, v + 3, v + 2);
        }
        for (face* f : {&faces[2 * k], &faces[2 * k + 1]}) {
            f->style = 0;
            f->brush = standard.brush;
        }
    }

    mesh.compute_normals();
    mesh.construct_halfedge_data();
    mesh.gen_texcoords_box();
    mesh.compute_tangent_space();
}
