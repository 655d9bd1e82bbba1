#include <gtest/gtest.h>

#include "facet/ifs.h"
#include "facet/math3d.h"

namespace {

void set_triangles(indexedfaceset& fs, std::initializer_list<vector3d> points) {
    fs.vertices().resize(static_cast<std::uint32_t>(points.size()));
    std::uint32_t i = 0;
    for (const vector3d& p : points) fs.vertices()[i++] = p;
    fs.faces().resize(fs.num_vertices() / 3);
    for (std::uint32_t f = 0; f < fs.num_faces(); ++f)
        fs.faces()[f] = face(3 * f, 3 * f + 1, 3 * f + 2);
}

}  // namespace

TEST(FaceSetNormals, FlatPerFaceAndZeroForDegenerateFaces) {
    indexedfaceset fs;
    set_triangles(fs, {{0, 0, 0},
                       {2, 0, 0},
                       {0, 3, 0},  // +z
                       {0, 0, 0},
                       {0, 0, 1},
                       {0, 1, 0},  // −x
                       {1, 1, 1},
                       {2, 2, 2},
                       {3, 3, 3}});  // collinear
    fs.compute_normals();
    ASSERT_EQ(fs.normals().size(), 9u);
    EXPECT_EQ(fs.get_face(0).normal, vector3d(0, 0, 1));
    EXPECT_EQ(fs.get_face(1).normal, vector3d(-1, 0, 0));
    EXPECT_EQ(fs.get_face(2).normal, vector3d(0, 0, 0));
    for (std::uint32_t k = 0; k < 3; ++k) {
        EXPECT_EQ(fs.get_normal(k), vector3d(0, 0, 1));
        EXPECT_EQ(fs.get_normal(3 + k), vector3d(-1, 0, 0));
    }

    // Normalised from the cross product exactly as written: (p1 − p0) × (p2 − p0).
    set_triangles(fs, {{0.1, 0.2, 0.3}, {1.7, -0.4, 0.9}, {-0.6, 1.3, 2.2}});
    fs.compute_normals();
    vector3d expected = cross(vector3d(1.7, -0.4, 0.9) - vector3d(0.1, 0.2, 0.3),
                              vector3d(-0.6, 1.3, 2.2) - vector3d(0.1, 0.2, 0.3));
    expected.normalize();
    EXPECT_EQ(fs.get_face(0).normal, expected);
    EXPECT_EQ(fs.normals().size(), 3u);
}

TEST(FaceSetTransform, MirroringKeepsVertexOrderSoNormalsFlip) {
    indexedfaceset fs;
    set_triangles(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    fs.texcoords().resize(3);
    fs.texcoords()[1] = texcoord(0.5f, 0.25f);
    fs.lines().resize(1);
    fs.compute_normals();
    ASSERT_EQ(fs.get_normal(0), vector3d(0, 0, 1));

    matrix44d mirror;
    make_scaling_matrix(mirror, -1.0, 1.0, 1.0);
    append_translation(mirror, 0.0, 0.0, 2.0);
    fs.apply_transform(mirror);
    EXPECT_EQ(fs.get_vertex(1), vector3d(-1, 0, 2));
    EXPECT_EQ(fs.get_face(0).vertex[1], 1u);
    EXPECT_EQ(fs.get_face(0).normal, vector3d(0, 0, -1));
    for (std::uint32_t k = 0; k < 3; ++k) EXPECT_EQ(fs.get_normal(k), vector3d(0, 0, -1));
    EXPECT_EQ(fs.get_texcoord(1).u, 0.5f);
    EXPECT_EQ(fs.num_lines(), 1u);
}

TEST(FaceSetTransform, UsesTheProjectiveDivision) {
    indexedfaceset fs;
    set_triangles(fs, {{2, 4, 6}, {1, 0, 0}, {0, 1, 0}});
    matrix44d m = matrix44d::identity();
    m(3, 3) = 2.0;
    fs.apply_transform(m);
    EXPECT_EQ(fs.get_vertex(0), vector3d(1, 2, 3));
}

TEST(FaceSetBounds, GoThroughTheCentreAndExtents) {
    indexedfaceset fs;
    vector3d lo(1, 1, 1), hi(-1, -1, -1);
    fs.get_bounds(lo, hi);
    EXPECT_EQ(lo, vector3d(0, 0, 0));
    EXPECT_EQ(hi, vector3d(0, 0, 0));

    set_triangles(fs, {{0.1, 5, -2}, {0.7, -3, 4}, {0.3, 1, 1}});
    fs.get_bounds(lo, hi);
    const vector3d center((0.1 + 0.7) / 2.0, (-3.0 + 5.0) / 2.0, (-2.0 + 4.0) / 2.0);
    const vector3d half((0.7 - 0.1) / 2.0, (5.0 - -3.0) / 2.0, (4.0 - -2.0) / 2.0);
    EXPECT_EQ(lo, center - half);
    EXPECT_EQ(hi, center + half);
    EXPECT_EQ(lo.y, -3.0);
    EXPECT_EQ(hi.z, 4.0);
}

TEST(FaceSetIntersection, NearestHitWithLowerIndexOnTies) {
    indexedfaceset fs;
    // Face 0 at z = 0, faces 1 and 2 identical at z = 1, face 3 at z = 5 beyond.
    set_triangles(fs, {{-1, -1, 0},
                       {1, -1, 0},
                       {0, 1, 0},  //
                       {-1, -1, 1},
                       {1, -1, 1},
                       {0, 1, 1},  //
                       {-1, -1, 1},
                       {1, -1, 1},
                       {0, 1, 1},  //
                       {-1, -1, 5},
                       {1, -1, 5},
                       {0, 1, 5}});
    double t = -1.0;
    std::uint32_t hit = 99;
    // From above: the face at z = 5 is the nearest, though it comes last.
    ASSERT_TRUE(fs.intersection(vector3d(0, 0, 10), vector3d(0, 0, -1), t, hit));
    EXPECT_EQ(hit, 3u);
    EXPECT_EQ(t, 5.0);

    // From below: face 0 at t = 1 beats the later tie at t = 2.
    ASSERT_TRUE(fs.intersection(vector3d(0, 0, -1), vector3d(0, 0, 1), t, hit));
    EXPECT_EQ(hit, 0u);
    EXPECT_EQ(t, 1.0);

    // Between 0 and 1: the tie of faces 1 and 2 goes to face 1.
    ASSERT_TRUE(fs.intersection(vector3d(0, 0, 0.5), vector3d(0, 0, 1), t, hit));
    EXPECT_EQ(hit, 1u);
    EXPECT_EQ(t, 0.5);
}

TEST(FaceSetIntersection, MissLeavesOutputsAlone) {
    indexedfaceset fs;
    double t = -7.0;
    std::uint32_t hit = 99;
    EXPECT_FALSE(fs.intersection(vector3d(0, 0, 0), vector3d(0, 0, 1), t, hit));

    set_triangles(fs, {{-1, -1, 1}, {1, -1, 1}, {0, 1, 1}});
    EXPECT_FALSE(fs.intersection(vector3d(5, 5, 0), vector3d(0, 0, 1), t, hit));  // beside
    EXPECT_FALSE(fs.intersection(vector3d(0, 0, 2), vector3d(0, 0, 1), t, hit));  // behind
    EXPECT_EQ(t, -7.0);
    EXPECT_EQ(hit, 99u);
}
