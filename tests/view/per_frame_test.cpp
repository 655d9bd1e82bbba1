// The per-frame forms: array conversions against the single-point ones, and the outline marks
// of a view against the straightforward walk that asks the projector at every half-edge.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "facet/ifs.h"
#include "facet/primitives.h"
#include "facet/spaces.h"

namespace {

bool same_bits(const vector3d& a, const vector3d& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The marks of every half-edge as it was before the view vectors were cached: each half-edge
// in array order marks itself and its twin, with the view vector of its own start vertex.
std::vector<bool> marks_by_halfedge_walk(indexedfaceset& fs, const camera& cam,
                                         const projector& proj, double angle) {
    const double threshold = std::cos(angle * geometry::pi / 180.0);
    const double tolerance = 0.017453292519943295;
    for (halfedge& e : fs.edges()) {
        if (e.m_twinedge == nullptr) {
            e.set_drawn(true);
            continue;
        }
        const vector3d view = proj.get_viewvector(fs.get_vertex(e.vertex), cam);
        const vector3d& na = e.face->normal;
        const vector3d& nb = e.m_twinedge->face->normal;
        const double a = dot(na, view), b = dot(nb, view);
        const bool same_side =
            (a >= tolerance && b >= tolerance) || (a <= -tolerance && b <= -tolerance);
        const bool drawn = dot(na, nb) <= threshold || !same_side;
        e.set_drawn(drawn);
        e.m_twinedge->set_drawn(drawn);
    }
    std::vector<bool> marks;
    for (const halfedge& e : fs.edges()) marks.push_back(e.drawn());
    return marks;
}

}  // namespace

TEST(Spaces, ArrayFormsGiveTheSinglePointBitsInPlaceOrNot) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> coordinate(-20.0, 20.0);
    std::vector<vector3d> points(257);
    for (vector3d& p : points) p = vector3d(coordinate(rng), coordinate(rng), coordinate(rng));
    const camera cam({1, 2, 30}, {0.1, -0.2, -1}, {0.3, 1, 0});
    perspective_projector proj(50, 1.25, 0.5, 80);
    proj.set_viewport(3, 7, 640, 480);

    // Each form from a freshly filled array and in place, point for point against the single one.
    const auto check = [&](const char* name, auto single, auto array) {
        std::vector<vector3d> out(points.size()), in_place = points;
        array(points.data(), points.size(), out.data());
        array(in_place.data(), in_place.size(), in_place.data());
        for (std::size_t i = 0; i < points.size(); ++i) {
            const vector3d expected = single(points[i]);
            ASSERT_TRUE(same_bits(out[i], expected) && same_bits(in_place[i], expected))
                << name << " point " << i;
        }
    };
    check(
        "project", [&](const vector3d& p) { return project(p, cam, proj); },
        [&](auto... a) { project(a..., cam, proj); });
    check(
        "unproject", [&](const vector3d& p) { return unproject(p, cam, proj); },
        [&](auto... a) { unproject(a..., cam, proj); });
    check(
        "worldspace2camera", [&](const vector3d& p) { return worldspace2camera(p, cam); },
        [&](auto... a) { worldspace2camera(a..., cam); });
    check(
        "camera2worldspace", [&](const vector3d& p) { return camera2worldspace(p, cam); },
        [&](auto... a) { camera2worldspace(a..., cam); });
    check(
        "camera2screen", [&](const vector3d& p) { return camera2screen(p, proj); },
        [&](auto... a) { camera2screen(a..., proj); });
    check(
        "screen2camera", [&](const vector3d& p) { return screen2camera(p, proj); },
        [&](auto... a) { screen2camera(a..., proj); });

    // A singular matrix throws before anything is written; no points, no work and no throw.
    camera flat;
    flat.set_direction({0, 0, 1e-13});
    std::vector<vector3d> untouched = points;
    EXPECT_THROW(unproject(points.data(), points.size(), untouched.data(), flat, proj), EMatrix);
    EXPECT_THROW(camera2worldspace(points.data(), 1, untouched.data(), flat), EMatrix);
    EXPECT_TRUE(std::memcmp(untouched.data(), points.data(), points.size() * sizeof(vector3d)) ==
                0);
    EXPECT_NO_THROW(unproject(nullptr, 0, nullptr, flat, proj));
}

TEST(VisibleEdges, EachVertexAskedOnceGivesTheMarksOfTheHalfEdgeWalk) {
    // A cylinder and a noisy free mesh seen from around and inside, in perspective and parallel
    // projection: the later half-edge of a pair decides, with its own start vertex's view.
    primitives::cylinder cylinder(2.0, 1.5, 40);
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> noise(-0.4, 0.4);
    primitives::mesh bumpy;
    std::vector<vector3d> vertices;
    std::vector<primitives::mesh::triangle> triangles;
    for (std::uint32_t r = 0; r <= 12; ++r)
        for (std::uint32_t c = 0; c <= 12; ++c) vertices.emplace_back(c, noise(rng), r);
    for (std::uint32_t r = 0; r < 12; ++r)
        for (std::uint32_t c = 0; c < 12; ++c) {
            const std::uint32_t v = r * 13 + c;
            triangles.emplace_back(v, v + 13, v + 1);
            triangles.emplace_back(v + 1, v + 13, v + 14);
        }
    bumpy.set_vertices(vertices);
    bumpy.set_triangles(triangles);

    const perspective_projector perspective;
    const orthographic_projector parallel;
    const camera views[] = {camera({0, 1, 6}, {0, -0.1, -1}), camera({5, 3, 5}, {-1, -0.5, -1}),
                            camera({6, 0.2, 6}, {0, -1, 0}), camera({0.1, 0.5, 0.2}, {1, 0, 0})};
    for (const primitives::basic_object* object :
         std::initializer_list<const primitives::basic_object*>{&cylinder, &bumpy}) {
        indexedfaceset& fs = object->get_mesh();
        for (const camera& cam : views)
            for (const projector* proj : {static_cast<const projector*>(&perspective),
                                          static_cast<const projector*>(&parallel)})
                for (double angle : {20.0, 65.0}) {
                    const std::vector<bool> expected =
                        marks_by_halfedge_walk(fs, cam, *proj, angle);
                    bool flip = false;  // marks left by the walk must not matter
                    for (halfedge& e : fs.edges()) e.set_drawn(flip = !flip);
                    fs.determine_visible_edges(cam, *proj, angle);
                    std::vector<bool> marks;
                    for (const halfedge& e : fs.edges()) marks.push_back(e.drawn());
                    EXPECT_EQ(marks, expected) << angle;
                }
    }
}
