#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "facet/objects.h"

using graphics::brush;
using graphics::color;
using graphics::pen;
using primitives::basic_object;

namespace {

// A primitive whose mesh is one triangle; it counts its rebuilds.
class triangle_object : public basic_object {
public:
    mutable int builds = 0;

protected:
    void update_mesh(indexedfaceset& target) const override {
        ++builds;
        target.vertices().resize(3);
        target.vertices()[1] = vector3d(1.0, 0.0, 0.0);
        target.vertices()[2] = vector3d(0.0, 1.0, 0.0);
        target.faces().resize(1);
        target.faces()[0] = face(0, 1, 2);
        target.compute_normals();
    }
};

}  // namespace

TEST(BasicObjectDirty, EqualBrushOrPenChangesNothing) {
    basic_object o;
    o.get_mesh();
    ASSERT_FALSE(o.is_dirty());
    o.set_brush(o.get_brush());
    o.set_pen(pen());
    EXPECT_FALSE(o.is_dirty());
    o.set_brush(brush(color(255, 255, 192), 1));
    EXPECT_TRUE(o.is_dirty());
    o.get_mesh();
    o.set_pen(pen(color(0, 0, 0), 2));
    EXPECT_TRUE(o.is_dirty());
}

TEST(BasicObjectDirty, TextureSettersMarkAsDocumented) {
    basic_object o;
    const auto dirtied_by = [&o](auto&& change) {
        o.get_mesh();
        change();
        return o.is_dirty();
    };
    // Only on change.
    EXPECT_FALSE(dirtied_by([&] { o.enable_texturing(false); }));
    EXPECT_TRUE(dirtied_by([&] { o.enable_texturing(true); }));
    EXPECT_FALSE(dirtied_by([&] { o.set_texture_id(0); }));
    EXPECT_TRUE(dirtied_by([&] { o.set_texture_id(4); }));
    EXPECT_FALSE(dirtied_by([&] { o.set_norm_map_id(0); }));
    EXPECT_TRUE(dirtied_by([&] { o.set_norm_map_id(5); }));
    // Always.
    EXPECT_TRUE(dirtied_by([&] { o.set_texture_rotated(false); }));
    EXPECT_TRUE(dirtied_by([&] { o.set_texture_mode(graphics::texture_mode::modulate); }));
    EXPECT_TRUE(dirtied_by([&] { o.set_texgen_mode(graphics::texgen_mode::box); }));
    EXPECT_TRUE(dirtied_by([&] { o.set_texture_scale(1.0, 1.0); }));
    // Never.
    EXPECT_FALSE(dirtied_by([&] { o.set_show_texture_in_bw_mode(true); }));
    EXPECT_FALSE(dirtied_by([&] {
        o.set_visible(false);
        o.set_ghost(true);
        o.set_backface_culling(false);
        o.set_smoothing_threshold_angle(1.0);
        o.set_visible_edge_threshold_angle(2.0);
        o.set_name("n");
        o.set_owner_id("x");
        o.set_material_ref_id("m");
    }));
}

TEST(BasicObjectDirty, ShadowsDirtyFollowsOnlySettingDirty) {
    basic_object o;
    o.set_shadows_dirty(false);
    o.set_dirty(false);
    EXPECT_FALSE(o.shadows_dirty());
    o.set_dirty(true);
    EXPECT_TRUE(o.shadows_dirty());
    o.set_dirty(false);
    EXPECT_FALSE(o.is_dirty());
    EXPECT_TRUE(o.shadows_dirty());
    o.set_shadows_dirty(false);
    EXPECT_FALSE(o.shadows_dirty());
    EXPECT_FALSE(o.is_dirty());
    o.get_mesh();  // a rebuild does not touch shadows_dirty
    EXPECT_FALSE(o.shadows_dirty());
}

TEST(BasicObjectMesh, RebuildsOnlyWhenDirtyAndPushesTextureSettings) {
    triangle_object o;
    o.enable_texturing(true);
    o.set_texture_id(7);
    o.set_norm_map_id(8);
    o.set_texture_mode(graphics::texture_mode::blend);
    o.set_texture_rotated(true);

    const indexedfaceset& m = o.get_mesh();
    EXPECT_EQ(o.builds, 1);
    EXPECT_FALSE(o.is_dirty());
    EXPECT_EQ(m.num_faces(), 1u);
    EXPECT_TRUE(m.get_textured());
    EXPECT_EQ(m.get_texture_id(), 7u);
    EXPECT_EQ(m.get_normal_map_id(), 8u);
    EXPECT_EQ(m.get_texture_mode(), graphics::texture_mode::blend);
    EXPECT_TRUE(m.texture_rotated());

    EXPECT_EQ(&o.get_mesh(), &m);
    EXPECT_EQ(o.builds, 1);
    o.set_texture_id(9);
    EXPECT_EQ(o.get_mesh().get_texture_id(), 9u);
    EXPECT_EQ(o.builds, 2);
}

TEST(BasicObjectMesh, EdgesOnlyAndMarkedTakeEffectWithoutRebuild) {
    triangle_object o;
    const indexedfaceset& m = o.get_mesh();
    ASSERT_EQ(o.builds, 1);
    EXPECT_FALSE(m.edges_only());
    o.set_edges_only(true);
    o.set_marked(true);
    EXPECT_FALSE(o.is_dirty());
    o.get_mesh();
    EXPECT_EQ(o.builds, 1);
    EXPECT_TRUE(m.edges_only());
    EXPECT_TRUE(m.is_marked());
}

TEST(BasicObjectMesh, FillMeshLeavesTheCacheAlone) {
    triangle_object o;
    o.set_texture_id(3);
    indexedfaceset target;
    o.fill_mesh(target);
    EXPECT_EQ(target.num_faces(), 1u);
    EXPECT_EQ(target.get_texture_id(), 3u);
    EXPECT_TRUE(o.is_dirty());

    o.get_mesh();
    o.fill_mesh(target);
    EXPECT_FALSE(o.is_dirty());
    EXPECT_EQ(o.builds, 3);
}

namespace {

class mock_visitor : public primitives::primitive_visitor {
public:
    MOCK_METHOD(void, visit, (basic_object&), (override));
    MOCK_METHOD(void, visit, (primitives::box&), (override));
    MOCK_METHOD(void, visit, (primitives::cylinder&), (override));
    MOCK_METHOD(void, visit, (primitives::cone&), (override));
    MOCK_METHOD(void, visit, (primitives::quad&), (override));
    MOCK_METHOD(void, visit, (primitives::polygon&), (override));
    MOCK_METHOD(void, visit, (primitives::line&), (override));
    MOCK_METHOD(void, visit, (primitives::polyline&), (override));
    MOCK_METHOD(void, visit, (primitives::extruded_polygon&), (override));
    MOCK_METHOD(void, visit, (primitives::mesh&), (override));
    MOCK_METHOD(void, visit, (primitives::path_extrusion&), (override));
    MOCK_METHOD(void, visit, (primitives::arrow&), (override));
    MOCK_METHOD(void, visit, (primitives::custom&), (override));
    MOCK_METHOD(void, visit, (primitives::light&), (override));
    MOCK_METHOD(void, visit, (primitives::text&), (override));
    MOCK_METHOD(void, visit, (primitives::billboard&), (override));
};

}  // namespace

TEST(BasicObjectVisitor, AcceptCallsTheBaseOperationThenMarksDirty) {
    basic_object o;
    o.get_mesh();
    ASSERT_FALSE(o.is_dirty());
    mock_visitor v;
    EXPECT_CALL(v, visit(testing::Matcher<basic_object&>(testing::Ref(o))))
        .WillOnce([](basic_object& visited) {
            // The object is marked only after the visit.
            EXPECT_FALSE(visited.is_dirty());
        });
    o.accept(v);
    EXPECT_TRUE(o.is_dirty());
}

TEST(BasicObjectVisitor, DerivedTypesWithoutOwnSlotUseTheBaseOperation) {
    triangle_object o;
    mock_visitor v;
    EXPECT_CALL(v, visit(testing::Matcher<basic_object&>(testing::Ref(o)))).Times(1);
    static_cast<basic_object&>(o).accept(v);
}
