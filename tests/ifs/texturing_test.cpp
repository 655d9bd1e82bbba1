// Box-projected texture coordinates, the texture settings taken from an object and the flat
// tangent frames.
#include <gtest/gtest.h>

#include "facet/ifs.h"
#include "facet/primitives.h"

namespace {

texcoord corner_coord(const indexedfaceset& fs, std::uint32_t face_index, int corner) {
    return fs.get_texcoord(fs.get_face(face_index).texcoord[corner]);
}

void expect_coord(const texcoord& t, float u, float v) {
    EXPECT_EQ(t.u, u);
    EXPECT_EQ(t.v, v);
}

// Faces (0, 1, 2) and (3, 4, 5) of the same shape, the second moved by (1, 1, 1).
void two_like_faces(indexedfaceset& fs) {
    fs.vertices().resize(6);
    const vector3d p[3] = {{0, 0, 0}, {2, 0, 0}, {0, 0, -3}};
    for (int k = 0; k < 3; ++k) {
        fs.vertices()[k] = p[k];
        fs.vertices()[3 + k] = p[k] + vector3d(1, 1, 1);
    }
    fs.faces().resize(2);
    fs.faces()[0] = face(0, 1, 2);
    fs.faces()[1] = face(3, 4, 5);
    fs.compute_normals();
}

}  // namespace

TEST(BoxTexcoords, CornerOfTheTwoUnitBox) {
    // Corner (2, 2, 0) is vertex 6: corner 2 of top face 8, corner 2 of face 2 on the x = 2 side.
    primitives::box b(2, 2, 2);
    {
        const indexedfaceset& fs = b.get_mesh();
        ASSERT_EQ(fs.get_vertex(6), vector3d(2, 2, 0));
        EXPECT_EQ(fs.get_face(8).texcoord[2], 26u);
        expect_coord(corner_coord(fs, 8, 2), 2, 0);  // y dominant: (x, z)
        expect_coord(corner_coord(fs, 9, 1), 2, 0);
        expect_coord(corner_coord(fs, 2, 2), 0, 2);  // x dominant: (z, y)
        expect_coord(corner_coord(fs, 3, 1), 0, 2);
        expect_coord(corner_coord(fs, 4, 0), 2, 0);  // face 4 (2, 3, 7) on z = 0: (x, y)
    }
    b.set_texture_rotated(true);
    const indexedfaceset& fs = b.get_mesh();
    EXPECT_TRUE(fs.texture_rotated());
    expect_coord(corner_coord(fs, 2, 2), -2, 0);  // x dominant, rotated: (-y, z)
    expect_coord(corner_coord(fs, 8, 2), 0, 2);   // y dominant, rotated: (z, x)
    expect_coord(corner_coord(fs, 5, 2), -2, 2);  // face 5 (2, 7, 6), z dominant: (-y, x)
}

TEST(BoxTexcoords, DominantAxisPrefersTheLowerOnATie) {
    // Normal (1, 1, 0) / sqrt 2: x and y tie, x wins: u = z, v = y.
    indexedfaceset fs;
    fs.vertices().resize(3);
    fs.vertices()[0] = vector3d(0, 0, 0);
    fs.vertices()[1] = vector3d(0, 0, 1);
    fs.vertices()[2] = vector3d(1, -1, 0);
    fs.faces().resize(1);
    fs.faces()[0] = face(0, 1, 2);
    fs.faces()[0].style = 0;
    fs.styles().resize(1);
    fs.compute_normals();
    ASSERT_EQ(fs.get_face(0).normal.x, fs.get_face(0).normal.y);
    fs.gen_texcoords_box();
    expect_coord(corner_coord(fs, 0, 1), 1, 0);
    expect_coord(corner_coord(fs, 0, 2), 0, -1);
}

TEST(BoxTexcoords, EachStyleScalesItsOwnFaces) {
    indexedfaceset fs;
    two_like_faces(fs);
    fs.faces()[0].style = 0;
    fs.faces()[1].style = 1;
    fs.styles().resize(2);
    fs.styles()[1].texture.texture_scale = vector2d(2.0, 2.0);
    fs.vertices()[3] = vector3d(0, 0, 0);  // make the second face like the first
    fs.vertices()[4] = vector3d(2, 0, 0);
    fs.vertices()[5] = vector3d(0, 0, -3);
    fs.gen_texcoords_box();
    for (int k = 0; k < 3; ++k) {
        const texcoord a = corner_coord(fs, 0, k);
        const texcoord b = corner_coord(fs, 1, k);
        EXPECT_EQ(b.u, 2.0f * a.u);
        EXPECT_EQ(b.v, 2.0f * a.v);
    }
    expect_coord(corner_coord(fs, 1, 2), 0, -6);
    EXPECT_EQ(fs.get_face(1).texcoord[0], 3u);
}

TEST(BoxTexcoords, FacesWithoutAStyleAreLeftAlone) {
    indexedfaceset fs;
    two_like_faces(fs);
    fs.faces()[0].style = 0;
    fs.faces()[1].style = 0;
    fs.styles().resize(1);
    // A first run fills every slot and every frame; the second one starts over from zeros.
    fs.gen_texcoords_box();
    fs.compute_tangent_space();
    ASSERT_NE(fs.get_tangent(0), vector3d());
    fs.faces()[1].style = -1;
    fs.faces()[1].texcoord[1] = 4;
    fs.gen_texcoords_box();
    ASSERT_EQ(fs.num_texcoords(), 6u);
    EXPECT_EQ(fs.get_face(0).texcoord[2], 2u);
    EXPECT_EQ(fs.get_face(1).texcoord[0], 3u);
    EXPECT_EQ(fs.get_face(1).texcoord[1], 4u);
    for (std::uint32_t t = 3; t < 6; ++t) expect_coord(fs.get_texcoord(t), 0, 0);
    for (std::uint32_t t = 0; t < 6; ++t) {
        EXPECT_EQ(fs.get_tangent(t), vector3d());
        EXPECT_EQ(fs.get_bitangent(t), vector3d());
    }
}

TEST(TextureParams, ARebuildClearsTheSlotsOfFacesThatLostTheirStyle) {
    indexedfaceset fs;
    two_like_faces(fs);
    fs.faces()[0].style = 0;
    fs.faces()[1].style = 0;
    fs.styles().resize(1);
    primitives::box object;
    fs.set_texture_params(object);
    expect_coord(corner_coord(fs, 1, 1), 3, 1);
    fs.faces()[1].style = 2;
    fs.set_texture_params(object);
    for (std::uint32_t t = 3; t < 6; ++t) expect_coord(fs.get_texcoord(t), 0, 0);
    EXPECT_EQ(fs.get_tangent(4), vector3d());
    EXPECT_EQ(fs.get_face(1).tangent, vector3d());
    EXPECT_EQ(fs.get_tangent(1), vector3d(1, 0, 0));
}

TEST(TextureParams, SeveralStylesKeepTheirSettings) {
    indexedfaceset fs;
    two_like_faces(fs);
    fs.faces()[0].style = 0;
    fs.faces()[1].style = 1;
    fs.styles().resize(2);
    fs.styles()[1].texture.texture_id = 5;
    primitives::box object;
    object.enable_texturing(true);
    object.set_texture_id(9);
    object.set_texture_scale(4.0, 4.0);
    fs.set_texture_params(object);
    EXPECT_FALSE(fs.get_textured());
    EXPECT_EQ(fs.get_texture_id(), 0u);
    EXPECT_EQ(fs.get_texture_scale(), vector2d(1.0, 1.0));
    EXPECT_EQ(fs.get_style(0).texture.texture_id, 0u);
    EXPECT_EQ(fs.get_style(1).texture.texture_id, 5u);
    EXPECT_FALSE(fs.get_style(0).texture.texturing);
    // Coordinates (with the styles' own scales) and tangent frames are made all the same.
    expect_coord(corner_coord(fs, 0, 1), 2, 0);
    expect_coord(corner_coord(fs, 1, 1), 3, 1);
    EXPECT_EQ(fs.get_face(0).tangent, vector3d(1, 0, 0));
    EXPECT_EQ(fs.get_tangent(5), vector3d(1, 0, 0));
}

TEST(TangentSpace, FollowsTheTextureAxes) {
    primitives::box b(2, 2, 2);
    const indexedfaceset& fs = b.get_mesh();
    // Top face: u = x, v = z, so the tangent is +x and the bitangent (decreasing v) is -z.
    EXPECT_EQ(fs.get_face(8).tangent, vector3d(1, 0, 0));
    EXPECT_EQ(fs.get_face(8).bitangent, vector3d(0, 0, -1));
    EXPECT_EQ(fs.get_tangent(3 * 8 + 1), vector3d(1, 0, 0));
    EXPECT_EQ(fs.get_bitangent(3 * 8 + 2), vector3d(0, 0, -1));
    // Side x = 2: u = z, v = y.
    EXPECT_EQ(fs.get_face(2).tangent, vector3d(0, 0, 1));
    EXPECT_EQ(fs.get_face(2).bitangent, vector3d(0, -1, 0));
}

TEST(TangentSpace, DegenerateCoordinatesGiveZeroFrames) {
    indexedfaceset fs;
    two_like_faces(fs);
    fs.texcoords().resize(1);  // every corner at (0, 0)
    fs.compute_tangent_space();
    EXPECT_EQ(fs.get_tangent(0), vector3d());
    EXPECT_EQ(fs.get_bitangent(5), vector3d());
    fs.faces()[1].texcoord[2] = 1;
    EXPECT_DEATH(fs.compute_tangent_space(), "index < m_size");
}
