// Stencil shadows: the shadow volumes of a scene's objects for each light, cached across
// frames in a shadow_volume_map, closed with caps from the casters' own faces and counted
// into the stencil buffer by depth-fail (a surface point is in shadow when more volume faces
// behind it face away from the viewer than towards it).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "facet/geometry.h"
#include "facet/scene.h"
#include "facet/shadow_volume.h"
#include "gl/mesh_buffers.h"

namespace facet_gl {

/// The shadow volumes of one frame and their GPU copies.
///
/// A volume is the library's open volume (one quad per silhouette edge of the caster as seen
/// from the light, pulled 100000 units away) closed by two caps made of the caster's faces
/// turned towards the light: as they are, and pulled the same distance away with their winding
/// reversed; an open edge of such a face gets its own wall. So every volume is closed, also
/// for open meshes, and faces outwards; depth-fail counting then needs no far plane (the
/// volume pass clamps depth instead of clipping).
class shadow_pass {
public:
    shadow_pass() = default;
    shadow_pass(const shadow_pass&) = delete;
    shadow_pass& operator=(const shadow_pass&) = delete;

    /// One frame's cycle of the volume cache: reset_records, then for every visible object of
    /// `s` with faces that does not ignore shadows and every light (world positions, light
    /// index = position in `lights`) the cached volume (moved with set_light, rebuilt when the
    /// object's shadows are dirty) or a new one, then remove_unused_volumes. Objects whose
    /// world matrix cannot be inverted cast no shadow. `report` gets the fraction done.
    void update(const facet::scene& s, const std::vector<vector3d>& lights,
                const std::function<void(double)>& report);

    /// Builds the closed volumes of the last update and uploads them (object-space positions).
    void upload();

    /// Clears the stencil buffer and counts the volumes of light `light` into it: +1 where a
    /// volume face behind the surface faces away, −1 where one faces the viewer (wrapping).
    /// Leaves color and depth untouched. `view` is the world-to-camera matrix; the projection
    /// must be loaded.
    void draw_stencil(std::size_t light, const matrix44d& view) const;

    /// The volume cache, kept across frames.
    shadow_volume_map& volumes() { return m_map; }
    /// The number of volume triangles uploaded (sides and caps).
    std::size_t num_triangles() const { return m_triangles; }

private:
    struct entry {
        const primitives::basic_object* object = nullptr;
        shadow_volume* volume = nullptr;  // owned by m_map
        std::size_t light = 0;
        vector3d light_position;  // world
        matrix44d world;
        gl_buffer buffer;
        int vertices = 0;
    };

    shadow_volume_map m_map;
    std::vector<entry> m_entries;
    std::size_t m_triangles = 0;
};

}  // namespace facet_gl
