// The meshes of lines, polylines, arrows and crosshairs: vertex and line tables, and what the
// exchange into the target face set replaces and what it leaves behind.
#include <gtest/gtest.h>

#include <cstdint>

#include "facet/ifs.h"
#include "facet/primitives.h"

using graphics::color;
using graphics::pen;

namespace {

void expect_line(const indexedfaceset& fs, std::uint32_t i, std::uint32_t start, std::uint32_t end,
                 const pen& p) {
    const line& l = fs.get_line(i);
    EXPECT_EQ(l.start, start) << "line " << i;
    EXPECT_EQ(l.end, end) << "line " << i;
    EXPECT_TRUE(l.pen == p) << "line " << i;
}

void expect_only_lines(const indexedfaceset& fs) {
    EXPECT_EQ(fs.num_faces(), 0u);
    EXPECT_EQ(fs.num_edges(), 0u);
    EXPECT_EQ(fs.num_texcoords(), 0u);
    EXPECT_EQ(fs.num_styles(), 0u);
}

const pen red_pen(color(255, 0, 0, 255), 3, 1);

// A face set holding a built box (12 faces, normals, half-edges, one style) and flags that
// differ from the defaults.
void fill_with_box(indexedfaceset& fs) {
    fs.create_mesh(primitives::box(1, 2, 3));
    fs.set_edges_only(true);
    fs.set_marked(true);
    fs.set_backface_culling(false);
    fs.set_visible_edge_treshold(12.0);
}

void expect_box_leftovers(const indexedfaceset& fs) {
    EXPECT_EQ(fs.normals().size(), 36u);
    EXPECT_EQ(fs.get_normal(3 * 8), vector3d(0, 1, 0));  // the box's top
    EXPECT_EQ(fs.tangents().size(), 36u);
    EXPECT_EQ(fs.bitangents().size(), 36u);
    EXPECT_TRUE(fs.edges_only());
    EXPECT_TRUE(fs.is_marked());
    EXPECT_FALSE(fs.get_backface_culling());
    EXPECT_EQ(fs.get_visible_edge_treshold(), 12.0);
}

}  // namespace

TEST(LineMesh, TwoVerticesOneLine) {
    primitives::line l(vector3d(0, 0, 0), vector3d(1, 2, 3));
    l.set_pen(red_pen);
    const indexedfaceset& fs = l.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 2u);
    EXPECT_EQ(fs.get_vertex(0), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(1), vector3d(1, 2, 3));
    ASSERT_EQ(fs.num_lines(), 1u);
    expect_line(fs, 0, 0, 1, red_pen);
    expect_only_lines(fs);
}

TEST(LineMesh, TextureSettingsGoToThePreviousContents) {
    primitives::line l(vector3d(0, 0, 0), vector3d(1, 0, 0));
    l.enable_texturing(true);
    l.set_texture_id(7);
    l.set_norm_map_id(8);
    l.set_texture_scale(2.0, 3.0);
    l.set_edges_only(true);

    // A fresh target: the standard style is built there, gives the target the line's texture
    // members, and is then exchanged out.
    indexedfaceset fresh;
    fresh.create_mesh(l);
    EXPECT_TRUE(fresh.get_textured());
    EXPECT_EQ(fresh.get_texture_id(), 7u);
    EXPECT_EQ(fresh.get_normal_map_id(), 8u);
    EXPECT_EQ(fresh.get_texture_scale(), vector2d(2.0, 3.0));
    EXPECT_EQ(fresh.num_lines(), 1u);
    EXPECT_FALSE(fresh.edges_only());
    expect_only_lines(fresh);

    // A target holding a box: its one style takes the settings, box texture coordinates and
    // tangents are made for its faces, then all of that is exchanged out; normals and flags
    // stay, edges_only included.
    indexedfaceset target;
    fill_with_box(target);
    target.create_mesh(l);
    EXPECT_EQ(target.get_texture_id(), 7u);
    EXPECT_EQ(target.get_texture_scale(), vector2d(2.0, 3.0));
    EXPECT_EQ(target.num_vertices(), 2u);
    EXPECT_EQ(target.num_lines(), 1u);
    expect_only_lines(target);
    expect_box_leftovers(target);

    // The settings of a target with two styles are left alone.
    indexedfaceset two_styles;
    two_styles.styles().resize(2);
    two_styles.set_texture_id(3);
    two_styles.create_mesh(l);
    EXPECT_EQ(two_styles.get_texture_id(), 3u);
    EXPECT_FALSE(two_styles.get_textured());
}

TEST(PolylineMesh, OpenChainOfSegments) {
    primitives::polyline p;
    p.set_pen(red_pen);
    const vector3d pts[4] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    for (const vector3d& v : pts) p.add_point(v);
    const indexedfaceset& fs = p.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u);
    for (std::uint32_t i = 0; i < 4; ++i) EXPECT_EQ(fs.get_vertex(i), pts[i]);
    ASSERT_EQ(fs.num_lines(), 3u);  // not closed
    expect_line(fs, 0, 0, 1, red_pen);
    expect_line(fs, 1, 1, 2, red_pen);
    expect_line(fs, 2, 2, 3, red_pen);
    expect_only_lines(fs);
}

TEST(PolylineMesh, ExchangeReplacesArraysOnly) {
    primitives::polyline p;
    p.add_point(vector3d(1, 1, 1));
    p.enable_texturing(true);
    p.set_texture_id(9);

    indexedfaceset target;
    fill_with_box(target);
    target.lines().resize(2);
    target.create_mesh(p);
    EXPECT_EQ(target.num_vertices(), 0u);
    EXPECT_EQ(target.num_lines(), 0u);
    expect_only_lines(target);
    expect_box_leftovers(target);
    // No texture settings are taken from the polyline.
    EXPECT_EQ(target.get_texture_id(), 0u);
    EXPECT_FALSE(target.get_textured());

    p.add_point(vector3d(2, 2, 2));
    p.set_edges_only(true);
    indexedfaceset fresh;
    fresh.create_mesh(p);
    EXPECT_EQ(fresh.num_lines(), 1u);
    EXPECT_FALSE(fresh.edges_only());
}

TEST(ArrowMesh, VerticesAndStrokes) {
    primitives::arrow a;
    a.set_length(10);
    a.set_head_size(1, 2);
    a.set_pen(red_pen);
    const indexedfaceset& fs = a.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 6u);
    EXPECT_EQ(fs.get_vertex(0), vector3d(0, 0, 0));
    EXPECT_EQ(fs.get_vertex(1), vector3d(10, 0, 0));
    EXPECT_EQ(fs.get_vertex(2), vector3d(8, 0.5, 0));
    EXPECT_EQ(fs.get_vertex(3), vector3d(8, -0.5, 0));
    EXPECT_EQ(fs.get_vertex(4), vector3d(8, 0, 0.5));
    EXPECT_EQ(fs.get_vertex(5), vector3d(8, 0, -0.5));
    ASSERT_EQ(fs.num_lines(), 5u);
    expect_line(fs, 0, 0, 1, red_pen);
    for (std::uint32_t i = 1; i < 5; ++i) expect_line(fs, i, 1, i + 1, red_pen);
    expect_only_lines(fs);

    // A head longer than the arrow puts the barbs behind the tail.
    a.set_head_size(1, 12);
    EXPECT_EQ(a.get_mesh().get_vertex(4), vector3d(-2, 0, 0.5));
    // The default arrow.
    EXPECT_EQ(primitives::arrow().get_mesh().get_vertex(3), vector3d(9000, -500, 0));
}

TEST(CrosshairMesh, OneSegmentPerAxis) {
    primitives::crosshair c;
    c.set_size(4);
    c.set_pen(red_pen);
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 6u);
    EXPECT_EQ(fs.get_vertex(0), vector3d(-2, 0, 0));
    EXPECT_EQ(fs.get_vertex(1), vector3d(2, 0, 0));
    EXPECT_EQ(fs.get_vertex(2), vector3d(0, -2, 0));
    EXPECT_EQ(fs.get_vertex(3), vector3d(0, 2, 0));
    EXPECT_EQ(fs.get_vertex(4), vector3d(0, 0, -2));
    EXPECT_EQ(fs.get_vertex(5), vector3d(0, 0, 2));
    ASSERT_EQ(fs.num_lines(), 3u);
    for (std::uint32_t j = 0; j < 3; ++j) expect_line(fs, j, 2 * j, 2 * j + 1, red_pen);
    expect_only_lines(fs);
}

TEST(MarkerMeshes, ExchangeLeavesNormalsAndFlagsBehind) {
    primitives::arrow a;
    a.set_edges_only(false);
    a.enable_texturing(true);
    a.set_texture_id(5);
    indexedfaceset target;
    fill_with_box(target);
    target.create_mesh(a);
    EXPECT_EQ(target.num_vertices(), 6u);
    EXPECT_EQ(target.num_lines(), 5u);
    expect_only_lines(target);
    expect_box_leftovers(target);
    EXPECT_EQ(target.get_texture_id(), 0u);  // no texture settings

    primitives::crosshair c;
    indexedfaceset target2;
    fill_with_box(target2);
    target2.create_mesh(c);
    EXPECT_EQ(target2.num_vertices(), 6u);
    EXPECT_EQ(target2.num_lines(), 3u);
    expect_only_lines(target2);
    expect_box_leftovers(target2);
}
