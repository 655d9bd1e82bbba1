// shadow_volume: the oriented shadow volume of a scene object for one light.
#include "facet/shadow_volume.h"

#include <vector>

#include "facet/check.h"
#include "facet/objects.h"
#include "shadow/edge_table.h"
#include "shadow/oriented_volume.h"
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
    FACET_CHECK(m_master != 0);

    const std::unique_ptr<indexedfaceset> old = std::move(m_mesh);
    m_mesh.reset(new indexedfaceset);
    const indexedfaceset& source = m_master->get_mesh();
    const vector3d light = primitives::worldspace_to_objectspace(m_light, *m_master);

    // Silhouette edges, each taken once: from its lit (or edge-on) face towards the face that
    // is turned away.
    const std::shared_ptr<const facet::detail::edge_table> table =
        facet::detail::edge_table::of(source);
    std::vector<facet::detail::silhouette_edge>& silhouette = facet::detail::silhouette_scratch();
    facet::detail::find_silhouette(source, *table, light, facet::detail::silhouette_rule::oriented,
                                   silhouette);

    if (old) take_arrays(*old, *m_mesh);
    facet::detail::write_oriented_volume(source, silhouette, light, *m_mesh);
}
