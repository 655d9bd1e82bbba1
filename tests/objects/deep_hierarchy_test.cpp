// World matrices of hierarchies deeper than any call stack, and loops of parent links.
#include <gtest/gtest.h>

#include <facet/objects.h>
#include <facet/scene.h>

#include <cstring>
#include <memory>
#include <vector>

TEST(DeepHierarchy, AChainOfAHundredThousandNeedsNoRecursion) {
    std::vector<std::unique_ptr<primitives::basic_object>> chain;
    for (int i = 0; i < 100000; ++i) {
        chain.push_back(std::make_unique<primitives::basic_object>());
        chain.back()->set_position(vector3d(1e-3 * (i % 5), 0.5, -1e-3 * (i % 3)));
        chain.back()->set_orientation(vector3d(0, 1, 0.1 * (i % 4)), 0.01 * (i % 11));
        if (i > 0) chain.back()->set_parent(chain[i - 1].get());
    }
    const matrix44d deepest = primitives::calc_transformation_matrix(*chain.back());
    const vector3d p = primitives::objectspace_to_worldspace(vector3d(0, 0, 0), *chain.back());
    EXPECT_EQ(p.x, deepest(0, 3));
    EXPECT_EQ(p.y, deepest(1, 3));

    // The same bits as the whole-scene pass (built top down, from the root).
    std::vector<std::unique_ptr<primitives::basic_object>> owned;
    for (auto& o : chain) owned.push_back(std::move(o));
    const facet::scene s = facet::scene::adopt(std::move(owned));
    EXPECT_EQ(std::memcmp(&deepest, &s.world_matrices().back(), sizeof deepest), 0);
}

TEST(DeepHierarchyDeathTest, ParentLinksThatLoopFailTheCheck) {
    primitives::basic_object a, b, c;
    a.set_parent(&b);
    b.set_parent(&c);
    c.set_parent(&a);
    EXPECT_DEATH(primitives::calc_transformation_matrix(a), "p != slow");
    primitives::basic_object self;
    self.set_parent(&self);
    EXPECT_DEATH(primitives::calc_transformation_matrix(self),
                 "(^|\n)src/objects/transforms\\.cpp:[0-9]+: precondition failed");
    self.set_parent(nullptr);
    c.set_parent(nullptr);
}
