// The solid primitives as scene objects: parameters, dirty marking, bounding boxes, copies and
// visitors.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "facet/primitives.h"
#include "objects/recording_visitor.h"

using primitives::basic_object;
using primitives::boundingbox;
using primitives::box;
using primitives::cone;
using primitives::cylinder;

namespace {

void expect_box(const boundingbox& b, const vector3d& centre, double w, double h, double d) {
    EXPECT_EQ(b.center, centre);
    EXPECT_EQ(b.width, w);
    EXPECT_EQ(b.height, h);
    EXPECT_EQ(b.depth, d);
}

}  // namespace

TEST(Solids, DefaultsAndBoundingBoxes) {
    box b;
    EXPECT_EQ(b.get_size(), vector3d(1, 1, 1));
    EXPECT_FALSE(b.ignore_for_shadows());
    expect_box(b.get_boundingbox(), vector3d(0.5, 0.5, 0.5), 1, 1, 1);
    expect_box(box(2, 4, 6).get_boundingbox(), vector3d(1, 2, 3), 2, 4, 6);

    cylinder c;
    EXPECT_EQ(c.get_height(), 1.0);
    EXPECT_EQ(c.get_radius(), 0.5);
    EXPECT_EQ(c.get_number_of_divisions(), 6.0);
    expect_box(c.get_boundingbox(), vector3d(0.5, 0.5, 0.5), 1, 1, 1);
    expect_box(cylinder(4, 2).get_boundingbox(), vector3d(2, 2, 2), 4, 4, 4);
    EXPECT_EQ(cylinder(4, 2).get_number_of_divisions(), 6.0);
    EXPECT_EQ(cylinder(4, 2, 12).get_number_of_divisions(), 12.0);

    cone k;
    EXPECT_EQ(k.get_height(), 1.0);
    EXPECT_EQ(k.get_radius(), 0.5);
    expect_box(k.get_boundingbox(), vector3d(0.5, 0.5, 0.5), 1, 1, 1);
    expect_box(cone(3, 1).get_boundingbox(), vector3d(1, 1.5, 1), 2, 3, 2);

    EXPECT_EQ(b.class_id(), "box");
    EXPECT_EQ(c.class_id(), "cylinder");
    EXPECT_EQ(k.class_id(), "cone");
}

TEST(Solids, EverySetterMarksDirtyEvenWithTheSameValue) {
    box b;
    cylinder c;
    cone k;
    const auto dirtied = [](const basic_object& o, auto&& change) {
        o.get_mesh();
        o.set_shadows_dirty(false);
        change();
        return o.is_dirty() && o.shadows_dirty();
    };
    EXPECT_TRUE(dirtied(b, [&] { b.set_width(b.get_width()); }));
    EXPECT_TRUE(dirtied(b, [&] { b.set_height(2.0); }));
    EXPECT_TRUE(dirtied(b, [&] { b.set_depth(3.0); }));
    EXPECT_TRUE(dirtied(b, [&] { b.set_size(vector3d(4, 5, 6)); }));
    EXPECT_EQ(b.get_size(), vector3d(4, 5, 6));
    EXPECT_TRUE(dirtied(c, [&] { c.set_height(c.get_height()); }));
    EXPECT_TRUE(dirtied(c, [&] { c.set_radius(2.0); }));
    EXPECT_TRUE(dirtied(c, [&] { c.set_number_of_divisions(6.0); }));
    EXPECT_TRUE(dirtied(k, [&] { k.set_height(k.get_height()); }));
    EXPECT_TRUE(dirtied(k, [&] { k.set_radius(2.0); }));
}

TEST(Solids, DivisionsAreTruncatedAndClamped) {
    cylinder c;
    const auto stored = [&c](double d) {
        c.set_number_of_divisions(d);
        return c.get_number_of_divisions();
    };
    EXPECT_EQ(stored(7.9), 7.0);
    EXPECT_EQ(stored(12.0), 12.0);
    EXPECT_EQ(stored(0.99), 0.0);
    EXPECT_EQ(stored(-0.5), 0.0);
    EXPECT_EQ(stored(-7.0), 0.0);
    EXPECT_EQ(stored(-std::numeric_limits<double>::infinity()), 0.0);
    EXPECT_EQ(stored(std::nan("")), 0.0);
    EXPECT_EQ(stored(4294967294.9), 4294967294.0);
    EXPECT_EQ(stored(4294967295.0), 4294967295.0);
    EXPECT_EQ(stored(1e20), 4294967295.0);
    EXPECT_EQ(stored(std::numeric_limits<double>::infinity()), 4294967295.0);
}

TEST(Solids, CloneKeepsTypeAndParameters) {
    cylinder c(3.0, 0.25, 9);
    c.set_name("pipe");
    const std::unique_ptr<basic_object> copy(static_cast<const basic_object&>(c).clone());
    auto* cc = dynamic_cast<cylinder*>(copy.get());
    ASSERT_NE(cc, nullptr);
    EXPECT_EQ(cc->get_height(), 3.0);
    EXPECT_EQ(cc->get_radius(), 0.25);
    EXPECT_EQ(cc->get_number_of_divisions(), 9.0);
    EXPECT_EQ(cc->get_name(), "pipe");
    EXPECT_EQ(cc->get_mesh().num_faces(), 36u);
    EXPECT_EQ(std::unique_ptr<box>(box(1, 2, 3).clone())->get_size(), vector3d(1, 2, 3));
    const std::unique_ptr<cone> k(cone(5, 6).clone());
    EXPECT_EQ(k->get_height(), 5.0);
    EXPECT_EQ(k->get_radius(), 6.0);
}

TEST(Solids, AcceptCallsTheOwnOperationAndMarksDirty) {
    recording_visitor v;
    box b;
    cylinder c;
    cone k;
    for (basic_object* o : {static_cast<basic_object*>(&b), static_cast<basic_object*>(&c),
                            static_cast<basic_object*>(&k)}) {
        o->get_mesh();
        o->accept(v);
        EXPECT_EQ(v.last, o->class_id());
        EXPECT_TRUE(o->is_dirty());
    }
}

TEST(Solids, MeshFollowsTheParametersNotThePlacement) {
    cylinder c(1.0, 0.5, 8);
    EXPECT_EQ(c.get_mesh().num_faces(), 32u);
    c.set_number_of_divisions(12);
    EXPECT_EQ(c.get_mesh().num_faces(), 48u);
    c.set_position(vector3d(5, 0, 0));
    EXPECT_FALSE(c.is_dirty());
    vector3d lo, hi;
    c.get_mesh().get_bounds(lo, hi);  // built around the y axis, in object space
    EXPECT_NEAR(lo.x, -0.5, 1e-15);
    EXPECT_EQ(hi.y, 1.0);
}
