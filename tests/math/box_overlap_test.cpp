#include <gtest/gtest.h>

#include <facet/math3d.h>

#include <limits>

namespace {

matrix44d at(double x, double y, double z) {
    matrix44d m;
    make_translation_matrix(m, x, y, z);
    return m;
}

matrix44d turned(double x, double y, double z, double angle, vector3d axis) {
    matrix44d m = at(x, y, z);
    append_rotation(m, angle, axis.x, axis.y, axis.z);
    return m;
}

const vector3d unit(1, 1, 1);

TEST(BoxOverlap, BoxesSpanFromTheirOriginToTheirSize) {
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0.5, 0.5, 0.5), 0));
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(-1.5, 0, 0), 0));
    // Not centred: a box at -0.6 reaches to 0.4 and overlaps one at the origin.
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(-0.6, 0, 0), 0));
    EXPECT_TRUE(test_overlapping_boxes({4, 4, 4}, at(0, 0, 0), unit, at(1, 1, 1), 0));  // inside
}

TEST(BoxOverlap, TouchingBoxesOverlapOnlyWithANegativeTolerance) {
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(1, 0, 0), 0));
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0, 0, 1), 0));
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(1, 0, 0), -1e-9));
    // A gap of 0.1 counts as overlapping once the tolerance allows more than that gap.
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(1.1, 0, 0), -0.05));
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(1.1, 0, 0), -0.15));
}

TEST(BoxOverlap, NestedBoxesOverlapByThePushOutDistance) {
    // The depth on an axis is how far one box must move to clear the other: for a small box
    // in the middle of a big one that is far more than the small box's own extent.
    EXPECT_TRUE(test_overlapping_boxes({4, 4, 4}, at(0, 0, 0), unit, at(1.5, 1.5, 1.5), 2.4));
    EXPECT_FALSE(test_overlapping_boxes({4, 4, 4}, at(0, 0, 0), unit, at(1.5, 1.5, 1.5), 2.5));
}

TEST(BoxOverlap, PositiveToleranceForgivesShallowPenetration) {
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0.99, 0, 0), 0));
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0.99, 0, 0), 0.02));
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0.9, 0, 0), 0.02));
}

TEST(BoxOverlap, IsSymmetric) {
    const matrix44d m1 = turned(0.3, 0.1, 0.2, 30, {1, 2, 3});
    const matrix44d m2 = turned(1.2, 0.5, -0.4, 75, {0, 1, 1});
    const vector3d s1(1, 2, 0.5), s2(0.7, 0.7, 2);
    for (double tol : {-0.1, 0.0, 0.05})
        EXPECT_EQ(test_overlapping_boxes(s1, m1, s2, m2, tol),
                  test_overlapping_boxes(s2, m2, s1, m1, tol));
}

TEST(BoxOverlap, RotatedBoxSeparatedOnlyByItsOwnFaceAxis) {
    // A box turned 45 degrees about y, placed so that its bounding box overlaps the unit
    // box's corner region while the turned box itself stays clear of it.
    // In the x-z plane the turned box is a diamond with its first corner at (0.8, -0.5) and
    // its bounds x 0.8..2.21, z -1.21..0.21; its edge z = x - 1.3 passes below (1, 0).
    const matrix44d diamond = turned(0.8, 0, -0.5, 45, {0, 1, 0});
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, diamond, 0));
    const matrix44d closer = turned(0.3, 0, -0.5, 45, {0, 1, 0});
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, closer, 0));
}

TEST(BoxOverlap, EdgeToEdgeNeedsACrossProductAxis) {
    // Two long beams crossing one above the other, both turned so that no face axis
    // separates them; only an edge x edge axis (here the vertical) does.
    const vector3d beam(4, 0.2, 0.2);
    const matrix44d lower = turned(-2, 0, 0, 30, {0, 0, 1});
    const matrix44d upper_far =
        turned(0, 0.8, -2, -30, {1, 0, 0}) * turned(0, 0, 0, -90, {0, 1, 0});
    const matrix44d upper_near =
        turned(0, 0.05, -2, -30, {1, 0, 0}) * turned(0, 0, 0, -90, {0, 1, 0});
    const bool far = test_overlapping_boxes(beam, lower, beam, upper_far, 0);
    const bool near = test_overlapping_boxes(beam, lower, beam, upper_near, 0);
    EXPECT_FALSE(far);
    EXPECT_TRUE(near);
}

TEST(BoxOverlap, ParallelEdgesAndDegenerateInputsAreHandled) {
    // Identical orientation: all nine cross products are parallel-edge cases and skipped.
    EXPECT_TRUE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0.5, 0, 0), 0));
    // A flat box (zero height) lying inside a solid one.
    EXPECT_TRUE(test_overlapping_boxes({2, 2, 2}, at(0, 0, 0), {1, 0, 1}, at(0.5, 1, 0.5), 0));
    // A matrix that collapses a box to a point: its zero axes are skipped.
    matrix44d collapse;
    make_scaling_matrix(collapse, 0, 0, 0);
    EXPECT_TRUE(test_overlapping_boxes({2, 2, 2}, at(0, 0, 0), unit, at(1, 1, 1) * collapse, 0));
    EXPECT_FALSE(test_overlapping_boxes({2, 2, 2}, at(0, 0, 0), unit, at(3, 1, 1) * collapse, 0));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(test_overlapping_boxes(unit, at(nan, 0, 0), unit, at(0, 0, 0), 0));
    EXPECT_FALSE(test_overlapping_boxes(unit, at(0, 0, 0), unit, at(0, 0, 0), nan));
}

}  // namespace
