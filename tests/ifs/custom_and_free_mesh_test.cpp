// The meshes of custom objects, composites and free triangle meshes (their rebuilds against the
// public steps are in mesh_buffers_test.cpp).
#include <gtest/gtest.h>

#include <cmath>

#include "facet/custom_mesh.h"
#include "ifs/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::pen;
using graphics::style;
using namespace ifs_test;

namespace {

const brush red(color(255, 0, 0)), blue(color(0, 0, 255)), green(color(0, 255, 0));

// A tetrahedron with outward faces: faces 0 and 1 in style 0 (red), 2 and 3 in style 1 (blue).
custom_mesh tetrahedron(const std::string& name) {
    custom_mesh m(name);
    for (const vector3d& v :
         {vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0), vector3d(0, 0, 1)})
        m.add_vertex(v);
    m.add_face(0, 2, 1, 0);
    m.add_face(0, 1, 3, 0);
    m.add_face(0, 3, 2, 1);
    m.add_face(1, 2, 3, 1);
    m.add_style("red", red, pen(color(1, 1, 1)));
    m.add_style("blue", blue, pen(color(2, 2, 2)));
    return m;
}

// Unregisters the meshes a test registered.
struct RegisteredMeshes : ::testing::Test {
    void TearDown() override { graphics::get_global_mesh_map().clear(); }
};

}  // namespace

TEST(CustomMesh, FacesTakeTheirStyleOrTheObjectsAppearance) {
    custom_mesh m = tetrahedron("t");
    m.set_face(0, graphics::custom_mesh_face(0, 2, 1, -1));
    m.set_face(3, graphics::custom_mesh_face(1, 2, 3, 5));
    m.set_styles({style("red", red, pen(color(9, 9, 9)))});
    primitives::custom c;
    c.set_inline_mesh(m);
    c.set_brush(green);
    const indexedfaceset& fs = c.get_mesh();
    EXPECT_EQ(faces_of(fs), "0 2 1|0 1 3|0 3 2|1 2 3");
    EXPECT_TRUE(is_outward_solid(fs));
    const std::int32_t styles[] = {-1, 0, 1, 5};  // kept, not clamped
    for (std::uint32_t i = 0; i < 4; ++i) {       // coordinates only for faces of a valid style
        const bool own = styles[i] == 0;
        EXPECT_TRUE(fs.get_face(i).style == styles[i] &&
                    fs.get_face(i).brush == (own ? red : green) &&
                    fs.get_face(i).pen == (own ? pen(color(9, 9, 9)) : c.get_pen()) &&
                    fs.get_face(i).texcoord[2] == (own ? 3 * i + 2 : 0u))
            << i;
    }
}

TEST(CustomMesh, WithSeveralStylesTheRotationIsTakenAfterTheCoordinatesAreMade) {
    primitives::custom r, plain;  // so the first build is unrotated, the next one rotated
    r.set_inline_mesh(tetrahedron("t"));
    r.set_texture_rotated(true);
    plain.set_inline_mesh(tetrahedron("t"));
    const std::string first = coords_of(r.get_mesh());
    EXPECT_TRUE(r.get_mesh().texture_rotated());
    EXPECT_EQ(first, coords_of(plain.get_mesh()));
    r.set_dirty(true);
    EXPECT_NE(coords_of(r.get_mesh()), first);
}

TEST_F(RegisteredMeshes, CustomDrawsARegisteredMeshWithItsStylesOrKeepsItsGeometry) {
    graphics::get_global_mesh_map().add_mesh(tetrahedron("composite.tetra"));
    primitives::custom c("composite.tetra");
    const indexedfaceset& fs = c.get_mesh();
    EXPECT_DOUBLE_EQ(volume(fs), 1.0 / 6.0);
    EXPECT_TRUE(fs.get_face(0).brush == red && fs.get_face(3).brush == blue);
    c.set_style(1, style("green", green, pen()));  // the host recolours one part
    EXPECT_TRUE(c.get_mesh().get_face(3).brush == green && fs.get_face(0).brush == red);
    // An id that names no mesh keeps the geometry and takes the styles.
    c.set_mesh_id("composite.missing");
    c.set_style(0, style("only", red, pen()));
    EXPECT_EQ(vertices_of(c.get_mesh(), 3) + " " + std::to_string(fs.num_faces()), "0 0 1 4");
    EXPECT_EQ(fs.get_style(0).name + "|" + fs.get_style(1).name, "only|green");
}

TEST(Composite, PartsKeepTheirPlacementAndStyles) {
    primitives::box b(1.0, 1.0, 1.0);
    b.set_name("block");
    b.set_position(vector3d(2, 0, 0));
    primitives::cylinder post(2.0, 0.5, 8);
    post.set_name("post");
    post.set_orientation(vector3d(0, 0, 1), 90.0);  // lying along -x
    primitives::custom c;
    EXPECT_EQ(c.add_primitive(b) + c.add_primitive(post), 1);
    const indexedfaceset& fs = c.get_mesh();
    EXPECT_EQ(fs.get_vertex(5), vector3d(3, 1, 1));  // the box's far corner, moved
    EXPECT_NEAR((fs.get_vertex(8 + 1) - vector3d(-2, 0, 0)).length(), 0.0, 1e-15);  // top centre
    EXPECT_EQ(fs.get_style(0).name + "|" + fs.get_style(1).name + "|" +
                  std::to_string(fs.get_face(11).style) + std::to_string(fs.get_face(12).style),
              "block|post|01");
    EXPECT_TRUE(is_outward_solid(fs));  // both parts are closed; the volumes add up
    EXPECT_NEAR(volume(fs), 1.0 + 2.0 * 4 * 0.25 * std::sin(geometry::pi / 4), 1e-14);
}

TEST(FreeMesh, EarlierLinesAndStylesStayIndicesBeyondTheVerticesFail) {
    primitives::mesh m;
    indexedfaceset& fs = m.get_mesh();  // empty, with the standard style
    ASSERT_EQ(fs.num_styles(), 1u);
    fs.set_style(0, style("kept", red, pen()));
    fs.lines().resize(1);
    m.set_vertices({vector3d(0, 0, 0), vector3d(1, 0, 0), vector3d(0, 1, 0), vector3d(0, 0, 1)});
    m.add_triangle(0, 1, 2);
    m.add_triangle(1, 0, 3);  // a fold of 90 degrees
    m.get_mesh();
    EXPECT_EQ(fs.get_style(0).name + std::to_string(fs.num_lines()), "kept1");
    EXPECT_EQ(vertices_of(fs) + ", " + faces_of(fs), "0 0 0|1 0 0|0 1 0|0 0 1, 0 1 2|1 0 3");
    EXPECT_EQ(drawn_edges(fs), 6);
    m.add_triangle(0, 1, 5);
    EXPECT_DEATH(m.get_mesh(), "index < m_size");
}
