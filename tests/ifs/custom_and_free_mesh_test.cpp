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
