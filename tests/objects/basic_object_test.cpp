// primitives::basic_object: copies, dirty marking and world transforms.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "facet/math3d.h"
#include "facet/objects.h"
#include "objects/fixtures.h"

using graphics::brush;
using graphics::color;
using graphics::pen;
using primitives::basic_object;

namespace {

// Every field a copy takes, as text, the eleven flags first as digits.
std::string fields_of(const basic_object& o) {
    std::ostringstream os;
    for (bool b : {o.get_backface_culling(), o.visible(), o.edges_only(), o.ghost(), o.is_marked(),
                   o.hide_when_ghosted(), o.black_in_bw_mode(), o.ignore_for_shadows(),
                   o.texturing_enabled(), o.show_texture_in_bw_mode(), o.texture_rotated()})
        os << b;
    const vector3d& p = o.get_position();
    const primitives::axis_angle r = o.get_orientation();
    os << ' ' << o.get_name() << '|' << o.get_material_ref_id() << '|' << p.x << ',' << p.y << ','
       << p.z << '|' << r.axis.x << ',' << r.axis.y << ',' << r.axis.z << ',' << r.angle << '|'
       << o.get_smoothing_threshold_angle() << ',' << o.get_visible_edge_threshold_angle() << '|'
       << o.get_brush() << '|' << o.get_pen() << '|' << o.get_texture_id() << ','
       << o.get_norm_map_id() << ',' << static_cast<int>(o.get_texgen_mode()) << ','
       << static_cast<int>(o.get_texture_mode()) << ',' << o.get_texture_scale().x << ','
       << o.get_texture_scale().y;
    return os.str();
}

// Gives every copied field a value other than its default.
void set_everything(basic_object& o) {
    using flag = void (basic_object::*)(bool);
    for (flag f :
         {&basic_object::set_edges_only, &basic_object::set_ghost, &basic_object::set_marked,
          &basic_object::set_hide_when_ghosted, &basic_object::set_black_in_bw_mode,
          &basic_object::set_ignore_for_shadows, &basic_object::enable_texturing,
          &basic_object::set_show_texture_in_bw_mode, &basic_object::set_texture_rotated})
        (o.*f)(true);
    o.set_backface_culling(false);
    o.set_visible(false);
    o.set_name("lid");
    o.set_owner_id("owner");
    o.set_material_ref_id("oak");
    o.set_position(vector3d(1.0, 2.0, 3.0));
    o.set_orientation(vector3d(1.0, 0.0, 0.0), 30.0);
    o.set_smoothing_threshold_angle(10.0);
    o.set_visible_edge_threshold_angle(20.0);
    o.set_brush(brush(color(1, 2, 3), 4));
    o.set_pen(pen(color(5, 6, 7), 2, 3));
    o.set_texture_id(11);
    o.set_norm_map_id(12);
    o.set_texgen_mode(graphics::texgen_mode::none);
    o.set_texture_scale(2.0, 3.0);
    o.set_texture_mode(graphics::texture_mode::decal);
}

void expect_unlinked_and_dirty(const basic_object& o) {
    EXPECT_EQ(o.get_parent(), nullptr);
    EXPECT_EQ(o.get_parentname() + "|" + o.get_owner_id(), "_null_|_null_");
    EXPECT_TRUE(o.get_children().empty());
    EXPECT_TRUE(o.is_dirty() && o.shadows_dirty());
}

matrix44d local_matrix(const vector3d& position, double angle, const vector3d& axis) {
    matrix44d t, r, m;
    make_translation_matrix(t, position.x, position.y, position.z);
    make_rotation_matrix(r, angle, axis.x, axis.y, axis.z);
    multiply(t, r, m);
    return m;
}

}  // namespace

TEST(BasicObject, CopiesTakeAppearanceButNotHierarchyOwnerOrMesh) {
    basic_object parent, original, child;
    set_everything(original);
    original.set_parent(&parent);
    child.set_parent(&original);
    const std::string fields = fields_of(original);
    const basic_object copy(original);
    EXPECT_EQ(fields_of(copy), fields);
    expect_unlinked_and_dirty(copy);

    // Assignment resets the links without detaching: the old parent still lists the object, the
    // old child still points to it.
    basic_object old_parent, old_child, target;
    target.set_parent(&old_parent);
    target.set_owner_id("mine");
    old_child.set_parent(&target);
    target.get_mesh();
    target = original;
    EXPECT_EQ(fields_of(target), fields);
    expect_unlinked_and_dirty(target);
    EXPECT_EQ(old_parent.get_children(), std::vector<basic_object*>{&target});
    EXPECT_EQ(old_child.get_parent(), &target);
    old_parent.remove_child(&target);  // re-linked by hand: no dangling pointers
    old_child.set_parent(nullptr);

    // Self-assignment changes nothing.
    child.get_mesh();
    child = *&child;
    EXPECT_EQ(child.get_parent(), &original);
    EXPECT_FALSE(child.is_dirty());
}

TEST(BasicObject, WhichSettersMarkDirty) {
    basic_object o;
    // Only on change (one check of it per kind of field).
    EXPECT_FALSE(dirties(o, [&] { o.set_brush(o.get_brush()); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_brush(brush(color(255, 255, 192), 1)); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_pen(pen(color(0, 0, 0), 2)); }));
    EXPECT_TRUE(dirties(o, [&] { o.enable_texturing(true); }));
    EXPECT_FALSE(dirties(o, [&] { o.set_texture_id(0); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_id(4); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_norm_map_id(5); }));
    // Always.
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_rotated(false); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_mode(graphics::texture_mode::modulate); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texgen_mode(graphics::texgen_mode::box); }));
    EXPECT_TRUE(dirties(o, [&] { o.set_texture_scale(1.0, 1.0); }));

    // shadows_dirty follows only the setting of the dirty flag; a rebuild leaves it alone.
    o.set_dirty(true);
    o.set_shadows_dirty(false);
    o.get_mesh();
    EXPECT_FALSE(o.shadows_dirty() || o.is_dirty());
    o.set_dirty(true);
    o.set_dirty(false);
    EXPECT_TRUE(o.shadows_dirty());
}

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
    // Each ancestor multiplies from the left: (root × middle) × leaf.
    matrix44d root_middle, expected;
    multiply(r, m, root_middle);
    multiply(root_middle, l, expected);
    EXPECT_EQ(primitives::calc_transformation_matrix(leaf), expected);

    // The matrix follows the current hierarchy.
    leaf.set_parent(nullptr);
    EXPECT_EQ(primitives::calc_transformation_matrix(leaf), l);

    // To world and back.
    leaf.set_parent(&middle);
    const vector3d local(0.25, -3.0, 7.5);
    const vector3d world = primitives::objectspace_to_worldspace(local, leaf);
    const vector3d back = primitives::worldspace_to_objectspace(world, leaf);
    EXPECT_NEAR((back - local).length(), 0.0, 1e-12);
    EXPECT_EQ(back, transform_vector(inverse(primitives::calc_transformation_matrix(leaf)), world));
}

TEST(TransformationDeathTest, ParentLinksThatLoopFailTheCheck) {
    basic_object a, b, c, self;
    a.set_parent(&b);
    b.set_parent(&c);
    c.set_parent(&a);
    EXPECT_DEATH(primitives::calc_transformation_matrix(a), "p != slow");
    self.set_parent(&self);
    EXPECT_DEATH(primitives::calc_transformation_matrix(self),
                 "(^|\n)src/objects/transforms\\.cpp:[0-9]+: precondition failed");
    self.set_parent(nullptr);
    c.set_parent(nullptr);
}
