// The meshes of custom objects, composites and free triangle meshes.
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

// A rebuild of the same size writes into the arrays of the first build: every corner must be
// rewritten, as the public steps one by one on a fresh face set give it.
TEST(FreeAndCustomMeshes, RebuildsMatchTheStepsOneByOne) {
    primitives::mesh m;
    primitives::custom c;
    m.set_smoothing_threshold_angle(40.0);
    c.set_smoothing_threshold_angle(40.0);
    for (double h : {0.0, 1.5, 0.4}) {
        // A 6 × 6 grid of quads on a wave of height h, with one triangle standing up and one
        // repeated (so not every edge pairs).
        std::vector<vector3d> v;
        std::vector<face> faces;
        for (std::uint32_t r = 0; r <= 6; ++r)
            for (std::uint32_t k = 0; k <= 6; ++k)
                v.emplace_back(k, h * std::sin(0.9 * k) * std::cos(0.7 * r), r);
        for (std::uint32_t a = 0; a < 41; ++a)
            if (a % 7 != 6)
                faces.insert(faces.end(), {face(a, a + 7, a + 1), face(a + 1, a + 7, a + 8)});
        v.emplace_back(0.5, 3.0, 0.5);
        faces.insert(faces.end(), {face(0, 1, 49), face(0, 1, 7)});
        std::vector<primitives::mesh::triangle> triangles;
        custom_mesh source;
        source.set_vertices(v);
        for (face& f : faces) {
            triangles.emplace_back(f.vertex[0], f.vertex[1], f.vertex[2]);
            source.add_face(f.vertex[0], f.vertex[1], f.vertex[2]);
            f.style = 0;
        }
        m.set_vertices(v);
        m.set_triangles(triangles);
        c.set_inline_mesh(source);
        indexedfaceset fs;
        set_mesh(fs, v, faces);
        fs.determine_sharp_edges(40.0);
        fs.set_texture_params(m);
        fs.smooth_mesh(40.0);
        const auto state = [](const indexedfaceset& x) {
            std::vector<double> out;
            const auto put = [&out](const vector3d& v) { out.insert(out.end(), {v.x, v.y, v.z}); };
            for (std::uint32_t i = 0; i < 3 * x.num_faces(); ++i) {
                put(x.get_normal(i));
                put(x.get_tangent(i));
                put(x.get_bitangent(i));
                put(x.get_face(i / 3).normal);
                put(x.get_face(i / 3).tangent);
                put(x.get_face(i / 3).bitangent);
                out.insert(out.end(), {x.get_texcoord(i).u, 1.0 * x.get_edge(i).flags});
            }
            return out;
        };
        for (const indexedfaceset* built : {&m.get_mesh(), &c.get_mesh()}) {
            EXPECT_EQ(state(*built), state(fs)) << h;
            EXPECT_EQ(built->normals().size() + built->tangents().size(), 6 * fs.num_faces());
            EXPECT_EQ(built->bitangents().size(), 3 * fs.num_faces());
        }
    }
}
