#include <gtest/gtest.h>

#include "facet/ifs.h"
#include "facet/objects.h"

using graphics::brush;
using graphics::color;
using graphics::pen;

namespace {

// Two triangles sharing an edge; flags and arrays that swap must leave are set too.
void fill_two_triangles(indexedfaceset& fs) {
    fs.vertices().resize(4);
    fs.vertices()[0] = vector3d(0.0, 0.0, 0.0);
    fs.vertices()[1] = vector3d(1.0, 0.0, 0.0);
    fs.vertices()[2] = vector3d(0.0, 1.0, 0.0);
    fs.vertices()[3] = vector3d(1.0, 1.0, 0.0);
    fs.faces().resize(2);
    fs.faces()[0] = face(0, 1, 2);
    fs.faces()[1] = face(1, 3, 2);
}

}  // namespace

TEST(FaceSetRecords, Defaults) {
    const texcoord tc;
    EXPECT_EQ(tc.u, 0.0f);
    EXPECT_EQ(tc.v, 0.0f);

    const face f(4, 5, 6);
    EXPECT_EQ(f.vertex[0], 4u);
    EXPECT_EQ(f.vertex[2], 6u);
    EXPECT_EQ(f.texcoord[0], 0u);
    EXPECT_EQ(f.normal, vector3d());
    EXPECT_EQ(f.tangent, vector3d());
    EXPECT_EQ(f.bitangent, vector3d());
    EXPECT_EQ(f.brush, brush());
    EXPECT_EQ(f.pen, pen());
    EXPECT_EQ(f.style, -1);

    const line l(2, 3);
    EXPECT_EQ(l.start, 2u);
    EXPECT_EQ(l.end, 3u);
    EXPECT_EQ(l.pen, pen());

    halfedge h(7, nullptr);
    EXPECT_EQ(h.vertex, 7u);
    EXPECT_EQ(h.next, nullptr);
    EXPECT_EQ(h.m_twinedge, nullptr);
    EXPECT_EQ(h.flags, 0u);
    h.flags = 6;
    h.set_drawn(true);
    EXPECT_EQ(h.flags, 7u);
    EXPECT_TRUE(h.drawn());
    h.set_drawn(false);
    EXPECT_EQ(h.flags, 6u);
}

TEST(FaceSetRecords, TwinLinkingIsSymmetricAndChecked) {
    halfedge a, b, c;
    a.set_twin(&b);
    EXPECT_EQ(a.m_twinedge, &b);
    EXPECT_EQ(b.m_twinedge, &a);
    EXPECT_DEATH(c.set_twin(&a), "twin->m_twinedge == 0");
    EXPECT_DEATH(a.set_twin(&c), "m_twinedge == 0");
}

TEST(FaceSet, Defaults) {
    const indexedfaceset fs;
    EXPECT_EQ(fs.num_vertices(), 0u);
    EXPECT_EQ(fs.num_faces(), 0u);
    EXPECT_EQ(fs.num_edges(), 0u);
    EXPECT_EQ(fs.num_lines(), 0u);
    EXPECT_EQ(fs.num_texcoords(), 0u);
    EXPECT_EQ(fs.num_styles(), 0u);
    EXPECT_TRUE(fs.get_backface_culling());
    EXPECT_FALSE(fs.edges_only());
    EXPECT_FALSE(fs.is_marked());
    EXPECT_FALSE(fs.get_textured());
    EXPECT_FALSE(fs.show_texture_in_bw_mode());
    EXPECT_FALSE(fs.show_black_in_bw_mode());
    EXPECT_FALSE(fs.texture_rotated());
    EXPECT_EQ(fs.get_visible_edge_treshold(), 65.0);
    EXPECT_EQ(fs.get_texture_scale(), vector2d(1.0, 1.0));
    EXPECT_EQ(fs.get_texture_id(), 0u);
    EXPECT_EQ(fs.get_normal_map_id(), 0u);
    EXPECT_EQ(static_cast<unsigned>(fs.get_texture_mode()), 0u);
}

TEST(FaceSet, ElementAccessIsChecked) {
    indexedfaceset fs;
    fill_two_triangles(fs);
    EXPECT_EQ(fs.get_vertex(3), vector3d(1.0, 1.0, 0.0));
    EXPECT_EQ(fs.get_face(1).vertex[1], 3u);
    EXPECT_DEATH(fs.get_vertex(4), "index < m_size");
    EXPECT_DEATH(fs.get_face(2), "index < m_size");
    EXPECT_DEATH(fs.get_style(0), "index < m_size");
    EXPECT_DEATH(fs.get_normal(0), "index < m_size");
}

TEST(FaceSet, SwapExchangesExactlySixArrays) {
    indexedfaceset a;
    fill_two_triangles(a);
    a.texcoords().resize(6);
    a.edges().resize(6);
    a.lines().resize(1);
    a.styles().resize(2);
    a.compute_normals();
    a.tangents().resize(6);
    a.bitangents().resize(6);
    a.set_backface_culling(false);
    a.set_texture_id(5);
    a.set_texture_scale(2.0, 3.0);
    a.set_visible_edge_treshold(10.0);

    indexedfaceset b;
    b.set_marked(true);
    b.normals().resize(1);

    a.swap(b);
    EXPECT_EQ(b.num_vertices(), 4u);
    EXPECT_EQ(b.num_texcoords(), 6u);
    EXPECT_EQ(b.num_faces(), 2u);
    EXPECT_EQ(b.num_edges(), 6u);
    EXPECT_EQ(b.num_lines(), 1u);
    EXPECT_EQ(b.num_styles(), 2u);
    EXPECT_EQ(a.num_vertices() + a.num_texcoords() + a.num_faces() + a.num_edges() + a.num_lines() +
                  a.num_styles(),
              0u);

    // Normals, tangents, bitangents and every flag stay where they were.
    EXPECT_EQ(a.normals().size(), 6u);
    EXPECT_EQ(a.tangents().size(), 6u);
    EXPECT_EQ(a.bitangents().size(), 6u);
    EXPECT_EQ(b.normals().size(), 1u);
    EXPECT_EQ(b.tangents().size(), 0u);
    EXPECT_FALSE(a.get_backface_culling());
    EXPECT_EQ(a.get_texture_id(), 5u);
    EXPECT_EQ(a.get_texture_scale(), vector2d(2.0, 3.0));
    EXPECT_EQ(a.get_visible_edge_treshold(), 10.0);
    EXPECT_FALSE(a.is_marked());
    EXPECT_TRUE(b.is_marked());
    EXPECT_TRUE(b.get_backface_culling());
    EXPECT_EQ(b.get_texture_id(), 0u);
}

TEST(FaceSet, SetStyleIgnoresOutOfRange) {
    indexedfaceset fs;
    fs.set_style(0, graphics::style("x", brush(), pen()));
    EXPECT_EQ(fs.num_styles(), 0u);

    fs.styles().resize(2);
    graphics::style s("glass", brush(color(1, 2, 3), 1), pen(color(4, 5, 6), 2, 3));
    s.material_ref_id = "mat";
    s.texture = graphics::texture_info(7, 8, graphics::texgen_mode::none,
                                       graphics::texture_mode::decal, 2.0, 4.0, true);
    fs.set_style(1, s);
    fs.set_style(2, graphics::style("ignored", brush(), pen()));
    EXPECT_EQ(fs.num_styles(), 2u);
    EXPECT_EQ(fs.get_style(0).name, "");
    const graphics::style& got = fs.get_style(1);
    EXPECT_EQ(got.name, "glass");
    EXPECT_EQ(got.material_ref_id, "mat");
    EXPECT_EQ(got.brush, s.brush);
    EXPECT_EQ(got.pen, s.pen);
    EXPECT_EQ(got.texture.texture_id, 7u);
    EXPECT_EQ(got.texture.norm_map_id, 8u);
    EXPECT_EQ(got.texture.texture_mode, graphics::texture_mode::decal);
    EXPECT_EQ(got.texture.texture_scale, vector2d(2.0, 4.0));
    EXPECT_TRUE(got.texture.texture_rotated);
}

TEST(FaceSet, BuildStandardStyleFromObject) {
    primitives::basic_object o;
    o.set_material_ref_id("steel");
    o.set_pen(pen(color(9, 9, 9), 3));
    o.enable_texturing(true);
    o.set_texture_id(42);
    indexedfaceset fs;
    fs.styles().resize(3);
    fs.build_standard_style(o);
    ASSERT_EQ(fs.num_styles(), 1u);
    const graphics::style& s = fs.get_style(0);
    EXPECT_EQ(s.name, "std");
    EXPECT_EQ(s.material_ref_id, "steel");
    EXPECT_EQ(s.brush, brush(color(255, 255, 192)));
    EXPECT_EQ(s.pen, pen(color(9, 9, 9), 3));
    EXPECT_EQ(s.texture.texture_id, 0u);
    EXPECT_EQ(s.texture.norm_map_id, 0u);
    EXPECT_FALSE(s.texture.texturing);
}
