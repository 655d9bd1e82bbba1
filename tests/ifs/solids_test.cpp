// The meshes of box, cylinder and cone: vertex and face tables, orientation, the finishing
// steps and the flags and styles they leave.
#include <gtest/gtest.h>

#include <cmath>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "facet/projector.h"

using graphics::brush;
using graphics::color;
using graphics::pen;

namespace {

void expect_face(const indexedfaceset& fs, std::uint32_t i, std::uint32_t a, std::uint32_t b,
                 std::uint32_t c) {
    const face& f = fs.get_face(i);
    EXPECT_EQ(f.vertex[0], a) << "face " << i;
    EXPECT_EQ(f.vertex[1], b) << "face " << i;
    EXPECT_EQ(f.vertex[2], c) << "face " << i;
}

// Every face normal points from `inside` towards the face (the solids are convex).
void expect_outward(const indexedfaceset& fs, const vector3d& inside) {
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        const face& f = fs.get_face(i);
        const vector3d centre =
            (fs.get_vertex(f.vertex[0]) + fs.get_vertex(f.vertex[1]) + fs.get_vertex(f.vertex[2])) /
            3.0;
        EXPECT_NEAR(f.normal.length(), 1.0, 1e-12) << "face " << i;
        EXPECT_GT(dot(f.normal, centre - inside), 0.0) << "face " << i;
    }
}

// Whether a view of the face set changes any edge mark.
bool silhouettes_active(indexedfaceset& fs) {
    std::vector<std::uint32_t> before;
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e) before.push_back(fs.get_edge(e).flags);
    fs.determine_visible_edges(camera(vector3d(0, 0.5, 10), vector3d(0, 0, -1)),
                               orthographic_projector(), 65.0);
    bool changed = false;
    for (std::uint32_t e = 0; e < fs.num_edges(); ++e)
        changed = changed || fs.get_edge(e).flags != before[e];
    return changed;
}

}  // namespace

TEST(BoxMesh, TablesAndFinishing) {
    primitives::box b(1.0, 2.0, 3.0);
    const indexedfaceset& fs = b.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 8u);
    ASSERT_EQ(fs.num_faces(), 12u);
    EXPECT_EQ(fs.num_edges(), 36u);
    EXPECT_EQ(fs.get_vertex(5), vector3d(1, 2, 3));
    EXPECT_EQ(fs.get_vertex(3), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(0), vector3d(0, 0, 3));
    EXPECT_EQ(fs.get_vertex(7), vector3d(0, 2, 0));
    expect_face(fs, 0, 0, 1, 5);
    expect_face(fs, 6, 3, 0, 4);
    expect_face(fs, 11, 0, 2, 1);
    EXPECT_EQ(fs.get_face(8).normal, vector3d(0, 1, 0));
    EXPECT_EQ(fs.get_normal(3 * 8 + 2), vector3d(0, 1, 0));
    expect_outward(fs, vector3d(0.5, 1.0, 1.5));
    EXPECT_EQ(fs.num_texcoords(), 36u);
    EXPECT_EQ(fs.num_lines(), 0u);
}

TEST(BoxMesh, SilhouetteMarkingOnlyForRoundSolids) {
    primitives::box b;
    primitives::cylinder c(1.0, 0.5, 16);
    primitives::cone k;
    EXPECT_FALSE(silhouettes_active(b.get_mesh()));
    EXPECT_TRUE(silhouettes_active(c.get_mesh()));
    EXPECT_TRUE(silhouettes_active(k.get_mesh()));
}

TEST(CylinderMesh, TablesForEightDivisions) {
    primitives::cylinder c(3.0, 2.0, 8);
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 18u);
    ASSERT_EQ(fs.num_faces(), 32u);
    EXPECT_EQ(fs.num_edges(), 96u);
    EXPECT_EQ(fs.get_vertex(0), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(1), vector3d(0, 3, 0));
    EXPECT_EQ(fs.get_vertex(2), vector3d(0, 3, 2));    // T(0) on +z
    EXPECT_EQ(fs.get_vertex(10), vector3d(0, 0, 2));   // B(0)
    const double a = 2.0 * 2 * 3.141592653589793 / 8;  // ring position 2: +x
    EXPECT_EQ(fs.get_vertex(4), vector3d(2.0 * std::sin(a), 3, 2.0 * std::cos(a)));
    EXPECT_NEAR(fs.get_vertex(4).x, 2.0, 1e-15);

    expect_face(fs, 0, 1, 2, 3);   // top cap
    expect_face(fs, 7, 1, 9, 2);   // closing top cap face
    expect_face(fs, 8, 2, 10, 3);  // first side face
    expect_face(fs, 9, 3, 10, 11);
    expect_face(fs, 22, 9, 17, 2);  // closing side faces
    expect_face(fs, 23, 2, 17, 10);
    expect_face(fs, 24, 0, 11, 10);  // bottom cap
    expect_face(fs, 31, 0, 10, 17);
    expect_outward(fs, vector3d(0.0, 1.5, 0.0));
}

TEST(CylinderMesh, DivisionsTruncateAndZeroFails) {
    primitives::cylinder c;
    c.set_number_of_divisions(7.9);
    EXPECT_EQ(c.get_mesh().num_faces(), 28u);
    EXPECT_EQ(c.get_mesh().num_vertices(), 16u);

    c.set_number_of_divisions(0.0);
    EXPECT_DEATH(c.get_mesh(), "index < m_size");
    c.set_number_of_divisions(1.0);
    EXPECT_EQ(c.get_mesh().num_faces(), 4u);  // degenerate, but built
    c.set_number_of_divisions(1073741824.0);
    EXPECT_DEATH(c.get_mesh(), "n <= max_cylinder_divisions");
}

TEST(ConeMesh, AlwaysTwelveSegments) {
    primitives::cone k(2.0, 1.0);
    k.set_texture_rotated(true);
    k.set_smoothing_threshold_angle(5.0);
    const indexedfaceset& fs = k.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 14u);
    ASSERT_EQ(fs.num_faces(), 24u);
    EXPECT_NEAR(fs.get_vertex(3).x, 1.0, 1e-15);
    EXPECT_EQ(fs.get_vertex(3).y, 0.0);
    EXPECT_NEAR(fs.get_vertex(3).z, 0.0, 1e-15);
    EXPECT_EQ(fs.get_vertex(0), vector3d(0, 0, 1));
    EXPECT_EQ(fs.get_vertex(12), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(13), vector3d(0, 2, 0));
    expect_face(fs, 0, 0, 1, 13);
    expect_face(fs, 11, 11, 0, 13);
    expect_face(fs, 12, 12, 1, 0);
    expect_face(fs, 23, 0, 11, 12);
    expect_outward(fs, vector3d(0.0, 0.5, 0.0));
}

TEST(SolidMeshes, CommonTailAppliesTheObjectsSettings) {
    primitives::cylinder c(1.0, 0.5, 6);
    const brush red(color(255, 0, 0), 0);
    const pen wide(color(0, 0, 255), 3);
    c.set_brush(red);
    c.set_pen(wide);
    c.set_material_ref_id("steel");
    c.set_backface_culling(false);
    c.set_black_in_bw_mode(true);
    c.set_show_texture_in_bw_mode(true);
    c.set_visible_edge_threshold_angle(40.0);
    c.enable_texturing(true);
    c.set_texture_id(7);
    c.set_norm_map_id(8);
    c.set_texture_mode(graphics::texture_mode::decal);
    c.set_texture_scale(2.0, 3.0);
    const indexedfaceset& fs = c.get_mesh();

    EXPECT_FALSE(fs.get_backface_culling());
    EXPECT_TRUE(fs.show_black_in_bw_mode());
    EXPECT_TRUE(fs.show_texture_in_bw_mode());
    EXPECT_EQ(fs.get_visible_edge_treshold(), 40.0);
    EXPECT_TRUE(fs.get_textured());
    EXPECT_EQ(fs.get_texture_id(), 7u);
    EXPECT_EQ(fs.get_normal_map_id(), 8u);
    EXPECT_EQ(fs.get_texture_mode(), graphics::texture_mode::decal);
    EXPECT_EQ(fs.get_texture_scale(), vector2d(2.0, 3.0));
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        EXPECT_EQ(fs.get_face(i).brush, red);
        EXPECT_EQ(fs.get_face(i).pen, wide);
        EXPECT_EQ(fs.get_face(i).style, 0);
    }
    ASSERT_EQ(fs.num_styles(), 1u);
    const graphics::style& s = fs.get_style(0);
    EXPECT_EQ(s.name, "std");
    EXPECT_EQ(s.material_ref_id, "steel");
    EXPECT_EQ(s.brush, red);
    EXPECT_TRUE(s.texture.texturing);
    EXPECT_EQ(s.texture.texture_id, 7u);
    EXPECT_EQ(s.texture.norm_map_id, 8u);
    EXPECT_EQ(s.texture.texture_mode, graphics::texture_mode::decal);
    EXPECT_EQ(s.texture.texgen_mode, graphics::texgen_mode::box);
    EXPECT_EQ(s.texture.texture_scale, vector2d(2.0, 3.0));
}

TEST(SolidMeshes, RebuildKeepsTheExistingStyle) {
    primitives::box b;
    b.get_mesh();
    const brush blue(color(0, 0, 255), 0);
    b.set_brush(blue);
    b.set_size(vector3d(2, 2, 2));
    const indexedfaceset& fs = b.get_mesh();
    EXPECT_EQ(fs.get_vertex(5), vector3d(2, 2, 2));
    EXPECT_EQ(fs.get_face(0).brush, blue);
    // The style table is only created when empty: the old standard style stays.
    EXPECT_EQ(fs.get_style(0).brush, brush(color(255, 255, 192), 0));
}

TEST(SolidMeshes, WithoutGeneratedCoordinatesTheTangentSpaceFails) {
    primitives::box b;
    b.set_texgen_mode(graphics::texgen_mode::none);
    EXPECT_DEATH(b.get_mesh(), "index < m_size");
}
