// The face limit of one object's mesh: refused before anything is built.
#include <gtest/gtest.h>

#include <facet/custom_mesh.h>
#include <facet/ifs.h>
#include <facet/primitives.h>

#include <cmath>

namespace {

// Sets the face limit for one test and restores the default.
struct face_limit_guard {
    explicit face_limit_guard(std::uint64_t limit) { set_mesh_face_limit(limit); }
    ~face_limit_guard() { set_mesh_face_limit(default_mesh_face_limit); }
};

// A ring of n profile points and a straight path of k points.
primitives::path_extrusion straight_pipe(int n, int k) {
    primitives::path_extrusion p;
    p.set_name("pipe");
    for (int i = 0; i < n; ++i)
        p.add_profile_point(
            vector3d(std::cos(6.283185307179586 * i / n), std::sin(6.283185307179586 * i / n), 0));
    for (int j = 0; j < k; ++j) p.add_path_point(vector3d(0, 0, j));
    return p;
}

std::string face_limit_refusal(const primitives::basic_object& o) {
    try {
        o.get_mesh();
    } catch (const mesh_too_large& e) {
        EXPECT_TRUE(o.is_dirty());
        return e.what();
    }
    return "built " + std::to_string(o.get_mesh().num_faces()) + " faces";
}

}  // namespace

TEST(FaceLimit, EveryBuilderSizedByCountsChecksBeforeBuilding) {
    EXPECT_EQ(get_mesh_face_limit(), 4000000u);
    const face_limit_guard guard(100);

    // 2 caps of 10 triangles and 2 * 12 * 4 sides: 116 faces, above 100.
    EXPECT_EQ(face_limit_refusal(straight_pipe(12, 5)),
              "mesh of 'pipe' would hold 116 faces, above the limit of 100");
    EXPECT_EQ(face_limit_refusal(straight_pipe(12, 4)), "built 92 faces");

    primitives::mesh m;
    m.set_name("free");
    for (int i = 0; i < 101; ++i) m.add_triangle(0, 0, 0);
    EXPECT_EQ(face_limit_refusal(m), "mesh of 'free' would hold 101 faces, above the limit of 100");

    primitives::polygon star;
    star.set_name("star");
    for (int i = 0; i < 103; ++i)
        star.add_point(vector3d(std::cos(0.06 * i), 0, std::sin(0.06 * i)));
    EXPECT_EQ(face_limit_refusal(star),
              "mesh of 'star' would hold 101 faces, above the limit of 100");

    primitives::extruded_polygon prism;
    prism.set_name("prism");
    for (int i = 0; i < 27; ++i) prism.add_point(vector3d(std::cos(0.2 * i), 0, std::sin(0.2 * i)));
    EXPECT_EQ(face_limit_refusal(prism),
              "mesh of 'prism' would hold 104 faces, above the limit of 100");

    graphics::custom_mesh inline_mesh;
    inline_mesh.add_vertex(vector3d(0, 0, 0));
    for (int i = 0; i < 101; ++i) inline_mesh.add_face(graphics::custom_mesh_face(0, 0, 0));
    primitives::custom c;
    c.set_name("composite");
    c.set_inline_mesh(inline_mesh);
    EXPECT_EQ(face_limit_refusal(c),
              "mesh of 'composite' would hold 101 faces, above the limit of 100");

    primitives::cylinder tube(1.0, 1.0, 26);
    tube.set_name("tube");
    EXPECT_EQ(face_limit_refusal(tube),
              "mesh of 'tube' would hold 104 faces, above the limit of 100");
}
