// Conversions between world, camera and screen space; EMatrix passing through.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "facet/math3d.h"
#include "facet/projector.h"
#include "facet/spaces.h"

namespace {

void expect_near(const vector3d& actual, const vector3d& expected, double tolerance = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

// Runs `call`, which must throw EMatrix with the inverse's message.
void expect_singular(const std::function<void()>& call) {
    try {
        call();
        ADD_FAILURE() << "no EMatrix thrown";
    } catch (const EMatrix& e) {
        EXPECT_EQ(std::string(e.what()), "Determinant is 0, cannot create inverse");
    }
}

const camera tilted(vector3d(1, 2, 3), vector3d(1, -1, -2), vector3d(0.2, 1, 0));

TEST(Spaces, TransformationMatrixIsScreenTimesView) {
    perspective_projector proj(50, 1.6, 0.5, 40);
    proj.set_viewport(10, 20, 320, 200);
    matrix44d screen, view;
    proj.get_matrix(screen);
    tilted.get_matrix(view);
    const matrix44d m = calc_transformation_matrix(tilted, proj);
    EXPECT_EQ(m, screen * view);
    EXPECT_NE(m, view * screen);
}

TEST(Spaces, ProjectAndUnprojectTheDefaultView) {
    const camera cam;
    const perspective_projector proj;
    const vector3d screen = project(vector3d(0, 0, -1), cam, proj);
    EXPECT_EQ(screen, vector3d(400, 300, -1));
    expect_near(unproject(screen, cam, proj), vector3d(0, 0, -1), 1e-12);

    // A pixel unprojects onto the far plane.
    const vector3d centre = unproject(400, 300, cam, proj);
    EXPECT_EQ(centre, unproject(vector3d(400.0, 300.0, 1.0), cam, proj));
    expect_near(centre, vector3d(0, 0, -50), 1e-9);
    const double half_width = std::tan(geometry::deg_to_rad(30.0)) * 50.0;
    expect_near(unproject(0, 0, cam, proj), vector3d(-half_width, half_width / 1.3333, -50), 1e-9);
}

TEST(Spaces, RoundTripsForEveryProjectorKind) {
    orthographic_projector ortho(8, 5, 0.5, 60);
    const perspective_projector persp(70, 1.5, 0.5, 60);
    persp_projector_ex ex(-0.3, 0.5, -0.2, 0.4, 0.5, 60);
    ex.set_viewport(-50, 30, 1024, 768);
    const projector* projectors[] = {&ortho, &persp, &ex};
    const vector3d world[] = {{4, -5, 6}, {1.5, 2.5, -1}, {-3, 0, 0}};

    for (const projector* proj : projectors) {
        for (const vector3d& w : world) {
            expect_near(unproject(project(w, tilted, *proj), tilted, *proj), w, 1e-8);
            const vector3d c = worldspace2camera(w, tilted);
            expect_near(camera2worldspace(c, tilted), w, 1e-12);
            expect_near(screen2camera(camera2screen(c, *proj), *proj), c, 1e-8);
            expect_near(camera2screen(c, *proj), project(w, tilted, *proj), 1e-8);
        }
    }
}

TEST(Spaces, WorldToCameraAndEyePlane) {
    const camera eye_at_5(vector3d(0, 0, 5), vector3d(0, 0, -1));
    EXPECT_EQ(worldspace2camera(vector3d(1, 2, 3), eye_at_5), vector3d(1, 2, -2));
    EXPECT_EQ(camera2worldspace(vector3d(1, 2, -2), eye_at_5), vector3d(1, 2, 3));

    // A point on the eye plane of a perspective projector: w = 0 gives infinities.
    const vector3d s = camera2screen(vector3d(1, 0, 0), perspective_projector());
    EXPECT_TRUE(std::isinf(s.x));
}

TEST(Spaces, SingularInversesThrowEMatrixUnchanged) {
    camera flat;
    flat.set_direction(vector3d(0, 0, 1e-13));
    const perspective_projector proj;
    expect_singular([&] { camera2worldspace(vector3d(1, 2, 3), flat); });
    expect_singular([&] { unproject(vector3d(1, 2, 3), flat, proj); });
    expect_singular([&] { unproject(10, 20, flat, proj); });
    const camera parallel(vector3d(0, 0, 0), vector3d(0, 1, 0), vector3d(0, 2, 0));
    expect_singular([&] { camera2worldspace(vector3d(1, 2, 3), parallel); });
    EXPECT_NO_THROW(worldspace2camera(vector3d(1, 2, 3), flat));
    EXPECT_NO_THROW(project(vector3d(1, 2, 3), flat, proj));

    perspective_projector no_width;
    no_width.set_viewport(0, 0, 0, 600);
    expect_singular([&] { screen2camera(vector3d(1, 2, 3), no_width); });
    expect_singular([&] { unproject(1, 2, camera(), no_width); });
    EXPECT_NO_THROW(camera2screen(vector3d(1, 2, -3), no_width));
}

TEST(Spaces, TransformMovesTheCameraAndDropsSceneRotation) {
    camera cam(vector3d(1, 1, 1), vector3d(0, 0, -1), vector3d(0, 1, 0));
    cam.set_scene_rotation(30);
    const camera same = transform(cam, matrix44d::identity());
    EXPECT_TRUE(same == cam);
    EXPECT_EQ(same.get_scene_rotation(), 0.0);

    // Position by the full transform, directions by the 3x3 block, then normalised.
    matrix44d m;
    make_translation_matrix(m, 1, 2, 3);
    append_scaling(m, 2, 4, 2);
    const camera moved = transform(cam, m);
    EXPECT_EQ(moved.get_position(), vector3d(3, 6, 5));
    EXPECT_EQ(moved.get_direction(), vector3d(0, 0, -1));
    EXPECT_EQ(moved.get_updir(), vector3d(0, 1, 0));

    // The position is divided by w.
    matrix44d projective = matrix44d::identity();
    projective(3, 3) = 2.0;
    EXPECT_EQ(transform(cam, projective).get_position(), vector3d(0.5, 0.5, 0.5));

    make_rotation_matrix(m, 90, 0, 1, 0);
    const camera turned = transform(cam, m);
    expect_near(turned.get_direction(), vector3d(-1, 0, 0), 1e-15);
    expect_near(turned.get_position(), vector3d(1, 1, -1), 1e-15);
    expect_near(turned.get_updir(), vector3d(0, 1, 0), 1e-15);
}

TEST(Spaces, EqualCamDirsUsesAStrictBound) {
    EXPECT_TRUE(equal_cam_dirs(vector3d(0, 0, 0), vector3d(0, 0, 5e-7)));
    EXPECT_FALSE(equal_cam_dirs(vector3d(0, 0, 0), vector3d(0, 0, 1e-6)));
    EXPECT_TRUE(equal_cam_dirs(vector3d(0, 0, -1), vector3d(0, 0, -1)));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(equal_cam_dirs(vector3d(nan, 0, 0), vector3d(nan, 0, 0)));
}

}  // namespace
