// The meshes of custom objects (registered or inline meshes with their styles, composites built
// with add_primitive) and of free triangle meshes.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "facet/custom_mesh.h"
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "support/solid_checks.h"

using facet_test::is_outward_solid;
using facet_test::volume;
using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::pen;
using graphics::style;

namespace {

const brush red(color(255, 0, 0));
const brush blue(color(0, 0, 255));
const brush green(color(0, 255, 0));

// A tetrahedron with outward faces: faces 0 and 1 in style 0, faces 2 and 3 in style 1.
custom_mesh tetrahedron(const std::string& name) {
    custom_mesh m(name);
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_vertex(vector3d(0, 0, 1));
    m.add_face(0, 2, 1, 0);
    m.add_face(0, 1, 3, 0);
    m.add_face(0, 3, 2, 1);
    m.add_face(1, 2, 3, 1);
    m.add_style("red", red, pen(color(1, 1, 1)));
    m.add_style("blue", blue, pen(color(2, 2, 2)));
    return m;
}

custom_mesh one_triangle() {
    custom_mesh m;
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_face(0, 1, 2);
    return m;
}

// Unregisters the meshes a test registered.
class RegisteredMeshes : public ::testing::Test {
protected:
    void TearDown() override { graphics::get_global_mesh_map().clear(); }
};

}  // namespace

TEST(CustomMesh, InlineTriangleIsOpenAndMarked) {
    primitives::custom c;
    c.set_inline_mesh(one_triangle());
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 3u);
    EXPECT_EQ(fs.get_vertex(1), vector3d(1, 0, 0));
    ASSERT_EQ(fs.num_faces(), 1u);
    ASSERT_EQ(fs.num_edges(), 3u);
    for (std::uint32_t e = 0; e < 3; ++e) {
        EXPECT_EQ(fs.get_edge(e).m_twinedge, nullptr);
        EXPECT_TRUE(fs.get_edge(e).drawn());
    }
    // No styles of its own: the face falls back to the object's appearance, and the standard
    // style is built.
    EXPECT_EQ(fs.get_face(0).brush, c.get_brush());
    EXPECT_EQ(fs.get_face(0).style, 0);
    ASSERT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "std");
}

TEST(CustomMesh, FacesTakeTheirStyleOrTheObjectsAppearance) {
    custom_mesh m = one_triangle();
    m.add_vertex(vector3d(0, 0, 1));
    m.set_face(0, graphics::custom_mesh_face(0, 1, 2, -1));
    m.add_face(0, 3, 1, 0);
    m.add_face(1, 3, 2, 5);
    m.add_style("red", red, pen(color(9, 9, 9)));
    primitives::custom c;
    c.set_inline_mesh(m);
    c.set_brush(green);
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_faces(), 3u);
    EXPECT_EQ(fs.get_face(0).style, -1);
    EXPECT_EQ(fs.get_face(0).brush, green);
    EXPECT_EQ(fs.get_face(0).pen, c.get_pen());
    EXPECT_EQ(fs.get_face(1).style, 0);
    EXPECT_EQ(fs.get_face(1).brush, red);
    EXPECT_EQ(fs.get_face(1).pen, pen(color(9, 9, 9)));
    EXPECT_EQ(fs.get_face(2).style, 5);  // kept, not clamped
    EXPECT_EQ(fs.get_face(2).brush, green);
    // Faces without a valid style get no generated texture coordinates.
    EXPECT_EQ(fs.get_face(0).texcoord[2], 0u);
    EXPECT_EQ(fs.get_face(1).texcoord[0], 3u);
    EXPECT_EQ(fs.get_face(2).texcoord[1], 0u);
}

TEST(CustomMesh, StyleTextureSettings) {
    custom_mesh m = tetrahedron("t");
    primitives::custom c;
    c.enable_texturing(true);
    c.set_texture_id(9);

    style textured("a", red, pen());
    textured.texture.texture_id = 5;
    m.set_style(0, textured);
    textured.texture.texture_id = 7;
    m.set_style(1, textured);
    c.set_inline_mesh(m);
    const indexedfaceset& fs = c.get_mesh();  // several styles keep their own
    EXPECT_EQ(fs.get_style(0).texture.texture_id, 5u);
    EXPECT_EQ(fs.get_style(1).texture.texture_id, 7u);
    EXPECT_FALSE(fs.get_style(0).texture.texturing);

    m.set_styles({textured});  // a single style takes the object's settings
    c.set_inline_mesh(m);
    EXPECT_EQ(c.get_mesh().get_style(0).texture.texture_id, 9u);
    EXPECT_TRUE(c.get_mesh().get_style(0).texture.texturing);
}

TEST(CustomMesh, TextureRotationIsTakenAfterTheTextureCoordinatesWithSeveralStyles) {
    primitives::custom c;
    c.set_inline_mesh(tetrahedron("t"));
    c.set_texture_rotated(true);
    indexedfaceset& fs = c.get_mesh();
    const texcoord first = fs.get_texcoord(1);
    EXPECT_TRUE(fs.texture_rotated());
    c.set_dirty(true);
    const texcoord second = c.get_mesh().get_texcoord(1);  // now generated rotated
    EXPECT_TRUE(first.u != second.u || first.v != second.v);

    indexedfaceset unrotated;
    primitives::custom plain;
    plain.set_inline_mesh(tetrahedron("t"));
    plain.fill_mesh(unrotated);
    EXPECT_EQ(unrotated.get_texcoord(1).u, first.u);
    EXPECT_EQ(unrotated.get_texcoord(1).v, first.v);
}

TEST_F(RegisteredMeshes, CustomDrawsARegisteredMeshWithItsStyles) {
    graphics::get_global_mesh_map().add_mesh(tetrahedron("composite.tetra"));
    primitives::custom c("composite.tetra");
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u);
    ASSERT_EQ(fs.num_faces(), 4u);
    EXPECT_EQ(fs.get_vertex(3), vector3d(0, 0, 1));
    EXPECT_EQ(fs.get_face(3).vertex[1], 2u);
    EXPECT_TRUE(is_outward_solid(fs));
    EXPECT_DOUBLE_EQ(volume(fs), 1.0 / 6.0);
    ASSERT_EQ(fs.num_styles(), 2u);
    EXPECT_EQ(fs.get_style(1).name, "blue");
    EXPECT_EQ(fs.get_face(0).brush, red);
    EXPECT_EQ(fs.get_face(3).brush, blue);

    // The host recolours one part; the mesh's other style stays.
    c.set_style(1, style("green", green, pen()));
    EXPECT_EQ(c.get_mesh().get_face(3).brush, green);
    EXPECT_EQ(c.get_mesh().get_face(0).brush, red);
    EXPECT_EQ(c.get_mesh().get_style(1).name, "green");

    // Replacing the registered mesh shows once the object is marked dirty.
    custom_mesh bigger = tetrahedron("composite.tetra");
    bigger.set_vertex(3, vector3d(0, 0, 2));
    graphics::get_global_mesh_map().add_mesh(std::move(bigger));
    EXPECT_EQ(c.get_mesh().get_vertex(3), vector3d(0, 0, 1));
    c.set_dirty(true);
    EXPECT_EQ(c.get_mesh().get_vertex(3), vector3d(0, 0, 2));
}

TEST_F(RegisteredMeshes, UnknownIdKeepsTheGeometryAndReplacesTheStyles) {
    primitives::custom c;
    c.set_inline_mesh(one_triangle());
    ASSERT_EQ(c.get_mesh().num_faces(), 1u);
    c.set_mesh_id("composite.missing");
    c.set_style(0, style("only", red, pen()));
    const indexedfaceset& fs = c.get_mesh();
    EXPECT_EQ(fs.num_vertices(), 3u);
    EXPECT_EQ(fs.num_faces(), 1u);
    ASSERT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "only");
    EXPECT_FALSE(c.is_dirty());

    // Registering the mesh later draws it after the object is marked dirty.
    graphics::get_global_mesh_map().add_mesh(tetrahedron("composite.missing"));
    c.set_dirty(true);
    EXPECT_EQ(c.get_mesh().num_faces(), 4u);
    EXPECT_EQ(c.get_mesh().get_style(0).name, "only");
    EXPECT_EQ(c.get_mesh().get_style(1).name, "blue");
}

TEST(CustomMesh, FaceIndexBeyondTheVerticesFails) {
    custom_mesh m = one_triangle();
    m.add_face(0, 2, 3);
    primitives::custom c;
    c.set_inline_mesh(m);
    EXPECT_DEATH(c.get_mesh(), "index < m_size");
}

TEST(Composite, PartsKeepTheirPlacementAndStyles) {
    primitives::box b(1.0, 1.0, 1.0);
    b.set_name("block");
    b.set_brush(red);
    b.set_position(vector3d(2, 0, 0));
    primitives::cylinder post(2.0, 0.5, 8);
    post.set_name("post");
    post.set_brush(blue);
    post.set_orientation(vector3d(0, 0, 1), 90.0);  // lying along -x

    primitives::custom c;
    EXPECT_EQ(c.add_primitive(b), 0);
    EXPECT_EQ(c.add_primitive(post), 1);
    const indexedfaceset& fs = c.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 8u + 18u);
    ASSERT_EQ(fs.num_faces(), 12u + 32u);
    EXPECT_EQ(fs.get_vertex(5), vector3d(3, 1, 1));  // the box's far corner, moved
    EXPECT_NEAR((fs.get_vertex(8 + 1) - vector3d(-2, 0, 0)).length(), 0.0, 1e-15);  // top centre
    ASSERT_EQ(fs.num_styles(), 2u);
    EXPECT_EQ(fs.get_style(0).name, "block");
    EXPECT_EQ(fs.get_style(1).name, "post");
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        EXPECT_EQ(fs.get_face(i).style, i < 12 ? 0 : 1);
        EXPECT_EQ(fs.get_face(i).brush, i < 12 ? red : blue);
    }
    // Both parts are closed, so the composite is; the volumes add up.
    EXPECT_TRUE(is_outward_solid(fs));
    const double octagon = 8 / 2.0 * 0.25 * std::sin(2.0 * 3.141592653589793 / 8);
    EXPECT_NEAR(volume(fs), 1.0 + 2.0 * octagon, 1e-14);
}

TEST(Composite, NestedCompositesAndSharedStyles) {
    primitives::custom inner;
    primitives::box b;
    b.set_brush(red);
    inner.add_primitive(b);
    primitives::cone k;
    k.set_brush(blue);
    inner.add_primitive(k);

    primitives::custom outer;
    primitives::cylinder c;
    c.set_brush(green);
    EXPECT_EQ(outer.add_primitive(c), 0);
    inner.set_position(vector3d(0, 5, 0));
    EXPECT_EQ(outer.add_primitive(inner), 1);  // brings both of its styles
    EXPECT_EQ(outer.num_styles(), 3u);
    const indexedfaceset& fs = outer.get_mesh();
    const std::uint32_t cylinder_faces = 24;
    EXPECT_EQ(fs.get_face(0).brush, green);
    EXPECT_EQ(fs.get_face(cylinder_faces).style, 1);
    EXPECT_EQ(fs.get_face(cylinder_faces).brush, red);
    EXPECT_EQ(fs.get_face(cylinder_faces + 12).style, 2);
    EXPECT_EQ(fs.get_face(cylinder_faces + 12).brush, blue);
    EXPECT_EQ(fs.get_vertex(14 + 3), vector3d(0, 5, 0));  // the box's origin corner, moved

    // A part added under an existing style adds none.
    outer.add_primitive(b, 0);
    EXPECT_EQ(outer.num_styles(), 3u);
    EXPECT_EQ(outer.get_mesh().get_face(outer.get_mesh().num_faces() - 1).brush, green);
}

TEST(FreeMesh, ConsistentFoldIsPairedAndMarked) {
    primitives::mesh m;
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_vertex(vector3d(0, 0, 1));
    m.add_triangle(0, 1, 2);  // normal +z
    m.add_triangle(1, 0, 3);  // normal +y: a fold of 90 degrees
    m.set_smoothing_threshold_angle(30.0);
    const indexedfaceset& fs = m.get_mesh();
    ASSERT_EQ(fs.num_vertices(), 4u);
    EXPECT_EQ(fs.get_vertex(3), vector3d(0, 0, 1));
    ASSERT_EQ(fs.num_edges(), 6u);
    int twins = 0;
    for (std::uint32_t e = 0; e < 6; ++e) {
        twins += fs.get_edge(e).m_twinedge != nullptr;
        EXPECT_TRUE(fs.get_edge(e).drawn());
    }
    EXPECT_EQ(twins, 2);
    EXPECT_EQ(fs.get_face(1).normal, vector3d(0, 1, 0));
    EXPECT_EQ(fs.get_face(1).style, 0);
    EXPECT_EQ(fs.get_face(1).brush, m.get_brush());

    primitives::mesh reversed;
    reversed.set_vertices(m.get_vertices());
    reversed.add_triangle(0, 1, 2);
    reversed.add_triangle(0, 1, 3);
    for (std::uint32_t e = 0; e < 6; ++e) {
        EXPECT_EQ(reversed.get_mesh().get_edge(e).m_twinedge, nullptr);
        EXPECT_TRUE(reversed.get_mesh().get_edge(e).drawn());
    }
}

TEST(FreeMesh, ARebuildGivesEveryFaceTheObjectsAppearanceAndFlags) {
    primitives::mesh m;
    for (int k = 0; k < 4; ++k) m.add_vertex(vector3d(k % 2, k / 2, 0));
    m.add_quad(0, 1, 3, 2);
    m.get_mesh();
    // The same counts again: the arrays are reused and every face rewritten.
    m.set_brush(red);
    m.set_pen(pen(color(3, 4, 5)));
    m.set_backface_culling(false);
    m.set_show_texture_in_bw_mode(true);
    m.set_black_in_bw_mode(true);
    m.set_dirty(true);
    const indexedfaceset& fs = m.get_mesh();
    for (std::uint32_t i = 0; i < 2; ++i) {
        EXPECT_EQ(fs.get_face(i).brush, red);
        EXPECT_EQ(fs.get_face(i).pen, pen(color(3, 4, 5)));
        EXPECT_EQ(fs.get_face(i).style, 0);
        EXPECT_EQ(fs.get_face(i).normal, vector3d(0, 0, 1));
    }
    EXPECT_EQ(fs.get_face(1).vertex[2], 2u);
    EXPECT_EQ(fs.get_face(1).texcoord[2], 5u);
    EXPECT_FALSE(fs.get_backface_culling());
    EXPECT_TRUE(fs.show_texture_in_bw_mode());
    EXPECT_TRUE(fs.show_black_in_bw_mode());
}

TEST(FreeMesh, GentleFoldIsSmoothedAndQuadsSplit) {
    primitives::mesh m;
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(1, 1, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_vertex(vector3d(0.5, 0.5, 0.2));
    m.add_quad(0, 1, 4, 3);  // (0, 1, 4) and (0, 4, 3)
    m.add_triangle(1, 2, 4);
    const indexedfaceset& fs = m.get_mesh();
    ASSERT_EQ(fs.num_faces(), 3u);
    EXPECT_EQ(fs.get_face(1).vertex[1], 4u);
    EXPECT_EQ(fs.get_face(1).vertex[2], 3u);
    // Corner 2 of face 0 is the apex: averaged with the other faces there.
    EXPECT_NE(fs.get_normal(2), fs.get_face(0).normal);
    EXPECT_NEAR(fs.get_normal(2).length(), 1.0, 1e-12);
}

TEST(FreeMesh, EarlierLinesAndStylesStayAndEmptyMeshGetsTheStandardStyle) {
    primitives::mesh m;
    indexedfaceset& fs = m.get_mesh();
    EXPECT_EQ(fs.num_vertices(), 0u);
    EXPECT_EQ(fs.num_faces(), 0u);
    ASSERT_EQ(fs.num_styles(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "std");

    fs.set_style(0, style("kept", red, pen()));
    fs.lines().resize(1);
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_triangle(0, 1, 2);
    m.get_mesh();
    EXPECT_EQ(fs.num_faces(), 1u);
    EXPECT_EQ(fs.get_style(0).name, "kept");
    EXPECT_EQ(fs.num_lines(), 1u);
}

TEST(FreeMesh, TriangleIndexBeyondTheVerticesFails) {
    primitives::mesh m;
    m.add_vertex(vector3d(0, 0, 0));
    m.add_vertex(vector3d(1, 0, 0));
    m.add_vertex(vector3d(0, 1, 0));
    m.add_triangle(0, 1, 3);
    EXPECT_FALSE(m.has_valid_indices());
    EXPECT_DEATH(m.get_mesh(), "index < m_size");
}

namespace {

// A 6 × 6 grid of quads on a wave of height `h`, with one triangle standing up and one
// repeated (so not every edge pairs).
void wave(std::uint32_t n, double h, std::vector<vector3d>& v, std::vector<std::uint32_t>& t) {
    v.clear();
    t.clear();
    for (std::uint32_t r = 0; r <= n; ++r)
        for (std::uint32_t c = 0; c <= n; ++c)
            v.emplace_back(c, h * std::sin(0.9 * c) * std::cos(0.7 * r), r);
    for (std::uint32_t r = 0; r < n; ++r)
        for (std::uint32_t c = 0; c < n; ++c) {
            const std::uint32_t a = r * (n + 1) + c;
            for (std::uint32_t i : {a, a + n + 1, a + 1, a + 1, a + n + 1, a + n + 2})
                t.push_back(i);
        }
    v.emplace_back(0.5, 3.0, 0.5);
    for (std::uint32_t i : {0u, 1u, static_cast<std::uint32_t>(v.size() - 1), 0u, 1u, n + 1})
        t.push_back(i);
}

// The public steps a free mesh's build is made of, one after the other, on a fresh face set.
void expect_same_as_the_steps(const indexedfaceset& built, const std::vector<vector3d>& v,
                              const std::vector<std::uint32_t>& t,
                              const primitives::basic_object& object) {
    indexedfaceset fs;
    fs.vertices().resize(static_cast<std::uint32_t>(v.size()));
    for (std::uint32_t i = 0; i < v.size(); ++i) fs.vertices()[i] = v[i];
    fs.faces().resize(static_cast<std::uint32_t>(t.size() / 3));
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        fs.faces()[i] = face(t[3 * i], t[3 * i + 1], t[3 * i + 2]);
        fs.faces()[i].style = 0;
    }
    fs.compute_normals();
    fs.construct_halfedge_data();
    fs.determine_sharp_edges(object.get_smoothing_threshold_angle());
    fs.set_texture_params(object);
    fs.smooth_mesh(object.get_smoothing_threshold_angle());
    ASSERT_EQ(built.num_faces(), fs.num_faces());
    ASSERT_EQ(built.normals().size(), 3 * fs.num_faces());
    ASSERT_EQ(built.tangents().size(), 3 * fs.num_faces());
    ASSERT_EQ(built.bitangents().size(), 3 * fs.num_faces());
    for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c) {
        ASSERT_EQ(built.get_normal(c), fs.get_normal(c)) << "corner " << c;
        ASSERT_EQ(built.get_tangent(c), fs.get_tangent(c)) << "corner " << c;
        ASSERT_EQ(built.get_bitangent(c), fs.get_bitangent(c)) << "corner " << c;
        ASSERT_EQ(built.get_texcoord(c).u, fs.get_texcoord(c).u);
        ASSERT_EQ(built.get_edge(c).flags, fs.get_edge(c).flags);
    }
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        ASSERT_EQ(built.get_face(i).normal, fs.get_face(i).normal);
        ASSERT_EQ(built.get_face(i).tangent, fs.get_face(i).tangent);
        ASSERT_EQ(built.get_face(i).bitangent, fs.get_face(i).bitangent);
    }
}

}  // namespace

// A rebuild of the same size writes into the arrays of the first build: every corner must be
// rewritten, as a build from scratch step by step gives it.
TEST(FreeMesh, RebuildsMatchTheStepsOneByOne) {
    primitives::mesh m;
    m.set_smoothing_threshold_angle(40.0);
    std::vector<vector3d> v;
    std::vector<std::uint32_t> t;
    for (double h : {0.0, 1.5, 0.4}) {
        wave(6, h, v, t);
        m.set_vertices(v);
        std::vector<primitives::mesh::triangle> triangles;
        for (std::size_t i = 0; i < t.size(); i += 3)
            triangles.emplace_back(t[i], t[i + 1], t[i + 2]);
        m.set_triangles(triangles);
        expect_same_as_the_steps(m.get_mesh(), v, t, m);
    }
}

TEST(CustomMesh, RebuildsMatchTheStepsOneByOne) {
    primitives::custom c;
    c.set_smoothing_threshold_angle(40.0);
    std::vector<vector3d> v;
    std::vector<std::uint32_t> t;
    for (double h : {0.0, 1.5, 0.4}) {
        wave(6, h, v, t);
        custom_mesh source;
        source.set_vertices(v);
        for (std::size_t i = 0; i < t.size(); i += 3) source.add_face(t[i], t[i + 1], t[i + 2]);
        c.set_inline_mesh(source);
        expect_same_as_the_steps(c.get_mesh(), v, t, c);
    }
}
