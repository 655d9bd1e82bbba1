// The camera: defaults, normalising setters, view matrix, exact comparison, copies.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "facet/camera.h"
#include "facet/math3d.h"
#include "facet/spaces.h"

namespace {

matrix44d view_of(const camera& c) {
    matrix44d m;
    c.get_matrix(m);
    return m;
}

double& component(vector3d& v, int i) { return i == 0 ? v.x : i == 1 ? v.y : v.z; }

TEST(Camera, DefaultsLookDownNegativeZWithIdentityView) {
    const camera c;
    EXPECT_EQ(c.get_position(), vector3d(0, 0, 0));
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, -1));
    EXPECT_EQ(c.get_updir(), vector3d(0, 1, 0));
    EXPECT_EQ(c.get_scene_rotation(), 0.0);
    EXPECT_EQ(view_of(c), matrix44d::identity());
}

TEST(Camera, DirectionsAreNormalisedAndNearZeroBecomesZero) {
    const camera two(vector3d(3, 4, 0), vector3d(0, 0, 5));
    EXPECT_EQ(two.get_position(), vector3d(3, 4, 0));
    EXPECT_EQ(two.get_direction(), vector3d(0, 0, 1));
    EXPECT_EQ(two.get_updir(), vector3d(0, 1, 0));
    const camera three(vector3d(3, 4, 0), vector3d(-2, 0, 0), vector3d(0, 0, 1e-13));
    EXPECT_EQ(three.get_direction(), vector3d(-1, 0, 0));
    EXPECT_EQ(three.get_updir(), vector3d(0, 0, 0));

    camera c;
    c.set_updir(vector3d(0, 3, 0));
    EXPECT_EQ(c.get_updir(), vector3d(0, 1, 0));
    c.set_direction(vector3d(0, 0, 5));
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, 1));
    c.set_direction(vector3d(0, 0, 1e-13));
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, 0));
    const matrix44d m = view_of(c);
    for (int r = 0; r < 3; ++r)
        for (int col = 0; col < 3; ++col) EXPECT_EQ(m(r, col), 0.0) << r << "," << col;
}

TEST(Camera, ViewMatrixTranslatesByEyeAndIgnoresSceneRotation) {
    camera c(vector3d(0, 0, 5), vector3d(0, 0, -1));
    matrix44d expected = matrix44d::identity();
    expected(2, 3) = -5.0;
    EXPECT_EQ(view_of(c), expected);

    c.set_scene_rotation(30.0);
    EXPECT_EQ(c.get_scene_rotation(), 30.0);
    EXPECT_EQ(view_of(c), expected);

    // The up direction need not be orthogonal to the viewing direction.
    c.set_updir(vector3d(0, 1, 1));
    EXPECT_EQ(view_of(c), expected);
}

TEST(Camera, LookAtTurnsOnlyTheDirection) {
    camera c(vector3d(1, 1, 1), vector3d(1, 0, 0), vector3d(0, 1, 1));
    const vector3d up = c.get_updir();
    c.look_at(vector3d(1, 1, -9));
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, -1));
    EXPECT_EQ(c.get_position(), vector3d(1, 1, 1));
    EXPECT_EQ(c.get_updir(), up);

    c.look_at(c.get_position());
    EXPECT_EQ(c.get_direction(), vector3d(0, 0, 0));
}

TEST(Camera, ComparisonIsExactOverNineComponentsAndIgnoresSceneRotation) {
    const camera base(vector3d(1, 2, 3), vector3d(0, 0, -1), vector3d(0, 1, 0));
    camera rotated = base;
    rotated.set_scene_rotation(45.0);
    EXPECT_TRUE(base == rotated);
    EXPECT_FALSE(base != rotated);

    // Every one of the nine components takes part. The zero components of an axis vector,
    // nudged by 1e-9, survive normalisation unchanged, so exactly one component differs.
    const vector3d axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int i = 0; i < 3; ++i) {
        vector3d moved = base.get_position();
        component(moved, i) += 0.5;
        camera other = base;
        other.set_position(moved);
        EXPECT_FALSE(base == other) << "position " << i;
        EXPECT_TRUE(base != other) << "position " << i;
    }
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i < 3; ++i) {
            if (i == axis) continue;
            vector3d nudged = axes[axis];
            component(nudged, i) = 1e-9;
            const vector3d p(1, 2, 3);
            const camera dir_a(p, axes[axis], axes[0]), dir_b(p, nudged, axes[0]);
            ASSERT_EQ(dir_b.get_direction(), nudged);
            EXPECT_FALSE(dir_a == dir_b) << "direction " << i;
            EXPECT_TRUE(dir_a != dir_b) << "direction " << i;
            const camera up_a(p, axes[0], axes[axis]), up_b(p, axes[0], nudged);
            ASSERT_EQ(up_b.get_updir(), nudged);
            EXPECT_FALSE(up_a == up_b) << "updir " << i;
            EXPECT_TRUE(up_a != up_b) << "updir " << i;
        }
    }
}

TEST(Camera, NanIsUnequalToItselfAndTinyDirectionDifferencesCount) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const camera c(vector3d(nan, 0, 0), vector3d(0, 0, -1));
    EXPECT_FALSE(c == c);
    EXPECT_TRUE(c != c);

    const camera a(vector3d(0, 0, 0), vector3d(0, 0, -1));
    const camera b(vector3d(0, 0, 0), vector3d(1e-9, 0, -1));
    EXPECT_EQ(b.get_direction(), vector3d(1e-9, 0, -1));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(equal_cam_dirs(a.get_direction(), b.get_direction()));
}

TEST(Camera, CopyAssignmentAndSwapCarryEveryField) {
    camera a(vector3d(1, 2, 3), vector3d(0, -1, 0), vector3d(1, 0, 0));
    a.set_scene_rotation(12.5);
    camera b;
    b = camera(a);
    EXPECT_TRUE(b == a);
    EXPECT_EQ(b.get_scene_rotation(), 12.5);

    camera d;
    swap(b, d);
    EXPECT_TRUE(b == camera());
    EXPECT_EQ(b.get_scene_rotation(), 0.0);
    EXPECT_TRUE(d == a);
    EXPECT_EQ(d.get_scene_rotation(), 12.5);
}

}  // namespace
