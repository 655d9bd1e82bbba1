// The mesh builders: solid, quad, polygon, line, marker and custom meshes.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <sstream>

#include "facet/custom_mesh.h"
#include "facet/math3d.h"
#include "facet/triangulate.h"
#include "ifs/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::custom_mesh;
using graphics::pen;
using graphics::style;
using namespace ifs_test;

namespace {

template <class T>
std::unique_ptr<T> with_points(std::initializer_list<vector3d> points) {
    auto p = std::make_unique<T>();
    for (const vector3d& v : points) p->add_point(v);
    return p;
}

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

}  // namespace

TEST(SolidMeshes, TablesOrientationAndSmoothing) {
    // Each solid is closed with outward normals; the round ones are smoothed at the object's
    // angle (side corners blend, cap corners stay flat).
    primitives::box b(1.0, 2.0, 3.0);
    const indexedfaceset& box = b.get_mesh();
    EXPECT_EQ(vertices_of(box), "0 0 3|1 0 3|1 0 0|0 0 0|0 2 3|1 2 3|1 2 0|0 2 0");
    EXPECT_EQ(faces_of(box),
              "0 1 5|0 5 4|1 2 6|1 6 5|2 3 7|2 7 6|3 0 4|3 4 7|4 5 6|4 6 7|0 3 2|0 2 1");
    EXPECT_EQ(box.get_normal(3 * 8 + 2), vector3d(0, 1, 0));

    // Centres, then the top ring from +z towards +x, then the bottom ring.
    primitives::cylinder c(3.0, 2.0, 8);
    const indexedfaceset& cyl = c.get_mesh();
    EXPECT_EQ(vertices_of(cyl, 0, 3) + "|" + vertices_of(cyl, 10, 1), "0 0 0|0 3 0|0 3 2|0 0 2");
    const double a = 2.0 * 2 * geometry::pi / 8;  // ring position 2: +x
    EXPECT_EQ(cyl.get_vertex(4), vector3d(2.0 * std::sin(a), 3, 2.0 * std::cos(a)));
    EXPECT_EQ(faces_of(cyl, 0, 1) + "|" + faces_of(cyl, 7, 3) + "|" + faces_of(cyl, 22, 3) + "|" +
                  faces_of(cyl, 31),
              "1 2 3|1 9 2|2 10 3|3 10 11|9 17 2|2 17 10|0 11 10|0 10 17");
    EXPECT_TRUE(is_outward_solid(cyl));
    EXPECT_EQ(cyl.get_normal(0), vector3d(0, 1, 0));
    const vector3d side_normal = cyl.get_face(8).normal;  // a copy: the rebuild moves the faces
    EXPECT_NE(cyl.get_normal(3 * 8), side_normal);
    c.set_smoothing_threshold_angle(10.0);
    c.set_dirty(true);
    EXPECT_EQ(c.get_mesh().get_normal(3 * 8), side_normal);

    // Always twelve segments: the ring from +z, the base centre, the apex.
    primitives::cone k(2.0, 1.0);
    const indexedfaceset& cone = k.get_mesh();
    EXPECT_NEAR((cone.get_vertex(3) - vector3d(1, 0, 0)).length(), 0.0, 1e-15);
    EXPECT_EQ(vertices_of(cone, 0, 1) + "|" + vertices_of(cone, 12), "0 0 1|0 0 0|0 2 0");
    EXPECT_EQ(faces_of(cone, 0, 1) + "|" + faces_of(cone, 11, 2) + "|" + faces_of(cone, 23),
              "0 1 13|11 0 13|12 1 0|0 11 12");
    EXPECT_TRUE(is_outward_solid(cone));
    EXPECT_NE(cone.get_normal(0), cone.get_face(0).normal);

    // Divisions truncate; one gives degenerate faces; zero and too many fail.
    c.set_number_of_divisions(7.9);
    EXPECT_EQ(c.get_mesh().num_faces() + c.get_mesh().num_vertices(), 28u + 16u);
    c.set_number_of_divisions(1.0);
    EXPECT_EQ(c.get_mesh().num_faces(), 4u);
    c.set_number_of_divisions(0.0);
    EXPECT_DEATH(c.get_mesh(), "index < m_size");
    c.set_number_of_divisions(1073741824.0);
    EXPECT_DEATH(c.get_mesh(), "n <= max_cylinder_divisions");
}

TEST(QuadMesh, TwoTrianglesWithTheQuadsOwnCoordinatesScaledAndTurned) {
    for (const auto& [scale, rotated, mode, coords] :
         {std::tuple(1.0, false, graphics::texgen_mode::box, "0 0|1 0|1 1|0 0|1 1|0 1"),
          std::tuple(1.0, false, graphics::texgen_mode::none, "0 0|1 0|1 1|0 0|1 1|0 1"),
          std::tuple(2.0, false, graphics::texgen_mode::box, "0 0|1 1|2 4|0 0|2 4|0 4"),
          std::tuple(2.0, true, graphics::texgen_mode::box, "-0 0|-0.5 2|-2 4|-0 0|-2 4|-2 0")}) {
        primitives::quad q;
        if (scale != 1.0) q.set_texcoord(1, texcoord(0.5f, 0.25f));
        q.set_texture_scale(scale, scale * scale);
        q.set_texture_rotated(rotated);
        q.set_texgen_mode(mode);
        const indexedfaceset& fs = q.get_mesh();
        EXPECT_EQ(vertices_of(fs), "-1 0 1|1 0 1|1 0 -1|-1 0 -1");
        EXPECT_EQ(faces_of(fs), "0 1 2|0 2 3");
        EXPECT_EQ(coords_of(fs), coords);
    }
    // Frames from the quad's coordinates (u along +x, v along −z, the bitangent against v); flat
    // corners; the diagonal is not drawn.
    const primitives::quad q;
    const indexedfaceset& fs = q.get_mesh();
    for (std::uint32_t i = 0; i < 6; ++i)
        EXPECT_TRUE(fs.get_tangent(i) == vector3d(1, 0, 0) &&
                    fs.get_face(i / 3).tangent == fs.get_tangent(i) &&
                    fs.get_bitangent(i) == vector3d(0, 0, 1) &&
                    fs.get_face(i / 3).bitangent == fs.get_bitangent(i) &&
                    fs.get_normal(i) == vector3d(0, 1, 0) &&
                    fs.get_face(i / 3).texcoord[i % 3] == i &&
                    fs.get_edge(i).drawn() == (i != 2 && i != 3))
            << i;
}

TEST(PolygonMesh, ProjectedOntoThePlaneFacingItsNormal) {
    // triangulate's faces for the outline projected as pinned. B skips points closer than 0.1
    // to A; without B and C the normal is +y; points in a line give a zero normal, (z, y).
    const std::vector<vector2d> square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    const struct {
        std::vector<vector3d> points;
        std::vector<vector2d> projected;
        vector3d normal;  // zero: not checked
    } cases[] = {
        {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, square, {0, 0, 1}},
        {{{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}, square, {0, -1, 0}},
        {{{2, 0, 0}, {2, 0, 2}, {2, 1, 2}, {2, 1, 1}, {2, 2, 1}, {2, 2, 0}},
         {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}},
         {-1, 0, 0}},
        {{{0, 0, 0}, {0, 0, 0.05}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
         {{0, 0}, {0, 0}, {1, 0}, {1, 1}, {0, 1}},
         {}},
        {{{0, 0, 0}, {0.05, 0, 0}, {0.05, 0, 0.05}, {0, 0, 0.05}},
         {{0, 0}, {0.05, 0}, {0.05, 0.05}, {0, 0.05}},
         {0, -1, 0}},
        {{{0, 0, 0}, {1, 0, 0}, {1.05, 0, 0}, {1, 1, 0}, {0, 1, 0}},  // C skips a point near B
         {{0, 0}, {1, 0}, {1.05, 0}, {1, 1}, {0, 1}},
         {0, 0, 1}},
        {{{0, 0, 0}, {0.05, 0, 0}, {0.05, 0.05, 0}, {0, 0.05, 0}}, {}, {}},
        {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, {}, {}},
        {{{0, 0, 0}, {1, 0, 0}}, {}, {}},
        {{}, {}, {}},
    };
    for (const auto& c : cases) {
        primitives::polygon p;
        for (const vector3d& v : c.points) p.add_point(v);
        const indexedfaceset& fs = p.get_mesh();
        std::vector<unsigned> t;
        triangulate(c.projected, t);
        EXPECT_EQ(faces_of(fs), join(t.size() / 3, 0, ~0u,
                                     [&](std::ostream& s, std::uint32_t k) {
                                         s << t[3 * k] << " " << t[3 * k + 1] << " "
                                           << t[3 * k + 2];
                                     }))
            << c.points.size();
        EXPECT_EQ(fs.num_vertices() + 10 * fs.num_edges(), c.points.size() + 10 * t.size());
        for (std::uint32_t k = 0; k < fs.num_faces(); ++k)
            EXPECT_TRUE(c.normal == vector3d() || fs.get_face(k).normal == c.normal) << k;
    }
    // A bow tie cannot be cut: the vertices are replaced, the faces are the earlier build's.
    indexedfaceset target;
    target.create_mesh(*with_points<primitives::polygon>({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}));
    auto bow_tie = with_points<primitives::polygon>({{0, 0, 0}, {4, 0, 4}, {4, 0, 0}, {0, 0, 4}});
    EXPECT_THROW(target.create_mesh(*bow_tie), std::runtime_error);
    EXPECT_EQ(vertices_of(target) + ", " + faces_of(target), "0 0 0|4 0 4|4 0 0|0 0 4, 2 0 1");
    EXPECT_EQ(build_error(*bow_tie), "Triangulation error: bad polygon");
}

TEST(LineMeshes, LineRecordsExchangedInLeavingNormalsAndFlagsBehind) {
    const pen red(color(255, 0, 0, 255), 3, 1);
    primitives::line l(vector3d(0, 0, 0), vector3d(1, 2, 3));
    auto one = with_points<primitives::polyline>({{1, 1, 1}});
    auto three = with_points<primitives::polyline>({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}});
    primitives::arrow a;
    a.set_length(10);
    a.set_head_size(1, 2);
    primitives::crosshair c;
    c.set_size(4);
    const struct {
        primitives::basic_object& object;
        std::function<void(indexedfaceset&)> build;
        const char* lines;
    } cases[] = {
        {l, [&](indexedfaceset& fs) { fs.create_mesh(l); }, "0 0 0|1 2 3, 0 1"},
        {*one, [&](indexedfaceset& fs) { fs.create_mesh(*one); }, ", "},
        {*three, [&](indexedfaceset& fs) { fs.create_mesh(*three); }, "0 0 0|1 0 0|1 1 0, 0 1|1 2"},
        {a, [&](indexedfaceset& fs) { fs.create_mesh(a); },
         "0 0 0|10 0 0|8 0.5 0|8 -0.5 0|8 0 0.5|8 0 -0.5, 0 1|1 2|1 3|1 4|1 5"},
        {c, [&](indexedfaceset& fs) { fs.create_mesh(c); },
         "-2 0 0|2 0 0|0 -2 0|0 2 0|0 0 -2|0 0 2, 0 1|2 3|4 5"},
    };
    for (const auto& k : cases) {
        k.object.set_pen(red);
        k.object.enable_texturing(true);
        k.object.set_texture_id(7);
        k.object.set_texture_scale(2.0, 3.0);
        k.object.set_edges_only(true);
        const bool line = &k.object == &l;
        // Into a face set holding a box: a line's texture settings go to the box's style first;
        // all but the normals, frames and flags are exchanged out.
        indexedfaceset target;
        target.create_mesh(primitives::box(1, 2, 3));
        target.set_marked(true);
        target.lines().resize(2);
        k.build(target);
        EXPECT_EQ(vertices_of(target) + ", " + lines_of(target), k.lines);
        for (std::uint32_t i = 0; i < target.num_lines(); ++i)
            EXPECT_TRUE(target.get_line(i).pen == red);
        EXPECT_EQ(
            target.num_faces() + target.num_edges() + target.num_texcoords() + target.num_styles(),
            0u);
        EXPECT_EQ(target.get_normal(3 * 8), vector3d(0, 1, 0));  // the box's top
        EXPECT_EQ(target.tangents().size() + target.bitangents().size(), 72u);
        EXPECT_TRUE(!target.edges_only() && target.is_marked());
        EXPECT_EQ(target.get_texture_id(), line ? 7u : 0u);
        EXPECT_EQ(target.get_texture_scale(), line ? vector2d(2.0, 3.0) : vector2d(1.0, 1.0));
    }
}

TEST(FaceLimit, EveryBuilderSizedByCountsChecksBeforeBuilding) {
    set_mesh_face_limit(100);
    const auto ring = [](int n, double step) {
        std::vector<vector3d> points;
        for (int i = 0; i < n; ++i) points.emplace_back(std::cos(step * i), std::sin(step * i), 0);
        return points;
    };
    std::vector<std::pair<std::unique_ptr<primitives::basic_object>, std::string>> cases;
    // A profile of n points along k: 2 caps of n − 2 triangles and 2 n (k − 1) sides.
    for (auto [n, k, faces] : {std::tuple(12, 5, "116"), std::tuple(12, 4, "built 92 faces"),
                               std::tuple(30, 2, "116")}) {
        auto p = std::make_unique<primitives::path_extrusion>();
        p->set_profile(ring(n, 2 * geometry::pi / n));
        for (int j = 0; j < k; ++j) p->add_path_point(vector3d(0, 0, j));
        cases.emplace_back(std::move(p), faces);
    }
    auto m = std::make_unique<primitives::mesh>();
    m->add_vertex(vector3d(0, 0, 0));
    for (int i = 0; i < 100; ++i) m->add_triangle(0, 0, 0);  // at the limit
    cases.emplace_back(std::move(m), "built 100 faces");
    auto star = std::make_unique<primitives::polygon>();
    for (const vector3d& p : ring(103, 0.06)) star->add_point(p);
    cases.emplace_back(std::move(star), "101");
    auto prism = std::make_unique<primitives::extruded_polygon>();
    prism->set_points(ring(27, 0.2));
    cases.emplace_back(std::move(prism), "104");
    graphics::custom_mesh inline_mesh;
    inline_mesh.add_vertex(vector3d(0, 0, 0));
    for (int i = 0; i < 101; ++i) inline_mesh.add_face(graphics::custom_mesh_face(0, 0, 0));
    auto c = std::make_unique<primitives::custom>();
    c->set_inline_mesh(inline_mesh);
    cases.emplace_back(std::move(c), "101");
    cases.emplace_back(std::make_unique<primitives::cylinder>(1.0, 1.0, 26), "104");
    for (auto& [object, faces] : cases) {
        object->set_name("part");
        EXPECT_EQ(build_error(*object), faces.size() > 3 ? faces
                                                         : "mesh of 'part' would hold " + faces +
                                                               " faces, above the limit of 100");
    }
    set_mesh_face_limit(default_mesh_face_limit);
}

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
