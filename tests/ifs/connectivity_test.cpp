// Half-edges, outline marks and smooth corner normals: pinned cases, and construct_halfedge_data
// and smooth_mesh against the plain versions in tests/support on random meshes, bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

#include "facet/camera.h"
#include "facet/projector.h"
#include "ifs/fixtures.h"
#include "support/reference_halfedges.h"
#include "support/reference_smooth_mesh.h"

using namespace ifs_test;

namespace {

// Grid vertices (many equal normals); shared, non-manifold, duplicated, flipped and degenerate
// faces; box coordinates and frames, no half-edges.
void random_mesh(indexedfaceset& fs, std::uint32_t seed) {
    std::mt19937 rng(seed);
    fs.vertices().resize(6 + rng() % 30);
    const std::uint32_t nv = fs.num_vertices();
    for (vector3d& v : fs.vertices()) v = vector3d(rng() % 3, rng() % 3, rng() % 3);
    fs.faces().resize(1 + rng() % 120);
    for (std::uint32_t i = 0; i < fs.num_faces(); ++i) {
        face& f = fs.faces()[i];
        f = face(rng() % nv, rng() % nv, rng() % nv);
        if (i > 0 && rng() % 6 == 0) {
            f = fs.faces()[rng() % i];
            if (rng() % 2) std::swap(f.vertex[1], f.vertex[2]);
        }
    }
    fs.compute_normals();
    texture(fs);
}

std::ptrdiff_t index_of(const halfedge* h, const indexedfaceset& fs) {
    return h == nullptr ? -1 : h - fs.edges().data();
}

bool same_bits(const vector3d& a, const vector3d& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

void expect_smoothing_as_the_oracle(indexedfaceset& fs, double angle) {
    const reference::smoothed expected = reference::smooth_mesh(fs, angle);
    fs.smooth_mesh(angle);
    for (std::uint32_t c = 0; c < 3 * fs.num_faces(); ++c) {
        ASSERT_TRUE(same_bits(fs.get_normal(c), expected.normals[c])) << "corner " << c;
        ASSERT_TRUE(same_bits(fs.get_tangent(c), expected.tangents[c])) << "corner " << c;
        ASSERT_TRUE(same_bits(fs.get_bitangent(c), expected.bitangents[c])) << "corner " << c;
    }
}

// Three flat triangles around vertex 0 (normal +z) and (0, 4, 5) tilted by atan(lift / 2).
void tilted_fan(indexedfaceset& fs, double lift) {
    set_mesh(fs, {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {-2, 0, 0}, {0, -2, 0}, {2, -2, lift}},
             {face(0, 1, 2), face(0, 2, 3), face(0, 3, 4), face(0, 4, 5)});
    texture(fs);
}

}  // namespace

TEST(VisibleEdges, CreasesSilhouettesAndOpenEdges) {
    // Folded by 30 degrees, normals (0, 1, 0) and (0, .866, .5): seen along -z the first is
    // edge-on (a silhouette), from above both are in front (only the open edges are drawn); at
    // 20 degrees the fold is a crease.
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 0, -1}, {0.5, -0.57735026918962573, 1.0}},
             {face(0, 1, 2), face(1, 0, 3)});
    const camera along_z(vector3d(0, 0, 10), vector3d(0, 0, -1));
    const camera above(vector3d(0, 10, 10), vector3d(0, -1, -1));
    const orthographic_projector orthographic;
    for (const auto& [cam, angle, drawn] :
         {std::tuple(along_z, 65.0, 6), std::tuple(above, 65.0, 4), std::tuple(above, 20.0, 6)}) {
        fs.determine_visible_edges(cam, orthographic, angle);
        EXPECT_EQ(drawn_edges(fs), drawn) << angle;
    }

    // A cylinder of 16 segments (ring position i at 22.5 i degrees from +z towards +x), seen
    // along -z: orthographic, the silhouette is at 90 degrees; in perspective from 1.5 off the
    // axis the eye sees up to about 48 degrees.
    primitives::cylinder cyl(2.0, 1.0, 16);
    indexedfaceset& c = cyl.get_mesh();
    const camera near(vector3d(0.0, 1.0, 1.5), vector3d(0.0, 0.0, -1.0));
    const perspective_projector perspective;
    for (const auto& [proj, side_edges] :
         {std::pair<const projector*, const char*>(&perspective, "..x...........x."),
          std::pair<const projector*, const char*>(&orthographic, "....x.......x...")}) {
        c.determine_visible_edges(near, *proj, 65.0);
        for (std::uint32_t i = 0; i < 16; ++i) {
            const halfedge& side = c.get_edge(3 * (16 + 2 * i));  // T(i) -> B(i)
            EXPECT_EQ(side.drawn(), side_edges[i] == 'x') << side_edges << " at " << i;
            EXPECT_EQ(side.m_twinedge->drawn(), side.drawn());
            EXPECT_TRUE(c.get_edge(3 * i + 1).drawn()) << "top rim, a crease of 90 degrees";
        }
    }

    // A box's outline is its sharp edges: a view changes no mark.
    primitives::box b;
    indexedfaceset& box = b.get_mesh();
    box.edges()[0].set_drawn(false);
    box.determine_visible_edges(near, orthographic, 65.0);
    EXPECT_EQ(drawn_edges(box), 23);
}

TEST(FlatListsAgainstLists, HalfEdgesAndSharpMarks) {
    const auto links = [](const indexedfaceset& fs) {
        std::ostringstream s;
        for (const halfedge& e : fs.edges())
            s << index_of(e.m_twinedge, fs) << " " << index_of(e.next, fs) << " "
              << index_of(e.prev, fs) << " " << e.face - fs.faces().data() << " " << e.vertex << " "
              << e.flags << "|";
        return s.str();
    };
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        indexedfaceset fast, slow;
        random_mesh(fast, seed);
        random_mesh(slow, seed);
        fast.construct_halfedge_data();
        reference::construct_halfedge_data(slow);
        fast.determine_sharp_edges(30.0);
        slow.determine_sharp_edges(30.0);
        ASSERT_EQ(links(fast), links(slow)) << "seed " << seed;
    }
}

TEST(FlatListsAgainstLists, SmoothedNormalsAndFrames) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        indexedfaceset fs;
        random_mesh(fs, seed);
        fs.construct_halfedge_data();
        for (double angle : {10.0, 45.0, 80.0, 135.0, 180.0}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", angle " << angle);
            expect_smoothing_as_the_oracle(fs, angle);
        }
        if (seed > 40) continue;
        // The normals around a vertex are read through the half-edges' face pointers.
        std::mt19937 rng(seed);
        for (halfedge& e : fs.edges())
            if (rng() % 3 == 0) e.face = &fs.faces()[rng() % fs.num_faces()];
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", moved face pointers");
        expect_smoothing_as_the_oracle(fs, 60.0);
    }
}

TEST(Smoothing, FramesTurnFromATenthOfADegreeAndNeedCoordinatesAndHalfEdges) {
    indexedfaceset fs;
    tilted_fan(fs, 0.005);  // tilt 0.143 degrees: the mean turns by 0.072, the frame stays
    fs.smooth_mesh(30.0);
    EXPECT_NE(fs.get_normal(0), fs.get_face(0).normal);
    EXPECT_EQ(fs.get_tangent(0), fs.get_face(0).tangent);
    tilted_fan(fs, 0.02);  // tilt 0.573 degrees: the mean turns by 0.286, so does the frame
    fs.smooth_mesh(30.0);
    EXPECT_NE(fs.get_tangent(0), fs.get_face(0).tangent);
    EXPECT_NEAR(dot(fs.get_tangent(0), fs.get_normal(0)), 0.0, 1e-12);

    fs.faces()[2].texcoord[1] = 99;
    EXPECT_DEATH(fs.smooth_mesh(30.0), "index < m_size");
    tilted_fan(fs, 1.0);
    fs.edges().resize(0);
    EXPECT_DEATH(fs.smooth_mesh(30.0), "index < m_size");
}
