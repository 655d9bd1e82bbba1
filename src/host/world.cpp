// World matrices and world bounds of a whole scene, parents first, without recursion.
#include <cmath>

#include "facet/math3d.h"
#include "facet/scene.h"
#include "host/hierarchy.h"

namespace facet {

void world_box::add(const vector3d& p) {
    if (std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z)) return;
    if (empty()) {
        min = max = p;
        return;
    }
    min = {std::fmin(min.x, p.x), std::fmin(min.y, p.y), std::fmin(min.z, p.z)};
    max = {std::fmax(max.x, p.x), std::fmax(max.y, p.y), std::fmax(max.z, p.z)};
}

void world_box::add(const world_box& other) {
    if (other.empty()) return;
    add(other.min);
    add(other.max);
}

vector3d world_box::size() const { return empty() ? vector3d() : max - min; }

vector3d world_box::center() const {
    return empty() ? vector3d()
                   : vector3d((min.x + max.x) / 2, (min.y + max.y) / 2, (min.z + max.z) / 2);
}

std::vector<matrix44d> scene::world_matrices() const {
    const std::vector<std::ptrdiff_t> parents = parent_indices(m_objects);
    std::vector<matrix44d> world(m_objects.size());
    for (const std::size_t i : top_down_order(m_objects)) {
        const primitives::basic_object& o = *m_objects[i];
        // The same products, in the same order, as primitives::calc_transformation_matrix.
        const vector3d& p = o.get_position();
        const primitives::axis_angle r = o.get_orientation();
        matrix44d translation;
        make_translation_matrix(translation, p.x, p.y, p.z);
        matrix44d rotation;
        make_rotation_matrix(rotation, r.angle, r.axis.x, r.axis.y, r.axis.z);
        const matrix44d local = translation * rotation;
        if (parents[i] >= 0)
            world[i] = world[static_cast<std::size_t>(parents[i])] * local;
        else if (const primitives::basic_object* outside = o.get_parent())
            world[i] = primitives::calc_transformation_matrix(*outside) * local;
        else
            world[i] = local;
    }
    return world;
}

std::vector<world_box> scene::world_bounds() const {
    const std::vector<matrix44d> world = world_matrices();
    std::vector<world_box> boxes(m_objects.size());
    for (std::size_t i = 0; i < m_objects.size(); ++i) {
        const indexedfaceset& mesh = m_objects[i]->get_mesh();
        for (const vector3d& v : mesh.vertices()) boxes[i].add(transform_vector(world[i], v));
    }
    return boxes;
}

world_box scene::bounds() const {
    world_box all;
    for (const world_box& b : world_bounds()) all.add(b);
    return all;
}

}  // namespace facet
