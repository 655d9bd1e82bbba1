#include <gtest/gtest.h>

#include "facet/math3d.h"
#include "facet/objects.h"

using primitives::basic_object;

namespace {

matrix44d local_matrix(const vector3d& position, double angle, const vector3d& axis) {
    matrix44d t;
    make_translation_matrix(t, position.x, position.y, position.z);
    matrix44d r;
    make_rotation_matrix(r, angle, axis.x, axis.y, axis.z);
    matrix44d m;
    multiply(t, r, m);
    return m;
}

}  // namespace

TEST(Transformation, ParentTimesTranslationTimesRotationBitExact) {
    basic_object root, middle, leaf;
    root.set_position(vector3d(0.3, -1.7, 2.9));
    root.set_orientation(vector3d(1.0, 2.0, 3.0), 33.0);
    middle.set_position(vector3d(-4.1, 0.7, 0.2));
    middle.set_orientation(vector3d(0.0, 1.0, 0.0), 71.0);
    leaf.set_position(vector3d(1.1, 2.2, -3.3));
    leaf.set_orientation(vector3d(-1.0, 0.5, 0.25), 123.0);
    middle.set_parent(&root);
    leaf.set_parent(&middle);

    const matrix44d r = local_matrix(root.get_position(), 33.0, vector3d(1.0, 2.0, 3.0));
    const matrix44d m = local_matrix(middle.get_position(), 71.0, vector3d(0.0, 1.0, 0.0));
    const matrix44d l = local_matrix(leaf.get_position(), 123.0, vector3d(-1.0, 0.5, 0.25));
    // root × (middle), then that × (leaf): each ancestor multiplies from the left.
    matrix44d root_middle;
    multiply(r, m, root_middle);
    matrix44d expected;
    multiply(root_middle, l, expected);

    EXPECT_EQ(primitives::calc_transformation_matrix(root), r);
    EXPECT_EQ(primitives::calc_transformation_matrix(middle), root_middle);
    EXPECT_EQ(primitives::calc_transformation_matrix(leaf), expected);
}

TEST(Transformation, MatrixFollowsTheCurrentHierarchy) {
    basic_object parent, child;
    parent.set_position(vector3d(5.0, 0.0, 0.0));
    child.set_parent(&parent);
    EXPECT_EQ(primitives::calc_transformation_matrix(child)(0, 3), 5.0);
    parent.set_position(vector3d(6.0, 0.0, 0.0));  // nothing is cached
    EXPECT_EQ(primitives::calc_transformation_matrix(child)(0, 3), 6.0);
    child.set_parent(nullptr);
    EXPECT_EQ(primitives::calc_transformation_matrix(child), matrix44d::identity());
}

TEST(Transformation, ObjectspaceToWorldspace) {
    basic_object parent, child;
    parent.set_position(vector3d(1.0, 0.0, 0.0));
    child.set_position(vector3d(0.0, 2.0, 0.0));
    child.set_parent(&parent);
    EXPECT_EQ(primitives::objectspace_to_worldspace(vector3d(0.0, 0.0, 0.0), child),
              vector3d(1.0, 2.0, 0.0));

    // A quarter turn about z maps (1, 0, 0) to (0, 1, 0) before the translation.
    basic_object turned;
    turned.set_position(vector3d(10.0, 20.0, 30.0));
    turned.set_orientation(vector3d(0.0, 0.0, 1.0), 90.0);
    const vector3d p = primitives::objectspace_to_worldspace(vector3d(1.0, 0.0, 0.0), turned);
    EXPECT_NEAR(p.x, 10.0, 1e-12);
    EXPECT_NEAR(p.y, 21.0, 1e-12);
    EXPECT_NEAR(p.z, 30.0, 1e-12);
}

TEST(Transformation, WorldspaceToObjectspaceInvertsTheChain) {
    basic_object parent, child;
    parent.set_position(vector3d(1.0, 2.0, 3.0));
    parent.set_orientation(vector3d(1.0, 1.0, 0.0), 40.0);
    child.set_position(vector3d(-2.0, 0.5, 4.0));
    child.set_orientation(vector3d(0.0, 0.0, 1.0), -75.0);
    child.set_parent(&parent);
    const vector3d local(0.25, -3.0, 7.5);
    const vector3d world = primitives::objectspace_to_worldspace(local, child);
    const vector3d back = primitives::worldspace_to_objectspace(world, child);
    EXPECT_NEAR(back.x, local.x, 1e-12);
    EXPECT_NEAR(back.y, local.y, 1e-12);
    EXPECT_NEAR(back.z, local.z, 1e-12);
    EXPECT_EQ(back,
              transform_vector(inverse(primitives::calc_transformation_matrix(child)), world));
}
