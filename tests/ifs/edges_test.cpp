// Half-edge connectivity, sharp edges and view-dependent outline marks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facet/camera.h"
#include "facet/ifs.h"
#include "facet/primitives.h"
#include "facet/projector.h"

namespace {

void set_mesh(indexedfaceset& fs, std::initializer_list<vector3d> vertices,
              std::initializer_list<face> faces) {
    fs.vertices().resize(static_cast<std::uint32_t>(vertices.size()));
    std::uint32_t i = 0;
    for (const vector3d& v : vertices) fs.vertices()[i++] = v;
    fs.faces().resize(static_cast<std::uint32_t>(faces.size()));
    i = 0;
    for (const face& f : faces) fs.faces()[i++] = f;
    fs.compute_normals();
    fs.construct_halfedge_data();
}

const halfedge* twin_of(const indexedfaceset& fs, std::uint32_t e) {
    return fs.get_edge(e).m_twinedge;
}

// Counts its calls; the view direction is fixed.
class counting_projector : public orthographic_projector {
public:
    mutable int calls = 0;
    vector3d get_viewvector(const vector3d& p, const camera& c) const override {
        ++calls;
        return orthographic_projector::get_viewvector(p, c);
    }
};

}  // namespace

TEST(HalfEdges, ClosedBoxIsFullyPairedAndShowsItsTwelveEdges) {
    primitives::box b(1.0, 2.0, 3.0);
    b.set_smoothing_threshold_angle(30.0);
    const indexedfaceset& fs = b.get_mesh();
    ASSERT_EQ(fs.num_edges(), 36u);
    int drawn = 0;
    for (std::uint32_t e = 0; e < 36; ++e) {
        const halfedge& h = fs.get_edge(e);
        ASSERT_NE(h.m_twinedge, nullptr);
        EXPECT_EQ(h.m_twinedge->m_twinedge, &h);
        EXPECT_EQ(h.m_twinedge->vertex, h.next->vertex);  // runs the other way
        EXPECT_EQ(h.drawn(), h.m_twinedge->drawn());
        EXPECT_EQ(h.face, &fs.get_face(e / 3));
        EXPECT_EQ(h.next->next->next, &h);
        drawn += h.drawn();
    }
    EXPECT_EQ(drawn, 24);  // 12 cube edges, two half-edges each
    // The diagonal of each side is the edge between the side's two triangles.
    for (std::uint32_t side = 0; side < 6; ++side) {
        const std::uint32_t diagonal = 3 * (2 * side) + 2;  // third corner of the first triangle
        EXPECT_EQ(fs.get_edge(diagonal).m_twinedge->face, &fs.get_face(2 * side + 1));
        EXPECT_FALSE(fs.get_edge(diagonal).drawn()) << "side " << side;
    }
}

TEST(HalfEdges, SingleTriangleHasThreeOpenMarkedEdges) {
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {face(0, 1, 2)});
    ASSERT_EQ(fs.num_edges(), 3u);
    EXPECT_EQ(fs.get_edge(0).vertex, 0u);
    EXPECT_EQ(fs.get_edge(1).vertex, 1u);
    EXPECT_EQ(fs.get_edge(2).vertex, 2u);
    EXPECT_EQ(fs.get_edge(0).next, &fs.get_edge(1));
    EXPECT_EQ(fs.get_edge(0).prev, &fs.get_edge(2));
    for (std::uint32_t e = 0; e < 3; ++e) {
        EXPECT_EQ(twin_of(fs, e), nullptr);
        EXPECT_FALSE(fs.get_edge(e).drawn());
    }
    fs.determine_sharp_edges(30.0);
    for (std::uint32_t e = 0; e < 3; ++e) EXPECT_TRUE(fs.get_edge(e).drawn());

    fs.edges()[0].set_drawn(false);
    counting_projector proj;
    fs.determine_visible_edges(camera(), proj, 65.0);
    for (std::uint32_t e = 0; e < 3; ++e) EXPECT_TRUE(fs.get_edge(e).drawn());
    EXPECT_EQ(proj.calls, 3);  // asked for every half-edge, open ones included
}

TEST(HalfEdges, EdgeOfThreeFacesPairsOnlyTheFirstTwo) {
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}},
             {face(0, 1, 2), face(1, 0, 3), face(1, 0, 4)});
    EXPECT_EQ(twin_of(fs, 0), &fs.get_edge(3));  // 0->1 with the first 1->0
    EXPECT_EQ(twin_of(fs, 3), &fs.get_edge(0));
    EXPECT_EQ(twin_of(fs, 6), nullptr);  // the third face's 1->0 stays open
    for (std::uint32_t e : {1u, 2u, 4u, 5u, 7u, 8u}) EXPECT_EQ(twin_of(fs, e), nullptr);
    fs.determine_sharp_edges(90.0);
    EXPECT_TRUE(fs.get_edge(6).drawn());
}

TEST(HalfEdges, InconsistentWindingLeavesTheEdgeOpen) {
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}}, {face(0, 1, 2), face(0, 1, 3)});
    for (std::uint32_t e = 0; e < 6; ++e) EXPECT_EQ(twin_of(fs, e), nullptr);
    // The same faces wound consistently are paired.
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}}, {face(0, 1, 2), face(1, 0, 3)});
    EXPECT_EQ(twin_of(fs, 0), &fs.get_edge(3));
}

TEST(HalfEdges, VertexIndexOutOfRangeIsChecked) {
    indexedfaceset fs;
    fs.vertices().resize(3);
    fs.faces().resize(1);
    fs.faces()[0] = face(0, 1, 3);
    EXPECT_DEATH(fs.construct_halfedge_data(), "index < m_size");
}

TEST(SharpEdges, ThresholdIsInclusive) {
    // Two triangles folded by exactly 90 degrees.
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {face(0, 1, 2), face(1, 0, 3)});
    fs.determine_sharp_edges(90.0);  // cos(90°) is slightly above 0: the fold is drawn
    EXPECT_TRUE(fs.get_edge(0).drawn());
    EXPECT_TRUE(fs.get_edge(3).drawn());
    fs.determine_sharp_edges(91.0);
    EXPECT_FALSE(fs.get_edge(0).drawn());
    EXPECT_FALSE(fs.get_edge(3).drawn());
    EXPECT_TRUE(fs.get_edge(1).drawn());  // open
}

namespace {

// The vertical side edge at ring position i of a cylinder: the first half-edge of side face
// n + 2i runs T(i) -> B(i).
const halfedge& side_edge(const indexedfaceset& fs, std::uint32_t n, std::uint32_t i) {
    return fs.get_edge(3 * (n + 2 * i));
}

}  // namespace

TEST(VisibleEdges, CylinderSeenFromTheSideOrthographic) {
    // Radius 1, height 2, 16 segments of 22.5 degrees; ring position i lies at angle 22.5 i
    // from +z towards +x. Viewed along -z from +z.
    primitives::cylinder c(2.0, 1.0, 16);
    indexedfaceset& fs = c.get_mesh();
    const camera cam(vector3d(0.0, 1.0, 10.0), vector3d(0.0, 0.0, -1.0));
    fs.determine_visible_edges(cam, orthographic_projector(), 65.0);
    EXPECT_FALSE(side_edge(fs, 16, 0).drawn());  // between two front faces
    EXPECT_FALSE(side_edge(fs, 16, 2).drawn());
    EXPECT_TRUE(side_edge(fs, 16, 4).drawn());  // 90°: front face against back face
    EXPECT_TRUE(side_edge(fs, 16, 12).drawn());
    EXPECT_FALSE(side_edge(fs, 16, 8).drawn());  // between two back faces
    EXPECT_FALSE(side_edge(fs, 16, 14).drawn());
    for (std::uint32_t i = 0; i < 16; ++i) {
        EXPECT_TRUE(fs.get_edge(3 * i + 1).drawn()) << "top rim " << i;  // crease of 90°
        EXPECT_EQ(side_edge(fs, 16, i).drawn(), side_edge(fs, 16, i).m_twinedge->drawn());
    }
}

TEST(VisibleEdges, CylinderSeenFromTheSidePerspective) {
    // The eye 1.5 from the axis sees the surface only up to about 48 degrees from +z, so the
    // silhouette moves from ring position 4 (90°) to ring position 2 (45°).
    primitives::cylinder c(2.0, 1.0, 16);
    indexedfaceset& fs = c.get_mesh();
    const camera cam(vector3d(0.0, 1.0, 1.5), vector3d(0.0, 0.0, -1.0));
    fs.determine_visible_edges(cam, perspective_projector(), 65.0);
    EXPECT_FALSE(side_edge(fs, 16, 0).drawn());
    EXPECT_TRUE(side_edge(fs, 16, 2).drawn());
    EXPECT_TRUE(side_edge(fs, 16, 14).drawn());
    EXPECT_FALSE(side_edge(fs, 16, 4).drawn());
    EXPECT_FALSE(side_edge(fs, 16, 12).drawn());

    fs.determine_visible_edges(cam, orthographic_projector(), 65.0);
    EXPECT_FALSE(side_edge(fs, 16, 2).drawn());
    EXPECT_TRUE(side_edge(fs, 16, 4).drawn());
}

TEST(VisibleEdges, GrazingFaceCountsAsSilhouette) {
    // Two faces folded by 30 degrees (no crease at 65): normals (0, 1, 0) and (0, .866, .5).
    indexedfaceset fs;
    set_mesh(fs, {{0, 0, 0}, {1, 0, 0}, {0, 0, -1}, {0.5, -0.57735026918962573, 1.0}},
             {face(0, 1, 2), face(1, 0, 3)});
    ASSERT_EQ(twin_of(fs, 0), &fs.get_edge(3));
    // Viewed along -z, the first face is edge-on.
    fs.determine_visible_edges(camera(vector3d(0, 0, 10), vector3d(0, 0, -1)),
                               orthographic_projector(), 65.0);
    EXPECT_TRUE(fs.get_edge(0).drawn());
    EXPECT_TRUE(fs.get_edge(3).drawn());
    // Viewed from above both faces are clearly in front.
    fs.determine_visible_edges(camera(vector3d(0, 10, 10), vector3d(0, -1, -1)),
                               orthographic_projector(), 65.0);
    EXPECT_FALSE(fs.get_edge(0).drawn());
    EXPECT_FALSE(fs.get_edge(3).drawn());
    // A threshold below the fold makes it a crease from any side.
    fs.determine_visible_edges(camera(vector3d(0, 10, 10), vector3d(0, -1, -1)),
                               orthographic_projector(), 20.0);
    EXPECT_TRUE(fs.get_edge(0).drawn());
}
