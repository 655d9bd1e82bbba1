// shadow_volume: construction, the strict silhouette in the master's object space, winding,
// the finished mesh, and when set_light rebuilds.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "facet/math3d.h"
#include "facet/primitives.h"
#include "facet/shadow_volume.h"
#include "shadow/shadow_meshes.h"

using shadow_test::cube;
using shadow_test::mesh_data;
using shadow_test::mesh_object;

namespace {

vector3d unit(vector3d v) {
    v.normalize();
    return v;
}

std::uint32_t quads(const shadow_volume& v) { return v.get_mesh().num_faces() / 2; }

// Normals, half-edges, texture coordinates and tangents are in place for every face, and no
// coordinate is NaN.
void expect_finished(const indexedfaceset& m) {
    EXPECT_EQ(m.num_vertices(), 2 * m.num_faces());
    EXPECT_EQ(m.normals().size(), 3 * m.num_faces());
    EXPECT_EQ(m.num_edges(), 3 * m.num_faces());
    EXPECT_EQ(m.num_texcoords(), 3 * m.num_faces());
    EXPECT_EQ(m.tangents().size(), 3 * m.num_faces());
    EXPECT_EQ(m.bitangents().size(), 3 * m.num_faces());
    for (const vector3d& p : m.vertices()) {
        EXPECT_FALSE(std::isnan(p.x) || std::isnan(p.y) || std::isnan(p.z));
    }
    for (std::uint32_t i = 0; i < m.num_faces(); ++i) {
        const face& f = m.get_face(i);
        EXPECT_EQ(f.style, 0);
        EXPECT_EQ(f.texcoord[2], 3 * i + 2);
        EXPECT_EQ(f.brush, graphics::brush(graphics::color(255, 0, 0, 255)));
    }
}

}  // namespace

TEST(ShadowVolume, StartsActiveWithAnEmptyMesh) {
    primitives::box b;
    shadow_volume v(&b, vector3d(3.0, 3.0, 3.0), 0.5, 4);
    EXPECT_TRUE(v.active());
    EXPECT_EQ(v.get_light_index(), 4u);
    EXPECT_EQ(v.get_master_primitive(), &b);
    EXPECT_EQ(v.get_light(), vector3d(3.0, 3.0, 3.0));
    EXPECT_EQ(v.get_light_value(), 0.5);
    EXPECT_EQ(v.get_mesh().num_vertices(), 0u);
    EXPECT_EQ(v.get_mesh().num_faces(), 0u);
    EXPECT_EQ(v.get_mesh().num_styles(), 0u);
}

TEST(ShadowVolume, CubeLitFromOutside) {
    primitives::box b;
    const vector3d light(2.5, 3.5, 4.5);
    shadow_volume v(&b, light, 1.0, 0);
    v.rebuild_mesh();
    const indexedfaceset& m = v.get_mesh();

    // One quad for each of the six edges between the lit sides (+x, +y, +z) and the others.
    ASSERT_EQ(m.num_faces(), 12u);
    ASSERT_EQ(m.num_vertices(), 24u);
    ASSERT_EQ(m.num_styles(), 1u);
    EXPECT_EQ(m.get_style(0).name, "std");
    EXPECT_EQ(m.get_style(0).brush, graphics::brush(graphics::color(255, 0, 0, 255), 0));
    EXPECT_EQ(m.get_style(0).pen, graphics::pen(graphics::color(255, 0, 0, 255), 1, 0));
    EXPECT_EQ(m.get_style(0).texture.texture_id, 0u);
    EXPECT_TRUE(m.get_backface_culling());
    expect_finished(m);

    const indexedfaceset& box_mesh = b.get_mesh();
    const vector3d centre(0.5, 0.5, 0.5);
    for (std::uint32_t k = 0; k < 6; ++k) {
        const vector3d& a = m.get_vertex(4 * k);
        const vector3d& bb = m.get_vertex(4 * k + 1);
        const vector3d& far_b = m.get_vertex(4 * k + 2);
        const vector3d& far_a = m.get_vertex(4 * k + 3);
        // Exactly 100000.0 along the ray from the light.
        EXPECT_EQ(far_a, a + 100000.0 * unit(a - light));
        EXPECT_EQ(far_b, bb + 100000.0 * unit(bb - light));
        EXPECT_NEAR((far_a - a).length(), 100000.0, 1e-9);
        EXPECT_NEAR(cross(unit(far_b - bb), unit(bb - light)).length(), 0.0, 1e-12);

        // A -> B runs the way the edge runs on its lit side.
        bool on_lit_face = false;
        for (std::uint32_t i = 0; i < box_mesh.num_faces(); ++i) {
            const face& f = box_mesh.get_face(i);
            for (int c = 0; c < 3; ++c)
                if (box_mesh.get_vertex(f.vertex[c]) == a &&
                    box_mesh.get_vertex(f.vertex[(c + 1) % 3]) == bb)
                    on_lit_face = dot(f.normal, light - a) > 0.0;
        }
        EXPECT_TRUE(on_lit_face) << "quad " << k;

        // Both faces of the quad look away from the cube.
        for (std::uint32_t i : {2 * k, 2 * k + 1}) {
            const face& f = m.get_face(i);
            EXPECT_LT(dot(f.normal, centre - m.get_vertex(f.vertex[0])), 0.0) << "face " << i;
        }
    }
}

TEST(ShadowVolume, LightInThePlaneOfASideLightsIt) {
    primitives::box b;
    // In the plane z = 1 the +z side is lit: its edges to -x, -y and +y count, and those of +x
    // to -z, -y and +y.
    shadow_volume v(&b, vector3d(2.0, 0.5, 1.0), 0.0, 0);
    v.rebuild_mesh();
    EXPECT_EQ(quads(v), 6u);
    // Just behind that plane only the +x side is lit.
    v.set_light(vector3d(2.0, 0.5, 1.0 - 1e-9), 0.0, 0, true);
    EXPECT_EQ(quads(v), 4u);
}

TEST(ShadowVolume, OpenAndTurnedAwayMeshes) {
    // Without its top the rim edges are open: of the six silhouette edges of the whole cube
    // the two on the rim drop out.
    mesh_object open(cube({0, 1, 2, 3, 5}));
    shadow_volume v(&open, vector3d(2.5, 3.5, 4.5), 0.0, 0);
    v.rebuild_mesh();
    ASSERT_EQ(quads(v), 4u);
    for (std::uint32_t k = 0; k < 4; ++k)
        EXPECT_FALSE(v.get_mesh().get_vertex(4 * k).y == 1.0 &&
                     v.get_mesh().get_vertex(4 * k + 1).y == 1.0);

    // The top side alone lit from below: an empty volume with its style.
    mesh_object top(cube({4}));
    shadow_volume w(&top, vector3d(0.5, -5.0, 0.5), 0.0, 0);
    w.rebuild_mesh();
    EXPECT_EQ(w.get_mesh().num_vertices(), 0u);
    EXPECT_EQ(w.get_mesh().num_faces(), 0u);
    ASSERT_EQ(w.get_mesh().num_styles(), 1u);
    EXPECT_EQ(w.get_mesh().get_style(0).name, "std");
}

TEST(ShadowVolume, SetLightRebuildsOnlyOnAChangedLight) {
    primitives::box b;
    const vector3d light(2.5, 3.5, 4.5);
    shadow_volume v(&b, light, 1.0, 0);

    // The light it was made with is no change: still empty, but index and flag are taken.
    v.set_light(light, 1.0, 7, false);
    EXPECT_EQ(v.get_mesh().num_faces(), 0u);
    EXPECT_EQ(v.get_light_index(), 7u);
    EXPECT_FALSE(v.active());

    v.set_light(vector3d(2.5, 3.5, 4.0), 1.0, 7, true);
    EXPECT_EQ(quads(v), 6u);
    EXPECT_TRUE(v.active());
    const double far_y = v.get_mesh().get_vertex(3).y;

    // Grow the box: the same light and value again, or only a new index, rebuild nothing.
    b.set_size(vector3d(2.0, 2.0, 2.0));
    v.set_light(vector3d(2.5, 3.5, 4.0), 1.0, 7, true);
    v.set_light(vector3d(2.5, 3.5, 4.0), 1.0, 8, true);
    EXPECT_EQ(v.get_light_index(), 8u);
    EXPECT_EQ(v.get_mesh().get_vertex(3).y, far_y);

    // A new value alone rebuilds, from the master's current mesh.
    v.set_light(vector3d(2.5, 3.5, 4.0), 2.0, 8, true);
    EXPECT_EQ(v.get_light_value(), 2.0);
    double largest = 0.0;
    for (std::uint32_t i = 0; i < v.get_mesh().num_vertices(); i += 4)
        largest = std::fmax(largest, v.get_mesh().get_vertex(i).x);
    EXPECT_EQ(largest, 2.0);

    // A NaN value never compares equal, so it rebuilds every time.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    v.set_light(vector3d(2.5, 3.5, 4.0), nan, 8, true);
    b.set_size(vector3d(1.0, 1.0, 1.0));
    v.set_light(vector3d(2.5, 3.5, 4.0), nan, 8, true);
    largest = 0.0;
    for (std::uint32_t i = 0; i < v.get_mesh().num_vertices(); i += 4)
        largest = std::fmax(largest, v.get_mesh().get_vertex(i).x);
    EXPECT_EQ(largest, 1.0);
}

TEST(ShadowVolume, LightIsTakenIntoThePlacedMastersObjectSpace) {
    primitives::basic_object parent;
    parent.set_position(vector3d(-4.0, 1.0, 2.0));
    primitives::box placed;
    placed.set_parent(&parent);
    placed.set_position(vector3d(10.0, 2.0, -3.0));
    placed.set_orientation(vector3d(0.2, 1.0, 0.1), 160.0);
    // Seen from the box, the light is on the other side than its world coordinates suggest.
    const vector3d world_light(9.0, 6.0, 3.0);

    shadow_volume v(&placed, world_light, 0.0, 0);
    v.rebuild_mesh();

    // The same volume as an unplaced box's with the light given in object space.
    primitives::box plain;
    shadow_volume expected(&plain, primitives::worldspace_to_objectspace(world_light, placed), 0.0,
                           0);
    expected.rebuild_mesh();
    const indexedfaceset& m = v.get_mesh();
    ASSERT_GT(m.num_faces(), 0u);
    ASSERT_EQ(m.num_vertices(), expected.get_mesh().num_vertices());
    for (std::uint32_t i = 0; i < m.num_vertices(); ++i)
        EXPECT_EQ(m.get_vertex(i), expected.get_mesh().get_vertex(i));

    // In the world, every far vertex lies on the ray from the light through its near vertex.
    const matrix44d to_world = primitives::calc_transformation_matrix(placed);
    for (std::uint32_t k = 0; k < m.num_vertices() / 4; ++k) {
        const vector3d a = transform_vector(to_world, m.get_vertex(4 * k));
        const vector3d far_a = transform_vector(to_world, m.get_vertex(4 * k + 3));
        EXPECT_NEAR(cross(unit(a - world_light), unit(far_a - a)).length(), 0.0, 1e-9);
        EXPECT_GT(dot(a - world_light, far_a - a), 0.0);
    }
}

TEST(ShadowVolume, DegenerateInputGivesAFinishedMesh) {
    // A zero-area face counts as lit (its normal is zero): next to a face turned away from the
    // light, their shared edge makes a quad.
    mesh_data sliver{{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0.5, 0, 1}},
                     {face(0, 1, 2), face(1, 0, 3)}};
    mesh_object o(sliver);
    shadow_volume v(&o, vector3d(0.5, -2.0, 0.5), 0.0, 0);
    v.rebuild_mesh();
    expect_finished(v.get_mesh());
    ASSERT_EQ(quads(v), 1u);
    EXPECT_EQ(v.get_mesh().get_vertex(0), vector3d(0, 0, 0));
    EXPECT_EQ(v.get_mesh().get_vertex(1), vector3d(1, 0, 0));

    // Lights on the vertices of a sphere: where rounding lets an edge through that vertex count,
    // its quad keeps the vertex at the light in place.
    const mesh_data ball = shadow_test::sphere(5, 3, 1.3);
    mesh_object s(ball);
    std::uint32_t pinned = 0;
    for (const vector3d& p : ball.vertices) {
        shadow_volume w(&s, p, 0.0, 0);
        w.rebuild_mesh();
        const indexedfaceset& m = w.get_mesh();
        expect_finished(m);
        for (std::uint32_t k = 0; k < m.num_vertices() / 4; ++k)
            for (std::uint32_t i : {0u, 1u})
                if (m.get_vertex(4 * k + i) == p) {
                    // The quad is a triangle; its other face has collapsed.
                    EXPECT_EQ(m.get_vertex(4 * k + 3 - i), p);
                    const face& a = m.get_face(2 * k);
                    const face& b = m.get_face(2 * k + 1);
                    EXPECT_TRUE(a.normal == vector3d() || b.normal == vector3d());
                    ++pinned;
                }
    }
    EXPECT_GT(pinned, 0u);
}

TEST(ShadowVolumeDeath, RebuildNeedsAMaster) {
    shadow_volume v(nullptr, vector3d(), 0.0, 0);
    EXPECT_DEATH(v.rebuild_mesh(), "m_master != 0");
}
