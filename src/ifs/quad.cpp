// indexedfaceset: the mesh of a quad, textured with the quad's own texture coordinates.
#include <cstdint>

#include "facet/ifs.h"
#include "facet/primitives.h"

void indexedfaceset::create_mesh(const primitives::quad& q) {
    m_vertices.resize(4);
    for (std::uint32_t i = 0; i < 4; ++i) m_vertices[i] = q[i];

    static const std::uint32_t corners[2][3] = {{0, 1, 2}, {0, 2, 3}};
    m_faces.resize(2);
    for (std::uint32_t i = 0; i < 2; ++i)
        m_faces[i] = face(corners[i][0], corners[i][1], corners[i][2]);

    // One coordinate per face corner (3i + k), from the quad's corner coordinates, scaled like
    // the box projection and turned a quarter turn with it.
    const vector2d scale = q.get_texture_scale();
    const bool rotated = q.texture_rotated();
    m_texcoords.resize(6);
    for (std::uint32_t i = 0; i < 2; ++i) {
        for (std::uint32_t k = 0; k < 3; ++k) {
            const texcoord t = q.get_texcoord(static_cast<int>(corners[i][k]));
            const double u = static_cast<double>(t.u);
            const double v = static_cast<double>(t.v);
            const std::uint32_t slot = 3 * i + k;
            m_texcoords[slot] =
                rotated
                    ? texcoord(static_cast<float>(-scale.x * v), static_cast<float>(scale.y * u))
                    : texcoord(static_cast<float>(scale.x * u), static_cast<float>(scale.y * v));
            m_faces[i].texcoord[k] = slot;
        }
    }

    // The finishing steps of the solids, except that the texture coordinates are the quad's
    // whatever the texture-generation mode.
    finish_mesh_edges(q);
    apply_object_appearance(q);
    apply_texture_settings(q);
    compute_tangent_space();
}
