// indexedfaceset::build_shadow_volume: the tolerant silhouette, the quads, the grey style, and
// agreement with the straightforward walk that rewrites the output after every half-edge.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "shadow/shadow_meshes.h"

using shadow_test::cube;
using shadow_test::fill;
using shadow_test::mesh_data;

namespace {

// The walk as the behaviour is defined: after every half-edge, examined or skipped, the output
// is rewritten in full from the silhouette edges found so far.
void literal_build_shadow_volume(const indexedfaceset& src, vector3d light, indexedfaceset& out) {
    const double e = 0.017453292519943295;
    std::vector<std::uint32_t> silhouette;
    for (std::uint32_t i = 0; i < src.num_edges(); ++i) {
        const halfedge& h = src.get_edge(i);
        if (h.m_twinedge != nullptr && h.vertex < h.m_twinedge->vertex) {
            const vector3d a = src.get_vertex(h.vertex);
            const vector3d b = src.get_vertex(h.m_twinedge->vertex);
            const vector3d m = (a + b) / 2.0;
            vector3d d = m - light;
            d.normalize();
            const double x = dot(h.face->normal, d);
            const double y = dot(h.m_twinedge->face->normal, d);
            if ((x > -e && y < e) || (x < e && y > -e)) silhouette.push_back(i);
        }
        const auto n = static_cast<std::uint32_t>(silhouette.size());
        out.vertices().resize(4 * n);
        out.faces().resize(2 * n);
        out.styles().resize(1);
        graphics::style& s = out.styles()[0];
        s.name = "std";
        s.brush = graphics::brush(graphics::color(50, 50, 50, 50));
        s.pen = graphics::pen(graphics::color(50, 50, 50, 50));
        s.texture.texture_id = 0;
        s.texture.norm_map_id = 0;
        s.texture.texture_rotated = false;
        out.set_backface_culling(false);
        for (std::uint32_t k = 0; k < n; ++k) {
            const halfedge& g = src.get_edge(silhouette[k]);
            const vector3d a = src.get_vertex(g.vertex);
            const vector3d b = src.get_vertex(g.m_twinedge->vertex);
            vector3d da = a - light;
            da.normalize();
            vector3d db = b - light;
            db.normalize();
            out.vertices()[4 * k] = a;
            out.vertices()[4 * k + 1] = b;
            out.vertices()[4 * k + 2] = b + 100000.0 * db;
            out.vertices()[4 * k + 3] = a + 100000.0 * da;
            out.faces()[2 * k] = face(4 * k, 4 * k + 1, 4 * k + 2);
            out.faces()[2 * k].style = 0;
            out.faces()[2 * k + 1] = face(4 * k, 4 * k + 2, 4 * k + 3);
            out.faces()[2 * k + 1].style = 0;
        }
    }
}

// Something in every array and a non-default flag, to see what a build leaves alone.
void prefill(indexedfaceset& out) {
    fill(out, cube({0}));
    out.lines().resize(2);
    out.styles().resize(3);
    out.set_backface_culling(true);
    out.set_texture_id(9);
}

void expect_same(const indexedfaceset& x, const indexedfaceset& y) {
    ASSERT_EQ(x.num_vertices(), y.num_vertices());
    ASSERT_EQ(x.num_faces(), y.num_faces());
    ASSERT_EQ(x.num_styles(), y.num_styles());
    EXPECT_EQ(x.num_edges(), y.num_edges());
    EXPECT_EQ(x.num_lines(), y.num_lines());
    EXPECT_EQ(x.normals().size(), y.normals().size());
    EXPECT_EQ(x.get_backface_culling(), y.get_backface_culling());
    EXPECT_EQ(x.get_texture_id(), y.get_texture_id());
    for (std::uint32_t i = 0; i < x.num_vertices(); ++i)
        ASSERT_EQ(x.get_vertex(i), y.get_vertex(i)) << "vertex " << i;
    for (std::uint32_t i = 0; i < x.num_faces(); ++i) {
        const face& f = x.get_face(i);
        const face& g = y.get_face(i);
        for (int k = 0; k < 3; ++k) ASSERT_EQ(f.vertex[k], g.vertex[k]) << "face " << i;
        EXPECT_EQ(f.style, g.style);
        EXPECT_EQ(f.normal, g.normal);
        EXPECT_EQ(f.brush, g.brush);
        EXPECT_EQ(f.pen, g.pen);
    }
    for (std::uint32_t i = 0; i < x.num_styles(); ++i) {
        const graphics::style& s = x.get_style(i);
        const graphics::style& t = y.get_style(i);
        EXPECT_EQ(s.name, t.name);
        EXPECT_EQ(s.brush, t.brush);
        EXPECT_EQ(s.pen, t.pen);
        EXPECT_EQ(s.texture.texture_id, t.texture.texture_id);
        EXPECT_EQ(s.texture.texgen_mode, t.texture.texgen_mode);
        EXPECT_EQ(s.texture.texture_scale, t.texture.texture_scale);
    }
}

void expect_matches_oracle(const indexedfaceset& src, const vector3d& light) {
    indexedfaceset fast, literal;
    prefill(fast);
    prefill(literal);
    src.build_shadow_volume(light, fast);
    literal_build_shadow_volume(src, light, literal);
    expect_same(fast, literal);
}

std::uint32_t quads_for(const mesh_data& m, const vector3d& light) {
    indexedfaceset src, out;
    fill(src, m);
    src.build_shadow_volume(light, out);
    EXPECT_EQ(out.num_vertices(), 2 * out.num_faces());
    return out.num_faces() / 2;
}

}  // namespace

TEST(BuildShadowVolume, AgreesWithTheLiteralWalk) {
    std::vector<mesh_data> meshes = {cube(), cube({0, 1, 2, 3, 5}), cube({4}),
                                     shadow_test::sphere(12, 7), shadow_test::sphere(5, 3, 2.0)};
    // A tangle of shared, non-manifold, flipped and degenerate triangles on few vertices.
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> coord(-2.0, 2.0);
    std::uniform_int_distribution<std::uint32_t> pick(0, 9);
    mesh_data tangle;
    for (int i = 0; i < 10; ++i) tangle.vertices.emplace_back(coord(rng), coord(rng), coord(rng));
    tangle.vertices.push_back(tangle.vertices[0]);
    for (int i = 0; i < 60; ++i) tangle.faces.emplace_back(pick(rng), pick(rng), pick(rng) + 1);
    meshes.push_back(tangle);

    const std::vector<vector3d> lights = {{2.5, 3.5, 4.5}, {0.5, 0.5, 0.5}, {2.0, 0.5, 1.0},
                                          {1.0, 1.0, 1.0}, {0.0, 3.0, 0.0}, {-3.0, 0.2, 0.1}};
    for (const mesh_data& m : meshes) {
        indexedfaceset src;
        fill(src, m);
        for (const vector3d& light : lights) expect_matches_oracle(src, light);
        for (int i = 0; i < 20; ++i)
            expect_matches_oracle(src, vector3d(coord(rng), coord(rng), coord(rng)));
        // Lights on the mesh's own vertices.
        for (const vector3d& v : m.vertices) expect_matches_oracle(src, v);
    }

    primitives::cylinder c(2.0, 1.0, 40);
    expect_matches_oracle(c.get_mesh(), vector3d(3.0, 1.0, 0.5));
}

TEST(BuildShadowVolume, WithoutHalfEdgesTheOutputIsUntouched) {
    indexedfaceset src, out;
    src.vertices().resize(3);
    src.faces().resize(1);
    src.faces()[0] = face(0, 1, 2);
    src.compute_normals();
    prefill(out);
    src.build_shadow_volume(vector3d(0.0, 0.0, 5.0), out);
    EXPECT_EQ(out.num_vertices(), 8u);
    EXPECT_EQ(out.num_faces(), 2u);
    EXPECT_EQ(out.num_styles(), 3u);
    EXPECT_TRUE(out.get_backface_culling());
    EXPECT_EQ(out.get_style(0).name, "");
}

TEST(BuildShadowVolume, CubeLitFromOutside) {
    indexedfaceset src, out;
    fill(src, cube());
    const vector3d light(2.5, 3.5, 4.5);
    src.build_shadow_volume(light, out);

    // The six edges between the lit sides (+x, +y, +z) and the others, each once.
    ASSERT_EQ(out.num_faces(), 12u);
    ASSERT_EQ(out.num_vertices(), 24u);
    ASSERT_EQ(out.num_styles(), 1u);
    const graphics::style& s = out.get_style(0);
    EXPECT_EQ(s.name, "std");
    EXPECT_EQ(s.brush, graphics::brush(graphics::color(50, 50, 50, 50), 0));
    EXPECT_EQ(s.pen, graphics::pen(graphics::color(50, 50, 50, 50), 1, 0));
    EXPECT_EQ(s.texture.texture_id, 0u);
    EXPECT_EQ(s.texture.norm_map_id, 0u);
    EXPECT_FALSE(s.texture.texture_rotated);
    EXPECT_FALSE(out.get_backface_culling());
    EXPECT_EQ(out.num_edges(), 0u);
    EXPECT_EQ(out.normals().size(), 0u);

    for (std::uint32_t k = 0; k < 6; ++k) {
        const vector3d& a = out.get_vertex(4 * k);
        const vector3d& b = out.get_vertex(4 * k + 1);
        vector3d da = a - light, db = b - light;
        da.normalize();
        db.normalize();
        EXPECT_EQ(out.get_vertex(4 * k + 2), b + 100000.0 * db);
        EXPECT_EQ(out.get_vertex(4 * k + 3), a + 100000.0 * da);
        EXPECT_NEAR((out.get_vertex(4 * k + 3) - a).length(), 100000.0, 1e-9);
        // The near vertices are the ends of a cube edge.
        EXPECT_DOUBLE_EQ((b - a).length(), 1.0);
        const face& f0 = out.get_face(2 * k);
        const face& f1 = out.get_face(2 * k + 1);
        EXPECT_EQ((std::vector<std::uint32_t>{f0.vertex[0], f0.vertex[1], f0.vertex[2]}),
                  (std::vector<std::uint32_t>{4 * k, 4 * k + 1, 4 * k + 2}));
        EXPECT_EQ((std::vector<std::uint32_t>{f1.vertex[0], f1.vertex[1], f1.vertex[2]}),
                  (std::vector<std::uint32_t>{4 * k, 4 * k + 2, 4 * k + 3}));
        EXPECT_EQ(f0.style, 0);
        EXPECT_EQ(f0.brush, graphics::brush());
        EXPECT_EQ(f0.normal, vector3d());
    }
}

TEST(BuildShadowVolume, ToleranceAroundEdgeOnFaces) {
    // Light in the plane of the +z side: all four of its edges and its diagonal count, plus the
    // three other silhouette edges of the lit +x side.
    EXPECT_EQ(quads_for(cube(), vector3d(2.0, 0.5, 1.0)), 8u);
    // Still within a degree of edge-on.
    EXPECT_EQ(quads_for(cube(), vector3d(2.0, 0.5, 1.0 + 1e-4)), 8u);
    // Clearly lit: the +z side's diagonal and its edge to the lit +x side drop out.
    EXPECT_EQ(quads_for(cube(), vector3d(2.0, 0.5, 1.5)), 6u);
    // A light on a cube corner sees all three sides through it edge-on.
    EXPECT_EQ(quads_for(cube(), vector3d(1.0, 1.0, 1.0)), 12u);
}

TEST(BuildShadowVolume, OpenAndTurnedAwayMeshes) {
    // Without the top, the rim edges are open and never count.
    indexedfaceset src, out;
    fill(src, cube({0, 1, 2, 3, 5}));
    src.build_shadow_volume(vector3d(2.5, 3.5, 4.5), out);
    ASSERT_EQ(out.num_faces(), 8u);
    for (std::uint32_t k = 0; k < 4; ++k)
        EXPECT_FALSE(out.get_vertex(4 * k).y == 1.0 && out.get_vertex(4 * k + 1).y == 1.0);

    // A single triangle: no paired edge, an empty volume that is still written.
    indexedfaceset tri;
    fill(tri, mesh_data{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {face(0, 1, 2)}});
    prefill(out);
    tri.build_shadow_volume(vector3d(0.2, 0.2, 3.0), out);
    EXPECT_EQ(out.num_vertices(), 0u);
    EXPECT_EQ(out.num_faces(), 0u);
    ASSERT_EQ(out.num_styles(), 1u);
    EXPECT_EQ(out.get_style(0).name, "std");
    EXPECT_FALSE(out.get_backface_culling());

    // The top side alone lit from below: both faces turned away, nothing.
    EXPECT_EQ(quads_for(cube({4}), vector3d(0.5, -5.0, 0.5)), 0u);
}

TEST(BuildShadowVolume, LightOnASilhouetteLineGivesDegenerateQuads) {
    // The edge (0,1,1)-(1,1,1) points at the light: its quad collapses onto one line; the quads
    // of edges through the light at (1,1,1) keep that vertex in place.
    indexedfaceset src, out;
    fill(src, cube());
    src.build_shadow_volume(vector3d(3.0, 1.0, 1.0), out);
    bool collapsed = false;
    for (std::uint32_t k = 0; k < out.num_faces() / 2; ++k) {
        const vector3d& a = out.get_vertex(4 * k);
        const vector3d& b = out.get_vertex(4 * k + 1);
        if (a.y == 1.0 && a.z == 1.0 && b.y == 1.0 && b.z == 1.0) {
            collapsed = true;
            for (std::uint32_t i = 0; i < 4; ++i) {
                EXPECT_EQ(out.get_vertex(4 * k + i).y, 1.0);
                EXPECT_EQ(out.get_vertex(4 * k + i).z, 1.0);
            }
        }
    }
    EXPECT_TRUE(collapsed);

    src.build_shadow_volume(vector3d(1.0, 1.0, 1.0), out);
    std::uint32_t pinned = 0;
    for (std::uint32_t k = 0; k < out.num_faces() / 2; ++k)
        for (std::uint32_t i : {0u, 1u})
            if (out.get_vertex(4 * k + i) == vector3d(1.0, 1.0, 1.0)) {
                EXPECT_EQ(out.get_vertex(4 * k + 3 - i), vector3d(1.0, 1.0, 1.0));
                ++pinned;
            }
    EXPECT_EQ(pinned, 4u);  // three cube edges and the +z side's diagonal meet at that corner
}

TEST(BuildShadowVolumeDeath, OutputMustDifferFromTheSource) {
    indexedfaceset src;
    fill(src, cube());
    EXPECT_DEATH(src.build_shadow_volume(vector3d(3.0, 3.0, 3.0), src), "&out != this");
}
