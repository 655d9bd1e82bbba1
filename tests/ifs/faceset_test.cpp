// The face set's own operations: normals, transforms, bounds, rays and box texture coordinates.
#include <gtest/gtest.h>

#include "facet/math3d.h"
#include "ifs/fixtures.h"

using namespace ifs_test;

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
