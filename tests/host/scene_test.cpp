// facet::scene: ownership, links that never dangle, world matrices and bounds.
#include <gtest/gtest.h>

#include <facet/primitives.h>
#include <facet/scene.h>

#include <cmath>
#include <cstring>

using namespace primitives;

TEST(Scene, OwnsLinksAndUnlinks) {
    facet::scene s;
    auto& a = s.emplace<box>();
    a.set_name("a");
    auto& b = s.emplace<cylinder>();
    b.set_name("b");
    auto& c = s.emplace<cone>();
    c.set_name("b");
    s.set_parent(b, &a);
    s.set_parent(c, &b);
    EXPECT_EQ(s.find("b"), &b);  // the first of a name
    EXPECT_EQ(s.find("x"), nullptr);

    // Refused: cycles, self-parenting, foreign objects, objects given twice.
    EXPECT_THROW(s.set_parent(a, &c), std::invalid_argument);
    EXPECT_THROW(s.set_parent(a, &a), std::invalid_argument);
    box outside;
    EXPECT_THROW(s.set_parent(a, &outside), std::invalid_argument);
    EXPECT_THROW(s.set_parent(outside, &a), std::invalid_argument);
    EXPECT_THROW(s.add(std::make_unique<box>(), &outside), std::invalid_argument);
    EXPECT_THROW(s.add(std::unique_ptr<box>(&a)), std::invalid_argument);
    EXPECT_EQ(a.get_parent(), nullptr);
    EXPECT_EQ(s.size(), 3u);

    // A parent the object brings along is kept when it is in the scene.
    auto d = std::make_unique<light>();
    d->set_parent(&c);
    EXPECT_EQ(s.add(std::move(d)).get_parent(), &c);

    // Removing the middle: its child becomes a root, its parent forgets it.
    EXPECT_TRUE(s.remove(b));
    EXPECT_FALSE(s.remove(outside));
    EXPECT_EQ(c.get_parent(), nullptr);
    EXPECT_TRUE(a.get_children().empty());
    ASSERT_EQ(s.size(), 3u);
    std::unique_ptr<basic_object> taken = s.release(c);
    ASSERT_TRUE(taken);
    EXPECT_TRUE(taken->get_children().empty());
    EXPECT_EQ(s[1].get_parent(), nullptr);
    EXPECT_EQ(s.index_of(*taken), -1);
    EXPECT_EQ(s.index_of(s[1]), 1);
    EXPECT_DEATH(s[2], "i < m_objects.size\\(\\)");
}

TEST(Scene, AdoptRefusesCyclesAndForeignParents) {
    std::vector<std::unique_ptr<basic_object>> objects;
    objects.push_back(std::make_unique<box>());
    objects.push_back(std::make_unique<box>());
    objects[0]->set_parent(objects[1].get());
    objects[1]->set_parent(objects[0].get());
    EXPECT_THROW(facet::scene::adopt(std::move(objects)), std::invalid_argument);
    box outside;
    objects.clear();
    objects.push_back(std::make_unique<box>());
    objects[0]->set_parent(&outside);
    EXPECT_THROW(facet::scene::adopt(std::move(objects)), std::invalid_argument);
    EXPECT_TRUE(outside.get_children().empty());

    // A cycle linked behind the scene's back is undone before the objects go.
    facet::scene s;
    auto& a = s.emplace<box>();
    auto& b = s.emplace<box>();
    a.set_parent(&b);
    b.set_parent(&a);
}

TEST(Scene, WorldMatricesMatchTheChainProductBitForBitWithoutRecursion) {
    // Children listed before their parents, in a chain deeper than any call stack.
    facet::scene s;
    std::vector<basic_object*> chain;
    for (int i = 0; i < 100000; ++i) {
        chain.push_back(&s.emplace<basic_object>());
        chain.back()->set_position(vector3d{1e-3 * (i % 5), 1.0 / (i + 3), -0.3});
        chain.back()->set_orientation(vector3d{1.0, 1.0 / (i + 1), 0.1 * (i % 4)}, 7.0 + i % 11);
    }
    for (int i = 0; i + 1 < 100000; ++i) s.set_parent(*chain[i], chain[i + 1]);
    const std::vector<matrix44d> world = s.world_matrices();
    for (int i : {0, 1, 99998, 99999}) {
        const matrix44d direct = calc_transformation_matrix(*chain[i]);
        EXPECT_EQ(std::memcmp(&world[i], &direct, sizeof direct), 0) << i;
    }
}

TEST(Scene, BoundsComeFromTheMeshInTheWorld) {
    facet::scene s;
    auto& base = s.emplace<box>(2.0, 1.0, 2.0);
    base.set_position(vector3d{10, 0, 0});
    auto& post = s.add(std::make_unique<cylinder>(2.0, 0.5, 4096), &base);
    post.set_position(vector3d{1, 1, 1});  // on the box's top, in the middle
    s.emplace<basic_object>();             // no vertices: an empty box, left out of the union

    const std::vector<facet::world_box> boxes = s.world_bounds();
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_TRUE(boxes[2].empty());
    // The cylinder's mesh stands on its axis: centred on (11, 1), not placed by a corner.
    EXPECT_NEAR(boxes[1].center().x, 11.0, 1e-9);
    EXPECT_NEAR(boxes[1].center().z, 1.0, 1e-9);
    EXPECT_NEAR(boxes[1].size().x, 1.0, 1e-6);
    // The box's mesh spans its extents from its origin.
    const facet::world_box all = s.bounds();
    EXPECT_EQ(all.min.x, 10.0);
    EXPECT_NEAR(all.max.y, 3.0, 1e-9);
    EXPECT_EQ(all.max.x, 12.0);
    facet::world_box skipped;  // a point with any coordinate NaN is left out
    skipped.add(vector3d{1, std::nan(""), 1});
    EXPECT_TRUE(skipped.empty());
    EXPECT_EQ(facet::world_box().size().x + facet::world_box().center().x, 0.0);
}
