// The face set's own operations: exchange, styles, normals, transforms, bounds, rays, texturing.
#include <gtest/gtest.h>

#include "facet/math3d.h"
#include "ifs/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::pen;
using namespace ifs_test;

namespace {

// Two faces of normal +y, the second moved by o, in styles 0 and s (two styles when s is 1).
void two_like_faces(indexedfaceset& fs, const vector3d& o, std::int32_t s = 0) {
    const vector3d a(2, 0, 0), b(0, 0, -3);
    set_mesh(fs, {vector3d(), a, b, o, o + a, o + b});
    fs.faces()[1].style = s;
    fs.faces()[0].style = 0;
    fs.styles().resize(s == 1 ? 2 : 1);
}

}  // namespace

TEST(FaceSet, SwapAndStyles) {
    // The exchange takes exactly six arrays; normals, tangents, bitangents and flags stay.
    indexedfaceset x, y;
    set_mesh(x, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {face(0, 1, 2), face(1, 3, 2)});
    x.texcoords().resize(5);
    x.lines().resize(1);
    x.styles().resize(2);
    x.tangents().resize(6);
    x.bitangents().resize(7);
    y.set_marked(true);
    y.normals().resize(1);
    x.swap(y);
    const auto sizes = [](const indexedfaceset& fs) {
        return std::vector<std::size_t>{
            fs.num_vertices(),      fs.num_texcoords(), fs.num_faces(),      fs.num_edges(),
            fs.num_lines(),         fs.num_styles(),    fs.normals().size(), fs.tangents().size(),
            fs.bitangents().size(), fs.is_marked()};
    };
    EXPECT_EQ(sizes(y), std::vector<std::size_t>({4, 5, 2, 6, 1, 2, 1, 0, 0, 1}));
    EXPECT_EQ(sizes(x), std::vector<std::size_t>({0, 0, 0, 0, 0, 0, 6, 6, 7, 0}));

    // set_style ignores an index beyond the styles; the standard style comes from the object.
    y.set_style(1, graphics::style("glass", brush(color(1, 2, 3), 1), pen(color(4, 5, 6), 2, 3)));
    y.set_style(2, graphics::style("ignored", brush(), pen()));
    EXPECT_EQ(y.get_style(0).name + "|" + y.get_style(1).name, "|glass");
    primitives::basic_object o;
    o.set_material_ref_id("steel");
    o.set_pen(pen(color(9, 9, 9), 3));
    o.enable_texturing(true);
    o.set_texture_id(42);
    o.set_norm_map_id(43);
    y.build_standard_style(o);
    ASSERT_EQ(y.num_styles(), 1u);
    const graphics::style& s = y.get_style(0);
    EXPECT_EQ(s.name + "|" + s.material_ref_id, "std|steel");
    EXPECT_TRUE(s.brush == brush(color(255, 255, 192)) && s.pen == pen(color(9, 9, 9), 3));
    EXPECT_EQ(s.texture.texture_id + s.texture.norm_map_id + s.texture.texturing, 0u);
}

TEST(FaceSet, NormalsTransformsBoundsAndRays) {
    indexedfaceset fs;  // normals +z, −x and, collinear, zero
    const std::vector<vector3d> three = {{0, 0, 0}, {2, 0, 0}, {0, 3, 0}, {0, 0, 0}, {0, 0, 1},
                                         {0, 1, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}};
    set_mesh(fs, three);
    const vector3d expected[] = {{0, 0, 1}, {-1, 0, 0}, {0, 0, 0}};
    for (std::uint32_t i = 0; i < 9; ++i)
        EXPECT_TRUE(fs.get_normal(i) == expected[i / 3] &&
                    fs.get_face(i / 3).normal == expected[i / 3])
            << i;
    const vector3d p0(0.1, 0.2, 0.3), p1(1.7, -0.4, 0.9), p2(-0.6, 1.3, 2.2);
    set_mesh(fs, {p0, p1, p2});
    vector3d n = cross(p1 - p0, p2 - p0);  // normalised, exactly as written
    n.normalize();
    EXPECT_EQ(fs.get_face(0).normal, n);

    // A mirror keeps the vertex order, so the normals flip; with the projective division.
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    matrix44d m;
    make_scaling_matrix(m, -1.0, 1.0, 1.0);
    append_translation(m, 0.0, 0.0, 2.0);
    m(3, 3) = 2.0;
    fs.apply_transform(m);
    EXPECT_EQ(vertices_of(fs), "0 0 1|-0.5 0 1|0 0.5 1");
    for (std::uint32_t k = 0; k < 3; ++k) EXPECT_EQ(fs.get_normal(k), vector3d(0, 0, -1));
    EXPECT_EQ(fs.get_face(0).normal, vector3d(0, 0, -1));

    // Bounds through the centre and the extents; (0, 0, 0) for no vertices.
    vector3d lo(1, 1, 1), hi(-1, -1, -1);
    indexedfaceset().get_bounds(lo, hi);
    EXPECT_EQ(lo + hi * 2.0, vector3d());
    set_mesh(fs, {{0.1, 5, -2}, {0.7, -3, 4}, {0.3, 1, 1}});
    fs.get_bounds(lo, hi);
    const vector3d centre((0.1 + 0.7) / 2.0, (-3.0 + 5.0) / 2.0, (-2.0 + 4.0) / 2.0);
    const vector3d half((0.7 - 0.1) / 2.0, (5.0 - -3.0) / 2.0, (4.0 - -2.0) / 2.0);
    EXPECT_TRUE(lo == centre - half && hi == centre + half);

    // Rays hit the nearest face, the lower index on a tie; a miss leaves the outputs alone.
    double t = -7.0;
    std::uint32_t hit = 99;
    EXPECT_FALSE(indexedfaceset().intersection(vector3d(0, 0, 0), vector3d(0, 0, 1), t, hit));
    std::vector<vector3d> v;  // face 0 at z = 0, faces 1 and 2 alike at z = 1, face 3 at z = 5
    for (double z : {0.0, 1.0, 1.0, 5.0})
        for (const vector3d& p : {vector3d(-1, -1, z), vector3d(1, -1, z), vector3d(0, 1, z)})
            v.push_back(p);
    set_mesh(fs, v);
    EXPECT_FALSE(fs.intersection(vector3d(5, 5, 0), vector3d(0, 0, 1), t, hit));  // beside
    EXPECT_FALSE(fs.intersection(vector3d(0, 0, 6), vector3d(0, 0, 1), t, hit));  // behind
    EXPECT_TRUE(t == -7.0 && hit == 99u);
    for (const auto& [from, dir, distance, face] :
         {std::tuple(10.0, -1.0, 5.0, 3u), std::tuple(-1.0, 1.0, 1.0, 0u),
          std::tuple(0.5, 1.0, 0.5, 1u)}) {
        ASSERT_TRUE(fs.intersection(vector3d(0, 0, from), vector3d(0, 0, dir), t, hit));
        EXPECT_TRUE(hit == face && t == distance) << from;
    }
}

TEST(BoxTexcoords, ProjectedAlongTheDominantAxisPlainOrTurned) {
    // Faces 2 (1 2 6, x = 2), 4 (2 3 7, z = 0), 5 (2 7 6, z = 0), 8 (4 5 6, y = 2): plain u, v are
    // (z, y), (x, y), (x, z); turned (−y, z), (−y, x), (z, x).
    primitives::box b(2, 2, 2);
    const indexedfaceset& fs = b.get_mesh();
    const auto corners = [&fs](std::initializer_list<std::uint32_t> faces) {
        std::string s;
        for (std::uint32_t f : faces) s += coords_of(fs, f, 1) + "|";
        return s;
    };
    EXPECT_EQ(fs.get_face(8).texcoord[2], 26u);
    EXPECT_EQ(corners({2, 4, 8}), "2 0|0 0|0 2|2 0|0 0|0 2|0 2|2 2|2 0|");
    // Tangents follow u, bitangents decreasing v: top +x and −z, side x = 2 +z and −y.
    EXPECT_TRUE(fs.get_face(8).tangent == vector3d(1, 0, 0) &&
                fs.get_tangent(3 * 8 + 1) == vector3d(1, 0, 0));
    EXPECT_TRUE(fs.get_face(8).bitangent == vector3d(0, 0, -1) &&
                fs.get_bitangent(3 * 8 + 2) == vector3d(0, 0, -1));
    EXPECT_TRUE(fs.get_face(2).tangent == vector3d(0, 0, 1) &&
                fs.get_face(2).bitangent == vector3d(0, -1, 0));
    b.set_texture_rotated(true);
    b.get_mesh();
    EXPECT_EQ(corners({2, 5, 8}), "0 2|0 0|-2 0|0 2|-2 0|-2 2|2 0|2 2|0 2|");

    // Normal (1, 1, 0) / sqrt 2: x and y tie, x wins: u = z, v = y.
    indexedfaceset tie;
    set_mesh(tie, {{0, 0, 0}, {0, 0, 1}, {1, -1, 0}});
    texture(tie);
    EXPECT_EQ(coords_of(tie), "0 0|1 0|0 -1");
}

TEST(BoxTexcoords, EachStyleScalesItsFacesFacesWithoutOneGetZeros) {
    indexedfaceset fs;
    two_like_faces(fs, vector3d(), 1);
    fs.styles()[1].texture.texture_scale = vector2d(2.0, 2.0);
    fs.gen_texcoords_box();
    EXPECT_EQ(coords_of(fs), "0 0|2 0|0 -3|0 0|4 0|0 -6");

    // A rerun starts over from zeros; a face without a style keeps its indices.
    two_like_faces(fs, vector3d(1, 1, 1));
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
    ASSERT_NE(fs.get_tangent(0), vector3d());
    fs.faces()[1].style = -1;
    fs.faces()[1].texcoord[1] = 4;
    fs.gen_texcoords_box();
    ASSERT_EQ(fs.num_texcoords(), 6u);
    EXPECT_EQ(coords_of(fs), "0 0|2 0|0 -3|0 0|0 0|0 0");
    EXPECT_EQ(fs.get_face(1).texcoord[0] + fs.get_face(1).texcoord[1], 7u);
    for (std::uint32_t t = 0; t < 6; ++t)
        EXPECT_EQ(fs.get_tangent(t) + fs.get_bitangent(t), vector3d()) << t;

    // Degenerate coordinates give zero frames; missing ones fail.
    two_like_faces(fs, vector3d(1, 1, 1));
    fs.texcoords().resize(1);
    fs.compute_tangent_space();
    EXPECT_EQ(fs.get_tangent(0) + fs.get_bitangent(5), vector3d());
    fs.faces()[1].texcoord[2] = 1;
    EXPECT_DEATH(fs.compute_tangent_space(), "index < m_size");
}

TEST(TextureParams, OneStyleTakesTheObjectsSettingsSeveralKeepTheirs) {
    primitives::box object;
    object.enable_texturing(true);
    object.set_texture_id(9);
    object.set_texture_scale(4.0, 4.0);
    indexedfaceset fs;
    two_like_faces(fs, vector3d(1, 1, 1));
    fs.set_texture_params(object);
    EXPECT_EQ(coords_of(fs), "0 0|8 0|0 -12|4 4|12 4|4 -8");
    // Faces that lost their style get their slots cleared on a rebuild, and zero frames.
    fs.faces()[1].style = 2;
    fs.set_texture_params(object);
    EXPECT_EQ(coords_of(fs), "0 0|8 0|0 -12|0 0|0 0|0 0");
    EXPECT_TRUE(fs.get_tangent(4) == vector3d() && fs.get_face(1).tangent == vector3d());
    EXPECT_EQ(fs.get_tangent(1), vector3d(1, 0, 0));

    // Several styles: the object's settings are not taken; coordinates (at the styles' own
    // scales) and frames are made all the same.
    indexedfaceset two;
    two_like_faces(two, vector3d(1, 1, 1), 1);
    two.styles()[1].texture.texture_id = 5;
    two.set_texture_params(object);
    EXPECT_FALSE(two.get_textured() || two.get_style(0).texture.texturing);
    EXPECT_EQ(two.get_texture_id() + two.get_style(0).texture.texture_id, 0u);
    EXPECT_EQ(two.get_style(1).texture.texture_id, 5u);
    EXPECT_EQ(two.get_texture_scale(), vector2d(1.0, 1.0));
    EXPECT_EQ(coords_of(two), "0 0|2 0|0 -3|1 1|3 1|1 -2");
    EXPECT_TRUE(two.get_face(0).tangent == vector3d(1, 0, 0) &&
                two.get_tangent(5) == vector3d(1, 0, 0));
}
