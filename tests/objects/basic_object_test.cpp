#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "facet/objects.h"

using graphics::brush;
using graphics::color;
using graphics::pen;
using primitives::basic_object;

namespace {

// Gives every field a value other than its default.
void set_everything(basic_object& o) {
    o.set_name("lid");
    o.set_owner_id("owner");
    o.set_material_ref_id("oak");
    o.set_backface_culling(false);
    o.set_visible(false);
    o.set_edges_only(true);
    o.set_ghost(true);
    o.set_marked(true);
    o.set_hide_when_ghosted(true);
    o.set_black_in_bw_mode(true);
    o.set_ignore_for_shadows(true);
    o.set_position(vector3d(1.0, 2.0, 3.0));
    o.set_orientation(vector3d(1.0, 0.0, 0.0), 30.0);
    o.set_smoothing_threshold_angle(10.0);
    o.set_visible_edge_threshold_angle(20.0);
    o.set_brush(brush(color(1, 2, 3), 4));
    o.set_pen(pen(color(5, 6, 7), 2, 3));
    o.enable_texturing(true);
    o.set_show_texture_in_bw_mode(true);
    o.set_texture_rotated(true);
    o.set_texture_id(11);
    o.set_norm_map_id(12);
    o.set_texgen_mode(graphics::texgen_mode::none);
    o.set_texture_scale(2.0, 3.0);
    o.set_texture_mode(graphics::texture_mode::decal);
}

void expect_copied_fields(const basic_object& o) {
    EXPECT_EQ(o.get_name(), "lid");
    EXPECT_EQ(o.get_material_ref_id(), "oak");
    EXPECT_FALSE(o.get_backface_culling());
    EXPECT_FALSE(o.visible());
    EXPECT_TRUE(o.edges_only());
    EXPECT_TRUE(o.ghost());
    EXPECT_TRUE(o.is_marked());
    EXPECT_TRUE(o.hide_when_ghosted());
    EXPECT_TRUE(o.black_in_bw_mode());
    EXPECT_TRUE(o.ignore_for_shadows());
    EXPECT_EQ(o.get_position(), vector3d(1.0, 2.0, 3.0));
    EXPECT_EQ(o.get_orientation().axis, vector3d(1.0, 0.0, 0.0));
    EXPECT_EQ(o.get_orientation().angle, 30.0);
    EXPECT_EQ(o.get_smoothing_threshold_angle(), 10.0);
    EXPECT_EQ(o.get_visible_edge_threshold_angle(), 20.0);
    EXPECT_EQ(o.get_brush(), brush(color(1, 2, 3), 4));
    EXPECT_EQ(o.get_pen(), pen(color(5, 6, 7), 2, 3));
    EXPECT_TRUE(o.texturing_enabled());
    EXPECT_TRUE(o.show_texture_in_bw_mode());
    EXPECT_TRUE(o.texture_rotated());
    EXPECT_EQ(o.get_texture_id(), 11u);
    EXPECT_EQ(o.get_norm_map_id(), 12u);
    EXPECT_EQ(o.get_texgen_mode(), graphics::texgen_mode::none);
    EXPECT_EQ(o.get_texture_scale(), vector2d(2.0, 3.0));
    EXPECT_EQ(o.get_texture_mode(), graphics::texture_mode::decal);
}

}  // namespace

TEST(BasicObject, Defaults) {
    const basic_object o;
    EXPECT_EQ(o.get_name(), "*unknown*");
    EXPECT_EQ(o.get_parentname(), "_null_");
    EXPECT_EQ(o.get_owner_id(), "_null_");
    EXPECT_EQ(o.get_material_ref_id(), "");
    EXPECT_EQ(o.get_parent(), nullptr);
    EXPECT_TRUE(o.get_children().empty());
    EXPECT_TRUE(o.visible());
    EXPECT_TRUE(o.get_backface_culling());
    EXPECT_FALSE(o.edges_only() || o.ghost() || o.is_marked() || o.hide_when_ghosted() ||
                 o.black_in_bw_mode() || o.ignore_for_shadows() || o.texturing_enabled() ||
                 o.show_texture_in_bw_mode() || o.texture_rotated());
    EXPECT_EQ(o.get_position(), vector3d(0.0, 0.0, 0.0));
    EXPECT_EQ(o.get_orientation().axis, vector3d(0.0, 1.0, 0.0));
    EXPECT_EQ(o.get_orientation().angle, 0.0);
    EXPECT_EQ(o.get_smoothing_threshold_angle(), 80.0);
    EXPECT_EQ(o.get_visible_edge_threshold_angle(), 65.0);
    EXPECT_EQ(o.get_brush(), brush(color(255, 255, 192, 255), 0));
    EXPECT_EQ(o.get_pen(), pen());
    EXPECT_EQ(o.get_texture_id(), 0u);
    EXPECT_EQ(o.get_norm_map_id(), 0u);
    EXPECT_EQ(static_cast<unsigned>(o.get_texgen_mode()), 1u);
    EXPECT_EQ(static_cast<unsigned>(o.get_texture_mode()), 0u);
    EXPECT_EQ(o.get_texture_scale(), vector2d(1.0, 1.0));
    EXPECT_TRUE(o.is_dirty());
    EXPECT_TRUE(o.shadows_dirty());
    EXPECT_EQ(o.class_id(), "empty");
    EXPECT_TRUE(o.get_boundingbox().is_degenerate());
    EXPECT_EQ(o.get_mesh().num_faces(), 0u);
    EXPECT_EQ(o.get_mesh().num_vertices(), 0u);
}

TEST(BasicObject, SetPositionAndOrientationFromIntegers) {
    basic_object o;
    o.get_mesh();
    o.set_position(vector3<int>(1, -2, 3));
    o.set_orientation(vector3<int>(0, 0, 2), 45.0);
    EXPECT_EQ(o.get_position(), vector3d(1.0, -2.0, 3.0));
    EXPECT_EQ(o.get_orientation().axis, vector3d(0.0, 0.0, 2.0));
    EXPECT_EQ(o.get_orientation().angle, 45.0);
    EXPECT_FALSE(o.is_dirty());  // meshes are built in object space
}

TEST(BasicObjectCopy, CopiesAppearanceButNotHierarchyOrMesh) {
    basic_object parent;
    parent.set_name("root");
    basic_object original;
    set_everything(original);
    original.set_parent(&parent);
    basic_object child;
    child.set_parent(&original);
    const indexedfaceset* original_mesh = &original.get_mesh();

    const basic_object copy(original);
    expect_copied_fields(copy);
    EXPECT_EQ(copy.get_parent(), nullptr);
    EXPECT_EQ(copy.get_parentname(), "_null_");
    EXPECT_EQ(copy.get_owner_id(), "_null_");
    EXPECT_TRUE(copy.get_children().empty());
    EXPECT_TRUE(copy.is_dirty());
    EXPECT_TRUE(copy.shadows_dirty());
    EXPECT_NE(&copy.get_mesh(), original_mesh);
    EXPECT_EQ(parent.get_children().size(), 1u);  // the copy did not join the parent
    EXPECT_EQ(child.get_parent(), &original);

    std::unique_ptr<basic_object> cloned(original.clone());
    expect_copied_fields(*cloned);
    EXPECT_EQ(cloned->get_parent(), nullptr);
    EXPECT_EQ(cloned->class_id(), "empty");
}

TEST(BasicObjectCopy, AssignmentResetsLinksWithoutDetaching) {
    basic_object old_parent;
    basic_object child;
    basic_object target;
    target.set_parent(&old_parent);
    target.set_owner_id("mine");
    child.set_parent(&target);
    target.get_mesh();
    ASSERT_FALSE(target.is_dirty());

    basic_object source;
    set_everything(source);
    target = source;

    expect_copied_fields(target);
    EXPECT_EQ(target.get_parent(), nullptr);
    EXPECT_EQ(target.get_parentname(), "_null_");
    EXPECT_EQ(target.get_owner_id(), "_null_");
    EXPECT_TRUE(target.get_children().empty());
    EXPECT_TRUE(target.is_dirty());
    EXPECT_TRUE(target.shadows_dirty());
    EXPECT_EQ(target.get_mesh().num_vertices(), 0u);

    // Not detached: the old parent still lists the object, the old child still points to it.
    ASSERT_EQ(old_parent.get_children().size(), 1u);
    EXPECT_EQ(old_parent.get_children()[0], &target);
    EXPECT_EQ(child.get_parent(), &target);

    // Re-link by hand so that destruction leaves no dangling pointers.
    old_parent.remove_child(&target);
    child.set_parent(nullptr);
}

TEST(BasicObjectCopy, SelfAssignmentChangesNothing) {
    basic_object parent;
    basic_object o;
    o.set_owner_id("mine");
    o.set_parent(&parent);
    o.get_mesh();
    o = *&o;
    EXPECT_EQ(o.get_parent(), &parent);
    EXPECT_EQ(o.get_owner_id(), "mine");
    EXPECT_FALSE(o.is_dirty());
}

TEST(BasicObjectHierarchy, SetParentMovesBetweenParents) {
    basic_object a, b, child;
    a.set_name("a");
    b.set_name("b");
    child.set_parent(&a);
    EXPECT_EQ(child.get_parent(), &a);
    EXPECT_EQ(child.get_parentname(), "a");
    ASSERT_EQ(a.get_children().size(), 1u);

    child.set_parent(&b);
    EXPECT_TRUE(a.get_children().empty());
    ASSERT_EQ(b.get_children().size(), 1u);
    EXPECT_EQ(child.get_parentname(), "b");

    child.set_parent(nullptr);
    EXPECT_TRUE(b.get_children().empty());
    EXPECT_EQ(child.get_parent(), nullptr);
    EXPECT_EQ(child.get_parentname(), "_null_");
}

TEST(BasicObjectHierarchy, AddAndRemoveChildKeepOrderAndDuplicates) {
    basic_object p, c1, c2, c3;
    p.add_child(&c1);
    p.add_child(&c2);
    p.add_child(&c1);
    p.add_child(&c3);
    EXPECT_EQ(c1.get_parent(), nullptr);  // add_child does not touch the child
    p.remove_child(&c1);
    ASSERT_EQ(p.get_children().size(), 3u);
    EXPECT_EQ(p.get_children()[0], &c2);
    EXPECT_EQ(p.get_children()[1], &c1);
    EXPECT_EQ(p.get_children()[2], &c3);
    basic_object stranger;
    p.remove_child(&stranger);
    EXPECT_EQ(p.get_children().size(), 3u);
    p.remove_child(&c1);
    p.remove_child(&c2);
    p.remove_child(&c3);
    EXPECT_TRUE(p.get_children().empty());
}

TEST(BasicObjectHierarchy, RenamingAParentUpdatesItsChildren) {
    basic_object parent, child;
    child.set_parent(&parent);
    EXPECT_EQ(child.get_parentname(), "*unknown*");
    parent.set_name("table");
    EXPECT_EQ(child.get_parentname(), "table");
    EXPECT_TRUE(parent.is_dirty());  // untouched since construction
}

TEST(BasicObjectHierarchy, DestroyingAParentOrphansItsChildren) {
    basic_object c1, c2;
    {
        basic_object parent;
        parent.set_name("root");
        c1.set_parent(&parent);
        c2.set_parent(&parent);
    }
    EXPECT_EQ(c1.get_parent(), nullptr);
    EXPECT_EQ(c2.get_parent(), nullptr);
    EXPECT_EQ(c1.get_parentname(), "root");
}

TEST(BasicObjectHierarchy, DestroyingAChildLeavesItsParent) {
    basic_object parent, keep;
    keep.set_parent(&parent);
    {
        basic_object child;
        child.set_parent(&parent);
        ASSERT_EQ(parent.get_children().size(), 2u);
    }
    ASSERT_EQ(parent.get_children().size(), 1u);
    EXPECT_EQ(parent.get_children()[0], &keep);
}

TEST(Boundingbox, DegenerateOnlyForAnExactZeroExtent) {
    EXPECT_TRUE(primitives::boundingbox().is_degenerate());
    EXPECT_TRUE(primitives::boundingbox(1.0, 1.0, 0.0).is_degenerate());
    EXPECT_FALSE(primitives::boundingbox(1e-300, 1e-300, 1e-300).is_degenerate());
    EXPECT_FALSE(primitives::boundingbox(std::nan(""), 1.0, 1.0).is_degenerate());
    EXPECT_EQ(primitives::boundingbox(2.0, 3.0, 4.0).get_center(), vector3d(0.0, 0.0, 0.0));
}
